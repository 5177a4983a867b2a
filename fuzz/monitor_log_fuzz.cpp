#include <algorithm>
#include <cctype>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <variant>
#include <vector>

#include "input.h"
#include "readings/reading_line.h"
#include "readings/replay.h"
#include "support/pair_models.h"
#include "utc.h"

// A log of the example monitor: a file of lines, each with the values of one reading. The model
// splits it at line feeds, and reads numbers and times by libc.

using namespace monitor;
using namespace testing_support;

namespace {

constexpr std::size_t LONGEST_LINE = 65536;

std::optional<long> modelOfSeconds(std::string const& text) {
    std::string form = text;
    for (char& c : form) {
        if (c >= '0' && c <= '9') c = '9';
    }
    if (form != "9999-99-99T99:99:99.999Z") return std::nullopt;
    std::tm record{};
    std::sscanf(text.c_str(), "%d-%d-%dT%d:%d:%d", &record.tm_year, &record.tm_mon, &record.tm_mday,
                &record.tm_hour, &record.tm_min, &record.tm_sec);
    record.tm_year -= 1900;
    record.tm_mon -= 1;
    long const seconds = timegm(&record);
    char again[64] = "";
    std::strftime(again, sizeof again, "%Y-%m-%dT%H:%M:%S", &record);
    bool const isDate = text.compare(0, 19, again) == 0;
    if (!isDate || seconds < 0 || seconds > INT_MAX) return std::nullopt;
    return seconds;
}

std::optional<float> modelOfFloat(std::string const& text) {
    bool const startsWell = !text.empty() && (std::isdigit(text[0]) != 0 || text[0] == '.');
    if (!startsWell || text.find_first_not_of("0123456789.eE+-") != std::string::npos) {
        return std::nullopt;
    }
    char* end = nullptr;
    errno = 0;
    float const value = std::strtof(text.c_str(), &end);
    // Refused: what becomes infinity, or 0 although it is none. A subnormal number is accepted.
    bool const isOutOfRange = errno == ERANGE && (std::isinf(value) || value == 0);
    if (*end != '\0' || isOutOfRange) return std::nullopt;
    return value;
}

std::optional<unsigned long> modelOfCount(std::string const& text) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) {
        return std::nullopt;
    }
    errno = 0;
    unsigned long const value = std::strtoul(text.c_str(), nullptr, 10);
    if (errno == ERANGE) return std::nullopt;
    return value;
}

// What a line gives: a time in milliseconds, and the bits of each value.
struct Values {
    long time = 0;
    std::vector<std::optional<unsigned long>> values;

    bool operator==(Values const&) const = default;
};

unsigned long bitsOf(float number) {
    unsigned int bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    return bits;
}

std::optional<Values> modelOfLine(std::string const& line) {
    auto const pairs = modelOfDeserialize(line);
    if (!pairs || !pairs->contains("time")) return std::nullopt;
    std::string const time = pairs->at("time");
    auto const seconds = modelOfSeconds(time);
    if (!seconds) return std::nullopt;
    Values result;
    result.time = *seconds * 1000 + std::atoi(time.c_str() + 20);
    for (char const* name : {"cpu", "memory", "disk", "free", "uptime"}) {
        std::optional<unsigned long> value;
        if (pairs->contains(name)) {
            std::string const& text = pairs->at(name);
            if (name == std::string("free")) {
                value = modelOfCount(text);
            } else if (auto const number = modelOfFloat(text)) {
                value = bitsOf(*number);
            }
            if (!value) return std::nullopt;
        }
        result.values.push_back(value);
    }
    return result;
}

Values valuesOf(Reading const& reading) {
    Values result;
    result.time = reading.time.getDateTime() * 1000 + reading.time.getNanoseconds() / 1000000;
    for (Field const& field : FIELDS) {
        auto const& value = reading.*field.value;
        bool const isFree = field.value == &Reading::free;
        std::optional<unsigned long> bits;
        if (!value.isNull()) bits = isFree ? value.toUint64() : bitsOf(value.toFloat());
        result.values.push_back(bits);
    }
    return result;
}

// A file in memory with these bytes.
class File {
public:
    explicit File(std::string const& bytes) : descriptor_(memfd_create("log", 0)) {
        ssize_t const written = write(descriptor_, bytes.data(), bytes.size());
        expectSame(written == static_cast<ssize_t>(bytes.size()), "the file of the log");
    }
    ~File() { close(descriptor_); }
    File(File const&) = delete;
    File& operator=(File const&) = delete;

    std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

private:
    int descriptor_;
};

// A byte 0xFF is a run of 8192 bytes, so that a short input has a line above 64 KiB.
std::string expanded(std::string const& bytes) {
    std::string log;
    for (char const c : bytes) {
        if (c == '\xFF' && log.size() < 80000) {
            log.append(8192, 'x');
        } else {
            log += c;
        }
    }
    return log;
}

std::vector<std::string> linesOf(std::string const& log) {
    std::vector<std::string> lines;
    std::size_t begin = 0;
    while (begin < log.size()) {
        std::size_t const end = std::min(log.find('\n', begin), log.size());
        lines.push_back(log.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

void expectLine(std::string const& line, std::variant<Reading, Malformed> const& given) {
    auto const expected = line.size() > LONGEST_LINE ? std::nullopt : modelOfLine(line);
    auto const* const reading = std::get_if<Reading>(&given);
    expectSame((reading != nullptr) == expected.has_value(), "the answer to a line");
    if (reading != nullptr) {
        expectSame(valuesOf(*reading) == *expected, "a reading");
        auto const again = readLine(toLine(*reading));
        auto const* const same = std::get_if<Reading>(&again);
        expectSame(same != nullptr && valuesOf(*same) == *expected, "a reading that is written");
    } else {
        // It quotes no byte of the line, so that it can be shown on a terminal.
        std::string const& reason = std::get<Malformed>(given).reason;
        bool const isPrintable =
            std::all_of(reason.begin(), reason.end(), [](char c) { return c >= ' ' && c <= '~'; });
        expectSame(isPrintable && !reason.empty(), "the reason against a line");
        bool const isTooLong = line.size() > LONGEST_LINE;
        expectSame((reason == "longer than 65536 bytes") == isTooLong, "the length of a line");
    }
}

void expectReplay(std::string const& log) {
    std::vector<std::string> const lines = linesOf(log);
    std::size_t count = 0;
    auto const expectNext = [&](std::variant<Reading, Malformed> const& given) {
        expectSame(count < lines.size(), "the number of lines");
        expectLine(lines[count++], given);
    };
    Replayer replayer;
    replayer.use = expectNext;
    replayer.refuse = [&](unsigned long number, Malformed const& malformed) {
        expectNext(malformed);
        expectSame(number == count, "the number of a malformed line");
    };
    replayer.beforeReading = [&](unsigned long read, unsigned long whole) {
        expectSame(read <= log.size() && (whole == 0 || whole == log.size()), "the progress");
    };
    File const file(log);
    replay(file.path(), replayer);
    expectSame(count == lines.size(), "the number of lines");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) { return useUtc(); }

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    bool const isFile = input.takeBelow(16) == 0;
    std::string const bytes = input.takeRest();
    // Files are slow, so most inputs are lines alone.
    if (isFile) {
        expectReplay(expanded(bytes));
    } else {
        for (std::string const& line : linesOf(bytes))
            expectLine(line, readLine(line));
    }
    return 0;
}

#include "operations/operations.h"

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <vector>

#include <utillibrary/datatypes/ByteStream.h>
#include <utillibrary/datatypes/Variant.h>
#include <utillibrary/datatypes/xtime.h>
#include <utillibrary/datatypes/xtime_conversions.h>
#include <utillibrary/utilities/MovingTimeScale.h>
#include <utillibrary/utilities/StringNVP.h>
#include <utillibrary/utilities/StringTrim.h>
#include <utillibrary/utilities/StringUtilities.h>
#include <utillibrary/utilities/mktimeEx.h>

// Two things are left out of the hashes, because the platform decides them: the sign of a NaN that
// arithmetic makes, and whether strtof reports a range error at the least normal float.

using namespace com::halvorin::datatypes;
using namespace com::halvorin::utilities;

namespace {

// FNV-1a of the results, each as bytes of a fixed width and order.
class Hash {
public:
    void bytes(std::string_view text) {
        number(text.size());
        for (char const c : text)
            byte(static_cast<unsigned char>(c));
    }

    template <typename Number>
    void number(Number value) {
        if constexpr (std::is_floating_point_v<Number>) {
            floating(value);
        } else {
            auto rest = static_cast<std::uint64_t>(value);
            for (int i = 0; i < 8; ++i, rest >>= 8)
                byte(static_cast<unsigned char>(rest));
        }
    }

    void time(xtime_t const& value) {
        number(value.getDateTime());
        number(value.getNanoseconds());
    }

    std::uint64_t value() const { return value_; }

private:
    void byte(unsigned char value) { value_ = (value_ ^ value) * 0x100000001B3; }

    template <typename Floating>
    void floating(Floating value) {
        if (std::isnan(value)) return bytes("nan");
        std::conditional_t<sizeof(Floating) == 4, std::uint32_t, std::uint64_t> bits = 0;
        static_assert(sizeof bits == sizeof value);
        std::memcpy(&bits, &value, sizeof bits);
        number(bits);
    }

    std::uint64_t value_ = 0xCBF29CE484222325;
};

// splitmix64: the same numbers everywhere, which the distributions of <random> do not promise. No
// expression here asks for two numbers, because compilers differ in which they take first.
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t bits() {
        state_ += 0x9E3779B97F4A7C15;
        std::uint64_t mixed = state_;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EB;
        return mixed ^ (mixed >> 31);
    }

    // 0 to count - 1.
    unsigned below(unsigned count) { return static_cast<unsigned>((bits() >> 32) % count); }

    bool once(unsigned times) { return below(times) == 0; }

    // A whole number of any size: small ones are as frequent as large ones.
    long whole() {
        unsigned const shift = below(64);
        return static_cast<long>(bits()) >> shift;
    }

    // Any bits, or a number of few digits.
    double floating() {
        if (once(2)) {
            double const divisor = powerOfTen(below(7));
            return static_cast<double>(whole()) / divisor;
        }
        std::uint64_t const pattern = bits();
        double value = 0;
        std::memcpy(&value, &pattern, sizeof value);
        return value;
    }

    float single() {
        if (once(2)) return static_cast<float>(whole() % 1'000'000) / 64.0F;
        auto const pattern = static_cast<std::uint32_t>(bits());
        float value = 0;
        std::memcpy(&value, &pattern, sizeof value);
        return value;
    }

    template <std::size_t Count>
    char const* oneOf(char const* const (&choices)[Count]) {
        return choices[below(Count)];
    }

    std::string stringOf(std::string_view characters, unsigned longest) {
        std::string text(below(longest + 1), '\0');
        for (char& c : text)
            c = characters[below(static_cast<unsigned>(characters.size()))];
        return text;
    }

    std::string anyBytes(unsigned longest) {
        std::string text(below(longest + 1), '\0');
        for (char& c : text)
            c = static_cast<char>(bits());
        return text;
    }

private:
    static double powerOfTen(unsigned power) {
        double value = 1;
        for (; power > 0; --power)
            value *= 10;
        return value;
    }

    std::uint64_t state_;
};

// The decimal digits of a number, as people and programs write them.
std::string numberText(Random& random) {
    static char const* const BEFORE[] = {"", "", "", " ", "\t ", "+", "-", "-", "x"};
    static char const* const AFTER[] = {"", "", "", " km", "e3", "e-7", "e+22", ".", "abc", " 1"};
    std::string text = random.oneOf(BEFORE);
    text += random.stringOf("0123456789", 22);
    if (random.once(2)) text += '.' + random.stringOf("0123456789", 12);
    return text += random.oneOf(AFTER);
}

xtime_t anyTime(Random& random) {
    if (random.once(2)) {
        return {static_cast<long>(random.below(INT_MAX)), random.below(1'000'000'000)};
    }
    return {random.whole(), static_cast<unsigned>(random.bits())};
}

// ---- groups

void hashIntegersOf(Hash& hash, Variant const& value) {
    hash.number(static_cast<unsigned char>(value.toByte()));
    hash.number(value.toUbyte());
    hash.number(value.toInt16());
    hash.number(value.toUint16());
    hash.number(value.toInt32());
    hash.number(value.toUint32());
    hash.number(value.toInt64());
    hash.number(value.toUint64());
}

void hashNumbersOf(Hash& hash, Variant const& value) {
    hashIntegersOf(hash, value);
    hash.number(value.toFloat());
    hash.number(value.toDouble());
    hash.number(value.toBool());
}

Variant anyInteger(Random& random) {
    long const value = random.whole();
    switch (random.below(9)) {
        case 0:
            return Variant(static_cast<unsigned char>(value));
        case 1:
            return Variant(static_cast<unsigned short>(value));
        case 2:
            return Variant(static_cast<unsigned int>(value));
        case 3:
            return Variant(static_cast<char>(value));
        case 4:
            return Variant(static_cast<short>(value));
        case 5:
            return Variant(static_cast<int>(value));
        case 6:
            return Variant(value);
        case 7:
            return Variant(static_cast<unsigned long>(value));
        default:
            return Variant(value % 2 != 0);
    }
}

Variant anyFloating(Random& random) {
    if (random.once(3)) return Variant(anyTime(random));
    return random.once(2) ? Variant(random.single()) : Variant(random.floating());
}

void integerVariants(Hash& hash, Random& random) { hashNumbersOf(hash, anyInteger(random)); }

void floatingVariants(Hash& hash, Random& random) { hashNumbersOf(hash, anyFloating(random)); }

void variantTexts(Hash& hash, Random& random) {
    Variant const value = random.once(2) ? anyInteger(random) : anyFloating(random);
    bool const isNumber = value.type() != 13;
    if (isNumber && std::isnan(value.toDouble())) return;
    hash.bytes(value.toString());
    std::wstring const wide = value.toString(1033);
    hash.number(wide.size());
    for (wchar_t const c : wide)
        hash.number(static_cast<std::uint32_t>(c));
}

void stringVariantsAsIntegers(Hash& hash, Random& random) {
    Variant const value(numberText(random));
    hashIntegersOf(hash, value);
    hash.number(value.toBool());
}

void stringVariantsAsFloating(Hash& hash, Random& random) {
    Variant const value(numberText(random));
    hash.number(value.toDouble());
    hash.number(value.toFloat());
}

void stringVariants(Hash& hash, Random& random) {
    Variant const value(random.anyBytes(40));
    for (wchar_t const c : value.wText)
        hash.number(static_cast<std::uint32_t>(c));
    hash.bytes(value.toString());
}

void comparisons(Hash& hash, Random& random) {
    double const a = random.floating();
    double b = random.floating();
    if (random.once(2)) b = a * (1 + static_cast<double>(random.below(5)) * 1e-12);
    hash.number(Variant::compareDoubles(a, b));
    float const first = static_cast<float>(random.below(1000));
    hash.number(Variant::compareFloats(first, random.single()));
}

void timeArithmetic(Hash& hash, Random& random) {
    xtime_t time = anyTime(random);
    xtime_t const other = anyTime(random);
    hash.number(time.difference(other));
    hash.number(time < other);
    hash.number(time == other);
    time.add(random.single());
    hash.time(time);
    time.putNanoseconds(static_cast<unsigned>(random.bits()));
    hash.time(time);
    hash.number(static_cast<long>(time));
}

void vmsTimes(Hash& hash, Random& random) {
    xtime_t time = anyTime(random);
    unsigned long ticks = 0;
    hash.number(time.toVMSTime(ticks));
    hash.number(time.toVMSTime());
    time.fromVMSTime(random.once(2) ? ticks : random.bits());
    hash.time(time);
    time.fromVMSTime(random.floating());
    hash.time(time);
}

void timeTexts(Hash& hash, Random& random) {
    xtime_t const time = anyTime(random);
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    unsigned int nanoseconds = 0;
    time.decompose(year, month, day, hour, minute, second, nanoseconds);
    for (int const field : {year, month, day, hour, minute, second})
        hash.number(field);
    int const offset = static_cast<int>(random.below(200'000)) - 100'000;
    bool const applyOffset = random.once(2);
    hash.bytes(time.toString(applyOffset, offset, random.once(4) ? "I" : ""));
    hash.bytes(time.toYYYYString());
}

void parsedTimes(Hash& hash, Random& random) {
    long const seconds = random.below(INT_MAX);
    xtime_t const written(seconds, random.below(1'000'000'000));
    bool const applyOffset = random.once(2);
    std::string text = written.toString(applyOffset, static_cast<int>(random.below(80'000)), "");
    if (random.once(3)) {
        unsigned const position = random.below(static_cast<unsigned>(text.size()));
        text[position] = "0:-+TZ. x9"[random.below(10)];
    }
    xtime_t time;
    hash.number(time.fromString(text));
    hash.time(time);
    try {
        hash.number(YYYYStringTotime(random.stringOf("0123456789 -", 14)));
        hash.number(YYYYStringTotime(random.stringOf("0123", 14)));
    } catch (std::invalid_argument const& error) {
        hash.bytes(error.what());
    }
}

void calendarRecords(Hash& hash, Random& random) {
    std::tm record{};
    bool const ordinary = random.once(2);
    auto const field = [&](unsigned count) {
        return ordinary ? static_cast<int>(random.below(count)) : static_cast<int>(random.whole());
    };
    record.tm_sec = field(60);
    record.tm_min = field(60);
    record.tm_hour = field(24);
    record.tm_mday = field(32);
    record.tm_mon = field(12);
    record.tm_year = ordinary ? 70 + field(70) : field(1);
    hash.number(mktimeEx(&record, static_cast<int>(random.below(100'000)) - 50'000));
    for (int const normalised : {record.tm_sec, record.tm_min, record.tm_hour, record.tm_mday,
                                 record.tm_mon, record.tm_year, record.tm_wday, record.tm_yday}) {
        hash.number(normalised);
    }
}

void timeScales(Hash& hash, Random& random) {
    long const first = random.once(4) ? random.whole() : static_cast<long>(random.below(INT_MAX));
    unsigned const longest = 1U << random.below(32);
    unsigned long const end64 = static_cast<unsigned long>(first) + random.below(longest);
    auto const last = static_cast<long>(end64);
    if (last < first) return;
    long start = 0;
    long end = 0;
    unsigned long step = 0;
    unsigned int minor = 0;
    unsigned const ticks = 3 + random.below(20);
    MovingTimeScale(first, last, ticks, random.below(4000), start, end, step, minor);
    hash.number(start);
    hash.number(end);
    hash.number(step);
    hash.number(minor);
}

void timeAxes(Hash& hash, Random& random) {
    long const first = static_cast<long>(random.below(INT_MAX)) - INT_MAX / 2;
    unsigned const longest = 1U << random.below(24);
    long const last = first + random.below(longest);
    unsigned long step = 0;
    unsigned int minor = 0;
    std::vector<long> majors;
    std::vector<long> minors;
    MovingTimeAxis(first, last, 3 + random.below(20), step, minor, majors, minors);
    hash.number(step);
    hash.number(minor);
    for (auto const* list : {&majors, &minors}) {
        hash.number(list->size());
        for (long const tick : *list)
            hash.number(tick);
    }
}

void numberTexts(Hash& hash, Random& random) {
    static char const* const FORMATS[] = {"%g", "%.3f", "%e", "%.17g", "%.0f", "[%8.2f]", ""};
    double const value = random.floating();
    if (!std::isnan(value)) hash.bytes(to_string(value, random.oneOf(FORMATS)));
    hash.bytes(to_string(static_cast<int>(random.whole())));
    hash.bytes(to_string(static_cast<unsigned int>(random.whole())));
    hash.bytes(to_string(random.whole()));
    hash.bytes(convertToHex(static_cast<unsigned int>(random.bits())));
    double read = 0;
    hash.number(strtodEx(numberText(random), read));
    hash.number(read);
}

void searches(Hash& hash, Random& random) {
    std::string const text = random.stringOf("aAbB \t\xFF", 40);
    std::string const part = random.stringOf("aAbB \t\xFF", 3);
    hash.bytes(trim(text));
    hash.number(endsWith(text, part));
    hash.number(iequals(part, text));
    std::vector<std::string> fields;
    split(fields, text, part);
    for (std::string const& field : fields)
        hash.bytes(field);
    hash.number(searchVector(fields, part, true) - fields.begin());
    hash.number(searchVector(fields, part, false) - fields.begin());
}

void escapes(Hash& hash, Random& random) {
    std::string const any = random.anyBytes(100);
    bool const keepSpace = random.once(2);
    std::string const escaped = escapeString(any, keepSpace);
    hash.bytes(escaped);
    hash.bytes(unescapeString(escaped));
    hash.bytes(unescapeString(random.stringOf("\\\\\\ux0aFnq'\"", 60)));
}

std::string pairsText(Random& random) {
    std::string text;
    for (unsigned pairs = random.below(40); pairs > 0; --pairs) {
        std::string const name = random.stringOf("abc", 2);
        addToNVPString(text, name, numberText(random));
    }
    return text;
}

void hashSorted(Hash& hash, std::unordered_map<std::string, std::string> const& pairs) {
    for (auto const& [name, value] :
         std::map<std::string, std::string>(pairs.begin(), pairs.end())) {
        hash.bytes(name);
        hash.bytes(value == "-nan" ? "nan" : value);
    }
}

void pairs(Hash& hash, Random& random) {
    std::unordered_map<std::string, std::string> map;
    std::string const text = pairsText(random);
    hash.number(deserializeNVP(map, text));
    hashSorted(hash, map);
    std::string written;
    serializeNVP(written, map);
    map.clear();
    hash.number(deserializeNVP(map, written));
    hashSorted(hash, map);
}

void averages(Hash& hash, Random& random) {
    std::vector<std::string> const names = {"a", "b", "ab", "c", "cc", "a"};
    std::string average = pairsText(random);
    std::string const sample = pairsText(random);
    float const averageDuration = static_cast<float>(random.below(50)) / 4;
    averageNVP(names, average, averageDuration, sample, static_cast<float>(random.below(50)) / 8);
    std::unordered_map<std::string, std::string> map;
    hash.number(deserializeNVP(map, average));
    hashSorted(hash, map);
}

void byteStreams(Hash& hash, Random& random) {
    std::string const bytes = random.anyBytes(40);
    ByteStream source(bytes.data(), static_cast<unsigned>(bytes.size() + 1));
    ByteStream target(random.below(30));
    unsigned const from = random.below(20);
    unsigned const count = random.below(20);
    if (from + count <= source.size()) target.copy(source, from, random.below(50), count);
    target.resize(1 + random.below(80));
    hash.bytes({target.data(), target.size()});
}

struct NamedGroup {
    char const* name;
    void (*run)(Hash& hash, Random& random);
};

constexpr NamedGroup GROUPS[] = {
    {"integer-variants", integerVariants},
    {"floating-variants", floatingVariants},
    {"variant-texts", variantTexts},
    {"string-variants-as-integers", stringVariantsAsIntegers},
    {"string-variants-as-floating", stringVariantsAsFloating},
    {"string-variants", stringVariants},
    {"comparisons", comparisons},
    {"time-arithmetic", timeArithmetic},
    {"vms-times", vmsTimes},
    {"time-texts", timeTexts},
    {"parsed-times", parsedTimes},
    {"calendar-records", calendarRecords},
    {"time-scales", timeScales},
    {"time-axes", timeAxes},
    {"number-texts", numberTexts},
    {"searches", searches},
    {"escapes", escapes},
    {"pairs", pairs},
    {"averages", averages},
    {"byte-streams", byteStreams},
};

}  // namespace

namespace com::halvorin::test {

std::vector<Group> groupsOfOperations() {
    std::vector<Group> groups;
    std::uint64_t seed = 1;
    for (NamedGroup const& group : GROUPS) {
        auto const hashOf = [run = group.run, seed](int cases) {
            Hash hash;
            Random random(seed);
            for (int i = 0; i < cases; ++i)
                run(hash, random);
            return hash.value();
        };
        groups.push_back({group.name, hashOf});
        ++seed;
    }
    return groups;
}

}  // namespace com::halvorin::test

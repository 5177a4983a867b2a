#include "readings/replay.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <variant>

namespace monitor {

using com::halvorin::datatypes::ByteStream;

namespace {

constexpr unsigned int LARGEST_SIZE = std::numeric_limits<unsigned int>::max();
constexpr unsigned int USUAL_SIZE = 65536;

// A file that is open for reading for as long as this object lives.
class OpenFile {
public:
    explicit OpenFile(std::string const& path)
        : path_(path), descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY)) {
        if (descriptor_ < 0) fail();
    }
    ~OpenFile() { close(descriptor_); }
    OpenFile(OpenFile const&) = delete;
    OpenFile& operator=(OpenFile const&) = delete;

    /// The bytes to make room for at first: the size of a file. A pipe has no size.
    unsigned int expectedSize() const {
        struct stat status {};
        if (fstat(descriptor_, &status) != 0) fail();
        if (status.st_size == 0) return USUAL_SIZE;
        if (status.st_size > LARGEST_SIZE) failForSize();
        return static_cast<unsigned int>(status.st_size);
    }

    /// Reads some bytes, or 0 at the end.
    unsigned int read(char* bytes, unsigned int count) const {
        ssize_t result = 0;
        do {
            result = ::read(descriptor_, bytes, count);
        } while (result < 0 && errno == EINTR);
        if (result < 0) fail();
        return static_cast<unsigned int>(result);
    }

    [[noreturn]] void failForSize() const {
        throw std::runtime_error("cannot read " + path_ + ": 4 GiB and more are too large");
    }

private:
    [[noreturn]] void fail() const {
        throw std::system_error(errno, std::generic_category(), "cannot read " + path_);
    }

    std::string path_;
    int descriptor_;
};

}  // namespace

ByteStream readFile(std::string const& path) {
    OpenFile const file(path);
    ByteStream bytes(file.expectedSize());
    unsigned int used = 0;
    for (;;) {
        if (used == bytes.size()) {
            // Only one more byte shows whether the file ends here or the block is too small.
            char next = 0;
            if (file.read(&next, 1) == 0) break;
            if (used == LARGEST_SIZE) file.failForSize();
            bytes.resize(used + std::min(used, LARGEST_SIZE - used));
            bytes.buffer()[used++] = next;
        }
        unsigned int const count = file.read(bytes.buffer() + used, bytes.size() - used);
        if (count == 0) break;
        used += count;
    }
    if (used == 0) {
        bytes.clear();
    } else {
        bytes.resize(used);
    }
    return bytes;
}

Lines::Lines(ByteStream const& bytes) noexcept : rest_(bytes.data(), bytes.size()) {}

bool Lines::next(std::string_view& line) noexcept {
    if (rest_.empty()) return false;
    std::size_t const end = rest_.find('\n');
    line = rest_.substr(0, end);
    rest_.remove_prefix(std::min(rest_.size(), line.size() + 1));
    ++number_;
    return true;
}

unsigned long Lines::number() const noexcept { return number_; }

void replay(std::string const& path, std::function<void(Reading const&)> const& use,
            std::function<void(unsigned long, Malformed const&)> const& refuse) {
    ByteStream const bytes = readFile(path);
    Lines lines(bytes);
    for (std::string_view line; lines.next(line);) {
        auto const read = readLine(std::string(line));
        if (auto const* const reading = std::get_if<Reading>(&read)) {
            use(*reading);
        } else {
            refuse(lines.number(), std::get<Malformed>(read));
        }
    }
}

}  // namespace monitor

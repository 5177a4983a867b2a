#include "readings/line_reader.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace monitor {

namespace {

// Twice the longest line: beside a partial line there is always room for as many bytes again.
constexpr unsigned int BUFFER_SIZE = 2 * LineReader::LONGEST_LINE;

[[noreturn]] void fail(std::string const& path) {
    throw std::system_error(errno, std::generic_category(), "cannot read " + path);
}

}  // namespace

LineReader::LineReader(std::string path, std::function<void()> beforeReading)
    : path_(std::move(path)),
      beforeReading_(std::move(beforeReading)),
      descriptor_(open(path_.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY)),
      buffer_(BUFFER_SIZE) {
    if (descriptor_ < 0) fail(path_);
}

LineReader::~LineReader() { close(descriptor_); }

bool LineReader::next() {
    unsigned int searched = 0;  // bytes after `begin_` that contain no newline
    for (;;) {
        char const* const bytes = buffer_.data() + begin_;
        unsigned int const count = end_ - begin_;
        void const* const newline = std::memchr(bytes + searched, '\n', count - searched);
        if (newline != nullptr) {
            auto const size = static_cast<unsigned int>(static_cast<char const*>(newline) - bytes);
            take(size);
            ++begin_;
            return true;
        }
        if (count > LONGEST_LINE) {
            isSkipping_ = true;
            begin_ = end_;
        }
        searched = end_ - begin_;
        if (readMore()) continue;
        if (searched == 0 && !isSkipping_) return false;
        take(searched);
        return true;
    }
}

// Moves the partial line to the start of the buffer, and reads what follows it. False at the end.
bool LineReader::readMore() {
    std::memmove(buffer_.buffer(), buffer_.data() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
    if (beforeReading_) beforeReading_();
    ssize_t count = 0;
    do {
        count = read(descriptor_, buffer_.buffer() + end_, BUFFER_SIZE - end_);
    } while (count < 0 && errno == EINTR);
    if (count < 0) fail(path_);
    end_ += static_cast<unsigned int>(count);
    bytesRead_ += static_cast<unsigned long>(count);
    return count > 0;
}

unsigned long LineReader::size() const noexcept {
    struct stat status {};
    bool const isFile = fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode);
    return isFile ? static_cast<unsigned long>(status.st_size) : 0;
}

// Makes the next `size` bytes the line, or the end of a line that is too long.
void LineReader::take(unsigned int size) noexcept {
    isTooLong_ = std::exchange(isSkipping_, false) || size > LONGEST_LINE;
    line_ = std::string_view(buffer_.data() + begin_, isTooLong_ ? 0 : size);
    begin_ += size;
    ++number_;
}

}  // namespace monitor

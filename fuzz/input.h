#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

// The bytes of an input, taken from the front as arguments. After the last byte, each value that is
// taken is zero or empty.
class Input {
public:
    Input(std::uint8_t const* data, std::size_t size) : data_(data), size_(size) {}

    bool isEmpty() const { return size_ == 0; }

    template <typename Value>
    Value take() {
        Value value{};
        std::size_t const count = std::min(sizeof value, size_);
        if (count > 0) std::memcpy(&value, data_, count);
        skip(count);
        return value;
    }

    bool takeBool() { return takeBelow(2) != 0; }

    /// Takes one byte, as a number below `limit`.
    unsigned int takeBelow(unsigned int limit) { return take<std::uint8_t>() % limit; }

    /// Takes the bytes before the next line feed, and drops the line feed. Without a line feed,
    /// takes the rest.
    std::string takeLine() {
        std::uint8_t const* const end = std::find(data_, data_ + size_, std::uint8_t{'\n'});
        std::string const line = first(static_cast<std::size_t>(end - data_));
        skip(std::min(line.size() + 1, size_));
        return line;
    }

    std::string takeRest() {
        std::string const rest = first(size_);
        skip(size_);
        return rest;
    }

private:
    std::string first(std::size_t count) const {
        // The pointer may be null, from which no std::string may be made.
        if (count == 0) return {};
        return {reinterpret_cast<char const*>(data_), count};
    }

    void skip(std::size_t count) {
        data_ += count;
        size_ -= count;
    }

    std::uint8_t const* data_;
    std::size_t size_;
};

/// Ends the program if the library and its model differ; the fuzzer then prints the input.
inline void expectSame(bool same, char const* what) {
    if (same) return;
    std::fprintf(stderr, "%s: the library and its model differ\n", what);
    std::abort();
}

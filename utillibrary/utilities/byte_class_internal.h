#pragma once

#include <cctype>
#include <cstdio>

// Bytes as the calling thread's C locale classifies them. Each byte is taken as a signed char, so
// that 0xFF is -1, which is libc's EOF: of no class, and its own lower case, whatever the locale
// says of the character 255. KEPT(byte-ff-is-eof)
namespace com::halvorin::internal {

#ifdef __GLIBC__

// glibc's own tables, which stand behind `isspace` and `tolower` there; its <ctype.h> promises an
// entry for every signed char and for EOF. Fetched once, they spare a call a byte.

class ByteClasses {
public:
    bool isBlank(char c) const noexcept { return has(c, _ISspace); }
    bool isGraphic(char c) const noexcept { return has(c, _ISgraph); }
    bool isHexDigit(char c) const noexcept { return has(c, _ISxdigit); }

private:
    // KEPT(byte-ff-is-eof): no unsigned char, for which 0xFF would be a character.
    bool has(char c, int wanted) const noexcept {
        return (table_[static_cast<signed char>(c)] & wanted) != 0;
    }

    unsigned short const* table_ = *__ctype_b_loc();
};

class LowerCase {
public:
    int operator()(char c) const noexcept { return table_[static_cast<signed char>(c)]; }

private:
    int const* table_ = *__ctype_tolower_loc();
};

#else

// The same by the functions. They take EOF or an unsigned char, and a signed char other than EOF
// has the class of the unsigned one.
inline int characterOf(char c) noexcept {
    auto const value = static_cast<signed char>(c);
    return value == EOF ? EOF : static_cast<unsigned char>(c);
}

class ByteClasses {
public:
    bool isBlank(char c) const noexcept { return std::isspace(characterOf(c)) != 0; }
    bool isGraphic(char c) const noexcept { return std::isgraph(characterOf(c)) != 0; }
    bool isHexDigit(char c) const noexcept { return std::isxdigit(characterOf(c)) != 0; }
};

class LowerCase {
public:
    int operator()(char c) const noexcept { return std::tolower(characterOf(c)); }
};

#endif

}  // namespace com::halvorin::internal

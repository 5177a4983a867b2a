#pragma once

#include <cctype>
#include <cstdio>

// Bytes as the calling thread's C locale classifies them. Each byte is taken as a signed char, so
// that 0xFF is -1, which is libc's EOF: of no class, and its own lower case, whatever the locale
// says of the character 255. KEPT(byte-ff-is-eof)
namespace com::halvorin::internal {

// ---- the rule itself: libc's functions, for every libc

// They take EOF or an unsigned char, and a signed char other than EOF has the class of the unsigned
// one.
inline int characterOf(char c) noexcept {
    auto const value = static_cast<signed char>(c);
    return value == EOF ? EOF : static_cast<unsigned char>(c);
}

class CalledClasses {
public:
    // NOLINTBEGIN(readability-convert-member-functions-to-static): as the class with tables has it.
    bool isBlank(char c) const noexcept { return std::isspace(characterOf(c)) != 0; }
    bool isGraphic(char c) const noexcept { return std::isgraph(characterOf(c)) != 0; }
    bool isHexDigit(char c) const noexcept { return std::isxdigit(characterOf(c)) != 0; }
    // NOLINTEND(readability-convert-member-functions-to-static)

    /// Whether the bytes from '!' to '~' are all graphic.
    bool asciiIsGraphic() const noexcept {
        bool all = true;
        for (int c = '!'; c <= '~'; ++c)
            all &= isGraphic(static_cast<char>(c));
        return all;
    }

    /// Whether any other byte is. There are character sets with letters among the control bytes.
    bool othersAreGraphic() const noexcept {
        bool any = isGraphic(0x7F);
        for (int c = -128; c <= ' '; ++c)
            any |= isGraphic(static_cast<char>(c));
        return any;
    }

    /// Whether the first are and no others, as in "C" and the locales of UTF-8.
    bool graphicIsUsual() const noexcept { return asciiIsGraphic() && !othersAreGraphic(); }
};

class CalledLowerCase {
public:
    int operator()(char c) const noexcept { return std::tolower(characterOf(c)); }
};

#ifdef __GLIBC__

// ---- glibc's own tables, which stand behind those functions there

// <ctype.h> promises an entry for every signed char and for EOF. Fetched once, they spare a call a
// byte.

class TabledClasses {
public:
    bool isBlank(char c) const noexcept { return has(c, _ISspace); }
    bool isGraphic(char c) const noexcept { return has(c, _ISgraph); }
    bool isHexDigit(char c) const noexcept { return has(c, _ISxdigit); }

    // Both without a branch, so that the compiler looks at many entries at once.
    bool asciiIsGraphic() const noexcept {
        unsigned short inAll = _ISgraph;
        for (int c = '!'; c <= '~'; ++c)
            inAll &= table_[c];
        return inAll != 0;
    }
    bool othersAreGraphic() const noexcept {
        unsigned short inAny = table_[0x7F];
        for (int c = -128; c <= ' '; ++c)
            inAny |= table_[c];
        return (inAny & _ISgraph) != 0;
    }

    bool graphicIsUsual() const noexcept { return asciiIsGraphic() && !othersAreGraphic(); }

private:
    // KEPT(byte-ff-is-eof): no unsigned char, for which 0xFF would be a character.
    bool has(char c, int wanted) const noexcept {
        return (table_[static_cast<signed char>(c)] & wanted) != 0;
    }

    unsigned short const* table_ = *__ctype_b_loc();
};

class TabledLowerCase {
public:
    int operator()(char c) const noexcept { return table_[static_cast<signed char>(c)]; }

private:
    int const* table_ = *__ctype_tolower_loc();
};

using ByteClasses = TabledClasses;
using LowerCase = TabledLowerCase;

#else

using ByteClasses = CalledClasses;
using LowerCase = CalledLowerCase;

#endif

}  // namespace com::halvorin::internal

#pragma once

#include <cctype>
#include <climits>
#include <cstdio>

// The classes of bytes under the C locale of the calling thread. Each byte is taken as a signed
// char, so that 0xFF is -1, which is libc's EOF. EOF is of no class and its own lower case,
// whatever the locale says of the character 255. KEPT(byte-ff-is-eof)
namespace com::halvorin::internal {

// ---- general path: the functions that every libc has

// The argument of isspace and similar functions, which take EOF or the value of an unsigned char.
inline int characterOf(char c) noexcept {
    auto const value = static_cast<signed char>(c);
    return value == EOF ? EOF : static_cast<unsigned char>(c);
}

class ClassesByFunction {
public:
    // NOLINTBEGIN(readability-convert-member-functions-to-static): as in the class with tables.
    bool isWhitespace(char c) const noexcept { return std::isspace(characterOf(c)) != 0; }
    bool isGraphic(char c) const noexcept { return std::isgraph(characterOf(c)) != 0; }
    bool isHexDigit(char c) const noexcept { return std::isxdigit(characterOf(c)) != 0; }
    // NOLINTEND(readability-convert-member-functions-to-static)

    /// True if all bytes from '!' to '~' are graphic.
    bool asciiIsGraphic() const noexcept {
        bool all = true;
        for (int c = '!'; c <= '~'; ++c)
            all &= isGraphic(static_cast<char>(c));
        return all;
    }

    /// True if any other byte is graphic. Some character sets have letters among the control bytes.
    bool othersAreGraphic() const noexcept {
        bool any = isGraphic(0x7F);
        for (int c = SCHAR_MIN; c <= ' '; ++c)
            any |= isGraphic(static_cast<char>(c));
        return any;
    }

    /// True if exactly the bytes from '!' to '~' are graphic, as in "C" and the locales of UTF-8.
    bool graphicIsUsual() const noexcept { return asciiIsGraphic() && !othersAreGraphic(); }
};

class LowerCaseByFunction {
public:
    int operator()(char c) const noexcept { return std::tolower(characterOf(c)); }
};

#ifdef __GLIBC__

// ---- fast path: the tables from which glibc's functions read

// glibc's <ctype.h> promises an entry for every signed char and for EOF. An object fetches its
// table once; the functions fetch it for each byte.

class ClassesByTable {
public:
    bool isWhitespace(char c) const noexcept { return has(c, _ISspace); }
    bool isGraphic(char c) const noexcept { return has(c, _ISgraph); }
    bool isHexDigit(char c) const noexcept { return has(c, _ISxdigit); }

    // The next two have no branch in the loop, so that the compiler can use vectors.
    bool asciiIsGraphic() const noexcept {
        unsigned short inAll = _ISgraph;
        for (int c = '!'; c <= '~'; ++c)
            inAll &= table_[c];
        return inAll != 0;
    }
    bool othersAreGraphic() const noexcept {
        unsigned short inAny = table_[0x7F];
        for (int c = SCHAR_MIN; c <= ' '; ++c)
            inAny |= table_[c];
        return (inAny & _ISgraph) != 0;
    }

    bool graphicIsUsual() const noexcept { return asciiIsGraphic() && !othersAreGraphic(); }

private:
    // KEPT(byte-ff-is-eof): the index is signed. As an unsigned char, 0xFF would be a character.
    bool has(char c, int wanted) const noexcept {
        return (table_[static_cast<signed char>(c)] & wanted) != 0;
    }

    unsigned short const* table_ = *__ctype_b_loc();
};

class LowerCaseByTable {
public:
    int operator()(char c) const noexcept { return table_[static_cast<signed char>(c)]; }

private:
    int const* table_ = *__ctype_tolower_loc();
};

using ByteClasses = ClassesByTable;
using LowerCase = LowerCaseByTable;

#else

using ByteClasses = ClassesByFunction;
using LowerCase = LowerCaseByFunction;

#endif

}  // namespace com::halvorin::internal

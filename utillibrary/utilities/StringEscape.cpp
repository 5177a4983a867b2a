#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "utillibrary/internal/attributes.h"
#include "utillibrary/internal/byte_block.h"
#include "utillibrary/internal/byte_class.h"
#include "utillibrary/internal/decimal.h"
#include "utillibrary/utilities/StringEscape_internal.h"
#include "utillibrary/utilities/StringUtilities.h"

// escapeString. StringUnescape.cpp has the other direction.
namespace com::halvorin::internal {

namespace {

// ---- what each byte becomes, under any locale

// One to six characters, as a word that is stored whole: the characters in the low bytes, which a
// little-endian processor stores first, and their number in the top byte.
using Escape = std::uint64_t;
using EscapeTable = std::array<Escape, 256>;
static_assert(std::endian::native == std::endian::little);

constexpr Escape makeEscape(std::string_view characters) noexcept {
    Escape escape = characters.size();
    escape <<= 56;
    for (std::size_t i = 0; i < characters.size(); ++i) {
        escape |= Escape{static_cast<unsigned char>(characters[i])} << (8 * i);
    }
    return escape;
}

constexpr std::size_t sizeOf(Escape escape) noexcept { return escape >> 56; }

// A string with a backslash gives a result that begins so.
constexpr std::string_view START_OVER = "\\\\";
constexpr Escape BACKSLASH_ESCAPE = makeEscape(START_OVER);

constexpr Escape escapeOf(unsigned char byte) noexcept {
    for (auto const& [named, letter] : LETTER_ESCAPES) {
        if (byte != static_cast<unsigned char>(named)) continue;
        char const characters[] = {'\\', letter};
        return makeEscape({characters, sizeof characters});
    }
    // KEPT(escape-widens-by-sign): the upper digits repeat the byte's sign.
    char const sign = byte < 0x80 ? '0' : 'f';
    char const high = HEXADECIMAL_DIGITS[byte >> 4];
    char const low = HEXADECIMAL_DIGITS[byte & 0xF];
    char const characters[] = {'\\', 'u', sign, sign, high, low};
    return makeEscape({characters, sizeof characters});
}

// What each byte becomes where `isGraphic` says which bytes are graphic.
template <typename IsGraphic>
constexpr EscapeTable makeTable(bool keepSpace, IsGraphic isGraphic) noexcept {
    EscapeTable table{};
    for (unsigned i = 0; i < table.size(); ++i) {
        auto const byte = static_cast<unsigned char>(i);
        auto const c = static_cast<char>(byte);
        bool const stays = (c != '"' && c != '\\' && isGraphic(c)) || (c == ' ' && keepSpace);
        table[i] = stays ? makeEscape({&c, 1}) : escapeOf(byte);
    }
    return table;
}

EscapeTable tableInForce(bool keepSpace) noexcept {
    return makeTable(keepSpace, [classes = ByteClasses()](char c) { return classes.isGraphic(c); });
}

char* writeOne(char* out, char c, EscapeTable const& table) noexcept {
    Escape const escape = table[static_cast<unsigned char>(c)];
    // The builtin function itself: _FORTIFY_SOURCE would make a call of libc for each byte of text.
    __builtin_memcpy(out, &escape, sizeof escape);
    return out + sizeOf(escape);
}

// Writes into `escapedRoom` bytes.
char* writeWithRoom(char* out, std::string_view text, EscapeTable const& table) noexcept {
    char* const start = out;
    for (char const c : text) {
        // KEPT(backslash-starts-over): its own escape replaces what was written before it.
        if (c == '\\') out = start;
        out = writeOne(out, c, table);
    }
    return out;
}

// Writes a string without a backslash, and nothing after its escapes: for the last seven bytes
// there may be no room for whole words. Eight bytes are read at once. Otherwise the compiler reads
// each byte after the store of the one before it, which might have changed it.
void writeExactly(char* out, std::string_view text, EscapeTable const& table) noexcept {
    constexpr std::size_t STEP = sizeof(std::uint64_t);
    for (; text.size() >= 2 * STEP; text.remove_prefix(STEP)) {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, text.data(), STEP);
        for (std::size_t i = 0; i < STEP; ++i, bytes >>= 8) {
            out = writeOne(out, static_cast<char>(bytes), table);
        }
    }
    for (; text.size() >= STEP; text.remove_prefix(1))
        out = writeOne(out, text.front(), table);
    for (char const c : text) {
        Escape const escape = table[static_cast<unsigned char>(c)];
        std::memcpy(out, &escape, sizeOf(escape));
        out += sizeOf(escape);
    }
}

std::size_t sizeByTable(std::string_view text, EscapeTable const& table) noexcept {
    std::size_t size = 0;
    for (char const c : text)
        size += sizeOf(table[static_cast<unsigned char>(c)]);
    return size;
}

// ---- what each byte becomes where exactly the bytes from '!' to '~' are graphic

constexpr bool isUsualGraphic(char c) noexcept { return c >= '!' && c <= '~'; }

constexpr EscapeTable USUAL_TABLE = makeTable(false, isUsualGraphic);
constexpr EscapeTable USUAL_TABLE_KEEPING_SPACE = makeTable(true, isUsualGraphic);

constexpr EscapeTable const& usualTable(bool keepSpace) noexcept {
    return keepSpace ? USUAL_TABLE_KEEPING_SPACE : USUAL_TABLE;
}

// As `staysAsUsual`, the next two take one byte or a block of them, and none may be a backslash.

template <typename Byte>
constexpr Byte hasLetter(Byte bytes) noexcept {
    return static_cast<Byte>((between(bytes, '\b', '\r') & ~equal(bytes, '\v')) |
                             equal(bytes, '"'));
}

// Six characters; five fewer for a byte that stays, four fewer for one that has a letter.
template <typename Byte>
constexpr Byte usualSizes(Byte bytes, bool keepSpace) noexcept {
    return static_cast<Byte>(6 - (staysAsUsual(bytes, keepSpace) & 5) - (hasLetter(bytes) & 4));
}

// The predicates decide how much is allocated, and the table decides how much is written.
consteval bool predicatesAgreeWithTheTable(bool keepSpace) noexcept {
    for (unsigned i = 0; i < 256; ++i) {
        auto const byte = static_cast<unsigned char>(i);
        Escape const escape = usualTable(keepSpace)[i];
        bool const stays = staysAsUsual(byte, keepSpace) != 0;
        bool const agree = byte == '\\' ? escape == BACKSLASH_ESCAPE
                                        : usualSizes(byte, keepSpace) == sizeOf(escape) &&
                                              stays == (sizeOf(escape) == 1);
        if (!agree) return false;
    }
    return true;
}
static_assert(predicatesAgreeWithTheTable(false) && predicatesAgreeWithTheTable(true),
              "staysAsUsual and hasLetter must say of each byte what the table says");

// `sizeByTable` for a usual table.
std::size_t usualSize(std::string_view text, bool keepSpace) noexcept {
    constexpr std::size_t STEP = 32 * sizeof(Bytes);  // 32 times 6 fits a byte
    std::size_t size = 0;
    std::size_t done = 0;
    while (text.size() - done >= sizeof(Bytes)) {
        std::size_t const end = std::min(done + STEP, text.size());
        Bytes sizes{};
        for (; done + sizeof(Bytes) <= end; done += sizeof(Bytes))
            sizes += usualSizes(loadBytes(&text[done]), keepSpace);
        size += sum(sizes);
    }
    return size + sizeByTable(text.substr(done), usualTable(keepSpace));
}

// The number of bytes at the front of a string that are not escaped, in whole steps.
// Takes  text: without a backslash
std::size_t plainSize(std::string_view text, bool keepSpace) noexcept {
    constexpr std::size_t STEP = 4 * sizeof(Bytes);
    std::size_t plain = 0;
    for (; plain + STEP <= text.size(); plain += STEP) {
        Bytes stay = ~Bytes{};
        for (std::size_t i = 0; i < STEP; i += sizeof(Bytes))
            stay &= staysAsUsual(loadBytes(&text[plain + i]), keepSpace);
        if (any(~stay)) break;
    }
    return plain;
}

// ---- whole strings

// A string of up to this size is copied if no byte is escaped; otherwise its result is written to
// the stack first. In a longer string the last backslash is searched first.
constexpr std::size_t SHORT_SIZE = 64;

// What a result consists of: two pieces as they are, then the escapes of the third.
struct Pieces {
    std::string_view start;
    std::string_view plain;
    std::string_view rest;  // without a backslash
};

// KEPT(backslash-starts-over): all before the last backslash would be written and dropped.
Pieces afterLastBackslash(std::string_view text) noexcept {
    void const* const found = memrchr(text.data(), '\\', text.size());
    if (found == nullptr) return {{}, {}, text};
    auto const position = static_cast<std::size_t>(static_cast<char const*>(found) - text.data());
    return {START_OVER, {}, text.substr(position + 1)};
}

std::string assembled(Pieces const& pieces, std::size_t restSize, EscapeTable const& table) {
    auto const& [start, plain, rest] = pieces;
    std::size_t const copied = start.size() + plain.size();
    std::string result;
    result.reserve(copied + restSize);
    result.append(start).append(plain).resize(copied + restSize);
    writeExactly(&result[copied], rest, table);
    return result;
}

}  // namespace

std::string escapeByLocale(std::string_view text, bool keepSpace) {
    EscapeTable const table = tableInForce(keepSpace);
    Pieces const pieces = afterLastBackslash(text);
    return assembled(pieces, sizeByTable(pieces.rest, table), table);
}

std::string escapeAsUsual(std::string_view text, bool keepSpace) {
    if (text.size() <= SHORT_SIZE) {
        UTILLIBRARY_UNINITIALIZED std::array<char, escapedRoom(SHORT_SIZE)> result;
        return {result.data(), writeWithRoom(result.data(), text, usualTable(keepSpace))};
    }
    Pieces pieces = afterLastBackslash(text);
    std::size_t const plain = plainSize(pieces.rest, keepSpace);
    if (plain == text.size()) return std::string(text);
    pieces.plain = pieces.rest.substr(0, plain);
    pieces.rest.remove_prefix(plain);
    return assembled(pieces, usualSize(pieces.rest, keepSpace), usualTable(keepSpace));
}

std::string escaped(std::string_view text, Escaping const& escaping) {
    if (!escaping.usual) return escapeByLocale(text, escaping.keepSpace);
    return escapeAsUsual(text, escaping.keepSpace);
}

char* writeEscaped(char* out, std::string_view text, Escaping const& escaping) noexcept {
    bool const keepSpace = escaping.keepSpace;
    if (!escaping.usual) return writeWithRoom(out, text, tableInForce(keepSpace));
    if (auto const end = copyPlain<std::uint64_t>(out, text, keepSpace)) return *end;
    if (auto const end = copyPlain<std::uint32_t>(out, text, keepSpace)) return *end;
    return writeWithRoom(out, text, usualTable(keepSpace));
}

}  // namespace com::halvorin::internal

namespace com::halvorin::utilities {

std::string escapeString(std::string const& text, bool keepSpace) {
    using namespace internal;
    ByteClasses const classes;
    bool const asciiIsGraphic = classes.asciiIsGraphic();
    // For a plain string it does not matter whether other bytes are graphic. That question takes as
    // long as the one above.
    bool const shortAndPlain = text.size() <= SHORT_SIZE && isPlain(text, keepSpace);
    if (shortAndPlain && asciiIsGraphic) return text;
    return escaped(text, {keepSpace, asciiIsGraphic && !classes.othersAreGraphic()});
}

}  // namespace com::halvorin::utilities

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "utillibrary/internal/byte_block.h"
#include "utillibrary/internal/byte_class.h"
#include "utillibrary/utilities/StringEscape_internal.h"
#include "utillibrary/utilities/StringUtilities.h"

// The escaped form of texts, written. StringUnescape.cpp reads it.
namespace com::halvorin::internal {

namespace {

// ---- writing

// What one byte becomes, one to six characters, in a word that is stored whole: the characters from
// its low end on, as a little-endian processor stores them, and their number in the top byte.
using Escape = std::uint64_t;
using EscapeTable = std::array<Escape, 256>;

constexpr Escape makeEscape(std::string_view characters) noexcept {
    Escape escape = characters.size();
    escape <<= 56;
    for (std::size_t i = 0; i < characters.size(); ++i) {
        escape |= Escape{static_cast<unsigned char>(characters[i])} << (8 * i);
    }
    return escape;
}

constexpr std::size_t sizeOf(Escape escape) noexcept { return escape >> 56; }

// The letter that names a byte after a backslash, or 0.
constexpr char letterOf(unsigned byte) noexcept {
    switch (byte) {
        case '\\':
            return '\\';
        case '\f':
            return 'f';
        case '\n':
            return 'n';
        case '\r':
            return 'r';
        case '\t':
            return 't';
        case '"':
            return '"';
        case '\b':
            return 'b';
        default:
            return 0;
    }
}

constexpr Escape escapeOf(unsigned byte) noexcept {
    constexpr char DIGITS[] = "0123456789abcdef";
    if (char const letter = letterOf(byte); letter != 0) {
        char const characters[] = {'\\', letter};
        return makeEscape({characters, sizeof characters});
    }
    // KEPT(escape-widens-by-sign): the upper digits repeat the byte's sign.
    char const sign = byte < 0x80 ? '0' : 'f';
    char const characters[] = {'\\', 'u', sign, sign, DIGITS[byte >> 4], DIGITS[byte & 0xF]};
    return makeEscape({characters, sizeof characters});
}

// What each byte becomes in a locale whose graphic bytes are known.
template <typename IsGraphic>
constexpr EscapeTable makeTable(bool keepSpace, IsGraphic isGraphic) noexcept {
    EscapeTable table{};
    for (unsigned byte = 0; byte < table.size(); ++byte) {
        auto const c = static_cast<char>(byte);
        bool const plain = (c != '"' && c != '\\' && isGraphic(c)) || (c == ' ' && keepSpace);
        table[byte] = plain ? makeEscape({&c, 1}) : escapeOf(byte);
    }
    return table;
}

// The tables of a locale whose graphic bytes are the usual ones.
constexpr bool isGraphicAscii(char c) noexcept { return c > ' ' && c < 0x7F; }

constexpr EscapeTable USUAL_TABLE = makeTable(false, isGraphicAscii);
constexpr EscapeTable USUAL_TABLE_KEEPING_SPACE = makeTable(true, isGraphicAscii);

constexpr EscapeTable const& usualTable(bool keepSpace) noexcept {
    return keepSpace ? USUAL_TABLE_KEEPING_SPACE : USUAL_TABLE;
}

// The rule itself: the table of the locale in force, whatever it has graphic.
EscapeTable tableInForce(bool keepSpace) noexcept {
    return makeTable(keepSpace, [classes = ByteClasses()](char c) { return classes.isGraphic(c); });
}

char* writeOne(char* out, char c, EscapeTable const& table) noexcept {
    Escape const escape = table[static_cast<unsigned char>(c)];
    std::memcpy(out, &escape, sizeof escape);
    return out + sizeOf(escape);
}

// For texts with a backslash anywhere. Each byte is stored with a whole word's room.
char* writeShort(char* out, std::string_view text, EscapeTable const& table) noexcept {
    char* const start = out;
    for (char const c : text) {
        // KEPT(backslash-starts-over): what was written before it is written over.
        if (c == '\\') out = start;
        out = writeOne(out, c, table);
    }
    return out;
}

// For texts without one, of any length. Eight bytes are read at once, so that no store keeps the
// next byte waiting; the last seven of them are written without a word's room.
void writeLong(char* out, std::string_view text, EscapeTable const& table) noexcept {
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

// ---- the usual table, on sixteen bytes at once

// Which bytes stay as they are, of bytes without a backslash.
Bytes plainBytes(Bytes bytes, bool keepSpace) noexcept {
    return between(bytes, keepSpace ? ' ' : '!', '~') & ~equal(bytes, '"');
}

bool allPlain(Bytes bytes, bool keepSpace) noexcept {
    return !any(~plainBytes(bytes, keepSpace) | equal(bytes, '\\'));
}

// The first word of a text and the last, which may overlap, over and over.
template <typename Word>
Bytes endsOf(std::string_view text) noexcept {
    std::array<Word, sizeof(Bytes) / sizeof(Word)> words;
    std::memcpy(words.data(), text.data(), sizeof(Word));
    std::memcpy(words.data() + 1, text.data() + text.size() - sizeof(Word), sizeof(Word));
    for (std::size_t i = 2; i < words.size(); ++i)
        words[i] = words[0];
    return std::bit_cast<Bytes>(words);
}

// Whether all bytes of a text stay as they are.
bool isPlain(std::string_view text, bool keepSpace) noexcept {
    constexpr std::size_t BLOCK = sizeof(Bytes);
    std::size_t const size = text.size();
    if (size >= BLOCK) {
        for (std::size_t i = 0; i + BLOCK < size; i += BLOCK) {
            if (!allPlain(loadBytes(&text[i]), keepSpace)) return false;
        }
        return allPlain(loadBytes(&text[size - BLOCK]), keepSpace);
    }
    if (size >= 8) return allPlain(endsOf<std::uint64_t>(text), keepSpace);
    if (size >= 4) return allPlain(endsOf<std::uint32_t>(text), keepSpace);
    if (size >= 2) return allPlain(endsOf<std::uint16_t>(text), keepSpace);
    return size == 0 || allPlain(endsOf<std::uint8_t>(text), keepSpace);
}

// Owns plain texts of one to two words, which are copied. False is no answer.
template <typename Word>
bool copyPlain(char* out, std::string_view text, bool keepSpace) noexcept {
    if (text.size() < sizeof(Word) || text.size() > 2 * sizeof(Word)) return false;
    if (!allPlain(endsOf<Word>(text), keepSpace)) return false;
    std::size_t const last = text.size() - sizeof(Word);
    std::memcpy(out, text.data(), sizeof(Word));
    std::memcpy(out + last, text.data() + last, sizeof(Word));
    return true;
}

// How many bytes from the front stay as they are, in whole steps.
std::size_t plainSize(std::string_view text, bool keepSpace) noexcept {
    constexpr std::size_t STEP = 4 * sizeof(Bytes);
    std::size_t size = 0;
    for (; size + STEP <= text.size(); size += STEP) {
        Bytes plain = ~Bytes{};
        for (std::size_t i = 0; i < STEP; i += sizeof(Bytes)) {
            plain &= plainBytes(loadBytes(&text[size + i]), keepSpace);
        }
        if (any(~plain)) break;
    }
    return size;
}

// `sizeByTable` for a usual table.
std::size_t usualSize(std::string_view text, bool keepSpace) noexcept {
    constexpr std::size_t STEP = 32 * sizeof(Bytes);  // 32 times 6 fits a byte
    std::size_t size = 0;
    std::size_t done = 0;
    while (text.size() - done >= sizeof(Bytes)) {
        std::size_t const end = std::min(done + STEP, text.size());
        Bytes sizes{};
        for (; done + sizeof(Bytes) <= end; done += sizeof(Bytes)) {
            Bytes const bytes = loadBytes(&text[done]);
            Bytes const named =
                (between(bytes, '\b', '\r') & ~equal(bytes, '\v')) | equal(bytes, '"');
            // Six characters, five less for a plain byte, four less for a named one.
            sizes += 6 - (plainBytes(bytes, keepSpace) & 5) - (named & 4);
        }
        size += sum(sizes);
    }
    return size + sizeByTable(text.substr(done), usualTable(keepSpace));
}

// ---- whole texts

// What remains of a text of which only what stands behind the last backslash counts.
struct Remainder {
    std::string_view start;  // what the result begins with
    std::string_view text;
};

// KEPT(backslash-starts-over): all before the last backslash would be written and dropped.
Remainder afterLastBackslash(std::string_view text) noexcept {
    void const* const found = memrchr(text.data(), '\\', text.size());
    if (found == nullptr) return {{}, text};
    auto const position = static_cast<std::size_t>(static_cast<char const*>(found) - text.data());
    return {"\\\\", text.substr(position + 1)};
}

// A text of which the first bytes stay as they are, and the rest takes `size` by a table.
std::string assembled(Remainder const& remainder, std::size_t plain, std::size_t size,
                      EscapeTable const& table) {
    auto const [start, text] = remainder;
    std::string result(start.size() + plain + size, '\0');
    char* const out = std::copy(start.begin(), start.end(), result.data());
    std::memcpy(out, text.data(), plain);
    writeLong(out + plain, text.substr(plain), table);
    return result;
}

// Owns the usual table.
std::string escapedAsUsual(Remainder const& remainder, bool keepSpace) {
    auto const [start, text] = remainder;
    std::size_t const plain = plainSize(text, keepSpace);
    if (plain == text.size() && start.empty()) return std::string(text);
    std::size_t const size = usualSize(text.substr(plain), keepSpace);
    return assembled(remainder, plain, size, usualTable(keepSpace));
}

std::string escapedLong(std::string_view text, Escaping const& escaping) {
    Remainder const remainder = afterLastBackslash(text);
    if (escaping.usual) return escapedAsUsual(remainder, escaping.keepSpace);
    EscapeTable const table = tableInForce(escaping.keepSpace);
    return assembled(remainder, 0, sizeByTable(remainder.text, table), table);
}

constexpr std::size_t SHORT = 64;  // what is written on the stack first

}  // namespace

char* writeEscaped(char* out, std::string_view text, Escaping const& escaping) noexcept {
    bool const keepSpace = escaping.keepSpace;
    if (!escaping.usual) return writeShort(out, text, tableInForce(keepSpace));
    if (copyPlain<std::uint64_t>(out, text, keepSpace) ||
        copyPlain<std::uint32_t>(out, text, keepSpace)) {
        return out + text.size();
    }
    return writeShort(out, text, usualTable(keepSpace));
}

std::string escaped(std::string_view text, Escaping const& escaping) {
    if (text.size() > SHORT || !escaping.usual) return escapedLong(text, escaping);
    std::array<char, escapedRoom(SHORT)> result;
    return {result.data(), writeShort(result.data(), text, usualTable(escaping.keepSpace))};
}

}  // namespace com::halvorin::internal

namespace com::halvorin::utilities {

std::string escapeString(std::string const& text, bool keepSpace) {
    using namespace internal;
    ByteClasses const classes;
    bool const asciiIsGraphic = classes.asciiIsGraphic();
    // What a plain text is made of is known now; the rest of the question takes as long as a copy.
    if (asciiIsGraphic && text.size() <= SHORT && isPlain(text, keepSpace)) return text;
    return escaped(text, {keepSpace, asciiIsGraphic && !classes.othersAreGraphic()});
}

}  // namespace com::halvorin::utilities

#include "utillibrary/utilities/StringNVP.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <functional>

#include "utillibrary/internal/byte_block.h"
#include "utillibrary/internal/byte_class.h"
#include "utillibrary/internal/trimmed.h"
#include "utillibrary/utilities/StringEscape_internal.h"
#include "utillibrary/utilities/StringNVP_internal.h"

namespace com::halvorin::internal {

// ---- reading fields

FieldReader::FieldReader(std::string_view text, std::string_view separators) noexcept
    : next_(text.data()),
      end_(text.data() + text.size()),
      fieldStart_(text.data()),
      separatorCount_(separators.size()) {
    if (separatorCount_ <= COMPARED_SEPARATORS) {
        separators.copy(separators_.data(), separatorCount_);
    } else {
        for (char const c : separators)
            isSeparator_[static_cast<unsigned char>(c)] = true;
    }
    readBlock();
}

// Finds the separators of the next 64 bytes, or of the fewer bytes that are left.
void FieldReader::readBlock() noexcept {
    block_ = next_;
    separatorBits_ = separatorsAt(block_);
    next_ += sizeOfBlockAt(block_);
}

std::size_t FieldReader::sizeOfBlockAt(char const* position) const noexcept {
    return std::min(BITS_PER_BLOCK, static_cast<std::size_t>(end_ - position));
}

// The separators of the block at that position, one bit for each byte.
std::uint64_t FieldReader::separatorsAt(char const* position) const noexcept {
    std::size_t const size = sizeOfBlockAt(position);
    if (separatorCount_ > COMPARED_SEPARATORS) return separatorsLookedUp(position, size);
    std::uint64_t bits = 0;
    std::size_t i = 0;
    // For a whole block the compiler knows how often this loop runs, which is faster.
    if (size == BITS_PER_BLOCK) {
        for (; i < BITS_PER_BLOCK; i += sizeof(Bytes))
            bits |= separatorsCompared(position + i) << i;
        return bits;
    }
    for (; i + sizeof(Bytes) <= size; i += sizeof(Bytes))
        bits |= separatorsCompared(position + i) << i;
    if (i == size) return bits;
    std::array<char, sizeof(Bytes)> rest{};
    std::memcpy(rest.data(), position + i, size - i);
    std::uint64_t const mask = (std::uint64_t{1} << (size - i)) - 1;
    return bits | (separatorsCompared(rest.data()) & mask) << i;
}

std::uint64_t FieldReader::separatorsLookedUp(char const* bytes, std::size_t size) const noexcept {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < size; ++i) {
        auto const byte = static_cast<unsigned char>(bytes[i]);
        bits |= static_cast<std::uint64_t>(isSeparator_[byte]) << i;
    }
    return bits;
}

// Sixteen bytes compared with each of a few separators.
std::uint64_t FieldReader::separatorsCompared(char const* bytes) const noexcept {
    Bytes const loaded = loadBytes(bytes);
    Bytes found{};
    // The first bound is never reached; g++ warns without it.
    for (std::size_t s = 0; s < separators_.size() && s < separatorCount_; ++s)
        found |= equal(loaded, separators_[s]);
    return bitsOf(found);
}

UTILLIBRARY_WRAPS std::size_t FieldReader::count() const noexcept {
    std::size_t fields = 1;        // the last one
    std::uint64_t afterField = 0;  // 1 if the byte before this block belongs to a field
    std::uint64_t separators = separatorBits_;
    for (char const* position = next_;; position += sizeOfBlockAt(position)) {
        std::uint64_t const ends = separators & (~separators << 1 | afterField);
        fields += static_cast<std::size_t>(std::popcount(ends));
        if (position == end_) return fields;
        afterField = ~separators >> (BITS_PER_BLOCK - 1);
        separators = separatorsAt(position);
    }
}

// Moves on to the next block that contains a separator. False if there is none.
bool FieldReader::findSeparators() noexcept {
    while (next_ != end_) {
        readBlock();
        if (separatorBits_ != 0) return true;
    }
    return false;
}

// ---- writing pairs

namespace {

// Copies a name. Most names have 8 to 16 bytes: these are two words, which may overlap.
char* writeName(char* out, std::string_view name) noexcept {
    constexpr std::size_t WORD = sizeof(std::uint64_t);
    if (name.size() < WORD || name.size() > 2 * WORD)
        return std::copy(name.begin(), name.end(), out);
    char* const end = out + name.size();
    std::memcpy(out, name.data(), WORD);
    std::memcpy(end - WORD, name.data() + name.size() - WORD, WORD);
    return end;
}

}  // namespace

PairWriter::PairWriter(bool afterText) noexcept
    : afterText_(afterText), graphicIsUsual_(ByteClasses().graphicIsUsual()) {}

void PairWriter::add(std::string_view name, std::string_view value) {
    Escaping const escaping{false, graphicIsUsual_};
    std::size_t const room = 2 + name.size() + escapedRoom(value.size());
    if (room > BUFFER_SIZE - size_) {
        overflow_.append(buffer_, size_);
        size_ = 0;
    }
    if (room > BUFFER_SIZE) {
        std::string const written = escaped(value, escaping);
        std::size_t const size = overflow_.size() + 2 + name.size() + written.size();
        overflow_.reserve(std::max(size, 2 * overflow_.size()));
        if (afterText_) overflow_ += ' ';
        overflow_.append(name).append(1, '=').append(written);
    } else {
        char* out = buffer_ + size_;
        if (afterText_) *out++ = ' ';
        out = writeName(out, name);
        *out++ = '=';
        out = writeEscaped(out, value, escaping);
        size_ = static_cast<std::size_t>(out - buffer_);
    }
    afterText_ = true;
}

void PairWriter::appendTo(std::string& out) {
    if (overflow_.empty()) {
        out.append(buffer_, size_);
        return;
    }
    overflow_.append(buffer_, size_);
    if (out.empty()) {
        out.swap(overflow_);
    } else {
        out.append(overflow_);
    }
}

}  // namespace com::halvorin::internal

namespace com::halvorin::utilities {

namespace {

using namespace com::halvorin::internal;

// True if a string is an element of a list. Pointers into different objects have an order only by
// std::less.
bool isElementOf(std::vector<std::string> const& list, std::string const& text) noexcept {
    std::less<> const before;
    return !before(&text, list.data()) && before(&text, list.data() + list.size());
}

// Reserves room for `count` more elements: at least twice the capacity, so that many small calls
// take linear time.
void makeRoom(std::vector<std::string>& list, std::size_t count) {
    std::size_t const wanted = list.size() + count;
    if (wanted > list.capacity()) list.reserve(std::max(wanted, 2 * list.capacity()));
}

// Appends a field. If enough of the string follows it, a short field is copied with a size that the
// compiler knows, and then cut, which avoids a call.
void append(std::vector<std::string>& list, std::string_view field, std::size_t sizeAfter) {
    constexpr std::size_t COPIED_SIZE = 15;  // what a std::string stores without an allocation
    if (field.size() <= COPIED_SIZE && field.size() + sizeAfter >= COPIED_SIZE) {
        list.emplace_back(field.data(), COPIED_SIZE).resize(field.size());
    } else {
        list.emplace_back(field);
    }
}

using HashMap = std::unordered_map<std::string, std::string>;

// Reserves buckets before the map needs them, if the rest of the string has more fields than the
// map has entries. Returns the number of entries at which to ask again.
//
// A field need not become an entry, so a map gets at most some GROWTH times the buckets that its
// entries need: a string that repeats one pair takes little memory.
std::size_t makeRoom(HashMap& map, std::size_t fieldsLeft) {
    constexpr std::size_t FIRST_ROOM = 8192;
    constexpr std::size_t GROWTH = 16;
    std::size_t const size = map.size();
    std::size_t const wanted = size + std::min(fieldsLeft, FIRST_ROOM + GROWTH * size);
    if (fieldsLeft > size && wanted > map.bucket_count()) map.reserve(wanted);
    return wanted;
}

}  // namespace

template <>
void split(std::vector<std::string>& out, std::string const& text, std::string const& separators) {
    bool const moves = isElementOf(out, text);
    std::string const copy = moves ? text : std::string();
    FieldReader fields(moves ? copy : text, separators);
    makeRoom(out, fields.count());
    for (std::string_view field; fields.next(field);)
        append(out, field, fields.sizeAfter(field));
}

template <>
void serializeNVP(std::string& out, HashMap const& map) {
    PairWriter writer(!out.empty());
    for (auto const& [name, value] : map)
        writer.add(name, value);
    writer.appendTo(out);
}

template <>
bool deserializeNVP(HashMap& map, std::string const& text) {
    FieldReader fields(trimmed(text), " ");
    std::size_t fieldsLeft = fields.count();
    std::size_t room = makeRoom(map, fieldsLeft);
    bool const hasEscapes = text.find('\\') != std::string::npos;
    bool wellFormed = true;
    for (std::string_view field; fields.next(field); --fieldsLeft) {
        std::size_t const equals = field.find('=');
        if (equals == 0 || equals == std::string_view::npos) {
            wellFormed = false;
            continue;
        }
        if (map.size() == room) room = makeRoom(map, fieldsLeft);
        std::string_view const name = field.substr(0, equals);
        std::string_view const value = field.substr(equals + 1);
        // KEPT(first-value-wins): emplace, which never assigns.
        if (!hasEscapes || value.find('\\') == std::string_view::npos) {
            map.emplace(name, value);
        } else {
            map.emplace(name, unescapeString(std::string(value)));
        }
    }
    return wellFormed;
}

void addToNVPString(std::string& nvp, std::string const& name, std::string const& value) {
    // KEPT(no-empty-value-is-added): `serializeNVP` writes "name=" instead.
    if (name.empty() || value.empty()) return;
    // A name or a value that is `nvp` itself is longer by what is appended before it is read.
    std::size_t const nameStart = nvp.size() + 1;
    std::size_t const valueStart = nameStart + (&name == &nvp ? nameStart : name.size()) + 1;
    std::size_t const size = valueStart + (&value == &nvp ? valueStart : value.size());
    if (size > nvp.capacity()) nvp.reserve(std::max(size, 2 * nvp.capacity()));
    if (!nvp.empty()) nvp += ' ';
    // KEPT(two-writers): the value is not escaped. KEPT(names-are-unchecked): nor is the name.
    // KEPT(own-text-is-read-late): neither is copied first, though it may be `nvp` itself.
    nvp.append(name).append(1, '=').append(value);
}

}  // namespace com::halvorin::utilities

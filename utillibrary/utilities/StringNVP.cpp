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
      block_(text.data()) {
    if (separators.size() <= COMPARED_SEPARATORS) {
        separatorCount_ = separators.copy(separators_.data(), separators_.size());
        return;
    }
    isSeparator_.emplace();
    for (char const c : separators)
        (*isSeparator_)[static_cast<unsigned char>(c)] = 1;
}

std::uint64_t FieldReader::separatorsIn(char const* block) const noexcept {
    std::uint64_t bits = 0;
    if (isSeparator_) {
        for (std::size_t i = 0; i < BITS_PER_BLOCK; ++i) {
            auto const byte = static_cast<unsigned char>(block[i]);
            bits |= std::uint64_t{(*isSeparator_)[byte]} << i;
        }
        return bits;
    }
    for (std::size_t i = 0; i < BITS_PER_BLOCK; i += sizeof(Bytes)) {
        Bytes const bytes = loadBytes(block + i);
        Bytes found{};
        // The first bound is never reached; g++ warns without it.
        for (std::size_t s = 0; s < separators_.size() && s < separatorCount_; ++s)
            found |= equal(bytes, separators_[s]);
        bits |= bitsOf(found) << i;
    }
    return bits;
}

// The separators among the next 64 bytes of the string, or among the fewer bytes that are left.
std::uint64_t FieldReader::separatorsAt(char const* position) const noexcept {
    auto const left = static_cast<std::size_t>(end_ - position);
    if (left >= BITS_PER_BLOCK) return separatorsIn(position);
    std::array<char, BITS_PER_BLOCK> block{};
    std::memcpy(block.data(), position, left);
    return separatorsIn(block.data()) & ((std::uint64_t{1} << left) - 1);
}

UTILLIBRARY_WRAPS std::size_t FieldReader::count() const noexcept {
    auto const size = static_cast<std::size_t>(end_ - next_);
    std::size_t fields = 1;        // the last one
    std::uint64_t afterField = 0;  // 1 if the byte before this block belongs to a field
    for (std::size_t i = 0; i < size; i += BITS_PER_BLOCK) {
        std::uint64_t const separators = separatorsAt(next_ + i);
        std::uint64_t const ends = separators & (~separators << 1 | afterField);
        fields += static_cast<std::size_t>(std::popcount(ends));
        afterField = ~separators >> (BITS_PER_BLOCK - 1);
    }
    return fields;
}

// Moves on to the next block that contains a separator. False if there is none.
bool FieldReader::findSeparators() noexcept {
    while (next_ < end_) {
        block_ = next_;
        separatorBits_ = separatorsAt(block_);
        next_ += std::min<std::ptrdiff_t>(BITS_PER_BLOCK, end_ - next_);
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

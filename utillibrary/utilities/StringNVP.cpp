#include "utillibrary/utilities/StringNVP.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "utillibrary/internal/byte_block.h"
#include "utillibrary/internal/byte_class.h"
#include "utillibrary/internal/trimmed.h"
#include "utillibrary/utilities/StringEscape_internal.h"

namespace com::halvorin::utilities {

namespace {

using namespace com::halvorin::internal;

// ---- fields

constexpr std::size_t BLOCK = 64;  // bytes, one bit each

// Copies a name; one of 8 to 16 bytes, as names are, by two words that may overlap.
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

namespace detail {

FieldReader::FieldReader(std::string_view text, std::string_view separators) noexcept
    : next_(text.data()),
      end_(text.data() + text.size()),
      fieldStart_(text.data()),
      here_(text.data()),
      separatorCount_(separators.size()) {
    if (separatorCount_ <= FEW) {
        separators.copy(few_, FEW);
        return;
    }
    std::fill(std::begin(isSeparator_), std::end(isSeparator_), static_cast<unsigned char>(0));
    for (char const c : separators)
        isSeparator_[static_cast<unsigned char>(c)] = 1;
}

std::uint64_t FieldReader::separatorsIn(char const* block) const noexcept {
    std::uint64_t bits = 0;
    if (separatorCount_ > FEW) {
        for (std::size_t i = 0; i < BLOCK; ++i) {
            bits |= std::uint64_t{isSeparator_[static_cast<unsigned char>(block[i])]} << i;
        }
        return bits;
    }
    for (std::size_t i = 0; i < BLOCK; i += sizeof(Bytes)) {
        Bytes const bytes = loadBytes(block + i);
        Bytes found{};
        for (std::size_t s = 0; s < separatorCount_; ++s)
            found |= equal(bytes, few_[s]);
        bits |= bitsOf(found) << i;
    }
    return bits;
}

// The separators among the next bytes of the text, 64 of them or what is left.
std::uint64_t FieldReader::separatorsAt(char const* position) const noexcept {
    auto const left = static_cast<std::size_t>(end_ - position);
    if (left >= BLOCK) return separatorsIn(position);
    std::array<char, BLOCK> block{};
    std::memcpy(block.data(), position, left);
    return separatorsIn(block.data()) & ((std::uint64_t{1} << left) - 1);
}

std::size_t FieldReader::count() const noexcept {
    auto const size = static_cast<std::size_t>(end_ - next_);
    std::size_t fields = 1;         // the last one
    std::uint64_t behindField = 0;  // whether the byte before this block belongs to a field
    for (std::size_t i = 0; i < size; i += BLOCK) {
        std::uint64_t const separators = separatorsAt(next_ + i);
        std::uint64_t const ends = separators & (~separators << 1 | behindField);
        fields += static_cast<std::size_t>(std::popcount(ends));
        behindField = ~separators >> (BLOCK - 1);
    }
    return fields;
}

bool FieldReader::advance() noexcept {
    while (next_ < end_) {
        here_ = next_;
        separatorsHere_ = separatorsAt(here_);
        next_ += std::min<std::ptrdiff_t>(BLOCK, end_ - next_);
        if (separatorsHere_ != 0) return true;
    }
    return false;
}

std::string_view trimmed(std::string_view text) noexcept { return internal::trimmed(text); }

PairWriter::PairWriter(bool follows) noexcept
    : follows_(follows), usual_(ByteClasses().graphicIsUsual()) {}

void PairWriter::add(std::string_view name, std::string_view value) {
    Escaping const escaping{false, usual_};
    std::size_t const room = 2 + name.size() + escapedRoom(value.size());
    if (room > BLOCK - size_) {
        text_.append(block_, size_);
        size_ = 0;
    }
    if (room > BLOCK) {
        std::string const written = escaped(value, escaping);
        text_.reserve(std::max(text_.size() + 2 + name.size() + written.size(), 2 * text_.size()));
        if (follows_) text_ += ' ';
        text_.append(name).append(1, '=').append(written);
    } else {
        char* out = block_ + size_;
        if (follows_) *out++ = ' ';
        out = writeName(out, name);
        *out++ = '=';
        out = writeEscaped(out, value, escaping);
        size_ = static_cast<std::size_t>(out - block_);
    }
    follows_ = true;
}

void PairWriter::appendTo(std::string& out) {
    if (text_.empty()) {
        out.append(block_, size_);
        return;
    }
    text_.append(block_, size_);
    if (out.empty()) {
        out.swap(text_);
    } else {
        out.append(text_);
    }
}

}  // namespace detail

template void split(std::vector<std::string>&, std::string const&, std::string const&);
template void serializeNVP(std::string&, std::unordered_map<std::string, std::string> const&);
template bool deserializeNVP(std::unordered_map<std::string, std::string>&, std::string const&);

void addToNVPString(std::string& nvp, std::string const& name, std::string const& value) {
    // KEPT(no-empty-value-is-added): `serializeNVP` writes "name=" instead.
    if (name.empty() || value.empty()) return;
    std::size_t const size = nvp.size() + 2 + name.size() + value.size();
    if (size > nvp.capacity()) nvp.reserve(std::max(size, 2 * nvp.capacity()));
    if (!nvp.empty()) nvp += ' ';
    // KEPT(two-writers): the value is not escaped. KEPT(names-are-unchecked): nor is the name.
    // KEPT(own-text-is-read-late): no copy of either, though it may be `nvp` itself.
    nvp.append(name).append(1, '=').append(value);
}

}  // namespace com::halvorin::utilities

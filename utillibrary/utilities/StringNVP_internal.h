#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// What the fast forms of `split`, `serializeNVP` and `deserializeNVP`, and `averageNVP`, share: a
// reader of fields and a writer of pairs. The templates in StringNVP.h are the general path.
namespace com::halvorin::internal {

/// Reads the fields that `split` appends, one after the other. It finds separators 64 bytes at a
/// time. The string must not move or change meanwhile; the separators are copied.
class FieldReader {
public:
    FieldReader(std::string_view text, std::string_view separators) noexcept;

    /// The number of fields. Call it before `next`.
    std::size_t count() const noexcept;

    /// Stores the next field in `field`. False after the last one.
    bool next(std::string_view& field) noexcept {
        while (separatorBits_ != 0 || findSeparators()) {
            char const* const separator = block_ + __builtin_ctzl(separatorBits_);
            separatorBits_ &= separatorBits_ - 1;
            char const* const start = fieldStart_;
            fieldStart_ = separator + 1;
            if (separator != start) {
                field = std::string_view(start, static_cast<std::size_t>(separator - start));
                return true;
            }
        }
        if (finished_) return false;
        finished_ = true;
        // KEPT(split-keeps-last): only the last field may be empty.
        field = std::string_view(fieldStart_, static_cast<std::size_t>(end_ - fieldStart_));
        return true;
    }

    /// The number of bytes of the string after a field.
    std::size_t sizeAfter(std::string_view field) const noexcept {
        return static_cast<std::size_t>(end_ - (field.data() + field.size()));
    }

private:
    static constexpr std::size_t BITS_PER_BLOCK = 64;      // one bit for each byte of a block
    static constexpr std::size_t COMPARED_SEPARATORS = 4;  // more are looked up in a table

    void readBlock() noexcept;
    bool findSeparators() noexcept;
    std::size_t sizeOfBlockAt(char const* position) const noexcept;
    std::uint64_t separatorsAt(char const* position) const noexcept;
    std::uint64_t separatorsLookedUp(char const* bytes, std::size_t size) const noexcept;
    std::uint64_t separatorsCompared(char const* bytes) const noexcept;

    char const* next_;             // the first byte that no block has covered yet
    char const* end_;              // of the string
    char const* fieldStart_;       // the byte after the last separator
    char const* block_;            // what `separatorBits_` describes
    std::uint64_t separatorBits_;  // the separators of the block that are still to come
    bool finished_ = false;        // true once the last field is given
    std::size_t separatorCount_;
    std::array<char, COMPARED_SEPARATORS> separators_{};
    std::bitset<256> isSeparator_;  // used instead if there are more
};

/// Writes pairs as `serializeNVP` does. It collects them and appends them in one piece, so that the
/// result is complete or unchanged.
class PairWriter {
public:
    /// Takes    afterText: true if a space belongs before the first pair.
    explicit PairWriter(bool afterText) noexcept;

    /// Writes "name=value", the value escaped.
    void add(std::string_view name, std::string_view value);

    /// Appends everything to `out`.
    void appendTo(std::string& out);

private:
    static constexpr std::size_t BUFFER_SIZE = 4096;

    bool afterText_;
    bool graphicIsUsual_;   // how the locale escapes values; asked once for all of them
    std::size_t size_ = 0;  // the number of bytes in the buffer
    std::string overflow_;  // what the buffer had no room for; comes before its bytes
    char buffer_[BUFFER_SIZE];
};

}  // namespace com::halvorin::internal

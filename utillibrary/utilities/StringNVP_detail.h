#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include <utillibrary/export.h>

// What the templates of StringNVP.h stand on; not for hosts.
namespace com::halvorin::utilities::detail {

/// Walks over the fields of a text, which must stay in place; the separators are copied.
class FieldReader {
public:
    UTILLIBRARY_EXPORT FieldReader(std::string_view text, std::string_view separators) noexcept;

    /// How many fields there are.
    UTILLIBRARY_EXPORT std::size_t count() const noexcept;

    /// Gives the next field; false behind the last one.
    bool next(std::string_view& field) noexcept {
        while (separatorsHere_ != 0 || advance()) {
            char const* const separator = here_ + __builtin_ctzl(separatorsHere_);
            separatorsHere_ &= separatorsHere_ - 1;
            char const* const start = fieldStart_;
            fieldStart_ = separator + 1;
            if (separator != start) {
                field = std::string_view(start, static_cast<std::size_t>(separator - start));
                return true;
            }
        }
        if (finished_) return false;
        finished_ = true;
        // KEPT(split-keeps-last): no test for emptiness, unlike above.
        field = std::string_view(fieldStart_, static_cast<std::size_t>(end_ - fieldStart_));
        return true;
    }

    /// How many bytes of the text stand behind a field.
    std::size_t following(std::string_view field) const noexcept {
        return static_cast<std::size_t>(end_ - (field.data() + field.size()));
    }

private:
    static constexpr std::size_t FEW = 4;

    UTILLIBRARY_EXPORT bool advance() noexcept;
    std::uint64_t separatorsIn(char const* block) const noexcept;
    std::uint64_t separatorsAt(char const* position) const noexcept;

    char const* next_;                  // the block to look at next
    char const* end_;                   // of the text
    char const* fieldStart_;            // behind the separator before
    char const* here_;                  // the block that the bits are about
    std::uint64_t separatorsHere_ = 0;  // one bit a byte; of those not taken yet
    bool finished_ = false;             // whether the last field was given
    std::size_t separatorCount_;
    char few_[FEW];                   // the separators, if they are so few
    unsigned char isSeparator_[256];  // else whether a byte is one
};

/// `trim` without the copy.
UTILLIBRARY_EXPORT std::string_view trimmed(std::string_view text) noexcept;

/// Gathers pairs as text, and appends them in one piece.
class PairWriter {
public:
    /// Takes  follows: whether text stands before the first pair.
    UTILLIBRARY_EXPORT explicit PairWriter(bool follows) noexcept;

    UTILLIBRARY_EXPORT void add(std::string_view name, std::string_view value);
    UTILLIBRARY_EXPORT void appendTo(std::string& out);

private:
    static constexpr std::size_t BLOCK = 4096;

    bool follows_;
    bool usual_;            // how the locale has values escaped, asked for once
    std::size_t size_ = 0;  // of what stands in the block
    std::string text_;      // what the block could not hold
    char block_[BLOCK];
};

// ---- what a host's own list or map can do

template <typename List, typename = void>
inline constexpr bool CAN_MAKE_ROOM = false;
template <typename List>
inline constexpr bool CAN_MAKE_ROOM<
    List, std::void_t<decltype(std::declval<List&>().reserve(std::declval<List&>().capacity()))>> =
    true;

template <typename List, typename = void>
inline constexpr bool IS_ONE_BLOCK = false;
template <typename List>
inline constexpr bool
    IS_ONE_BLOCK<List, std::void_t<decltype(std::declval<List const&>().data())>> =
        std::is_same_v<decltype(std::declval<List const&>().data()), std::string const*>;

template <typename List, typename = void>
inline constexpr bool BUILDS_IN_PLACE = false;
template <typename List>
inline constexpr bool BUILDS_IN_PLACE<
    List, std::void_t<decltype(std::declval<List&>().emplace_back("", std::size_t{}).resize(0))>> =
    true;

template <typename Map, typename = void>
inline constexpr bool HAS_BUCKETS = false;
template <typename Map>
inline constexpr bool HAS_BUCKETS<
    Map, std::void_t<decltype(std::declval<Map&>().reserve(std::declval<Map&>().bucket_count()))>> =
    true;

// Room for all fields in a list that can make some; at least twice the room there was, so that many
// small appends take linear time.
template <typename List>
void makeRoom(List& list, FieldReader const& fields) {
    if constexpr (CAN_MAKE_ROOM<List>) {
        std::size_t const wanted = list.size() + fields.count();
        std::size_t const doubled = 2 * list.capacity();
        if (wanted > list.capacity()) list.reserve(wanted > doubled ? wanted : doubled);
    }
}

// Whether a text is an element of a list that may move its elements.
template <typename List>
bool holds(List const& list, std::string const& text) {
    if constexpr (IS_ONE_BLOCK<List>) {
        // NOLINTBEGIN(cppcoreguidelines-pro-type-reinterpret-cast): pointers into different
        // objects have no order of their own.
        auto const first = reinterpret_cast<std::uintptr_t>(list.data());
        auto const position = reinterpret_cast<std::uintptr_t>(&text);
        // NOLINTEND(cppcoreguidelines-pro-type-reinterpret-cast)
        return position >= first && position - first < list.size() * sizeof(std::string);
    } else {
        return false;
    }
}

// Appends a field behind which more of the text follows. A short one is copied with a size that the
// compiler knows, and then cut, which spares a call.
template <typename List>
void append(List& list, std::string_view field, std::size_t following) {
    if constexpr (BUILDS_IN_PLACE<List>) {
        constexpr std::size_t SHORT = 15;
        if (field.size() <= SHORT && field.size() + following >= SHORT) {
            list.emplace_back(field.data(), SHORT).resize(field.size());
        } else {
            list.emplace_back(field.data(), field.size());
        }
    } else {
        list.push_back(std::string(field));
    }
}

// Buckets for all fields, in a hash map that has no entries yet; a text of a few entries written
// over and over buys no more than the limit.
template <typename Map>
void makeBuckets(Map& map, FieldReader const& fields) {
    if constexpr (HAS_BUCKETS<Map>) {
        constexpr std::size_t LIMIT = 4096;
        if (!map.empty()) return;
        std::size_t const entries = fields.count();
        std::size_t const wanted = entries < LIMIT ? entries : LIMIT;
        if (wanted > map.bucket_count()) map.reserve(wanted);
    }
}

}  // namespace com::halvorin::utilities::detail

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory_resource>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "utillibrary/internal/decimal.h"
#include "utillibrary/internal/locale.h"
#include "utillibrary/internal/trimmed.h"
#include "utillibrary/utilities/StringNVP_internal.h"
#include "utillibrary/utilities/StringUtilities.h"

// The pairs of a string, as the fast path of `averageNVP` keeps them.
namespace com::halvorin::internal {

/// What libc does with numbers at the time of a call, asked once for all numbers of the call.
struct NumberRules {
    char decimalPoint = singleDecimalPoint();
    bool printsPlain = libcPrintsPlainNumbers();
};

/// A number as `to_string(number, "%g")` writes it.
class NumberText {
public:
    NumberText(float number, NumberRules const& rules) noexcept
        : end_(printGeneral(characters_.data(), static_cast<double>(number), rules.printsPlain)) {}
    NumberText(NumberText const&) = delete;  // `end_` points into this object
    NumberText(NumberText&&) = delete;
    NumberText& operator=(NumberText const&) = delete;
    NumberText& operator=(NumberText&&) = delete;
    ~NumberText() = default;

    std::string_view view() const noexcept {
        return {characters_.data(), static_cast<std::size_t>(end_ - characters_.data())};
    }

private:
    std::array<char, PRINTED_GENERAL_SIZE> characters_;
    char* end_;
};

/// The pairs of a string, found by name. Names and values are views of the string, which must not
/// change meanwhile; values are still escaped. Up to 32 pairs take no allocation.
///
/// More than a few pairs are found by the hash of their name. Each has a place among twice as many:
/// the place that the hash gives, or the next one that is free. If that is more than MOST_STEPS
/// further, the table declines the string. So no search takes more steps, whatever the names are.
class PairTable {
public:
    struct Pair {
        // A constructor, so that a vector builds the pair in place: copying one that was just
        // written makes the processor wait.
        Pair(std::size_t hashed, std::string_view named, std::string_view given) noexcept
            : hash(hashed), name(named), value(given) {}

        std::size_t hash;
        std::string_view name;
        std::string_view value;       // as it is in the string
        std::optional<float> number;  // replaces the value
    };

    /// Random hashes need so many steps only in tables of far more than a million names.
    static constexpr std::size_t MOST_STEPS = 128;

    /// Multiplies eight bytes at a time, and folds the product of 128 bits so that each of its bits
    /// counts. Names can be made whose hashes collide, as for any hash without a secret.
    static std::size_t hashOf(std::string_view name) noexcept {
        __extension__ using Product = unsigned __int128;
        constexpr std::uint64_t FACTOR = 0x9E3779B97F4A7C15;  // 2^64 divided by the golden ratio
        constexpr std::size_t WORD = sizeof(std::uint64_t);
        std::uint64_t hash = name.size();
        auto const add = [&hash](char const* bytes, std::size_t size) {
            std::uint64_t word = 0;
            std::memcpy(&word, bytes, size);
            auto const product = static_cast<Product>(hash ^ word) * FACTOR;
            hash = static_cast<std::uint64_t>(product ^ product >> 64);
        };
        if (name.size() < WORD) {
            add(name.data(), name.size());
        } else {
            for (std::size_t i = 0; i + WORD < name.size(); i += WORD)
                add(name.data() + i, WORD);
            add(name.data() + name.size() - WORD, WORD);  // may overlap the word before
        }
        return hash;
    }

    PairTable() { pairs_.reserve(FEW); }

    /// Reads the pairs of a string as `deserializeNVP` does. Gives its result; nothing if the table
    /// declines.
    std::optional<bool> read(std::string_view text) {
        FieldReader fields(trimmed(text), " ");
        hasEscapes_ = text.find('\\') != std::string_view::npos;
        bool wellFormed = true;
        for (std::string_view field; fields.next(field);) {
            std::size_t const equals = field.find('=');
            if (equals == std::string_view::npos || equals == 0) {
                wellFormed = false;
            } else if (!insert(field.substr(0, equals), field.substr(equals + 1))) {
                return std::nullopt;
            }
        }
        return wellFormed;
    }

    /// The pair of that name, or null. Names are often asked for in the order of the string, so the
    /// pair after the one found last is compared first.
    Pair* find(std::string_view name) noexcept {
        if (next_ == pairs_.size() || pairs_[next_].name != name) {
            Pair const* const found = findByHash(name, hashOf(name));
            if (found == nullptr) return nullptr;
            next_ = static_cast<std::size_t>(found - pairs_.data());
        }
        return &pairs_[next_++];
    }

    /// The pairs as `serializeNVP` writes them, in the order of the string.
    std::string written(NumberRules const& rules) const {
        PairWriter writer(false);
        for (Pair const& pair : pairs_) {
            if (pair.number) {
                writer.add(pair.name, NumberText(*pair.number, rules).view());
            } else if (hasEscapes_ && pair.value.find('\\') != std::string_view::npos) {
                writer.add(pair.name, utilities::unescapeString(std::string(pair.value)));
            } else {
                writer.add(pair.name, pair.value);
            }
        }
        std::string result;
        writer.appendTo(result);
        return result;
    }

private:
    static constexpr std::size_t SCANNED = 8;  // so many pairs are searched one after the other
    static constexpr std::size_t FEW = 32;

    Pair* findByHash(std::string_view name, std::size_t hash) noexcept {
        auto const matches = [&](Pair const& pair) {
            return pair.hash == hash && pair.name == name;
        };
        if (places_.empty()) {
            auto const found = std::find_if(pairs_.begin(), pairs_.end(), matches);
            return found == pairs_.end() ? nullptr : &*found;
        }
        for (std::size_t step = 0; step <= MOST_STEPS; ++step) {
            std::size_t const place = places_[(hash + step) & (places_.size() - 1)];
            if (place == 0) return nullptr;
            if (matches(pairs_[place - 1])) return &pairs_[place - 1];
        }
        return nullptr;  // no pair has a place so far away
    }

    // Inserts a pair, unless the table has the name. False if the table declines.
    bool insert(std::string_view name, std::string_view value) {
        std::size_t const hash = hashOf(name);
        if (findByHash(name, hash) != nullptr) return true;  // KEPT(first-value-wins)
        pairs_.emplace_back(hash, name, value);
        if (pairs_.size() <= SCANNED) return true;
        return 2 * pairs_.size() <= places_.size() ? addPlace(pairs_.size() - 1) : makePlaces();
    }

    // Gives every pair a place among twice as many as before. False if one is too far away.
    bool makePlaces() {
        places_.assign(std::max(2 * FEW, 2 * places_.size()), 0);
        for (std::size_t i = 0; i < pairs_.size(); ++i) {
            if (!addPlace(i)) return false;
        }
        return true;
    }

    // Gives a pair its place. False if that would be too far away.
    bool addPlace(std::size_t index) noexcept {
        for (std::size_t step = 0; step <= MOST_STEPS; ++step) {
            std::size_t& place = places_[(pairs_[index].hash + step) & (places_.size() - 1)];
            if (place == 0) {
                place = index + 1;
                return true;
            }
        }
        return false;
    }

    // The memory of the vectors while there are few pairs. The vectors point to it, so a table
    // cannot be copied.
    std::array<std::byte, FEW*(sizeof(Pair) + 2 * sizeof(std::size_t))> buffer_;
    std::pmr::monotonic_buffer_resource memory_{buffer_.data(), buffer_.size(),
                                                std::pmr::new_delete_resource()};
    std::pmr::vector<Pair> pairs_{&memory_};          // in the order of the string
    std::pmr::vector<std::size_t> places_{&memory_};  // 1 + index of a pair; 0 is free
    std::size_t next_ = 0;                            // the index after the pair found last
    bool hasEscapes_ = false;
};

}  // namespace com::halvorin::internal

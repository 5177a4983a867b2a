#include "utillibrary/utilities/StringUtilities.h"

#include <algorithm>
#include <cstring>

#include "utillibrary/utilities/StringUtilities_internal.h"

// Searching and comparing. StringUtilities.h says which sources have the rest.
namespace com::halvorin::internal {

namespace {

// ---- searching

// Finds the first element that contains `text`.
template <typename List>
auto findContaining(List& list, std::string const& text) noexcept {
    // std::string looks for the first byte and then compares. That is the fastest for short
    // strings, but may take the product of both lengths. memmem takes their sum.
    constexpr std::size_t LONG_SIZE = 64;
    if (text.size() < LONG_SIZE) {
        return std::find_if(list.begin(), list.end(), [&text](std::string const& element) {
            return element.find(text) != std::string::npos;
        });
    }
    return std::find_if(list.begin(), list.end(), [&text](std::string const& element) {
        return memmem(element.data(), element.size(), text.data(), text.size()) != nullptr;
    });
}

template <typename List>
auto search(List& list, std::string const& text, bool partial) noexcept {
    return partial ? findContaining(list, text) : std::find(list.begin(), list.end(), text);
}

// ---- comparing without case

constexpr std::size_t BLOCK_SIZE = sizeof(Bytes);

// Takes    lower: `pairsLetters` is true for it; size: at least BLOCK_SIZE.
bool equalByBlocks(LowerCase lower, char const* left, char const* right,
                   std::size_t size) noexcept {
    auto const equalAt = [&](std::size_t i) {
        if (auto const equal = equalByLetters(left + i, right + i)) return *equal;
        return equalByTable(lower, left + i, right + i, BLOCK_SIZE);
    };
    for (std::size_t i = 0; i + BLOCK_SIZE < size; i += BLOCK_SIZE) {
        if (!equalAt(i)) return false;
    }
    return equalAt(size - BLOCK_SIZE);  // the last block may overlap the one before it
}

bool equalWithoutCase(char const* left, char const* right, std::size_t size) noexcept {
    LowerCase const lower;
    bool const useBlocks = size >= BLOCK_SIZE && pairsLetters(lower);
    return useBlocks ? equalByBlocks(lower, left, right, size)
                     : equalByTable(lower, left, right, size);
}

}  // namespace

}  // namespace com::halvorin::internal

namespace com::halvorin::utilities {

std::vector<std::string>::const_iterator searchVector(std::vector<std::string> const& list,
                                                      std::string const& text,
                                                      bool partial) noexcept {
    return internal::search(list, text, partial);
}

std::vector<std::string>::iterator searchVector(std::vector<std::string>& list,
                                                std::string const& text, bool partial) noexcept {
    return internal::search(list, text, partial);
}

bool iequals(std::string const& text, std::string const& other) noexcept {
    // KEPT(iequals-looks-one-way): no test for equal lengths; `other` may be longer.
    return text.size() <= other.size() &&
           internal::equalWithoutCase(text.data(), other.data(), text.size());
}

}  // namespace com::halvorin::utilities

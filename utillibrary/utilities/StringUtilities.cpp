#include "utillibrary/utilities/StringUtilities.h"

#include <algorithm>
#include <cstring>

#include "utillibrary/internal/byte_block.h"
#include "utillibrary/internal/byte_class.h"

namespace com::halvorin::utilities {

namespace {

using namespace com::halvorin::internal;

// ---- searching

// std::string looks for the first byte and then compares, which is the quickest way for what people
// look for, but takes the product of both lengths at worst. memmem takes their sum.
bool holds(std::string const& element, std::string const& text) noexcept {
    constexpr std::size_t LONG = 64;
    if (text.size() < LONG) return element.find(text) != std::string::npos;
    return memmem(element.data(), element.size(), text.data(), text.size()) != nullptr;
}

template <typename List>
auto search(List& list, std::string const& text, bool partial) noexcept {
    if (!partial) return std::find(list.begin(), list.end(), text);
    auto const matches = [&text](std::string const& element) { return holds(element, text); };
    return std::find_if(list.begin(), list.end(), matches);
}

// ---- comparing without case

constexpr std::size_t BLOCK = sizeof(Bytes);

// The rule itself, for so many bytes.
bool equalByTable(LowerCase const& lower, char const* left, char const* right,
                  std::size_t size) noexcept {
    for (std::size_t i = 0; i < size; ++i) {
        if (lower(left[i]) != lower(right[i])) return false;
    }
    return true;
}

// Whether the locale takes each letter from A to Z for its small one. Where the i has no dot, in
// Turkish, it does not.
bool pairsLetters(LowerCase const& lower) noexcept {
    int differences = 0;
    for (int i = 0; i < 26; ++i) {
        differences |= lower(static_cast<char>('A' + i)) ^ lower(static_cast<char>('a' + i));
    }
    return differences == 0;
}

// ASCII's capital letters as small ones.
Bytes withoutCase(Bytes bytes) noexcept { return bytes | (between(bytes, 'A', 'Z') & 0x20); }

// Owns a block of bytes each of which is the same on both sides, or a letter and its other case: it
// is equal in a locale that pairs the letters. False is no answer.
bool equalBlock(char const* left, char const* right) noexcept {
    return !any(withoutCase(loadBytes(left)) ^ withoutCase(loadBytes(right)));
}

bool equalWithoutCase(char const* left, char const* right, std::size_t size) noexcept {
    LowerCase const lower;
    if (size < BLOCK || !pairsLetters(lower)) return equalByTable(lower, left, right, size);
    auto const equalAt = [&](std::size_t i) {
        return equalBlock(left + i, right + i) || equalByTable(lower, left + i, right + i, BLOCK);
    };
    for (std::size_t i = 0; i + BLOCK < size; i += BLOCK) {
        if (!equalAt(i)) return false;
    }
    return equalAt(size - BLOCK);  // the last block may overlap the one before it
}

}  // namespace

std::vector<std::string>::const_iterator searchVector(std::vector<std::string> const& list,
                                                      std::string const& text,
                                                      bool partial) noexcept {
    return search(list, text, partial);
}

std::vector<std::string>::iterator searchVector(std::vector<std::string>& list,
                                                std::string const& text, bool partial) noexcept {
    return search(list, text, partial);
}

bool iequals(std::string const& text, std::string const& other) noexcept {
    // KEPT(iequals-looks-one-way): no test for equal lengths; the second text may go on.
    return text.size() <= other.size() && equalWithoutCase(text.data(), other.data(), text.size());
}

}  // namespace com::halvorin::utilities

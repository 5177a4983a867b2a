#pragma once

#include <random>
#include <string>
#include <vector>

// The functions on strings, each as the contract states it: byte by byte, with libc's functions and
// without regard to speed. Tests compare the library with these.
namespace testing_support {

std::string modelOfEscape(std::string const& text, bool keepSpace);
std::string modelOfUnescape(std::string const& text);
std::string modelOfTrim(std::string const& text);
std::vector<std::string> modelOfSplit(std::string const& text, std::string const& separators);
bool modelOfIequals(std::string const& text, std::string const& other);

/// A string shorter than `limit`: mostly of the given characters, and one byte in sixteen is any.
std::string anyText(std::mt19937_64& engine, std::string const& characters, std::size_t limit);

}  // namespace testing_support

#pragma once

#include <string>
#include <vector>

// The text functions once more, written for nothing but to be read: step by step, byte by byte, by
// libc's own functions. What the library does in its own ways is held against them.
namespace testing_support {

/// The class functions' argument: the byte as a signed char, where libc takes EOF or an unsigned one.
int characterOf(char c) noexcept;

std::string modelOfEscape(std::string const& text, bool keepSpace);
std::string modelOfUnescape(std::string const& text);
std::string modelOfTrim(std::string const& text);
std::vector<std::string> modelOfSplit(std::string const& text, std::string const& separators);
bool modelOfIequals(std::string const& text, std::string const& other);

}  // namespace testing_support

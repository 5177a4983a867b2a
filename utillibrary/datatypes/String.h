#pragma once

#include <string>

#include <utillibrary/export.h>

namespace com::halvorin::datatypes {

/// An object that contains one string: a call reads it, and a call with a string replaces it.
///
/// A plain value: a copy has its own string, and a move takes the string. One object belongs to one
/// thread at a time.
///     String greeting("hello");
///     greeting();                   // "hello"
///     greeting("good morning");     // "good morning"
///     greeting();                   // "good morning"
class UTILLIBRARY_EXPORT String {
public:
    /// Contains an empty string.
    /// Fails    never.
    String() noexcept;

    /// Contains a copy of `text`. The constructor is implicit: a std::string converts to a String.
    /// Takes    text: a zero byte is like any other.
    /// Fails    with std::bad_alloc only.
    String(std::string const& text);  // NOLINT(google-explicit-constructor): `String s = text;`

    /// Returns a copy of the string.
    /// Fails    with std::bad_alloc only.
    std::string operator()() const;

    /// Replaces the string by a copy of `text`, and returns a copy of the new string.
    /// Takes    text: a zero byte is like any other.
    /// Fails    with std::bad_alloc only; the string is then the old one or all of `text`.
    std::string operator()(std::string const& text);

private:
    std::string value_;  // what a call returns
};

}  // namespace com::halvorin::datatypes

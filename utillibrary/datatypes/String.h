#pragma once

#include <string>

#include <utillibrary/export.h>

namespace com::halvorin::datatypes {

// A holder of one text, read and replaced by calling it.
//
// A plain value: copies are deep, moves take the text along. One object belongs to one thread at a
// time.
//     String greeting("hello");
//     greeting();                   // "hello"
//     greeting("good morning");     // "good morning", from now on
class UTILLIBRARY_EXPORT String {
public:
    /// An empty text.
    String() noexcept;

    /// A copy of the text, zero bytes included; implicit, so that a text may stand where a holder
    /// is wanted.
    /// Fails    never, but for std::bad_alloc.
    // NOLINTNEXTLINE(google-explicit-constructor): hosts write `String s = text;`.
    String(std::string const& text);

    /// A copy of the held text.
    /// Fails    never, but for std::bad_alloc.
    std::string operator()() const;

    /// Replaces the held text by a copy of another one, and gives a copy of the new text.
    /// Fails    never, but for std::bad_alloc; the held text is then the old or the new one, whole.
    std::string operator()(std::string const& text);

private:
    std::string value_;
};

}  // namespace com::halvorin::datatypes

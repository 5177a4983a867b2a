#include "utillibrary/datatypes/String.h"

namespace com::halvorin::datatypes {

String::String() noexcept = default;

// NOLINTNEXTLINE(modernize-pass-by-value): the interface takes its string by reference.
String::String(std::string const& text) : value_(text) {}

std::string String::operator()() const { return value_; }

std::string String::operator()(std::string const& text) {
    value_ = text;
    return value_;
}

}  // namespace com::halvorin::datatypes

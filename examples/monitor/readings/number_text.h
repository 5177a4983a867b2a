#pragma once

#include <string>

#include <utillibrary/datatypes/Variant.h>

namespace monitor {

/// What the table and the chart show in place of a number.
/// Gives    "null" for Null, and an empty string for Unknown.
/// Fails    with std::bad_alloc only.
std::string missingText(com::halvorin::datatypes::Variant const& value);

/// A number with one decimal, as the table and the chart show it: "12.0" beside "12.3".
/// Takes    unit: the number is divided by this, for example by the bytes of a GiB.
/// Gives    the six significant digits of Variant::toString, so from 100000 on there is no decimal;
///          for a value that is no number, as `missingText` says.
/// Fails    with std::bad_alloc only.
std::string oneDecimal(com::halvorin::datatypes::Variant const& number, double unit = 1);

}  // namespace monitor

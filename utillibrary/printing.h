#pragma once

#include <cstddef>
#include <functional>
#include <ostream>
#include <string>
#include <type_traits>

#if __has_include(<version>)
#include <version>
#endif
#ifdef __cpp_lib_format
#include <format>
#endif

#include <utillibrary/datatypes/Variant.h>
#include <utillibrary/datatypes/xtime.h>

// Prints times and Variants to streams, and lets a time be a key of an unordered map.
//
// A host includes this header where it wants these functions. No other header includes it, and the
// library exports nothing of it.
//
// One expression changes its meaning: `std::cout << time` of a variable time. Without this header
// the expression prints the seconds, rounded, because a variable time converts to `long`. With this
// header it prints an ISO string. All sources of a program should agree on it.
//     std::ostringstream out;
//     out << xtime_t(1709618889, 250000000) << ' ' << Variant(2.5);
//     out.str()                                      // "2024-03-05T06:08:09.250Z 2.5"
//     std::unordered_map<xtime_t, int> visits;
//     visits[xtime_t(10)] = 3;
//     visits.at(xtime_t(10))                         // 3
namespace com::halvorin::datatypes {

/// Prints a time as `time.toString(true, 0, "")` gives it: ISO 8601, UTC, milliseconds.
/// Takes    out: its width and fill are used, as for a string.
/// Gives    out.
/// Fails    as the insertion of a string fails; with std::bad_alloc.
inline std::ostream& operator<<(std::ostream& out, xtime_t const& time) {
    return out << time.toString(true, 0, "");
}

/// Prints a Variant as `value.toString()` gives it.
/// Takes    out: its width and fill are used, as for a string; value: a Variant itself, and
///          nothing that merely converts to one.
/// Gives    out.
/// Fails    as the insertion of a string fails; with std::bad_alloc.
template <typename Value>
std::enable_if_t<std::is_same_v<Value, Variant>, std::ostream&> operator<<(std::ostream& out,
                                                                           Value const& value) {
    return out << value.toString();
}

}  // namespace com::halvorin::datatypes

/// The hash of a time, from both of its fields.
template <>
struct std::hash<com::halvorin::datatypes::xtime_t> {
    /// Gives    equal hashes for equal times.
    /// Fails    never.
    UTILLIBRARY_WRAPS std::size_t operator()(
        com::halvorin::datatypes::xtime_t const& time) const noexcept {
        // The odd factor, 2^64 / golden ratio, spreads consecutive seconds over all bits.
        constexpr unsigned long SPREAD = 0x9E3779B97F4A7C15;
        auto const seconds = static_cast<unsigned long>(time.getDateTime());
        unsigned long const mixed = (seconds ^ (seconds >> 32)) * SPREAD;
        return std::hash<unsigned long>()(mixed ^ time.getNanoseconds());
    }
};

#ifdef __cpp_lib_format

/// Formats a time as `time.toString(true, 0, "")` gives it; the format is that of a string.
template <>
struct std::formatter<com::halvorin::datatypes::xtime_t> : std::formatter<std::string> {
    /// Fails    as the formatter of a string fails; with std::bad_alloc.
    template <typename Context>
    auto format(com::halvorin::datatypes::xtime_t const& time, Context& context) const {
        return std::formatter<std::string>::format(time.toString(true, 0, ""), context);
    }
};

/// Formats a Variant as `value.toString()` gives it; the format is that of a string.
template <>
struct std::formatter<com::halvorin::datatypes::Variant> : std::formatter<std::string> {
    /// Fails    as the formatter of a string fails; with std::bad_alloc.
    template <typename Context>
    auto format(com::halvorin::datatypes::Variant const& value, Context& context) const {
        return std::formatter<std::string>::format(value.toString(), context);
    }
};

#endif

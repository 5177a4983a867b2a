#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <utillibrary/export.h>
#include <utillibrary/utilities/StringNVP_detail.h>
#include <utillibrary/utilities/StringUtilities.h>

// Fields of texts, and texts of name-value pairs: "name=value" fields with a space between two.
//
// A name is what stands before the first "=" of its field, and is not empty; the value is all
// behind it, further "=" included. Names are never escaped and never checked: one that holds a
// space or "=" is not read back. KEPT(names-are-unchecked)
//     std::unordered_map<std::string, std::string> pairs;
//     deserializeNVP(pairs, "place=east\\u0020wing t=20.5");    // {place: "east wing", t: "20.5"}
//     std::string line;
//     addToNVPString(line, "t", "21");                          // "t=21"
//     averageNVP({"t"}, line, 60, "t=24", 30);                  // "t=22"
namespace com::halvorin::utilities {

/// Appends the fields of a text to a list.
/// Takes    out: any sequence of strings that can be appended to; it is not emptied first.
///          KEPT(appended-never-cleared) separators: a set of bytes, each of which ends a field;
///          with none the text is one field. Text and separators may be elements of `out`, where
///          `out` is a std::vector or leaves its elements in place.
/// Gives    the fields that are not empty, and the last one always: "a,,b," gives "a", "b" and "",
///          ",a" gives "a" alone, and an empty text one empty field. KEPT(split-keeps-last)
/// Fails    never, but for std::bad_alloc; the fields before stay then.
/// Cost     the list grows once at most.
template <typename List>
void split(List& out, std::string const& text, std::string const& separators) {
    bool const moves = detail::holds(out, text);
    std::string const copy = moves ? text : std::string();
    detail::FieldReader fields(moves ? copy : text, separators);
    // KEPT(appended-never-cleared): what the list holds already stays in front.
    detail::makeRoom(out, fields);
    for (std::string_view field; fields.next(field);) {
        detail::append(out, field, fields.following(field));
    }
}

/// Appends one pair, the value as it is: for numbers and plain words. `serializeNVP` escapes.
/// KEPT(two-writers)
/// Takes    nvp: a text of pairs; one space goes before the new pair unless it is empty. name,
///          value: with either of them empty nothing is written. KEPT(no-empty-value-is-added)
///          Either may be `nvp` itself, as it has become by then. KEPT(own-text-is-read-late)
/// Fails    never, but for std::bad_alloc.
/// Example  "a=1" with "b" and "x y" becomes "a=1 b=x y"
UTILLIBRARY_EXPORT void addToNVPString(std::string& nvp, std::string const& name,
                                       std::string const& value);

/// Appends the pairs of a map, each value as `escapeString(value, false)` has it; `addToNVPString`
/// writes it raw. KEPT(two-writers) Of a value with a backslash only the end survives.
/// KEPT(backslash-starts-over)
/// Takes    out: not emptied first KEPT(appended-never-cleared); one space goes before each pair
///          unless `out` is empty then. map: any map from string to string; an empty value is
///          written as "name=".
/// Gives    the pairs in the map's own order, which carries no meaning.
/// Fails    never, but for std::bad_alloc; `out` is as it was then.
/// Example  {b: "two words"} onto "x=1" gives 'x=1 b=two\u0020words'
template <typename Map>
void serializeNVP(std::string& out, Map const& map) {
    detail::PairWriter writer(!out.empty());
    for (auto const& [name, value] : map)
        writer.add(name, value);
    writer.appendTo(out);
}

/// Inserts the pairs of a text into a map, each value as `unescapeString` reads it.
/// Takes    map: any map from string to string; it is not emptied first.
///          KEPT(appended-never-cleared) text: blanks at its ends are trimmed, fields stand between
///          spaces; other blanks belong to a field.
/// Gives    true when every field was a pair. A name that the map holds already keeps its value, be
///          it from before the call or from an earlier field. KEPT(first-value-wins)
/// Fails    with false for a field without "=", or with nothing before it; all other fields are
///          inserted all the same. KEPT(malformed-fields-are-skipped) A text of nothing but blanks
///          is one such field. KEPT(empty-text-is-malformed) Or with std::bad_alloc; the pairs
///          before stay then.
/// Example  '  a=1   b=x=y  ' gives {a: "1", b: "x=y"} and true
template <typename Map>
bool deserializeNVP(Map& map, std::string const& text) {
    detail::FieldReader fields(detail::trimmed(text), " ");
    detail::makeBuckets(map, fields);
    bool const hasEscapes = text.find('\\') != std::string::npos;
    bool wellFormed = true;
    for (std::string_view field; fields.next(field);) {
        std::size_t const equals = field.find('=');
        if (equals == 0 || equals == std::string_view::npos) {
            // KEPT(malformed-fields-are-skipped): no return; what follows is read.
            // KEPT(empty-text-is-malformed): its one field comes here like any other.
            wellFormed = false;
            continue;
        }
        std::string_view const name = field.substr(0, equals);
        std::string_view const value = field.substr(equals + 1);
        // KEPT(first-value-wins): emplace, never an assignment.
        if (!hasEscapes || value.find('\\') == std::string_view::npos) {
            map.emplace(name, value);
        } else {
            map.emplace(name, unescapeString(std::string(value)));
        }
    }
    return wellFormed;
}

/// Mixes the numbers of a new sample into a running average, each by the time that it covers.
/// Takes    names: which pairs to average; a name that stands there twice is averaged twice.
///          KEPT(listed-twice-averaged-twice) average, sample: texts of pairs; they and the names
///          may be one object. averageDuration, sampleDuration: the time that each covers, in any
///          one unit; the host adds them up for its next call.
/// Gives    average * w + sample * (1 - w) with w = averageDuration / (averageDuration +
///          sampleDuration), every step in single precision, written as "%g" under the C locale.
///          Values are read as `std::stof` reads them: blanks before the number and anything behind
///          it do not matter. A sample value that it refuses, as it does inexact subnormals, or
///          that is not a number, is left out silently; an average value of that kind gives way to
///          the sample's. KEPT(unreadable-values-are-silent)
///          All other pairs of the average stay, and no pair is added. KEPT(averaging-adds-no-name)
///          Values are read and written as by `deserializeNVP` and `serializeNVP`; a name that
///          stood there twice stays once, with its first value. Their order carries no meaning.
/// Fails    with a report ("StringNVP::averageNVP", 3, "Invalid duration", 0) where sampleDuration
///          is not above zero or averageDuration is below it; then it goes on with w = 1, so that
///          `average` is rewritten all the same. KEPT(invalid-duration-goes-on) A duration that is
///          not a number is not reported, and makes the results so. KEPT(nan-duration-is-silent)
///          Where either text has a malformed field, `average` stays as it is, without a report. So
///          does an empty one: the host starts it with its first sample.
///          KEPT(empty-text-is-malformed) With std::bad_alloc; `average` stays as it is then.
/// Example  ({"t"}, "t=10", 3, "t=20", 1) gives "t=12.5"
UTILLIBRARY_EXPORT void averageNVP(std::vector<std::string> const& names, std::string& average,
                                   float averageDuration, std::string const& sample,
                                   float sampleDuration);

// The usual forms, compiled once and exported.
extern template UTILLIBRARY_EXPORT void split(std::vector<std::string>&, std::string const&,
                                              std::string const&);
extern template UTILLIBRARY_EXPORT void serializeNVP(
    std::string&, std::unordered_map<std::string, std::string> const&);
extern template UTILLIBRARY_EXPORT bool deserializeNVP(
    std::unordered_map<std::string, std::string>&, std::string const&);

}  // namespace com::halvorin::utilities

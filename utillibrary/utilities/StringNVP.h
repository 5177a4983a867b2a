#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <utillibrary/export.h>
#include <utillibrary/utilities/StringTrim.h>
#include <utillibrary/utilities/StringUtilities.h>

// Strings that are split into fields, and strings of name-value pairs.
//
// A string of pairs has fields "name=value" with one space between two fields. The name is what
// comes before the first "=" of the field, and is not empty. The value is everything after that
// "=", and may contain "=". `serializeNVP` escapes values and `deserializeNVP` unescapes them. No
// function escapes or checks a name: a name that contains a space or "=" cannot be read back.
//     std::unordered_map<std::string, std::string> pairs;
//     deserializeNVP(pairs, "place=east\\u0020wing t=20.5")    // true
//     pairs                                                    // {place: "east wing", t: "20.5"}
//     std::string average;
//     addToNVPString(average, "t", "21");                      // "t=21"
//     averageNVP({"t"}, average, 60, "t=24", 30);
//     average                                                  // "t=22"
//
// `split`, `serializeNVP` and `deserializeNVP` are templates, for lists and maps of any type. The
// library exports the forms for std::vector and std::unordered_map, which are faster.
//
// A name after "Kept" is a deliberate surprise; share/doc/utillibrary/kept.md explains each.
// Kept     names-are-unchecked
namespace com::halvorin::utilities {

/// Appends the fields of a string to a list.
/// Takes    out: any type that has a push_back for a std::string. It is not emptied first.
///          separators: a set of bytes; each of them ends a field. Without one the whole string is
///          one field. text and separators may be elements of `out`.
/// Gives    the fields that are not empty, and always the last field, even if it is empty. So an
///          empty string gives one empty field.
/// Fails    only with std::bad_alloc, or with what push_back throws; the fields before are then
///          in `out`.
/// Like     strtok_r(3), except: (1) the last field is appended even if it is empty; (2) the string
///          is not changed; (3) a zero byte is an ordinary byte.
/// Example  std::vector<std::string> fields;
///          split(fields, "a,,b;", ",;");      // {"a", "b", ""}
///          split(fields, ",c", ",");          // {"a", "b", "", "c"}
/// Kept     split-keeps-last, appended-never-cleared
template <typename List>
void split(List& out, std::string const& text, std::string const& separators) {
    // Copies: when `out` grows, its elements may move or change.
    // NOLINTBEGIN(performance-unnecessary-copy-initialization): both may be elements of `out`.
    std::string const source = text;
    std::string const ends = separators;
    // NOLINTEND(performance-unnecessary-copy-initialization)
    std::size_t start = 0;
    std::size_t end = source.find_first_of(ends, start);
    while (end != std::string::npos) {
        if (end != start) out.push_back(source.substr(start, end - start));
        start = end + 1;
        end = source.find_first_of(ends, start);
    }
    // KEPT(split-keeps-last): no test for emptiness, unlike above; with one, "a," gives {"a"}.
    out.push_back(source.substr(start));
}

/// `split` for std::vector, compiled once and exported.
/// Fails    as the template does.
/// Cost     the vector grows at most once, and at least doubles then.
template <>
UTILLIBRARY_EXPORT void split(std::vector<std::string>& out, std::string const& text,
                              std::string const& separators);

/// Appends one pair without escaping its value: for numbers and plain words. `serializeNVP` escapes
/// its values.
/// Takes    nvp: a string of pairs, or an empty one. If it is not empty, a space comes before the
///          new pair. name, value: if either is empty, nothing is appended. Either may be `nvp`
///          itself; it is read after the space has been appended.
/// Fails    with std::bad_alloc only; `nvp` is then unchanged.
/// Example  std::string nvp = "a=1";
///          addToNVPString(nvp, "b", "x y");      // "a=1 b=x y"
///          addToNVPString(nvp, "c", "");         // "a=1 b=x y"
/// Kept     two-writers, no-empty-value-is-added, own-text-is-read-late
UTILLIBRARY_EXPORT void addToNVPString(std::string& nvp, std::string const& name,
                                       std::string const& value);

/// Appends the pairs of a map, each value as `escapeString(value, false)` returns it.
/// Takes    out: it is not emptied first. If it is not empty, a space comes before the first new
///          pair. It may be a value of the map. map: any type whose entries have a `first` and a
///          `second` that convert to a std::string. An empty value is written as "name=".
/// Gives    the pairs in the order of the map. The order has no meaning. If a value contains a
///          backslash, `escapeString` keeps only its end.
/// Fails    with std::bad_alloc only; `out` is then unchanged.
/// Example  std::string out = "x=1";
///          std::unordered_map<std::string, std::string> const map = {{"b", "two words"}};
///          serializeNVP(out, map);      // "x=1 b=two\\u0020words"
/// Kept     two-writers, appended-never-cleared, backslash-starts-over
template <typename Map>
void serializeNVP(std::string& out, Map const& map) {
    std::string pairs;
    for (auto&& entry : map) {
        std::string const& name = entry.first;
        std::string const& value = entry.second;
        if (!out.empty() || !pairs.empty()) pairs += ' ';
        pairs += name;
        pairs += '=';
        // KEPT(two-writers): `addToNVPString` writes the value as it is.
        pairs += escapeString(value, false);
    }
    // KEPT(appended-never-cleared): what `out` contains stays in front.
    out += pairs;
}

/// `serializeNVP` for std::unordered_map, compiled once and exported.
/// Fails    as the template does.
/// Cost     one allocation, if the pairs take less than 4 KiB.
template <>
UTILLIBRARY_EXPORT void serializeNVP(std::string& out,
                                     std::unordered_map<std::string, std::string> const& map);

/// Inserts the pairs of a string into a map, each value as `unescapeString` returns it.
/// Takes    map: any type that has `find` for a name, `end`, and `insert` for a pair of two
///          std::string. It is not emptied first. text: whitespace at its two ends is ignored.
///          Between fields there are one or more spaces; other whitespace belongs to a field. The
///          string may be a value of the map.
/// Gives    true if every field is a pair. A name that the map already contains keeps its value,
///          whether it was there before the call or comes from an earlier field.
/// Fails    with false if a field has no "=", or nothing before it. The other fields are inserted
///          nevertheless. A string that is empty or only whitespace counts as one such field. Or
///          with std::bad_alloc or what the map throws; the pairs before are then in the map.
/// Example  std::unordered_map<std::string, std::string> map;
///          deserializeNVP(map, "  a=1   b=x=y  ")      // true
///          deserializeNVP(map, "a=2 junk c=3")         // false
///          map                                         // {a: "1", b: "x=y", c: "3"}
/// Kept     first-value-wins, malformed-fields-are-skipped, empty-text-is-malformed,
///          appended-never-cleared
template <typename Map>
bool deserializeNVP(Map& map, std::string const& text) {
    std::vector<std::string> fields;
    split(fields, trim(text), " ");
    bool wellFormed = true;
    for (std::string const& field : fields) {
        std::size_t const equals = field.find('=');
        if (equals == std::string::npos || equals == 0) {
            // KEPT(malformed-fields-are-skipped): no return; the fields after this one are read.
            // KEPT(empty-text-is-malformed): the one field of an empty string also comes here.
            wellFormed = false;
            continue;
        }
        std::string const name = field.substr(0, equals);
        if (map.find(name) != map.end()) continue;  // KEPT(first-value-wins)
        std::string const value = unescapeString(field.substr(equals + 1));
        map.insert(std::pair<std::string, std::string>(name, value));
    }
    return wellFormed;
}

/// `deserializeNVP` for std::unordered_map, compiled once and exported.
/// Fails    as the template does.
/// Cost     one allocation for each pair, and few for the buckets. The map and its hash are the
///          caller's: names that share a bucket take quadratic time, as in any insertion.
template <>
UTILLIBRARY_EXPORT bool deserializeNVP(std::unordered_map<std::string, std::string>& map,
                                       std::string const& text);

/// Mixes the numbers of a new sample into a running average, weighted by the time that each covers.
///
/// The weight of the average is w = averageDuration / (averageDuration + sampleDuration). For each
/// name in `names`, the value in `average` becomes:
///
/// | sample value | average value | new value                                              |
/// |--------------|---------------|--------------------------------------------------------|
/// | a number     | a number      | average value * w + sample value * (1 - w), as "%g"    |
/// | a number     | no number     | the sample value, as "%g"                              |
/// | no number    | any           | unchanged                                              |
/// | no such name | any           | unchanged                                              |
/// | any          | no such name  | no pair is added                                       |
///
/// A value is a number if `std::stof` returns one for it that is not NaN. So whitespace before a
/// number and anything after it are ignored. Infinity is a number. A value too large for a float is
/// no number, and neither is a value so small that it loses digits as a float. "%g" is
/// `to_string(value, "%g")`.
///
/// Two results depend on the processor: the sign of a NaN that arithmetic makes, and whether strtof
/// reports a range error for a decimal just below 2^-126 that is rounded up to it. For
/// "1.17549435e-38" it does on aarch64, so this is no number there; on x86-64 it is one.
///
/// Takes    names: a name that occurs twice is averaged twice; the second time starts from the six
///          digits of the first. average, sample: strings of pairs, read as by `deserializeNVP`.
///          They may be the same string, and may be elements of `names`. averageDuration,
///          sampleDuration: in any one unit. The function does not add them up; the caller does,
///          for the next call.
/// Gives    the new pairs in `average`, written as by `serializeNVP`. Other pairs are unchanged. A
///          name that occurs twice in `average` stays once, with its first value. The order has no
///          meaning. Each step of the arithmetic is in single precision.
/// Fails    if sampleDuration <= 0 or averageDuration < 0: with a report ("StringNVP::averageNVP",
///          3, "Invalid duration", 0); it continues with w = 1, so `average` is still rewritten. If
///          a field of either string is malformed, or a string is empty: without a report;
///          `average` is unchanged. If a duration is NaN: without a report; the results are NaN.
///          With std::bad_alloc: `average` is unchanged.
/// Cost     proportional to the sizes of the strings; at worst n log n, even for names that share a
///          hash.
/// Source   POSIX strtof and fprintf
/// Example  std::string average = "t=10 place=attic";
///          averageNVP({"t"}, average, 3, "t=20", 1);
///          average                                      // "t=12.5 place=attic"
/// Kept     listed-twice-averaged-twice, averaging-adds-no-name, unreadable-values-are-silent,
///          invalid-duration-goes-on, nan-duration-is-silent, empty-text-is-malformed
UTILLIBRARY_EXPORT void averageNVP(std::vector<std::string> const& names, std::string& average,
                                   float averageDuration, std::string const& sample,
                                   float sampleDuration);

}  // namespace com::halvorin::utilities

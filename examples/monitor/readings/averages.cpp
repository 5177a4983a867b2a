#include "readings/averages.h"

#include <unordered_map>

#include <utillibrary/utilities/StringNVP.h>
#include <utillibrary/utilities/StringUtilities.h>

#include "readings/reading_line.h"

namespace monitor {

using com::halvorin::datatypes::Variant;
using com::halvorin::utilities::addToNVPString;
using com::halvorin::utilities::averageNVP;
using com::halvorin::utilities::deserializeNVP;
using com::halvorin::utilities::strtodEx;

namespace {

Variant Reading::*valueNamed(std::string const& name) noexcept {
    for (Field const& field : FIELDS)
        if (name == field.name) return field.value;
    return nullptr;
}

// The number in "name=number", or Null if there is none.
Variant numberOf(std::string const& name, std::string const& pair) {
    std::unordered_map<std::string, std::string> pairs;
    deserializeNVP(pairs, pair);
    double number = 0;
    if (strtodEx(pairs[name], number)) return number;
    Variant none;
    none.makeNull();
    return none;
}

}  // namespace

Averages::Averages(std::vector<std::string> const& names) {
    for (std::string const& name : names)
        averages_.push_back({name, "", Seconds::zero()});
}

void Averages::add(Reading const& reading, Seconds span) {
    bool const counts = span > Seconds::zero();
    hasReadings_ = true;
    if (counts) span_ += span;
    for (Average& average : averages_) {
        std::string sample;
        addToNVPString(sample, average.name, valueText(reading.*valueNamed(average.name)));
        if (sample.empty()) continue;
        // averageNVP adds no name that the average lacks, so the first sample becomes the average.
        if (average.pair.empty()) average.pair = sample;
        if (!counts) continue;
        averageNVP({average.name}, average.pair, static_cast<float>(average.span.count()), sample,
                   static_cast<float>(span.count()));
        average.span += span;
    }
}

bool Averages::empty() const noexcept { return averages_.empty() || !hasReadings_; }

Averages::Seconds Averages::span() const noexcept { return span_; }

Reading Averages::mean() const {
    Reading mean;
    for (Average const& average : averages_)
        mean.*valueNamed(average.name) = numberOf(average.name, average.pair);
    return mean;
}

}  // namespace monitor

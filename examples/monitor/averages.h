#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "reading.h"

namespace monitor {

// Running averages of some values of readings, each reading by the time that it covers.
//
// They are kept as the library keeps them, as texts with six significant digits; each value has its
// own, since what is Null for a while covers less time than the others do.
class Averages {
public:
    // A log may go back in time, over and over: no count of nanoseconds holds the sum for certain.
    using Seconds = std::chrono::duration<double>;

    /// Takes    names out of FIELDS, each at most once; with none there is nothing to average.
    explicit Averages(std::vector<std::string> const& names);

    /// Adds a reading.
    /// Takes    span: the time that it covers. A reading whose span is not above zero counts only
    ///          for a value that has had none, and gives way to the first that has a span.
    void add(Reading const& reading, Seconds span);

    /// True when there is nothing to show: no names, or no reading yet.
    bool empty() const noexcept;

    /// The time covered by all readings so far.
    Seconds span() const noexcept;

    /// The averages in the places of the values. One that was Null in every reading is Null; one
    /// that is not asked for is unknown, and so is the time.
    Reading mean() const;

private:
    struct Average {
        std::string name;
        std::string pair;  // "name=number"; empty before the first
        Seconds span;
    };

    std::vector<Average> averages_;
    Seconds span_{0};
    bool hasReadings_ = false;
};

}  // namespace monitor

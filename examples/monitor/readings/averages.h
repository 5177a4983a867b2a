#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "readings/reading.h"

namespace monitor {

// Running averages of some values. Each reading counts by the time that it covers.
//
// The library keeps an average as a string with six significant digits. Each value has an average
// of its own, because a value that is Null for a while covers less time than the others.
class Averages {
public:
    // A double, because a log may go back in time again and again: the sum of its spans may exceed
    // any count of nanoseconds.
    using Seconds = std::chrono::duration<double>;

    /// Takes    names: of FIELDS, each at most once. Without a name nothing is averaged.
    /// Fails    with std::bad_alloc only.
    explicit Averages(std::vector<std::string> const& names);

    /// Adds a reading.
    /// Takes    span: the time that the reading covers. A reading whose span is zero or negative is
    ///          used only for a value that has no average yet. The first reading with a positive
    ///          span replaces it.
    /// Fails    with std::bad_alloc only.
    void add(Reading const& reading, Seconds span);

    /// True if there is nothing to show: no name was given, or no reading was added.
    /// Fails    never.
    bool empty() const noexcept;

    /// The time that all readings cover together.
    /// Fails    never.
    Seconds span() const noexcept;

    /// The averages, in the form of a reading.
    /// Gives    Null for a value that was Null in every reading. The values that nobody asked for,
    ///          and the time, are not set.
    /// Fails    with std::bad_alloc only.
    Reading mean() const;

private:
    struct Average {
        std::string name;
        std::string pair;  // "name=number"; empty before the first reading
        Seconds span;
    };

    std::vector<Average> averages_;
    Seconds span_{0};
    bool hasReadings_ = false;
};

}  // namespace monitor

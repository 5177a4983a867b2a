#include "chart/chart_lines.h"

#include <deque>
#include <iterator>
#include <utility>

namespace monitor {

namespace {

constexpr double AREA_OPACITY = 0.1;
constexpr double BAND_OPACITY = 0.2;

// Values above 100 % have a mark above the chart: a line with an arrow.
constexpr Drawing::Stroke CUT_OFF = {3, 0, 0};
constexpr double CUT_OFF_Y = TOP - 5;
constexpr double ARROW_HEIGHT = 8;

// The longest time between two moments that a line still connects. Readings come at about equal
// times, so it is 2.5 times the median: a line also connects the neighbours of a single missing
// reading.
double longestStep(std::deque<Moment> const& moments) {
    std::vector<double> steps;
    for (std::size_t i = 1; i < moments.size(); ++i)
        steps.push_back(moments[i].time - moments[i - 1].time);
    if (steps.empty()) return 0;
    auto const middle = steps.begin() + static_cast<long>(steps.size() / 2);
    std::nth_element(steps.begin(), middle, steps.end());
    return *middle * 2.5;
}

// Consecutive moments that a line connects. Each has a value of the series.
using Run = std::vector<Moment const*>;

std::vector<Run> runsOf(std::deque<Moment> const& moments, Series series) {
    double const longest = longestStep(moments);
    std::vector<Run> runs;
    Moment const* previous = nullptr;
    for (Moment const& moment : moments) {
        bool const has = moment.values[series].count > 0;
        bool const follows = previous != nullptr && moment.time - previous->time <= longest;
        if (has && !follows) runs.emplace_back();
        if (has) runs.back().push_back(&moment);
        previous = has ? &moment : nullptr;
    }
    return runs;
}

// The line of a run: the mean of each moment.
std::vector<Point> pathOf(Run const& run, Series series, TimeScale const& scale) {
    std::vector<Point> path;
    for (Moment const* const moment : run) {
        Values const& values = moment->values[series];
        double const mean = values.sum / static_cast<double>(values.count);
        path.push_back({scale.place(moment->time), heightOf(mean)});
    }
    return path;
}

// The polygon between the highest and the lowest values; empty if they are the same everywhere.
std::vector<Point> bandOf(Run const& run, Series series, TimeScale const& scale) {
    std::vector<Point> band;
    bool isWide = false;
    for (Moment const* const moment : run) {
        band.push_back({scale.place(moment->time), heightOf(moment->values[series].high)});
        isWide = isWide || moment->values[series].low < moment->values[series].high;
    }
    if (!isWide) return {};
    for (auto moment = run.rbegin(); moment != run.rend(); ++moment)
        band.push_back({scale.place((*moment)->time), heightOf((*moment)->values[series].low)});
    return band;
}

// Marks the values of a run that are above 100 %: one mark for each stretch of such moments.
void drawCutOff(Drawing& drawing, Series series, Run const& run, TimeScale const& scale,
                Notes& notes) {
    MonitorChartRole const role = LOOKS[series].role;
    auto const isAbove = [series](Moment const* moment) {
        return moment->values[series].high > 100;
    };
    auto const isHigher = [series](Moment const* a, Moment const* b) {
        return a->values[series].high < b->values[series].high;
    };
    for (auto from = std::find_if(run.begin(), run.end(), isAbove); from != run.end();) {
        auto const to = std::find_if_not(from, run.end(), isAbove);
        double const first = scale.place((*from)->time);
        double const last = scale.place((*std::prev(to))->time);
        double const highest = scale.place((*std::max_element(from, to, isHigher))->time);
        drawing.lines.push_back({role, CUT_OFF, {{first, CUT_OFF_Y}, {last, CUT_OFF_Y}}});
        drawing.areas.push_back({role, 1, arrowAt(highest, CUT_OFF_Y)});
        notes.isCutOff = true;
        from = std::find_if(to, run.end(), isAbove);
    }
}

// Draws a line with its band or area. Gives the place of the last reading.
Point drawRun(Drawing& drawing, Series series, Run const& run, TimeScale const& scale,
              Notes& notes) {
    SeriesLook const& look = LOOKS[series];
    std::vector<Point> path = pathOf(run, series, scale);
    drawCutOff(drawing, series, run, scale, notes);
    auto band = bandOf(run, series, scale);
    bool const hasBand = !band.empty() && path.size() > 1;
    notes.hasBand = notes.hasBand || hasBand;
    if (path.size() == 1) {  // a line through one point is invisible, so draw a dot
        drawing.lines.push_back({look.role, DOT, {path[0], path[0]}});
    } else {
        drawing.lines.push_back({look.role, look.stroke, path});
    }
    Point const last = {path.back().x, heightOf(run.back()->values[series].last)};
    if (hasBand) {
        drawing.areas.push_back({look.role, BAND_OPACITY, std::move(band)});
    } else if (series == PROCESSOR && path.size() > 1) {
        // The processor's line jumps up and down. An area below it makes it easier to follow.
        // Beside a band it would be a second shade that means nothing.
        path.push_back({path.back().x, BOTTOM});
        path.push_back({path.front().x, BOTTOM});
        drawing.areas.push_back({look.role, AREA_OPACITY, std::move(path)});
    }
    return last;
}

}  // namespace

std::vector<Point> arrowAt(double x, double y) {
    return {{x - ARROW_WIDTH / 2, y}, {x, y - ARROW_HEIGHT}, {x + ARROW_WIDTH / 2, y}};
}

std::optional<Point> drawSeries(Drawing& drawing, History const& history, Series series,
                                TimeScale const& scale, Notes& notes) {
    std::optional<Point> end;
    for (Run const& run : runsOf(history.moments(), series))
        end = drawRun(drawing, series, run, scale, notes);
    return end;
}

}  // namespace monitor

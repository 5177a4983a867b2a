#pragma once

#include <string>
#include <vector>

#include "chart/chart_plugin.h"

namespace monitor {

using Point = MonitorChartPoint;

// A picture: areas, lines and texts. chart_plugin.h says what each of them means. Here they own
// their points and strings; there they point to them.
struct Drawing {
    // A filled polygon.
    struct Area {
        MonitorChartRole role;
        double opacity;
        std::vector<Point> points;
    };
    // How a line is drawn. With a gap of 0 it has no dashes.
    struct Stroke {
        double width;
        double dash;
        double gap;
    };
    // A line through points.
    struct Line {
        MonitorChartRole role;
        Stroke stroke;
        std::vector<Point> points;
    };
    // A line of text.
    struct Text {
        MonitorChartRole role;
        MonitorChartAnchor anchor;
        bool bold;
        double size;
        Point place;
        std::string text;
    };

    double width = 0;
    double height = 0;
    std::string title;
    std::string description;
    std::vector<Area> areas;
    std::vector<Line> lines;
    std::vector<Text> texts;
};

}  // namespace monitor

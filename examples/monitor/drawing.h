#pragma once

#include <string>
#include <vector>

#include "chart_plugin.h"

namespace monitor {

using Point = MonitorChartPoint;

// A picture as lines and texts at places. chart_plugin.h says what each of them means; here they own
// what they are made of.
struct Drawing {
    struct Area {
        MonitorChartRole role;
        double opacity;
        std::vector<Point> points;
    };
    // How a line is drawn. A gap of 0: throughout.
    struct Stroke {
        double width;
        double dash;
        double gap;
    };
    struct Line {
        MonitorChartRole role;
        Stroke stroke;
        std::vector<Point> points;
    };
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

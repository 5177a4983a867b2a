// What the monitor and its chart plugins know of each other: plain data that C can read, too.
//
// A plugin is a shared object "monitor-chart-FORMAT.so" that exports one function, the entry below.
// It turns a scene, lines and texts at places, into the bytes of a picture. Nothing is thrown across
// this border, and everything that a pointer leads to belongs to the side that made it.
#pragma once

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Raised by every change of what follows. A plugin of another number is not used.
#define MONITOR_CHART_ABI 1U

/// The function that a plugin exports, by name.
#define MONITOR_CHART_ENTRY "monitorChartWriter"

/// What a thing is, which decides its colour. The last is their number.
enum MonitorChartRole {
    MONITOR_CHART_BACKGROUND,
    MONITOR_CHART_GRID,
    MONITOR_CHART_AXIS,
    MONITOR_CHART_INK,
    MONITOR_CHART_MUTED,
    MONITOR_CHART_PROCESSOR,
    MONITOR_CHART_MEMORY,
    MONITOR_CHART_DISK,
    MONITOR_CHART_ROLES
};

/// The two palettes, in the order in which a scene has them; and a third theme that leaves the choice
/// to whoever looks at the picture. A format that cannot do that takes the light one.
enum MonitorChartTheme { MONITOR_CHART_LIGHT, MONITOR_CHART_DARK, MONITOR_CHART_EITHER };

/// Which point of a text lies at its place: where it begins, its middle, where it ends.
enum MonitorChartAnchor { MONITOR_CHART_START, MONITOR_CHART_MIDDLE, MONITOR_CHART_END };

/// A place: x to the right, y downwards, from the picture's upper left corner.
typedef struct MonitorChartPoint {
    double x;
    double y;
} MonitorChartPoint;

/// A filled polygon, its last point joined to the first.
typedef struct MonitorChartArea {
    unsigned int role;
    double opacity;  // 0..1
    size_t count;
    MonitorChartPoint const* points;
} MonitorChartArea;

/// A line through points, with round ends and joints, so that one of no length is a dot.
typedef struct MonitorChartLine {
    unsigned int role;
    double width;
    double dash;  // the length that is drawn and the length that is not, in turn
    double gap;   // 0: drawn throughout
    size_t count;
    MonitorChartPoint const* points;
} MonitorChartLine;

/// A line of text.
typedef struct MonitorChartText {
    unsigned int role;
    unsigned int anchor;
    int bold;
    double size;              // of the font
    MonitorChartPoint place;  // on the line that letters stand on
    char const* text;         // UTF-8
} MonitorChartText;

/// A picture. It is painted in this order: background, areas, lines, texts.
typedef struct MonitorChartScene {
    double width;
    double height;
    unsigned int theme;
    unsigned int palettes[2][MONITOR_CHART_ROLES];  // 0xRRGGBB for each role
    char const* title;                              // what it is, in a line of UTF-8
    char const* description;                        // what it shows, for those who cannot see it
    size_t areaCount;
    MonitorChartArea const* areas;
    size_t lineCount;
    MonitorChartLine const* lines;
    size_t textCount;
    MonitorChartText const* texts;
} MonitorChartScene;

/// Takes the next bytes of the picture. Any answer but 0 asks the plugin to give up.
typedef int (*MonitorChartSink)(void* context, char const* bytes, size_t count);

/// What a plugin offers. The number comes first in every version: it is read before all else.
typedef struct MonitorChartWriter {
    unsigned int abi;  // MONITOR_CHART_ABI of the header that the plugin was built with

    /// Writes a scene to a sink. Numbers in it are finite, counts and roles in range.
    /// Gives    null when the whole picture was taken, else why it was not: a text that stays for as
    ///          long as the plugin is loaded.
    char const* (*write)(MonitorChartScene const* scene, MonitorChartSink sink, void* context);
} MonitorChartWriter;

/// The entry of a plugin. What it points to stays for as long as the plugin is loaded.
__attribute__((visibility("default"))) MonitorChartWriter const* monitorChartWriter(void);

#ifdef __cplusplus
}
#endif

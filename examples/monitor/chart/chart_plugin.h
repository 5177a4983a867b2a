// The interface between the monitor and its chart plugins. It is plain data, so a plugin may be
// written in C.
//
// A plugin is a shared object "monitor-chart-FORMAT.so" that exports one function, the entry below.
// It turns a scene (areas, lines and texts at places) into the bytes of a picture. Neither side
// throws an exception into the other. What a pointer points to belongs to the side that made it.
#pragma once

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/// The version of this interface. It rises with every change of this file. The monitor refuses a
/// plugin that has another number.
#define MONITOR_CHART_ABI 1U

/// The name of the function that a plugin exports.
#define MONITOR_CHART_ENTRY "monitorChartWriter"

/// What an area, a line or a text is for; this decides its colour. The last one is their number.
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

/// The themes. The first two are the indexes of a scene's palettes. EITHER leaves the choice to the
/// viewer of the picture; a format that cannot do that uses LIGHT.
enum MonitorChartTheme { MONITOR_CHART_LIGHT, MONITOR_CHART_DARK, MONITOR_CHART_EITHER };

/// Which point of a text is at its place: its start, its middle or its end.
enum MonitorChartAnchor { MONITOR_CHART_START, MONITOR_CHART_MIDDLE, MONITOR_CHART_END };

/// A place in the picture: x goes right, y goes down, from the upper left corner.
typedef struct MonitorChartPoint {
    double x;
    double y;
} MonitorChartPoint;

/// A filled polygon. Its last point is connected to the first.
typedef struct MonitorChartArea {
    unsigned int role;
    double opacity;  // 0..1
    size_t count;
    MonitorChartPoint const* points;
} MonitorChartArea;

/// A line through points. Its ends and joints are round, so a line of no length is a dot.
typedef struct MonitorChartLine {
    unsigned int role;
    double width;
    double dash;  // the length that is drawn, before a gap
    double gap;   // the length that is not drawn; 0 for a line without gaps
    size_t count;
    MonitorChartPoint const* points;
} MonitorChartLine;

/// A line of text.
typedef struct MonitorChartText {
    unsigned int role;
    unsigned int anchor;
    int bold;
    double size;              // of the font
    MonitorChartPoint place;  // on the baseline
    char const* text;         // UTF-8
} MonitorChartText;

/// A picture. The order of painting is: background, areas, lines, texts.
typedef struct MonitorChartScene {
    double width;
    double height;
    unsigned int theme;
    unsigned int palettes[2][MONITOR_CHART_ROLES];  // 0xRRGGBB for each role
    char const* title;                              // one line of UTF-8
    char const* description;                        // UTF-8, for people who cannot see the picture
    size_t areaCount;
    MonitorChartArea const* areas;
    size_t lineCount;
    MonitorChartLine const* lines;
    size_t textCount;
    MonitorChartText const* texts;
} MonitorChartScene;

/// Receives the next bytes of the picture.
/// Gives    0, or another number if the plugin must stop.
typedef int (*MonitorChartSink)(void* context, char const* bytes, size_t count);

/// What a plugin offers. The number is the first member in every version of this interface, because
/// it is read before anything else.
typedef struct MonitorChartWriter {
    unsigned int abi;  // MONITOR_CHART_ABI of the header that the plugin was built with

    /// Writes a scene to a sink. It must not be null.
    /// Takes    scene: its numbers are finite, its counts and roles are in range.
    /// Gives    null if the sink has taken the whole picture, otherwise the reason why not. The
    ///          string remains for as long as the plugin is loaded.
    char const* (*write)(MonitorChartScene const* scene, MonitorChartSink sink, void* context);
} MonitorChartWriter;

/// The entry of a plugin.
/// Gives    what remains for as long as the plugin is loaded.
__attribute__((visibility("default"))) MonitorChartWriter const* monitorChartWriter(void);

#ifdef __cplusplus
}
#endif

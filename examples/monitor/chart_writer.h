#pragma once

#include <string>

#include <utillibrary/datatypes/Library.h>

#include "drawing.h"

namespace monitor {

// A plugin that writes drawings in one format, loaded for as long as this lives.
class ChartWriter {
public:
    /// Loads "monitor-chart-FORMAT.so" from a folder.
    /// Fails    with std::runtime_error that says what is wrong with the plugin. Where the loader
    ///          refused it, `Library` has reported the loader's reason before.
    ChartWriter(std::string const& folder, std::string const& format);

    /// A drawing as the bytes of a picture.
    /// Fails    with std::runtime_error and the plugin's reason, and with std::bad_alloc.
    std::string write(Drawing const& drawing, MonitorChartTheme theme) const;

private:
    com::halvorin::datatypes::Library plugin_;
    MonitorChartWriter const* writer_ = nullptr;
};

/// The folder that plugins are looked for in: "plugins", beside the program.
/// Fails    with std::filesystem::filesystem_error where the program's own path cannot be read.
std::string pluginFolder();

}  // namespace monitor

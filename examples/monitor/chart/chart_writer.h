#pragma once

#include <string>

#include <utillibrary/datatypes/Library.h>

#include "chart/chart_options.h"
#include "chart/chart_plugin.h"
#include "chart/drawing.h"

namespace monitor {

// A plugin that writes drawings in one format. It is loaded for as long as this object lives.
class ChartWriter {
public:
    /// Loads "monitor-chart-FORMAT.so" from a folder.
    /// Fails    with std::runtime_error that says what is wrong with the plugin. If the loader
    ///          refuses it, `Library` reports the loader's reason first. The loader never sees what
    ///          is not a regular file: it would wait for ever for the writer of a pipe.
    ChartWriter(std::string const& folder, std::string const& format);

    /// Writes a drawing.
    /// Gives    the bytes of the picture.
    /// Fails    with std::runtime_error that has the plugin's reason, or says that the plugin has
    ///          thrown an exception; and with std::bad_alloc.
    std::string write(Drawing const& drawing, Theme theme) const;

private:
    std::string path_;
    com::halvorin::datatypes::Library plugin_;
    MonitorChartWriter const* writer_ = nullptr;
};

/// The folder of the plugins: "plugins" beside the program, if there is one, as in a build tree.
/// For an installed program it is the folder where they are installed, relative to the program's
/// own.
/// Fails    with std::filesystem::filesystem_error if the program's own path cannot be read.
std::string pluginFolder();

}  // namespace monitor

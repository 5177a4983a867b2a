#include "chart/chart_file.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

#include "chart/chart.h"
#include "readings/descriptor.h"

namespace monitor {

namespace {

// Gives 0, or the errno of the call that failed. In that case no file of that name remains.
int writeFile(std::string const& path, std::string const& bytes) {
    unlink(path.c_str());  // an earlier process with the same number may have left one
    int const descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0) return errno;
    int error = writeWhole(descriptor, bytes);
    if (close(descriptor) != 0 && error == 0) error = errno;
    if (error != 0) unlink(path.c_str());
    return error;
}

// Writes a file beside the old one, then renames it over the old one.
void replaceFile(std::string const& path, std::string const& bytes) {
    std::string const beside = path + "." + std::to_string(getpid()) + ".part";
    int error = writeFile(beside, bytes);
    if (error == 0 && std::rename(beside.c_str(), path.c_str()) != 0) {
        error = errno;
        unlink(beside.c_str());
    }
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), "cannot write the chart " + path);
    }
}

}  // namespace

ChartFile::ChartFile(ChartOptions const& options, int offsetSeconds)
    : options_(options),
      offsetSeconds_(offsetSeconds),
      history_(options.window),
      writer_(options.plugins.empty() ? pluginFolder() : options.plugins, formatOf(options.file)) {
    draw();
}

void ChartFile::draw() const {
    replaceFile(options_.file,
                writer_.write(drawChart(history_, offsetSeconds_, options_.title), options_.theme));
}

}  // namespace monitor

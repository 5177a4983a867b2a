#include "readings/replay.h"

#include <variant>

#include "readings/line_reader.h"

namespace monitor {

namespace {

std::variant<Reading, Malformed> readingOf(LineReader const& lines) {
    if (lines.isTooLong()) {
        return Malformed{"longer than " + std::to_string(LineReader::LONGEST_LINE) + " bytes"};
    }
    return readLine(std::string(lines.line()));
}

}  // namespace

void replay(std::string const& path, Replayer const& replayer) {
    unsigned long bytesRead = 0;
    unsigned long size = 0;
    LineReader lines(path, [&] { replayer.beforeReading(bytesRead, size); });
    size = lines.size();
    while (lines.next()) {
        bytesRead = lines.bytesRead();
        auto const read = readingOf(lines);
        if (auto const* const reading = std::get_if<Reading>(&read)) {
            replayer.use(*reading);
        } else {
            replayer.refuse(lines.number(), std::get<Malformed>(read));
        }
    }
}

}  // namespace monitor

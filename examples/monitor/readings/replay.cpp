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

void replay(std::string const& path, std::function<void(Reading const&)> const& use,
            std::function<void(unsigned long, Malformed const&)> const& refuse) {
    LineReader lines(path);
    while (lines.next()) {
        auto const read = readingOf(lines);
        if (auto const* const reading = std::get_if<Reading>(&read)) {
            use(*reading);
        } else {
            refuse(lines.number(), std::get<Malformed>(read));
        }
    }
}

}  // namespace monitor

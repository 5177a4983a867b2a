// Watches this machine: a host program of utillibrary. Readings become a table, a log and a chart.
#include <exception>
#include <optional>
#include <string>
#include <unistd.h>
#include <variant>

#include <utillibrary/datatypes/Variant.h>
#include <utillibrary/datatypes/xtime.h>

#include "display.h"
#include "program/interruption.h"
#include "program/options.h"
#include "program/output.h"
#include "program/watch.h"
#include "readings/reading.h"
#include "readings/reading_line.h"
#include "readings/reading_log.h"
#include "readings/replay.h"

namespace {

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;
using namespace monitor;

constexpr int FAILED = 1;
constexpr int WRONG_OPTIONS = 2;

// Shows readings of this machine, and appends them to the log if there is one.
void showMachine(Options const& options) {
    std::optional<ReadingLog> log;
    if (!options.logPath.empty()) log.emplace(options.logPath);
    Interruption const interruption;
    Display display(options, [&](std::string const& row) {
        if (interruption.waitForRoom(STDOUT_FILENO)) return false;
        eraseProgress();
        print(row);
        return true;
    });
    Watcher const watcher = {
        [&](Reading const& first) { return display.begin(first.free); },
        [&](Reading const& reading, std::chrono::nanoseconds span) {
            if (!display.showRow(reading)) return false;
            if (log && !interruption.waitForRoom(log->descriptor())) log->append(toLine(reading));
            display.add(reading, span);
            display.drawChart();
            return true;
        },
    };
    watch(options, interruption, watcher);
    display.end();
    eraseProgress();
}

// Shows the readings of a log. A reading covers the time since the reading of the line before.
// Gives the exit status.
int showLog(Options const& options) {
    Display display(options, [](std::string const& row) {
        print(row);
        return true;
    });
    std::optional<xtime_t> before;
    unsigned long malformed = 0;
    replay(
        options.replayPath,
        [&](Reading const& reading) {
            if (!display.hasBegun()) display.begin(reading.free);
            display.showRow(reading);
            display.add(reading,
                        reading.time.toTime_point() - before.value_or(reading.time).toTime_point());
            before = reading.time;
        },
        [&](unsigned long line, Malformed const& wrong) {
            say(options.replayPath + ":" + std::to_string(line) + ": " + wrong.reason);
            ++malformed;
        });
    display.drawChart();
    if (!display.hasBegun()) display.begin(Variant());
    display.end();
    return malformed == 0 ? 0 : FAILED;
}

int run(int argc, char** argv) {
    auto const commandLine = parseCommandLine(argc, argv);
    if (auto const* const refusal = std::get_if<Refusal>(&commandLine)) {
        say(refusal->reason + "\nTry monitor --help.");
        return WRONG_OPTIONS;
    }
    if (auto const* const answer = std::get_if<Answer>(&commandLine)) {
        print(answer->text);
        return 0;
    }
    auto const& options = std::get<Options>(commandLine);
    if (!options.replayPath.empty()) return showLog(options);
    showMachine(options);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    prepareOutput();
    try {
        return run(argc, argv);
    } catch (std::exception const& failure) {
        monitor::say(failure.what());
        return FAILED;
    }
}

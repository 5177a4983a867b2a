// Watches this machine: a host program of utillibrary. Readings become a table, a log and a chart.
#include <exception>
#include <optional>
#include <string>
#include <unistd.h>
#include <utility>
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

// Reports malformed lines: each of the first ones, and the number of the others.
class MalformedLines {
public:
    explicit MalformedLines(std::string path) : path_(std::move(path)) {}

    void add(unsigned long line, Malformed const& wrong) {
        if (++count_ > MOST_MESSAGES) return;
        say(path_ + ":" + std::to_string(line) + ": " + wrong.reason);
    }

    void end() const {
        if (count_ <= MOST_MESSAGES) return;
        unsigned long const more = count_ - MOST_MESSAGES;
        say(path_ + ": " + std::to_string(more) + " more malformed line" + (more == 1 ? "" : "s"));
    }

    unsigned long count() const noexcept { return count_; }

private:
    static constexpr unsigned long MOST_MESSAGES = 20;

    std::string path_;
    unsigned long count_ = 0;
};

// Shows the readings of a log. A reading covers the time since the reading of the line before.
// Gives the exit status.
int showLog(Options const& options) {
    Display display(options, [](std::string const& row) {
        print(row);
        return true;
    });
    std::optional<xtime_t> before;
    MalformedLines malformed(options.replayPath);
    replay(
        options.replayPath,
        [&](Reading const& reading) {
            if (!display.hasBegun()) display.begin(reading.free);
            display.showRow(reading);
            display.add(reading,
                        reading.time.toTime_point() - before.value_or(reading.time).toTime_point());
            before = reading.time;
        },
        [&](unsigned long line, Malformed const& wrong) { malformed.add(line, wrong); });
    malformed.end();
    display.drawChart();
    if (!display.hasBegun()) display.begin(Variant());
    display.end();
    return malformed.count() == 0 ? 0 : FAILED;
}

int run(int argc, char** argv) {
    auto const commandLine = parseCommandLine(argc, argv);
    if (auto const* const refusal = std::get_if<Refusal>(&commandLine)) {
        sayWithUsage(refusal->reason);
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

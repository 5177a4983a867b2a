// Watches this machine: a host program of utillibrary. Readings become a table, a log and a chart.
#include <climits>
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
#include "program/log_progress.h"
#include "program/options.h"
#include "program/output.h"
#include "program/printable.h"
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

// The titles of charts.
constexpr char const* USUAL_TITLE = "Processor, memory and disk in use";
constexpr char const* TITLE_AFTER_NAME = ": processor, memory and disk in use";

// "HOST: processor, memory and disk in use"
std::string titleOfThisMachine() {
    char name[HOST_NAME_MAX + 1] = {};  // gethostname need not end a name that fills it
    if (gethostname(name, HOST_NAME_MAX) != 0) return USUAL_TITLE;
    return printable(name) + TITLE_AFTER_NAME;
}

// The options, with the title of the chart if none is given.
Options withTitle(Options options, std::string const& title) {
    if (options.chart.title.empty()) options.chart.title = title;
    return options;
}

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
        [&](std::string const& message) {
            say(message);
            display.noteMessage(message);
        },
    };
    watch(options, interruption, watcher);
    display.end();
    eraseProgress();
}

// Shows the readings of a log. A reading covers the time since the reading of the line before.
class LogView {
public:
    explicit LogView(Options const& options)
        : path_(options.replayPath), display_(options, [this](std::string const& row) {
              rows_ += row;
              return true;
          }) {}

    /// Gives    the exit status.
    int show() {
        replay(path_, {[this](Reading const& reading) { use(reading); },
                       [this](unsigned long line, Malformed const& wrong) { refuse(line, wrong); },
                       [this](unsigned long bytes, unsigned long size) { pause(bytes, size); }});
        if (malformed_ > MOST_MESSAGES) {
            unsigned long const more = malformed_ - MOST_MESSAGES;
            report(path_ + ": " + std::to_string(more) + " more malformed line" +
                   (more == 1 ? "" : "s"));
        }
        display_.drawChart();
        if (!display_.hasBegun()) display_.begin(Variant());
        display_.end();
        progress_.erase();
        flush();
        return malformed_ == 0 ? 0 : FAILED;
    }

private:
    static constexpr unsigned long MOST_MESSAGES = 20;

    void use(Reading const& reading) {
        if (!display_.hasBegun()) display_.begin(reading.free);
        display_.showRow(reading);
        xtime_t const before = before_.value_or(reading.time);
        display_.add(reading, reading.time.toTime_point() - before.toTime_point());
        before_ = reading.time;
    }

    void refuse(unsigned long line, Malformed const& wrong) {
        if (++malformed_ > MOST_MESSAGES) return;
        report(path_ + ":" + std::to_string(line) + ": " + wrong.reason);
    }

    // The next piece of a log may be long in coming, from a pipe. So all rows are shown before.
    void pause(unsigned long bytes, unsigned long size) {
        flush();
        progress_.show(bytes, size);
    }

    void report(std::string const& message) {
        flush();
        progress_.erase();
        say(message);
        display_.noteMessage(message);
    }

    void flush() {
        if (isTerminal_) progress_.erase();
        if (!rows_.empty()) print(rows_);
        rows_.clear();
    }

    std::string path_;
    bool isTerminal_ = isatty(STDOUT_FILENO) != 0;
    std::string rows_;  // not shown yet: one write for many rows is faster
    Display display_;
    LogProgress progress_;
    std::optional<xtime_t> before_;
    unsigned long malformed_ = 0;
};

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
    if (!options.replayPath.empty()) {
        // A log does not say which machine wrote it.
        return LogView(withTitle(options, USUAL_TITLE)).show();
    }
    showMachine(withTitle(options, titleOfThisMachine()));
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

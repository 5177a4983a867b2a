// Watches this machine: a host program of utillibrary, from readings to a table.
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <unistd.h>
#include <utility>
#include <variant>

#include <utillibrary/datatypes/Variant.h>
#include <utillibrary/datatypes/xtime.h>

#include "averages.h"
#include "chart_file.h"
#include "interruption.h"
#include "options.h"
#include "output.h"
#include "reading.h"
#include "reading_line.h"
#include "reading_log.h"
#include "replay.h"
#include "schedule.h"
#include "table.h"

namespace {

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;
using namespace monitor;

constexpr int FAILED = 1;
constexpr int WRONG_OPTIONS = 2;

std::string progressText(unsigned long done, unsigned long count) {
    std::string const of = count == 0 ? "" : " of " + std::to_string(count);
    return "readings: " + std::to_string(done) + of + "; Ctrl-C ends";
}

// Null where no chart is asked for.
std::unique_ptr<ChartFile> chartFor(Options const& options) {
    if (options.chart.file.empty()) return nullptr;
    return std::make_unique<ChartFile>(options.chart, options.offsetSeconds);
}

// Until all readings are taken or a signal comes. A row that has no room is held until there is.
void watch(Options const& options) {
    std::optional<ReadingLog> log;
    if (!options.logPath.empty()) log.emplace(options.logPath);
    auto const chart = chartFor(options);
    Interruption const interruption;
    Sampler const sampler(options.path);
    int diskError = 0;
    auto const take = [&] {
        Reading reading = sampler.read();
        std::string const news = errorNews(options.path, diskError, reading.diskError);
        if (!news.empty()) say(news);
        diskError = reading.diskError;
        return reading;
    };
    auto const show = [&](std::string const& line) {
        if (interruption.waitForRoom(STDOUT_FILENO)) return false;
        eraseProgress();
        print(line);
        return true;
    };

    // The first reading is not shown: its processor load is of no interval.
    Clock::time_point deadline = Clock::now();
    Table const table(options.offsetSeconds, byteUnitFor(take().free));
    Averages averages(options.averageNames);
    Clock::time_point taken = Clock::now();
    if (!show(table.header())) return;
    for (unsigned long done = 0; options.count == 0 || done < options.count; ++done) {
        showProgress(progressText(done, options.count));
        deadline = deadlineAfter(deadline, options.interval, Clock::now());
        if (interruption.waitUntil(deadline)) break;
        Clock::time_point const before = std::exchange(taken, Clock::now());
        Reading const reading = take();
        if (!show(table.row(reading))) break;
        if (log && !interruption.waitForRoom(log->descriptor())) log->append(toLine(reading));
        averages.add(reading, taken - before);
        if (chart) {
            chart->add(reading);
            chart->draw();
        }
    }
    if (!averages.empty()) show(table.averageRow(averages.mean(), averages.span()));
    eraseProgress();
}

// The readings of a log, in place of live ones. A line's reading covers the time since the one before.
int showLog(Options const& options) {
    auto const chart = chartFor(options);
    std::optional<Table> table;
    std::optional<xtime_t> before;
    Averages averages(options.averageNames);
    auto const begin = [&](Variant const& free) {
        table.emplace(options.offsetSeconds, byteUnitFor(free));
        print(table->header());
    };
    unsigned long const malformed = replay(options.replayPath, [&](Reading const& reading) {
        if (!table) begin(reading.free);
        print(table->row(reading));
        averages.add(reading,
                     reading.time.toTime_point() - before.value_or(reading.time).toTime_point());
        before = reading.time;
        if (chart) chart->add(reading);
    });
    if (chart) chart->draw();
    if (!table) begin(Variant());
    if (!averages.empty()) print(table->averageRow(averages.mean(), averages.span()));
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
    watch(options);
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

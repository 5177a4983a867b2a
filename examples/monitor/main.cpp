// Watches this machine: a host program of utillibrary, from readings to a table.
#include <exception>
#include <string>
#include <unistd.h>
#include <variant>

#include "interruption.h"
#include "options.h"
#include "output.h"
#include "reading.h"
#include "schedule.h"
#include "table.h"

namespace {

using namespace monitor;

constexpr int FAILED = 1;
constexpr int WRONG_OPTIONS = 2;

std::string progressText(unsigned long done, unsigned long count) {
    std::string const of = count == 0 ? "" : " of " + std::to_string(count);
    return "readings: " + std::to_string(done) + of + "; Ctrl-C ends";
}

// Until all readings are taken or a signal comes. A row that has no room is held until there is.
void watch(Options const& options) {
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
    if (!show(table.header())) return;
    for (unsigned long done = 0; options.count == 0 || done < options.count; ++done) {
        showProgress(progressText(done, options.count));
        deadline = deadlineAfter(deadline, options.interval, Clock::now());
        if (interruption.waitUntil(deadline)) break;
        if (!show(table.row(take()))) break;
    }
    eraseProgress();
}

int run(int argc, char** argv) {
    auto const commandLine = parseCommandLine(argc, argv);
    if (auto const* const refusal = std::get_if<Refusal>(&commandLine)) {
        say(refusal->reason + "\nTry monitor --help.");
        return WRONG_OPTIONS;
    }
    if (auto const* const answer = std::get_if<Answer>(&commandLine)) {
        print(answer->text);
    } else {
        watch(std::get<Options>(commandLine));
    }
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

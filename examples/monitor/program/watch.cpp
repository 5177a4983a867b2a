#include "program/watch.h"

#include <string>
#include <utility>

#include "program/output.h"

namespace monitor {

namespace {

std::string progressText(unsigned long done, unsigned long count) {
    std::string const of = count == 0 ? "" : " of " + std::to_string(count);
    return "readings: " + std::to_string(done) + of + "; Ctrl-C ends";
}

}  // namespace

void watch(Options const& options, Interruption const& interruption, Watcher const& watcher) {
    Sampler const sampler(options.path);
    int diskError = 0;
    auto const take = [&] {
        Reading reading = sampler.read();
        std::string const change = diskErrorChange(options.path, diskError, reading.diskError);
        if (!change.empty()) watcher.report(change);
        diskError = reading.diskError;
        return reading;
    };

    Clock::time_point deadline = Clock::now();
    Reading const first = take();
    Clock::time_point taken = Clock::now();
    if (!watcher.begin(first)) return;
    for (unsigned long done = 0; options.count == 0 || done < options.count; ++done) {
        showProgress(progressText(done, options.count));
        deadline = deadlineAfter(deadline, options.interval, Clock::now());
        if (interruption.waitUntil(deadline)) return;
        Clock::time_point const before = std::exchange(taken, Clock::now());
        if (!watcher.add(take(), taken - before)) return;
    }
}

}  // namespace monitor

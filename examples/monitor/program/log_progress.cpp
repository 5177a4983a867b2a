#include "program/log_progress.h"

#include <algorithm>
#include <utility>

#include "program/output.h"

namespace monitor {

namespace {

constexpr std::chrono::milliseconds FIRST_MOMENTS{300};
constexpr unsigned long MIB = 1024UL * 1024;

}  // namespace

std::string logProgressText(unsigned long bytesRead, unsigned long size) {
    if (size == 0) return "read: " + std::to_string(bytesRead / MIB) + " MiB";
    // A log may grow while it is read.
    double const part = static_cast<double>(bytesRead) / static_cast<double>(size);
    auto const percent = static_cast<int>(std::min(part, 1.0) * 100);
    return "read: " + std::to_string(percent) + " % of " + std::to_string(size / MIB) + " MiB";
}

LogProgress::LogProgress() noexcept : first_(Clock::now() + FIRST_MOMENTS) {}

void LogProgress::show(unsigned long bytesRead, unsigned long size) {
    if (Clock::now() < first_) return;
    std::string text = logProgressText(bytesRead, size);
    if (text == shown_) return;
    showProgress(text);
    shown_ = std::move(text);
}

void LogProgress::erase() noexcept {
    if (!shown_.empty()) eraseProgress();
    shown_.clear();
}

}  // namespace monitor

#include "chart/chart_options.h"

namespace monitor {

namespace {

// No locale takes part, unlike in isdigit and tolower.
constexpr bool isDigit(char c) noexcept { return c >= '0' && c <= '9'; }
constexpr bool isLower(char c) noexcept { return c >= 'a' && c <= 'z'; }
constexpr char toLower(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

std::string formatOf(std::string_view file) {
    std::size_t const slash = file.rfind('/');
    std::string_view const name = slash == std::string_view::npos ? file : file.substr(slash + 1);
    std::size_t const dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0) return {};
    std::string format(name.substr(dot + 1));
    for (char& c : format) {
        c = toLower(c);
        if (!isLower(c) && !isDigit(c)) return {};
    }
    return format;
}

}  // namespace monitor

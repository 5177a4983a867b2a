#include "chart/chart_writer.h"

#include <algorithm>
#include <dlfcn.h>
#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <vector>

namespace monitor {

namespace {

constexpr std::string_view PLUGIN_PREFIX = "monitor-chart-";
constexpr std::string_view PLUGIN_SUFFIX = ".so";

// Colours that colour-blind viewers can tell apart. Texts have a contrast of at least 4.5, lines of
// 3.
constexpr unsigned int PALETTES[][MONITOR_CHART_ROLES] = {
    {0xFFFFFF, 0xE6E9ED, 0x8A94A0, 0x1B2430, 0x5B6673, 0x0072B2, 0xC2500A, 0x00875F},
    {0x0F141A, 0x242C36, 0x75808D, 0xE8ECF1, 0x9DA8B5, 0x56B4E9, 0xF08A4B, 0x2EC4A0},
};

MonitorChartTheme themeOf(Theme theme) noexcept {
    switch (theme) {
        case Theme::LIGHT:
            return MONITOR_CHART_LIGHT;
        case Theme::DARK:
            return MONITOR_CHART_DARK;
        case Theme::EITHER:
            break;
    }
    return MONITOR_CHART_EITHER;
}

// The formats that a folder has plugins for, in words.
std::string formatsIn(std::string const& folder) {
    std::vector<std::string> formats;
    std::error_code unreadable;
    for (auto const& entry : std::filesystem::directory_iterator(folder, unreadable)) {
        std::string const name = entry.path().filename().string();
        std::size_t const affixes = PLUGIN_PREFIX.size() + PLUGIN_SUFFIX.size();
        if (name.size() <= affixes || name.compare(0, PLUGIN_PREFIX.size(), PLUGIN_PREFIX) != 0 ||
            entry.path().extension() != PLUGIN_SUFFIX) {
            continue;
        }
        formats.push_back(name.substr(PLUGIN_PREFIX.size(), name.size() - affixes));
    }
    if (formats.empty()) return "none";
    std::sort(formats.begin(), formats.end());
    std::string text = "those for " + formats[0];
    for (std::size_t i = 1; i < formats.size(); ++i)
        text += (i + 1 == formats.size() ? " and " : ", ") + formats[i];
    return text;
}

// The message for a plugin that the loader refused.
std::string refusalOf(std::string const& path, std::string const& folder,
                      std::string const& format) {
    std::error_code unreadable;
    if (std::filesystem::exists(path, unreadable)) return "not a chart plugin: " + path;
    return "no chart plugin for " + format + ": " + folder + " has " + formatsIn(folder);
}

[[noreturn]] void refuse(std::string const& reason) {
    throw std::runtime_error("not a chart plugin: " + reason);
}

// Calls a function of a plugin. A plugin must not throw, but may: anything, not only
// std::exception.
template <typename Function>
auto callPlugin(std::string const& path, Function const& function) {
    try {
        return function();
    } catch (...) {
        refuse(path + ": it throws an exception");
    }
}

// Areas, lines or texts in the form that a plugin takes: they point to the drawing's own data.
template <typename Flat, typename Thing, typename Flatten>
std::vector<Flat> flatten(std::vector<Thing> const& things, Flatten const& one) {
    std::vector<Flat> flat;
    flat.reserve(things.size());
    std::transform(things.begin(), things.end(), std::back_inserter(flat), one);
    return flat;
}

// The bytes that have come from the plugin. An exception must not pass through the plugin, so a
// flag tells of one.
struct Bytes {
    std::string bytes;
    bool outOfMemory = false;
};

int receive(void* context, char const* bytes, std::size_t count) noexcept {
    auto& received = *static_cast<Bytes*>(context);
    try {
        received.bytes.append(bytes, count);
    } catch (std::exception const&) {
        received.outOfMemory = true;
        return 1;
    }
    return 0;
}

}  // namespace

ChartWriter::ChartWriter(std::string const& folder, std::string const& format)
    : path_(folder + "/" + std::string(PLUGIN_PREFIX) + format + std::string(PLUGIN_SUFFIX)) {
    std::error_code unreadable;
    auto const status = std::filesystem::status(path_, unreadable);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        refuse(path_ + ": it is not a regular file");
    }
    if (plugin_.open(path_) != 0) throw std::runtime_error(refusalOf(path_, folder, format));
    auto const entry =
        reinterpret_cast<decltype(&monitorChartWriter)>(plugin_.procAddress(MONITOR_CHART_ENTRY));
    if (entry == nullptr) {
        // The report of `Library` does not name the symbol; the loader's message does.
        char const* const reason = dlerror();
        refuse(reason != nullptr ? reason : path_);
    }
    writer_ = callPlugin(path_, entry);
    if (writer_ == nullptr) refuse(path_ + ": it has no writer");
    if (writer_->abi != MONITOR_CHART_ABI) {
        throw std::runtime_error("wrong chart plugin: " + path_ + ": its ABI number is " +
                                 std::to_string(writer_->abi) + ", and this program's is " +
                                 std::to_string(MONITOR_CHART_ABI));
    }
    if (writer_->write == nullptr) refuse(path_ + ": its writer has no function");
}

std::string ChartWriter::write(Drawing const& drawing, Theme theme) const {
    auto const areas =
        flatten<MonitorChartArea>(drawing.areas, [](Drawing::Area const& area) -> MonitorChartArea {
            return {area.role, area.opacity, area.points.size(), area.points.data()};
        });
    auto const lines =
        flatten<MonitorChartLine>(drawing.lines, [](Drawing::Line const& line) -> MonitorChartLine {
            return {line.role,       line.stroke.width,  line.stroke.dash,
                    line.stroke.gap, line.points.size(), line.points.data()};
        });
    auto const texts =
        flatten<MonitorChartText>(drawing.texts, [](Drawing::Text const& text) -> MonitorChartText {
            return {text.role, text.anchor, text.bold ? 1 : 0,
                    text.size, text.place,  text.text.c_str()};
        });
    MonitorChartScene scene{};
    scene.width = drawing.width;
    scene.height = drawing.height;
    scene.theme = themeOf(theme);
    std::copy(&PALETTES[0][0], &PALETTES[0][0] + sizeof PALETTES / sizeof(unsigned int),
              &scene.palettes[0][0]);
    scene.title = drawing.title.c_str();
    scene.description = drawing.description.c_str();
    scene.areaCount = areas.size();
    scene.areas = areas.data();
    scene.lineCount = lines.size();
    scene.lines = lines.data();
    scene.textCount = texts.size();
    scene.texts = texts.data();

    Bytes received;
    char const* const failure =
        callPlugin(path_, [&] { return writer_->write(&scene, receive, &received); });
    if (received.outOfMemory) throw std::bad_alloc();
    if (failure != nullptr)
        throw std::runtime_error(std::string("cannot draw the chart: ") + failure);
    return std::move(received.bytes);
}

std::string pluginFolder() {
    auto const program = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    std::error_code unreadable;
    if (std::filesystem::is_directory(program / "plugins", unreadable)) return program / "plugins";
    return (program / MONITOR_INSTALLED_PLUGINS).lexically_normal();
}

}  // namespace monitor

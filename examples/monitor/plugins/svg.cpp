// Writes charts as SVG, which scales, can be read aloud, and can follow the viewer's theme.
#include <charconv>
#include <exception>
#include <string>
#include <string_view>

#include "chart/chart_plugin.h"

namespace {

// The CSS classes of the roles, in the order of the roles.
constexpr char const* CLASSES[MONITOR_CHART_ROLES] = {"background", "grid",      "axis",   "ink",
                                                      "muted",      "processor", "memory", "disk"};
constexpr char const* ANCHORS[] = {"start", "middle", "end"};

constexpr char const* STYLE =
    "text{fill:currentColor;font-family:system-ui,-apple-system,\"Segoe UI\",Roboto,"
    "\"Helvetica Neue\",\"DejaVu Sans\",Arial,sans-serif;font-variant-numeric:tabular-nums}\n"
    "path{fill:none;stroke:currentColor;stroke-linecap:round;stroke-linejoin:round}\n"
    ".area{fill:currentColor;stroke:none}\n";

// A text as XML. XML does not allow control characters, so each becomes a space.
std::string escaped(std::string_view text) {
    std::string result;
    for (char const c : text) {
        switch (c) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '"':
                result += "&quot;";
                break;
            default:
                result += c >= 0 && c < ' ' ? ' ' : c;
        }
    }
    return result;
}

// A number with at most two decimals: nobody sees a hundredth of a unit.
std::string number(double value) {
    char text[32];
    auto const end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 2);
    if (end.ec != std::errc()) return "0";  // far outside of any picture
    std::string result(text, end.ptr);
    result.erase(result.find_last_not_of('0') + 1);
    if (result.back() == '.') result.pop_back();
    return result == "-0" ? "0" : result;
}

std::string attribute(char const* name, std::string const& value) {
    return std::string(" ") + name + "=\"" + value + "\"";
}

std::string pathData(MonitorChartPoint const* points, size_t count) {
    std::string data;
    for (size_t i = 0; i < count; ++i)
        data += (i == 0 ? "M" : "L") + number(points[i].x) + " " + number(points[i].y);
    return data;
}

std::string colours(unsigned int const (&palette)[MONITOR_CHART_ROLES]) {
    constexpr char const* DIGITS = "0123456789abcdef";
    std::string rules;
    for (int role = 0; role < MONITOR_CHART_ROLES; ++role) {
        rules += std::string(".") + CLASSES[role] + "{color:#";
        for (int shift = 20; shift >= 0; shift -= 4)
            rules += DIGITS[palette[role] >> shift & 0xFU];
        rules += "}\n";
    }
    return rules;
}

std::string styleOf(MonitorChartScene const& scene) {
    if (scene.theme == MONITOR_CHART_DARK)
        return STYLE + colours(scene.palettes[MONITOR_CHART_DARK]);
    std::string const light = STYLE + colours(scene.palettes[MONITOR_CHART_LIGHT]);
    if (scene.theme == MONITOR_CHART_LIGHT) return light;
    return light + "@media (prefers-color-scheme:dark){\n" +
           colours(scene.palettes[MONITOR_CHART_DARK]) + "}\n";
}

std::string tagOf(MonitorChartArea const& area) {
    return "<path" + attribute("class", std::string("area ") + CLASSES[area.role]) +
           attribute("opacity", number(area.opacity)) +
           attribute("d", pathData(area.points, area.count) + "Z") + "/>\n";
}

std::string tagOf(MonitorChartLine const& line) {
    std::string tag = "<path" + attribute("class", CLASSES[line.role]) +
                      attribute("stroke-width", number(line.width));
    if (line.gap > 0) {
        tag += attribute("stroke-dasharray", number(line.dash) + " " + number(line.gap));
    }
    return tag + attribute("d", pathData(line.points, line.count)) + "/>\n";
}

std::string tagOf(MonitorChartText const& text) {
    std::string tag = "<text" + attribute("class", CLASSES[text.role]) +
                      attribute("x", number(text.place.x)) + attribute("y", number(text.place.y)) +
                      attribute("font-size", number(text.size));
    if (text.anchor != MONITOR_CHART_START) tag += attribute("text-anchor", ANCHORS[text.anchor]);
    if (text.bold != 0) tag += attribute("font-weight", "600");
    return tag + ">" + escaped(text.text) + "</text>\n";
}

template <typename Thing>
void appendTags(std::string& picture, Thing const* things, size_t count) {
    for (size_t i = 0; i < count; ++i)
        picture += tagOf(things[i]);
}

std::string pictureOf(MonitorChartScene const& scene) {
    std::string const width = number(scene.width);
    std::string const height = number(scene.height);
    std::string picture =
        "<svg xmlns=\"http://www.w3.org/2000/svg\"" + attribute("width", width) +
        attribute("height", height) + attribute("viewBox", "0 0 " + width + " " + height) +
        attribute("role", "img") + attribute("aria-labelledby", "title description") + ">\n" +
        "<title id=\"title\">" + escaped(scene.title) + "</title>\n" + "<desc id=\"description\">" +
        escaped(scene.description) + "</desc>\n" + "<style>\n" + styleOf(scene) + "</style>\n" +
        "<rect" + attribute("class", CLASSES[MONITOR_CHART_BACKGROUND]) +
        attribute("width", width) + attribute("height", height) + " fill=\"currentColor\"/>\n";
    appendTags(picture, scene.areas, scene.areaCount);
    appendTags(picture, scene.lines, scene.lineCount);
    appendTags(picture, scene.texts, scene.textCount);
    return picture + "</svg>\n";
}

char const* write(MonitorChartScene const* scene, MonitorChartSink sink, void* context) noexcept {
    try {
        std::string const picture = pictureOf(*scene);
        return sink(context, picture.data(), picture.size()) == 0 ? nullptr : "it was not taken";
    } catch (std::exception const&) {
        return "out of memory";
    }
}

constexpr MonitorChartWriter WRITER = {MONITOR_CHART_ABI, write};

}  // namespace

MonitorChartWriter const* monitorChartWriter() { return &WRITER; }

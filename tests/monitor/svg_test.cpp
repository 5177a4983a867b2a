// Scenes as SVG, written by the plugin.
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "chart/chart_plugin.h"

namespace {

int append(void* text, char const* bytes, std::size_t count) {
    static_cast<std::string*>(text)->append(bytes, count);
    return 0;
}

int refuse(void* /*context*/, char const* /*bytes*/, std::size_t /*count*/) { return 1; }

// The part of an SVG, with one line and one text, that follows the background.
std::string svgOf(MonitorChartLine const& line, MonitorChartText const& text) {
    MonitorChartScene scene{};
    scene.title = scene.description = "";
    scene.lineCount = scene.textCount = 1;
    scene.lines = &line;
    scene.texts = &text;
    std::string svg;
    EXPECT_EQ(monitorChartWriter()->write(&scene, append, &svg), nullptr);
    std::size_t const start = svg.find('\n', svg.find("<rect")) + 1;
    return svg.substr(start, svg.rfind("</svg>") - start);
}

constexpr MonitorChartPoint POINTS[] = {
    {0, 1.5},
    {-0.001, 2.25},
    {100, -3.126},
    {1e300, 12345.678},
};

TEST(Svg, HasAPathForEachLine) {
    MonitorChartLine const dashed = {MONITOR_CHART_DISK, 2.8, 0, 5.5, 4, POINTS};
    MonitorChartLine const whole = {MONITOR_CHART_GRID, 1, 3, 0, 2, POINTS};
    MonitorChartText const text = {MONITOR_CHART_INK, MONITOR_CHART_START, 0, 12, {1, 2}, ""};
    std::string const ink = "<text class=\"ink\" x=\"1\" y=\"2\" font-size=\"12\"></text>\n";
    EXPECT_EQ(svgOf(dashed, text),
              "<path class=\"disk\" stroke-width=\"2.8\" stroke-dasharray=\"0 5.5\" "
              "d=\"M0 1.5L0 2.25L100 -3.13L0 12345.68\"/>\n" +
                  ink);
    EXPECT_EQ(svgOf(whole, text),
              "<path class=\"grid\" stroke-width=\"1\" d=\"M0 1.5L0 2.25\"/>\n" + ink);
}

TEST(Svg, EscapesMarkupInTexts) {
    MonitorChartLine const line = {MONITOR_CHART_INK, 1, 0, 0, 1, POINTS};
    std::string const path = "<path class=\"ink\" stroke-width=\"1\" d=\"M0 1.5\"/>\n";
    EXPECT_EQ(
        svgOf(line,
              {MONITOR_CHART_MUTED, MONITOR_CHART_MIDDLE, 0, 12.5, {1, 2}, "a<b>&\"\x1F\x01 "}),
        path +
            "<text class=\"muted\" x=\"1\" y=\"2\" font-size=\"12.5\" "
            "text-anchor=\"middle\">a&lt;b&gt;&amp;&quot;   </text>\n");
    EXPECT_EQ(svgOf(line, {MONITOR_CHART_INK, MONITOR_CHART_END, 1, 9, {0, 0}, "50 \xC2\xB0~"}),
              path +
                  "<text class=\"ink\" x=\"0\" y=\"0\" font-size=\"9\" text-anchor=\"end\" "
                  "font-weight=\"600\">50 \xC2\xB0~</text>\n");
}

TEST(Svg, EscapesTitleAndDescription) {
    MonitorChartScene scene{};
    scene.title = "a & b";
    scene.description = "1 < 2";
    std::string svg;
    EXPECT_EQ(monitorChartWriter()->write(&scene, append, &svg), nullptr);
    EXPECT_THAT(svg, testing::HasSubstr("<title id=\"title\">a &amp; b</title>\n"
                                        "<desc id=\"description\">1 &lt; 2</desc>\n"));
}

TEST(Svg, SaysThatTheSinkDidNotTakeIt) {
    MonitorChartScene scene{};
    scene.title = scene.description = "";
    EXPECT_STREQ(monitorChartWriter()->write(&scene, refuse, nullptr), "it was not taken");
    EXPECT_EQ(monitorChartWriter()->abi, 1);
}

}  // namespace

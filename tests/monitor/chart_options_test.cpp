// The format of a chart, taken from the name of its file.
#include "chart/chart_options.h"

#include <gtest/gtest.h>

using namespace monitor;

namespace {

struct FormatFact {
    char const* fact;
    char const* file;
    char const* format;
};

FormatFact const FORMAT_FACTS[] = {
    {"the format is what follows the dot", "load.svg", "svg"},
    {"capitals become small letters", "load.SVG", "svg"},
    {"all ASCII letters and digits are allowed", "a.b/load.az09AZ", "az09az"},
    {"only what follows the last dot is the format", "load.tar.png", "png"},
    {"a name that begins with a dot may have a format", "/charts/.load.svg", "svg"},
    {"a name without a dot has no format", "load", ""},
    {"a name that ends in a dot has no format", "load.", ""},
    {"a name needs a character before the dot", ".svg", ""},
    {"a name in a folder needs a character before the dot", "folder/.svg", ""},
    {"the dot of a folder does not count", "folder.svg/load", ""},
    {"an empty name has no format", "folder.svg/", ""},
    {"a space is not allowed in a format", "load.s vg", ""},
    {"a tilde is not allowed in a format", "load.svg~", ""},
    {"the byte before 'A' is not allowed", "load.@", ""},
    {"the byte after 'Z' is not allowed", "load.[", ""},
    {"the byte before 'a' is not allowed", "load.`", ""},
    {"the byte after 'z' is not allowed", "load.{", ""},
    {"a slash ends the folder, so the name is empty", "load./", ""},
    {"the byte after '9' is not allowed", "load.:", ""},
    {"an empty string has no format", "", ""},
};

TEST(ChartOptions, HaveTheFormatOfTheFilesName) {
    for (FormatFact const& row : FORMAT_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(formatOf(row.file), row.format);
    }
}

}  // namespace

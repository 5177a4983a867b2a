#include "program/options.h"

#include <memory>
#include <optional>
#include <string_view>

#include <CLI/CLI.hpp>

#include "program/option_values.h"

namespace monitor {

namespace {

constexpr char const* DESCRIPTION =
    "Watches this machine: processor, memory, disk and uptime, one row per reading.\n"
    "The first row comes one interval after the start, because the processor's load\n"
    "is that of the interval before. SIGINT (Ctrl-C) and SIGTERM end the program.\n";

constexpr char const* FOOTER =
    "A value that cannot be read is shown as null. A malformed line of a replay is\n"
    "reported by its number and left out.\n"
    "Exit status: 0 done or interrupted, 1 failed or lines malformed,\n"
    "2 wrong options.";

constexpr char const* VERSION = "monitor " MONITOR_VERSION ", utillibrary " MONITOR_LIBRARY_VERSION;

std::optional<std::string> parsePath(std::string_view text) {
    if (text.empty()) return std::nullopt;
    return std::string(text);
}

// The name of an option, what its value must be, and what it is for.
struct Description {
    char const* name;
    char const* placeholder;
    char const* expected;
    char const* help;
};

// "-h, --help", where CLI11 writes no space after the comma.
class Formatter : public CLI::Formatter {
    std::string make_option_name(CLI::Option const* option, bool isPositional) const override {
        std::string name = CLI::Formatter::make_option_name(option, isPositional);
        std::size_t const comma = name.find(',');
        return comma == std::string::npos ? name : name.insert(comma + 1, " ");
    }
};

// Adds an option with a value. `parse` reads the value.
template <typename Value>
void addOption(CLI::App& app, Description const& option,
               std::optional<Value> (*parse)(std::string_view), Value& value) {
    auto const read = [option, parse, &value](std::string const& text) {
        auto const parsed = parse(text);
        if (!parsed) {
            throw CLI::ValidationError(option.name, "\"" + text + "\" is not " + option.expected);
        }
        value = *parsed;
    };
    app.add_option_function<std::string>(option.name, read, option.help)
        ->type_name(option.placeholder);
}

// CLI11 reads "--count= 3" as "--count 3", and would also take the next option for the value.
std::optional<Refusal> refuseMissingValue(int argc, char const* const* argv) {
    for (int i = 1; i < argc; ++i) {
        std::string_view const text = argv[i];
        if (text.size() > 3 && text.substr(0, 2) == "--" && text.back() == '=') {
            return Refusal{std::string(text.substr(0, text.size() - 1)) + ": a value is missing"};
        }
    }
    return std::nullopt;
}

void addAverageOption(CLI::App& app, std::vector<std::string>& names) {
    auto const read = [&names](std::string const& text) {
        Names const parsed = parseNames(text);
        if (!parsed.wrong.empty()) throw CLI::ValidationError("--average", parsed.wrong);
        names = parsed.names;
    };
    app.add_option_function<std::string>("--average", read,
                                         "end with averages: some of cpu,memory,disk,free,uptime")
        ->type_name("NAMES");
}

void addChartOptions(CLI::App& app, ChartOptions& chart) {
    addOption(app,
              {"--chart", "FILE", "a file name that ends like load.svg or load.png",
               "draw the readings as a chart, FILE.svg or FILE.png"},
              parseChartFile, chart.file);
    addOption(app,
              {"--window", "SECONDS", "a whole number from 5 to 2592000",
               "time that the chart shows, 5 to 2592000 (default 60)"},
              parseWindow, chart.window);
    addOption(
        app, {"--theme", "NAME", "light or dark", "light or dark (default: the viewer's, for SVG)"},
        parseTheme, chart.theme);
    addOption(app,
              {"--title", "TEXT", "a title of 1 to 100 characters",
               "title of the chart (default: names this machine)"},
              parseTitle, chart.title);
    addOption(app,
              {"--plugins", "FOLDER", "a path",
               "folder of chart plugins (default: that of this program)"},
              parsePath, chart.plugins);
}

std::optional<Refusal> refuseConflicts(CLI::App const& app, Options const& options) {
    // A replay takes no readings of its own.
    for (char const* const live : {"--interval", "--count", "--path", "--log"}) {
        if (!options.replayPath.empty() && app.count(live) > 0) {
            return Refusal{std::string("--replay does not go with ") + live};
        }
    }
    for (char const* const ofChart : {"--window", "--theme", "--title", "--plugins"}) {
        if (options.chart.file.empty() && app.count(ofChart) > 0) {
            return Refusal{std::string(ofChart) + " does not go without --chart"};
        }
    }
    return std::nullopt;
}

// The refusal of a word that CLI11 does not expect.
Refusal refusalOf(std::string const& word) {
    bool const isLikeAnOption = word.rfind('-', 0) == 0;
    return {"\"" + word + "\" is not an option" +
            (isLikeAnOption ? "" : ", which begins with \"--\"")};
}

// What CLI11 says of a wrong number of values, in the words of this program.
Refusal refusalOf(CLI::App const& app, CLI::ArgumentMismatch const& error) {
    for (CLI::Option const* const option : app.get_options()) {
        if (option->count() > 1) return {option->get_name() + ": given more than once"};
    }
    std::string_view const what = error.what();
    // "--count: 1 required NUMBER missing"
    std::size_t const colon = what.find(": ");
    if (colon != std::string_view::npos) {
        return {std::string(what.substr(0, colon)) + ": a value is missing"};
    }
    // "help was given a disallowed flag override"
    return {"--" + std::string(what.substr(0, what.find(' '))) + ": takes no value"};
}

}  // namespace

std::variant<Options, Answer, Refusal> parseCommandLine(int argc, char const* const* argv) {
    if (auto const refusal = refuseMissingValue(argc, argv)) return *refusal;

    Options options;
    CLI::App app(DESCRIPTION, "monitor");
    app.footer(FOOTER);
    app.formatter(std::make_shared<Formatter>());
    app.get_formatter()->column_width(22);
    app.set_help_flag("-h,--help", "show this text and end")->disable_flag_override();
    app.set_version_flag("--version", VERSION, "show the version and end")->disable_flag_override();
    addOption(app,
              {"--interval", "SECONDS", "a number of seconds from 0.001 to 86400",
               "time between readings, 0.001 to 86400 (default 1)"},
              parseInterval, options.interval);
    addOption(app,
              {"--count", "NUMBER", "a whole number from 0 to 1000000000",
               "readings to take (default 0: until interrupted)"},
              parseCount, options.count);
    addOption(app,
              {"--path", "PATH", "a path", "a file or folder on the disk to watch (default /)"},
              parsePath, options.path);
    addOption(app,
              {"--offset", "ZONE", "Z, +hh:mm or -hh:mm",
               "zone of the times: Z, +hh:mm or -hh:mm (default Z)"},
              parseOffset, options.offsetSeconds);
    addOption(app, {"--log", "FILE", "a path", "append each reading to a file, as one line"},
              parsePath, options.logPath);
    addOption(app, {"--replay", "FILE", "a path", "show the readings of such a file"}, parsePath,
              options.replayPath);
    addAverageOption(app, options.averageNames);
    addChartOptions(app, options.chart);
    try {
        app.parse(argc, argv);
    } catch (CLI::CallForHelp const&) {
        return Answer{app.help()};
    } catch (CLI::CallForVersion const& version) {
        return Answer{version.what() + std::string("\n")};
    } catch (CLI::ExtrasError const&) {
        return refusalOf(app.remaining().front());
    } catch (CLI::ArgumentMismatch const& error) {
        return refusalOf(app, error);
    } catch (CLI::ParseError const& error) {
        return Refusal{error.what()};
    }
    if (auto const refusal = refuseConflicts(app, options)) return *refusal;
    return options;
}

}  // namespace monitor

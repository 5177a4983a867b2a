#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cwchar>
#include <limits>
#include <sstream>
#include <string>
#include <type_traits>
#include <variant>

#include <utillibrary/datatypes/Variant.h>

#include "support/operation.h"
#include "support/pool.h"

#ifdef UTILLIBRARY_PEER_ABSL
#include <absl/strings/numbers.h>
#endif
#ifdef UTILLIBRARY_PEER_BOOST
#include <boost/lexical_cast.hpp>
#include <boost/math/special_functions/relative_difference.hpp>
#include <boost/variant.hpp>
#endif
#ifdef UTILLIBRARY_PEER_GLIB
#include <glib-object.h>
#endif
#ifdef UTILLIBRARY_PEER_POCO
#include <Poco/DateTime.h>
#include <Poco/Dynamic/Var.h>
#include <Poco/NumberParser.h>
#endif
#ifdef UTILLIBRARY_PEER_QT
#include <QDateTime>
#include <QString>
#include <QVariant>
#include <QtNumeric>
#endif

// A Variant read as a number, a Boolean or a time, and two floating values compared. A library
// without such a type is given the plain number or string. This file is long, because each
// operation is followed by its peers.
namespace {

using namespace benchmarks;
using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;

template <typename Value>
Variant asVariant(Value const& value) {
    return Variant(value);
}

std::wstring widened(std::string const& text) { return {text.begin(), text.end()}; }

// ---- the pools

int anyInt(Random& random) { return static_cast<int>(numberOf(random, 9)); }

std::string intText(Random& random) { return std::to_string(anyInt(random)); }

std::string printed(double value, std::chars_format format, int precision) {
    char characters[64];
    auto const end =
        std::to_chars(characters, characters + sizeof characters, value, format, precision);
    return {characters, end.ptr};
}

std::string threeDecimalsText(Random& random) {
    return printed(threeDecimals(random), std::chars_format::fixed, 3);
}

std::string seventeenDigitsText(Random& random) {
    double const magnitude = std::pow(10.0, static_cast<double>(between(random, 0, 8)));
    auto const value = std::uniform_real_distribution<double>(magnitude, 10 * magnitude)(random);
    return printed(value, std::chars_format::general, 17);
}

std::string exponentText(Random& random) {
    return printed(anyDouble(random), std::chars_format::scientific, 6);
}

// Words that each library reads as the same Boolean.
std::string booleanText(Random& random) {
    constexpr char const* WORDS[] = {"true", "false", "yes", "no", "1", "0"};
    return WORDS[random() % std::size(WORDS)];
}

// Whole seconds, which are exact in a double.
xtime_t wholeSecond(Random& random) { return {anySecond(random), 0}; }

// ---- what defines the results

constexpr long VMS_EPOCH_SECONDS = -3'506'716'800;

int extracted(std::wstring const& text) {
    std::wistringstream stream(text);
    long value = 0;
    stream >> std::dec >> value;
    return static_cast<int>(value);
}

double converted(std::wstring const& text) { return std::wcstod(text.c_str(), nullptr); }

bool firstLetterOrNumber(std::wstring const& text) {
    switch (text.front()) {
        case L'Y':
        case L'y':
        case L'T':
        case L't':
            return true;
        case L'F':
        case L'f':
        case L'N':
        case L'n':
            return false;
        default:
            return std::wcstol(text.c_str(), nullptr, 10) != 0;
    }
}

// ---- numbers as other numbers

template <typename Target>
struct NumberIn {
    using result_type = Target;

    template <typename Value>
    Target operator()(Value const& value) const {
        if constexpr (std::is_arithmetic_v<Value>) {
            return static_cast<Target>(value);
        } else {
            return Target{};
        }
    }
};

using StandardVariant = std::variant<std::monostate, int, double, xtime_t, std::string>;

template <typename Target, typename Value>
void addNumberRows(Operation<Value, Target> const& operation) {
    operation.ours(prepared(asVariant<Value>, [](Variant const& v) -> Target { return v; }));
    operation.peer("std::variant",
                   prepared([](Value value) { return StandardVariant(value); },
                            [](auto const& v) { return std::visit(NumberIn<Target>(), v); }));
#ifdef UTILLIBRARY_PEER_BOOST
    using BoostVariant = boost::variant<boost::blank, int, double, xtime_t, std::string>;
    operation.peer(
        "boost::variant",
        prepared([](Value value) { return BoostVariant(value); },
                 [](auto const& v) { return boost::apply_visitor(NumberIn<Target>(), v); }));
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.peer("Poco", prepared([](Value value) { return Poco::Dynamic::Var(value); },
                                    [](auto const& v) { return v.template convert<Target>(); }));
#endif
#ifdef UTILLIBRARY_PEER_QT
    auto const asQVariant = [](Value value) { return QVariant(value); };
    if constexpr (std::is_same_v<Target, int>) {
        operation.otherJob("Qt", "rounds to the nearest",
                           prepared(asQVariant, [](QVariant const& v) { return v.toInt(); }));
    } else {
        operation.peer("Qt", prepared(asQVariant, [](QVariant const& v) { return v.toDouble(); }));
    }
#endif
}

#ifdef UTILLIBRARY_PEER_GLIB
// It is never unset: it contains a number, which owns no memory.
template <typename Value>
GValue asGValue(Value value) {
    GValue holder = G_VALUE_INIT;
    if constexpr (std::is_same_v<Value, int>) {
        g_value_init(&holder, G_TYPE_INT);
        g_value_set_int(&holder, value);
    } else {
        g_value_init(&holder, G_TYPE_DOUBLE);
        g_value_set_double(&holder, value);
    }
    return holder;
}

GValue transformed(GValue const& value, GType type) {
    GValue target = G_VALUE_INIT;
    g_value_init(&target, type);
    g_value_transform(&value, &target);
    return target;
}
#endif

void addNumbers() {
    Operation const toDouble("int to double", pool(anyInt),
                             [](int value) { return static_cast<double>(value); });
    Operation const toInt("double to int", pool(threeDecimals),
                          [](double value) { return static_cast<int>(value); });
    addNumberRows(toDouble);
    addNumberRows(toInt);
#ifdef UTILLIBRARY_PEER_GLIB
    toDouble.peer("GLib", prepared(asGValue<int>, [](GValue const& value) {
                      GValue const target = transformed(value, G_TYPE_DOUBLE);
                      return g_value_get_double(&target);
                  }));
    toInt.peer("GLib", prepared(asGValue<double>, [](GValue const& value) {
                   GValue const target = transformed(value, G_TYPE_INT);
                   return g_value_get_int(&target);
               }));
#endif
}

// ---- times

void addTimes() {
    auto const times = pool(wholeSecond);
    Operation const toSeconds("date-time to int64", times, [](xtime_t const& time) {
        return time.getDateTime() - VMS_EPOCH_SECONDS;
    });
    toSeconds.ours(prepared(asVariant<xtime_t>, [](Variant const& v) { return v.toInt64(); }));
    Operation const toTime("date-time to time", times, AsItIs());
    toTime.ours(prepared(asVariant<xtime_t>, [](Variant const& v) { return v.toXtime_t(); }));
    toTime.peer("std::variant", prepared([](xtime_t const& time) { return StandardVariant(time); },
                                         [](auto const& v) { return std::get<xtime_t>(v); }));

    // The others count from 1970.
    [[maybe_unused]] auto const fromVmsEpoch = [](auto seconds) {
        return seconds - VMS_EPOCH_SECONDS;
    };
#ifdef UTILLIBRARY_PEER_POCO
    auto const asVar = [](xtime_t const& time) {
        return Poco::Dynamic::Var(
            Poco::DateTime(Poco::Timestamp::fromEpochTime(time.getDateTime())));
    };
    toSeconds.peer("Poco",
                   prepared(asVar,
                            [](Poco::Dynamic::Var const& v) {
                                return v.extract<Poco::DateTime>().timestamp().epochTime();
                            }),
                   fromVmsEpoch);
    toTime.peer(
        "Poco",
        prepared(asVar, [](Poco::Dynamic::Var const& v) { return v.convert<Poco::DateTime>(); }),
        [](Poco::DateTime const& time) { return xtime_t(time.timestamp().epochTime(), 0); });
#endif
#ifdef UTILLIBRARY_PEER_QT
    auto const asQVariant = [](xtime_t const& time) {
        return QVariant(QDateTime::fromSecsSinceEpoch(time.getDateTime(), Qt::UTC));
    };
    toSeconds.peer(
        "Qt",
        prepared(asQVariant, [](QVariant const& v) { return v.toDateTime().toSecsSinceEpoch(); }),
        fromVmsEpoch);
    toTime.peer("Qt", prepared(asQVariant, [](QVariant const& v) { return v.toDateTime(); }),
                [](QDateTime const& time) { return xtime_t(time.toSecsSinceEpoch(), 0); });
#endif
}

// ---- strings

// For libraries that return the end of the number, or whether there was one.
template <typename Number, typename Read>
auto reader(Read read) {
    return [read](std::string const& text) {
        Number value{};
        read(text, value);
        return value;
    };
}

template <typename Number>
auto fromChars() {
    return reader<Number>([](std::string const& text, Number& value) {
        return std::from_chars(text.data(), text.data() + text.size(), value).ptr;
    });
}

#ifdef UTILLIBRARY_PEER_QT
QVariant textAsQVariant(std::string const& text) { return QVariant(QString::fromStdString(text)); }
#endif

void addTextToInt() {
    auto const wanted = [](std::string const& text) { return extracted(widened(text)); };
    auto const read = [](Variant const& v) { return v.toInt32(); };
    auto const texts = pool(intText);
    auto const operation = Operation("string to int", texts, wanted).threaded();
    for (auto const& there :
         {operation, operation.under(PLAIN_LOCALE), operation.under(GROUPING_LOCALE)}) {
        there.plain("std::wistringstream", prepared(widened, extracted));
        there.ours(prepared(asVariant<std::string>, read));
    }
    operation.peer("std::from_chars", fromChars<int>());
    operation.peer("strtol", [](std::string const& text) {
        return static_cast<int>(std::strtol(text.c_str(), nullptr, 10));
    });
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer("Abseil", reader<int>([](std::string const& text, int& value) {
                       return absl::SimpleAtoi(text, &value);
                   }));
#endif
#ifdef UTILLIBRARY_PEER_BOOST
    operation.peer("Boost", [](std::string const& text) { return boost::lexical_cast<int>(text); });
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    operation.peer("GLib", [](std::string const& text) {
        return static_cast<int>(g_ascii_strtoll(text.c_str(), nullptr, 10));
    });
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.peer("Poco", [](std::string const& text) { return Poco::NumberParser::parse(text); });
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.peer("Qt", prepared(textAsQVariant, [](QVariant const& v) { return v.toInt(); }));
#endif

    // The libraries above accept no trailing characters.
    Operation const general("string to int, spaces and a unit",
                            pool([](Random& random) { return "  " + intText(random) + " km"; }),
                            wanted);
    general.plain("std::wistringstream", prepared(widened, extracted));
    general.ours(prepared(asVariant<std::string>, read));
    general.peer("strtol", [](std::string const& text) {
        return static_cast<int>(std::strtol(text.c_str(), nullptr, 10));
    });
}

Operation<std::string, double> textToDouble(std::string const& kind,
                                            std::vector<std::string> const& texts) {
    return {"string to double, " + kind, texts,
            [](std::string const& text) { return converted(widened(text)); }};
}

void addTextToDouble(Operation<std::string, double> const& operation) {
    operation.plain("wcstod", prepared(widened, converted));
    operation.ours(prepared(asVariant<std::string>, [](Variant const& v) { return v.toDouble(); }));
    operation.peer("std::from_chars", fromChars<double>());
    operation.peer("strtod",
                   [](std::string const& text) { return std::strtod(text.c_str(), nullptr); });
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer("Abseil", reader<double>([](std::string const& text, double& value) {
                       return absl::SimpleAtod(text, &value);
                   }));
#endif
#ifdef UTILLIBRARY_PEER_BOOST
    operation.peer("Boost",
                   [](std::string const& text) { return boost::lexical_cast<double>(text); });
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    operation.peer("GLib",
                   [](std::string const& text) { return g_ascii_strtod(text.c_str(), nullptr); });
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.peer("Poco",
                   [](std::string const& text) { return Poco::NumberParser::parseFloat(text); });
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.peer("Qt", prepared(textAsQVariant, [](QVariant const& v) { return v.toDouble(); }));
#endif
}

void addTextToBool() {
    Operation const operation("string to bool", pool(booleanText), [](std::string const& text) {
        return firstLetterOrNumber(widened(text));
    });
    operation.plain("first letter, or wcstol", prepared(widened, firstLetterOrNumber));
    operation.ours(prepared(asVariant<std::string>, [](Variant const& v) { return v.toBool(); }));
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer("Abseil", reader<bool>([](std::string const& text, bool& value) {
                       return absl::SimpleAtob(text, &value);
                   }));
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.peer("Poco",
                   [](std::string const& text) { return Poco::NumberParser::parseBool(text); });
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.otherJob("Qt", "\"no\" is true",
                       prepared(textAsQVariant, [](QVariant const& v) { return v.toBool(); }));
#endif
}

// ---- comparison

struct Pair {
    double first;
    double second;
};

// Equal, or different by about the threshold.
Pair nearlyEqual(Random& random) {
    double const value = anyDouble(random);
    return {value, value * (1 + static_cast<double>(between(random, -2, 2)) * 1e-12)};
}

int comparedByRatio(Pair const& pair) {
    double const difference = pair.first / pair.second - 1;
    return (difference > 1e-12 ? 1 : 0) - (difference < -1e-12 ? 1 : 0);
}

void addComparison() {
    Operation const operation("compare doubles", pool(nearlyEqual), comparedByRatio);
    operation.plain("a division", comparedByRatio);
    operation.ours(
        [](Pair const& pair) { return Variant::compareDoubles(pair.first, pair.second); });
#ifdef UTILLIBRARY_PEER_BOOST
    operation.otherJob("Boost", "only the distance", [](Pair const& pair) {
        return boost::math::relative_difference(pair.first, pair.second);
    });
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.otherJob("Qt", "only whether equal",
                       [](Pair const& pair) { return qFuzzyCompare(pair.first, pair.second); });
#endif
}

}  // namespace

void benchmarks::addRows() {
    addNumbers();
    addTimes();
    addTextToInt();
    addTextToDouble(textToDouble("3 decimals", pool(threeDecimalsText)).threaded());
    addTextToDouble(textToDouble("17 digits", pool(seventeenDigitsText)));
    addTextToDouble(textToDouble("with an exponent", pool(exponentText)));
    addTextToBool();
    addComparison();
}

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <strings.h>
#include <utility>
#include <vector>

#include <utillibrary/utilities/StringUtilities.h>

#include "support/operation.h"
#include "support/pool.h"

#ifdef UTILLIBRARY_PEER_ABSL
#include <absl/strings/match.h>
#include <absl/strings/numbers.h>
#include <absl/strings/str_cat.h>
#include <absl/strings/str_format.h>
#endif
#ifdef UTILLIBRARY_PEER_BOOST
#include <boost/algorithm/string/predicate.hpp>
#include <boost/lexical_cast.hpp>
#endif
#ifdef UTILLIBRARY_PEER_FMT
#include <fmt/format.h>
#endif
#ifdef UTILLIBRARY_PEER_GLIB
#include "support/glib_text.h"
#endif
#ifdef UTILLIBRARY_PEER_POCO
#include <Poco/NumberFormatter.h>
#include <Poco/NumberParser.h>
#include <Poco/String.h>
#endif
#ifdef UTILLIBRARY_PEER_QT
#include <QByteArray>
#include <QString>
#include <QStringList>
#endif

// Numbers to strings and back; strings compared and searched. This file is long, because each
// operation is followed by its peers.
namespace {

using namespace benchmarks;
namespace utilities = com::halvorin::utilities;

constexpr char const* OTHER_DIGITS = "other digits";

template <typename Value>
std::string printed(char const* format, Value value) {
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

#ifdef UTILLIBRARY_PEER_GLIB
auto const textOfGLib = [](GLibText const& text) { return textOf(text); };
#endif

#ifdef UTILLIBRARY_PEER_QT
std::string bytesOf(QByteArray const& bytes) { return bytes.toStdString(); }
std::string textOf(QString const& text) { return text.toStdString(); }
#endif

// ---- integers

template <typename Integer>
void addIntegerPeers(Operation<Integer, std::string> const& operation,
                     [[maybe_unused]] char const* format) {
    operation.peer("std::to_string", [](Integer value) { return std::to_string(value); });
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer("Abseil", [](Integer value) { return absl::StrCat(value); });
#endif
#ifdef UTILLIBRARY_PEER_BOOST
    operation.peer("Boost", [](Integer value) { return boost::lexical_cast<std::string>(value); });
#endif
#ifdef UTILLIBRARY_PEER_FMT
    operation.peer("{fmt}", [](Integer value) { return fmt::to_string(value); });
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    operation.peer(
        "GLib", [format](Integer value) { return GLibText(g_strdup_printf(format, value)); },
        textOfGLib);
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.peer("Poco", [](Integer value) { return Poco::NumberFormatter::format(value); });
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.peer(
        "Qt",
        [](Integer value) {
            return QByteArray::number(
                static_cast<std::conditional_t<std::is_signed_v<Integer>, qlonglong, qulonglong>>(
                    value));
        },
        bytesOf);
#endif
}

template <typename Integer>
void addInteger(std::string const& name, char const* format, std::vector<Integer> const& values) {
    auto const plain = [format](Integer value) { return printed(format, value); };
    auto const operation = Operation(name, values, plain).threaded();
    operation.plain("snprintf", plain);
    operation.ours([](Integer const& value) { return utilities::to_string(value); });
    addIntegerPeers(operation, format);
}

void addBoolean() {
    auto const word = [](bool value) { return std::string(value ? "true" : "false"); };
    auto const bits = pool([](Random& random) { return static_cast<int>(random() % 2); });
    Operation const operation("bool to string", bits, word);
    operation.plain("std::string", word);
    operation.ours([](int bit) { return utilities::to_string(bit != 0); });
#ifdef UTILLIBRARY_PEER_FMT
    operation.peer("{fmt}", [](int bit) { return fmt::to_string(bit != 0); });
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.peer("Poco", [](int bit) { return Poco::NumberFormatter::format(bit != 0); });
#endif
}

void addHex() {
    auto const values = pool([](Random& random) { return static_cast<unsigned>(random() >> 32); });
    auto const plain = [](unsigned value) { return printed("0x%08x", value); };
    auto const operation = Operation("32 bits to hexadecimal", values, plain).threaded();
    operation.plain("snprintf", plain);
    operation.ours(utilities::convertToHex);
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer("Abseil", [](unsigned value) {
        return absl::StrCat("0x", absl::Hex(value, absl::kZeroPad8));
    });
#endif
#ifdef UTILLIBRARY_PEER_FMT
    operation.peer("{fmt}", [](unsigned value) { return fmt::format("{:#010x}", value); });
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    operation.peer(
        "GLib", [](unsigned value) { return GLibText(g_strdup_printf("0x%08x", value)); },
        textOfGLib);
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.otherJob("Poco", "capital letters", [](unsigned value) {
        return Poco::NumberFormatter::formatHex(value, 10, true);
    });
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.peer(
        "Qt",
        [](unsigned value) { return QStringLiteral("0x%1").arg(value, 8, 16, QLatin1Char('0')); },
        textOf);
#endif
}

// ---- floating numbers to strings

template <typename Value>
void addGeneralPeers(Operation<Value, std::string> const& operation) {
    operation.peer("std::to_chars", [](Value value) {
        char text[32];
        auto const end = std::to_chars(text, text + sizeof text, static_cast<double>(value),
                                       std::chars_format::general, 6);
        return std::string(text, end.ptr);
    });
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer("Abseil", [](Value value) { return absl::StrCat(static_cast<double>(value)); });
    operation.peer("absl::StrFormat", [](Value value) { return absl::StrFormat("%g", value); });
#endif
#ifdef UTILLIBRARY_PEER_FMT
    operation.peer("{fmt}",
                   [](Value value) { return fmt::format("{:g}", static_cast<double>(value)); });
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    operation.peer(
        "GLib",
        [](Value value) { return GLibText(g_strdup_printf("%g", static_cast<double>(value))); },
        textOfGLib);
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.otherJob("Poco", OTHER_DIGITS,
                       [](Value value) { return Poco::NumberFormatter::format(value); });
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.otherJob("Qt", "halves away from zero", [](Value value) {
        return QByteArray::number(static_cast<double>(value), 'g', 6);
    });
#endif
}

template <typename Value>
void addGeneral(std::string const& kind, std::vector<Value> const& values) {
    auto const plain = [](Value value) { return printed("%g", static_cast<double>(value)); };
    auto const operation = Operation(kind + " to string, %g", values, plain).threaded();
    auto const ours = [format = std::string("%g")](Value const& value) {
        return utilities::to_string(value, format);
    };
    operation.plain("snprintf", plain);
    operation.ours(ours);
    addGeneralPeers(operation);

    auto const grouping = operation.under(GROUPING_LOCALE);
    grouping.plain("snprintf", plain);
    grouping.ours(ours);
}

// A format that is a literal becomes a std::string in each call.
void addLiteral() {
    auto const plain = [](double value) { return printed("%g", value); };
    Operation const operation("double of 53 bits to string, literal %g", pool(anyDouble), plain);
    operation.plain("snprintf", plain);
    operation.ours([](double const& value) { return utilities::to_string(value, "%g"); });
    Operation const longer("double of 53 bits to string, literal of 18 bytes", pool(anyDouble),
                           [](double value) { return printed("%g kilometres/hour", value); });
    longer.plain("snprintf", [](double value) { return printed("%g kilometres/hour", value); });
    longer.ours(
        [](double const& value) { return utilities::to_string(value, "%g kilometres/hour"); });
}

void addFixed() {
    auto const plain = [](double value) { return printed("%.3f", value); };
    Operation const operation("double to string, %.3f", pool(threeDecimals), plain);
    operation.plain("snprintf", plain);
    operation.ours([format = std::string("%.3f")](double const& value) {
        return utilities::to_string(value, format);
    });
    operation.peer("std::to_chars", [](double value) {
        char text[64];
        auto const end =
            std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 3);
        return std::string(text, end.ptr);
    });
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer("Abseil", [](double value) { return absl::StrFormat("%.3f", value); });
#endif
#ifdef UTILLIBRARY_PEER_FMT
    operation.peer("{fmt}", [](double value) { return fmt::format("{:.3f}", value); });
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    operation.peer(
        "GLib", [](double value) { return GLibText(g_strdup_printf("%.3f", value)); }, textOfGLib);
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.peer("Poco", [](double value) { return Poco::NumberFormatter::format(value, 3); });
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.peer(
        "Qt", [](double value) { return QByteArray::number(value, 'f', 3); }, bytesOf);
#endif
}

// ---- strings to floating numbers

// From 1 to below 10^9, printed so that no other double reads the same.
std::string seventeenDigits(Random& random) {
    double const magnitude = std::pow(10.0, static_cast<double>(between(random, 0, 8)));
    auto const value = std::uniform_real_distribution<double>(magnitude, 10 * magnitude)(random);
    return printed("%.17g", value);
}

double converted(std::string const& text) { return std::strtod(text.c_str(), nullptr); }

void addReading(std::string const& kind, std::vector<std::string> const& texts) {
    auto const operation = Operation("string to double, " + kind, texts, converted).threaded();
    operation.plain("strtod", converted);
    operation.ours([](std::string const& text) {
        double value = 0;
        utilities::strtodEx(text, value);
        return value;
    });
    operation.peer("std::from_chars", [](std::string const& text) {
        double value = 0;
        std::from_chars(text.data(), text.data() + text.size(), value);
        return value;
    });
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer("Abseil", [](std::string const& text) {
        double value = 0;
        bool const read = absl::SimpleAtod(text, &value);
        benchmark::DoNotOptimize(read);
        return value;
    });
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
    operation.peer("Qt",
                   prepared([](std::string const& text) { return QByteArray::fromStdString(text); },
                            [](QByteArray const& text) { return text.toDouble(); }));
#endif
}

// ---- comparing and searching

struct Pair {
    std::string first;
    std::string second;
};

// Two strings that differ in case alone.
std::vector<Pair> alikePairs(std::size_t size) {
    std::vector<Pair> pairs;
    Random random;
    for (std::string const& text : textsOf(size)) {
        Pair& pair = pairs.emplace_back(text, text);
        for (std::size_t i = 0; i < size; ++i) {
            bool const letter = std::isalpha(static_cast<unsigned char>(text[i])) != 0;
            if (letter && random() % 2 != 0) pair.second[i] = static_cast<char>(text[i] ^ 0x20);
        }
    }
    return pairs;
}

// True if the second string begins with the first one, ignoring case.
bool beginsWithoutCase(Pair const& pair) {
    if (pair.first.size() > pair.second.size()) return false;
    for (std::size_t i = 0; i < pair.first.size(); ++i) {
        if (std::tolower(static_cast<unsigned char>(pair.first[i])) !=
            std::tolower(static_cast<unsigned char>(pair.second[i]))) {
            return false;
        }
    }
    return true;
}

void addWithoutCase(std::string const& kind, std::vector<Pair> const& pairs) {
    Operation const operation("iequals, " + kind, pairs, beginsWithoutCase);
    operation.plain("tolower", beginsWithoutCase);
    operation.ours([](Pair const& pair) { return utilities::iequals(pair.first, pair.second); });
    operation.otherJob("strcasecmp", "ends at a zero byte; 0xFF is a letter", [](Pair const& pair) {
        return strcasecmp(pair.first.c_str(), pair.second.c_str()) == 0;
    });
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer(
        "Abseil", [](Pair const& pair) { return absl::EqualsIgnoreCase(pair.first, pair.second); });
#endif
#ifdef UTILLIBRARY_PEER_BOOST
    operation.peer("Boost", [](Pair const& pair) {
        return boost::algorithm::iequals(pair.first, pair.second);
    });
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    operation.peer("GLib", [](Pair const& pair) {
        return g_ascii_strcasecmp(pair.first.c_str(), pair.second.c_str()) == 0;
    });
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.peer("Poco",
                   [](Pair const& pair) { return Poco::icompare(pair.first, pair.second) == 0; });
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.peer("Qt", [](Pair const& pair) {
        return qstricmp(pair.first.c_str(), pair.second.c_str()) == 0;
    });
#endif
}

// A suffix of 3 to 7 bytes; in one pair of two the string ends with it.
Pair withSuffix(Random& random) {
    std::string const text = anyText(random, 8, 24);
    auto const size = static_cast<std::size_t>(between(random, 3, 7));
    if (random() % 2 == 0) return {text, text.substr(text.size() - size)};
    return {text, anyText(random, size, size)};
}

void addSuffix() {
    auto const compared = [](Pair const& pair) {
        return pair.first.size() >= pair.second.size() &&
               pair.first.compare(pair.first.size() - pair.second.size(), std::string::npos,
                                  pair.second) == 0;
    };
    Operation const operation("endsWith", pool(withSuffix), compared);
    operation.plain("std::string::compare", compared);
    operation.ours([](Pair const& pair) { return utilities::endsWith(pair.first, pair.second); });
    operation.peer("std::string::ends_with",
                   [](Pair const& pair) { return pair.first.ends_with(pair.second); });
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer("Abseil",
                   [](Pair const& pair) { return absl::EndsWith(pair.first, pair.second); });
#endif
#ifdef UTILLIBRARY_PEER_BOOST
    operation.peer("Boost", [](Pair const& pair) {
        return boost::algorithm::ends_with(pair.first, pair.second);
    });
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    operation.peer("GLib", [](Pair const& pair) {
        return g_str_has_suffix(pair.first.c_str(), pair.second.c_str()) != 0;
    });
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.peer("Poco",
                   [](Pair const& pair) { return Poco::endsWith(pair.first, pair.second); });
#endif
}

// A list of a thousand strings is searched for strings that it contains.
class Search {
public:
    Search()
        : list_(pool([](Random& random) { return anyText(random, 6, 24); }, 1000)),
          wanted_(pool([this](Random& random) { return list_[random() % list_.size()]; })) {}

    void addWhole() const {
        auto const plain = [list = list_](std::string const& text) {
            return std::find(list.begin(), list.end(), text) - list.begin();
        };
        Operation const operation("searchVector, whole strings, 1000 of them", wanted_, plain);
        operation.plain("std::find", plain);
        addOurs(operation, false);
#ifdef UTILLIBRARY_PEER_QT
        operation.peer("Qt", prepared(toQString, [list = qtList()](QString const& t) {
                           return list.indexOf(t);
                       }));
#endif
    }

    void addPartial() const {
        auto const plain = [list = list_](std::string const& text) {
            auto const contains = [&text](std::string const& element) {
                return element.find(text) != std::string::npos;
            };
            return std::find_if(list.begin(), list.end(), contains) - list.begin();
        };
        Operation const operation("searchVector, parts of strings, 1000 of them", parts(), plain);
        operation.plain("std::string::find", plain);
        addOurs(operation, true);
#ifdef UTILLIBRARY_PEER_ABSL
        operation.peer("Abseil", [list = list_](std::string const& text) {
            auto const contains = [&text](std::string const& element) {
                return absl::StrContains(element, text);
            };
            return std::find_if(list.begin(), list.end(), contains) - list.begin();
        });
#endif
#ifdef UTILLIBRARY_PEER_QT
        operation.peer("Qt", prepared(toQString, [list = qtList()](QString const& text) {
                           auto const contains = [&text](QString const& element) {
                               return element.contains(text);
                           };
                           return std::find_if(list.begin(), list.end(), contains) - list.begin();
                       }));
#endif
    }

private:
    void addOurs(Operation<std::string, long> const& operation, bool partial) const {
        operation.ours([list = list_, partial](std::string const& text) {
            return utilities::searchVector(list, text, partial) - list.begin();
        });
    }

    std::vector<std::string> parts() const {
        std::vector<std::string> parts = wanted_;
        for (std::string& part : parts)
            part = part.substr(1, 5);
        return parts;
    }

#ifdef UTILLIBRARY_PEER_QT
    static QString toQString(std::string const& text) { return QString::fromStdString(text); }

    QStringList qtList() const {
        QStringList list;
        for (std::string const& text : list_)
            list.append(toQString(text));
        return list;
    }
#endif

    std::vector<std::string> list_;
    std::vector<std::string> wanted_;
};

}  // namespace

void benchmarks::addRows() {
    addInteger("int to string", "%d",
               pool([](Random& random) { return static_cast<int>(numberOf(random, 9)); }));
    addInteger("unsigned to string", "%u",
               pool([](Random& random) { return static_cast<unsigned>(random() >> 32); }));
    addInteger("long to string", "%ld", pool([](Random& random) { return numberOf(random, 18); }));
    addBoolean();
    addHex();
    addGeneral("double of 53 bits", pool(anyDouble));
    addGeneral("double of 3 decimals", pool(threeDecimals));
    addGeneral("float", pool([](Random& random) { return static_cast<float>(anyDouble(random)); }));
    addLiteral();
    addFixed();
    addReading("3 decimals",
               pool([](Random& random) { return printed("%.3f", threeDecimals(random)); }));
    addReading("17 digits", pool(seventeenDigits));
    addWithoutCase("16 bytes", alikePairs(16));
    for (std::size_t const size : MAIN_SIZES)
        addWithoutCase(sizeName(size), alikePairs(size));
    addSuffix();
    Search const search;
    search.addWhole();
    search.addPartial();
}

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <sstream>
#include <string>

#include <utillibrary/datatypes/Variant.h>

#include "support/operation.h"
#include "support/pool.h"

#ifdef UTILLIBRARY_PEER_ABSL
#include <absl/strings/str_cat.h>
#endif
#ifdef UTILLIBRARY_PEER_BOOST
#include <boost/lexical_cast.hpp>
#endif
#ifdef UTILLIBRARY_PEER_FMT
#include <fmt/format.h>
#include <fmt/xchar.h>
#endif
#ifdef UTILLIBRARY_PEER_GLIB
#include <glib-object.h>

#include "support/glib_text.h"
#endif
#ifdef UTILLIBRARY_PEER_POCO
#include <Poco/DateTime.h>
#include <Poco/Dynamic/Var.h>
#endif
#ifdef UTILLIBRARY_PEER_QT
#include <QDateTime>
#include <QString>
#include <QVariant>
#endif

// A Variant as a string. A library without such a type is given the plain value.
namespace {

using namespace benchmarks;
using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;

constexpr char const* OTHER_DIGITS = "other digits";
constexpr char const* BYTES = "bytes, not narrowed";
constexpr char const* WORDS = "true or false";

template <typename Value>
Variant asVariant(Value const& value) {
    return Variant(value);
}

auto const toText = [](Variant const& v) { return v.toString(); };

// ---- the pools

int anyInt(Random& random) { return static_cast<int>(numberOf(random, 9)); }

long anyInt64(Random& random) { return numberOf(random, 18); }

unsigned long anyUint64(Random& random) { return random() >> (random() % 64); }

float anyFloat(Random& random) { return static_cast<float>(anyDouble(random)); }

bool anyBool(Random& random) { return random() % 2 != 0; }

// Every exponent of a double, each as likely as the others.
double anyExponent(Random& random) {
    double const mantissa = std::uniform_real_distribution<double>(1, 2)(random);
    return std::ldexp(mantissa, static_cast<int>(between(random, -1022, 1023)));
}

xtime_t anyTime(Random& random) {
    return {anySecond(random), static_cast<unsigned>(between(random, 0, 999)) * 1'000'000};
}

// ---- what defines the results: a wide stream, narrowed

std::string narrowed(std::wstring const& text) { return {text.begin(), text.end()}; }

template <typename Value>
std::wstring streamedWide(Value value) {
    std::wostringstream stream;
    stream << value;
    return stream.str();
}

template <typename Value>
std::string streamed(Value value) {
    return narrowed(streamedWide(value));
}

template <typename Value>
std::string streamedAsDouble(Value value) {
    return streamed(static_cast<double>(value));
}

std::string printedTime(xtime_t const& time) {
    std::time_t const seconds = time.getDateTime();
    std::tm fields{};
    gmtime_r(&seconds, &fields);
    char fraction[16];
    std::snprintf(fraction, sizeof fraction, "%f",
                  static_cast<double>(static_cast<float>(time.getNanoseconds())) / 1e9);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d%.4sZ", fields.tm_year + 1900,
                  fields.tm_mon + 1, fields.tm_mday, fields.tm_hour, fields.tm_min, fields.tm_sec,
                  fraction + 1);
    return text;
}

// ---- the peers

// As `double`, with six significant digits.
std::string toChars(double value) {
    char characters[32];
    auto const end = std::to_chars(characters, characters + sizeof characters, value,
                                   std::chars_format::general, 6);
    return {characters, end.ptr};
}

#ifdef UTILLIBRARY_PEER_QT
std::string inBytes(QString const& text) { return text.toStdString(); }

template <typename Value>
QVariant asQVariant(Value value) {
    return QVariant(value);
}

auto const toQString = [](QVariant const& v) { return v.toString(); };
#endif

#ifdef UTILLIBRARY_PEER_POCO
template <typename Value>
Poco::Dynamic::Var asVar(Value const& value) {
    return Poco::Dynamic::Var(value);
}

auto const toPocoText = [](Poco::Dynamic::Var const& v) { return v.convert<std::string>(); };
#endif

#ifdef UTILLIBRARY_PEER_GLIB
// It is never unset: it contains a number, which owns no memory.
GValue asGValue(int value) {
    GValue holder = G_VALUE_INIT;
    g_value_init(&holder, G_TYPE_INT);
    g_value_set_int(&holder, value);
    return holder;
}

GValue asGValue(double value) {
    GValue holder = G_VALUE_INIT;
    g_value_init(&holder, G_TYPE_DOUBLE);
    g_value_set_double(&holder, value);
    return holder;
}

GLibText toGLibText(GValue const& value) {
    GValue target = G_VALUE_INIT;
    g_value_init(&target, G_TYPE_STRING);
    g_value_transform(&value, &target);
    GLibText text(g_value_dup_string(&target));
    g_value_unset(&target);
    return text;
}
#endif

// ---- integers and Booleans

template <typename Value, typename Plain>
void addStreamAndOurs(Operation<Value, std::string> const& operation, Plain plain) {
    operation.plain("std::wostringstream", plain);
    operation.ours(prepared(asVariant<Value>, toText));
}

// The same in the classic locale and under the named ones.
template <typename Value, typename Plain>
void addInLocales(Operation<Value, std::string> const& operation, Plain plain) {
    addStreamAndOurs(operation, plain);
    addStreamAndOurs(operation.under(PLAIN_LOCALE), plain);
    addStreamAndOurs(operation.under(GROUPING_LOCALE), plain);
}

void addInt() {
    auto const ints = pool(anyInt);
    auto const operation = Operation("int to string", ints, streamed<int>).threaded();
    addInLocales(operation, streamed<int>);
    operation.peer("std::to_string", [](int value) { return std::to_string(value); });
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer("Abseil", [](int value) { return absl::StrCat(value); });
#endif
#ifdef UTILLIBRARY_PEER_BOOST
    operation.peer("Boost", [](int value) { return boost::lexical_cast<std::string>(value); });
#endif
#ifdef UTILLIBRARY_PEER_FMT
    operation.peer("{fmt}", [](int value) { return fmt::to_string(value); });
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    operation.peer("GLib", prepared([](int value) { return asGValue(value); }, toGLibText),
                   [](GLibText const& text) { return textOf(text); });
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.peer("Poco", prepared(asVar<int>, toPocoText));
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.peer("Qt", prepared(asQVariant<int>, toQString), inBytes);
#endif

    Operation const wide("int to wide string", ints, streamedWide<int>);
    wide.plain("std::wostringstream", streamedWide<int>);
    wide.ours(prepared(asVariant<int>, [](Variant const& v) { return v.toString(0); }));
    wide.peer("std::to_wstring", [](int value) { return std::to_wstring(value); });
#ifdef UTILLIBRARY_PEER_FMT
    wide.peer("{fmt}", [](int value) { return fmt::to_wstring(value); });
#endif
#ifdef UTILLIBRARY_PEER_QT
    wide.peer("Qt", prepared(asQVariant<int>, toQString),
              [](QString const& text) { return text.toStdWString(); });
#endif

    Operation const kept("int to char const*", ints, streamed<int>);
    kept.ours(prepared(asVariant<int>, [](Variant const& v) -> char const* { return v; }));
}

void addBool() {
    Operation const operation("bool to string", pool(anyBool), streamed<bool>);
    addInLocales(operation, streamed<bool>);
    operation.peer("std::to_string", [](bool value) { return std::to_string(value ? 1 : 0); });
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer("Abseil", [](bool value) { return absl::StrCat(value ? 1 : 0); });
#endif
#ifdef UTILLIBRARY_PEER_BOOST
    operation.peer("Boost", [](bool value) { return boost::lexical_cast<std::string>(value); });
#endif
#ifdef UTILLIBRARY_PEER_FMT
    operation.peer("{fmt}", [](bool value) { return fmt::to_string(value ? 1 : 0); });
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.otherJob("Poco", WORDS, prepared(asVar<bool>, toPocoText));
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.otherJob("Qt", WORDS, prepared(asQVariant<bool>, toQString));
#endif
}

// ---- what is printed as a double

template <typename Value>
Operation<Value, std::string> floatingToText(std::string const& kind,
                                             std::vector<Value> const& values) {
    return {kind + " to string", values, streamedAsDouble<Value>};
}

template <typename Value>
void addFloatingPeers(Operation<Value, std::string> const& operation) {
    operation.peer("std::to_chars",
                   [](Value value) { return toChars(static_cast<double>(value)); });
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer("Abseil", [](Value value) { return absl::StrCat(static_cast<double>(value)); });
#endif
#ifdef UTILLIBRARY_PEER_FMT
    operation.peer("{fmt}",
                   [](Value value) { return fmt::format("{:g}", static_cast<double>(value)); });
#endif
#ifdef UTILLIBRARY_PEER_BOOST
    operation.otherJob("Boost", OTHER_DIGITS,
                       [](Value value) { return boost::lexical_cast<std::string>(value); });
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    operation.otherJob(
        "GLib", OTHER_DIGITS,
        prepared([](Value value) { return asGValue(static_cast<double>(value)); }, toGLibText));
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.otherJob("Poco", OTHER_DIGITS, prepared(asVar<Value>, toPocoText));
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.otherJob("Qt", OTHER_DIGITS,
                       prepared([](Value value) { return QVariant::fromValue(value); }, toQString));
#endif
}

template <typename Value>
void addFloating(std::string const& kind, std::vector<Value> const& values) {
    auto const operation = floatingToText(kind, values);
    addStreamAndOurs(operation, streamedAsDouble<Value>);
    addFloatingPeers(operation);
}

void addDouble() {
    auto const operation = floatingToText("double of 53 bits", pool(anyDouble)).threaded();
    addInLocales(operation, streamedAsDouble<double>);
    addFloatingPeers(operation);
}

void addWideDouble() {
    Operation const operation("double to wide string", pool(anyDouble), streamedWide<double>);
    operation.plain("std::wostringstream", streamedWide<double>);
    operation.ours(prepared(asVariant<double>, [](Variant const& v) { return v.toString(0); }));
#ifdef UTILLIBRARY_PEER_FMT
    operation.peer("{fmt}", [](double value) { return fmt::format(L"{:g}", value); });
#endif
}

// ---- times

void addDateTime() {
    auto const operation = Operation("date-time to string", pool(anyTime), printedTime).threaded();
    operation.plain("gmtime_r, snprintf", printedTime);
    operation.ours(prepared(asVariant<xtime_t>, toText));
#ifdef UTILLIBRARY_PEER_POCO
    operation.otherJob("Poco", "whole seconds",
                       prepared(
                           [](xtime_t const& time) {
                               return Poco::Dynamic::Var(Poco::DateTime(Poco::Timestamp(
                                   time.getDateTime() * 1'000'000 + time.getNanoseconds() / 1000)));
                           },
                           toPocoText));
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.peer(
        "Qt",
        prepared(
            [](xtime_t const& time) {
                return QVariant(QDateTime::fromMSecsSinceEpoch(
                    time.getDateTime() * 1000 + time.getNanoseconds() / 1'000'000, Qt::UTC));
            },
            toQString),
        inBytes);
#endif
}

// ---- strings

void addText(std::string const& name, std::vector<std::string> const& texts) {
    Operation const operation(name, texts, AsItIs());
    auto const widened = [](std::string const& text) {
        return std::wstring(text.begin(), text.end());
    };
    operation.plain("std::wostringstream", prepared(widened, streamed<std::wstring const&>));
    operation.ours(prepared(asVariant<std::string>, toText));
    operation.floor("std::string", [](std::string const& text) { return std::string(text); });
#ifdef UTILLIBRARY_PEER_POCO
    operation.otherJob("Poco", BYTES, prepared(asVar<std::string>, toPocoText));
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.peer(
        "Qt",
        prepared([](std::string const& text) { return QVariant(QString::fromStdString(text)); },
                 [](QVariant const& v) { return v.toString().toLatin1(); }),
        [](QByteArray const& text) { return text.toStdString(); });
#endif
}

}  // namespace

void benchmarks::addRows() {
    addInt();
    addBool();
    addDouble();
    addFloating("double of 3 decimals", pool(threeDecimals));
    addFloating("double of any exponent", pool(anyExponent));
    addFloating("float", pool(anyFloat));
    addFloating("int64", pool(anyInt64));
    addFloating("uint64", pool(anyUint64));
    addWideDouble();
    addDateTime();
    addText("string of 8 to 14 bytes to string",
            pool([](Random& random) { return anyText(random, 8, 14); }));
    addText("string of 256 bytes to string", textsOf(256));
    for (std::size_t const size : SIZES)
        addText("string to string, " + sizeName(size), textsOf(size));
}

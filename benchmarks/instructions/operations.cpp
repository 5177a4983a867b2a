#include <array>
#include <cstdio>
#include <ctime>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include <utillibrary/datatypes/ByteStream.h>
#include <utillibrary/datatypes/Variant.h>
#include <utillibrary/datatypes/xtime.h>
#include <utillibrary/datatypes/xtime_conversions.h>
#include <utillibrary/utilities/MovingTimeScale.h>
#include <utillibrary/utilities/StringNVP.h>
#include <utillibrary/utilities/StringTrim.h>
#include <utillibrary/utilities/StringUtilities.h>
#include <utillibrary/utilities/mktimeEx.h>

// Does each operation of a list some times, between two calls that an emulator's log shows. The
// names are printed in the same order. count.py counts the instructions between the calls.
//
// Each operation runs once before it is counted: the first call of a function binds its symbol.
extern "C" {
[[gnu::noinline]] void beginOperation() { __asm__ volatile(""); }
[[gnu::noinline]] void endOperation() { __asm__ volatile(""); }
}

namespace {

using com::halvorin::datatypes::ByteStream;
using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;
using namespace com::halvorin::utilities;

constexpr int ROUNDS = 16;  // of each operation; count.py divides by it

using Operation = std::function<void(int round)>;

void count(char const* name, Operation const& operation) {
    operation(0);
    beginOperation();
    for (int round = 0; round < ROUNDS; ++round)
        operation(round);
    endOperation();
    std::puts(name);
}

// Keeps a value that nobody reads, so that its computation is not left out.
template <typename T>
void keep(T const& value) {
    __asm__ volatile("" : : "g"(&value) : "memory");
}

// Seconds of the years 1970 to 2037, spread evenly.
long second(int round) { return 1'234'567'890L + round * 52'345'679L; }

xtime_t timeOf(int round) { return {second(round), 250'000'000}; }

void countVariants() {
    count("Variant from int", [](int round) { keep(Variant(round)); });
    count("Variant from a string of 12", [](int /*round*/) { keep(Variant("twelve bytes")); });
    Variant const integer("1234567");
    count("string of 7 digits to int", [&](int /*round*/) { keep(integer.toInt32()); });
    Variant const decimal("1234.567");
    count("string to double, 3 decimals", [&](int /*round*/) { keep(decimal.toDouble()); });
    Variant const long17("0.12345678901234568");
    count("string to double, 17 digits", [&](int /*round*/) { keep(long17.toDouble()); });
    Variant const number(1234567);
    count("int to string", [&](int /*round*/) { keep(number.toString()); });
    Variant const floating(1234.5678901234567);
    count("double to string", [&](int /*round*/) { keep(floating.toString()); });
}

void countTimes() {
    count("ISO string out", [](int round) { keep(timeOf(round).toString(true, 0, "")); });
    count("ISO string in", [](int /*round*/) {
        xtime_t time;
        keep(time.fromString("2024-03-05T06:08:09.250Z"));
    });
    count("fourteen digits out", [](int round) { keep(timeToYYYYString(second(round))); });
    count("fourteen digits in", [](int /*round*/) { keep(YYYYStringTotime("20240305060809")); });
    count("calendar to seconds", [](int round) {
        std::tm fields{};
        fields.tm_year = 70 + 4 * round;
        fields.tm_mon = round % 12;
        fields.tm_mday = 1 + round;
        keep(mktimeEx(&fields, 0));
    });
    count("scale of 6 ticks", [](int round) {
        long start = 0;
        long end = 0;
        unsigned long step = 0;
        unsigned int minor = 0;
        MovingTimeScale(second(round), second(round) + 600, 6, 0, start, end, step, minor);
        keep(step);
    });
    std::vector<long> majors;
    std::vector<long> minors;
    count("axis of 100 ticks", [&](int round) {
        unsigned long step = 0;
        unsigned int minor = 0;
        MovingTimeAxis(second(round), second(round) + 6000, 100, step, minor, majors, minors);
        keep(majors);
    });
}

std::string words(std::size_t size) {
    std::string text;
    while (text.size() < size)
        text += "a few words ";
    text.resize(size);
    return text;
}

// "name0=0.25 name1=1.25 ..."
std::string pairs(int count) {
    std::string line;
    for (int i = 0; i < count; ++i)
        line += (i > 0 ? " name" : "name") + std::to_string(i) + "=" + std::to_string(i) + ".25";
    return line;
}

void countStrings() {
    std::string const plain(1024, 'x');
    std::string const spaced = words(1024);
    std::string const escaped = escapeString(spaced, false);
    count("escape a plain string, 1 KiB", [&](int /*round*/) { keep(escapeString(plain, false)); });
    count("escape words and spaces, 1 KiB",
          [&](int /*round*/) { keep(escapeString(spaced, false)); });
    count("unescape a plain string, 1 KiB", [&](int /*round*/) { keep(unescapeString(plain)); });
    count("unescape words and spaces, 1 KiB",
          [&](int /*round*/) { keep(unescapeString(escaped)); });
    std::string const upper(1024, 'X');
    count("iequals, 1 KiB", [&](int /*round*/) { keep(iequals(plain, upper)); });
    double const value = 1234.5678901234567;
    std::string const format = "%g";
    count("double to string, \"%g\"", [&](int /*round*/) { keep(to_string(value, format)); });

    std::string const list = "alpha,beta,gamma,delta,epsilon,zeta,eta,theta,iota,kappa";
    std::string const comma = ",";
    count("split, 10 fields", [&](int /*round*/) {
        std::vector<std::string> fields;
        split(fields, list, comma);
        keep(fields);
    });
    std::string const line = pairs(8);
    std::unordered_map<std::string, std::string> map;
    deserializeNVP(map, line);
    count("serialize, 8 pairs", [&](int /*round*/) {
        std::string written;
        serializeNVP(written, map);
        keep(written);
    });
    count("deserialize, 8 pairs", [&](int /*round*/) {
        std::unordered_map<std::string, std::string> read;
        deserializeNVP(read, line);
        keep(read);
    });
    std::vector<std::string> names;
    for (auto const& [name, number] : map)
        names.push_back(name);
    count("average, 8 names", [&](int /*round*/) {
        std::string average = line;
        averageNVP(names, average, 60, line, 30);
        keep(average);
    });
}

}  // namespace

int main() {
    countVariants();
    countTimes();
    countStrings();
    std::printf("rounds %d\n", ROUNDS);
}

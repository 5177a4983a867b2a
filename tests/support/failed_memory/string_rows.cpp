#include <utillibrary/datatypes/String.h>
#include <utillibrary/utilities/StringTrim.h>
#include <utillibrary/utilities/StringUtilities.h>

#include "support/failed_memory/rows.h"
#include "support/locales.h"

namespace testing_support {

namespace {

using com::halvorin::datatypes::String;
using namespace com::halvorin::utilities;

template <typename Work>
Row function(char const* symbol, char const* fact, Memory memory, std::string const& whole,
             Work const& work) {
    return {symbol, fact, memory, [=](Trial& trial) { trial.expectWholeOrNone(work, whole); }};
}

// 100 bytes that become 600.
std::string const BYTES(100, '\1');

std::string repeated(std::string const& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}

Rows printedNumbers() {
    char const* const ofFloat = "to_string(float const&, std::string const&)";
    char const* const ofDouble = "to_string(double const&, std::string const&)";
    std::string const fixed = "%.17f";
    std::string const padded = "%031.2f";
    // Longer than the buffers that libc has on its stack.
    std::string const wide = "%20000f";
    std::string const precise = "%.40000f";
    return {
        function(ofDouble, "six digits need no memory", Memory::NONE, "0.1",
                 [] { return to_string(0.1, "%g"); }),
        function(ofDouble, "31 bytes", Memory::NEEDED, "0000000000000000000000000000.50",
                 [=] { return to_string(0.5, padded); }),
        function(ofDouble, "a width for which libc allocates", Memory::NEEDED, std::string(31, ' '),
                 [=] { return to_string(0.5, wide); }),
        function(ofDouble, "a precision for which libc allocates", Memory::NEEDED,
                 "0.50000000000000000000000000000", [=] { return to_string(0.5, precise); }),
        function(ofFloat, "a long number", Memory::NEEDED, "0.50000000000000000",
                 [=] { return to_string(0.5F, fixed); }),
        function(ofFloat, "a precision for which libc allocates", Memory::NEEDED,
                 "0.50000000000000000000000000000", [=] { return to_string(0.5F, precise); }),
    };
}

Rows searches() {
    return {
        {"searchVector(std::vector<std::string> const&, std::string const&, bool)",
         "needs no memory", Memory::NONE,
         [](Trial& trial) {
             std::vector<std::string> const list = {"a", repeated("ab", 100), LONG_TEXT};
             std::string const part = repeated("ba", 40);
             trial.run([&] {
                 EXPECT_EQ(searchVector(list, LONG_TEXT, false) - list.begin(), 2);
                 EXPECT_EQ(searchVector(list, part, true) - list.begin(), 1);
             });
         }},
        {"searchVector(std::vector<std::string>&, std::string const&, bool)", "needs no memory",
         Memory::NONE,
         [](Trial& trial) {
             std::vector<std::string> list = {"a", LONG_TEXT};
             trial.run([&] { EXPECT_EQ(searchVector(list, LONG_TEXT, true) - list.begin(), 1); });
         }},
        {"endsWith(std::string const&, std::string const&)", "needs no memory", Memory::NONE,
         [](Trial& trial) { trial.run([] { EXPECT_TRUE(endsWith(LONG_TEXT, LONG_TEXT)); }); }},
        {"iequals(std::string const&, std::string const&)", "needs no memory", Memory::NONE,
         [](Trial& trial) {
             std::string const upper = "A STRING FAR BEYOND ANY SHORT FORM";
             std::string const lower = "a string far beyond any short form";
             trial.run([&] { EXPECT_TRUE(iequals(upper, lower)); });
             ScopedCLocale const turkish("tr_TR.UTF-8");
             trial.run([&] { EXPECT_FALSE(iequals(upper, "b")); });
         }},
    };
}

// strtod is libc's for all but plain numbers.
Rows readNumbers() {
    Rows rows;
    for (char const* const text :
         {"1.5", "0x1.8p0", "1.5e0000000000000000000000000000000000000000",
          "1.50000000000000000000000000000000000000000000000000000000000"}) {
        rows.push_back({"strtodEx(std::string const&, double&)",
                        std::string(text) + " needs no memory", Memory::NONE, [=](Trial& trial) {
                            std::string const number = text + std::string(2000, '0');
                            double value = 0;
                            bool read = false;
                            trial.run([&] { read = strtodEx(number, value); });
                            EXPECT_TRUE(read);
                            if (number.find('x') == std::string::npos) {
                                EXPECT_EQ(value, 1.5);
                            }
                        }});
    }
    return rows;
}

Rows objects() {
    return {
        {"String::String()", "needs no memory", Memory::NONE,
         [](Trial& trial) { trial.run([] { String const text; }); }},
        {"String::String(std::string const&)", "a long string", Memory::NEEDED,
         [](Trial& trial) { trial.run([] { String const text(LONG_TEXT); }); }},
        {"String::operator()() const", "a long string", Memory::NEEDED,
         [](Trial& trial) {
             String const text(LONG_TEXT);
             trial.expectWholeOrNone([&] { return text(); }, LONG_TEXT);
         }},
        {"String::operator()(std::string const&)", "the string is the old one or the new one",
         Memory::NEEDED,
         [](Trial& trial) {
             String text("old");
             trial.expectWholeOrNone([&] { return text(LONG_TEXT); }, LONG_TEXT);
             std::string const now = text();
             EXPECT_TRUE(now == LONG_TEXT || (now == "old" && trial.reached())) << now;
         }},
    };
}

}  // namespace

Rows stringRows() {
    std::string const framed = "  " + LONG_TEXT + "\n";
    std::string const escaped = repeated("\\u0001", 100);
    std::string const shrinking = repeated("\\u0001", 3000);  // to a sixth
    Rows rows = {
        function("trim(std::string const&)", "a long string", Memory::NEEDED, LONG_TEXT,
                 [=] { return trim(framed); }),
        function("escapeString(std::string const&, bool)", "a string that becomes longer",
                 Memory::NEEDED, escaped, [] { return escapeString(BYTES, false); }),
        function("escapeString(std::string const&, bool)", "a string that stays as it is",
                 Memory::NEEDED, LONG_TEXT, [] { return escapeString(LONG_TEXT, true); }),
        function("unescapeString(std::string const&)", "a string that becomes shorter",
                 Memory::NEEDED, BYTES, [=] { return unescapeString(escaped); }),
        function("unescapeString(std::string const&)", "a long string that becomes much shorter",
                 Memory::NEEDED, std::string(3000, '\1'),
                 [=] { return unescapeString(shrinking); }),
        function("convertToHex(unsigned int)", "needs no memory", Memory::NONE, "0x000000ff",
                 [] { return convertToHex(255); }),
        function("to_string(int const&)", "needs no memory", Memory::NONE, "-2147483648",
                 [] { return to_string(-2147483647 - 1); }),
        function("to_string(unsigned int const&)", "needs no memory", Memory::NONE, "4294967295",
                 [] { return to_string(4294967295U); }),
        function("to_string(long const&)", "twenty characters", Memory::NEEDED,
                 "-9223372036854775807", [] { return to_string(-9223372036854775807L); }),
        function("to_string(bool const&)", "needs no memory", Memory::NONE, "false",
                 [] { return to_string(false); }),
        function("to_string(std::string const&)", "a long string", Memory::NEEDED, LONG_TEXT,
                 [] { return to_string(LONG_TEXT); }),
    };
    for (Rows const& more : {printedNumbers(), searches(), readNumbers(), objects()}) {
        rows.insert(rows.end(), more.begin(), more.end());
    }
    return rows;
}

}  // namespace testing_support

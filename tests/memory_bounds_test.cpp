#include <array>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <unistd.h>
#include <unordered_map>
#include <vector>

#include <gtest/gtest.h>

#include "utillibrary/datatypes/ByteStream.h"
#include "utillibrary/datatypes/Variant.h"
#include "utillibrary/datatypes/xtime.h"
#include "utillibrary/datatypes/xtime_conversions.h"
#include "utillibrary/utilities/StringNVP.h"
#include "utillibrary/utilities/StringTrim.h"
#include "utillibrary/utilities/StringUtilities.h"

#include "support/guarded_memory.h"

// No operation reads or writes outside the strings that it is given, or in memory that was freed.
// Fast paths take sixteen bytes and more at once, so a wrong limit reads beyond a short string, and
// most often gives the right result all the same. Here the program ends.
using namespace com::halvorin::datatypes;
using namespace com::halvorin::utilities;
using testing_support::GuardedMemory;

namespace {

constexpr std::size_t LONGEST = 100;

// Repeated, and cut at each size.
std::string const PATTERNS[] = {
    "x",
    "1",
    " ",
    ",",
    "=",
    "\\",
    "\\u0041",
    "\\n",
    "\n",
    "\x80",
    "\xC3\xA9",
    "x,",
    "a=b ",
    "name=1.5 ",
    "xxxxxxxxxxxxxxxxx\\",
    "xxxxxxxxxxxxxxxxxx\xFF",
    "-12.5e3 ",
    "2024-03-05T06:08:09.250+01:00",
    "20240305060809",
};

struct Operation {
    char const* name;
    std::function<std::string(std::string const& text)> work;
};

std::string bytesOf(double value) {
    std::array<char, sizeof value> bytes;
    std::memcpy(bytes.data(), &value, sizeof value);
    return {bytes.data(), bytes.size()};
}

std::string joined(std::vector<std::string> const& fields) {
    std::string result;
    for (std::string const& field : fields)
        result += field + '|';
    return result;
}

std::string splitBy(std::string const& text, std::string const& separators) {
    std::vector<std::string> fields;
    split(fields, text, separators);
    return joined(fields);
}

Operation const OPERATIONS[] = {
    {"trim", [](std::string const& text) { return trim(text); }},
    {"escapeString", [](std::string const& text) { return escapeString(text, false); }},
    {"escapeString, spaces stay", [](std::string const& text) { return escapeString(text, true); }},
    {"unescapeString", [](std::string const& text) { return unescapeString(text); }},
    {"split by one", [](std::string const& text) { return splitBy(text, ","); }},
    {"split by itself", [](std::string const& text) { return splitBy(text, text); }},
    {"split of an element",
     [](std::string const& text) {
         std::vector<std::string> fields{text};
         split(fields, fields[0], ",");
         return joined(fields);
     }},
    {"pairs",
     [](std::string const& text) {
         std::unordered_map<std::string, std::string> pairs;
         bool const wellFormed = deserializeNVP(pairs, text);
         std::string result = wellFormed ? "+" : "-";
         for (auto const& [name, value] :
              std::map<std::string, std::string>(pairs.begin(), pairs.end()))
             result += name + '=' + value + '|';
         return result;
     }},
    {"serializeNVP",
     [](std::string const& text) {
         std::string result;
         serializeNVP(result, std::unordered_map<std::string, std::string>{{text, text}});
         return result;
     }},
    {"addToNVPString",
     [](std::string const& text) {
         std::string result = text;
         addToNVPString(result, text, text);
         return result;
     }},
    {"averageNVP",
     [](std::string const& text) {
         std::string result = text;
         averageNVP({"a", "name", text}, result, 1, text, 1);
         return result;
     }},
    {"iequals",
     [](std::string const& text) {
         std::string const other = text;
         return std::string(iequals(text, other) ? "same" : "different");
     }},
    {"searchVector",
     [](std::string const& text) {
         std::vector<std::string> const list{text + "x", text};
         auto const whole = searchVector(list, text, false) - list.begin();
         auto const partial = searchVector(list, text, true) - list.begin();
         return to_string(whole) + to_string(partial);
     }},
    {"strtodEx",
     [](std::string const& text) {
         double value = -1;
         return std::string(strtodEx(text, value) ? "+" : "-") + bytesOf(value);
     }},
    {"to_string with a format",
     [](std::string const& text) {
         std::string const format = text.find_first_of("%\\") == std::string::npos ? text : "%.3f";
         return to_string(-1234.5, "%g") + to_string(0.1, format);
     }},
    {"a Variant of a string",
     [](std::string const& text) {
         auto const variant = std::make_unique<Variant>(text);
         auto const copy = std::make_unique<Variant>(*variant);
         *variant = *copy;
         variant->assign(text.c_str());
         return variant->toString() + bytesOf(copy->toDouble()) + to_string(copy->toInt64()) +
                to_string(copy->toBool()) + copy->toXtime_t().toString(true, 0, "");
     }},
    {"a Variant of a wide string",
     [](std::string const& text) {
         auto const wide = std::make_unique<std::wstring>(text.begin(), text.end());
         Variant variant(*wide);
         variant.assign(wide->c_str());
         std::wstring const result = variant.toString(1033);
         return std::string(result.begin(), result.end());
     }},
    {"an ISO string",
     [](std::string const& text) {
         xtime_t time;
         bool const read = time.fromString(text);
         return (read ? "+" : "-") + time.toString(true, -3600, text);
     }},
    {"fourteen digits",
     [](std::string const& text) {
         // Other characters than digits may throw.
         bool const digits = text.find_first_not_of("0123456789") == std::string::npos;
         return digits ? to_string(YYYYStringTotime(text)) : std::string();
     }},
    {"a ByteStream",
     [](std::string const& text) {
         auto const size = static_cast<unsigned int>(text.size());
         if (size == 0) return std::string();  // refused
         ByteStream bytes(text.data(), size);
         ByteStream copy(bytes);
         copy.resize(size + 1);
         copy = bytes;
         return std::string(copy.data(), copy.size());
     }},
};

// A string on the heap, so that its own characters, too, end where nothing can be read.
void expectTheSameInGuardedMemory(Operation const& operation, std::string const& text) {
    std::string const expected = operation.work(text);
    bool same = false;
    {
        GuardedMemory const guard;
        auto const guarded = std::make_unique<std::string>(text);
        same = operation.work(*guarded) == expected;
    }
    EXPECT_TRUE(same) << operation.name << " of " << testing::PrintToString(text);
}

TEST(MemoryBounds, HoldForStringsOfEachSize) {
    for (Operation const& operation : OPERATIONS) {
        for (std::string const& pattern : PATTERNS) {
            std::string text;
            for (std::size_t size = 0; size <= LONGEST; ++size) {
                expectTheSameInGuardedMemory(operation, text);
                text += pattern[size % pattern.size()];
            }
        }
    }
}

// Such a string begins and ends where a page does. So what is before it cannot be read either.
TEST(MemoryBounds, HoldForStringsOfAWholePage) {
    auto const size = static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) - 1;  // and the zero byte
    for (Operation const& operation : OPERATIONS) {
        for (std::string const& pattern : PATTERNS) {
            std::string text;
            while (text.size() < size)
                text += pattern;
            text.resize(size);
            expectTheSameInGuardedMemory(operation, text);
        }
    }
}

// The test itself would notice: these read one byte after a string, and a byte that was freed.
TEST(MemoryBoundsDeathTest, AreNoticed) {
    auto const readAfterTheEnd = [] {
        GuardedMemory const guard;
        auto const text = std::make_unique<std::string>(15, 'x');
        char const* volatile end = text->data() + 16;
        return *end;
    };
    auto const readAfterFree = [] {
        GuardedMemory const guard;
        auto text = std::make_unique<std::string>(15, 'x');
        char const* volatile start = text->data();
        text.reset();
        return *start;
    };
    EXPECT_EXIT(readAfterTheEnd(), testing::KilledBySignal(SIGSEGV), "");
    EXPECT_EXIT(readAfterFree(), testing::KilledBySignal(SIGSEGV), "");
}

}  // namespace

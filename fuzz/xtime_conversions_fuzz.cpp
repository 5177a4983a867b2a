#include <optional>
#include <stdexcept>
#include <string>

#include <utillibrary/datatypes/xtime_conversions.h>

#include "input.h"
#include "support/time_models.h"
#include "utc.h"

// A time that is written as strings, and a string that is read as a time.

using com::halvorin::datatypes::xtime_t;
using namespace com::halvorin::utilities;
using namespace testing_support;

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) { return useUtc(); }

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    auto const seconds = input.take<long>();
    auto const nanoseconds = input.take<unsigned>();
    auto const offset = input.take<int>();
    bool const applyOffset = input.takeBool();
    bool const fraction = input.takeBool();
    xtime_t const time(seconds, nanoseconds);
    expectSame(time.toString(applyOffset, offset, fraction ? "" : "I") ==
                   modelOfToString(time, applyOffset, offset, fraction),
               "toString");
    expectSame(timeToYYYYString(seconds) == modelOfFourteenDigits(seconds), "timeToYYYYString");

    std::string text = input.takeRest();
    IsoReading const expected = modelOfFromString(text);
    xtime_t read(77, 77);
    expectSame(read.fromString(text) == expected.read && read == expected.time, "fromString");

    text.resize(14, '7');
    std::optional<long> digits;
    try {
        digits = YYYYStringTotime(text);
    } catch (std::invalid_argument const&) {
        digits = std::nullopt;
    }
    expectSame(digits == modelOfFourteenDigitsRead(text), "YYYYStringTotime");
    return 0;
}

// Readings of this machine.
#include "readings/reading.h"

#include <cerrno>
#include <vector>

#include <gtest/gtest.h>

#include "monitor/readings_support.h"
#include "support/locales.h"

using com::halvorin::datatypes::Variant;
using namespace monitor;
using monitor_test::null;

namespace {

TEST(Reading, HasTheTypesOfTheLibrarysResults) {
    Reading const reading = Sampler("/").read();
    EXPECT_TRUE(reading.time.isSet());
    EXPECT_EQ(reading.diskError, 0);
    std::vector<Variant const*> const floats = {&reading.processor, &reading.memory, &reading.disk,
                                                &reading.uptime};
    for (Variant const* const value : floats)
        EXPECT_STREQ(Variant::typeNumber2Name(value->type()), L"Float");
    EXPECT_STREQ(Variant::typeNumber2Name(reading.free.type()), L"Uint64");
}

TEST(Reading, HasNullForADiskThatDoesNotExist) {
    Reading const reading = Sampler("/nowhere/at/all").read();
    EXPECT_EQ(reading.diskError, ENOENT);
    EXPECT_TRUE(reading.disk.isNull());
    EXPECT_TRUE(reading.free.isNull());
    EXPECT_FALSE(reading.memory.isNull());
}

struct ChangeFact {
    char const* fact;
    int before;
    int now;
    char const* message;
};

ChangeFact const CHANGE_FACTS[] = {
    {"a disk that stays readable gives no message", 0, 0, ""},
    {"a first error gives its reason", 0, ENOENT, "/data: No such file or directory"},
    {"an error that remains gives no second message", ENOENT, ENOENT, ""},
    {"another error gives its reason", ENOENT, EACCES, "/data: Permission denied"},
    {"the end of an error gives a message", EACCES, 0, "/data: readable again"},
};

TEST(Reading, ReportsADiskErrorWhenItChanges) {
    testing_support::ScopedCLocale const english("C");
    for (ChangeFact const& row : CHANGE_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(diskErrorChange("/data", row.before, row.now), row.message);
    }
}

TEST(Reading, KnowsWhichValuesAreNumbers) {
    EXPECT_TRUE(isKnown(Variant(0.0F)));
    EXPECT_TRUE(isKnown(Variant(0UL)));
    EXPECT_FALSE(isKnown(null()));
    EXPECT_FALSE(isKnown(Variant()));
}

}  // namespace

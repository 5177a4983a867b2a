#include <dlfcn.h>
#include <string>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/Library.h>

#include "support/failing_allocations.h"

// After a failed allocation no handle is left open, and the object is unchanged.

using com::halvorin::datatypes::Library;
using testing_support::failsWithout;

namespace {

std::string const GOOD = UTILLIBRARY_TEST_PLUGINS "/good.so";
std::string const MISSING = UTILLIBRARY_TEST_PLUGINS "/missing.so";

bool isLoaded(std::string const& name) {
    void* const handle = dlopen(name.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (handle == nullptr) return false;
    dlclose(handle);
    return true;
}

// Lets the first allocation fail, then the second, and so on, until none fails.
// Gives  the number of allocations that failed
template <typename Work, typename Check>
long failEachOf(Work const& work, Check const& check) {
    long failing = 0;
    while (failsWithout(failing, work)) {
        SCOPED_TRACE(failing);
        check();
        ++failing;
    }
    return failing;
}

TEST(LibraryAllocation, FailsBeforeAnythingIsLoaded) {
    for (bool const withFlags : {false, true}) {
        Library library("libc.so.6");
        library.close();
        long const failed =
            failEachOf([&] { withFlags ? library.open(GOOD, RTLD_NOW) : library.open(GOOD); },
                       [&] {
                           EXPECT_FALSE(library.isOpen());
                           EXPECT_EQ(library.name(), "libc.so.6");
                           EXPECT_FALSE(isLoaded(GOOD));
                       });
        EXPECT_EQ(failed, 1);  // that of the name
        EXPECT_TRUE(library.isOpen());
        EXPECT_EQ(library.name(), GOOD);
        library.close();
        EXPECT_FALSE(isLoaded(GOOD));
    }
}

TEST(LibraryAllocation, FailsBeforeAnythingIsConstructed) {
    long const failed =
        failEachOf([] { Library const library(GOOD); }, [] { EXPECT_FALSE(isLoaded(GOOD)); });
    EXPECT_EQ(failed, 1);
    EXPECT_FALSE(isLoaded(GOOD));
}

TEST(LibraryAllocation, OfAReportFailsAndLeavesItClosed) {
    for (bool const withFlags : {false, true}) {
        Library library;
        long const failed =
            failEachOf([&] { withFlags ? library.open(MISSING, RTLD_NOW) : library.open(MISSING); },
                       [&] {
                           EXPECT_FALSE(library.isOpen());
                           EXPECT_EQ(library.name(), "");
                       });
        EXPECT_GE(failed, 2);  // that of the name, and of the text
    }
}

TEST(LibraryAllocation, OfAReportFailsAndLeavesItOpen) {
    Library library(GOOD);
    void* const module = library.module();
    auto const isUntouched = [&] { EXPECT_EQ(library.module(), module); };
    EXPECT_GE(failEachOf([&] { library.open(MISSING); }, isUntouched), 1);
    EXPECT_GE(failEachOf([&] { library.procAddress("missing"); }, isUntouched), 1);
    EXPECT_EQ(library.name(), GOOD);
}

}  // namespace

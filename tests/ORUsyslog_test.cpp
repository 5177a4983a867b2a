#include <climits>
#include <dlfcn.h>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>

#include <utillibrary/application/ORUsyslog.h>

#include "hook/failure_paths.h"
#include "support/recorded_reports.h"

using com::halvorin::application::oru::writelog;
using namespace std::string_literals;
using testing_support::Report;
using testing_support::takeReports;

namespace {

using Hook = void (*)(std::string const&, int, std::string const&, unsigned int);
static_assert(std::is_same_v<decltype(&writelog), Hook>);

char const* const MANGLED_NAME =
    "_ZN3com8halvorin11application3oru8writelogERKNSt7__cxx1112basic_stringIcSt11char_"
    "traitsIcESaIcE"
    "EEiSA_j";

// The library's own hook, which this program's replaces.
Hook libraryHook() { return reinterpret_cast<Hook>(dlsym(RTLD_NEXT, MANGLED_NAME)); }

TEST(LogHook, HearsEachFailureOnceWithAllItsArguments) {
    ASSERT_NE(failurePaths()->what, nullptr);
    for (FailurePath const* path = failurePaths(); path->what != nullptr; ++path) {
        SCOPED_TRACE(path->what);
        takeReports();
        EXPECT_TRUE(path->fail());
        EXPECT_THAT(takeReports(), testing::ElementsAre(Report{path->component, path->level,
                                                               path->message, path->code}));
    }
}

TEST(LogHook, IsTheHostsForEveryoneWhoAsks) {
    takeReports();
    auto const found = reinterpret_cast<Hook>(dlsym(RTLD_DEFAULT, MANGLED_NAME));
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found, &writelog);
    found("Here::there", 7, "by name ", 0);
    EXPECT_THAT(takeReports(), testing::ElementsAre(Report{"Here::there", 7, "by name ", 0}));
}

TEST(LogHook, IsEmptyInTheLibrary) {
    Hook const hook = libraryHook();
    ASSERT_NE(hook, nullptr);
    ASSERT_NE(hook, &writelog);
    takeReports();
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    // KEPT(hook-is-empty)
    hook("Variant::convertToString", 3, "Cannot convert unknown type", 0x80004005);
    hook("", INT_MIN, "", 0);
    hook("a\0b"s, INT_MAX, std::string(100000, '%'), UINT_MAX);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(takeReports(), testing::IsEmpty());
}

TEST(LogHook, OfTheLibraryMayBeCalledFromAnyThread) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([] {
            for (int level = 0; level < 1000; ++level) {
                libraryHook()("A::b", level, "c", 0);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_THAT(takeReports(), testing::IsEmpty());
}

}  // namespace

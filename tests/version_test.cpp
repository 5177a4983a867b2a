#include <string>

#include <gtest/gtest.h>

#include <utillibrary/version.h>

namespace {

std::string text(int number) { return std::to_string(number); }

TEST(Version, IsTheVersionOfTheProject) {
    EXPECT_EQ(text(UTILLIBRARY_VERSION_MAJOR) + '.' + text(UTILLIBRARY_VERSION_MINOR) + '.' +
                  text(UTILLIBRARY_VERSION_PATCH),
              UTILLIBRARY_TEST_PROJECT_VERSION);
}

TEST(Version, IsOneNumberThatThePreprocessorCompares) {
#if UTILLIBRARY_VERSION >= 10000 && UTILLIBRARY_VERSION < 20000
    constexpr bool isFirstMajorVersion = true;
#else
    constexpr bool isFirstMajorVersion = false;
#endif
    EXPECT_TRUE(isFirstMajorVersion);
    EXPECT_EQ(UTILLIBRARY_VERSION, UTILLIBRARY_VERSION_MAJOR * 10000 +
                                       UTILLIBRARY_VERSION_MINOR * 100 + UTILLIBRARY_VERSION_PATCH);
}

}  // namespace

#include <clocale>
#include <cstdlib>
#include <iostream>
#include <locale>
#include <string>

#include <gmock/gmock.h>

#include "support/random.h"

// Sets the locale named by UTILLIBRARY_TEST_LOCALE, as C locale and as global C++ locale, as a host
// would. If the locale is missing, the program fails, so that no test passes under another one.
namespace {

bool setLocale() {
    char const* const name = std::getenv("UTILLIBRARY_TEST_LOCALE");
    if (name == nullptr || std::string(name) == "C") return true;
    try {
        std::locale::global(std::locale(name));
    } catch (std::runtime_error const&) {
        return false;
    }
    return std::setlocale(LC_ALL, name) != nullptr;
}

}  // namespace

int main(int argc, char** argv) {
    if (!setLocale()) {
        std::cerr << "the locale " << std::getenv("UTILLIBRARY_TEST_LOCALE") << " is not there\n";
        return 2;
    }
    std::cout << "seed " << testing_support::seed() << " (set UTILLIBRARY_TEST_SEED to repeat)\n";
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}

#include "support/locale.h"

#include <stdexcept>

bool benchmarks::hasLocale(std::string const& name) {
    try {
        std::locale const locale(name);
        return true;
    } catch (std::runtime_error const&) {
        return false;
    }
}

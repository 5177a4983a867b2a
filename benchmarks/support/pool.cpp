#include "support/pool.h"

#include <climits>
#include <cmath>

namespace benchmarks {

namespace {

double eitherSign(Random& random, double value) {
    return between(random, 0, 1) == 0 ? value : -value;
}

}  // namespace

bool isStep(std::size_t bytes) {
    return std::find(MAIN_SIZES.begin(), MAIN_SIZES.end(), bytes) == MAIN_SIZES.end();
}

std::string sizeName(std::size_t bytes) {
    if (bytes < KIBIBYTE) return std::to_string(bytes) + " bytes";
    return bytes < MEBIBYTE ? std::to_string(bytes / KIBIBYTE) + " KiB"
                            : std::to_string(bytes / MEBIBYTE) + " MiB";
}

long between(Random& random, long least, long most) {
    return std::uniform_int_distribution<long>(least, most)(random);
}

long numberOf(Random& random, int mostDigits) {
    long limit = 1;
    for (long digits = between(random, 1, mostDigits); digits > 0; --digits)
        limit *= 10;
    long const value = between(random, limit / 10, limit - 1);
    return between(random, 0, 1) == 0 ? value : -value;
}

double anyDouble(Random& random) {
    double const exponent = std::uniform_real_distribution<double>(-5, 9)(random);
    return eitherSign(random, std::pow(10.0, exponent));
}

double threeDecimals(Random& random) {
    return eitherSign(random, static_cast<double>(between(random, 0, 999'999'999)) / 1000);
}

std::string anyText(Random& random, std::size_t least, std::size_t most) {
    std::string text(static_cast<std::size_t>(
                         between(random, static_cast<long>(least), static_cast<long>(most))),
                     '\0');
    for (char& c : text)
        c = static_cast<char>('!' + random() % 94);
    return text;
}

std::vector<std::string> textsOf(std::size_t size) {
    return textPool(size, [](Random& random, std::size_t s) { return anyText(random, s, s); });
}

long anySecond(Random& random) { return between(random, 0, INT_MAX - 86400L); }

}  // namespace benchmarks

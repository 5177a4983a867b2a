#include <array>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>

#include "utillibrary/application/ORUsyslog.h"
#include "utillibrary/internal/decimal.h"
#include "utillibrary/internal/locale.h"
#include "utillibrary/internal/plain_number.h"
#include "utillibrary/internal/result_codes.h"
#include "utillibrary/internal/rounding.h"
#include "utillibrary/utilities/StringNVP.h"

// The running average of name-value pairs. StringNVP.cpp reads and writes the pairs.
namespace com::halvorin::utilities {

namespace {

using namespace com::halvorin::internal;

// ---- weights and numbers

// The average's weight and the sample's.
struct Weights {
    float average;
    float sample;
};

Weights weightsOf(float averageDuration, float sampleDuration) {
    // KEPT(nan-duration-is-silent): asked this way round, NaN is no invalid duration.
    if (sampleDuration <= 0 || averageDuration < 0) {
        application::oru::writelog(NVP_AVERAGE, LEVEL_ERROR, INVALID_DURATION, NO_CODE);
        return {1, 0};  // KEPT(invalid-duration-goes-on): no return to the host here
    }
    float const average = averageDuration / (averageDuration + sampleDuration);
    return {average, 1 - average};
}

// The rule itself: what std::stof reads, NaN where it throws. errno is the caller's again.
float convert(std::string const& value) noexcept {
    int const before = std::exchange(errno, 0);
    char* end = nullptr;
    float const number = std::strtof(value.c_str(), &end);
    bool const refused = end == value.c_str() || errno == ERANGE;
    errno = before;
    return refused ? std::numeric_limits<float>::quiet_NaN() : number;
}

// A number as text, with room for the decimal point of any locale and a terminating zero.
struct NumberText {
    std::array<char, 32> characters;
    std::size_t size;

    // NOLINTNEXTLINE(google-explicit-constructor): it is a text, wherever one is wanted.
    operator std::string_view() const noexcept { return {characters.data(), size}; }
};

// Numbers as libc reads and writes them at the time of a call, which asks for its ways once.
class Numbers {
public:
    float read(std::string_view value) const {
        auto const number = readPlain<float>(value, [this] { return point_; });
        return number ? *number : convert(std::string(value));
    }

    // As `to_string(number, "%g")`.
    NumberText write(float number) const noexcept {
        NumberText text;
        char* const out = text.characters.data();
        if (point_ == '.' && nearest_) {
            text.size = static_cast<std::size_t>(writeGeneral(out, number) - out);
        } else {
            text.size = static_cast<std::size_t>(
                std::snprintf(out, text.characters.size(), "%g", static_cast<double>(number)));
        }
        return text;
    }

private:
    char point_ = singleDecimalPoint();
    bool nearest_ = decimalsRoundToNearest();
};

// KEPT(unreadable-values-are-silent): NaN stands for all of them, and is never mixed in.
bool isReadable(float number) noexcept { return !std::isnan(number); }

float mixed(float average, float sample, Weights const& weights) noexcept {
    if (!isReadable(average)) return sample;
    return average * weights.average + sample * weights.sample;
}

// ---- maps

using Pairs = std::unordered_map<std::string, std::string>;

// A value of a short text: where it stands, or the number that takes its place.
class Value {
public:
    Value& operator=(std::string_view text) noexcept {
        text_ = text;
        return *this;
    }
    Value& operator=(NumberText const& number) noexcept {
        number_ = number;
        return *this = std::string_view{number_};
    }

    // NOLINTNEXTLINE(google-explicit-constructor): it is a text, wherever one is wanted.
    operator std::string_view() const noexcept { return text_; }

private:
    std::string_view text_;
    NumberText number_;
};

// A map of up to 32 pairs that stays on the stack, in the order of the text, which must stay in
// place. Values that are not read as they stand do not fit in.
class FewPairs {
public:
    struct Pair {
        std::string_view first;
        Value second;
    };

    bool empty() const noexcept { return size_ == 0; }
    Pair* begin() noexcept { return pairs_.data(); }
    Pair* end() noexcept { return pairs_.data() + size_; }
    Pair const* begin() const noexcept { return pairs_.data(); }
    Pair const* end() const noexcept { return pairs_.data() + size_; }

    Pair* find(std::string_view name) noexcept { return find(name, markOf(name)); }

    void emplace(std::string_view name, std::string_view value) noexcept {
        if (!fits_) return;
        std::uint64_t const mark = markOf(name);
        if (find(name, mark) != end()) return;  // KEPT(first-value-wins)
        if (size_ == pairs_.size()) {
            fits_ = false;
            return;
        }
        marks_[size_] = mark;
        pairs_[size_].first = name;
        pairs_[size_].second = value;
        ++size_;
    }
    void emplace(std::string_view /*name*/, std::string&& /*unescaped*/) noexcept { fits_ = false; }

    bool fits() const noexcept { return fits_; }

private:
    // The last eight bytes of a name, where names differ most often, or all of a shorter one.
    static std::uint64_t markOf(std::string_view name) noexcept {
        std::uint64_t mark = 0;
        if (name.size() >= sizeof mark) {
            std::memcpy(&mark, name.data() + name.size() - sizeof mark, sizeof mark);
        } else {
            std::memcpy(&mark, name.data(), name.size());
        }
        return mark;
    }

    Pair* find(std::string_view name, std::uint64_t mark) noexcept {
        for (std::size_t i = 0; i < size_; ++i) {
            if (marks_[i] == mark && pairs_[i].first == name) return &pairs_[i];
        }
        return end();
    }

    std::array<Pair, 32> pairs_;
    std::array<std::uint64_t, 32> marks_;  // different marks, different names
    std::size_t size_ = 0;
    bool fits_ = true;
};

bool holdsAll(Pairs const& /*pairs*/) noexcept { return true; }
bool holdsAll(FewPairs const& pairs) noexcept { return pairs.fits(); }

// ---- the average itself

// False is no answer: a map of this kind does not hold the texts.
template <typename Map>
bool averageBy(std::vector<std::string> const& names, std::string& average,
               std::string const& sample, Weights const& weights) {
    Map samples;
    Map averages;
    bool const sampleIsWellFormed = deserializeNVP(samples, sample);
    bool const averageIsWellFormed = deserializeNVP(averages, average);
    if (!holdsAll(samples) || !holdsAll(averages)) return false;
    if (!sampleIsWellFormed || !averageIsWellFormed) return true;

    Numbers const numbers;
    // KEPT(listed-twice-averaged-twice): names are taken as they come.
    for (auto const& name : names) {
        auto const sampled = samples.find(name);
        auto const averaged = averages.find(name);
        // KEPT(averaging-adds-no-name): a name of the sample alone takes no part.
        if (sampled == samples.end() || averaged == averages.end()) continue;
        float const number = numbers.read(sampled->second);
        if (!isReadable(number)) continue;
        averaged->second = numbers.write(mixed(numbers.read(averaged->second), number, weights));
    }
    std::string result;
    serializeNVP(result, averages);
    average.swap(result);
    return true;
}

}  // namespace

void averageNVP(std::vector<std::string> const& names, std::string& average, float averageDuration,
                std::string const& sample, float sampleDuration) {
    Weights const weights = weightsOf(averageDuration, sampleDuration);
    if (averageBy<FewPairs>(names, average, sample, weights)) return;
    averageBy<Pairs>(names, average, sample, weights);
}

}  // namespace com::halvorin::utilities

#include "utillibrary/utilities/StringNVP.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>
#include <utility>

#include "utillibrary/application/ORUsyslog.h"
#include "utillibrary/application/result_codes_internal.h"
#include "utillibrary/utilities/StringEscape_internal.h"
#include "utillibrary/utilities/StringTrim_internal.h"
#include "utillibrary/utilities/byte_class_internal.h"
#include "utillibrary/utilities/bytes_internal.h"
#include "utillibrary/utilities/decimal_internal.h"
#include "utillibrary/utilities/locale_internal.h"
#include "utillibrary/utilities/plain_number_internal.h"

namespace com::halvorin::utilities {

namespace {

using namespace com::halvorin::internal;

// ---- fields

constexpr std::size_t BLOCK = 64;  // bytes, one bit each

// Copies a name; one of 8 to 16 bytes, as names are, by two words that may overlap.
char* writeName(char* out, std::string_view name) noexcept {
    constexpr std::size_t WORD = sizeof(std::uint64_t);
    if (name.size() < WORD || name.size() > 2 * WORD)
        return std::copy(name.begin(), name.end(), out);
    char* const end = out + name.size();
    std::memcpy(out, name.data(), WORD);
    std::memcpy(end - WORD, name.data() + name.size() - WORD, WORD);
    return end;
}

}  // namespace

namespace detail {

FieldReader::FieldReader(std::string_view text, std::string_view separators) noexcept
    : next_(text.data()),
      end_(text.data() + text.size()),
      fieldStart_(text.data()),
      here_(text.data()),
      separatorCount_(separators.size()) {
    if (separatorCount_ <= FEW) {
        separators.copy(few_, FEW);
        return;
    }
    std::fill(std::begin(isSeparator_), std::end(isSeparator_), static_cast<unsigned char>(0));
    for (char const c : separators)
        isSeparator_[static_cast<unsigned char>(c)] = 1;
}

std::uint64_t FieldReader::separatorsIn(char const* block) const noexcept {
    std::uint64_t bits = 0;
    if (separatorCount_ > FEW) {
        for (std::size_t i = 0; i < BLOCK; ++i) {
            bits |= std::uint64_t{isSeparator_[static_cast<unsigned char>(block[i])]} << i;
        }
        return bits;
    }
    for (std::size_t i = 0; i < BLOCK; i += sizeof(Bytes)) {
        Bytes const bytes = loadBytes(block + i);
        Bytes found{};
        for (std::size_t s = 0; s < separatorCount_; ++s)
            found |= equal(bytes, few_[s]);
        bits |= bitsOf(found) << i;
    }
    return bits;
}

// The separators among the next bytes of the text, 64 of them or what is left.
std::uint64_t FieldReader::separatorsAt(char const* position) const noexcept {
    auto const left = static_cast<std::size_t>(end_ - position);
    if (left >= BLOCK) return separatorsIn(position);
    std::array<char, BLOCK> block{};
    std::memcpy(block.data(), position, left);
    return separatorsIn(block.data()) & ((std::uint64_t{1} << left) - 1);
}

std::size_t FieldReader::count() const noexcept {
    auto const size = static_cast<std::size_t>(end_ - next_);
    std::size_t fields = 1;         // the last one
    std::uint64_t behindField = 0;  // whether the byte before this block belongs to a field
    for (std::size_t i = 0; i < size; i += BLOCK) {
        std::uint64_t const separators = separatorsAt(next_ + i);
        std::uint64_t const ends = separators & (~separators << 1 | behindField);
        fields += static_cast<std::size_t>(std::popcount(ends));
        behindField = ~separators >> (BLOCK - 1);
    }
    return fields;
}

bool FieldReader::advance() noexcept {
    while (next_ < end_) {
        here_ = next_;
        separatorsHere_ = separatorsAt(here_);
        next_ += std::min<std::ptrdiff_t>(BLOCK, end_ - next_);
        if (separatorsHere_ != 0) return true;
    }
    return false;
}

std::string_view trimmed(std::string_view text) noexcept { return internal::trimmed(text); }

PairWriter::PairWriter(bool follows) noexcept
    : follows_(follows), usual_(ByteClasses().graphicIsUsual()) {}

void PairWriter::add(std::string_view name, std::string_view value) {
    Escaping const escaping{false, usual_};
    std::size_t const room = 2 + name.size() + escapedRoom(value.size());
    if (room > BLOCK - size_) {
        text_.append(block_, size_);
        size_ = 0;
    }
    if (room > BLOCK) {
        std::string const written = escaped(value, escaping);
        text_.reserve(std::max(text_.size() + 2 + name.size() + written.size(), 2 * text_.size()));
        if (follows_) text_ += ' ';
        text_.append(name).append(1, '=').append(written);
    } else {
        char* out = block_ + size_;
        if (follows_) *out++ = ' ';
        out = writeName(out, name);
        *out++ = '=';
        out = writeEscaped(out, value, escaping);
        size_ = static_cast<std::size_t>(out - block_);
    }
    follows_ = true;
}

void PairWriter::appendTo(std::string& out) {
    if (text_.empty()) {
        out.append(block_, size_);
        return;
    }
    text_.append(block_, size_);
    if (out.empty()) {
        out.swap(text_);
    } else {
        out.append(text_);
    }
}

}  // namespace detail

template void split(std::vector<std::string>&, std::string const&, std::string const&);
template void serializeNVP(std::string&, std::unordered_map<std::string, std::string> const&);
template bool deserializeNVP(std::unordered_map<std::string, std::string>&, std::string const&);

void addToNVPString(std::string& nvp, std::string const& name, std::string const& value) {
    // KEPT(no-empty-value-is-added): `serializeNVP` writes "name=" instead.
    if (name.empty() || value.empty()) return;
    std::size_t const size = nvp.size() + 2 + name.size() + value.size();
    if (size > nvp.capacity()) nvp.reserve(std::max(size, 2 * nvp.capacity()));
    if (!nvp.empty()) nvp += ' ';
    // KEPT(two-writers): the value is not escaped. KEPT(names-are-unchecked): nor is the name.
    // KEPT(own-text-is-read-late): no copy of either, though it may be `nvp` itself.
    nvp.append(name).append(1, '=').append(value);
}

// ---- the running average

namespace {

using Pairs = std::unordered_map<std::string, std::string>;

// The average's weight and the sample's.
struct Weights {
    float average;
    float sample;
};

Weights weightsOf(float averageDuration, float sampleDuration) {
    // KEPT(nan-duration-is-silent): asked this way round, NaN is no invalid duration.
    if (sampleDuration <= 0 || averageDuration < 0) {
        application::oru::writelog("StringNVP::averageNVP", LEVEL_ERROR, "Invalid duration", 0);
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

// Room for "%g" with the decimal point of any locale, and a terminating zero.
constexpr std::size_t PRINTED_GENERAL_SIZE = 32;

// Numbers as libc reads and writes them at the time of a call, which asks for its ways once.
class Numbers {
public:
    float in(std::string_view value) const {
        auto const pointIsDot = [this] { return pointIsDot_; };
        if (auto const number = plainNumber<float>(value, pointIsDot)) return *number;
        return convert(std::string(value));
    }

    /// Needs PRINTED_GENERAL_SIZE bytes.
    char* write(char* out, float number) const noexcept {
        if (pointIsDot_ && nearest_) return writeGeneral(out, number);
        return out + std::snprintf(out, PRINTED_GENERAL_SIZE, "%g", static_cast<double>(number));
    }

private:
    bool pointIsDot_ = decimalPointIsDot();
    bool nearest_ = roundsToNearest();
};

// KEPT(unreadable-values-are-silent): NaN stands for all of them, and is never mixed in.
bool isReadable(float number) noexcept { return !std::isnan(number); }

float mixed(float average, float sample, Weights const& weights) noexcept {
    if (!isReadable(average)) return sample;
    return average * weights.average + sample * weights.sample;
}

// The rule itself, for any texts.
void averageAny(std::vector<std::string> const& names, std::string& average,
                std::string const& sample, Weights const& weights) {
    Numbers const numbers;
    Pairs samples;
    Pairs averages;
    if (!deserializeNVP(samples, sample) || !deserializeNVP(averages, average)) return;
    for (std::string const& name : names) {
        auto const sampled = samples.find(name);
        auto const averaged = averages.find(name);
        // KEPT(averaging-adds-no-name): a name of the sample alone takes no part.
        if (sampled == samples.end() || averaged == averages.end()) continue;
        float const number = numbers.in(sampled->second);
        if (!isReadable(number)) continue;
        averaged->second = to_string(mixed(numbers.in(averaged->second), number, weights), "%g");
    }
    std::string result;
    serializeNVP(result, averages);
    average.swap(result);
}

// A pair of a short text, and the number that takes the place of its value.
struct Pair {
    std::string_view name;
    std::uint64_t mark;  // of the name: different marks, different names
    std::string_view value;
    std::array<char, PRINTED_GENERAL_SIZE> number;
};

// The last eight bytes of a name, where names differ most often, or all of a shorter one.
std::uint64_t markOf(std::string_view name) noexcept {
    std::uint64_t mark = 0;
    if (name.size() >= sizeof mark) {
        std::memcpy(&mark, name.data() + name.size() - sizeof mark, sizeof mark);
    } else {
        std::memcpy(&mark, name.data(), name.size());
    }
    return mark;
}

// The pairs of a text of up to 32 names without a backslash, so that values stand as they are read.
class FewPairs {
public:
    // Whether the text is of this kind; it must stay in place.
    bool read(std::string const& text) noexcept {
        if (text.find('\\') != std::string::npos) return false;
        detail::FieldReader fields(internal::trimmed(text), " ");
        for (std::string_view field; fields.next(field);) {
            std::size_t const equals = field.find('=');
            if (equals == 0 || equals == std::string_view::npos) {
                wellFormed_ = false;
                continue;
            }
            if (size_ == pairs_.size()) return false;
            insert(field.substr(0, equals), field.substr(equals + 1));
        }
        return true;
    }

    bool wellFormed() const noexcept { return wellFormed_; }

    Pair* find(std::string_view name, std::uint64_t mark) noexcept {
        for (Pair* pair = begin(); pair != end(); ++pair) {
            if (pair->mark == mark && pair->name == name) return pair;
        }
        return nullptr;
    }

    Pair* begin() noexcept { return pairs_.data(); }
    Pair* end() noexcept { return pairs_.data() + size_; }

private:
    void insert(std::string_view name, std::string_view value) noexcept {
        std::uint64_t const mark = markOf(name);
        if (find(name, mark) != nullptr) return;  // KEPT(first-value-wins)
        Pair& pair = pairs_[size_++];
        pair.name = name;
        pair.mark = mark;
        pair.value = value;
    }

    std::array<Pair, 32> pairs_;
    std::size_t size_ = 0;
    bool wellFormed_ = true;
};

// Owns short texts, read and written as the maps would be, in the text's order. False is no answer.
bool averageFew(std::vector<std::string> const& names, std::string& average,
                std::string const& sample, Weights const& weights) {
    Numbers const numbers;
    FewPairs samples;
    FewPairs averages;
    if (!samples.read(sample) || !averages.read(average)) return false;
    if (!samples.wellFormed() || !averages.wellFormed()) return true;
    for (std::string const& name : names) {
        std::uint64_t const mark = markOf(name);
        Pair const* const sampled = samples.find(name, mark);
        Pair* const averaged = averages.find(name, mark);
        if (sampled == nullptr || averaged == nullptr) continue;
        float const number = numbers.in(sampled->value);
        if (!isReadable(number)) continue;
        float const result = mixed(numbers.in(averaged->value), number, weights);
        char* const text = averaged->number.data();
        averaged->value = {text, static_cast<std::size_t>(numbers.write(text, result) - text)};
    }
    detail::PairWriter writer(false);
    for (Pair const& pair : averages)
        writer.add(pair.name, pair.value);
    std::string result;
    writer.appendTo(result);
    average.swap(result);
    return true;
}

}  // namespace

void averageNVP(std::vector<std::string> const& names, std::string& average, float averageDuration,
                std::string const& sample, float sampleDuration) {
    Weights const weights = weightsOf(averageDuration, sampleDuration);
    // KEPT(listed-twice-averaged-twice): names are taken as they come.
    if (averageFew(names, average, sample, weights)) return;
    averageAny(names, average, sample, weights);
}

}  // namespace com::halvorin::utilities

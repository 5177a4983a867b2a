#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/ByteStream.h>

#include "support/byte_streams.h"
#include "support/random.h"
#include "support/recorded_reports.h"

// Any sequence of operations, upon streams and upon plain lists of bytes.

using namespace testing_support;

namespace {

constexpr unsigned int MOST = 4294967295;  // 32 bits
constexpr unsigned int HALF = 2147483648;

// What a stream is, told in a few words of another kind.
struct Model {
    bool hasBlock = false;
    std::vector<char> bytes;

    void clear() { *this = Model(); }

    void set(std::vector<char> replacement) {
        hasBlock = true;
        bytes = std::move(replacement);
    }
};

struct Expected {
    Outcome outcome;
    char const* message = nullptr;
};

// Plays random operations upon three streams and upon their models.
class Player {
public:
    void step() {
        chosen_ = number(0, 2);
        other_ = number(0, 2);
        playOne();
        for (std::size_t i = 0; i < 3; ++i) {
            Model const& modelled = models_[i];
            std::string const bytes(modelled.bytes.begin(), modelled.bytes.end());
            ASSERT_EQ(contentsOf(streams_[i]), modelled.hasBlock ? Contents(bytes) : EMPTY);
            ASSERT_EQ(streams_[i].size(), modelled.bytes.size());
        }
    }

private:
    void playOne() {
        switch (number(0, 8)) {
            case 0:
                return playAllocate();
            case 1:
                return playResize();
            case 2:
                return playCopyOfBytes();
            case 3:
                return playCopyOfNull();
            case 4:
                return playCopyOfStream();
            case 5:
                return playAssignment();
            case 6:
                return playZero();
            case 7:
                return number(0, 3) == 0 ? playClear() : playZero();
            default:
                return playCopyOfPart();
        }
    }

    void play(Expected const& expected, std::function<unsigned int()> const& call) {
        takeReports();
        EXPECT_EQ(outcomeOf(call), expected.outcome);
        EXPECT_EQ(takeReports(), reportOf(expected.message));
    }

    void playAllocate() {
        auto const size = number(0, 12);
        play(allocated(size), [&] { return stream().allocate(size); });
    }

    void playResize() {
        auto const size = number(0, 12);
        play(resized(size), [&] { return stream().resize(size); });
    }

    void playCopyOfBytes() {
        std::vector<char> bytes(number(1, 12));
        for (char& byte : bytes) {
            byte = static_cast<char>(number(1, 255));
        }
        auto const size = static_cast<unsigned int>(bytes.size() * number(0, 9) / 9);
        play(copied(bytes.data(), size), [&] { return stream().copy(bytes.data(), size); });
    }

    void playCopyOfNull() {
        auto const size = number(0, 1) * number(1, 12);
        play(copied(nullptr, size), [&] { return stream().copy(nullptr, size); });
    }

    void playCopyOfStream() {
        play(copiedStream(), [&] { return stream().copy(source()); });
    }

    void playAssignment() {
        Expected expected = chosen_ == other_ ? Expected{gives(0)} : copiedStream();
        if (expected.outcome.result) expected.outcome = gives(0);
        play(expected, [&] {
            stream() = source();
            return 0;
        });
    }

    void playZero() {
        model().bytes.assign(model().bytes.size(), '\0');
        stream().zeroMemory();
    }

    void playClear() {
        model().clear();
        stream().clear();
    }

    void playCopyOfPart() {
        auto const sourceStart = offset();
        auto const start = number(0, 12) == 0 ? MOST - number(0, 3) : number(0, 12);
        auto const count = offset();
        if (wouldBeHuge(sourceStart, start, count)) return;
        play(copiedPart(sourceStart, start, count),
             [&] { return stream().copy(source(), sourceStart, start, count); });
    }

    // What an operation does to the model, and what is to come of it.

    Expected allocated(unsigned int size) {
        if (size != 0 || model().hasBlock) model().set(std::vector<char>(size));
        return {gives(size)};
    }

    Expected resized(unsigned int size) {
        if (!model().hasBlock) return allocated(size);
        if (size == 0) return {REFUSED, NO_BYTES};
        model().bytes.resize(size);
        return {gives(size)};
    }

    Expected copied(char const* bytes, unsigned int size) {
        if (size != 0 && bytes == nullptr) return {REFUSED, NO_POINTER};
        if (size == 0 && bytes != nullptr) return {REFUSED, NO_BYTES};
        if (bytes == nullptr) {
            model().clear();
        } else {
            model().set(std::vector<char>(bytes, bytes + size));
        }
        return {gives(size)};
    }

    Expected copiedStream() {
        Model from = models_[other_];
        if (chosen_ == other_) from.bytes.assign(from.bytes.size(), '\0');
        char const somewhere = 'x';
        char const* const bytes = from.bytes.empty() ? &somewhere : from.bytes.data();
        return copied(from.hasBlock ? bytes : nullptr,
                      static_cast<unsigned int>(from.bytes.size()));
    }

    Expected copiedPart(unsigned int sourceStart, unsigned int start, unsigned int count) {
        std::vector<char> const from = models_[other_].bytes;
        if (sumOf(sourceStart, count) > from.size()) return {REFUSED, PAST_THE_SOURCE};
        if (count == 0) count = static_cast<unsigned int>(from.size()) - sourceStart;
        unsigned long const end = sumOf(start, count);
        if (end > MOST) return {NO_MEMORY};
        if (end > model().bytes.size()) {
            model().hasBlock = true;
            model().bytes.resize(end);
        }
        std::copy_n(from.begin() + sourceStart, count, model().bytes.begin() + start);
        return {gives(count)};
    }

    // Whether some gigabytes would be asked for, and be given.
    bool wouldBeHuge(unsigned int sourceStart, unsigned int start, unsigned int count) const {
        auto const size = static_cast<unsigned int>(models_[other_].bytes.size());
        unsigned long const end = sumOf(start, count == 0 ? size - sourceStart : count);
        return end > 1000 && end <= MOST;
    }

    static unsigned long sumOf(unsigned long left, unsigned long right) { return left + right; }

    ByteStream& stream() { return streams_[chosen_]; }
    ByteStream& source() { return streams_[other_]; }
    Model& model() { return models_[chosen_]; }

    unsigned int number(unsigned int least, unsigned int most) {
        return std::uniform_int_distribution<unsigned int>(least, most)(engine_);
    }

    unsigned int offset() {
        unsigned int const edges[] = {0, 1, HALF - 1, HALF, MOST - 1, MOST};
        return number(0, 7) == 0 ? edges[number(0, 5)] : number(0, 12);
    }

    std::mt19937_64 engine_ = testing_support::randomEngine();
    unsigned int chosen_ = 0;
    unsigned int other_ = 0;
    ByteStream streams_[3];
    Model models_[3];
};

TEST(ByteStream, IsAListOfBytesUnderAnySequenceOfOperations) {
    Player player;
    for (int i = 0; i < 100000; ++i) {
        SCOPED_TRACE(i);
        player.step();
        if (HasFailure()) return;
    }
}

}  // namespace

#include <functional>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/ByteStream.h>

#include "support/byte_stream_model.h"
#include "support/byte_streams.h"
#include "support/random.h"
#include "support/recorded_reports.h"

// Any sequence of operations, on streams and on plain lists of bytes.

using namespace testing_support;

namespace {

constexpr unsigned int MOST = 4294967295;  // 32 bits
constexpr unsigned int HALF = 2147483648;

// Plays random operations on three streams and on their models.
class Player {
public:
    void step() {
        chosen_ = number(0, 2);
        other_ = number(0, 2);
        playOne();
        for (std::size_t i = 0; i < 3; ++i) {
            ASSERT_EQ(contentsOf(streams_[i]), models_[i].contents());
            ASSERT_EQ(streams_[i].size(), models_[i].size());
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

    void play(ExpectedCall const& expected, std::function<unsigned int()> const& call) {
        takeReports();
        EXPECT_EQ(outcomeOf(call), expected.outcome);
        EXPECT_EQ(takeReports(), reportOf(expected.message));
    }

    void playAllocate() {
        auto const size = number(0, 12);
        play(model().allocate(size), [&] { return stream().allocate(size); });
    }

    void playResize() {
        auto const size = number(0, 12);
        play(model().resize(size), [&] { return stream().resize(size); });
    }

    void playCopyOfBytes() {
        std::vector<char> bytes(number(1, 12));
        for (char& byte : bytes) {
            byte = static_cast<char>(number(1, 255));
        }
        auto const size = static_cast<unsigned int>(bytes.size() * number(0, 9) / 9);
        play(model().copy(bytes.data(), size), [&] { return stream().copy(bytes.data(), size); });
    }

    void playCopyOfNull() {
        auto const size = number(0, 1) * number(1, 12);
        play(model().copy(nullptr, size), [&] { return stream().copy(nullptr, size); });
    }

    void playCopyOfStream() {
        play(model().copy(models_[other_]), [&] { return stream().copy(source()); });
    }

    void playAssignment() {
        play(model().assign(models_[other_]), [&] {
            stream() = source();
            return 0;
        });
    }

    void playZero() {
        model().zeroMemory();
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
        if (isHuge(models_[other_], sourceStart, start, count)) return;
        play(model().copyPart(models_[other_], sourceStart, start, count),
             [&] { return stream().copy(source(), sourceStart, start, count); });
    }

    ByteStream& stream() { return streams_[chosen_]; }
    ByteStream& source() { return streams_[other_]; }
    ByteStreamModel& model() { return models_[chosen_]; }

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
    ByteStreamModel models_[3];
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

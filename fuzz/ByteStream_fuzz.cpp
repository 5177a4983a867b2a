#include <functional>
#include <string>

#include <utillibrary/datatypes/ByteStream.h>

#include "input.h"
#include "support/byte_stream_model.h"
#include "support/byte_streams.h"
#include "support/recorded_reports.h"

// A sequence of calls on three streams, and on three lists of bytes.

using namespace testing_support;

namespace {

class Script {
public:
    explicit Script(Input& input) : input_(input) {}

    void playOne() {
        chosen_ = input_.takeBelow(3);
        other_ = input_.takeBelow(3);
        playCall(input_.takeBelow(11));
        for (std::size_t i = 0; i < 3; ++i) {
            expectSame(contentsOf(streams_[i]) == models_[i].contents(), "the bytes of a stream");
            expectSame(streams_[i].size() == models_[i].size(), "the size of a stream");
        }
    }

private:
    void playCall(unsigned int call) {
        switch (call) {
            case 0: {
                unsigned int const size = length();
                return play(model().allocate(size), [&] { return stream().allocate(size); });
            }
            case 1: {
                unsigned int const size = length();
                return play(model().resize(size), [&] { return stream().resize(size); });
            }
            case 2: {
                std::string const bytes = input_.takeLine();
                auto const size = static_cast<unsigned int>(bytes.size());
                return play(model().copy(bytes.data(), size),
                            [&] { return stream().copy(bytes.data(), size); });
            }
            case 3: {
                unsigned int const size = length();
                return play(model().copy(nullptr, size),
                            [&] { return stream().copy(nullptr, size); });
            }
            case 4:
                return play(model().copy(source()), [&] { return stream().copy(otherStream()); });
            case 5:
                return play(model().assign(source()), [&] {
                    stream() = otherStream();
                    return 0;
                });
            case 6:
                model().zeroMemory();
                return stream().zeroMemory();
            case 7:
                model().clear();
                return stream().clear();
            case 8:
                return playCopyOfOwnBytes();
            case 9: {
                ByteStreamModel fresh;
                return play(fresh.assign(source()), [&] {
                    ByteStream const copy(otherStream());
                    expectSame(contentsOf(copy) == fresh.contents(), "a copied stream");
                    return 0;
                });
            }
            default:
                return playCopyOfPart();
        }
    }

    // Copies a part of the stream's own block. A copy of the whole block sets it to zero; only call
    // 4 has a model of that. KEPT(copy-onto-itself-zeroes)
    void playCopyOfOwnBytes() {
        unsigned int const size = stream().size();
        if (size == 0) return;
        unsigned int const start = length() % size;
        unsigned int const count = 1 + length() % (size - start);
        if (count == size) return playCall(4);
        std::string const part = contentsOf(stream())->substr(start, count);
        play(model().copy(part.data(), count),
             [&] { return stream().copy(stream().buffer() + start, count); });
    }

    void playCopyOfPart() {
        unsigned int const sourceStart = offset();
        unsigned int const start = offset();
        unsigned int const count = offset();
        if (isHuge(source(), sourceStart, start, count)) return;
        play(model().copyPart(source(), sourceStart, start, count),
             [&] { return stream().copy(otherStream(), sourceStart, start, count); });
    }

    static void play(ExpectedCall const& expected, std::function<unsigned int()> const& call) {
        expectSame(outcomeOf(call) == expected.outcome, "the outcome of a call");
        expectSame(takeReports() == reportOf(expected.message), "the report of a call");
    }

    unsigned int length() {
        unsigned int const small = input_.takeBelow(256);
        return small < 192 ? small % 24 : small * 16;
    }

    // Most are small. Some are near 2^32, where a sum of 32 bits wraps.
    unsigned int offset() {
        unsigned int const small = input_.takeBelow(256);
        return small < 192 ? small % 24 : small - 256;
    }

    ByteStream& stream() { return streams_[chosen_]; }
    ByteStream& otherStream() { return streams_[other_]; }
    ByteStreamModel& model() { return models_[chosen_]; }
    ByteStreamModel& source() { return models_[other_]; }

    Input& input_;
    unsigned int chosen_ = 0;
    unsigned int other_ = 0;
    ByteStream streams_[3];
    ByteStreamModel models_[3];
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    Script script(input);
    for (int calls = 0; calls < 64 && !input.isEmpty(); ++calls)
        script.playOne();
    return 0;
}

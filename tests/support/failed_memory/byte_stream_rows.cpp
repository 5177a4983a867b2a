#include <utillibrary/datatypes/ByteStream.h>

#include "support/failed_memory/rows.h"

namespace testing_support {

namespace {

using com::halvorin::datatypes::ByteStream;

std::string bytesOf(ByteStream const& stream) {
    return stream.buffer() == nullptr ? "" : std::string(stream.buffer(), stream.size());
}

// A change of a stream "abcdefgh", with a source "0123". On std::bad_alloc and on a code both are
// unchanged.
struct ChangeFact {
    char const* symbol;
    char const* fact;
    void (*change)(ByteStream& stream, ByteStream& source);
    Memory memory;
    std::string result;
    bool wrong;  // throws the code of a wrong argument, after a report
};

ChangeFact const CHANGE_FACTS[] = {
    {"ByteStream::copy(char const*, unsigned int)", "bytes of another length",
     [](ByteStream& s, ByteStream&) { s.copy("12345", 5); }, Memory::NEEDED, "12345", false},
    {"ByteStream::copy(char const*, unsigned int)", "bytes of the same length need no memory",
     [](ByteStream& s, ByteStream&) { s.copy("12345678", 8); }, Memory::NONE, "12345678", false},
    {"ByteStream::copyGeneral(char const*, unsigned int)", "bytes of the stream's own block",
     [](ByteStream& s, ByteStream&) { s.copy(s.buffer() + 1, 3); }, Memory::NEEDED, "bcd", false},
    {"ByteStream::copyGeneral(char const*, unsigned int)", "a null pointer with a size is reported",
     [](ByteStream& s, ByteStream&) { s.copy(nullptr, 5); }, Memory::NEEDED, "abcdefgh", true},
    {"ByteStream::copyGeneral(char const*, unsigned int)", "a pointer with size 0 is reported",
     [](ByteStream& s, ByteStream&) { s.copy("1", 0); }, Memory::NEEDED, "abcdefgh", true},
    {"ByteStream::copy(ByteStream&)", "another stream",
     [](ByteStream& s, ByteStream& o) { s.copy(o); }, Memory::NEEDED, "0123", false},
    {"ByteStream::copy(ByteStream&, unsigned int, unsigned int, unsigned int)",
     "a part that makes the stream longer",
     [](ByteStream& s, ByteStream& o) { s.copy(o, 0, 6, 4); }, Memory::NEEDED, "abcdef0123", false},
    {"ByteStream::copy(ByteStream&, unsigned int, unsigned int, unsigned int)",
     "a part of itself that makes the stream longer",
     [](ByteStream& s, ByteStream&) { s.copy(s, 0, 6, 4); }, Memory::NEEDED, "abcdefabcd", false},
    {"ByteStream::copy(ByteStream&, unsigned int, unsigned int, unsigned int)",
     "a part inside the stream needs no memory",
     [](ByteStream& s, ByteStream& o) { s.copy(o, 0, 4, 4); }, Memory::NONE, "abcd0123", false},
    {"ByteStream::copy(ByteStream&, unsigned int, unsigned int, unsigned int)",
     "a part beyond the source is reported",
     [](ByteStream& s, ByteStream& o) { s.copy(o, 3, 0, 2); }, Memory::NEEDED, "abcdefgh", true},
    {"ByteStream::operator=(ByteStream const&)", "another stream",
     [](ByteStream& s, ByteStream& o) { s = o; }, Memory::NEEDED, "0123", false},
    {"ByteStream::resize(unsigned int)", "to a longer block",
     [](ByteStream& s, ByteStream&) { s.resize(9); }, Memory::NEEDED, std::string("abcdefgh\0", 9),
     false},
    {"ByteStream::resize(unsigned int)", "to a shorter block",
     [](ByteStream& s, ByteStream&) { s.resize(7); }, Memory::NEEDED, "abcdefg", false},
    {"ByteStream::resize(unsigned int)", "size 0 is reported",
     [](ByteStream& s, ByteStream&) { s.resize(0); }, Memory::NEEDED, "abcdefgh", true},
    {"ByteStream::clear()", "frees the block", [](ByteStream& s, ByteStream&) { s.clear(); },
     Memory::NONE, "", false},
    {"ByteStream::zeroMemory()", "sets all bytes to zero",
     [](ByteStream& s, ByteStream&) { s.zeroMemory(); }, Memory::NONE, std::string(8, '\0'), false},
};

Row rowOf(ChangeFact const& fact) {
    return {fact.symbol, fact.fact, fact.memory, [fact](Trial& trial) {
                ByteStream stream("abcdefgh", 8);
                ByteStream source("0123", 4);
                char const* const block = stream.buffer();
                End const end = trial.run([&] { fact.change(stream, source); },
                                          fact.wrong ? End::LONG_CODE : End::DONE);
                EXPECT_EQ(bytesOf(stream), end == End::BAD_ALLOC ? "abcdefgh" : fact.result);
                if (end != End::DONE) {
                    EXPECT_EQ(stream.buffer(), block);
                }
                if (end == End::LONG_CODE) {
                    EXPECT_EQ(takeReportCount(), 1);
                }
                EXPECT_EQ(bytesOf(source), "0123");
            }};
}

template <typename Make>
Row construction(char const* symbol, char const* fact, Memory memory, std::string const& bytes,
                 Make const& make) {
    return {symbol, fact, memory, [make, bytes](Trial& trial) {
                ByteStream source("0123", 4);
                trial.run([&] {
                    auto const made = make(source);
                    EXPECT_EQ(made.size(), bytes.size());
                    EXPECT_EQ(__builtin_memcmp(made.size() == 0 ? "" : made.data(), bytes.data(),
                                               bytes.size()),
                              0);
                });
                EXPECT_EQ(bytesOf(source), "0123");
            }};
}

}  // namespace

Rows byteStreamRows() {
    Rows rows = {
        construction("ByteStream::ByteStream()", "an empty stream", Memory::NONE, "",
                     [](ByteStream&) { return ByteStream(); }),
        construction("ByteStream::ByteStream(unsigned int)", "zero bytes", Memory::NEEDED,
                     std::string(6, '\0'), [](ByteStream&) { return ByteStream(6U); }),
        construction("ByteStream::ByteStream(char const*, unsigned int)", "a copy of bytes",
                     Memory::NEEDED, "abc", [](ByteStream&) { return ByteStream("abc", 3); }),
        construction("ByteStream::ByteStream(ByteStream const&)", "a copy of a stream",
                     Memory::NEEDED, "0123", [](ByteStream& s) { return ByteStream(s); }),
    };
    for (ChangeFact const& fact : CHANGE_FACTS)
        rows.push_back(rowOf(fact));
    // KEPT(allocate-frees-first): the stream is empty after std::bad_alloc.
    rows.push_back({"ByteStream::allocate(unsigned int)", "the old block is freed first",
                    Memory::NEEDED, [](Trial& trial) {
                        ByteStream stream("abcdefgh", 8);
                        End const end = trial.run([&] { stream.allocate(9); });
                        EXPECT_EQ(bytesOf(stream), std::string(end == End::DONE ? 9 : 0, '\0'));
                        EXPECT_EQ(stream.buffer() == nullptr, end == End::BAD_ALLOC);
                    }});
    rows.push_back({"ByteStream::allocate(unsigned int)", "the same size needs no memory",
                    Memory::NONE, [](Trial& trial) {
                        ByteStream stream("abcdefgh", 8);
                        trial.run([&] { stream.allocate(8); });
                        EXPECT_EQ(bytesOf(stream), std::string(8, '\0'));
                    }});
    for (char const* const symbol :
         {"ByteStream::buffer() const", "ByteStream::data() const", "ByteStream::size() const",
          "ByteStream::operator char const* const() const", "ByteStream::~ByteStream()"}) {
        rows.push_back({symbol, "needs no memory", Memory::NONE, [](Trial& trial) {
                            std::optional<ByteStream> stream(std::in_place, "abc", 3U);
                            trial.run([&] {
                                EXPECT_EQ(stream->buffer(), stream->data());
                                EXPECT_EQ(*stream->buffer(), 'a');
                                EXPECT_EQ(stream->size(), 3U);
                                char const* const converted = *stream;
                                EXPECT_EQ(converted, stream->data());
                                stream.reset();
                            });
                        }});
    }
    return rows;
}

}  // namespace testing_support

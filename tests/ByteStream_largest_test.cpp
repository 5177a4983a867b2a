#include <algorithm>
#include <new>
#include <string>
#include <unistd.h>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/ByteStream.h>

#include "support/recorded_reports.h"

// The largest possible block, of 4294967295 bytes: made once, and checked at both ends.

using com::halvorin::datatypes::ByteStream;
using testing_support::takeReports;

namespace {

constexpr unsigned int MOST = 4294967295;  // 32 bits

bool memoryIsThere() {
    auto const pages = static_cast<unsigned long>(sysconf(_SC_AVPHYS_PAGES));
    auto const pageSize = static_cast<unsigned long>(sysconf(_SC_PAGESIZE));
    return pages * pageSize > MOST + (1UL << 30);
}

// The number of zero bytes at the start. A number, because a failure prints it.
unsigned int leadingZeros(ByteStream const& stream) {
    char const* const end = stream.buffer() + stream.size();
    char const* const found = std::find_if(static_cast<char const*>(stream.buffer()), end,
                                           [](char byte) { return byte != 0; });
    return static_cast<unsigned int>(found - stream.buffer());
}

TEST(LargestBlock, IsABlockLikeAnyOther) {
    if (!memoryIsThere()) GTEST_SKIP() << "5 GiB of memory are not free";
    ByteStream letters("abcd", 4);
    ByteStream large("w", 1);

    // One byte at the last place, after the longest gap.
    ASSERT_EQ(large.copy(letters, 3, MOST - 1, 0), 1U);
    ASSERT_EQ(large.size(), MOST);
    EXPECT_EQ(large.buffer()[0], 'w');
    EXPECT_EQ(large.buffer()[MOST - 1], 'd');
    large.buffer()[0] = 0;
    EXPECT_EQ(leadingZeros(large), MOST - 1);

    // No block is longer.
    char const* const block = large.buffer();
    EXPECT_THROW(large.copy(letters, 0, MOST - 3, 4), std::bad_alloc);
    EXPECT_THROW(large.copy(letters, 0, MOST, 1), std::bad_alloc);
    EXPECT_EQ(large.copy(letters, 0, MOST - 4, 4), 4U);
    EXPECT_EQ(large.resize(MOST), MOST);
    EXPECT_EQ(large.buffer(), block);

    // A part whose end would be small in 32 bits is past the end of the block.
    takeReports();
    EXPECT_THROW(letters.copy(large, MOST, 0, 1), long);
    EXPECT_THROW(letters.copy(large, 1, 0, MOST), long);
    EXPECT_THROW(letters.copy(large, MOST, 0, MOST), long);
    EXPECT_EQ(takeReports().size(), 3U);
    EXPECT_EQ(letters.copy(large, MOST, 0, 0), 0U);
    EXPECT_EQ(letters.copy(large, MOST - 1, 0, 1), 1U);
    EXPECT_EQ(letters.buffer()[0], 'd');

    // The stream's own last bytes are copied to its start, and all its bytes onto themselves.
    EXPECT_EQ(large.copy(large, MOST - 4, 0, 0), 4U);
    EXPECT_EQ(large.copy(large, 0, 0, 0), MOST);
    EXPECT_EQ(std::string(large.buffer(), 5), std::string("abcd\0", 5));

    EXPECT_EQ(large.allocate(MOST), MOST);
    EXPECT_EQ(large.buffer(), block);
    EXPECT_EQ(leadingZeros(large), MOST);
    EXPECT_EQ(large.resize(3), 3U);
    EXPECT_EQ(large.size(), 3U);
}

}  // namespace

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "utillibrary/utilities/StringNVP_internal.h"

// The reader of fields by itself. StringNVP_test.cpp has the facts about `split`; here are those
// that only change how fast it is.
using namespace com::halvorin::internal;

namespace {

struct Field {
    std::size_t start;
    std::string_view text;
};

// The fields that `split` appends: those that are not empty, and always the last.
std::vector<Field> fieldsOneByOne(std::string_view text, std::string_view separators) {
    std::vector<Field> fields;
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (separators.find(text[i]) == std::string_view::npos) continue;
        if (i > start) fields.push_back({start, text.substr(start, i - start)});
        start = i + 1;
    }
    fields.push_back({start, text.substr(start)});
    return fields;
}

void expectFields(std::string const& text, std::string_view separators) {
    SCOPED_TRACE(testing::PrintToString(text) + " by " + testing::PrintToString(separators));
    std::vector<Field> const expected = fieldsOneByOne(text, separators);
    FieldReader reader(text, separators);
    EXPECT_EQ(reader.count(), expected.size());
    std::string_view field;
    for (Field const& wanted : expected) {
        ASSERT_TRUE(reader.next(field));
        EXPECT_EQ(field, wanted.text);
        EXPECT_EQ(field.data(), text.data() + wanted.start);
        EXPECT_EQ(reader.sizeAfter(field), text.size() - wanted.start - wanted.text.size());
    }
    EXPECT_FALSE(reader.next(field));
    EXPECT_FALSE(reader.next(field));
}

TEST(FieldReader, GivesOneEmptyFieldOfNoString) {
    FieldReader reader(std::string_view(), ",");
    EXPECT_EQ(reader.count(), 1U);
    std::string_view field = "before";
    ASSERT_TRUE(reader.next(field));
    EXPECT_EQ(field, "");
    EXPECT_EQ(reader.sizeAfter(field), 0U);
    EXPECT_FALSE(reader.next(field));
}

// Blocks have 64 bytes, and their parts have 16.
TEST(FieldReader, FindsASeparatorAtEachPlaceOfStringsOfUpToThreeBlocks) {
    for (std::size_t size = 0; size <= 3 * 64 + 1; ++size) {
        std::string text(size, 'x');
        expectFields(text, ",");
        for (char& c : text) {
            c = ',';
            expectFields(text, ",");
            c = 'x';
        }
        expectFields(std::string(size, ','), ",");
    }
}

// Up to four separators are compared; more are looked up.
TEST(FieldReader, TakesAnyNumberOfSeparators) {
    using namespace std::literals;
    constexpr std::string_view SEPARATORS = ",;\0\xFF\x80|"sv;
    for (std::size_t count = 0; count <= SEPARATORS.size(); ++count) {
        for (std::size_t size = 0; size <= 2 * 64 + 1; ++size) {
            std::string text(size, 'x');
            for (std::size_t i = 0; i < size; ++i) {
                if (i % 7 < SEPARATORS.size()) text[i] = SEPARATORS[i % 7];
            }
            expectFields(text, SEPARATORS.substr(0, count));
            expectFields(std::string(size, '\0'), SEPARATORS.substr(0, count));
        }
    }
}

}  // namespace

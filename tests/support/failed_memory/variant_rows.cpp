#include <climits>

#include <utillibrary/datatypes/Variant.h>

#include "support/failed_memory/rows.h"

// A Variant's construction, its changes and its questions.
namespace testing_support {

namespace {

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;

xtime_t const OLD_TIME(1763164800, 7);

// A DateTime with something in every string.
Variant filled() {
    Variant variant(OLD_TIME);
    variant.wText = L"old";
    variant.wTextAux = L"aux";
    variant.sbcText = "cached";
    return variant;
}

void expectRestOfFilled(Variant const& variant) {
    EXPECT_EQ(variant.timeVal, OLD_TIME);
    EXPECT_EQ(variant.wTextAux, L"aux");
    EXPECT_EQ(variant.sbcText, "cached");
}

void expectCleared(Variant const& variant) {
    EXPECT_EQ(variant.type(), 0);
    EXPECT_EQ(variant.uVal.asUint64, 0U);
    EXPECT_EQ(variant.wText, L"");
}

// ---- values that need no memory: a constructor, `assign` and `operator=` of each type

template <typename Value>
void addValue(Rows& rows, std::string const& name, std::string const& operatorName, Value value,
              int type) {
    rows.push_back(
        {"Variant::Variant(" + name + ")", "needs no memory", Memory::NONE,
         [=](Trial& trial) { trial.run([&] { EXPECT_EQ(Variant(value).type(), type); }); }});
    rows.push_back(
        {"Variant::assign(" + name + ")", "needs no memory", Memory::NONE, [=](Trial& trial) {
             Variant variant = LONG_TEXT;
             trial.run([&] { variant.assign(value); });
             EXPECT_EQ(variant.type(), type);
         }});
    rows.push_back({"Variant::operator=(" + operatorName + ")", "needs no memory", Memory::NONE,
                    [=](Trial& trial) {
                        Variant variant = LONG_TEXT;
                        trial.run([&] { variant = value; });
                        EXPECT_EQ(variant.type(), type);
                    }});
}

template <typename Value>
void addValue(Rows& rows, std::string const& name, Value value, int type) {
    addValue(rows, name, name, value, type);
}

Rows values() {
    Rows rows;
    addValue<unsigned char>(rows, "unsigned char", 200, 1);
    addValue<unsigned short>(rows, "unsigned short", 65535, 2);
    addValue(rows, "unsigned int", 4294967295U, 3);
    addValue(rows, "char", 'A', 4);
    addValue<short>(rows, "short", -32768, 5);
    addValue(rows, "int", -7, 6);
    addValue(rows, "float", 1.5F, 7);
    addValue(rows, "double", 1.5, 8);
    addValue(rows, "long", "long const&", LONG_MIN, 10);
    addValue(rows, "unsigned long", "unsigned long const&", ULONG_MAX, 11);
    addValue(rows, "bool", true, 12);
    addValue(rows, "xtime_t const&", OLD_TIME, 13);
    return rows;
}

// ---- strings: on std::bad_alloc the object is cleared, and the other members are unchanged

template <typename Text>
void addText(Rows& rows, std::string const& name, Text const& text, bool hasOperator) {
    rows.push_back(
        {"Variant::Variant(" + name + ")", "a long string", Memory::NEEDED,
         [=](Trial& trial) { trial.expectWholeOrNone([&] { return Variant(text).type(); }, 9); }});
    auto const assigned = [](auto const& assign) {
        return [assign](Trial& trial) {
            Variant variant = filled();
            if (trial.run([&] { assign(variant); }) == End::DONE) {
                EXPECT_EQ(variant.type(), 9);
                EXPECT_EQ(variant.wText, LONG_WIDE_TEXT);
            } else {
                expectCleared(variant);
            }
            expectRestOfFilled(variant);
        };
    };
    rows.push_back({"Variant::assign(" + name + ")", "a long string", Memory::NEEDED,
                    assigned([=](Variant& variant) { variant.assign(text); })});
    if (!hasOperator) return;
    rows.push_back({"Variant::operator=(" + name + ")", "a long string", Memory::NEEDED,
                    assigned([=](Variant& variant) { variant = text; })});
}

Rows texts() {
    Rows rows;
    addText(rows, "char const*", LONG_TEXT.c_str(), true);
    addText(rows, "wchar_t const*", LONG_WIDE_TEXT.c_str(), true);
    addText(rows, "std::string const&", LONG_TEXT, false);
    addText(rows, "std::wstring const&", LONG_WIDE_TEXT, false);
    rows.push_back({"Variant::Variant(char const*)", "a null pointer throws", Memory::NEEDED,
                    [](Trial& trial) {
                        char const* const none = nullptr;
                        trial.run([&] { Variant const made(none); }, End::LOGIC_ERROR);
                    }});
    rows.push_back({"Variant::assign(char const*)", "a null pointer throws and clears",
                    Memory::NEEDED, [](Trial& trial) {
                        Variant variant = filled();
                        char const* const none = nullptr;
                        trial.run([&] { variant.assign(none); }, End::LOGIC_ERROR);
                        expectCleared(variant);
                        expectRestOfFilled(variant);
                    }});
    return rows;
}

// ---- copies

Variant source() {
    Variant from(LONG_TEXT);
    from.uVal.asUint64 = 5;
    from.wTextAux = LONG_WIDE_TEXT + L"2";
    from.timeVal = xtime_t(1, 2);
    return from;
}

Row copying(char const* symbol, std::function<void(Variant&, Variant const&)> const& copy) {
    return {symbol, "two long strings", Memory::NEEDED, [copy](Trial& trial) {
                Variant const from = source();
                Variant variant = filled();
                End const end = trial.run([&] { copy(variant, from); });
                EXPECT_EQ(variant.type(), 9);
                EXPECT_EQ(variant.uVal.asUint64, 5U);
                EXPECT_EQ(variant.sbcText, "cached");
                EXPECT_EQ(from.wText, LONG_WIDE_TEXT);
                if (end == End::DONE) {
                    EXPECT_EQ(variant.wText, LONG_WIDE_TEXT);
                    EXPECT_EQ(variant.wTextAux, LONG_WIDE_TEXT + L"2");
                    EXPECT_EQ(variant.timeVal, xtime_t(1, 2));
                } else {
                    EXPECT_EQ(variant.wText, trial.failing() == 0 ? L"" : LONG_WIDE_TEXT);
                    expectRestOfFilled(variant);
                }
            }};
}

Rows copies() {
    return {
        copying("Variant::assign(Variant const&)",
                [](Variant& variant, Variant const& from) { variant.assign(from); }),
        copying("Variant::operator=(Variant const&)",
                [](Variant& variant, Variant const& from) { variant = from; }),
        {"Variant::Variant(Variant const&)", "two long strings", Memory::NEEDED,
         [](Trial& trial) {
             Variant const from = source();
             trial.expectWholeOrNone([&] { return Variant(from).wTextAux; }, LONG_WIDE_TEXT + L"2");
             EXPECT_EQ(from.wText, LONG_WIDE_TEXT);
         }},
        {"Variant::copyUVal(Variant const&)", "needs no memory", Memory::NONE,
         [](Trial& trial) {
             Variant const from = source();
             Variant variant = filled();
             trial.run([&] { variant.copyUVal(from); });
             EXPECT_EQ(variant.uVal.asUint64, 5U);
         }},
    };
}

// ---- what needs no memory

template <typename Work>
Row plain(char const* symbol, Work const& work) {
    return {symbol, "needs no memory", Memory::NONE, [work](Trial& trial) {
                std::optional<Variant> variant(LONG_TEXT);
                trial.run([&] { work(variant); });
            }};
}

using Object = std::optional<Variant>;

Rows others() {
    return {
        plain("Variant::Variant()", [](Object&) { EXPECT_FALSE(Variant().hasValue()); }),
        plain("Variant::~Variant()", [](Object& v) { v.reset(); }),
        plain("Variant::type() const", [](Object& v) { EXPECT_EQ(v->type(), 9); }),
        plain("Variant::isNull() const", [](Object& v) { EXPECT_FALSE(v->isNull()); }),
        plain("Variant::hasValue() const", [](Object& v) { EXPECT_TRUE(v->hasValue()); }),
        plain("Variant::clear()",
              [](Object& v) {
                  v->clear();
                  expectCleared(*v);
              }),
        plain("Variant::makeNull()",
              [](Object& v) {
                  v->makeNull();
                  EXPECT_TRUE(v->isNull());
              }),
        plain("Variant::typeName2Number(wchar_t const*)",
              [](Object&) { EXPECT_EQ(Variant::typeName2Number(L"Double"), 8); }),
        plain("Variant::typeNumber2Name(int)",
              [](Object&) { EXPECT_EQ(Variant::typeNumber2Name(8)[0], L'D'); }),
        plain("Variant::compareDoubles(double, double)",
              [](Object&) { EXPECT_EQ(Variant::compareDoubles(1, 2), -1); }),
        plain("Variant::compareDoublesHelper(double, double, double)",
              [](Object&) { EXPECT_EQ(Variant::compareDoublesHelper(1, 2, 0.1), -1); }),
        plain("Variant::compareFloats(float, float)",
              [](Object&) { EXPECT_EQ(Variant::compareFloats(1, 2), -1); }),
    };
}

}  // namespace

Rows variantRows() {
    Rows rows;
    for (Rows const& more : {values(), texts(), copies(), others()}) {
        rows.insert(rows.end(), more.begin(), more.end());
    }
    return rows;
}

}  // namespace testing_support

#include <bit>
#include <iostream>
#include <sstream>
#include <string>
#include <utility>

#include <utillibrary/datatypes/Variant.h>

#include "input.h"
#include "variant_model.h"

// A sequence of changes on two Variants, and all conversions after each change.

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;

namespace {

// What the library writes to the standard output.
std::ostringstream& output() {
    static std::ostringstream text;
    return text;
}

std::string const MESSAGE =
    "com::halvorin::utility::Variant::convert::Failed to convert data type because type is not "
    "supported\n";

// Two conversions: a member and its operator.
template <typename Target>
void expectConversion(Variant const& variant, VariantModel const& model,
                      Target (Variant::*member)() const, Target expected) {
    auto const isSame = [&](Target given) {
        if constexpr (sizeof(Target) == sizeof(long)) {
            return std::bit_cast<long>(given) == std::bit_cast<long>(expected);
        } else if constexpr (sizeof(Target) == sizeof(int)) {
            return std::bit_cast<int>(given) == std::bit_cast<int>(expected);
        } else {
            return given == expected;
        }
    };
    expectSame(isSame((variant.*member)()), "a conversion");
    expectSame(isSame(static_cast<Target>(variant)), "a conversion operator");
    if (model.hasConversions()) return;
    expectSame(output().str() == MESSAGE + MESSAGE, "the line of a Variant without a value");
    output().str("");
}

template <typename Target>
void expectInteger(Variant const& variant, VariantModel const& model,
                   Target (Variant::*member)() const) {
    bool const isSigned = std::is_signed_v<Target> || std::is_same_v<Target, char>;
    unsigned long const number = model.toInteger(8 * sizeof(Target), isSigned);
    expectConversion(variant, model, member, static_cast<Target>(number));
}

void expectTime(xtime_t const& time, xtime_t const& expected) {
    expectSame(time.getDateTime() == expected.getDateTime() &&
                   time.getNanoseconds() == expected.getNanoseconds(),
               "a time");
}

void expectState(Variant const& variant, VariantModel const& model) {
    expectSame(variant.type() == model.type && variant.dataType == model.type, "the type");
    expectSame(variant.isNull() == (model.type == 14), "isNull");
    expectSame(variant.hasValue() == (model.type != 0), "hasValue");
    expectSame(variant.uVal.asUint64 == model.slot, "uVal");
    expectSame(variant.wText == model.text && variant.wTextAux == model.auxiliary, "the strings");
    expectTime(variant.timeVal, model.time);
    expectTime(variant.toXtime_t(), model.time);

    expectInteger(variant, model, &Variant::toUbyte);
    expectInteger(variant, model, &Variant::toByte);
    expectInteger(variant, model, &Variant::toInt16);
    expectInteger(variant, model, &Variant::toUint16);
    expectInteger(variant, model, &Variant::toInt32);
    expectInteger(variant, model, &Variant::toUint32);
    expectInteger(variant, model, &Variant::toInt64);
    expectInteger(variant, model, &Variant::toUint64);
    expectConversion(variant, model, &Variant::toDouble, model.toDouble());
    expectConversion(variant, model, &Variant::toFloat, model.toFloat());
    expectConversion(variant, model, &Variant::toBool, model.toBool());
    expectSame(output().str().empty(), "the standard output");
}

// Assigns by `assign`, by `operator=`, or from a temporary Variant.
template <typename Value>
void give(Variant& variant, VariantModel& model, unsigned int way, Value const& value, int type,
          unsigned long bits) {
    if (way == 0) {
        variant.assign(value);
    } else if (way == 1) {
        variant = value;
    } else {
        // All members are copied, so the time and the second string are those of a new Variant.
        variant = Variant(value);
        model = VariantModel();
    }
    model.assignBits(type, bits);
}

template <typename Value>
void giveNumber(Variant& variant, VariantModel& model, unsigned int way, Input& input, int type) {
    auto const value = input.take<Value>();
    unsigned long bits = 0;
    std::memcpy(&bits, &value, sizeof value);
    give(variant, model, way, value, type, bits);
}

void change(Variant& variant, VariantModel& model, Variant& other, VariantModel& otherModel,
            Input& input) {
    unsigned int const way = input.takeBelow(3);
    switch (input.takeBelow(25)) {
        case 0:
            return giveNumber<unsigned char>(variant, model, way, input, 1);
        case 1:
            return giveNumber<unsigned short>(variant, model, way, input, 2);
        case 2:
            return giveNumber<unsigned int>(variant, model, way, input, 3);
        case 3:
            return giveNumber<char>(variant, model, way, input, 4);
        case 4:
            return giveNumber<short>(variant, model, way, input, 5);
        case 5:
            return giveNumber<int>(variant, model, way, input, 6);
        case 6:
            return giveNumber<float>(variant, model, way, input, 7);
        case 7:
            return giveNumber<double>(variant, model, way, input, 8);
        case 8:
            return giveNumber<long>(variant, model, way, input, 10);
        case 9:
            return giveNumber<unsigned long>(variant, model, way, input, 11);
        case 10: {
            bool const value = input.takeBool();
            return give(variant, model, way, value, 12, value ? 1 : 0);
        }
        case 11: {
            auto const seconds = input.take<long>();
            xtime_t const time(seconds, input.take<unsigned int>());
            give(variant, model, way, time, 13, 0);
            // A temporary Variant is copied, and a copy carries whole seconds.
            VariantModel fresh;
            fresh.assignTime(time);
            if (way == 2) return model.assign(fresh);
            return model.assignTime(time);
        }
        case 12: {
            std::string const text = input.takeLine();
            variant.assign(text);
            return model.assignBytes(text);
        }
        case 13: {
            std::string const text = input.takeLine();
            variant = text.c_str();
            return model.assignBytes(text);
        }
        case 14: {
            std::wstring text;
            for (char const c : input.takeLine())
                text += c == '~' ? L'\x20ac' : static_cast<wchar_t>(static_cast<signed char>(c));
            if (way == 0) variant.assign(text.c_str());
            if (way == 1) variant = text.c_str();
            if (way == 2) variant.assign(text);
            // All but the last form end at a zero.
            return model.assignText(way == 2 ? text : text.c_str());
        }
        case 15:
            variant.assign(other);
            return model.assign(otherModel);
        case 16:
            variant = other;
            return model.assign(otherModel);
        case 17: {
            // There is no moving form, so a move is a copy.
            variant = std::move(other);
            return model.assign(otherModel);
        }
        case 18: {
            Variant const copy(other);
            VariantModel copyModel;
            copyModel.assign(otherModel);
            return expectState(copy, copyModel);
        }
        case 19: {
            // It clears the type first. The time stays, and its whole seconds are carried.
            Variant const& same = variant;
            variant = same;
            return model.assign(model);
        }
        case 20:
            variant.clear();
            return model.clear();
        case 21:
            variant.makeNull();
            return model.assignBits(14, 0);
        case 22:
            variant.copyUVal(other);
            model.slot = otherModel.slot;
            return;
        case 23:
            model.type = input.take<int>();
            variant.dataType = model.type;
            return;
        default:
            model.auxiliary = L"auxiliary";
            variant.wTextAux = model.auxiliary;
    }
}

void expectComparisons(VariantModel const& model, VariantModel const& otherModel) {
    double const a = model.toDouble();
    double const b = otherModel.toDouble();
    expectSame(Variant::compareDoublesHelper(a, b, 0.5) == modelOfCompareDoubles(a, b, 0.5),
               "compareDoublesHelper");
    expectSame(Variant::compareDoubles(a, b) == modelOfCompareDoubles(a, b, 1e-12),
               "compareDoubles");
    float const x = model.toFloat();
    float const y = otherModel.toFloat();
    expectSame(Variant::compareFloats(x, y) ==
                   modelOfCompareDoubles(static_cast<double>(x), static_cast<double>(y), 1e-6),
               "compareFloats");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    std::cout.rdbuf(output().rdbuf());
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    Variant variants[2];
    VariantModel models[2];
    for (int changes = 0; changes < 16 && !input.isEmpty(); ++changes) {
        unsigned int const chosen = input.takeBelow(2);
        change(variants[chosen], models[chosen], variants[1 - chosen], models[1 - chosen], input);
        expectState(variants[chosen], models[chosen]);
        expectComparisons(models[0], models[1]);
    }
    expectState(variants[0], models[0]);
    expectState(variants[1], models[1]);
    return 0;
}

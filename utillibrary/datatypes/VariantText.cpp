#include <cstring>
#include <sstream>
#include <string_view>
#include <type_traits>

#include "utillibrary/application/ORUsyslog.h"
#include "utillibrary/datatypes/Variant.h"
#include "utillibrary/datatypes/Variant_internal.h"
#include "utillibrary/internal/byte_block.h"
#include "utillibrary/internal/decimal.h"
#include "utillibrary/internal/locale.h"
#include "utillibrary/internal/result_codes.h"
#include "utillibrary/internal/rounding.h"

// A Variant as text. Wide and narrow text are made by the same code: Text is one or the other, and
// what comes in the other width is converted last.
namespace com::halvorin::datatypes {

namespace {

using namespace com::halvorin::internal;

// The low bytes of sixteen characters, which each have theirs first.
Bytes lowBytes(wchar_t const* from) noexcept {
    return evenBytes(evenBytes(loadBytes(from), loadBytes(from + 4)),
                     evenBytes(loadBytes(from + 8), loadBytes(from + 12)));
}

// Each character narrowed to its low 8 bits.
std::string narrowed(std::wstring const& wide) {
    // In variables of their own: a byte written through a char* might otherwise be the source's
    // size.
    std::size_t const size = wide.size();
    wchar_t const* const in = wide.data();
    std::string text(size, '\0');
    char* const out = text.data();
    std::size_t i = 0;
    for (; i + sizeof(Bytes) <= size; i += sizeof(Bytes)) {
        Bytes const bytes = lowBytes(in + i);
        std::memcpy(out + i, &bytes, sizeof bytes);
    }
    for (; i < size; ++i)
        out[i] = static_cast<char>(in[i]);  // KEPT(low-eight-bits): no replacement
    return text;
}

template <typename Text>
Text fromBytes(std::string_view bytes) {
    if constexpr (std::is_same_v<Text, std::string>) {
        return Text(bytes);
    } else {
        return widened(bytes);
    }
}

// A text of its own is given on as it is.
template <typename Text>
Text fromNarrow(std::string narrow) {
    if constexpr (std::is_same_v<Text, std::string>) {
        return narrow;
    } else {
        return widened(narrow);
    }
}

template <typename Text>
Text fromWide(std::wstring const& wide) {
    if constexpr (std::is_same_v<Text, std::wstring>) {
        return wide;
    } else {
        return narrowed(wide);
    }
}

// The rule itself: what a wide stream made now inserts. Kept out of its callers, as a stream takes
// many registers.
template <typename Text, typename Value>
[[gnu::noinline]] Text inserted(Value value) {
    std::wostringstream stream;
    stream.exceptions(std::ios_base::badbit);  // a failed allocation is no cut text
    stream << value;
    return fromWide<Text>(stream.str());
}

std::string plainText(int value) { return std::to_string(value); }

std::string plainText(bool value) { return value ? "1" : "0"; }

std::string plainText(double value) { return generalText(value); }

// The direct road: where the stream would write the C locale's characters, they are written here. A
// stream prints through libc and so follows the rounding mode; the digits made here do not.
template <typename Text, typename Value>
Text printed(Value value) {
    if (!wideStreamsWritePlainNumbers() ||
        (std::is_same_v<Value, double> && !decimalsRoundToNearest())) {
        return inserted<Text>(value);
    }
    if constexpr (std::is_same_v<Text, std::string>) {
        return plainText(value);
    } else {
        return widened(plainText(value));
    }
}

void reportUnknownType() {
    application::oru::writelog("Variant::convertToString", LEVEL_ERROR,
                               "Cannot convert unknown type", GENERAL_FAILURE);
}

// Writes each kind of value. An overload for each C++ type: a new one is ambiguous here until it is
// added.
template <typename Text>
struct TextWriter {
    Text operator()(NoValue) const { return fromBytes<Text>("unknown"); }
    Text operator()(NullValue) const { return fromBytes<Text>("null"); }
    Text operator()(UnsupportedType) const {
        reportUnknownType();
        return Text();
    }
    Text operator()(unsigned char value) const { return printed<Text>(int{value}); }
    Text operator()(unsigned short value) const { return printed<Text>(int{value}); }
    // KEPT(uint32-prints-signed): the 32 bits as an int.
    Text operator()(unsigned int value) const { return printed<Text>(static_cast<int>(value)); }
    Text operator()(Byte value) const { return printed<Text>(int{value}); }
    Text operator()(short value) const { return printed<Text>(int{value}); }
    Text operator()(int value) const { return printed<Text>(value); }
    Text operator()(float value) const { return printed<Text>(double{value}); }
    Text operator()(double value) const { return printed<Text>(value); }
    // KEPT(int64-prints-as-double): six significant digits, of both 64-bit kinds.
    Text operator()(long value) const { return printed<Text>(static_cast<double>(value)); }
    Text operator()(unsigned long value) const { return printed<Text>(static_cast<double>(value)); }
    Text operator()(bool value) const { return printed<Text>(value); }
    Text operator()(std::wstring const& text) const { return fromWide<Text>(text); }
    Text operator()(DateTime const& time) const {
        return fromNarrow<Text>(time.variant.timeVal.toString(true, 0, ""));
    }
};

template <typename Text>
Text textOf(Variant const& variant) {
    return visitValue(variant, TextWriter<Text>());
}

}  // namespace

// KEPT(locale-id-is-ignored): every output is the same for any of them.
std::wstring Variant::convertToString(unsigned int /*localeId*/) const {
    return textOf<std::wstring>(*this);
}

std::string Variant::convertToStringSBC(unsigned int /*localeId*/) const {
    return textOf<std::string>(*this);
}

std::wstring Variant::toString(unsigned int /*localeId*/) const {
    return textOf<std::wstring>(*this);
}

std::string Variant::toStringSBC(unsigned int /*localeId*/) const {
    return textOf<std::string>(*this);
}

std::string Variant::toString() const { return textOf<std::string>(*this); }

Variant::operator char const*() const {
    textOf<std::string>(*this).swap(sbcText);
    return sbcText.c_str();
}

}  // namespace com::halvorin::datatypes

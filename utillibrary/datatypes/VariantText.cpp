#include <array>
#include <cstring>
#include <locale>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>

#include "utillibrary/application/ORUsyslog.h"
#include "utillibrary/datatypes/Variant.h"
#include "utillibrary/datatypes/VariantText_internal.h"
#include "utillibrary/datatypes/Variant_internal.h"
#include "utillibrary/internal/byte_block.h"
#include "utillibrary/internal/formatted.h"
#include "utillibrary/internal/result_codes.h"

// A Variant as a string, narrow or wide.
namespace com::halvorin::internal {

namespace {

// What `stream << value` writes. The facet is called directly, as that operator does. The operator
// itself would catch std::bad_alloc, and an exception mask that rethrows it would also throw if a
// facet sets badbit.
//
// Not inlined: a stream needs many registers, which the fast path would have to save as well.
template <typename Value>
[[gnu::noinline]] std::wstring inserted(Value value) {
    std::wostringstream stream;
    runFacet([&stream, value] {
        auto const& facet = std::use_facet<std::num_put<wchar_t>>(stream.getloc());
        facet.put(stream, stream, stream.fill(), value);
    });
    return stream.str();
}

}  // namespace

std::wstring insertIntoStream(int value) { return inserted(long{value}); }

std::wstring insertIntoStream(double value) { return inserted(value); }

std::wstring insertIntoStream(bool value) { return inserted(value); }

}  // namespace com::halvorin::internal

namespace com::halvorin::datatypes {

namespace {

using namespace com::halvorin::internal;

// ---- from one width to the other

// The low bytes of sixteen characters. The low byte of each character comes first in memory.
Bytes lowBytes(wchar_t const* from) noexcept {
    return evenBytes(evenBytes(loadBytes(from), loadBytes(from + 4)),
                     evenBytes(loadBytes(from + 8), loadBytes(from + 12)));
}

// Each character narrowed to its low 8 bits.
std::string narrowed(std::wstring const& wide) {
    // Local copies, because the compiler must assume that a byte written through a char* changes
    // the size in the source.
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

// ---- numbers

template <typename Value>
std::string narrowNumber(Value value) {
    std::string text(PLAIN_SIZE, '\0');  // in place, without the heap
    if (auto const size = writePlain(text.data(), value)) {
        text.erase(*size);
    } else {
        text = narrowed(insertIntoStream(value));
    }
    return text;
}

template <typename Value>
std::wstring wideNumber(Value value) {
    std::array<char, PLAIN_SIZE> text{};
    if (auto const size = writePlain(text.data(), value)) return widened({text.data(), *size});
    return insertIntoStream(value);
}

// ---- every type

// `Text` is std::string or std::wstring from here on.
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

template <typename Text, typename Value>
Text fromNumber(Value value) {
    if constexpr (std::is_same_v<Text, std::string>) {
        return narrowNumber(value);
    } else {
        return wideNumber(value);
    }
}

// The string of each type. There is one overload for each C++ type, so that a new type does not
// compile until it is added here.
template <typename Text>
struct TextWriter {
    Text operator()(unsigned char value) const { return fromNumber<Text>(int{value}); }
    Text operator()(unsigned short value) const { return fromNumber<Text>(int{value}); }
    // KEPT(uint32-prints-signed): the 32 bits as an int.
    Text operator()(unsigned int value) const { return fromNumber<Text>(static_cast<int>(value)); }
    Text operator()(Byte value) const { return fromNumber<Text>(int{value}); }
    Text operator()(short value) const { return fromNumber<Text>(int{value}); }
    Text operator()(int value) const { return fromNumber<Text>(value); }
    Text operator()(float value) const { return fromNumber<Text>(double{value}); }
    Text operator()(double value) const { return fromNumber<Text>(value); }
    Text operator()(std::wstring const& text) const { return fromWide<Text>(text); }
    // KEPT(int64-prints-as-double): six significant digits, of both 64-bit types.
    Text operator()(long value) const { return fromNumber<Text>(static_cast<double>(value)); }
    Text operator()(unsigned long value) const {
        return fromNumber<Text>(static_cast<double>(value));
    }
    Text operator()(bool value) const { return fromNumber<Text>(value); }
    Text operator()(DateTime const& time) const {
        return fromNarrow<Text>(time.variant.timeVal.toString(true, 0, ""));
    }
    Text operator()(NullValue /*none*/) const { return fromNarrow<Text>("null"); }
    Text operator()(NoValue /*none*/) const { return fromNarrow<Text>("unknown"); }
    Text operator()(UnsupportedType /*none*/) const {
        application::oru::writelog(VARIANT_CONVERT_TO_STRING, LEVEL_ERROR, UNKNOWN_TYPE,
                                   GENERAL_FAILURE);
        return Text();
    }
};

template <typename Text>
Text textOf(Variant const& variant) {
    return visitValue(variant, TextWriter<Text>());
}

}  // namespace

// KEPT(locale-id-is-ignored): every result is the same for any of them.
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

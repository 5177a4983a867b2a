#include "utillibrary/datatypes/Variant.h"

#include <array>
#include <cwchar>
#include <functional>
#include <iterator>
#include <stdexcept>

#include "utillibrary/datatypes/Variant_internal.h"

// Construction, assignment, copying, and the names of the types. VariantNumbers.cpp reads values as
// numbers, VariantText.cpp writes them as strings.
namespace com::halvorin::datatypes {

namespace {

using namespace com::halvorin::internal;

// A value in the low bytes of a slot whose other bytes are zero. The slot is made complete before
// it is stored: a copy that follows at once reads all eight bytes, and would wait for two narrower
// stores.
template <typename T>
Variant::Slot slotOf(T value) noexcept {
    Variant::Slot slot{};
    std::memcpy(&slot, &value, sizeof value);
    return slot;
}

constexpr Variant::Slot EMPTY_SLOT{};

constexpr VariantType NO_SUCH_TYPE = -1;

// Replaces `wide` by `widened(text)`. The old characters are overwritten in place, because a string
// that grows from empty is filled with zeros first. On std::bad_alloc `wide` is empty.
void widenInto(std::wstring& wide, char const* text) {
    *wide.data() = L'\0';  // `text` may point to the memory of `wide`, which counts as cleared
    std::size_t const size = std::strlen(text);
    if (size > wide.capacity()) {
        wide.clear();
        wide = widened({text, size});
        return;
    }
    wide.resize(size);
    wchar_t* const out = wide.data();
    for (std::size_t i = 0; i < size; ++i) {
        // KEPT(bytes-widen-by-sign): as `widened` does.
        out[i] = static_cast<wchar_t>(static_cast<Byte>(text[i]));
    }
}

char const* notNull(char const* text) {
    if (text == nullptr) throw std::logic_error("basic_string::_M_construct null not valid");
    return text;
}

// The copy of a time. KEPT(copy-normalises-time): made by the accessors, which carry seconds.
xtime_t copyOfTime(xtime_t const& time) noexcept {
    xtime_t copy;
    copy.putDateTime(time.getDateTime());
    copy.putNanoseconds(time.getNanoseconds());
    return copy;
}

// What every assignment of a number does. These three lines include all that `clear` does.
template <typename T>
void assignScalar(Variant& variant, T value, TypeNumber type) noexcept {
    variant.wText.clear();
    variant.uVal = slotOf(value);
    variant.dataType = type;
}

template <typename T>
Variant& assigned(Variant& variant, T const& value) noexcept(noexcept(variant.assign(value))) {
    variant.assign(value);
    return variant;
}

}  // namespace

// NOLINTBEGIN(cppcoreguidelines-macro-usage): columns of the list of types.
#define UTILLIBRARY_NAME(constant, number, name) name,
#define UTILLIBRARY_NUMBER(constant, number, name) number,
// NOLINTEND(cppcoreguidelines-macro-usage)

wchar_t const* const Variant::typeNames[16] = {UTILLIBRARY_VARIANT_TYPES(UTILLIBRARY_NAME) nullptr};

int const Variant::typeNumbers[16] = {UTILLIBRARY_VARIANT_TYPES(UTILLIBRARY_NUMBER) NO_SUCH_TYPE};

namespace {

// The entry of each number in `typeNames`. A number that is listed twice, or that is not below the
// count of the types, does not compile.
constexpr auto ENTRY_OF_NUMBER = [] {
    constexpr VariantType NUMBERS[] = {UTILLIBRARY_VARIANT_TYPES(UTILLIBRARY_NUMBER)};
    static_assert(std::size(NUMBERS) + 1 == std::size(Variant::typeNames));
    constexpr std::size_t NONE = std::size(NUMBERS);
    std::array<std::size_t, std::size(NUMBERS)> entries{};
    entries.fill(NONE);
    for (std::size_t i = 0; i < std::size(NUMBERS); ++i) {
        auto& entry = entries.at(static_cast<std::size_t>(NUMBERS[i]));
        if (entry != NONE) throw "a number is listed twice";
        entry = i;
    }
    return entries;
}();

}  // namespace

#undef UTILLIBRARY_NAME
#undef UTILLIBRARY_NUMBER

double const Variant::FLT_THRESHOLD = 1e-06;
double const Variant::DBL_THRESHOLD = 1e-12;

// ---- construction

Variant::Variant() noexcept : dataType(UNKNOWN), uVal(EMPTY_SLOT) {}

Variant::Variant(Variant const& other)
    : dataType(other.dataType),
      uVal(other.uVal),
      timeVal(copyOfTime(other.timeVal)),
      wText(other.wText),
      wTextAux(other.wTextAux) {}

Variant::Variant(unsigned char value) noexcept : dataType(UNSIGNED_BYTE), uVal(slotOf(value)) {}
Variant::Variant(unsigned short value) noexcept : dataType(UINT16), uVal(slotOf(value)) {}
Variant::Variant(unsigned int value) noexcept : dataType(UINT32), uVal(slotOf(value)) {}
Variant::Variant(unsigned long value) noexcept : dataType(UINT64), uVal(slotOf(value)) {}
Variant::Variant(char value) noexcept : dataType(BYTE), uVal(slotOf(value)) {}
Variant::Variant(short value) noexcept : dataType(INT16), uVal(slotOf(value)) {}
Variant::Variant(int value) noexcept : dataType(INT32), uVal(slotOf(value)) {}
Variant::Variant(long value) noexcept : dataType(INT64), uVal(slotOf(value)) {}
Variant::Variant(float value) noexcept : dataType(FLOAT), uVal(slotOf(value)) {}
Variant::Variant(double value) noexcept : dataType(DOUBLE), uVal(slotOf(value)) {}
Variant::Variant(bool value) noexcept : dataType(BOOLEAN), uVal(slotOf(value)) {}

Variant::Variant(wchar_t const* text) : dataType(STRING), uVal(EMPTY_SLOT), wText(text) {}
// NOLINTNEXTLINE(modernize-pass-by-value): the interface takes a reference.
Variant::Variant(std::wstring const& text) : dataType(STRING), uVal(EMPTY_SLOT), wText(text) {}

Variant::Variant(char const* text)
    : dataType(STRING), uVal(EMPTY_SLOT), wText(widened(notNull(text))) {}

// KEPT(text-ends-at-zero-byte): c_str() ends at the first zero byte, unlike a std::wstring.
Variant::Variant(std::string const& text) : Variant(text.c_str()) {}

Variant::Variant(xtime_t const& time) noexcept
    : dataType(DATE_TIME), uVal(slotOf(time.toVMSTime())), timeVal(time) {}

// ---- questions

VariantType Variant::type() const noexcept { return dataType; }

bool Variant::isNull() const noexcept { return dataType == NULL_VALUE; }

// KEPT(null-has-value): a Null is a value, so only type 0 has none.
bool Variant::hasValue() const noexcept { return dataType != UNKNOWN; }

VariantType Variant::typeName2Number(wchar_t const* name) noexcept {
    std::size_t i = 0;
    while (typeNames[i] != nullptr && std::wcscmp(name, typeNames[i]) != 0)
        ++i;
    return typeNumbers[i];
}

wchar_t const* Variant::typeNumber2Name(int number) noexcept {
    auto const index = static_cast<std::size_t>(number);  // a negative number becomes huge
    return index < ENTRY_OF_NUMBER.size() ? typeNames[ENTRY_OF_NUMBER[index]] : nullptr;
}

// ---- changes

void Variant::clear() noexcept {
    // KEPT(clear-keeps-time): timeVal, wTextAux and sbcText are not changed.
    dataType = UNKNOWN;
    uVal = EMPTY_SLOT;
    wText.clear();
}

void Variant::makeNull() noexcept {
    clear();
    dataType = NULL_VALUE;
}

void Variant::assign(unsigned char value) noexcept { assignScalar(*this, value, UNSIGNED_BYTE); }
void Variant::assign(unsigned short value) noexcept { assignScalar(*this, value, UINT16); }
void Variant::assign(unsigned int value) noexcept { assignScalar(*this, value, UINT32); }
void Variant::assign(unsigned long value) noexcept { assignScalar(*this, value, UINT64); }
void Variant::assign(char value) noexcept { assignScalar(*this, value, BYTE); }
void Variant::assign(short value) noexcept { assignScalar(*this, value, INT16); }
void Variant::assign(int value) noexcept { assignScalar(*this, value, INT32); }
void Variant::assign(long value) noexcept { assignScalar(*this, value, INT64); }
void Variant::assign(float value) noexcept { assignScalar(*this, value, FLOAT); }
void Variant::assign(double value) noexcept { assignScalar(*this, value, DOUBLE); }
void Variant::assign(bool value) noexcept { assignScalar(*this, value, BOOLEAN); }

void Variant::assign(wchar_t const* text) {
    // A pointer into the memory of this object's own string, even after the end of the string,
    // gives an empty string, because `clear` comes first.
    std::less_equal<> const notAfter;
    bool const own =
        notAfter(wText.data(), text) && notAfter(text, wText.data() + wText.capacity());
    clear();
    wText.assign(own ? L"" : text);
    dataType = STRING;
}

void Variant::assign(std::wstring const& text) {
    clear();
    wText.assign(text);
    dataType = STRING;
}

void Variant::assign(char const* text) {
    if (text == nullptr) clear();
    // All of `clear` but the characters, which `widenInto` replaces.
    dataType = UNKNOWN;
    uVal = EMPTY_SLOT;
    widenInto(wText, notNull(text));
    dataType = STRING;
}

// KEPT(text-ends-at-zero-byte): c_str() ends at the first zero byte, unlike a std::wstring.
void Variant::assign(std::string const& text) { assign(text.c_str()); }

void Variant::assign(xtime_t const& time) noexcept {
    assignScalar(*this, time.toVMSTime(), DATE_TIME);
    timeVal = time;
}

void Variant::assign(Variant const& other) {
    // KEPT(self-assignment-empties): no test for `this`; if `other` is this object, it is cleared
    // before it is read.
    clear();
    dataType = other.dataType;
    copyUVal(other);
    wText = other.wText;
    wTextAux = other.wTextAux;
    timeVal = copyOfTime(other.timeVal);
}

void Variant::copyUVal(Variant const& other) noexcept { uVal = other.uVal; }

// NOLINTBEGIN(misc-unconventional-assign-operator, cppcoreguidelines-c-copy-assignment-signature):
// `assigned` returns *this.
Variant& Variant::operator=(wchar_t const* text) { return assigned(*this, text); }
Variant& Variant::operator=(char const* text) { return assigned(*this, text); }
Variant& Variant::operator=(float value) noexcept { return assigned(*this, value); }
Variant& Variant::operator=(double value) noexcept { return assigned(*this, value); }
Variant& Variant::operator=(char value) noexcept { return assigned(*this, value); }
Variant& Variant::operator=(short value) noexcept { return assigned(*this, value); }
Variant& Variant::operator=(int value) noexcept { return assigned(*this, value); }
Variant& Variant::operator=(long const& value) noexcept { return assigned(*this, value); }
// NOLINTNEXTLINE(cert-oop54-cpp, bugprone-unhandled-self-assignment): `assign` says why.
Variant& Variant::operator=(Variant const& other) { return assigned(*this, other); }
Variant& Variant::operator=(bool value) noexcept { return assigned(*this, value); }
Variant& Variant::operator=(unsigned char value) noexcept { return assigned(*this, value); }
Variant& Variant::operator=(unsigned short value) noexcept { return assigned(*this, value); }
Variant& Variant::operator=(unsigned int value) noexcept { return assigned(*this, value); }
Variant& Variant::operator=(unsigned long const& value) noexcept { return assigned(*this, value); }
Variant& Variant::operator=(xtime_t const& time) noexcept { return assigned(*this, time); }
// NOLINTEND(misc-unconventional-assign-operator, cppcoreguidelines-c-copy-assignment-signature)

}  // namespace com::halvorin::datatypes

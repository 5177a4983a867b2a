#include <cstring>
#include <new>
#include <string>
#include <vector>

#include <utillibrary/datatypes/ByteStream.h>
#include <utillibrary/datatypes/Library.h>
#include <utillibrary/datatypes/String.h>
#include <utillibrary/datatypes/Variant.h>
#include <utillibrary/datatypes/xtime.h>

// Objects of every kind for a debugger to show. They are complete when `look` is called.

using namespace com::halvorin::datatypes;

namespace {

Variant unknown;
Variant unsignedByte(static_cast<unsigned char>(200));
Variant uint16(static_cast<unsigned short>(65535));
Variant uint32(4000000000U);
Variant byteValue(static_cast<char>(-5));
Variant int16(static_cast<short>(-300));
Variant int32(-70000);
Variant floatValue(0.5F);
Variant doubleValue(2.5);
Variant stringValue(std::wstring(L"a\"b\n\0c\xE9", 7));
Variant longString(std::wstring(201, L'x'));
Variant emptyString("");
Variant int64(-9223372036854775807L - 1);
Variant uint64(18446744073709551615UL);
Variant booleanValue(true);
Variant dateTime(xtime_t(1709618889, 250000000));
Variant null;
Variant fifteenth;
std::vector<Variant> variants;

xtime_t notSet;
xtime_t leapDay(951827696, 7);
xtime_t beforeTheEpoch(-1, 999999999);
xtime_t notCarried(0, 2500000000U);
xtime_t farFuture(9223372036854775807L, 0);
xtime_t farPast(-9223372036854775807L - 1, 1);

ByteStream emptyStream;
ByteStream oneByte("\x7F", 1);
ByteStream someBytes(
    "abc\0\xFF"
    "de",
    7);
ByteStream manyBytes(17);
ByteStream noBytes(8);

Library closedLibrary;
Library openLibrary(std::string("libm.so.6"));

String text(std::string("a\0\"b", 4));

// Memory that no constructor has seen, filled with one byte.
template <typename Object>
struct Raw {
    alignas(Object) unsigned char bytes[sizeof(Object)];
    explicit Raw(int byte) { std::memset(bytes, byte, sizeof bytes); }
    Object& object() { return *std::launder(reinterpret_cast<Object*>(bytes)); }
};

Raw<Variant> rawVariant(0xA5);
Raw<ByteStream> rawStream(0xA5);
Raw<Library> rawLibrary(0xA5);
Raw<String> rawText(0xA5);
Raw<Variant> rawStringVariant(0xA5);

}  // namespace

extern "C" void look(Variant& wild, ByteStream& wildStream, Library& wildLibrary, String& wildText,
                     Variant& wildString) {
    static_cast<void>(wild);
    static_cast<void>(wildStream);
    static_cast<void>(wildLibrary);
    static_cast<void>(wildText);
    static_cast<void>(wildString);
}

int main() {
    null.makeNull();
    fifteenth.dataType = 15;
    variants = {Variant(1), Variant(2.5), Variant("x")};
    noBytes.allocate(0);
    int const string = 9;
    std::memcpy(&rawStringVariant.bytes, &string, sizeof string);
    look(rawVariant.object(), rawStream.object(), rawLibrary.object(), rawText.object(),
         rawStringVariant.object());
    return 0;
}

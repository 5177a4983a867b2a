// A host that can be compiled without exceptions and without run-time type information.

#include <cstdio>

#include <utillibrary/datatypes/ByteStream.h>
#include <utillibrary/datatypes/Library.h>
#include <utillibrary/datatypes/String.h>
#include <utillibrary/datatypes/Variant.h>
#include <utillibrary/datatypes/xtime_conversions.h>
#include <utillibrary/printing.h>
#include <utillibrary/utilities/MovingTimeScale.h>
#include <utillibrary/utilities/StringNVP.h>
#include <utillibrary/utilities/StringTrim.h>
#include <utillibrary/utilities/StringUtilities.h>
#include <utillibrary/utilities/SysStats.h>
#include <utillibrary/utilities/mktimeEx.h>
#include <utillibrary/version.h>

int main() {
    com::halvorin::datatypes::Variant const value(3.7);
    std::printf("%d %s\n", value.toInt32(),
                UTILLIBRARY_VERSION >= 10000 ? "new enough" : "too old");
}

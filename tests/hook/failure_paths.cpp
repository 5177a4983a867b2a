#include "hook/failure_paths.h"

#include <dlfcn.h>
#include <string>

#include <utillibrary/datatypes/ByteStream.h>
#include <utillibrary/datatypes/Library.h>
#include <utillibrary/datatypes/Variant.h>

using com::halvorin::datatypes::ByteStream;
using com::halvorin::datatypes::Library;
using com::halvorin::datatypes::Variant;

namespace {

template <typename Call>
bool throwsInvalidArgument(Call const& call) {
    try {
        call();
        return false;
    } catch (long code) {
        return code == 0x80070057;
    }
}

bool copyFromNull() {
    return throwsInvalidArgument([] { ByteStream().copy(nullptr, 5); });
}

bool copyOfNoBytes() {
    return throwsInvalidArgument([] { ByteStream().copy("x", 0); });
}

bool copyPastTheSource() {
    return throwsInvalidArgument([] {
        ByteStream source(10);
        ByteStream().copy(source, 11, 0, 0);
    });
}

char const* const SOME_LIBRARY = "libc.so.6";
char const* const NO_LIBRARY = "/no/such/library.so";

// With the loader's own words, in the language of the first call's C locale.
char const* notLoaded() {
    static std::string const text = [] {
        std::string const reason = dlopen(NO_LIBRARY, RTLD_LAZY) == nullptr ? dlerror() : "";
        return "Error calling dlopen. Reason: " + reason;
    }();
    return text.c_str();
}

bool openWithoutAName() { return Library().open("") == 0x80070057; }
bool openWithoutANameButFlags() { return Library().open("", RTLD_NOW) == 0x80070057; }
bool openTwice() { return Library(SOME_LIBRARY).open(SOME_LIBRARY) == 0x80004005; }
bool openTwiceWithFlags() {
    return Library(SOME_LIBRARY).open(SOME_LIBRARY, RTLD_NOW) == 0x80004005;
}
bool openWithFlagsWhatIsMissing() { return Library().open(NO_LIBRARY, RTLD_NOW) == 0xECE99F6E; }

bool openWhatIsMissing() { return Library().open(NO_LIBRARY) == 0xECE99F6E; }

bool constructWhatIsMissing() {
    try {
        Library const library(NO_LIBRARY);
        return false;
    } catch (unsigned int code) {
        return code == 0xECE99F6E;
    }
}

bool lookUpInNothing() { return Library().procAddress("getpid") == nullptr; }
bool lookUpNothing() { return Library(SOME_LIBRARY).procAddress("") == nullptr; }
bool lookUpWhatIsMissing() {
    return Library(SOME_LIBRARY).procAddress("no such symbol") == nullptr;
}
bool closeNothing() { return Library().close() == 0; }

bool printAnImpossibleType() {
    Variant variant(5);
    variant.dataType = 99;
    return variant.convertToString(1033).empty();
}

bool printANegativeType() {
    Variant variant(5);
    variant.dataType = -1;
    return variant.toString().empty();
}

}  // namespace

FailurePath const* failurePaths() noexcept {
    constexpr unsigned int INVALID_ARGUMENT = 0x80070057;
    constexpr unsigned int GENERAL_FAILURE = 0x80004005;
    constexpr unsigned int NOT_LOADED = 0xECE99F6E;
    constexpr unsigned int NOT_FOUND = 0xECE99F6F;
    // clang-format off: the call in one line, and the expected report in the next
    static FailurePath const paths[] = {
        {"a copy from null", copyFromNull, "ByteStream::copy", 3, "NULL == V", INVALID_ARGUMENT},
        {"a copy of no bytes", copyOfNoBytes, "ByteStream::copy", 3, "0 == Sz", INVALID_ARGUMENT},
        {"a copy past the source", copyPastTheSource, "ByteStream::copy", 3,
         "SrcStart+Num > Src.size()", INVALID_ARGUMENT},
        {"opening a library without a name", openWithoutAName, "Library::open", 3,
         "Invalid argument (NULL == Name). ", INVALID_ARGUMENT},
        {"opening a library without a name, with flags", openWithoutANameButFlags, "Library::open",
         3, "Invalid argument (NULL == Name). ", INVALID_ARGUMENT},
        {"opening a library twice", openTwice, "Library::open", 3,
         "Must call Close because library is already open", GENERAL_FAILURE},
        {"opening a library twice, with flags", openTwiceWithFlags, "Library::open", 3,
         "Must call Close because library is already open", GENERAL_FAILURE},
        {"opening a library that is missing", openWhatIsMissing, "Library::open", 3, notLoaded(),
         NOT_LOADED},
        {"constructing a library that is missing", constructWhatIsMissing, "Library::open", 3,
         notLoaded(), NOT_LOADED},
        {"opening a library that is missing, with flags", openWithFlagsWhatIsMissing,
         "Library::open", 3, "Error calling dlopen. ", NOT_LOADED},
        {"a symbol of no library", lookUpInNothing, "Library::procAddress", 3,
         "Library is not open. ", INVALID_ARGUMENT},
        {"a symbol without a name", lookUpNothing, "Library::procAddress", 3,
         "NULL == EntryPoint. ", INVALID_ARGUMENT},
        {"a symbol that is missing", lookUpWhatIsMissing, "Library::procAddress", 3,
         "Error calling dlsym. ", NOT_FOUND},
        {"closing nothing", closeNothing, "Library::close", 7, "Library is not open", 0},
        {"a Variant of type 99 as wide text", printAnImpossibleType, "Variant::convertToString", 3,
         "Cannot convert unknown type", GENERAL_FAILURE},
        {"a Variant of type -1 as text", printANegativeType, "Variant::convertToString", 3,
         "Cannot convert unknown type", GENERAL_FAILURE},
        {nullptr, nullptr, nullptr, 0, nullptr, 0},
    };
    // clang-format on
    return paths;
}

#include "support/counted_calls.h"

#include <charconv>
#include <cstdarg>
#include <cstdio>
#include <dlfcn.h>
#include <set>
#include <system_error>

namespace testing_support {

namespace {

bool watching = false;

std::set<std::string>& calledNames() {
    static std::set<std::string> names;
    return names;
}

// Remembers a call, and returns the real function of that symbol.
template <typename Function>
Function* called(char const* name, char const* symbol) {
    if (watching) calledNames().insert(name);
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, symbol));
}

template <typename Function>
Function* called(char const* name) {
    return called<Function>(name, name);
}

}  // namespace

CallWatch::CallWatch() {
    calledNames().clear();
    watching = true;
}

CallWatch::~CallWatch() { watching = false; }

std::string CallWatch::names() const {
    std::string joined;
    for (std::string const& name : calledNames())
        joined += (joined.empty() ? "" : " ") + name;
    return joined;
}

}  // namespace testing_support

using testing_support::called;

// Each function here has a name of its own, and the symbol of the one that it replaces. So the
// declarations of the headers, which differ in attributes, do not matter.

extern "C" {

double countedStrtod(char const* text, char** end) __asm__("strtod");
double countedStrtod(char const* text, char** end) {
    return called<double(char const*, char**)>("strtod")(text, end);
}

float countedStrtof(char const* text, char** end) __asm__("strtof");
float countedStrtof(char const* text, char** end) {
    return called<float(char const*, char**)>("strtof")(text, end);
}

long countedStrtol(char const* text, char** end, int base) __asm__("strtol");
long countedStrtol(char const* text, char** end, int base) {
    return called<long(char const*, char**, int)>("strtol")(text, end, base);
}

double countedWcstod(wchar_t const* text, wchar_t** end) __asm__("wcstod");
double countedWcstod(wchar_t const* text, wchar_t** end) {
    return called<double(wchar_t const*, wchar_t**)>("wcstod")(text, end);
}

void* countedMemmem(void const* where, std::size_t size, void const* what,
                    std::size_t whatSize) __asm__("memmem");
void* countedMemmem(void const* where, std::size_t size, void const* what, std::size_t whatSize) {
    using Memmem = void*(void const*, std::size_t, void const*, std::size_t);
    return called<Memmem>("memmem")(where, size, what, whatSize);
}

int countedSscanf(char const* text, char const* format, ...) __asm__("__isoc99_sscanf");
int countedSscanf(char const* text, char const* format, ...) {
    auto* const scan = called<int(char const*, char const*, va_list)>("sscanf", "vsscanf");
    va_list arguments;
    va_start(arguments, format);
    int const result = scan(text, format, arguments);
    va_end(arguments);
    return result;
}

using PrintToString = int(char*, std::size_t, char const*, va_list);

int countedSnprintf(char* out, std::size_t size, char const* format, ...) __asm__("snprintf");
int countedSnprintf(char* out, std::size_t size, char const* format, ...) {
    auto* const print = called<PrintToString>("snprintf", "vsnprintf");
    va_list arguments;
    va_start(arguments, format);
    int const result = print(out, size, format, arguments);
    va_end(arguments);
    return result;
}

// What a hardened library calls in place of snprintf.
int countedCheckedSnprintf(char* out, std::size_t size, int flag, std::size_t outSize,
                           char const* format, ...) __asm__("__snprintf_chk");
int countedCheckedSnprintf(char* out, std::size_t size, int /*flag*/, std::size_t /*outSize*/,
                           char const* format, ...) {
    auto* const print = called<PrintToString>("snprintf", "vsnprintf");
    va_list arguments;
    va_start(arguments, format);
    int const result = print(out, size, format, arguments);
    va_end(arguments);
    return result;
}

}  // extern "C"

// std::to_chars of a double with a precision.
std::to_chars_result countedToChars(char* first, char* last, double value, std::chars_format format,
                                    int precision) __asm__("_ZSt8to_charsPcS_dSt12chars_formati");
std::to_chars_result countedToChars(char* first, char* last, double value, std::chars_format format,
                                    int precision) {
    using ToChars = std::to_chars_result(char*, char*, double, std::chars_format, int);
    return called<ToChars>("to_chars", "_ZSt8to_charsPcS_dSt12chars_formati")(first, last, value,
                                                                              format, precision);
}

// std::wios::init(std::wstreambuf*), which the constructor of each wide stream calls.
#define WIDE_STREAM_INIT "_ZNSt9basic_iosIwSt11char_traitsIwEE4initEPSt15basic_streambufIwS1_E"
void countedWideStream(void* stream, void* buffer) __asm__(WIDE_STREAM_INIT);
void countedWideStream(void* stream, void* buffer) {
    called<void(void*, void*)>("wide_stream", WIDE_STREAM_INIT)(stream, buffer);
}

#pragma once

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cxxabi.h>
#include <exception>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <unordered_map>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/ByteStream.h>
#include <utillibrary/datatypes/String.h>
#include <utillibrary/datatypes/Variant.h>
#include <utillibrary/datatypes/xtime.h>

// Values as the examples of the headers write them. tests/header_examples.py makes the program that
// compares the two.
namespace com::halvorin::test {

template <typename T>
std::string shown(T const& value);

/// A character as a literal contains it.
inline std::string escapedCharacter(unsigned long code) {
    switch (code) {
        case '\n':
            return "\\n";
        case '\t':
            return "\\t";
        case '\\':
            return "\\\\";
        case '"':
            return "\\\"";
        default:
            break;
    }
    if (code >= ' ' && code <= '~') return {static_cast<char>(code)};
    char text[16];
    std::snprintf(text, sizeof text, "\\x%02lx", code);
    return text;
}

inline std::string literal(std::string const& text) {
    std::string result = "\"";
    for (char const c : text)
        result += escapedCharacter(static_cast<unsigned char>(c));
    return result + '"';
}

inline std::string literal(std::wstring const& text) {
    std::string result = "L\"";
    for (wchar_t const c : text)
        result += escapedCharacter(static_cast<unsigned int>(c));
    return result + '"';
}

/// The shortest digits that give the same number back.
template <typename Floating>
std::string shortestDigits(Floating value) {
    char text[64];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

inline std::string bytesShown(datatypes::ByteStream const& bytes) {
    std::string result;
    for (unsigned int i = 0; i < bytes.size(); ++i) {
        char text[4];
        std::snprintf(text, sizeof text, "%02x", static_cast<unsigned char>(bytes.data()[i]));
        result += (i == 0 ? "" : " ") + std::string(text);
    }
    return result;
}

template <typename T>
std::string listShown(std::vector<T> const& list) {
    std::string result = "{";
    for (T const& element : list)
        result += (result.size() == 1 ? "" : ", ") + shown(element);
    return result + '}';
}

template <typename Map>
std::string mapShown(Map const& map) {
    std::string result = "{";
    for (auto const& [name, value] : std::map<std::string, std::string>(map.begin(), map.end()))
        result += (result.size() == 1 ? "" : ", ") + name + ": " + shown(value);
    return result + '}';
}

/// The name of the type and the value: `Int32 42`, `String L"x"`; a value-less type is its name.
inline std::string variantShown(datatypes::Variant const& variant) {
    std::wstring const name = datatypes::Variant::typeNumber2Name(variant.type());
    std::string const type(name.begin(), name.end());
    if (type == "Unknown" || type == "Null") return type;
    return type + ' ' + (type == "String" ? literal(variant.wText) : variant.toString());
}

template <typename T>
inline constexpr bool IS_LIST = false;
template <typename T>
inline constexpr bool IS_LIST<std::vector<T>> = true;

template <typename T>
std::string shown(T const& value) {
    if constexpr (std::is_same_v<T, bool>) {
        return value ? "true" : "false";
    } else if constexpr (std::is_same_v<T, char>) {
        // The headers show the sign of x86-64; char is unsigned on aarch64.
        return std::to_string(static_cast<signed char>(value));
    } else if constexpr (std::is_integral_v<T>) {
        return std::to_string(value);
    } else if constexpr (std::is_floating_point_v<T>) {
        return shortestDigits(value);
    } else if constexpr (std::is_same_v<T, datatypes::xtime_t>) {
        return value.toString(true, 0, "");
    } else if constexpr (std::is_same_v<T, datatypes::ByteStream>) {
        return bytesShown(value);
    } else if constexpr (std::is_same_v<T, datatypes::Variant>) {
        return variantShown(value);
    } else if constexpr (std::is_same_v<T, datatypes::String>) {
        return literal(value());
    } else if constexpr (std::is_convertible_v<T const&, std::string>) {
        return literal(std::string(value));
    } else if constexpr (std::is_convertible_v<T const&, std::wstring>) {
        return literal(std::wstring(value));
    } else if constexpr (IS_LIST<T>) {
        return listShown(value);
    } else if constexpr (std::is_same_v<T, std::unordered_map<std::string, std::string>>) {
        return mapShown(value);
    } else if constexpr (std::is_pointer_v<T>) {
        return value == nullptr ? "nullptr" : "a pointer";
    } else {
        return "a value of another type";
    }
}

inline std::string shown(char const* text) {
    return text == nullptr ? "nullptr" : literal(std::string(text));
}
inline std::string shown(wchar_t const* text) {
    return text == nullptr ? "nullptr" : literal(std::wstring(text));
}

inline std::string nameOfType(std::type_info const& type) {
    int status = 0;
    char* const name = abi::__cxa_demangle(type.name(), nullptr, nullptr, &status);
    std::string result = status == 0 ? name : type.name();
    std::free(name);
    return result;
}

/// What an expression gives or throws, then the objects that it may have changed.
template <typename Expression, typename... Objects>
std::vector<std::string> results(Expression const& expression, Objects const&... objects) {
    std::vector<std::string> all;
    try {
        if constexpr (std::is_void_v<decltype(expression())>) {
            expression();
        } else {
            all.push_back(shown(expression()));
        }
    } catch (std::exception const& error) {
        all.push_back("throws " + nameOfType(typeid(error)) + ' ' + shown(error.what()));
    } catch (long const number) {
        all.push_back("throws long " + std::to_string(number));
    } catch (unsigned int const number) {
        all.push_back("throws unsigned int " + std::to_string(number));
    }
    (all.push_back(shown(objects)), ...);
    return all;
}

inline void expectOneOf(char const* place, std::string const& expected,
                        std::vector<std::string> const& found) {
    bool const matches = std::find(found.begin(), found.end(), expected) != found.end();
    std::string all;
    for (std::string const& text : found)
        all += (all.empty() ? "" : " or ") + text;
    EXPECT_TRUE(matches) << place << ": the example says " << expected << ", and the result is "
                         << all;
}

}  // namespace com::halvorin::test

#define EXPECT_SHOWN(place, expected, variable) \
    ::com::halvorin::test::expectOneOf(place, expected, {::com::halvorin::test::shown(variable)})

#define EXPECT_RESULT(place, expected, expression, ...)                                         \
    ::com::halvorin::test::expectOneOf(place, expected,                                         \
                                       ::com::halvorin::test::results([&]() -> decltype(auto) { \
                                           return expression;                                   \
                                       } __VA_OPT__(, ) __VA_ARGS__))

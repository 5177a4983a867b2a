#include "support/text_models.h"

#include <array>
#include <cctype>
#include <cstdio>
#include <cstdlib>

namespace testing_support {

namespace {

// The argument of isspace and similar functions: the byte as a signed char, where they take EOF or
// the value of an unsigned char.
int characterOf(char c) noexcept {
    int const value = static_cast<signed char>(c);
    return value == EOF ? EOF : static_cast<unsigned char>(c);
}

}  // namespace

std::string modelOfEscape(std::string const& text, bool keepSpace) {
    std::string result;
    for (char const c : text) {
        if (c != '"' && c != '\\' && std::isgraph(characterOf(c)) != 0) {
            result += c;
        } else if (c == ' ' && keepSpace) {
            result += c;
        } else if (c == '\\') {
            result = "\\\\";
        } else if (c == '\f') {
            result += "\\f";
        } else if (c == '\n') {
            result += "\\n";
        } else if (c == '\r') {
            result += "\\r";
        } else if (c == '\t') {
            result += "\\t";
        } else if (c == '"') {
            result += "\\\"";
        } else if (c == '\b') {
            result += "\\b";
        } else {
            std::array<char, 8> digits{};
            unsigned const value = static_cast<unsigned short>(static_cast<signed char>(c));
            std::snprintf(digits.data(), digits.size(), "\\u%04x", value);
            result += digits.data();
        }
    }
    return result;
}

std::string modelOfUnescape(std::string const& text) {
    std::string const named = "\"'?\\abfnrtv";
    std::string const bytes = "\"'?\\\a\b\f\n\r\t\v";
    std::string result;
    std::size_t at = 0;
    auto const takeDigits = [&](std::size_t limit) {
        std::string digits;
        while (digits.size() < limit && at < text.size() &&
               std::isxdigit(characterOf(text[at])) != 0) {
            digits += text[at++];
        }
        return digits;
    };
    while (at < text.size()) {
        if (text[at] != '\\' || at + 1 == text.size()) {
            result += text[at++];
            continue;
        }
        char const letter = text[at + 1];
        at += 2;
        if (std::size_t const found = named.find(letter); found != std::string::npos) {
            result += bytes[found];
        } else if (letter == 'u' || letter == 'x') {
            if (letter == 'x') takeDigits(2);
            result += static_cast<char>(std::strtoul(takeDigits(4).c_str(), nullptr, 16));
        } else {
            result += "\\\\";
        }
    }
    return result;
}

std::string modelOfTrim(std::string const& text) {
    std::size_t first = 0;
    std::size_t end = text.size();
    while (first < end && std::isspace(characterOf(text[first])) != 0)
        ++first;
    while (end > first && std::isspace(characterOf(text[end - 1])) != 0)
        --end;
    return text.substr(first, end - first);
}

std::vector<std::string> modelOfSplit(std::string const& text, std::string const& separators) {
    std::vector<std::string> fields;
    std::string field;
    for (char const c : text) {
        if (separators.find(c) == std::string::npos) {
            field += c;
        } else if (!field.empty()) {
            fields.push_back(field);
            field.clear();
        }
    }
    fields.push_back(field);
    return fields;
}

bool modelOfIequals(std::string const& text, std::string const& other) {
    if (text.size() > other.size()) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (std::tolower(characterOf(text[i])) != std::tolower(characterOf(other[i]))) return false;
    }
    return true;
}

std::string anyText(std::mt19937_64& engine, std::string const& characters, std::size_t limit) {
    std::string text(engine() % limit, '\0');
    for (char& c : text) {
        c = engine() % 16 == 0 ? static_cast<char>(engine())
                               : characters[engine() % characters.size()];
    }
    return text;
}

}  // namespace testing_support

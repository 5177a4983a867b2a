#include <cctype>
#include <string>

#include <utillibrary/utilities/StringTrim.h>

#include "support/operation.h"
#include "support/pool.h"

#ifdef UTILLIBRARY_PEER_ABSL
#include <absl/strings/ascii.h>
#endif
#ifdef UTILLIBRARY_PEER_BOOST
#include <boost/algorithm/string/trim.hpp>
#endif
#ifdef UTILLIBRARY_PEER_GLIB
#include "support/glib_text.h"
#endif
#ifdef UTILLIBRARY_PEER_POCO
#include <Poco/String.h>
#endif
#ifdef UTILLIBRARY_PEER_QT
#include <QByteArray>
#include <QString>
#endif

// A string without the whitespace at its ends.
namespace {

using namespace benchmarks;

std::string trimmedByHand(std::string const& text) {
    auto const isWhitespace = [](char c) {
        return std::isspace(static_cast<unsigned char>(c)) != 0;
    };
    std::size_t first = 0;
    while (first < text.size() && isWhitespace(text[first]))
        ++first;
    std::size_t end = text.size();
    while (end > first && isWhitespace(text[end - 1]))
        --end;
    return text.substr(first, end - first);
}

std::string whitespace(Random& random) {
    std::string text(random() % 4, ' ');
    for (char& c : text)
        c = " \t\n"[random() % 3];
    return text;
}

std::string paddedText(Random& random, std::size_t least, std::size_t most) {
    return whitespace(random) + anyText(random, least, most) + whitespace(random);
}

void addTrim(std::string const& name, std::vector<std::string> const& texts) {
    Operation const operation(name, texts, trimmedByHand);
    operation.plain("isspace", trimmedByHand);
    operation.ours(com::halvorin::utilities::trim);
    operation.floor("std::string", [](std::string const& text) { return std::string(text); });
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer("Abseil", [](std::string const& text) {
        return std::string(absl::StripAsciiWhitespace(text));
    });
#endif
#ifdef UTILLIBRARY_PEER_BOOST
    operation.peer("Boost",
                   [](std::string const& text) { return boost::algorithm::trim_copy(text); });
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    operation.peer(
        "GLib",
        [](std::string const& text) {
            GLibText copy(g_strdup(text.c_str()));
            g_strstrip(copy.get());
            return copy;
        },
        textOf);
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.peer("Poco", [](std::string const& text) { return Poco::trim(text); });
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.peer("Qt",
                   prepared([](std::string const& text) { return QByteArray::fromStdString(text); },
                            [](QByteArray const& text) { return text.trimmed(); }),
                   [](QByteArray const& text) { return text.toStdString(); });
    operation.peer("QString",
                   prepared([](std::string const& text) { return QString::fromStdString(text); },
                            [](QString const& text) { return text.trimmed(); }),
                   [](QString const& text) { return text.toStdString(); });
#endif
}

}  // namespace

void benchmarks::addRows() {
    addTrim("trim, 3 to 15 bytes", pool([](Random& random) { return paddedText(random, 3, 9); }));
    addTrim("trim, about 66 bytes",
            pool([](Random& random) { return paddedText(random, 63, 63); }));
    for (std::size_t const size : MAIN_SIZES) {
        std::vector<std::string> texts = textsOf(size);
        for (std::string& text : texts) {
            text.front() = ' ';
            text.back() = '\n';
        }
        addTrim("trim, " + sizeName(size), texts);
    }
}

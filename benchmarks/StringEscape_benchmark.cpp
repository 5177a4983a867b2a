#include <cctype>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include <utillibrary/utilities/StringUtilities.h>

#include "support/operation.h"
#include "support/pool.h"

#ifdef UTILLIBRARY_PEER_ABSL
#include <absl/strings/escaping.h>
#endif
#ifdef UTILLIBRARY_PEER_FMT
#include <fmt/format.h>
#endif
#ifdef UTILLIBRARY_PEER_GLIB
#include "support/glib_text.h"
#endif
#ifdef UTILLIBRARY_PEER_POCO
#include <Poco/UTF8String.h>
#endif
#ifdef UTILLIBRARY_PEER_QT
#include <QByteArray>
#endif

// Strings in printable form, and back. Each library has its own form. The job is the same if the
// same bytes become printable and the peer can undo it. So the peer itself reads its result back;
// that string is escaped in our form, and compared with the expected one.
namespace {

using namespace benchmarks;
using com::halvorin::utilities::escapeString;
using com::halvorin::utilities::unescapeString;

constexpr char const* LEAVES_SPACES = "leaves spaces";

// The escaped form by its definition, for strings without a backslash.
std::string escapedByHand(std::string const& text, bool keepSpace) {
    std::string result;
    for (char const c : text) {
        constexpr std::string_view NAMED = "\f\n\r\t\b\"";
        auto const name = NAMED.find(c);
        if (name != std::string_view::npos) {
            result += {'\\', "fnrtb\""[name]};
        } else if (std::isgraph(static_cast<unsigned char>(c)) != 0 || (c == ' ' && keepSpace)) {
            result += c;
        } else {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x",
                          static_cast<unsigned>(static_cast<signed char>(c)) & 0xFFFF);
            result += escape;
        }
    }
    return result;
}

// The string of such an escaped form.
std::string unescapedByHand(std::string const& text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            result += text[i];
        } else if (text[++i] == 'u') {
            unsigned number = 0;
            std::sscanf(text.substr(i + 1, 4).c_str(), "%4x", &number);
            result += static_cast<char>(number);
            i += 4;
        } else {
            constexpr std::string_view NAMES = "fnrtb\"";
            result += "\f\n\r\t\b\""[NAMES.find(text[i])];
        }
    }
    return result;
}

// ---- the pools

// Graphic bytes that are not escaped. There is no slash: Poco escapes it, and cannot read it back.
std::string plainBytes(Random& random, std::size_t size) {
    std::string text = anyText(random, size, size);
    for (char& c : text) {
        while (c == '"' || c == '\\' || c == '/')
            c = static_cast<char>('!' + random() % 94);
    }
    return text;
}

std::string lettersAndDigits(Random& random, std::size_t size) {
    constexpr std::string_view PLAIN =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
    std::string text(size, '\0');
    for (char& c : text)
        c = PLAIN[random() % PLAIN.size()];
    return text;
}

// Words of two to nine letters, with one space between them.
std::string words(Random& random, std::size_t size) {
    std::string text;
    while (text.size() < size)
        text += lettersAndDigits(random, 2 + random() % 8) + ' ';
    text.resize(size);
    text.back() = '.';
    return text;
}

// Without a zero byte, which ends a string for some peers, and without a backslash, which drops
// what is before it in our form.
std::string anyBytes(Random& random, std::size_t size) {
    std::string text(size, '\0');
    for (char& c : text) {
        while (c == '\0' || c == '\\')
            c = static_cast<char>(random());
    }
    return text;
}

// A value as in lines of pairs: short, and one in eight has a space.
std::string shortValue(Random& random, std::size_t /*size*/) {
    std::string value = lettersAndDigits(random, 3 + random() % 15);
    if (random() % 8 == 0) value[1] = ' ';
    return value;
}

// ---- the peers: how each of them escapes, and reads what it escaped

using Text = std::string;

Text const& textOf(Text const& text) { return text; }

#ifdef UTILLIBRARY_PEER_ABSL
Text abslUnescaped(Text const& text) {
    Text result;
    bool const read = absl::CUnescape(text, &result);
    benchmark::DoNotOptimize(read);
    return result;
}
#endif

#ifdef UTILLIBRARY_PEER_FMT
Text fmtEscaped(Text const& text) { return fmt::format("{:?}", text); }
Text withoutQuotes(Text const& text) { return text.substr(1, text.size() - 2); }
#endif

#ifdef UTILLIBRARY_PEER_GLIB
GLibText glibEscaped(Text const& text) { return GLibText(g_strescape(text.c_str(), nullptr)); }
GLibText glibUnescaped(Text const& text) { return GLibText(g_strcompress(text.c_str())); }
GLibText uriEscaped(Text const& text) {
    return GLibText(
        g_uri_escape_bytes(reinterpret_cast<guint8 const*>(text.data()), text.size(), nullptr));
}
struct GLibUnref {
    void operator()(GBytes* bytes) const { g_bytes_unref(bytes); }
};
using GLibBytes = std::unique_ptr<GBytes, GLibUnref>;

GLibBytes uriUnescaped(Text const& text) {
    return GLibBytes(
        g_uri_unescape_bytes(text.data(), static_cast<gssize>(text.size()), nullptr, nullptr));
}
Text textOf(GLibBytes const& bytes) {
    gsize size = 0;
    auto const* const data = static_cast<char const*>(g_bytes_get_data(bytes.get(), &size));
    return {data, size};
}
#endif

#ifdef UTILLIBRARY_PEER_POCO
Text pocoEscaped(Text const& text) { return Poco::UTF8::escape(text); }
Text pocoUnescaped(Text const& text) { return Poco::UTF8::unescape(text); }
#endif

#ifdef UTILLIBRARY_PEER_QT
QByteArray asBytes(Text const& text) { return QByteArray::fromStdString(text); }
QByteArray percentEncoded(QByteArray const& text) { return text.toPercentEncoding(); }
QByteArray percentDecoded(QByteArray const& text) { return QByteArray::fromPercentEncoding(text); }
Text textOf(QByteArray const& bytes) { return bytes.toStdString(); }
#endif

// ---- the operations

// What a string consists of, and which peers do the same job with it.
struct Kind {
    std::string name;
    Text (*make)(Random&, std::size_t);
    bool keepSpace;
    bool spaces;  // true if a peer that leaves spaces does another job
    bool ascii;   // true if peers that expect UTF-8 take it
};

class Escaping {
public:
    Escaping(Kind const& kind, std::vector<Text> const& texts, std::string const& size)
        : kind_(kind),
          escape_("escape " + kind.name + size, texts, escaper()),
          unescape_("unescape " + kind.name + size, texts, AsItIs()) {}

    Escaping threaded() const {
        Escaping copy = *this;
        copy.escape_ = escape_.threaded();
        copy.unescape_ = unescape_.threaded();
        return copy;
    }

    /// Only the rows of the fastest peers.
    Escaping fastest() const {
        Escaping copy = *this;
        bool const spaces = kind_.spaces;
        copy.escape_ = escape_.withPeers({"Qt", spaces ? "Qt" : "Abseil"});
        copy.unescape_ = unescape_.withPeers({"GLib, URI", spaces ? "Qt" : "GLib"});
        return copy;
    }

    void addRows() const {
        addOurs();
#ifdef UTILLIBRARY_PEER_ABSL
        addLeavingSpaces("Abseil", absl::CEscape, abslUnescaped);
#endif
#ifdef UTILLIBRARY_PEER_FMT
        if (kind_.ascii && !kind_.spaces) escape_.peer("{fmt}", fmtEscaped, withoutQuotes);
#endif
#ifdef UTILLIBRARY_PEER_GLIB
        addLeavingSpaces("GLib", glibEscaped, glibUnescaped);
        if (!kind_.keepSpace) addPeer("GLib, URI", uriEscaped, uriUnescaped);
#endif
#ifdef UTILLIBRARY_PEER_POCO
        if (kind_.ascii) addLeavingSpaces("Poco", pocoEscaped, pocoUnescaped);
#endif
#ifdef UTILLIBRARY_PEER_QT
        if (!kind_.keepSpace) {
            escape_.peer("Qt", prepared(asBytes, percentEncoded),
                         [again = escaper()](QByteArray const& escaped) {
                             return again(textOf(percentDecoded(escaped)));
                         });
            unescape_.peer(
                "Qt",
                prepared([](Text const& t) { return percentEncoded(asBytes(t)); }, percentDecoded),
                [](QByteArray const& bytes) { return textOf(bytes); });
        }
#endif
    }

private:
    // The wanted form.
    std::function<Text(Text const&)> escaper() const {
        return [keepSpace = kind_.keepSpace](Text const& text) {
            return escapedByHand(text, keepSpace);
        };
    }

    void addOurs() const {
        bool const keepSpace = kind_.keepSpace;
        escape_.plain("isgraph, snprintf", escaper());
        escape_.ours([keepSpace](Text const& text) { return escapeString(text, keepSpace); });
        unescape_.plain("sscanf", prepared(escaper(), unescapedByHand));
        unescape_.ours(prepared(escaper(), unescapeString));
        auto const copied = [](Text const& text) { return Text(text); };
        escape_.floor("std::string", copied);
        unescape_.floor("std::string", prepared(escaper(), copied));
    }

    template <typename Escape, typename Unescape>
    void addPeer(std::string const& who, Escape escape, Unescape unescape) const {
        escape_.peer(who, escape, [unescape, again = escaper()](auto const& escaped) {
            return again(textOf(unescape(textOf(escaped))));
        });
        unescape_.peer(who, prepared(inText(escape), unescape),
                       [](auto const& text) { return textOf(text); });
    }

    template <typename Escape, typename Unescape>
    void addLeavingSpaces(std::string const& who, Escape escape, Unescape unescape) const {
        if (!kind_.spaces) return addPeer(who, escape, unescape);
        escape_.otherJob(who, LEAVES_SPACES, escape);
        unescape_.otherJob(who, LEAVES_SPACES, prepared(inText(escape), unescape));
    }

    template <typename Escape>
    static auto inText(Escape escape) {
        return [escape](Text const& text) { return Text(textOf(escape(text))); };
    }

    Kind kind_;
    Operation<Text, Text> escape_;
    Operation<Text, Text> unescape_;
};

void addSize(Kind const& kind, std::size_t size) {
    Escaping const escaping(kind, textPool(size, kind.make), ", " + sizeName(size));
    (isStep(size) ? escaping.fastest() : escaping).addRows();
}

void addKind(Kind const& kind) {
    for (std::size_t const size : SIZES)
        addSize(kind, size);
}

}  // namespace

void benchmarks::addRows() {
    Kind const value{"a value of 3 to 17 bytes", shortValue, true, false, true};
    Escaping(value, textPool(1, value.make), "").threaded().addRows();
    addKind({"graphic characters", plainBytes, false, false, true});
    addKind({"words and spaces", words, false, true, true});
    addSize({"words, spaces kept", words, true, false, true}, 64 * KIBIBYTE);
    addKind({"binary bytes", anyBytes, false, false, false});
}

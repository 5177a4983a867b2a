#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <utillibrary/utilities/StringNVP.h>

#include "support/operation.h"
#include "support/pool.h"

#ifdef UTILLIBRARY_PEER_ABSL
#include <absl/container/flat_hash_map.h>
#include <absl/strings/escaping.h>
#include <absl/strings/numbers.h>
#include <absl/strings/str_cat.h>
#include <absl/strings/str_split.h>
#endif
#ifdef UTILLIBRARY_PEER_BOOST
#include <boost/algorithm/string/split.hpp>
#endif
#ifdef UTILLIBRARY_PEER_GLIB
#include <glib.h>
#endif
#ifdef UTILLIBRARY_PEER_POCO
#include <Poco/NumberParser.h>
#include <Poco/StringTokenizer.h>
#include <Poco/URI.h>
#endif
#ifdef UTILLIBRARY_PEER_QT
#include <QHash>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QUrlQuery>
#endif

// Strings are split; strings of name-value pairs are written, read and averaged. Few libraries have
// functions for such pairs. A peer's row is made of the functions that it has, as its user would
// write it. This file is long, because each operation is followed by its peers.
namespace {

using namespace benchmarks;
namespace utilities = com::halvorin::utilities;

using Texts = std::vector<std::string>;
using Pairs = std::unordered_map<std::string, std::string>;
using Sorted = std::map<std::string, std::string>;

// ---- split

// Fields of 3 to 15 bytes, which a std::string stores without an allocation.
std::string fields(Random& random, std::size_t count, std::string const& separators) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0) text += separators[random() % separators.size()];
        std::string field = anyText(random, 3, 15);
        std::replace(field.begin(), field.end(), ',', '_');
        std::replace(field.begin(), field.end(), ';', '_');
        text += field;
    }
    return text;
}

std::string fieldsOfSize(Random& random, std::size_t size) {
    std::string text = fields(random, size / 4, ",");
    text.resize(size);
    text.back() = 'x';
    return text;
}

Texts splitByHand(std::string const& text, std::string const& separators) {
    Texts list;
    std::size_t start = 0;
    for (std::size_t end = 0; (end = text.find_first_of(separators, start)) != std::string::npos;
         start = end + 1) {
        if (end > start) list.push_back(text.substr(start, end - start));
    }
    list.push_back(text.substr(start));
    return list;
}

#ifdef UTILLIBRARY_PEER_QT
QString asQString(std::string const& text) { return QString::fromStdString(text); }

Texts textsOf(QStringList const& list) {
    Texts texts;
    for (QString const& text : list)
        texts.push_back(text.toStdString());
    return texts;
}
#endif

#ifdef UTILLIBRARY_PEER_GLIB
// A list of strings that GLib made.
class GLibTexts {
public:
    explicit GLibTexts(char** texts) : texts_(texts) {}
    GLibTexts(GLibTexts const&) = delete;
    GLibTexts& operator=(GLibTexts const&) = delete;
    ~GLibTexts() { g_strfreev(texts_); }
    char** begin() const { return texts_; }
    char** end() const { return texts_ + g_strv_length(texts_); }

private:
    char** texts_;
};
#endif

using Split = Operation<std::string, Texts>;

Split splitting(std::string const& name, Texts const& texts, std::string const& separators) {
    return {"split, " + name, texts,
            [separators](std::string const& text) { return splitByHand(text, separators); }};
}

void addSplit(Split const& operation, std::string const& separators) {
    auto const plain = [separators](std::string const& t) { return splitByHand(t, separators); };
    operation.plain("find_first_of, substr", plain);
    operation.ours([separators](std::string const& text) {
        Texts list;
        utilities::split(list, text, separators);
        return list;
    });
#ifdef UTILLIBRARY_PEER_ABSL
    auto const split = [separators](std::string const& text) {
        return absl::StrSplit(text, absl::ByAnyChar(separators), absl::SkipEmpty());
    };
    operation.otherJob(
        "Abseil, views", "views, no strings of their own",
        [split](std::string const& text) { return std::vector<absl::string_view>(split(text)); });
    if (separators.size() == 1) {
        operation.peer("Abseil", [separator = separators.front()](std::string const& text) {
            return Texts(absl::StrSplit(text, separator, absl::SkipEmpty()));
        });
    } else {
        operation.peer("Abseil", [split](std::string const& text) { return Texts(split(text)); });
    }
#endif
#ifdef UTILLIBRARY_PEER_BOOST
    // A comparison of characters, which takes less time than boost::is_any_of.
    auto const splitWhere = [](std::string const& text, auto isSeparator) {
        Texts list;
        boost::algorithm::split(list, text, isSeparator, boost::token_compress_on);
        return list;
    };
    if (separators.size() == 1) {
        operation.peer("Boost", [=, only = separators.front()](std::string const& text) {
            return splitWhere(text, [only](char c) { return c == only; });
        });
    } else {
        operation.peer("Boost", [=, first = separators.front(),
                                 second = separators.back()](std::string const& text) {
            return splitWhere(text, [=](char c) { return c == first || c == second; });
        });
    }
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    operation.otherJob("GLib", "keeps empty fields", [separators](std::string const& text) {
        return GLibTexts(g_strsplit_set(text.c_str(), separators.c_str(), -1));
    });
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.peer(
        "Poco",
        [separators](std::string const& text) {
            return Poco::StringTokenizer(text, separators, Poco::StringTokenizer::TOK_IGNORE_EMPTY);
        },
        [](Poco::StringTokenizer const& list) { return Texts(list.begin(), list.end()); });
#endif
#ifdef UTILLIBRARY_PEER_QT
    if (separators.size() == 1) {
        operation.peer("Qt",
                       prepared(asQString,
                                [separator = QChar(separators.front())](QString const& text) {
                                    return text.split(separator, Qt::SkipEmptyParts);
                                }),
                       textsOf);
    } else {
        QRegularExpression const any(asQString("[" + separators + "]"));
        operation.peer(
            "Qt",
            prepared(asQString,
                     [any](QString const& text) { return text.split(any, Qt::SkipEmptyParts); }),
            textsOf);
    }
#endif
}

// ---- strings of pairs

using List = std::vector<std::pair<std::string, std::string>>;

// Names of 8 to 16 letters, and numbers or words of 3 to 17 bytes.
List pairs(Random& random, std::size_t count) {
    constexpr std::string_view LETTERS = "abcdefghijklmnopqrstuvwxyz0123456789.-";
    auto const word = [&](std::size_t least, std::size_t most, std::size_t letters) {
        std::string text(least + random() % (most - least + 1), '\0');
        for (char& c : text)
            c = LETTERS[random() % letters];
        return text;
    };
    Sorted names;
    while (names.size() < count)
        names.emplace(word(8, 16, 26), word(3, 17, LETTERS.size()));
    List list(names.begin(), names.end());
    std::shuffle(list.begin(), list.end(), random);
    return list;
}

std::string lineOf(List const& list) {
    std::string line;
    for (auto const& [name, value] : list)
        line += (line.empty() ? "" : " ") + name + "=" + value;
    return line;
}

// The pairs of a line, sorted by name; no value contains an escape.
Sorted sortedPairs(std::string const& line) {
    Sorted sorted;
    std::istringstream stream(line);
    for (std::string field; stream >> field;)
        sorted.emplace(field.substr(0, field.find('=')), field.substr(field.find('=') + 1));
    return sorted;
}

Sorted sortedLine(List const& list) { return sortedPairs(lineOf(list)); }

template <typename Map>
Sorted sortedMap(Map const& map) {
    return {map.begin(), map.end()};
}

template <typename Map>
Map mapOf(List const& list) {
    return Map(list.begin(), list.end());
}

// The pairs as string streams write them.
std::string streamedLine(Pairs const& map) {
    std::ostringstream stream;
    char const* before = "";
    for (auto const& [name, value] : map) {
        stream << before << name << '=' << utilities::escapeString(value, false);
        before = " ";
    }
    return stream.str();
}

Pairs streamedPairs(std::string const& line) {
    Pairs map;
    std::istringstream stream(line);
    for (std::string field; stream >> field;) {
        std::size_t const equals = field.find('=');
        map.emplace(field.substr(0, equals), utilities::unescapeString(field.substr(equals + 1)));
    }
    return map;
}

#ifdef UTILLIBRARY_PEER_ABSL
using FlatPairs = absl::flat_hash_map<std::string, std::string>;

std::string abslLine(FlatPairs const& map) {
    std::string line;
    for (auto const& [name, value] : map)
        absl::StrAppend(&line, line.empty() ? "" : " ", name, "=", absl::CEscape(value));
    return line;
}

FlatPairs abslPairs(std::string const& line) {
    FlatPairs map;
    for (absl::string_view const field : absl::StrSplit(line, ' ', absl::SkipEmpty())) {
        std::pair<absl::string_view, absl::string_view> const pair =
            absl::StrSplit(field, absl::MaxSplits('=', 1));
        std::string value;
        if (absl::CUnescape(pair.second, &value))
            map.emplace(std::string(pair.first), std::move(value));
    }
    return map;
}
#endif

#ifdef UTILLIBRARY_PEER_GLIB
// A counted reference to a hash table, which owns its strings.
class GLibPairs {
public:
    GLibPairs() : table_(g_hash_table_new_full(g_str_hash, g_str_equal, g_free, g_free)) {}
    GLibPairs(GLibPairs const& other) : table_(g_hash_table_ref(other.table_)) {}
    GLibPairs& operator=(GLibPairs const&) = delete;
    ~GLibPairs() { g_hash_table_unref(table_); }

    void insert(char* name, char* value) const { g_hash_table_insert(table_, name, value); }
    char const* find(char const* name) const {
        return static_cast<char const*>(g_hash_table_lookup(table_, name));
    }

    template <typename Take>
    void each(Take take) const {
        GHashTableIter position;
        g_hash_table_iter_init(&position, table_);
        void* name = nullptr;
        void* value = nullptr;
        while (g_hash_table_iter_next(&position, &name, &value) != 0)
            take(static_cast<char const*>(name), static_cast<char const*>(value));
    }

private:
    GHashTable* table_;
};

GLibPairs glibMap(List const& list) {
    GLibPairs const map;
    for (auto const& [name, value] : list)
        map.insert(g_strdup(name.c_str()), g_strdup(value.c_str()));
    return map;
}

Sorted sortedGLib(GLibPairs const& map) {
    Sorted sorted;
    map.each([&](char const* name, char const* value) { sorted.emplace(name, value); });
    return sorted;
}

struct GLibFreeString {
    void operator()(GString* text) const { g_string_free(text, TRUE); }
};
using GLibLine = std::unique_ptr<GString, GLibFreeString>;

GLibLine glibLine(GLibPairs const& map) {
    GString* const line = g_string_new(nullptr);
    map.each([line](char const* name, char const* value) {
        if (line->len > 0) g_string_append_c(line, ' ');
        g_string_append(line, name);
        g_string_append_c(line, '=');
        g_string_append_uri_escaped(line, value, nullptr, FALSE);
    });
    return GLibLine(line);
}

Sorted sortedGLibLine(GLibLine const& line) { return sortedPairs({line->str, line->len}); }

GLibPairs glibPairs(std::string const& line) {
    GLibPairs const map;
    GLibTexts const list(g_strsplit(line.c_str(), " ", -1));
    for (char const* const field : list) {
        char const* const equals = std::strchr(field, '=');
        map.insert(g_strndup(field, static_cast<gsize>(equals - field)),
                   g_uri_unescape_string(equals + 1, nullptr));
    }
    return map;
}
#endif

#ifdef UTILLIBRARY_PEER_POCO
std::string pocoLine(Pairs const& map) {
    std::string line;
    for (auto const& [name, value] : map) {
        if (!line.empty()) line += ' ';
        line.append(name).append("=");
        Poco::URI::encode(value, "", line);
    }
    return line;
}

Pairs pocoPairs(std::string const& line) {
    Pairs map;
    Poco::StringTokenizer const list(line, " ", Poco::StringTokenizer::TOK_IGNORE_EMPTY);
    for (std::string const& field : list) {
        std::size_t const equals = field.find('=');
        std::string value;
        Poco::URI::decode(field.substr(equals + 1), value);
        map.emplace(field.substr(0, equals), std::move(value));
    }
    return map;
}
#endif

#ifdef UTILLIBRARY_PEER_QT
using QtPairs = QHash<QString, QString>;

QtPairs qtMap(List const& list) {
    QtPairs map;
    for (auto const& [name, value] : list)
        map.insert(asQString(name), asQString(value));
    return map;
}

Sorted sortedQt(QtPairs const& map) {
    Sorted sorted;
    for (auto pair = map.begin(); pair != map.end(); ++pair)
        sorted.emplace(pair.key().toStdString(), pair.value().toStdString());
    return sorted;
}

QString qtLine(QtPairs const& map) {
    QUrlQuery query;
    query.setQueryDelimiters('=', ' ');
    for (auto pair = map.begin(); pair != map.end(); ++pair)
        query.addQueryItem(pair.key(), pair.value());
    return query.query(QUrl::FullyEncoded);
}

QtPairs qtPairs(QString const& line) {
    QUrlQuery query;
    query.setQueryDelimiters('=', ' ');
    query.setQuery(line);
    QtPairs map;
    for (auto const& [name, value] : query.queryItems(QUrl::FullyDecoded))
        map.insert(name, value);
    return map;
}
#endif

void addWriting(Operation<List, Sorted> const& operation) {
    operation.plain("std::ostringstream", prepared(mapOf<Pairs>, streamedLine), sortedPairs);
    operation.ours(prepared(mapOf<Pairs>,
                            [](Pairs const& map) {
                                std::string line;
                                utilities::serializeNVP(line, map);
                                return line;
                            }),
                   sortedPairs);
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer("Abseil", prepared(mapOf<FlatPairs>, abslLine), sortedPairs);
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    operation.peer("GLib", prepared(glibMap, glibLine), sortedGLibLine);
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.peer("Poco", prepared(mapOf<Pairs>, pocoLine), sortedPairs);
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.peer("Qt", prepared(qtMap, qtLine),
                   [](QString const& line) { return sortedPairs(line.toStdString()); });
#endif
}

void addReading(Operation<std::string, Sorted> const& operation) {
    operation.plain("std::istringstream", streamedPairs, sortedMap<Pairs>);
    operation.ours(
        [](std::string const& line) {
            Pairs map;
            utilities::deserializeNVP(map, line);
            return map;
        },
        sortedMap<Pairs>);
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer("Abseil", abslPairs, sortedMap<FlatPairs>);
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    operation.peer("GLib", glibPairs, sortedGLib);
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.peer("Poco", pocoPairs, sortedMap<Pairs>);
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.peer("Qt", prepared(asQString, qtPairs), sortedQt);
#endif
}

void addAppending() {
    auto const lists = pool([](Random& random) { return pairs(random, 8); });
    auto const appended = [](List const& list) {
        std::string line;
        for (auto const& [name, value] : list) {
            if (!line.empty()) line += ' ';
            line += name + "=" + value;
        }
        return line;
    };
    Operation const operation("addToNVPString, 8 pairs", lists, lineOf);
    operation.plain("std::string", appended);
    operation.ours([](List const& list) {
        std::string line;
        for (auto const& [name, value] : list)
            utilities::addToNVPString(line, name, value);
        return line;
    });
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer("Abseil", [](List const& list) {
        std::string line;
        for (auto const& [name, value] : list)
            absl::StrAppend(&line, line.empty() ? "" : " ", name, "=", value);
        return line;
    });
#endif
}

// ---- the running average

constexpr float AVERAGE_DURATION = 60;
constexpr float SAMPLE_DURATION = 30;

struct Sample {
    Texts names;
    std::string average;
    std::string sample;
};

std::string shortNumber(Random& random) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", std::abs(threeDecimals(random)) / 1000);
    return text;
}

Sample sampleOf(Random& random, std::size_t count) {
    List list = pairs(random, count);
    Sample sample;
    for (auto& [name, value] : list) {
        sample.names.push_back(name);
        value = shortNumber(random);
    }
    sample.average = lineOf(list);
    for (auto& [name, value] : list)
        value = shortNumber(random);
    sample.sample = lineOf(list);
    return sample;
}

float mixed(float average, float sample) {
    float const weight = AVERAGE_DURATION / (AVERAGE_DURATION + SAMPLE_DURATION);
    return average * weight + sample * (1 - weight);
}

std::string printed(float value) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", static_cast<double>(value));
    return text;
}

std::string averagedByStreams(Sample const& sample) {
    Pairs averages = streamedPairs(sample.average);
    Pairs const samples = streamedPairs(sample.sample);
    for (std::string const& name : sample.names) {
        std::string& value = averages.at(name);
        value = printed(mixed(std::stof(value), std::stof(samples.at(name))));
    }
    return streamedLine(averages);
}

#ifdef UTILLIBRARY_PEER_ABSL
std::string averagedByAbseil(Sample const& sample) {
    FlatPairs averages = abslPairs(sample.average);
    FlatPairs const samples = abslPairs(sample.sample);
    auto const number = [](std::string const& text) {
        float value = 0;
        bool const read = absl::SimpleAtof(text, &value);
        benchmark::DoNotOptimize(read);
        return value;
    };
    for (std::string const& name : sample.names) {
        std::string& value = averages.at(name);
        value = absl::StrCat(mixed(number(value), number(samples.at(name))));
    }
    return abslLine(averages);
}
#endif

#ifdef UTILLIBRARY_PEER_GLIB
GLibLine averagedByGLib(Sample const& sample) {
    GLibPairs const averages = glibPairs(sample.average);
    GLibPairs const samples = glibPairs(sample.sample);
    auto const number = [](char const* text) {
        return static_cast<float>(g_ascii_strtod(text, nullptr));
    };
    for (std::string const& name : sample.names) {
        float const value =
            mixed(number(averages.find(name.c_str())), number(samples.find(name.c_str())));
        averages.insert(g_strdup(name.c_str()), g_strdup_printf("%g", static_cast<double>(value)));
    }
    return glibLine(averages);
}
#endif

#ifdef UTILLIBRARY_PEER_POCO
std::string averagedByPoco(Sample const& sample) {
    Pairs averages = pocoPairs(sample.average);
    Pairs const samples = pocoPairs(sample.sample);
    auto const number = [](std::string const& text) {
        return static_cast<float>(Poco::NumberParser::parseFloat(text));
    };
    for (std::string const& name : sample.names) {
        std::string& value = averages.at(name);
        value = printed(mixed(number(value), number(samples.at(name))));
    }
    return pocoLine(averages);
}
#endif

#ifdef UTILLIBRARY_PEER_QT
struct QtSample {
    QStringList names;
    QString average;
    QString sample;
};

QtSample qtSample(Sample const& sample) {
    QtSample result{{}, asQString(sample.average), asQString(sample.sample)};
    for (std::string const& name : sample.names)
        result.names.append(asQString(name));
    return result;
}

QString averagedByQt(QtSample const& sample) {
    QtPairs averages = qtPairs(sample.average);
    QtPairs const samples = qtPairs(sample.sample);
    for (QString const& name : sample.names) {
        QString& value = averages[name];
        float const average = mixed(value.toFloat(), samples[name].toFloat());
        value = QString::number(static_cast<double>(average), 'g', 6);
    }
    return qtLine(averages);
}
#endif

void addAverage(Operation<Sample, Sorted> const& operation) {
    operation.plain("streams, std::stof, snprintf", averagedByStreams, sortedPairs);
    operation.ours(
        [](Sample const& sample) {
            std::string average = sample.average;
            utilities::averageNVP(sample.names, average, AVERAGE_DURATION, sample.sample,
                                  SAMPLE_DURATION);
            return average;
        },
        sortedPairs);
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer("Abseil", averagedByAbseil, sortedPairs);
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    operation.peer("GLib", averagedByGLib, sortedGLibLine);
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.peer("Poco", averagedByPoco, sortedPairs);
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.peer("Qt", prepared(qtSample, averagedByQt),
                   [](QString const& line) { return sortedPairs(line.toStdString()); });
#endif
}

// ---- how many fields and pairs

// The numbers of pairs at which every library is measured; at the others only the fastest one is.
constexpr std::array<std::size_t, 3> MAIN_COUNTS = {8, 100, 10'000};
constexpr std::array<std::size_t, 9> COUNTS = {1, 8, 32, 100, 1000, 4096, 10'000, 40'000, 100'000};
// `averageNVP` allocates a table from 33 names on.
constexpr std::array<std::size_t, 9> NAME_COUNTS = {1, 8, 32, 33, 100, 1000, 4096, 10'000, 100'000};
constexpr std::size_t THREADED_COUNT = 8;

bool isMain(std::size_t count) {
    return std::find(MAIN_COUNTS.begin(), MAIN_COUNTS.end(), count) != MAIN_COUNTS.end();
}

// Some ten thousand pairs in all, so that each pool takes about the same memory.
template <typename Make>
auto countedPool(std::size_t count, Make make) {
    return pool([&](Random& random) { return make(random, count); },
                std::clamp(10'000 / count, 2UL, POOL_SIZE));
}

// The rows that an operation has for this number of pairs.
template <typename Input, typename Wanted>
Operation<Input, Wanted> ofCount(Operation<Input, Wanted> const& operation, std::size_t count) {
    if (count == THREADED_COUNT) return operation.threaded();
    return isMain(count) ? operation : operation.withPeers({"Abseil"});
}

void addSplits() {
    auto const counted = [](std::size_t count, std::string const& separators) {
        return pool([&](Random& random) { return fields(random, count, separators); });
    };
    addSplit(splitting("10 fields", counted(10, ","), ",").threaded(), ",");
    addSplit(splitting("1000 fields", counted(1000, ","), ","), ",");
    addSplit(splitting("1000 fields, 2 separators", counted(1000, ",;"), ",;"), ",;");
    for (std::size_t const size : SIZES) {
        auto const operation = splitting(sizeName(size), textPool(size, fieldsOfSize), ",");
        addSplit(isStep(size) ? operation.withPeers({"Abseil"}) : operation, ",");
    }
}

void addPairs() {
    for (std::size_t const count : COUNTS) {
        std::string const name = std::to_string(count) + (count == 1 ? " pair" : " pairs");
        std::vector<List> const lists = countedPool(count, pairs);
        Texts lines;
        for (List const& list : lists)
            lines.push_back(lineOf(list));
        addWriting(ofCount(Operation("serialize, " + name, lists, sortedLine), count));
        addReading(ofCount(Operation("deserialize, " + name, lines, sortedPairs), count));
    }
}

void addAverages() {
    auto const averaged = [](Sample const& s) { return sortedPairs(averagedByStreams(s)); };
    for (std::size_t const count : NAME_COUNTS) {
        std::string const name = std::to_string(count) + (count == 1 ? " name" : " names");
        addAverage(
            ofCount(Operation("average, " + name, countedPool(count, sampleOf), averaged), count));
    }
}

}  // namespace

void benchmarks::addRows() {
    addSplits();
    addAppending();
    addPairs();
    addAverages();
}

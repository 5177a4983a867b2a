#include <any>
#include <cmath>
#include <cstdlib>
#include <string>
#include <type_traits>
#include <variant>

#include <utillibrary/datatypes/Variant.h>

#include "support/operation.h"
#include "support/pool.h"

#ifdef UTILLIBRARY_PEER_BOOST
#include <boost/any.hpp>
#include <boost/variant.hpp>
#endif
#ifdef UTILLIBRARY_PEER_GLIB
#include <glib-object.h>

#include "support/glib_time.h"
#endif
#ifdef UTILLIBRARY_PEER_POCO
#include <Poco/DateTime.h>
#include <Poco/Dynamic/Var.h>
#endif
#ifdef UTILLIBRARY_PEER_QT
#include <QDateTime>
#include <QMetaType>
#include <QString>
#include <QVariant>
#endif

// A Variant is made, copied, and given another value. It is compared with other types that contain
// a value of one of several types. This file is long, because one structure describes each of them.
namespace {

using namespace benchmarks;
using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;

constexpr long MILLISECONDS = 1000;
constexpr unsigned NANOSECONDS_PER_MILLISECOND = 1'000'000;

// Times of whole milliseconds, which every library can store.
xtime_t anyTime(Random& random) {
    auto const milliseconds = static_cast<unsigned>(between(random, 0, MILLISECONDS - 1));
    return {anySecond(random), milliseconds * NANOSECONDS_PER_MILLISECOND};
}

// Unused if no library with such a count is installed.
[[maybe_unused]] long millisecondsOf(xtime_t const& time) {
    return time.getDateTime() * MILLISECONDS + time.getNanoseconds() / NANOSECONDS_PER_MILLISECOND;
}

[[maybe_unused]] xtime_t ofMilliseconds(long count) {
    return {count / MILLISECONDS,
            static_cast<unsigned>(count % MILLISECONDS) * NANOSECONDS_PER_MILLISECOND};
}

// ---- types that contain a value
//
// How a library stores a value. WHO is its name, and Holder its type. `native` converts a value to
// the library's own type before the clock starts. `hold` makes a Holder, `assign` replaces its
// value as the library's manual does, and `read` reads it back. TEXT_NOTE says if the library
// stores strings in another form.

struct Ours {
    using Holder = Variant;
    static constexpr char const* WHO = "utillibrary";
    static constexpr char const* TEXT_NOTE = nullptr;

    template <typename Value>
    static Value const& native(Value const& value) {
        return value;
    }
    template <typename Native>
    static Holder hold(Native const& value) {
        return Holder(value);
    }
    template <typename Native>
    static void assign(Holder& holder, Native const& value) {
        holder.assign(value);
    }
    template <typename Value>
    static Value read(Holder const& holder) {
        if constexpr (std::is_same_v<Value, std::wstring>) {
            return holder.toString(0);
        } else if constexpr (std::is_same_v<Value, std::string>) {
            return holder.toString();
        } else {
            return holder;
        }
    }
};

// Types that contain a value of any type.
template <typename AnyHolder>
struct Generic {
    using Holder = AnyHolder;
    static constexpr char const* TEXT_NOTE = "bytes, not widened";

    template <typename Value>
    static Value const& native(Value const& value) {
        return value;
    }
    template <typename Native>
    static Holder hold(Native const& value) {
        return Holder(value);
    }
    template <typename Native>
    static void assign(Holder& holder, Native const& value) {
        holder = value;
    }
};

struct StandardVariant
    : Generic<std::variant<std::monostate, int, double, xtime_t, std::string, std::wstring>> {
    static constexpr char const* WHO = "std::variant";
    template <typename Value>
    static Value read(Holder const& holder) {
        return std::get<Value>(holder);
    }
};

struct StandardAny : Generic<std::any> {
    static constexpr char const* WHO = "std::any";
    template <typename Value>
    static Value read(Holder const& holder) {
        return std::any_cast<Value>(holder);
    }
};

#ifdef UTILLIBRARY_PEER_BOOST
struct BoostVariant
    : Generic<boost::variant<boost::blank, int, double, xtime_t, std::string, std::wstring>> {
    static constexpr char const* WHO = "boost::variant";
    template <typename Value>
    static Value read(Holder const& holder) {
        return boost::get<Value>(holder);
    }
};

struct BoostAny : Generic<boost::any> {
    static constexpr char const* WHO = "boost::any";
    template <typename Value>
    static Value read(Holder const& holder) {
        return boost::any_cast<Value>(holder);
    }
};
#endif

#ifdef UTILLIBRARY_PEER_POCO
struct PocoVar : Generic<Poco::Dynamic::Var> {
    static constexpr char const* WHO = "Poco";

    using Generic::native;
    static Poco::DateTime native(xtime_t const& time) {
        return Poco::DateTime(Poco::Timestamp(millisecondsOf(time) * MILLISECONDS));
    }
    template <typename Value>
    static Value read(Holder const& holder) {
        if constexpr (std::is_same_v<Value, xtime_t>) {
            return ofMilliseconds(holder.extract<Poco::DateTime>().timestamp().epochMicroseconds() /
                                  MILLISECONDS);
        } else {
            return holder.extract<Value>();
        }
    }
};
#endif

#ifdef UTILLIBRARY_PEER_QT
struct Qt6 {
    using Holder = QVariant;
    static constexpr char const* WHO = "Qt";
    static constexpr char const* TEXT_NOTE = nullptr;  // it widens bytes, to 16 bits

    template <typename Value>
    static Value const& native(Value const& value) {
        return value;
    }
    static QDateTime native(xtime_t const& time) {
        return QDateTime::fromMSecsSinceEpoch(millisecondsOf(time), Qt::UTC);
    }
    static QString widened(std::string const& text) {
        return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
    }
    static QString widened(std::wstring const& text) { return QString::fromStdWString(text); }

    template <typename Native>
    static Holder hold(Native const& value) {
        if constexpr (requires { widened(value); }) {
            return Holder(widened(value));
        } else {
            return Holder(value);
        }
    }
    template <typename Native>
    static void assign(Holder& holder, Native const& value) {
        if constexpr (requires { widened(value); }) {
            holder.setValue(widened(value));
        } else {
            holder.setValue(value);
        }
    }
    template <typename Value>
    static Value read(Holder const& holder) {
        if constexpr (std::is_same_v<Value, xtime_t>) {
            return ofMilliseconds(holder.toDateTime().toMSecsSinceEpoch());
        } else if constexpr (std::is_same_v<Value, std::string>) {
            return holder.toString().toStdString();
        } else if constexpr (std::is_same_v<Value, std::wstring>) {
            return holder.toString().toStdWString();
        } else {
            return holder.value<Value>();
        }
    }
};
#endif

#ifdef UTILLIBRARY_PEER_GLIB
// A GValue with a destructor and a copy constructor.
class GLibValue {
public:
    GLibValue() = default;
    explicit GLibValue(GType type) { g_value_init(&value_, type); }
    GLibValue(GLibValue const& other) {
        if (!G_IS_VALUE(&other.value_)) return;
        g_value_init(&value_, G_VALUE_TYPE(&other.value_));
        g_value_copy(&other.value_, &value_);
    }
    GLibValue& operator=(GLibValue const&) = delete;
    ~GLibValue() {
        if (G_IS_VALUE(&value_)) g_value_unset(&value_);
    }

    GValue* get() { return &value_; }
    GValue const* get() const { return &value_; }

private:
    GValue value_ = G_VALUE_INIT;
};

struct GLib {
    using Holder = GLibValue;
    static constexpr char const* WHO = "GLib";
    static constexpr char const* TEXT_NOTE = "bytes, not widened";

    template <typename Value>
    static Value const& native(Value const& value) {
        return value;
    }
    static GLibTime native(xtime_t const& time) { return GLibTime(time); }

    static GType type(int /*value*/) { return G_TYPE_INT; }
    static GType type(double /*value*/) { return G_TYPE_DOUBLE; }
    static GType type(GLibTime const& /*value*/) { return G_TYPE_DATE_TIME; }
    static GType type(std::string const& /*value*/) { return G_TYPE_STRING; }

    static void set(Holder& holder, int value) { g_value_set_int(holder.get(), value); }
    static void set(Holder& holder, double value) { g_value_set_double(holder.get(), value); }
    static void set(Holder& holder, GLibTime const& value) {
        g_value_set_boxed(holder.get(), value.get());
    }
    static void set(Holder& holder, std::string const& value) {
        g_value_set_string(holder.get(), value.c_str());
    }

    template <typename Native>
    static Holder hold(Native const& value) {
        Holder holder(type(value));
        set(holder, value);
        return holder;
    }
    template <typename Native>
    static void assign(Holder& holder, Native const& value) {
        if (!G_IS_VALUE(holder.get())) g_value_init(holder.get(), type(value));
        set(holder, value);
    }
    template <typename Value>
    static Value read(Holder const& holder) {
        if constexpr (std::is_same_v<Value, int>) {
            return g_value_get_int(holder.get());
        } else if constexpr (std::is_same_v<Value, double>) {
            return g_value_get_double(holder.get());
        } else if constexpr (std::is_same_v<Value, std::string>) {
            return g_value_get_string(holder.get());
        } else {
            auto* const time = static_cast<GDateTime*>(g_value_get_boxed(holder.get()));
            return ofMilliseconds(GLibTime(g_date_time_ref(time)).milliseconds());
        }
    }
};
#endif

// ---- what is measured with each of these types

template <typename Value>
struct Holding {
    Holding(std::string const& kind, std::vector<Value> const& values)
        : build("from " + kind, values, AsItIs()),
          copy("copy, " + kind, values, AsItIs()),
          overwrite("overwrite, " + kind, values, AsItIs()) {}

    Operation<Value, Value> build;
    Operation<Value, Value> copy;
    Operation<Value, Value> overwrite;
};

template <typename Library, typename Value, typename Way>
void addRow(Operation<Value, Value> const& operation, Way const& way) {
    auto const read = [](typename Library::Holder const& holder) {
        return Library::template read<Value>(holder);
    };
    if constexpr (std::is_same_v<Library, Ours>) {
        operation.ours(way, read);
    } else if (std::is_same_v<Value, std::string> && Library::TEXT_NOTE != nullptr) {
        operation.otherJob(Library::WHO, Library::TEXT_NOTE, way);
    } else {
        operation.peer(Library::WHO, way, read);
    }
}

template <typename Library, typename Value>
void addHolder(Holding<Value> const& holding) {
    using Holder = typename Library::Holder;
    auto const own = [](Value const& value) { return Library::native(value); };
    auto const stored = [](Value const& value) { return Library::hold(Library::native(value)); };

    addRow<Library>(holding.build,
                    prepared(own, [](auto const& native) { return Library::hold(native); }));
    addRow<Library>(holding.copy,
                    prepared(stored, [](Holder const& holder) { return Holder(holder); }));
    addRow<Library>(holding.overwrite,
                    prepared(own, [target = Holder()](auto const& native) mutable -> Holder const& {
                        Library::assign(target, native);
                        return target;
                    }));
}

template <typename... Libraries, typename Value>
void addHolders(Holding<Value> const& holding) {
    (addHolder<Libraries>(holding), ...);
}

constexpr char const* ONLY_STRINGS = "contains strings only";

// The least that a wide string needs: its memory, and the copy of its characters.
void addTextFloors(Holding<std::string> const& holding) {
    auto const wide = [](std::string const& text) {
        return std::wstring(text.begin(), text.end());
    };
    holding.build.floor("malloc, free", [](std::string const& text) {
        void* const block = std::malloc(sizeof(wchar_t) * (text.size() + 1));
        benchmark::DoNotOptimize(block);
        std::free(block);
        return 0;
    });
    holding.copy.floor("std::wstring",
                       prepared(wide, [](std::wstring const& text) { return std::wstring(text); }));
    // What a host writes that needs no other type.
    auto const assigned = [](std::wstring& target, std::string const& text) -> std::wstring& {
        return target.assign(text.begin(), text.end());
    };
    holding.build.otherJob("std::wstring", ONLY_STRINGS, wide);
    holding.overwrite.otherJob(
        "std::wstring, widened", ONLY_STRINGS,
        [ assigned, target = std::wstring() ](std::string const& text) mutable -> auto const& {
            return assigned(target, text);
        });
    holding.overwrite.floor(
        "std::wstring",
        prepared(
            wide, [target = std::wstring()](std::wstring const& text) mutable -> auto const& {
                return target = text;
            }));
}

template <typename Value>
void addAllHolders(Holding<Value> const& holding) {
    addHolders<Ours, StandardVariant, StandardAny>(holding);
#ifdef UTILLIBRARY_PEER_BOOST
    addHolders<BoostVariant, BoostAny>(holding);
#endif
#ifdef UTILLIBRARY_PEER_QT
    addHolder<Qt6>(holding);
#endif
    // The two have no wide strings.
    if constexpr (!std::is_same_v<Value, std::wstring>) {
#ifdef UTILLIBRARY_PEER_POCO
        addHolder<PocoVar>(holding);
#endif
#ifdef UTILLIBRARY_PEER_GLIB
        addHolder<GLib>(holding);
#endif
    }
}

void addSizes(Holding<std::string> const& texts) {
    addHolders<Ours, StandardVariant>(texts);
#ifdef UTILLIBRARY_PEER_QT
    addHolder<Qt6>(texts);
#endif
    addTextFloors(texts);
}

// Of 1 byte to 16 KiB, each power of two as likely as the others. So a short string often replaces
// a long one, and a long one a short one.
std::string anySize(Random& random) {
    auto const exponent = std::uniform_real_distribution<double>(0, 14)(random);
    auto const size = static_cast<std::size_t>(std::exp2(exponent));
    return anyText(random, size, size);
}

void addLargeTexts() {
    for (std::size_t const size : SIZES)
        addSizes(Holding<std::string>("string, " + sizeName(size), textsOf(size)));
    addSizes(Holding<std::string>("string of 1 byte to 16 KiB", pool(anySize)));
}

// ---- the names of the types

void addNames() {
    auto const numbers =
        pool([](Random& random) { return static_cast<int>(between(random, 0, 14)); });

    Operation const toName("type number to name", numbers, [](int number) {
        return std::wstring(Variant::typeNames[number == 0 ? 14 : number - 1]);
    });
    toName.ours([](int number) { return Variant::typeNumber2Name(number); });
    Operation const toNumber("type name to number", numbers, AsItIs());
    toNumber.ours(prepared([](int number) { return Variant::typeNumber2Name(number); },
                           [](wchar_t const* name) { return Variant::typeName2Number(name); }));

    [[maybe_unused]] constexpr char const* NOTE = "other types";
#ifdef UTILLIBRARY_PEER_QT
    auto const qtType = [](int number) { return QMetaType(QMetaType::Bool + number); };
    toName.otherJob("Qt", NOTE, prepared(qtType, [](QMetaType type) { return type.name(); }));
    toNumber.otherJob(
        "Qt", NOTE,
        prepared([qtType](int number) { return QByteArray(qtType(number).name()); },
                 [](QByteArray const& name) { return QMetaType::fromName(name).id(); }));
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    auto const glibType = [](int number) {
        return G_TYPE_CHAR + (static_cast<GType>(number) << G_TYPE_FUNDAMENTAL_SHIFT);
    };
    toName.otherJob("GLib", NOTE, prepared(glibType, g_type_name));
    toNumber.otherJob("GLib", NOTE,
                      prepared([glibType](int number) { return g_type_name(glibType(number)); },
                               [](char const* name) { return g_type_from_name(name); }));
#endif
}

}  // namespace

void benchmarks::addRows() {
    addAllHolders(Holding<int>(
        "int", pool([](Random& random) { return static_cast<int>(numberOf(random, 9)); })));
    addAllHolders(Holding<double>("double", pool(anyDouble)));
    addAllHolders(Holding<xtime_t>("date-time", pool(anyTime)));

    auto const shortText = [](Random& random) { return anyText(random, 8, 14); };
    Holding<std::string> const shortTexts("string of 8 to 14 bytes", pool(shortText));
    Holding<std::string> const longTexts("string of 256 bytes", textsOf(256));
    addAllHolders(shortTexts);
    addTextFloors(shortTexts);
    addAllHolders(longTexts);
    addTextFloors(longTexts);
    addAllHolders(Holding<std::wstring>("wide string of 8 to 14", pool([&](Random& random) {
                                            std::string const text = shortText(random);
                                            return std::wstring(text.begin(), text.end());
                                        })));
    addLargeTexts();
    addNames();
}

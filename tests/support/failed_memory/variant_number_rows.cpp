#include <fcntl.h>
#include <iostream>
#include <locale>
#include <unistd.h>

#include <utillibrary/datatypes/Variant.h>

#include "support/failed_memory/rows.h"
#include "support/locales.h"

// A Variant read as a number.
namespace testing_support {

namespace {

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;

// Discards standard output for a scope: a value that cannot be converted writes a line.
class SilentOutput {
public:
    SilentOutput() : kept_(dup(STDOUT_FILENO)) {
        std::cout.flush();
        int const nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, STDOUT_FILENO);
        close(nowhere);
    }
    ~SilentOutput() {
        std::cout.flush();
        dup2(kept_, STDOUT_FILENO);
        close(kept_);
    }
    SilentOutput(SilentOutput const&) = delete;
    SilentOutput& operator=(SilentOutput const&) = delete;

private:
    int kept_;
};

// Every type of value, each with a number that every target contains.
std::vector<Variant> numbers() {
    std::vector<Variant> all = {static_cast<unsigned char>(42),
                                static_cast<unsigned short>(42),
                                42U,
                                '\x2A',
                                static_cast<short>(42),
                                42,
                                42.0F,
                                42.0,
                                42L,
                                42UL,
                                L"42 and more",
                                L" +42"};
    return all;
}

template <typename Read>
void addReading(Rows& rows, std::string const& symbol, Read const& read, bool integer) {
    std::string const name = "Variant::" + symbol + "() const";
    rows.push_back(
        {name, "numbers of every type need no memory", Memory::NONE, [read](Trial& trial) {
             std::vector<Variant> const all = numbers();
             trial.run([&] {
                 for (Variant const& variant : all) {
                     EXPECT_EQ(read(variant), read(42));
                 }
             });
         }});
    rows.push_back(
        {name, "no value, Null and a DateTime need no memory", Memory::NONE, [read](Trial& trial) {
             SilentOutput const silent;
             Variant const none;
             Variant null;
             null.makeNull();
             Variant const time(xtime_t(1709618889, 0));
             trial.run([&] {
                 EXPECT_EQ(read(none), read(0));
                 EXPECT_EQ(read(null), read(0));
                 EXPECT_EQ(read(time), read(5216335689.0));
             });
         }});
    rows.push_back({name, "a String under a host's own locale",
                    integer ? Memory::NEEDED : Memory::NONE, [read, integer](Trial& trial) {
                        ScopedCppLocale const scope(freshLocale());
                        // Only an integer is read with groups: 100 in the low 8 bits.
                        Variant const grouped(L"  1_234_788 and more");
                        auto const whole = integer ? read(Variant(1234788)) : read(Variant(1));
                        trial.expectWholeOrNone([&] { return read(grouped); }, whole);
                    }});
}

template <typename Target>
void addConversion(Rows& rows, std::string const& member, std::string const& target, bool integer,
                   Target (Variant::*call)() const) {
    addReading(
        rows, member, [call](Variant const& variant) { return (variant.*call)(); }, integer);
    addReading(
        rows, "operator " + target,
        [](Variant const& variant) { return variant.operator Target(); }, integer);
}

}  // namespace

Rows variantNumberRows() {
    Rows rows;
    addConversion(rows, "toUbyte", "unsigned char", true, &Variant::toUbyte);
    addConversion(rows, "toByte", "char", true, &Variant::toByte);
    addConversion(rows, "toInt16", "short", true, &Variant::toInt16);
    addConversion(rows, "toUint16", "unsigned short", true, &Variant::toUint16);
    addConversion(rows, "toInt32", "int", true, &Variant::toInt32);
    addConversion(rows, "toUint32", "unsigned int", true, &Variant::toUint32);
    addConversion(rows, "toInt64", "long", true, &Variant::toInt64);
    addConversion(rows, "toUint64", "unsigned long", true, &Variant::toUint64);
    addConversion(rows, "toFloat", "float", false, &Variant::toFloat);
    addConversion(rows, "toDouble", "double", false, &Variant::toDouble);
    addConversion(rows, "toBool", "bool", false, &Variant::toBool);
    for (char const* const symbol :
         {"Variant::toXtime_t() const", "Variant::operator xtime_t() const"}) {
        rows.push_back({symbol, "needs no memory", Memory::NONE, [](Trial& trial) {
                            Variant const time(xtime_t(1709618889, 5));
                            trial.run([&] {
                                EXPECT_EQ(time.toXtime_t(), xtime_t(1709618889, 5));
                                EXPECT_EQ(time.operator xtime_t(), xtime_t(1709618889, 5));
                            });
                        }});
    }
    return rows;
}

}  // namespace testing_support

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

#include <utillibrary/datatypes/ByteStream.h>
#include <utillibrary/datatypes/Library.h>
#include <utillibrary/datatypes/String.h>
#include <utillibrary/datatypes/Variant.h>
#include <utillibrary/datatypes/xtime.h>
#include <utillibrary/utilities/StringNVP.h>
#include <utillibrary/utilities/StringUtilities.h>
#include <utillibrary/utilities/SysStats.h>

#include "operations/operations.h"

// Eight threads run every operation at the same time, on objects of their own and on constant
// objects that all of them share. It is made for a thread sanitizer; results are compared, too.

using namespace com::halvorin::datatypes;
using namespace com::halvorin::utilities;
using namespace com::halvorin::test;

namespace {

constexpr int THREADS = 8;
constexpr int CASES = 200;

struct Shared {
    Variant number{2.5};
    Variant text{"42 km"};
    Variant time{xtime_t(1709618889, 250000000)};
    xtime_t moment{1709618889, 250000000};
    ByteStream bytes{"abc", 3};
    String string{"shared"};
    Library library{std::string("libm.so.6")};
    std::vector<std::string> list{"a", "bc", "d"};
    std::unordered_map<std::string, std::string> pairs{{"a", "1"}, {"b", "two words"}};
    std::string line{"a=1 b=2"};
};

// True if all constant operations on the shared objects give what they must.
bool readsSharedObjects(Shared const& shared) {
    std::string out;
    serializeNVP(out, shared.pairs);
    std::string average = shared.line;
    averageNVP({"a", "b"}, average, 1, shared.line, 1);
    SysStats machine;
    ByteStream const copy(shared.bytes);
    Variant const variantCopy(shared.text);
    return shared.number.toInt32() == 2 && shared.number.toString() == "2.5" &&
           shared.text.toInt64() == 42 && shared.text.toDouble() == 42 && shared.text.toBool() &&
           variantCopy.toString() == "42 km" && shared.text.toString(0) == L"42 km" &&
           shared.time.toString() == "2024-03-05T06:08:09.250Z" &&
           shared.time.toXtime_t() == shared.moment &&
           shared.moment.toString(true, 0, "") == "2024-03-05T06:08:09.250Z" &&
           shared.moment.toYYYYString() == "20240305060809" && copy.size() == 3 &&
           shared.string() == "shared" && shared.library.procAddress("cos") != nullptr &&
           searchVector(shared.list, "c", true) == shared.list.begin() + 1 && out.size() == 20 &&
           average.size() == 7 && machine.systemMemory() >= 0 && machine.uptime() >= 0;
}

}  // namespace

// Runs for so many seconds as its argument says, ten without one.
int main(int count, char** arguments) {
    auto const seconds = std::chrono::seconds(count > 1 ? std::atoi(arguments[1]) : 10);
    auto const groups = groupsOfOperations();
    std::vector<std::uint64_t> wanted;
    for (Group const& group : groups)
        wanted.push_back(group.hashOf(CASES));

    Shared const shared;
    std::atomic<long> rounds{0};
    std::atomic<long> differences{0};
    auto const end = std::chrono::steady_clock::now() + seconds;
    std::vector<std::thread> threads;
    for (int i = 0; i < THREADS; ++i) {
        threads.emplace_back([&, i] {
            for (std::size_t g = static_cast<std::size_t>(i);
                 std::chrono::steady_clock::now() < end; ++g) {
                std::size_t const place = g % groups.size();
                if (groups[place].hashOf(CASES) != wanted[place]) ++differences;
                if (!readsSharedObjects(shared)) ++differences;
                ++rounds;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    std::printf("%ld rounds in %d threads, %ld differences\n", rounds.load(), THREADS,
                differences.load());
    return rounds > 0 && differences == 0 ? 0 : 1;
}

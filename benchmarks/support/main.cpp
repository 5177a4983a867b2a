#include <malloc.h>
#include <set>
#include <string>

#include <benchmark/benchmark.h>

#include "support/operation.h"

// What every program of benchmarks shares: names of rows, a list of what is missing, and main.
namespace benchmarks {

namespace {

constexpr int MOST_MEMORY = 32 * 1024 * 1024;  // of what mallopt takes

std::set<std::string>& missing() {
    static std::set<std::string> names;
    return names;
}

char const* nameOf(Role role) {
    switch (role) {
        case Role::OURS:
            return "ours";
        case Role::PLAIN:
            return "plain";
        case Role::PEER:
            return "peer";
        case Role::OTHER_JOB:
            return "other job";
        case Role::FLOOR:
            return "floor";
    }
    return "";
}

std::string listed(std::set<std::string> const& names) {
    std::string list;
    for (std::string const& name : names)
        list += (list.empty() ? "" : ", ") + name;
    return list;
}

}  // namespace

std::string rowName(std::string const& operation, Role role, std::string const& who) {
    return operation + '/' + nameOf(role) + '/' + who;
}

void leaveOut(std::string const& what) { missing().insert(what); }

}  // namespace benchmarks

int main(int argc, char** argv) {
    // What is freed stays in the heap. Else a row that frees the block at its end might give the
    // pages back each time, and take them again, or not, as the rows before it have left the heap.
    mallopt(M_TRIM_THRESHOLD, benchmarks::MOST_MEMORY);
    mallopt(M_MMAP_THRESHOLD, benchmarks::MOST_MEMORY);
    std::string const peers = UTILLIBRARY_MISSING_PEERS;
    if (!peers.empty()) benchmarks::leaveOut(peers);
    benchmarks::addRows();
    benchmark::AddCustomContext("left_out", benchmarks::listed(benchmarks::missing()));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

#include <malloc.h>
#include <set>
#include <string>

#include <benchmark/benchmark.h>

#include "support/operation.h"

// What all benchmark programs share: names of rows, a list of missing libraries, and main.
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
    // Freed memory stays in the heap. Otherwise a row might return pages to the kernel and get them
    // again each time, or not, which would depend on the rows before it.
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

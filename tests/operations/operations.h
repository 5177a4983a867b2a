#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// Every operation of the library whose result depends on its arguments alone, in groups.
namespace com::halvorin::test {

struct Group {
    std::string name;
    /// Runs so many random cases, the same ones each time, and gives a hash of all results.
    std::function<std::uint64_t(int cases)> hashOf;
};

std::vector<Group> groupsOfOperations();

}  // namespace com::halvorin::test

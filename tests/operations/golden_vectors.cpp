#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "operations/operations.h"

// Golden vectors: for each group of operations, one hash of the results of 100 000 cases. The file
// hashes.txt has the hashes that every processor and every compiler must give.

using namespace com::halvorin::test;

// Prints the name and the hash of each group, one group per line. With a file of such lines as its
// argument it compares, and gives status 1 for a difference.
int main(int count, char** arguments) {
    constexpr int CASES = 100'000;
    std::string all;
    for (Group const& group : groupsOfOperations()) {
        char hash[32];
        std::snprintf(hash, sizeof hash, " %016lx\n", group.hashOf(CASES));
        all += group.name + hash;
    }
    std::fputs(all.c_str(), stdout);
    if (count < 2) return 0;
    std::ifstream file(arguments[1]);
    std::string const wanted{std::istreambuf_iterator<char>(file), {}};
    if (all == wanted) return 0;
    std::printf("The hashes differ from those of %s:\n%s", arguments[1], wanted.c_str());
    return 1;
}

#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fstream>
#include <malloc.h>
#include <string>
#include <unistd.h>

#include "operations/operations.h"

// Runs millions of mixed operations and compares resident memory and open descriptors before and
// after. A leak of one byte per operation would show as megabytes.

using namespace com::halvorin::test;

namespace {

long residentKilobytes() {
    malloc_trim(0);
    std::ifstream file("/proc/self/statm");
    long size = 0;
    long resident = 0;
    file >> size >> resident;
    return resident * sysconf(_SC_PAGESIZE) / 1024;
}

int openDescriptors() {
    int count = 0;
    DIR* const folder = opendir("/proc/self/fd");
    if (folder == nullptr) return -1;
    while (readdir(folder) != nullptr)
        ++count;
    closedir(folder);
    return count;
}

}  // namespace

// Runs as many cases of each group as its argument says.
int main(int count, char** arguments) {
    constexpr long MOST_GROWTH = 1024;  // in KiB
    int const cases = count > 1 ? std::atoi(arguments[1]) : 100'000;
    auto const groups = groupsOfOperations();
    for (Group const& group : groups)
        group.hashOf(1000);  // libc and the C++ library keep some memory of their first calls
    long const memory = residentKilobytes();
    int const descriptors = openDescriptors();
    for (Group const& group : groups)
        group.hashOf(cases);
    long const growth = residentKilobytes() - memory;
    std::printf("%zu groups of %d cases: memory grew by %ld KiB, open descriptors %d, then %d\n",
                groups.size(), cases, growth, descriptors, openDescriptors());
    return growth <= MOST_GROWTH && openDescriptors() == descriptors ? 0 : 1;
}

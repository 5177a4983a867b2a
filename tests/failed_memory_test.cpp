#include <cxxabi.h>
#include <fcntl.h>
#include <fstream>
#include <iostream>
#include <limits>
#include <link.h>
#include <memory>
#include <set>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "support/failed_memory/rows.h"
#include "support/failing_malloc.h"

// Every exported function while memory fails: malloc and similar functions are this program's own,
// so that streams, printf and the loader fail too. Each allocation in turn fails, alone and with
// all after it. Afterwards no block and no handle is lost, and each object is in the state that its
// header states.

using namespace testing_support;

namespace {

Rows allRows() {
    Rows rows;
    for (Rows (*const part)() :
         {byteStreamRows, libraryRows, stringPairRows, stringRows, systemRows, timeRows,
          variantNumberRows, variantRows, variantTextRows}) {
        Rows const more = part();
        rows.insert(rows.end(), more.begin(), more.end());
    }
    return rows;
}

// ---- what may be lost

struct Resources {
    long blocks;
    long descriptors;
    long objects;  // that the loader has loaded

    bool operator==(Resources const&) const = default;
};

std::ostream& operator<<(std::ostream& out, Resources const& resources) {
    return out << resources.blocks << " blocks, " << resources.descriptors << " descriptors, "
               << resources.objects << " loaded objects";
}

Resources resources() {
    Resources now{liveBlocks(), 0, 0};
    for (int descriptor = 0; descriptor < 256; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) != -1) ++now.descriptors;
    }
    dl_iterate_phdr(
        [](dl_phdr_info*, std::size_t, void* count) {
            ++*static_cast<long*>(count);
            return 0;
        },
        &now.objects);
    return now;
}

// ---- every row

// Takes  trial: a row's run with one failing allocation
void runAndCompare(Row const& row, Trial& trial) {
    SCOPED_TRACE(testing::Message()
                 << "allocation " << trial.failing()
                 << (trial.andAllAfter() ? " and all after it" : "") << " fails");
    takeReportCount();
    Resources const before = resources();
    row.run(trial);
    Resources after = resources();
    after.blocks -= trial.lostByLoader;
    EXPECT_EQ(after, before);
}

int failedExpectations() {
    return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
}

// Gives  how many operations ran. The first failure ends the row.
long runRow(Row const& row) {
    // Libraries initialise themselves at first use, and keep that memory.
    int const failuresBefore = failedExpectations();
    constexpr long NO_ALLOCATION = std::numeric_limits<long>::max();
    for (int warmUp = 0; warmUp < 2; ++warmUp) {
        Trial trial(NO_ALLOCATION, false);
        row.run(trial);
        EXPECT_EQ(trial.requested() > 0, row.memory == Memory::NEEDED)
            << trial.requested() << " allocations";
    }
    long operations = 0;
    for (bool const andAllAfter : {false, true}) {
        bool reached = true;
        for (long failing = 0; reached && failedExpectations() == failuresBefore; ++failing) {
            Trial trial(failing, andAllAfter);
            runAndCompare(row, trial);
            ++operations;
            reached = trial.reached();
        }
    }
    return operations;
}

TEST(FailedMemory, LosesNothingAndCutsNothing) {
    Rows const rows = allRows();
    long operations = 0;
    for (Row const& row : rows) {
        SCOPED_TRACE(row.symbol + ": " + row.fact);
        operations += runRow(row);
    }
    std::cout << rows.size() << " rows, " << operations << " operations, " << failedAllocations()
              << " failed allocations\n";
}

// ---- every export

// Data, which is no operation.
std::set<std::string> const CONSTANTS = {"Variant::DBL_THRESHOLD", "Variant::FLT_THRESHOLD",
                                         "Variant::typeNames", "Variant::typeNumbers"};

std::string demangled(std::string const& symbol) {
    int status = 0;
    std::unique_ptr<char, void (*)(void*)> const name(
        abi::__cxa_demangle(symbol.c_str(), nullptr, nullptr, &status), &std::free);
    return status == 0 ? name.get() : "";
}

// The two or three symbols of a constructor or destructor have one name.
std::set<std::string> exportedNames() {
    std::ifstream list(UTILLIBRARY_EXPORTED_SYMBOLS);
    std::set<std::string> full;
    std::set<std::string> names;
    for (std::string symbol; std::getline(list, symbol);) {
        std::string const name = demangled(symbol);
        EXPECT_NE(name, "") << symbol;
        full.insert(name);
        names.insert(shortName(name));
    }
    EXPECT_EQ(names.size(), full.size());  // no two functions share a short name
    return names;
}

TEST(FailedMemory, HasARowForEveryExport) {
    std::set<std::string> const exported = exportedNames();
    EXPECT_GT(exported.size(), 150U);
    std::set<std::string> covered = CONSTANTS;
    for (Row const& row : allRows())
        covered.insert(row.symbol);
    for (std::string const& name : exported) {
        EXPECT_TRUE(covered.contains(name)) << name << " has no row";
    }
    for (std::string const& name : covered) {
        EXPECT_TRUE(exported.contains(name)) << name << " is not exported";
    }
}

}  // namespace

#pragma once

#include <functional>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "support/failing_malloc.h"

// What each exported function does when memory fails: the tables of failed_memory_test.
namespace testing_support {

enum class End {
    DONE,
    BAD_ALLOC,
    LONG_CODE,
    UNSIGNED_CODE,
    INVALID_ARGUMENT,
    LOGIC_ERROR,
    RUNTIME_ERROR
};

std::ostream& operator<<(std::ostream& out, End end);

/// One run of a row: one allocation fails, or that one and all after it.
class Trial {
public:
    Trial(long failing, bool andAllAfter) noexcept : failing_(failing), andAllAfter_(andAllAfter) {}

    /// Runs an operation while memory fails. It must end with DONE or `usual`, or, where an
    /// allocation failed, with BAD_ALLOC.
    /// Gives    how it ended.
    template <typename Work>
    End run(Work const& work, End usual = End::DONE) {
        End const end = endOf([&] {
            FailingMalloc const scope(failing_, andAllAfter_);
            work();
        });
        requested_ = requestedAllocations();
        if (end != usual) {
            EXPECT_EQ(end, End::BAD_ALLOC);
            EXPECT_TRUE(reached());
        }
        return end;
    }

    /// Runs an operation that must return exactly `whole`, or, where an allocation failed, throw
    /// std::bad_alloc.
    template <typename Work, typename Result>
    void expectWholeOrNone(Work const& work, Result const& whole) {
        std::optional<Result> result;
        if (run([&] { result.emplace(work()); }) == End::DONE) {
            EXPECT_EQ(*result, whole);
        }
    }

    /// True if the allocation that fails was requested.
    bool reached() const noexcept { return requested_ > failing_; }

    long requested() const noexcept { return requested_; }

    long failing() const noexcept { return failing_; }

    bool andAllAfter() const noexcept { return andAllAfter_; }

    /// Blocks that the loader itself loses in this trial, as a row found out by calling it alone.
    long lostByLoader = 0;

private:
    static End endOf(std::function<void()> const& work);

    long failing_;
    bool andAllAfter_;
    long requested_ = 0;
};

/// Whether an operation allocates. The test checks it.
enum class Memory { NONE, NEEDED };

struct Row {
    std::string symbol;  // as `shortName` writes it
    std::string fact;
    Memory memory;
    std::function<void(Trial&)> run;
};

using Rows = std::vector<Row>;

/// A demangled name without the namespaces of the library, and with the usual names of strings,
/// lists and maps. The map of strings is `Map`, and the time point of xtime_t is `TimePoint`.
std::string shortName(std::string demangled);

// The rows, by unit.
Rows byteStreamRows();
Rows libraryRows();
Rows stringPairRows();
Rows stringRows();
Rows systemRows();
Rows timeRows();
Rows variantNumberRows();
Rows variantRows();
Rows variantTextRows();

// Strings that are too long for any short form.
inline std::string const LONG_TEXT = "a string far beyond any short form of a string";
inline std::wstring const LONG_WIDE_TEXT = L"a string far beyond any short form of a string";

/// The number of reports that the library made since the last call. The hook of this program
/// allocates nothing.
long takeReportCount() noexcept;

/// True while a row wants the system's clock to fail.
bool clockIsFailing() noexcept;

}  // namespace testing_support

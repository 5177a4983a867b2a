#include <csignal>
#include <cstdlib>
#include <dlfcn.h>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include <utillibrary/datatypes/Library.h>

#include "support/recorded_reports.h"

using com::halvorin::datatypes::Library;
using testing_support::Report;
using testing_support::takeReports;
using namespace std::string_literals;

namespace {

static_assert(!std::is_copy_constructible_v<Library> && !std::is_copy_assignable_v<Library>);
static_assert(!std::is_move_constructible_v<Library> && !std::is_move_assignable_v<Library>);
static_assert(std::is_same_v<decltype(std::declval<Library const&>().name()), std::string>);
static_assert(std::is_same_v<decltype(std::declval<Library const&>().module()), void*>);
static_assert(sizeof(Library) == sizeof(std::string) + sizeof(void*));

using Reports = std::vector<Report>;

constexpr unsigned int SUCCESS = 0;
constexpr unsigned int INVALID_ARGUMENT = 0x80070057;
constexpr unsigned int NOT_LOADED = 0xECE99F6E;
constexpr unsigned int NOT_FOUND = 0xECE99F6F;

std::string plugin(std::string const& file) { return UTILLIBRARY_TEST_PLUGINS "/" + file; }

std::string const GOOD = plugin("good.so");
std::string const OTHER = plugin("other.so");
std::string const SHARED = plugin("shared.so");
std::string const UNRESOLVED = plugin("unresolved.so");

bool isLoaded(std::string const& name) {
    void* const handle = dlopen(name.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (handle == nullptr) return false;
    dlclose(handle);
    return true;
}

Reports oneReport(char const* component, std::string const& message, unsigned int code) {
    return {{component, 3, message, code}};
}

// The reason why the loader cannot open a file. Afterwards the loader has no reason left.
std::string reasonOf(std::string const& name) {
    EXPECT_EQ(dlopen(name.c_str(), RTLD_LAZY), nullptr);
    char const* const reason = dlerror();
    return reason == nullptr ? "" : reason;
}

std::optional<int> answerOf(Library const& library) {
    auto* const answer = reinterpret_cast<int (*)()>(library.procAddress("pluginAnswer"));
    if (answer == nullptr) return std::nullopt;
    return answer();
}

std::optional<unsigned int> thrownBy(std::string const& name) {
    try {
        Library const library(name);
        return std::nullopt;
    } catch (unsigned int code) {  // matches nothing but an unsigned int
        return code;
    }
}

struct LibraryTest : testing::Test {
    LibraryTest() { takeReports(); }
    ~LibraryTest() override { EXPECT_FALSE(isLoaded(GOOD)); }
};

// ---- closed and open

TEST_F(LibraryTest, StartsClosedWithoutAName) {
    Library const library;
    EXPECT_FALSE(library.isOpen());
    EXPECT_EQ(library.module(), nullptr);
    EXPECT_EQ(library.name(), "");
}

TEST_F(LibraryTest, OpensASharedObject) {
    Library library;
    EXPECT_EQ(library.open(GOOD), SUCCESS);
    EXPECT_TRUE(library.isOpen());
    EXPECT_NE(library.module(), nullptr);
    EXPECT_EQ(library.name(), GOOD);
    EXPECT_EQ(answerOf(library), 42);
    EXPECT_TRUE(isLoaded(GOOD));
    EXPECT_THAT(takeReports(), testing::IsEmpty());
}

TEST_F(LibraryTest, OpensWithFlags) {
    Library library;
    EXPECT_EQ(library.open(GOOD, RTLD_NOW), SUCCESS);
    EXPECT_TRUE(library.isOpen());
    EXPECT_EQ(library.name(), GOOD);
    EXPECT_EQ(answerOf(library), 42);
    EXPECT_THAT(takeReports(), testing::IsEmpty());
}

TEST_F(LibraryTest, OpensAsItIsConstructed) {
    Library const library(GOOD);
    EXPECT_TRUE(library.isOpen());
    EXPECT_EQ(library.name(), GOOD);
    EXPECT_EQ(answerOf(library), 42);
    EXPECT_THAT(takeReports(), testing::IsEmpty());
}

TEST_F(LibraryTest, GivesTheLoadersHandle) {
    Library const library(GOOD);
    void* const handle = dlopen(GOOD.c_str(), RTLD_LAZY);
    EXPECT_EQ(library.module(), handle);
    dlclose(handle);
}

TEST_F(LibraryTest, FindsWhatTheLoaderSearchesFor) {
    Library library;
    EXPECT_EQ(library.open("libc.so.6"), SUCCESS);
    EXPECT_EQ(library.name(), "libc.so.6");
    EXPECT_NE(library.procAddress("getpid"), nullptr);
}

TEST_F(LibraryTest, AZeroByteEndsTheNameForTheLoader) {
    Library library;
    EXPECT_EQ(library.open(GOOD + "\0more"s), SUCCESS);
    EXPECT_EQ(library.name(), GOOD + "\0more"s);
    EXPECT_NE(library.procAddress("pluginAnswer\0more"s), nullptr);
}

TEST_F(LibraryTest, KeepsItsNameWhenItIsClosed) {  // KEPT(name-outlives-close)
    Library library(GOOD);
    EXPECT_EQ(library.close(), SUCCESS);
    EXPECT_FALSE(library.isOpen());
    EXPECT_EQ(library.module(), nullptr);
    EXPECT_EQ(library.name(), GOOD);

    EXPECT_EQ(library.open(plugin("missing.so")), NOT_LOADED);
    EXPECT_EQ(library.name(), GOOD);
    EXPECT_EQ(library.open(plugin("missing.so"), RTLD_NOW), NOT_LOADED);
    EXPECT_EQ(library.name(), GOOD);
    EXPECT_EQ(library.open(""), INVALID_ARGUMENT);
    EXPECT_EQ(library.name(), GOOD);
    EXPECT_EQ(library.open(OTHER), SUCCESS);
    EXPECT_EQ(library.name(), OTHER);
    EXPECT_EQ(answerOf(library), 43);
}

TEST_F(LibraryTest, ClosingUnloads) {
    bool unloaded = false;
    Library library(GOOD);
    *static_cast<bool**>(library.procAddress("pluginUnloaded")) = &unloaded;
    library.close();
    EXPECT_TRUE(unloaded);
    EXPECT_FALSE(isLoaded(GOOD));
    EXPECT_THAT(takeReports(), testing::IsEmpty());
}

TEST_F(LibraryTest, DestructionUnloads) {
    bool unloaded = false;
    {
        Library const library(GOOD);
        *static_cast<bool**>(library.procAddress("pluginUnloaded")) = &unloaded;
        EXPECT_FALSE(unloaded);
    }
    EXPECT_TRUE(unloaded);
    EXPECT_FALSE(isLoaded(GOOD));
    EXPECT_THAT(takeReports(), testing::IsEmpty());
}

TEST_F(LibraryTest, DestructionOfAClosedOneReportsNothing) {
    {
        Library const never;
        Library library(GOOD);
        library.close();
    }
    EXPECT_THAT(takeReports(), testing::IsEmpty());
}

TEST_F(LibraryTest, OpenedTwiceIsLoadedUntilBothAreClosed) {
    Library first(GOOD);
    Library second(GOOD);
    EXPECT_EQ(first.module(), second.module());
    first.close();
    EXPECT_TRUE(isLoaded(GOOD));
    EXPECT_EQ(answerOf(second), 42);
    second.close();
    EXPECT_FALSE(isLoaded(GOOD));
}

TEST_F(LibraryTest, OpensAgainAfterClose) {
    Library library;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(library.open(GOOD), SUCCESS);
        EXPECT_EQ(answerOf(library), 42);
        EXPECT_EQ(library.close(), SUCCESS);
        EXPECT_FALSE(isLoaded(GOOD));
    }
    EXPECT_THAT(takeReports(), testing::IsEmpty());
}

TEST_F(LibraryTest, ClosedTwiceGivesANotice) {  // KEPT(closed-twice-is-a-notice)
    Reports const notice = {{"Library::close", 7, "Library is not open", 0}};
    Library library;
    EXPECT_EQ(library.close(), SUCCESS);
    EXPECT_EQ(takeReports(), notice);

    library.open(GOOD);
    EXPECT_EQ(library.close(), SUCCESS);
    EXPECT_THAT(takeReports(), testing::IsEmpty());
    EXPECT_EQ(library.close(), SUCCESS);
    EXPECT_EQ(takeReports(), notice);
    EXPECT_EQ(library.name(), GOOD);
}

// ---- open that fails

struct RefusalFact {
    char const* fact;
    bool isOpen;
    std::string name;
    unsigned int code;
    char const* message;
};

// KEPT(reports-end-in-a-space), KEPT(reports-use-other-names)
RefusalFact const REFUSAL_FACTS[] = {
    {"open with an empty name", false, "", 0x80070057, "Invalid argument (NULL == Name). "},
    {"open with an empty name while a library is open", true, "", 0x80070057,
     "Invalid argument (NULL == Name). "},
    {"open while another library is open", true, OTHER, 0x80004005,
     "Must call Close because library is already open"},
    {"open while the same library is open", true, GOOD, 0x80004005,
     "Must call Close because library is already open"},
    {"open with a missing name while a library is open", true, "x", 0x80004005,
     "Must call Close because library is already open"},
};

TEST_F(LibraryTest, RefusesToOpenAndLeavesAllAsItWas) {
    for (RefusalFact const& row : REFUSAL_FACTS) {
        for (bool const withFlags : {false, true}) {
            SCOPED_TRACE(testing::Message() << row.fact << (withFlags ? ", with flags" : ""));
            Library library;
            if (row.isOpen) library.open(GOOD);
            void* const module = library.module();
            std::string const name = library.name();
            Reports const report = oneReport("Library::open", row.message, row.code);
            takeReports();

            EXPECT_EQ(withFlags ? library.open(row.name, RTLD_NOW) : library.open(row.name),
                      row.code);
            EXPECT_EQ(takeReports(), report);
            EXPECT_EQ(library.module(), module);
            EXPECT_EQ(library.name(), name);
            EXPECT_FALSE(isLoaded(OTHER));
            EXPECT_EQ(answerOf(library), row.isOpen ? std::optional(42) : std::nullopt);
        }
    }
}

std::string const LONG_NAME(1000, 'x');

struct FileFact {
    char const* fact;
    std::string name;
};

FileFact const FILE_FACTS[] = {
    {"a file that is missing", plugin("missing.so")},
    {"a path through a file that is no directory", plugin("good.so/missing.so")},
    {"a name that no folder of the loader has", "no-such-library.so"},
    {"a name without its suffix .so", plugin("good")},
    {"a name that is only in the current folder or beside the program", "good.so"},
    {"a directory", plugin("")},
    {"a file without bytes", plugin("cut_at_0.so")},
    {"a shared object cut within its header", plugin("cut_at_40.so")},
    {"a shared object cut after its header", plugin("cut_at_100.so")},
    {"a shared object for another processor", plugin("foreign.so")},
    {"a file that is no shared object", "/proc/self/cmdline"},
    {"a name of two spaces", "  "},
    {"a name of a thousand bytes", LONG_NAME},
};

TEST_F(LibraryTest, ReportsTheLoadersReason) {
    for (FileFact const& row : FILE_FACTS) {
        SCOPED_TRACE(row.fact);
        std::string const reason = reasonOf(row.name);
        EXPECT_NE(reason, "");
        Reports const report =
            oneReport("Library::open", "Error calling dlopen. Reason: " + reason, 0xECE99F6E);
        Library library;
        EXPECT_EQ(library.open(row.name), NOT_LOADED);
        EXPECT_EQ(takeReports(), report);
        EXPECT_EQ(dlerror(), nullptr);
        EXPECT_FALSE(library.isOpen());
        EXPECT_EQ(library.module(), nullptr);
        EXPECT_EQ(library.name(), "");
    }
}

TEST_F(LibraryTest, LeavesTheReasonToWhoGivesFlags) {  // KEPT(reason-without-flags-only)
    Reports const report = oneReport("Library::open", "Error calling dlopen. ", 0xECE99F6E);
    for (FileFact const& row : FILE_FACTS) {
        SCOPED_TRACE(row.fact);
        std::string const reason = reasonOf(row.name);
        Library library;
        EXPECT_EQ(library.open(row.name, RTLD_LAZY), NOT_LOADED);
        EXPECT_EQ(takeReports(), report);
        EXPECT_STREQ(dlerror(), reason.c_str());
        EXPECT_FALSE(library.isOpen());
        EXPECT_EQ(library.module(), nullptr);
        EXPECT_EQ(library.name(), "");
    }
}

TEST_F(LibraryTest, ConstructionThrowsTheCode) {  // KEPT(constructor-throws-a-number)
    Reports const noName =
        oneReport("Library::open", "Invalid argument (NULL == Name). ", 0x80070057);
    EXPECT_EQ(thrownBy(""), INVALID_ARGUMENT);
    EXPECT_EQ(takeReports(), noName);
    for (FileFact const& row : FILE_FACTS) {
        SCOPED_TRACE(row.fact);
        Reports const report = oneReport(
            "Library::open", "Error calling dlopen. Reason: " + reasonOf(row.name), 0xECE99F6E);
        EXPECT_EQ(thrownBy(row.name), NOT_LOADED);
        EXPECT_EQ(takeReports(), report);
    }
    EXPECT_EQ(thrownBy(GOOD), std::nullopt);
    EXPECT_THAT(takeReports(), testing::IsEmpty());
}

TEST_F(LibraryTest, OpensAfterAFailure) {
    Library library;
    EXPECT_EQ(library.open(plugin("missing.so")), NOT_LOADED);
    EXPECT_EQ(library.open(GOOD), SUCCESS);
    EXPECT_EQ(answerOf(library), 42);
}

// ---- flags

TEST_F(LibraryTest, BindsFunctionsAsTheyAreCalled) {
    Library library;
    EXPECT_EQ(library.open(UNRESOLVED), SUCCESS);
    EXPECT_EQ(answerOf(library), 44);
    library.close();
    EXPECT_EQ(library.open(UNRESOLVED, RTLD_LAZY), SUCCESS);
    library.close();
    EXPECT_EQ(library.open(UNRESOLVED, RTLD_NOW), NOT_LOADED);
    EXPECT_FALSE(isLoaded(UNRESOLVED));
}

TEST_F(LibraryTest, SharesSymbolsOnlyWhereAsked) {
    Library library(SHARED);
    EXPECT_EQ(dlsym(RTLD_DEFAULT, "pluginShared"), nullptr);
    library.close();
    EXPECT_EQ(library.open(SHARED, RTLD_NOW | RTLD_GLOBAL), SUCCESS);
    EXPECT_NE(library.procAddress("pluginShared"), nullptr);
    EXPECT_EQ(dlsym(RTLD_DEFAULT, "pluginShared"), library.procAddress("pluginShared"));
}

TEST_F(LibraryTest, MayAskForWhatIsLoadedAlready) {
    Library library;
    EXPECT_EQ(library.open(GOOD, RTLD_LAZY | RTLD_NOLOAD), NOT_LOADED);
    Library const owner(GOOD);
    EXPECT_EQ(library.open(GOOD, RTLD_LAZY | RTLD_NOLOAD), SUCCESS);
    EXPECT_EQ(library.module(), owner.module());
}

// ---- symbols

struct SymbolFact {
    char const* fact;
    bool isOpen;
    char const* symbol;
    unsigned int code;  // 0: found
    char const* message;
};

// KEPT(reports-end-in-a-space)
SymbolFact const SYMBOL_FACTS[] = {
    {"a function is found", true, "pluginAnswer", SUCCESS, nullptr},
    {"a variable is found", true, "pluginValue", SUCCESS, nullptr},
    {"a missing name gives null and a report", true, "pluginAnswe", NOT_FOUND,
     "Error calling dlsym. "},
    {"a name with another case gives null and a report", true, "PluginAnswer", NOT_FOUND,
     "Error calling dlsym. "},
    {"a symbol whose value is null gives null and a report", true, "pluginNull", NOT_FOUND,
     "Error calling dlsym. "},
    {"an empty name gives null and a report", true, "", INVALID_ARGUMENT, "NULL == EntryPoint. "},
    {"a name without an open library gives null and a report", false, "pluginAnswer",
     INVALID_ARGUMENT, "Library is not open. "},
    {"an empty name without an open library reports the library", false, "", INVALID_ARGUMENT,
     "Library is not open. "},
};

TEST_F(LibraryTest, LooksSymbolsUp) {  // KEPT(null-symbol-is-missing)
    for (SymbolFact const& row : SYMBOL_FACTS) {
        SCOPED_TRACE(row.fact);
        Library library(GOOD);
        void* const expected = dlsym(library.module(), row.symbol);
        if (row.code == SUCCESS) {
            EXPECT_NE(expected, nullptr);
        }
        if (!row.isOpen) library.close();
        takeReports();

        EXPECT_EQ(library.procAddress(row.symbol), row.code == SUCCESS ? expected : nullptr);
        EXPECT_EQ(takeReports(), row.code == SUCCESS
                                     ? Reports()
                                     : oneReport("Library::procAddress", row.message, row.code));
        EXPECT_EQ(library.isOpen(), row.isOpen);
    }
}

TEST_F(LibraryTest, ASymbolWhoseValueIsNullIsThere) {
    Library const library(GOOD);
    dlerror();
    EXPECT_EQ(dlsym(library.module(), "pluginNull"), nullptr);
    EXPECT_EQ(dlerror(), nullptr);
    EXPECT_EQ(dlsym(library.module(), "pluginMissing"), nullptr);
    EXPECT_NE(dlerror(), nullptr);
}

TEST_F(LibraryTest, LeavesTheReasonOfAMissingSymbol) {
    Library const library(GOOD);
    dlerror();
    EXPECT_EQ(library.procAddress("pluginMissing"), nullptr);
    char const* const reason = dlerror();
    ASSERT_NE(reason, nullptr);
    EXPECT_THAT(reason, testing::HasSubstr("pluginMissing"));
}

TEST_F(LibraryTest, GivesWhatCanBeCalledAndWritten) {
    Library const library(GOOD);
    auto* const value = static_cast<int*>(library.procAddress("pluginValue"));
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(*value, 7);
    *value = 8;
    EXPECT_EQ(*static_cast<int*>(dlsym(library.module(), "pluginValue")), 8);
}

// ---- exceptions of the shared object itself

using LibraryDeathTest = LibraryTest;

TEST_F(LibraryDeathTest, AnExceptionCannotPassTheLoader) {
    EXPECT_EXIT(
        {
            try {
                Library().open(plugin("throwing_start.so"));
            } catch (int) {
            }
            std::_Exit(0);
        },
        testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(
        {
            try {
                Library(plugin("throwing_end.so")).close();
            } catch (int) {
            }
            std::_Exit(0);
        },
        testing::KilledBySignal(SIGABRT), "");
}

}  // namespace

#include <climits>
#include <dlfcn.h>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include <utillibrary/application/ORUsyslog.h>
#include <utillibrary/datatypes/Library.h>

// This program defines the functions of the loader that Library calls, in place of libc's, and the
// log hook. So it sees the order of the calls. Library_test.cpp tests with the real loader.

using com::halvorin::datatypes::Library;
using namespace std::string_literals;

namespace {

using Events = std::vector<std::string>;

char handle;  // its address is the handle of the imitated loader

struct Loader {
    void* answer = &handle;
    char const* reason = "because";
    int closeAnswer = 0;
    std::string name;
    int mode = 0;
    Events events;
};

Loader loader;

void note(std::string event) { loader.events.push_back(std::move(event)); }

}  // namespace

extern "C" void* dlopen(char const* name, int mode) noexcept {
    note("dlopen");
    loader.name = name;
    loader.mode = mode;
    return loader.answer;
}

extern "C" int dlclose(void* module) noexcept {
    note(module == &handle ? "dlclose" : "dlclose of something else");
    return loader.closeAnswer;
}

extern "C" char* dlerror() noexcept {
    note("dlerror");
    return const_cast<char*>(loader.reason);
}

void com::halvorin::application::oru::writelog(std::string const& component, int level,
                                               std::string const& message, unsigned int code) {
    note(component + ", " + std::to_string(level) + ", \"" + message + "\", " +
         std::to_string(code));
}

namespace {

std::string const LONG_NAME(10000, 'x');

constexpr unsigned int SUCCESS = 0;
constexpr unsigned int NOT_LOADED = 0xECE99F6E;

struct LoaderTest : testing::Test {
    LoaderTest() { loader = Loader(); }
};

Events takeEvents() { return std::exchange(loader.events, {}); }

TEST_F(LoaderTest, IsGivenTheNameAsItStands) {
    struct {
        std::string name;
        std::string given;
    } const facts[] = {
        {"plugin", "plugin"},           {"libplugin.so.1", "libplugin.so.1"},
        {"./plugin.so", "./plugin.so"}, {"/usr/lib/../plugin.so", "/usr/lib/../plugin.so"},
        {" plugin ", " plugin "},       {"$ORIGIN/plug\xE9n", "$ORIGIN/plug\xE9n"},
        {"plugin\0.so"s, "plugin"},     {LONG_NAME, LONG_NAME},
    };
    for (auto const& row : facts) {
        SCOPED_TRACE(row.name);
        Library one;
        EXPECT_EQ(one.open(row.name), SUCCESS);
        EXPECT_EQ(loader.name, row.given);
        EXPECT_EQ(one.name(), row.name);
        Library two;
        EXPECT_EQ(two.open(row.name, 2), SUCCESS);
        EXPECT_EQ(loader.name, row.given);
        EXPECT_EQ(two.name(), row.name);
    }
}

TEST_F(LoaderTest, IsGivenLazyBindingOrTheFlagsAsTheyStand) {
    Library library;
    library.open("plugin");
    EXPECT_EQ(loader.mode, 1);
    EXPECT_EQ(loader.mode, RTLD_LAZY);

    struct {
        unsigned int flags;
        int mode;
    } const facts[] = {
        {0, 0},
        {RTLD_LAZY, RTLD_LAZY},
        {RTLD_NOW, RTLD_NOW},
        {RTLD_NOW | RTLD_GLOBAL, RTLD_NOW | RTLD_GLOBAL},
        {0x12345678, 0x12345678},
        {0x7FFFFFFF, INT_MAX},
        {0x80000000, INT_MIN},
        {0xFFFFFFFF, -1},
    };
    for (auto const& row : facts) {
        SCOPED_TRACE(row.flags);
        library.close();
        EXPECT_EQ(library.open("plugin", row.flags), SUCCESS);
        EXPECT_EQ(loader.mode, row.mode);
    }
}

TEST_F(LoaderTest, IsCalledOnceAndItsHandleKept) {
    Library library;
    library.open("plugin");
    EXPECT_EQ(library.module(), &handle);
    EXPECT_EQ(takeEvents(), Events{"dlopen"});
    library.close();
    EXPECT_EQ(takeEvents(), Events{"dlclose"});
    library.open("plugin", 2);
    EXPECT_EQ(library.module(), &handle);
    EXPECT_EQ(takeEvents(), Events{"dlopen"});
}

TEST_F(LoaderTest, IsGivenTheHandleBackOnce) {
    {
        Library const library("plugin");
        takeEvents();
    }
    EXPECT_EQ(takeEvents(), Events{"dlclose"});
    {
        Library library("plugin");
        library.close();
        takeEvents();
    }
    EXPECT_EQ(takeEvents(), Events{});
}

TEST_F(LoaderTest, IsNotAskedWithoutAName) {
    Events const refused = {"Library::open, 3, \"Invalid argument (NULL == Name). \", 2147942487"};
    Library library;
    library.open("");
    EXPECT_EQ(takeEvents(), refused);
    library.open("", 2);
    EXPECT_EQ(takeEvents(), refused);
}

TEST_F(LoaderTest, IsNotAskedWhileALibraryIsOpen) {
    Events const refused = {
        "Library::open, 3, \"Must call Close because library is already open\", 2147500037"};
    Library library("plugin");
    takeEvents();
    library.open("other");
    EXPECT_EQ(takeEvents(), refused);
    library.open("other", 2);
    EXPECT_EQ(takeEvents(), refused);
    EXPECT_EQ(library.module(), &handle);
}

TEST_F(LoaderTest, TellsItsReasonAtOnceOrIsNotAsked) {  // KEPT(reason-without-flags-only)
    loader.answer = nullptr;
    Library library;
    EXPECT_EQ(library.open("plugin"), NOT_LOADED);
    EXPECT_EQ(takeEvents(),
              (Events{"dlopen", "dlerror",
                      "Library::open, 3, \"Error calling dlopen. Reason: because\", 3974733678"}));
    EXPECT_EQ(library.open("plugin", 2), NOT_LOADED);
    EXPECT_EQ(takeEvents(),
              (Events{"dlopen", "Library::open, 3, \"Error calling dlopen. \", 3974733678"}));
}

TEST_F(LoaderTest, MayHaveNoReason) {
    loader.answer = nullptr;
    loader.reason = nullptr;
    Library library;
    EXPECT_EQ(library.open("plugin"), NOT_LOADED);
    EXPECT_EQ(takeEvents().back(),
              "Library::open, 3, \"Error calling dlopen. Reason: \", 3974733678");
}

TEST_F(LoaderTest, MayRefuseToClose) {  // KEPT(close-always-succeeds)
    loader.closeAnswer = -1;
    Library library("plugin");
    takeEvents();
    EXPECT_EQ(library.close(), SUCCESS);
    EXPECT_EQ(takeEvents(), Events{"dlclose"});
    EXPECT_FALSE(library.isOpen());
    EXPECT_EQ(library.name(), "plugin");
}

}  // namespace

#include <dlfcn.h>
#include <unistd.h>

#include <utillibrary/datatypes/Library.h>

#include "support/failed_memory/rows.h"

namespace testing_support {

namespace {

using com::halvorin::datatypes::Library;

// A path that a string stores in place. So the allocations of `open` are those of the loader, and
// those of the report after them. The test runs in the folder of the plugins.
std::string const GOOD = "./good.so";
std::string const MISSING = "./missing.so";
std::string const LONG_GOOD = "././././././././././good.so";
constexpr unsigned int LOAD_FAILED = 0xECE99F6E;

// The loader keeps the reason of its last failure until dlerror returns it, and frees the text in
// the next call.
void forgetReason() {
    dlerror();
    dlerror();
}

bool isLoaded(std::string const& name) {
    void* const handle = dlopen(name.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (handle != nullptr) dlclose(handle);
    forgetReason();
    return handle != nullptr;
}

// The blocks that the loader loses when it loads GOOD alone and the same allocation fails. The
// library may lose no more than these. glibc 2.36 loses none here; another release may.
// Takes    ownAllocations: how many allocations the library makes before it calls the loader.
long lostByTheLoader(Trial const& trial, long ownAllocations, int flags) {
    if (trial.failing() < ownAllocations) return 0;
    long const before = liveBlocks();
    void* handle = nullptr;
    {
        FailingMalloc const scope(trial.failing() - ownAllocations, trial.andAllAfter());
        handle = dlopen(GOOD.c_str(), flags);
    }
    if (handle != nullptr) dlclose(handle);
    forgetReason();
    return liveBlocks() - before;
}

// Opens GOOD by one of the two functions.
Row opening(char const* symbol, char const* fact, std::string const& name, bool withFlags) {
    return {symbol, fact, Memory::NEEDED, [=](Trial& trial) {
                Library library("libc.so.6");
                library.close();
                // The name's own memory is reserved before the loader is called.
                trial.lostByLoader = lostByTheLoader(trial, name == LONG_GOOD ? 1 : 0,
                                                     withFlags ? RTLD_NOW : RTLD_LAZY);
                unsigned int code = 0;
                End const end = trial.run(
                    [&] { code = withFlags ? library.open(name, RTLD_NOW) : library.open(name); });
                bool const opened = end == End::DONE && code == 0;
                EXPECT_TRUE(opened || trial.reached());
                EXPECT_EQ(library.isOpen(), opened);
                EXPECT_EQ(library.name(), opened ? name : "libc.so.6");
                EXPECT_EQ(isLoaded(GOOD), opened);
                if (end == End::DONE && !opened) {
                    EXPECT_EQ(code, LOAD_FAILED);
                    EXPECT_EQ(takeReportCount(), 1);
                }
                library.close();
                EXPECT_FALSE(isLoaded(GOOD));
            }};
}

// A failure that is reported: its code, or std::bad_alloc for the report.
Row refusal(char const* symbol, char const* fact, bool open, unsigned int expected,
            std::function<unsigned int(Library&)> const& call) {
    return {symbol, fact, Memory::NEEDED, [=](Trial& trial) {
                Library library;
                if (open) library.open("libc.so.6");
                void* const module = library.module();
                std::string const name = library.name();
                unsigned int code = 0;
                if (trial.run([&] { code = call(library); }) == End::DONE) {
                    EXPECT_EQ(code, expected);
                    EXPECT_EQ(takeReportCount(), 1);
                }
                EXPECT_EQ(library.module(), module);
                EXPECT_EQ(library.name(), name);
                forgetReason();
            }};
}

unsigned int isFound(void const* address) { return address != nullptr ? 1 : 0; }

Row constructing(char const* fact, std::string const& name, bool exists) {
    return {"Library::Library(std::string const&)", fact, Memory::NEEDED, [=](Trial& trial) {
                if (exists) trial.lostByLoader = lostByTheLoader(trial, 0, RTLD_LAZY);
                std::optional<Library> library;
                unsigned int code = 0;
                End const end = trial.run([&] {
                    try {
                        library.emplace(name);
                    } catch (unsigned int thrown) {
                        code = thrown;
                    }
                });
                // The loader may also find no memory.
                EXPECT_TRUE(exists || code == LOAD_FAILED || trial.reached());
                EXPECT_TRUE(code == 0 || code == LOAD_FAILED);
                EXPECT_EQ(library.has_value(), end == End::DONE && code == 0);
                if (code != 0) {
                    EXPECT_EQ(takeReportCount(), 1);
                }
                library.reset();
                EXPECT_FALSE(isLoaded(GOOD));
                forgetReason();
            }};
}

}  // namespace

Rows libraryRows() {
    EXPECT_EQ(chdir(UTILLIBRARY_TEST_PLUGINS), 0);
    char const* const open = "Library::open(std::string const&)";
    char const* const openWithFlags = "Library::open(std::string const&, unsigned int)";
    char const* const procAddress = "Library::procAddress(std::string const&) const";
    Rows rows = {
        opening(open, "a good file", GOOD, false),
        opening(open, "a good file with a long name", LONG_GOOD, false),
        opening(openWithFlags, "a good file", GOOD, true),
        opening(openWithFlags, "a good file with a long name", LONG_GOOD, true),
        refusal(open, "a missing file", false, LOAD_FAILED,
                [](Library& library) { return library.open(MISSING); }),
        refusal(openWithFlags, "a missing file", false, LOAD_FAILED,
                [](Library& library) { return library.open(MISSING, RTLD_NOW); }),
        refusal(open, "an empty name", false, 0x80070057,
                [](Library& library) { return library.open(""); }),
        refusal(openWithFlags, "an open library", true, 0x80004005,
                [](Library& library) { return library.open(MISSING, RTLD_NOW); }),
        refusal(procAddress, "a missing symbol", true, 0,
                [](Library& library) { return isFound(library.procAddress("missing")); }),
        refusal(procAddress, "an empty name", true, 0,
                [](Library& library) { return isFound(library.procAddress("")); }),
        refusal(procAddress, "a closed library", false, 0,
                [](Library& library) { return isFound(library.procAddress("malloc")); }),
        refusal("Library::close()", "a closed library is reported", false, 0,
                [](Library& library) { return library.close(); }),
        constructing("a good file", GOOD, true),
        constructing("a missing file", MISSING, false),
        {"Library::Library()", "needs no memory", Memory::NONE,
         [](Trial& trial) { trial.run([] { Library const library; }); }},
        {procAddress, "a symbol that exists needs no memory", Memory::NONE,
         [](Trial& trial) {
             Library const library("libc.so.6");
             void* address = nullptr;
             trial.run([&] { address = library.procAddress("malloc"); });
             EXPECT_NE(address, nullptr);
         }},
        {"Library::name() const", "a long name", Memory::NEEDED,
         [](Trial& trial) {
             Library const library(LONG_GOOD);
             trial.expectWholeOrNone([&] { return library.name(); }, LONG_GOOD);
         }},
    };
    for (char const* const symbol : {"Library::isOpen() const", "Library::module() const",
                                     "Library::close()", "Library::~Library()"}) {
        rows.push_back({symbol, "an open library needs no memory", Memory::NONE, [](Trial& trial) {
                            std::optional<Library> destroyed(std::in_place, GOOD);
                            Library closed("libc.so.6");
                            trial.run([&] {
                                EXPECT_TRUE(closed.isOpen());
                                EXPECT_NE(closed.module(), nullptr);
                                closed.close();
                                destroyed.reset();
                            });
                            EXPECT_FALSE(closed.isOpen());
                            EXPECT_FALSE(isLoaded(GOOD));
                        }});
    }
    return rows;
}

}  // namespace testing_support

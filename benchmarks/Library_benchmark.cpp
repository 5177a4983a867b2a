#include <dlfcn.h>
#include <string>

#include <utillibrary/datatypes/Library.h>

#include "support/operation.h"
#include "support/pool.h"

#ifdef UTILLIBRARY_PEER_GLIB
#include <gmodule.h>
#endif
#ifdef UTILLIBRARY_PEER_POCO
#include <Poco/SharedLibrary.h>
#endif
#ifdef UTILLIBRARY_PEER_QT
#include <QLibrary>
#include <QString>
#endif

// A shared object opened, searched and closed. All of them ask the platform's loader.
namespace {

using namespace benchmarks;
using com::halvorin::datatypes::Library;

// The same shared object three times. The first is never loaded when a row opens it, the second
// always is. Each library keeps the third open; some libraries close it for all their handles.
constexpr char const* ABSENT = UTILLIBRARY_ABSENT_PLUGIN;
constexpr char const* LOADED = UTILLIBRARY_LOADED_PLUGIN;
constexpr char const* SEARCHED = UTILLIBRARY_SEARCHED_PLUGIN;

// The functions of the plugin.
std::string anySymbol(Random& random) { return "function" + std::to_string(random() % 16); }

std::vector<std::string> symbols() { return pool(anySymbol); }

// ---- who has a handle: it opens the plugin, finds its symbols, and closes it

class Libc {
public:
    static constexpr char const* WHO = "dlopen, dlsym, dlclose";
    explicit Libc(char const* path) : handle_(dlopen(path, RTLD_LAZY)) {}
    ~Libc() { dlclose(handle_); }
    Libc(Libc const&) = delete;
    Libc& operator=(Libc const&) = delete;
    void* find(std::string const& name) const { return dlsym(handle_, name.c_str()); }

private:
    void* handle_;
};

class Ours {
public:
    static constexpr char const* WHO = "utillibrary";
    explicit Ours(char const* path) : library_(path) {}
    void* find(std::string const& name) const { return library_.procAddress(name); }

private:
    Library library_;
};

#ifdef UTILLIBRARY_PEER_GLIB
class GLib {
public:
    static constexpr char const* WHO = "GLib";
    explicit GLib(char const* path) : module_(g_module_open(path, G_MODULE_BIND_LAZY)) {}
    ~GLib() { g_module_close(module_); }
    GLib(GLib const&) = delete;
    GLib& operator=(GLib const&) = delete;
    void* find(std::string const& name) const {
        void* address = nullptr;
        g_module_symbol(module_, name.c_str(), &address);
        return address;
    }

private:
    GModule* module_;
};
#endif

#ifdef UTILLIBRARY_PEER_POCO
class Poco_ {
public:
    static constexpr char const* WHO = "Poco";
    explicit Poco_(char const* path) { library_.load(path); }
    ~Poco_() { library_.unload(); }
    Poco_(Poco_ const&) = delete;
    Poco_& operator=(Poco_ const&) = delete;
    void* find(std::string const& name) { return library_.getSymbol(name); }

private:
    Poco::SharedLibrary library_;
};
#endif

#ifdef UTILLIBRARY_PEER_QT
class Qt6 {
public:
    static constexpr char const* WHO = "Qt";
    explicit Qt6(char const* path) : library_(QString(path)) { library_.load(); }
    ~Qt6() { library_.unload(); }
    Qt6(Qt6 const&) = delete;
    Qt6& operator=(Qt6 const&) = delete;
    void* find(std::string const& name) {
        return reinterpret_cast<void*>(library_.resolve(name.c_str()));
    }

private:
    QLibrary library_;
};
#endif

// ---- the operations

// Addresses differ from one loading to the next.
bool isFound(void* address) { return address != nullptr; }

using LoaderOperation = Operation<std::string, bool>;

template <typename Handle, typename Run>
void addTo(LoaderOperation const& operation, Run run) {
    if constexpr (std::is_same_v<Handle, Ours>) {
        operation.ours(run, isFound);
    } else if constexpr (std::is_same_v<Handle, Libc>) {
        operation.plain(Handle::WHO, run, isFound);
    } else {
        operation.peer(Handle::WHO, run, isFound);
    }
}

template <typename Handle>
void* openAndFind(char const* path, std::string const& name) {
    Handle handle(path);
    return handle.find(name);
}

template <typename Handle>
void addHandle(LoaderOperation const& loading, LoaderOperation const& opening,
               LoaderOperation const& finding) {
    addTo<Handle>(loading,
                  [](std::string const& name) { return openAndFind<Handle>(ABSENT, name); });
    addTo<Handle>(opening, [keptLoaded = std::make_shared<Libc>(LOADED)](std::string const& name) {
        return openAndFind<Handle>(LOADED, name);
    });
    addTo<Handle>(finding, [handle = std::make_shared<Handle>(SEARCHED)](std::string const& name) {
        return handle->find(name);
    });
}

}  // namespace

void benchmarks::addRows() {
    auto const found = [](std::string const& /*name*/) { return true; };
    LoaderOperation const loading("open, find, close: not loaded", symbols(), found);
    LoaderOperation const opening("open, find, close: loaded already", symbols(), found);
    LoaderOperation const finding("find a symbol", symbols(), found);
    addHandle<Libc>(loading, opening, finding);
    addHandle<Ours>(loading, opening, finding);
#ifdef UTILLIBRARY_PEER_GLIB
    addHandle<GLib>(loading, opening, finding);
#endif
#ifdef UTILLIBRARY_PEER_POCO
    addHandle<Poco_>(loading, opening, finding);
#endif
#ifdef UTILLIBRARY_PEER_QT
    addHandle<Qt6>(loading, opening, finding);
#endif
}

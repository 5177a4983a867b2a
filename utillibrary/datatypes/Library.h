#pragma once

#include <string>

#include <utillibrary/export.h>

namespace com::halvorin::datatypes {

// One shared object, loaded at run time and closed with its owner.
//
// The platform's loader does the work, with its own rules of search and of counting: a file that is
// opened twice is loaded once. An object owns its handle, so it is neither copied nor moved, and
// belongs to one thread at a time.
//     Library plugin("./libplugin.so");
//     auto const start = reinterpret_cast<int (*)()>(plugin.procAddress("start"));
//     if (start != nullptr) start();
//
// Every failure is reported through the log hook, at level 3, before the caller learns of it. Most
// of the texts end in a blank, and in them an empty name is NULL, called Name or EntryPoint.
// KEPT(reports-end-in-a-blank) KEPT(reports-use-other-names)
//
// A zero byte ends a name, as libc reads it. Where memory fails, std::bad_alloc is thrown, and the
// object is as it was. An exception that escapes from the shared object's own constructors or
// destructors cannot pass the loader: it ends the process.
class UTILLIBRARY_EXPORT Library {
public:
    /// Closed, without a name.
    Library() noexcept;

    /// Opens a shared object.
    /// Fails    with the code that `open` returns, thrown as a bare `unsigned int`.
    ///          KEPT(constructor-throws-a-number)
    // NOLINTNEXTLINE(google-explicit-constructor): a name may stand for the library of that name.
    Library(std::string const& name);

    /// Closes, without a report if there is nothing to close.
    ~Library();

    Library(Library const&) = delete;
    Library(Library&&) = delete;
    Library& operator=(Library const&) = delete;
    Library& operator=(Library&&) = delete;

    // ---- questions

    /// Whether there is a handle.
    UTILLIBRARY_INLINE bool isOpen() const noexcept { return module_ != nullptr; }

    /// The name given to the last `open` that succeeded; `close` leaves it.
    /// KEPT(name-outlives-close)
    std::string name() const;

    /// The loader's handle; null when closed.
    UTILLIBRARY_INLINE void* module() const noexcept { return module_; }

    /// The address of a symbol.
    /// Takes    name: as it stands in the symbol table, C++ names mangled.
    /// Fails    with null and a report, "Library::procAddress": not open, "Library is not open. ",
    ///          0x80070057; an empty name, "NULL == EntryPoint. ", 0x80070057; not found, "Error
    ///          calling dlsym. ", 0xECE99F6F. A symbol whose value is null counts as not found.
    ///          KEPT(null-symbol-is-missing)
    void* procAddress(std::string const& name) const;

    // ---- changes

    /// Loads a shared object; its functions are bound as they are called (RTLD_LAZY).
    /// Takes    name: given to the loader as it stands: a path if there is a slash in it, else a
    ///          file that the loader searches for.
    /// Gives    0.
    /// Fails    with a code and a report, "Library::open": an empty name, 0x80070057, "Invalid
    ///          argument (NULL == Name). "; open already, 0x80004005, "Must call Close because
    ///          library is already open"; not loaded, 0xECE99F6E, "Error calling dlopen. Reason: "
    ///          and the loader's own reason, which `dlerror` does not give again. What is open
    ///          stays open, what is closed stays closed, and the name stays.
    /// Source   POSIX dlopen
    unsigned int open(std::string const& name);

    /// The same with a mode of the host's choice.
    /// Takes    flags: for `dlopen`, unchanged, such as RTLD_NOW | RTLD_GLOBAL.
    /// Fails    likewise; but where the loader fails, the text is "Error calling dlopen. ", and the
    ///          reason is left for the host to ask `dlerror`. KEPT(reason-without-flags-only)
    unsigned int open(std::string const& name, unsigned int flags);

    /// Gives the shared object back to the loader.
    /// Gives    0, whatever the loader answers. KEPT(close-always-succeeds)
    /// Fails    never. Where nothing is open it gives 0 as well, after a notice: "Library::close",
    ///          level 7, "Library is not open", code 0. KEPT(closed-twice-is-a-notice)
    unsigned int close();

private:
    UTILLIBRARY_LOCAL bool load(std::string const& name, int mode);

    std::string name_;
    void* module_ = nullptr;  // the loader's handle; null when closed
};

}  // namespace com::halvorin::datatypes

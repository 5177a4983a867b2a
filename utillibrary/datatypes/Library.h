#pragma once

#include <string>

#include <utillibrary/export.h>

// A name after "Kept" is a deliberate surprise; share/doc/utillibrary/kept.md explains each.
namespace com::halvorin::datatypes {

/// One shared library, loaded at run time and closed together with this object.
///
/// The platform's loader does the work by its own rules: where it searches, and that a file which
/// is opened twice is loaded once. An object owns its handle, so it can be neither copied nor
/// moved. One object belongs to one thread at a time.
///     Library math;
///     math.open("./missing.so")                // 3974733678
///     math.open("libm.so.6")                   // 0
///     auto const cosine = reinterpret_cast<double (*)(double)>(math.procAddress("cos"));
///     cosine(0.0)                              // 1
///     math.close()                             // 0
///
/// The constructor throws the code instead of returning it:
///     unsigned int code = 0;
///     try {
///         Library const plugin("./missing.so");
///     } catch (unsigned int thrown) {
///         code = thrown;
///     }
///     code                                     // 3974733678
///
/// Each failure is reported through the log hook at level 3, and then the caller gets its code:
///
/// | component              | message                                           | code       |
/// |------------------------|---------------------------------------------------|------------|
/// | "Library::open"        | "Invalid argument (NULL == Name). "               | 0x80070057 |
/// | "Library::open"        | "Must call Close because library is already open" | 0x80004005 |
/// | "Library::open"        | "Error calling dlopen. Reason: " and a reason     | 0xECE99F6E |
/// | "Library::open"        | "Error calling dlopen. "                          | 0xECE99F6E |
/// | "Library::procAddress" | "Library is not open. "                           | 0x80070057 |
/// | "Library::procAddress" | "NULL == EntryPoint. "                            | 0x80070057 |
/// | "Library::procAddress" | "Error calling dlsym. "                           | 0xECE99F6F |
///
/// A name ends at its first zero byte. After std::bad_alloc the object is unchanged.
///
/// Loading runs code of the file, so open only files that you trust. The loader checks little:
/// it waits at a FIFO until somebody writes to it, and a file that was cut off in the middle may
/// end the process with SIGBUS or SIGSEGV. An exception that leaves a constructor or destructor of
/// the file's own static objects ends the process.
/// Kept     reports-end-in-a-space, reports-use-other-names
class UTILLIBRARY_EXPORT Library {
public:
    /// Makes a closed object without a name.
    /// Fails    never.
    Library() noexcept;

    /// Opens a shared library, as `open(name)` does.
    /// Fails    with the code of `open`, thrown as an `unsigned int` after the report; with
    ///          std::bad_alloc.
    /// Kept     constructor-throws-a-number
    // NOLINTNEXTLINE(google-explicit-constructor): a name converts to a Library.
    Library(std::string const& name);

    /// Closes the library if it is open. It reports nothing.
    /// Fails    never.
    ~Library();

    Library(Library const&) = delete;
    Library(Library&&) = delete;
    Library& operator=(Library const&) = delete;
    Library& operator=(Library&&) = delete;

    // ---- questions

    /// True if a library is open.
    /// Fails    never.
    UTILLIBRARY_INLINE bool isOpen() const noexcept { return module_ != nullptr; }

    /// The name that the last successful `open` was given; empty if no `open` succeeded. `close`
    /// does not change it.
    /// Fails    with std::bad_alloc.
    /// Kept     name-outlives-close
    std::string name() const;

    /// The loader's handle; null if no library is open.
    /// Fails    never.
    UTILLIBRARY_INLINE void* module() const noexcept { return module_; }

    /// Finds the address of a symbol.
    /// Takes    name: as in the symbol table; names of C++ functions are mangled.
    /// Gives    the address; null after a failure.
    /// Fails    with a null pointer after a report: "Library is not open. "; "NULL == EntryPoint. "
    ///          for an empty name; "Error calling dlsym. " for a symbol that is missing or whose
    ///          value is null. With std::bad_alloc, for the string of a report.
    /// Source   POSIX dlsym
    /// Kept     null-symbol-is-missing
    void* procAddress(std::string const& name) const;

    // ---- changes

    /// Loads a shared library. Its functions are bound when they are first called (RTLD_LAZY).
    /// Takes    name: given to the loader unchanged. With a slash it is a path; otherwise the
    ///          loader searches its folders.
    /// Gives    0; after a failure the code that the class's table lists.
    /// Fails    with a code after a report, if the name is empty, if a library is already open, or
    ///          if the loader fails (the report then has the reason of `dlerror`). With
    ///          std::bad_alloc. The object is then unchanged.
    /// Source   POSIX dlopen
    unsigned int open(std::string const& name);

    /// Loads a shared library with flags of the caller's choice.
    /// Takes    name: as for `open(name)`. flags: given to `dlopen` unchanged: RTLD_LAZY or
    ///          RTLD_NOW, with or without RTLD_GLOBAL and others.
    /// Gives    0; after a failure the code that the class's table lists.
    /// Fails    as `open(name)` does. But if the loader fails, the message is "Error calling
    ///          dlopen. "; the caller can then ask `dlerror` for the reason.
    /// Source   POSIX dlopen
    /// Kept     reason-without-flags-only
    unsigned int open(std::string const& name, unsigned int flags);

    /// Closes the library. `name()` is unchanged.
    /// Gives    0, also if `dlclose` fails and if no library is open.
    /// Fails    never if a library is open. Otherwise it reports component "Library::close", level
    ///          7, message "Library is not open", code 0; with std::bad_alloc for the report.
    /// Kept     close-always-succeeds, closed-twice-is-a-notice
    unsigned int close();

private:
    UTILLIBRARY_LOCAL bool load(std::string const& name, int mode);

    std::string name_;        // of the last successful open; empty before
    void* module_ = nullptr;  // the loader's handle; null when closed
};

}  // namespace com::halvorin::datatypes

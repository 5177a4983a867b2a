#pragma once

#include <string>

#include <utillibrary/export.h>

// A name after "Kept" is a deliberate surprise; share/doc/utillibrary/kept.md explains each.
namespace com::halvorin::application::oru {

/// The log hook: it receives every failure report of the library. The library's own definition
/// does nothing.
///
/// A host replaces it by a function of the same name and parameters. The library then calls the
/// host's function, because it finds the hook through the dynamic symbol table.
///     void com::halvorin::application::oru::writelog(std::string const& component, int level,
///                                                    std::string const& message,
///                                                    unsigned int code) {
///         std::cerr << component << ": " << message << '\n';
///     }
///
/// The source that defines it must include this header, which makes the function visible. It must
/// be linked as an object file: the linker leaves out a member of a static archive that nothing
/// else needs. A host that loads the library at run time must also export its symbols (-rdynamic).
///
/// A replacement must not throw. The library takes no lock, so a replacement must be safe to call
/// from every thread that uses the library.
/// Takes    component: the class or source file, "::" and the function, such as "Library::open".
///          level: 3 for an error, 7 for a notice.
///          message: the fixed message, sometimes with a space at its end.
///          code: one of the following.
///
///          | code       | meaning                                 |
///          |------------|-----------------------------------------|
///          | 0          | no code                                 |
///          | 0x80070057 | invalid argument                        |
///          | 0x80004005 | general failure                         |
///          | 0xECE99F6E | a shared library could not be loaded    |
///          | 0xECE99F6F | a symbol could not be found             |
/// Fails    never.
/// Kept     hook-is-empty
UTILLIBRARY_EXPORT void writelog(std::string const& component, int level,
                                 std::string const& message, unsigned int code);

}  // namespace com::halvorin::application::oru

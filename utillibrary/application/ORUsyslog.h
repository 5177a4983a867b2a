#pragma once

#include <string>

#include <utillibrary/export.h>

namespace com::halvorin::application::oru {

/// Receives every failure report of the library. The library's own definition discards it.
///
/// This is a hook: a host that defines a function of this name and signature receives each report
/// in its place, since the library finds the function through the dynamic symbol table. An
/// executable that links the library need only define it, in a source that includes this header (it
/// carries the visibility) and that is linked as an object file (a member of a static archive that
/// nothing else needs stays out); one that loads the library at run time must also export it
/// (-rdynamic).
///     void com::halvorin::application::oru::writelog(std::string const& component, int level,
///                                                    std::string const& message,
///                                                    unsigned int code) {
///         std::cerr << component << ": " << message << '\n';
///     }
/// Takes    component: where the report comes from, class or source file, "::", function; level: 3
///          for an error, 7 for a lesser notice; message: the text as it stands, trailing blanks
///          included; code: 0x80070057 invalid argument, 0x80004005 general failure, 0xECE99F6E a
///          library could not be loaded, 0xECE99F6F a symbol could not be found, or 0 where there
///          is none.
/// Fails    never: no output, no state. KEPT(hook-is-empty) A replacement must not throw, and must
///          be safe to call from every thread that uses the library: no lock is taken around it.
UTILLIBRARY_EXPORT void writelog(std::string const& component, int level,
                                 std::string const& message, unsigned int code);

}  // namespace com::halvorin::application::oru

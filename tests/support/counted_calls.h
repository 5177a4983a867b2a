#pragma once

#include <string>

// The functions of libc and of the C++ library on which general paths rest. A program that lists
// counted_calls.cpp among its sources has replaced them, for itself and for the library: each
// remembers its name and then calls the real one.
namespace testing_support {

/// Remembers the calls of a scope, from none.
class CallWatch {
public:
    CallWatch();
    ~CallWatch();
    CallWatch(CallWatch const&) = delete;
    CallWatch& operator=(CallWatch const&) = delete;

    /// The names of the functions that were called so far, each once, sorted and separated by a
    /// space. A wide stream that was made counts as "wide_stream".
    std::string names() const;
};

}  // namespace testing_support

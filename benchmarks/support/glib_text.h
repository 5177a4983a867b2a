#pragma once

#include <glib.h>
#include <memory>
#include <string>

namespace benchmarks {

struct GLibFree {
    void operator()(char* text) const { g_free(text); }
};

/// A string that GLib allocated. A host of GLib keeps it as it is, so it becomes a `std::string`
/// only to be compared, which is not timed.
using GLibText = std::unique_ptr<char, GLibFree>;

inline std::string textOf(GLibText const& text) { return text.get(); }

}  // namespace benchmarks

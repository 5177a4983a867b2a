#include <string>

#include <utillibrary/datatypes/String.h>

#include "support/operation.h"
#include "support/pool.h"

// An object with one string, which is read and replaced. A plain std::string does the same.
namespace {

using namespace benchmarks;
using com::halvorin::datatypes::String;

void addHolder(std::string const& kind, std::vector<std::string> const& texts) {
    Operation const reading("read the string, " + kind, texts, AsItIs());
    reading.plain("std::string", [](std::string const& text) { return std::string(text); });
    reading.ours(prepared([](std::string const& text) { return String(text); },
                          [](String const& holder) { return holder(); }));

    Operation const replacing("replace the string, " + kind, texts, AsItIs());
    replacing.plain("std::string", [stored = std::string()](std::string const& text) mutable {
        stored = text;
        return std::string(stored);
    });
    replacing.ours([holder = String()](std::string const& text) mutable { return holder(text); });
}

}  // namespace

void benchmarks::addRows() {
    addHolder("8 to 14 bytes", pool([](Random& random) { return anyText(random, 8, 14); }));
    for (std::size_t const size : MAIN_SIZES)
        addHolder(sizeName(size), textsOf(size));
}

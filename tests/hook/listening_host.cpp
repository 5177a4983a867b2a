#include <iostream>

#include "hook/open_failure_paths.h"
#include "support/recorded_reports.h"

// A host that defines the log hook: it receives each report once, with all four arguments.
int main() {
    int status = 0;
    for (FailurePath const* path = openFailurePaths(); path->what != nullptr; ++path) {
        bool const told = path->fail();
        auto const heard = testing_support::takeReports();
        decltype(heard)
            const expected = {{path->component, path->level, path->message, path->code}};
        bool const exact = told && heard == expected;
        if (!exact) status = 1;
        std::cout << (exact ? "heard: " : "NOT HEARD: ") << path->what << '\n';
    }
    return status;
}

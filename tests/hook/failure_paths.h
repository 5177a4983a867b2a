#pragma once

/// One way to make the library report: what is done, and the report that must arrive.
struct FailurePath {
    char const* what;
    bool (*fail)();  // does it, and answers whether the caller was told as well
    char const* component;
    int level;
    char const* message;
    unsigned int code;
};

/// All of them, up to one without a name. Found by dlsym too, in the plug-in that the hosts load.
extern "C" __attribute__((visibility("default"))) FailurePath const* failurePaths() noexcept;

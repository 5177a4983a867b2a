// CMake compiles the precompiled headers of the tests as a part of a target, and a target needs a
// source: this one.

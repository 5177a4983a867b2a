// For lookups among all shared objects: once found so, it stays loaded until the process ends.

extern "C" int pluginShared() { return 45; }

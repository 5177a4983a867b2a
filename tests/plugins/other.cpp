// Another shared object, with the same names.

extern "C" int pluginAnswer() { return 43; }

// Calls a function that no one defines: it can be loaded as long as functions are bound when they
// are called, and not before.

extern "C" int nobodyDefinesThis();

extern "C" int pluginAnswer() { return 44; }

extern "C" int pluginCall() { return nobodyDefinesThis(); }

// A shared object that is no chart plugin.
extern "C" int answer() { return 42; }

// A shared object of another trade.
extern "C" int answer() { return 42; }

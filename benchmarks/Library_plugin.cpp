// A shared object to load: sixteen functions, so that there is something to search.

#define FUNCTION(NUMBER) \
    int function##NUMBER() { return NUMBER; }

extern "C" {

FUNCTION(0)
FUNCTION(1)
FUNCTION(2)
FUNCTION(3)
FUNCTION(4)
FUNCTION(5)
FUNCTION(6)
FUNCTION(7)
FUNCTION(8)
FUNCTION(9)
FUNCTION(10)
FUNCTION(11)
FUNCTION(12)
FUNCTION(13)
FUNCTION(14)
FUNCTION(15)

}  // extern "C"

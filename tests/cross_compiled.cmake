# What the tests for another processor need. Debian has no package of GoogleTest for it.

find_package(GTest QUIET)
if(NOT GTest_FOUND)
  include(googletest.cmake)
endif()

# An emulator takes about ten times as long as the processor.
set(UTILLIBRARY_TEST_ALL OFF)

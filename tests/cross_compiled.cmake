# GoogleTest for a cross compiler. Debian has no package of it for a foreign processor, but one of its
# sources: googletest.

find_package(GTest QUIET)
if(NOT GTest_FOUND)
  add_subdirectory(/usr/src/googletest "${CMAKE_CURRENT_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
  # The warnings of this project are not those of GoogleTest.
  foreach(target IN ITEMS gtest gmock)
    set_target_properties(${target} PROPERTIES COMPILE_WARNING_AS_ERROR OFF)
    target_compile_options(${target} PRIVATE -w)
  endforeach()
endif()

# An emulator takes some ten times as long as the processor.
set(UTILLIBRARY_TEST_ALL OFF)

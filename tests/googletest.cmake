# Builds GoogleTest from its sources, for builds that cannot use the installed one: for another
# processor, or with the checked containers of the standard library. Debian's package of the sources
# is googletest.

add_subdirectory(/usr/src/googletest "${CMAKE_CURRENT_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
# The warnings of this project are not those of GoogleTest.
foreach(target IN ITEMS gtest gmock)
  set_target_properties(${target} PROPERTIES COMPILE_WARNING_AS_ERROR OFF)
  target_compile_options(${target} PRIVATE -w)
endforeach()

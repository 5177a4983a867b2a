# Every operation whose result depends on its arguments alone, run for its results, in threads, and
# for long.

find_package(Threads REQUIRED)
add_library(test_operations STATIC operations/operations.cpp)
target_compile_features(test_operations PUBLIC cxx_std_20)
target_include_directories(test_operations PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}")
target_link_libraries(test_operations PUBLIC utillibrary::utillibrary)

foreach(program IN ITEMS golden_vectors threads endurance)
  add_executable(${program} operations/${program}.cpp)
  target_link_libraries(${program} PRIVATE test_operations Threads::Threads)
endforeach()

# The hashes are the same on every processor and for every compiler.
add_test(NAME golden_vectors
  COMMAND golden_vectors "${CMAKE_CURRENT_SOURCE_DIR}/operations/hashes.txt")
# The full run takes 10 seconds for the threads and ten million operations for the endurance.
set(thread_seconds 2)
set(endurance_cases 50000)
if(UTILLIBRARY_TEST_ALL)
  set(thread_seconds 10)
  set(endurance_cases 500000)
endif()
add_test(NAME threads COMMAND threads ${thread_seconds})
set_tests_properties(threads PROPERTIES PROCESSORS 2)
# A sanitizer keeps freed memory, so the program compares nothing there.
# An emulator keeps the code that it translates, so its memory grows.
if(CMAKE_BUILD_TYPE STREQUAL "Release" AND NOT CMAKE_CROSSCOMPILING)
  add_test(NAME endurance COMMAND endurance ${endurance_cases})
endif()

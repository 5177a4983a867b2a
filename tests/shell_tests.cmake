# The library as a file: what a host links, loads, installs and finds. And the scripts of the tree.

find_program(BATS_PROGRAM bats REQUIRED)
find_program(GXX_PROGRAM g++ REQUIRED)
find_program(CLANGXX_PROGRAM clang++ REQUIRED)
find_program(PKG_CONFIG_PROGRAM pkg-config REQUIRED)

set(shell_environment
  "TEST_ALL=${UTILLIBRARY_TEST_ALL}"
  "SOURCE_DIR=${PROJECT_SOURCE_DIR}"
  "VARIANTS=${CMAKE_CURRENT_BINARY_DIR}/library_variants"
  "CMAKE=${CMAKE_COMMAND}"
  "GXX=${GXX_PROGRAM}"
  "CLANGXX=${CLANGXX_PROGRAM}"
  "NM=${CMAKE_NM}"
  "READELF=${CMAKE_READELF}"
  "PKG_CONFIG=${PKG_CONFIG_PROGRAM}")

# A test with the tag "long" runs in the full run alone.
set(shell_filter --filter-tags !long)
if(UTILLIBRARY_TEST_ALL)
  set(shell_filter)
endif()

# tests/NAME.bats
function(utillibrary_shell_test name)
  add_test(NAME ${name}
    COMMAND "${BATS_PROGRAM}" ${shell_filter} "${CMAKE_CURRENT_SOURCE_DIR}/${name}.bats")
  set_tests_properties(${name} PROPERTIES TIMEOUT 600 LABELS shell ENVIRONMENT "${shell_environment}")
endfunction()

add_test(NAME library_variants COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/library_variants.sh")
set_tests_properties(library_variants PROPERTIES
  FIXTURES_SETUP library_variants TIMEOUT 600 LABELS shell PROCESSORS 2 ENVIRONMENT "${shell_environment}")

utillibrary_shell_test(log_hook)
set_tests_properties(log_hook PROPERTIES FIXTURES_REQUIRED library_variants)

utillibrary_shell_test(exports)
set_tests_properties(exports PROPERTIES FIXTURES_REQUIRED library_variants)

utillibrary_shell_test(hardening)
set_tests_properties(hardening PROPERTIES FIXTURES_REQUIRED "library_variants;built_monitor")
set_property(TEST hardening APPEND PROPERTY ENVIRONMENT
  "MONITOR=${host_dir}/monitor.build/monitor")

# The stored description is of this processor. It builds the library twice.
find_program(ABIDIFF_PROGRAM abidiff)
if(UTILLIBRARY_TEST_ALL AND ABIDIFF_PROGRAM AND CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
  utillibrary_shell_test(abi)
endif()

utillibrary_shell_test(package)
utillibrary_shell_test(count_instructions)

find_program(GDB_PROGRAM gdb)
if(GDB_PROGRAM)
  utillibrary_shell_test(gdb_printers)
  set_property(TEST gdb_printers APPEND PROPERTY ENVIRONMENT
    "GDB=${GDB_PROGRAM}" "BUILD=${PROJECT_BINARY_DIR}")
else()
  message(STATUS "gdb is missing, so the test of its printers is left out")
endif()

utillibrary_shell_test(readme)
set_tests_properties(readme PROPERTIES FIXTURES_REQUIRED library_variants)

utillibrary_shell_test(packaging)

utillibrary_shell_test(pages)
set_tests_properties(pages PROPERTIES FIXTURES_REQUIRED library_variants)

utillibrary_shell_test(header_checks)
set_tests_properties(header_checks PROPERTIES FIXTURES_REQUIRED library_variants)

# The checks of files, and the tests that each of them finds what it looks for.
add_test(NAME files COMMAND "${PROJECT_SOURCE_DIR}/scripts/check")
set_tests_properties(files PROPERTIES LABELS shell)
foreach(name IN ITEMS bootstrap check check_kept coverage mutate scripts)
  utillibrary_shell_test(${name})
endforeach()

find_package(Python3 REQUIRED COMPONENTS Interpreter)
add_test(NAME speed_page
  COMMAND Python3::Interpreter "${CMAKE_CURRENT_SOURCE_DIR}/speed_page_test.py")
set_tests_properties(speed_page PROPERTIES ENVIRONMENT "SOURCE_DIR=${PROJECT_SOURCE_DIR}")

# ---- what takes long, or needs much

if(UTILLIBRARY_TEST_ALL)
  find_program(CHROMIUM_PROGRAM chromium REQUIRED)
  utillibrary_shell_test(debian)
  utillibrary_shell_test(reproducible)
  utillibrary_shell_test(site)
  set_property(TEST site APPEND PROPERTY ENVIRONMENT "CHROMIUM=${CHROMIUM_PROGRAM}")
endif()

# These take longest, so they start first.
set_tests_properties(library_variants package PROPERTIES COST 30)

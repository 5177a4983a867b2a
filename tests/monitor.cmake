# examples/monitor: its units, and the program as a user meets it.

set(monitor_dir "${PROJECT_SOURCE_DIR}/examples/monitor")

# One program for all units: the sources are compiled once.
utillibrary_test_program(monitor_test monitor/averages_test.cpp)
target_include_directories(monitor_test PRIVATE "${monitor_dir}")
foreach(unit IN ITEMS chart chart_options history line_reader log_progress number_text
    option_values output printable reading reading_line reading_log replay schedule svg table time_axis)
  target_sources(monitor_test PRIVATE monitor/${unit}_test.cpp)
endforeach()
foreach(source IN ITEMS
    chart/chart chart/chart_lines chart/chart_options chart/history chart/time_axis
    plugins/svg
    program/log_hook program/log_progress program/option_values program/output
    program/printable program/schedule
    readings/averages readings/descriptor readings/line_reader readings/number_text
    readings/reading
    readings/reading_line readings/reading_log readings/replay
    table)
  target_sources(monitor_test PRIVATE "${monitor_dir}/${source}.cpp")
endforeach()
utillibrary_test_runs(monitor)

# The rest builds the program as a host does, in releases and where a sanitizer looks at it.
option(UTILLIBRARY_TEST_MONITOR "Build the monitor as a host does, also if this is no release" OFF)
if(NOT UTILLIBRARY_TEST_MONITOR AND NOT CMAKE_BUILD_TYPE STREQUAL "Release")
  return()
endif()

# The program is built as a host would build it: from an installed library, here in a path with a
# space.
find_program(BATS_PROGRAM bats REQUIRED)
set(host_dir "${CMAKE_CURRENT_BINARY_DIR}/monitor host")
add_test(NAME monitor.library
  COMMAND "${CMAKE_COMMAND}" --install "${PROJECT_BINARY_DIR}" --prefix "${host_dir}/prefix")
set_tests_properties(monitor.library PROPERTIES FIXTURES_SETUP installed_library LABELS shell)

# Builds the monitor in a folder of its own. Further arguments go to CMake.
function(utillibrary_monitor_build name)
  add_test(NAME ${name} COMMAND "${CMAKE_CTEST_COMMAND}"
    --build-and-test "${monitor_dir}" "${host_dir}/${name}"
    --build-generator "${CMAKE_GENERATOR}" --build-makeprogram "${CMAKE_MAKE_PROGRAM}"
    --build-project monitor --build-options "-DCMAKE_PREFIX_PATH=${host_dir}/prefix" ${ARGN})
  set_tests_properties(${name} PROPERTIES FIXTURES_REQUIRED installed_library LABELS shell)
endfunction()

utillibrary_monitor_build(monitor.build
  "-DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}" "-DCMAKE_BUILD_TYPE=${CMAKE_BUILD_TYPE}"
  "-DCMAKE_CXX_FLAGS=${CMAKE_CXX_FLAGS}")
set_tests_properties(monitor.build PROPERTIES FIXTURES_SETUP built_monitor)

add_subdirectory(monitor_plugins)

# tests/monitor/NAME.bats
set(monitor_environment
  "MONITOR=${host_dir}/monitor.build/monitor"
  "PLUGINS=${CMAKE_CURRENT_BINARY_DIR}/monitor_plugins"
  "LIBRARY_VERSION=${PROJECT_VERSION}"
  "SOURCE_DIR=${PROJECT_SOURCE_DIR}"
  "CMAKE=${CMAKE_COMMAND}"
  "NM=${CMAKE_NM}"
  "CXX=${CMAKE_CXX_COMPILER}"
  "TZ=Pacific/Kiritimati"
  "${leak_options}")
foreach(name IN ITEMS averages chart ending install log options plugins progress replay table terminal)
  add_test(NAME monitor.${name}
    COMMAND "${BATS_PROGRAM}" "${CMAKE_CURRENT_SOURCE_DIR}/monitor/${name}.bats")
  set_tests_properties(monitor.${name} PROPERTIES FIXTURES_REQUIRED built_monitor TIMEOUT 300
    LABELS shell ENVIRONMENT "${monitor_environment}")
endforeach()

# Both compilers give no warning. A host of a sanitized library must be sanitized too, so this needs
# an ordinary one.
if(UTILLIBRARY_TEST_ALL AND NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
  foreach(compiler IN ITEMS g++ clang++)
    utillibrary_monitor_build("monitor.warnings.${compiler}" -DCMAKE_CXX_COMPILER=${compiler}
      "-DCMAKE_CXX_FLAGS=-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror")
  endforeach()
endif()

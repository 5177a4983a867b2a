# examples/monitor: its parts as a unit, and the program as its user meets it.

set(monitor_dir "${PROJECT_SOURCE_DIR}/examples/monitor")
foreach(name IN ITEMS monitor monitor_log)
  utillibrary_unit_test(${name})
  target_include_directories(${name}_test PRIVATE "${monitor_dir}")
  target_sources(${name}_test PRIVATE
    "${monitor_dir}/averages.cpp"
    "${monitor_dir}/log_hook.cpp"
    "${monitor_dir}/option_values.cpp"
    "${monitor_dir}/output.cpp"
    "${monitor_dir}/reading.cpp"
    "${monitor_dir}/reading_line.cpp"
    "${monitor_dir}/reading_log.cpp"
    "${monitor_dir}/replay.cpp"
    "${monitor_dir}/schedule.cpp"
    "${monitor_dir}/table.cpp")
endforeach()

utillibrary_unit_test(monitor_chart)
target_include_directories(monitor_chart_test PRIVATE "${monitor_dir}")
target_sources(monitor_chart_test PRIVATE
  "${monitor_dir}/chart.cpp"
  "${monitor_dir}/history.cpp"
  "${monitor_dir}/option_values.cpp"
  "${monitor_dir}/plugins/svg.cpp"
  "${monitor_dir}/reading.cpp"
  "${monitor_dir}/reading_line.cpp"
  "${monitor_dir}/table.cpp"
  "${monitor_dir}/time_axis.cpp")

# The program is built as a host would: from an installed library, here under a path with blanks.
find_program(BATS_PROGRAM bats REQUIRED)
set(host_dir "${CMAKE_CURRENT_BINARY_DIR}/monitor host")
add_test(NAME monitor.install
  COMMAND "${CMAKE_COMMAND}" --install "${PROJECT_BINARY_DIR}" --prefix "${host_dir}/prefix")
set_tests_properties(monitor.install PROPERTIES FIXTURES_SETUP installed_library)

# Builds the monitor in a folder of its own. Further arguments go to CMake.
function(utillibrary_monitor_build name)
  add_test(NAME ${name} COMMAND "${CMAKE_CTEST_COMMAND}"
    --build-and-test "${monitor_dir}" "${host_dir}/${name}"
    --build-generator "${CMAKE_GENERATOR}" --build-makeprogram "${CMAKE_MAKE_PROGRAM}"
    --build-project monitor --build-options "-DCMAKE_PREFIX_PATH=${host_dir}/prefix" ${ARGN})
  set_tests_properties(${name} PROPERTIES FIXTURES_REQUIRED installed_library)
endfunction()

utillibrary_monitor_build(monitor.build
  "-DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}" "-DCMAKE_BUILD_TYPE=${CMAKE_BUILD_TYPE}"
  "-DCMAKE_CXX_FLAGS=${CMAKE_CXX_FLAGS}")
set_tests_properties(monitor.build PROPERTIES FIXTURES_SETUP built_monitor)

add_test(NAME monitor.program COMMAND "${BATS_PROGRAM}" "${CMAKE_CURRENT_SOURCE_DIR}/monitor.bats")
set_tests_properties(monitor.program PROPERTIES FIXTURES_REQUIRED built_monitor TIMEOUT 300
  ENVIRONMENT "MONITOR=${host_dir}/monitor.build/monitor;LIBRARY_VERSION=${PROJECT_VERSION};TZ=Pacific/Kiritimati")

add_subdirectory(monitor_plugins)
add_test(NAME monitor.chart
  COMMAND "${BATS_PROGRAM}" "${CMAKE_CURRENT_SOURCE_DIR}/monitor_chart.bats")
set_tests_properties(monitor.chart PROPERTIES FIXTURES_REQUIRED built_monitor TIMEOUT 300
  ENVIRONMENT "MONITOR=${host_dir}/monitor.build/monitor;PLUGINS=${CMAKE_CURRENT_BINARY_DIR}/monitor_plugins;NM=${CMAKE_NM};CXX=${CMAKE_CXX_COMPILER};SOURCE_DIR=${PROJECT_SOURCE_DIR};TZ=Pacific/Kiritimati;${leak_options}")

# Both compilers find nothing to warn of. A sanitized library needs a host that is sanitized alike.
if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
  foreach(compiler IN ITEMS g++ clang++)
    utillibrary_monitor_build("monitor.warnings.${compiler}" -DCMAKE_CXX_COMPILER=${compiler}
      "-DCMAKE_CXX_FLAGS=-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror")
  endforeach()
endif()

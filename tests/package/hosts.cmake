# host_17, host_20 and host_23: the same host under each standard, without a warning. What it includes
# counts as its own code, not as a system's.
foreach(standard IN ITEMS 17 20 23)
  add_executable(host_${standard} "${CMAKE_CURRENT_LIST_DIR}/host.cpp")
  target_link_libraries(host_${standard} PRIVATE utillibrary::utillibrary)
  target_compile_options(host_${standard} PRIVATE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
  set_target_properties(host_${standard} PROPERTIES
    CXX_STANDARD ${standard}
    CXX_STANDARD_REQUIRED ON
    CXX_EXTENSIONS OFF
    NO_SYSTEM_FROM_IMPORTED ON)
endforeach()

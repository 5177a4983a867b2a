# What the public headers say: each declaration has its comment, and each example its result.

find_package(Python3 REQUIRED COMPONENTS Interpreter)
find_program(CLANGXX_PROGRAM clang++ REQUIRED)
get_target_property(public_headers utillibrary HEADER_SET)

set(examples "${CMAKE_CURRENT_BINARY_DIR}/header_examples.cpp")
add_custom_command(OUTPUT "${examples}"
  COMMAND Python3::Interpreter "${CMAKE_CURRENT_SOURCE_DIR}/header_examples.py" ${public_headers}
    --root "${PROJECT_SOURCE_DIR}" --output "${examples}"
  DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/header_examples.py" ${public_headers}
  COMMENT "Extracting the examples of the headers" VERBATIM)
utillibrary_test_program(header_examples_test "${examples}")
utillibrary_test_run(header_examples header_examples_test Pacific/Kiritimati C)

# The same headers say the same for each processor.
if(CMAKE_CROSSCOMPILING)
  return()
endif()
add_test(NAME header_documentation
  COMMAND Python3::Interpreter "${CMAKE_CURRENT_SOURCE_DIR}/header_documentation.py"
    --root "${PROJECT_SOURCE_DIR}" --compiler "${CLANGXX_PROGRAM}" ${public_headers})

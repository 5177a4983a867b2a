# The same results everywhere: hashes of random cases, compared with those in the tree.
add_executable(golden_vectors golden/golden_vectors.cpp)
target_compile_features(golden_vectors PRIVATE cxx_std_20)
target_link_libraries(golden_vectors PRIVATE utillibrary::utillibrary)
add_test(NAME golden_vectors
  COMMAND golden_vectors "${CMAKE_CURRENT_SOURCE_DIR}/golden/hashes.txt")

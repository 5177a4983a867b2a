# Adds a linker flag to the library after the library has set its own, as a host project may do.
cmake_language(DEFER CALL target_link_options utillibrary PRIVATE -Wl,-Bsymbolic)

# How the library is found: the CMake package of the build tree and of an installation, and
# utillibrary.pc. Runtime is the library alone; Development is everything else.

set(package_dir "${CMAKE_CURRENT_BINARY_DIR}/package")
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/utillibraryConfig.cmake.in"
  "${package_dir}/utillibraryConfig.cmake"
  INSTALL_DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/utillibrary"
  NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file("${package_dir}/utillibraryConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)

# The build tree is a package too: utillibrary_DIR is this folder.
export(TARGETS utillibrary NAMESPACE utillibrary:: FILE "${package_dir}/utillibraryTargets.cmake")

if(NOT UTILLIBRARY_INSTALL)
  return()
endif()

set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME Development)
install(TARGETS utillibrary EXPORT utillibraryTargets
  LIBRARY COMPONENT Runtime NAMELINK_COMPONENT Development
  FILE_SET HEADERS COMPONENT Development)
# The headers name the deliberate surprises that this page explains.
install(FILES "${PROJECT_SOURCE_DIR}/docs/kept.md" DESTINATION "${CMAKE_INSTALL_DOCDIR}")

# gdb looks for this file beside the library, under the name of the library's own file.
install(FILES "${PROJECT_SOURCE_DIR}/gdb/utillibrary_printers.py"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}" RENAME "libutillibrary.so.${PROJECT_VERSION}-gdb.py")
install(EXPORT utillibraryTargets NAMESPACE utillibrary::
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/utillibrary")

install(FILES "${package_dir}/utillibraryConfig.cmake" "${package_dir}/utillibraryConfigVersion.cmake"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/utillibrary")

# A folder below the prefix moves with the prefix: pkg-config finds the prefix from the folder of the
# .pc file. An absolute folder, which some distributions ask for, is written unchanged. So is the
# prefix /usr, because pkg-config leaves it out of the flags only in this form.
foreach(folder IN ITEMS LIBDIR INCLUDEDIR)
  set(pc_${folder} "${CMAKE_INSTALL_${folder}}")
  if(NOT IS_ABSOLUTE "${pc_${folder}}")
    string(PREPEND pc_${folder} "\${prefix}/")
  endif()
endforeach()
set(pc_prefix "${CMAKE_INSTALL_PREFIX}")
if(NOT IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}" AND NOT pc_prefix STREQUAL "/usr")
  file(RELATIVE_PATH pc_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
  string(PREPEND pc_prefix "\${pcfiledir}/")
endif()
configure_file("${PROJECT_SOURCE_DIR}/cmake/utillibrary.pc.in" "${package_dir}/utillibrary.pc" @ONLY)
install(FILES "${package_dir}/utillibrary.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

# SPDX-License-Identifier: Apache-2.0
# What `cmake --install` lays out, in two components. No path in it is absolute: the folder can be moved.
#
#   program       bin/lkbench, and all libraries side by side in lib/lkbench: lkbench is linked to one of them
#                 by a path relative to itself and looks for the others beside it
#   development   include/lkbench, and what finds it: a CMake package and a pkg-config file
#
# Files that a build makes are installed with the component program: a manual page to ${CMAKE_INSTALL_MANDIR}/man1
# (man5), the completions to ${CMAKE_INSTALL_DATADIR}/bash-completion/completions and
# ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)  # tests are not built in order to install
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
  WORLD_READ WORLD_EXECUTE)
set(LK_INSTALL_LIBRARIES ${CMAKE_INSTALL_LIBDIR}/lkbench)
set(LK_INSTALL_HEADERS ${CMAKE_INSTALL_INCLUDEDIR}/lkbench)
set(LK_INSTALL_CMAKE ${CMAKE_INSTALL_LIBDIR}/cmake/lkbench)
set(LK_INSTALL_PKGCONFIG lib/${CMAKE_LIBRARY_ARCHITECTURE}/pkgconfig)  # it names folders of this architecture
set(libraries LKCore LKDBCore LKOracle8 CREP_ORA8 ocimariadb ocirecord)

file(RELATIVE_PATH to_libraries /${CMAKE_INSTALL_BINDIR} /${LK_INSTALL_LIBRARIES})
set_target_properties(lkbench PROPERTIES INSTALL_RPATH "$ORIGIN/${to_libraries}")
set_target_properties(${libraries} PROPERTIES INSTALL_RPATH "$ORIGIN")
install(TARGETS lkbench RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT program)
install(TARGETS ${libraries} LIBRARY DESTINATION ${LK_INSTALL_LIBRARIES} COMPONENT program)
set(pages ${CMAKE_BINARY_DIR}/lkbench/pages)  # made by the build from the program itself
install(FILES ${pages}/job-example.toml DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/lkbench/examples COMPONENT program)

install(FILES ${pages}/lkbench.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
install(FILES ${pages}/lkbench-job.5.gz ${pages}/lkbench-results.5.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man5 COMPONENT program)
install(FILES ${pages}/lkbench DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT program)
install(FILES ${pages}/_lkbench DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions COMPONENT program)

foreach(folder IN ITEMS core db oracle8)
  install(DIRECTORY host/${folder} DESTINATION ${LK_INSTALL_HEADERS} COMPONENT development
    FILES_MATCHING PATTERN "*.h")
endforeach()
install(FILES oci/include/oci.h DESTINATION ${LK_INSTALL_HEADERS} COMPONENT development)
install(DIRECTORY examples/plugin DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/lkbench-dev/examples
  COMPONENT development)

configure_package_config_file(cmake/package/lkbenchConfig.cmake.in ${PROJECT_BINARY_DIR}/lkbenchConfig.cmake
  INSTALL_DESTINATION ${LK_INSTALL_CMAKE} PATH_VARS LK_INSTALL_LIBRARIES LK_INSTALL_HEADERS
  NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/lkbenchConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/lkbenchConfig.cmake ${PROJECT_BINARY_DIR}/lkbenchConfigVersion.cmake
  DESTINATION ${LK_INSTALL_CMAKE} COMPONENT development)

list(TRANSFORM wxWidgets_INCLUDE_DIRS PREPEND -I OUTPUT_VARIABLE wx_includes)
list(TRANSFORM wxWidgets_DEFINITIONS PREPEND -D OUTPUT_VARIABLE wx_definitions)
list(JOIN wx_includes " " wx_includes)
list(JOIN wx_definitions " " wx_definitions)
set(LK_PC_WX_FLAGS "${wx_includes} ${wx_definitions} -DwxUSE_GUI=0")
list(JOIN wxWidgets_LIBRARIES " " LK_PC_WX_LIBRARIES)
string(REGEX REPLACE "[^/]+" ".." LK_PC_TO_PREFIX ${LK_INSTALL_PKGCONFIG})  # one step up for each folder
configure_file(cmake/package/lkbench.pc.in ${PROJECT_BINARY_DIR}/lkbench.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/lkbench.pc DESTINATION ${LK_INSTALL_PKGCONFIG} COMPONENT development)

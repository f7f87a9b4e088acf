# SPDX-License-Identifier: Apache-2.0
# Debian packages of the two components of LKInstall, made by `make deb`.
set(CPACK_GENERATOR DEB)
set(LK_PACKAGE_CONTACT "The lkbench authors <lkbench@localhost>" CACHE STRING "Who maintains the packages")
set(CPACK_PACKAGE_CONTACT ${LK_PACKAGE_CONTACT})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL program development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/lib)

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME lkbench)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION database)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS mariadb-server-core)
set(CPACK_DEBIAN_PROGRAM_DESCRIPTION "replication benchmark for databases that speak OCI
lkbench creates generated tables in a schema, loads them by array inserts
from several virtual users, drives single-row inserts, updates and deletes
against them, and reports throughput and response times. By default it starts
a private server in a folder of its own.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME lkbench-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "lkbench (= ${PROJECT_VERSION}), libwxgtk3.2-dev")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "headers for plug-ins of lkbench
What a benchmark plug-in is built against: the headers of the host, a CMake
package, a pkg-config file, and the skeleton of a plug-in.")

# Each package says who may use it and what changed.
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
foreach(package IN ITEMS lkbench lkbench-dev)
  set(folder ${PROJECT_BINARY_DIR}/package/${package})
  file(WRITE ${folder}/changelog "${package} (${PROJECT_VERSION}) unstable; urgency=medium\n\n"
    "  * The changes are in CHANGELOG.md of the source.\n\n -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
  execute_process(COMMAND gzip -9nf ${folder}/changelog COMMAND_ERROR_IS_FATAL ANY)
endforeach()
set(docs ${CMAKE_INSTALL_DATADIR}/doc)
install(FILES cmake/package/copyright ${PROJECT_BINARY_DIR}/package/lkbench/changelog.gz
  DESTINATION ${docs}/lkbench COMPONENT program)
install(FILES cmake/package/copyright ${PROJECT_BINARY_DIR}/package/lkbench-dev/changelog.gz
  DESTINATION ${docs}/lkbench-dev COMPONENT development)
include(CPack)

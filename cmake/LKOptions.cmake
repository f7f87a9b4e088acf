# SPDX-License-Identifier: Apache-2.0
# Options, and what every target of the project is compiled with: link `lk_options`.

option(LK_BUILD_TESTS "Build the tests" ON)
option(LK_BUILD_FUZZERS "Offer the fuzz targets (needs clang)" OFF)
option(LK_BUILD_BENCH "Build the measurements" OFF)
option(LK_WERROR "Treat warnings as errors" ON)
set(LK_SANITIZE "" CACHE STRING "Sanitizers for every target, e.g. address,undefined or thread")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)

add_library(lk_options INTERFACE)
target_compile_options(lk_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
  -Wno-overloaded-virtual $<$<BOOL:${LK_WERROR}>:-Werror>)
target_include_directories(lk_options INTERFACE ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/host
  ${CMAKE_SOURCE_DIR}/oci/include)
target_link_libraries(lk_options INTERFACE Threads::Threads)
if(LK_SANITIZE)
  target_compile_options(lk_options INTERFACE -fsanitize=${LK_SANITIZE} -fno-omit-frame-pointer
    -fno-sanitize-recover=undefined)
  target_link_options(lk_options INTERFACE -fsanitize=${LK_SANITIZE})
endif()

# wxWidgets base only: strings, run-time class information, regular expressions, configuration, log.
# Its headers are foreign: system includes, without our warnings.
find_package(wxWidgets 3.1 REQUIRED COMPONENTS base)
add_library(lk_wx INTERFACE)
target_include_directories(lk_wx SYSTEM INTERFACE ${wxWidgets_INCLUDE_DIRS})
target_compile_definitions(lk_wx INTERFACE ${wxWidgets_DEFINITIONS} wxUSE_GUI=0)
target_link_libraries(lk_wx INTERFACE ${wxWidgets_LIBRARIES})
target_link_directories(lk_wx INTERFACE ${wxWidgets_LIBRARY_DIRS})

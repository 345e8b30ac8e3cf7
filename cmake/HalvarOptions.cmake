# SPDX-FileCopyrightText: 2026 Halvar Controller contributors
# SPDX-License-Identifier: Apache-2.0
#
# Options of the build, and the compiler settings that every target of ours shares.

option(HALVAR_BUILD_SIMULATOR "Build the simulated instrument" ON)
option(HALVAR_BUILD_TOOLS "Build the command-line programs" ON)
option(HALVAR_BUILD_INTERFACE "Build the reference QML interface (needs Qt Quick Controls 2)" ON)
option(HALVAR_BUILD_TESTS "Build the tests" ON)
option(HALVAR_BUILD_BENCHMARKS "Build the benchmarks (needs Google Benchmark)" OFF)
option(HALVAR_BUILD_FUZZERS "Build the fuzzing targets (needs the preset fuzz)" OFF)
option(HALVAR_WERROR "Treat warnings as errors" OFF)
set(HALVAR_SANITIZE "" CACHE STRING "Sanitizers of every target, e.g. address,undefined")
option(HALVAR_COVERAGE "Instrument for line coverage" OFF)

# Each platform library is bundled, or replaced by the instrument's own ("system").
foreach(library IN ITEMS QSLOG TESSEL MSP)
  set(HALVAR_${library} "bundled" CACHE STRING "bundled, or system for the platform's own library")
  set_property(CACHE HALVAR_${library} PROPERTY STRINGS bundled system)
  if(NOT HALVAR_${library} MATCHES "^(bundled|system)$")
    message(FATAL_ERROR "HALVAR_${library} is \"${HALVAR_${library}}\"; expected bundled or system.")
  endif()
endforeach()

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

find_program(HALVAR_CCACHE ccache)
if(HALVAR_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${HALVAR_CCACHE})
endif()

include(GNUInstallDirs)

# Applied through HalvarLibrary, HalvarTest and the programs' own lists: warnings and text rules.
add_library(halvar_settings INTERFACE)
target_compile_options(halvar_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  $<$<BOOL:${HALVAR_WERROR}>:-Werror>)
target_compile_definitions(halvar_settings INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_DEPRECATED_WARNINGS)

if(HALVAR_SANITIZE)
  add_compile_options(-fsanitize=${HALVAR_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${HALVAR_SANITIZE})
  if(HALVAR_SANITIZE MATCHES thread)
    # gcc loses sight of what an optional holds between the calls that the sanitizer puts in.
    add_compile_options(-Wno-maybe-uninitialized)
  endif()
endif()
if(HALVAR_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()

# SPDX-FileCopyrightText: 2026 Halvar Controller contributors
# SPDX-License-Identifier: Apache-2.0
#
# What makes a fault in a program harder to use against it: checked buffers and stack frames, tables of addresses
# that are filled at the start and read-only from then on, code at addresses that nobody knows, no code on the
# stack. packaging/check-hardening looks at the built files.
include(CheckCXXCompilerFlag)
include(CheckPIESupported)

option(HALVAR_HARDENING "Build with the compiler's and linker's protections" ON)
if(NOT HALVAR_HARDENING)
  return()
endif()

check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)

# Not every processor has each of them; clang takes one that it has not, and warns in every file.
set(CMAKE_REQUIRED_FLAGS -Werror)
foreach(flag IN ITEMS -fstack-protector-strong -fstack-clash-protection -fcf-protection -mbranch-protection=standard)
  string(MAKE_C_IDENTIFIER "HALVAR_HAS${flag}" has)
  check_cxx_compiler_flag(${flag} ${has})
  if(${has})
    add_compile_options(${flag})
  endif()
endforeach()
unset(CMAKE_REQUIRED_FLAGS)

# Buffers are checked in optimised code only, and by the address sanitizer better.
set(HALVAR_FORTIFY OFF)
if(NOT HALVAR_SANITIZE AND NOT HALVAR_COVERAGE)
  if(CMAKE_BUILD_TYPE MATCHES "^(Release|RelWithDebInfo|MinSizeRel)$"
      OR "${CMAKE_CXX_FLAGS_DEBUG} " MATCHES "-O(g|s|[123]) ")
    set(HALVAR_FORTIFY ON)
  endif()
endif()
if(HALVAR_FORTIFY)
  set(level 2)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 12)
    set(level 3)
  endif()
  add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=${level})
endif()

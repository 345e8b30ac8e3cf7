# SPDX-FileCopyrightText: 2026 Halvar Controller contributors
# SPDX-License-Identifier: Apache-2.0
#
# halvar_add_library(TARGET ALIAS NAME SOURCES ... HEADERS ... [HEADER_DIR DIR] [PUBLIC_LIBS ...] [PRIVATE_LIBS ...])
#
# One shared library of the project: versioned, hidden visibility, installed with its public headers.
# HEADERS are installed to include/DIR, keeping nothing of their path in the source tree.
function(halvar_add_library target)
  cmake_parse_arguments(arg "" "ALIAS;HEADER_DIR" "SOURCES;HEADERS;PUBLIC_LIBS;PRIVATE_LIBS" ${ARGN})
  add_library(${target} SHARED ${arg_SOURCES} ${arg_HEADERS})
  add_library(Halvar::${arg_ALIAS} ALIAS ${target})
  set_target_properties(${target} PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    EXPORT_NAME ${arg_ALIAS}
    INSTALL_RPATH "$ORIGIN"
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  target_link_libraries(${target} PUBLIC ${arg_PUBLIC_LIBS}
    PRIVATE ${arg_PRIVATE_LIBS} $<BUILD_INTERFACE:halvar_settings>)
  # A library calls its own exported functions directly: nobody is meant to put others in their place.
  target_compile_options(${target} PRIVATE -fno-semantic-interposition)
  set(directory ${CMAKE_INSTALL_INCLUDEDIR}/halvar)
  if(arg_HEADER_DIR)
    string(APPEND directory /${arg_HEADER_DIR})
  endif()
  install(TARGETS ${target} EXPORT HalvarControllerTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/halvar)
  install(FILES ${arg_HEADERS} DESTINATION ${directory})
endfunction()

# SPDX-FileCopyrightText: 2026 Halvar Controller contributors
# SPDX-License-Identifier: Apache-2.0
#
# halvar_add_test(NAME SOURCES ... [LIBS ...] [LABELS ...] [INSTRUMENT [INSTRUMENT_OPTIONS ...]] [TIMEOUT SECONDS])
#
# One QtTest program, run by CTest on the offscreen platform. INSTRUMENT runs it in a private
# instrument (its own /sys/class, /data, loopback and shell commands): required for everything that
# touches those.
find_package(Qt5 5.15 REQUIRED COMPONENTS Test)

function(halvar_add_test name)
  cmake_parse_arguments(arg "INSTRUMENT" "TIMEOUT" "SOURCES;LIBS;LABELS;INSTRUMENT_OPTIONS" ${ARGN})
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 120)
  endif()
  if(HALVAR_SANITIZE MATCHES thread)
    math(EXPR arg_TIMEOUT "${arg_TIMEOUT} * 5") # it takes five to fifteen times as long
  endif()
  if(NOT arg_LABELS)
    set(arg_LABELS unit)
  endif()
  # QtTest's own limit of five minutes a function would come first; a little before CTest's, it still prints a stack.
  math(EXPR function_timeout "${arg_TIMEOUT} * 950")
  set(changes "QTEST_FUNCTION_TIMEOUT=set:${function_timeout}")
  if("qml" IN_LIST arg_LABELS)
    # What the offscreen platform leaves behind is told from leaks of ours by the last ten calls before an allocation.
    list(APPEND changes "LSAN_OPTIONS=string_append::fast_unwind_on_malloc=0:malloc_context_size=10")
  endif()
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE halvar_settings ${arg_LIBS} Qt5::Test)
  target_compile_definitions(${name} PRIVATE
    HALVAR_SOURCE_DIR="${PROJECT_SOURCE_DIR}" HALVAR_BINARY_DIR="${PROJECT_BINARY_DIR}")
  if(arg_INSTRUMENT)
    add_test(NAME ${name}
      COMMAND ${PROJECT_SOURCE_DIR}/simulator/instrument ${arg_INSTRUMENT_OPTIONS} $<TARGET_FILE:${name}>)
  else()
    add_test(NAME ${name} COMMAND ${name})
  endif()
  set_tests_properties(${name} PROPERTIES
    LABELS "${arg_LABELS}"
    TIMEOUT ${arg_TIMEOUT}
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;TZ=Europe/Paris;XDG_RUNTIME_DIR=/tmp"
    ENVIRONMENT_MODIFICATION "${changes}")
endfunction()

# SPDX-FileCopyrightText: 2026 Halvar Controller contributors
# SPDX-License-Identifier: Apache-2.0
#
# The CMake package (find_package(HalvarController 4)) and the pkg-config file.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/HalvarController)
configure_package_config_file(cmake/HalvarControllerConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/HalvarControllerConfig.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/HalvarControllerConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
file(RELATIVE_PATH HALVAR_PC_TO_INCLUDE
  ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_FULL_INCLUDEDIR})
configure_file(cmake/halvarcontroller.pc.in ${CMAKE_CURRENT_BINARY_DIR}/halvarcontroller.pc @ONLY)

install(EXPORT HalvarControllerTargets NAMESPACE Halvar:: DESTINATION ${package_dir})
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/HalvarControllerConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/HalvarControllerConfigVersion.cmake
  DESTINATION ${package_dir})
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/halvarcontroller.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

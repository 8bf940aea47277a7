include(CMakePackageConfigHelpers)

install(EXPORT zephmetadatauiTargets
  NAMESPACE zeph::
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/zephmetadataui)

configure_package_config_file(
  ${PROJECT_SOURCE_DIR}/cmake/zephmetadatauiConfig.cmake.in
  ${PROJECT_BINARY_DIR}/zephmetadatauiConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/zephmetadataui)
write_basic_package_version_file(
  ${PROJECT_BINARY_DIR}/zephmetadatauiConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/zephmetadatauiConfig.cmake
  ${PROJECT_BINARY_DIR}/zephmetadatauiConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/zephmetadataui)

# The way from the installed .pc file's folder back to the prefix.
file(RELATIVE_PATH ZEPH_PC_PREFIX_FROM_PCFILEDIR
  ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" ZEPH_PC_PREFIX_FROM_PCFILEDIR "${ZEPH_PC_PREFIX_FROM_PCFILEDIR}")
configure_file(${PROJECT_SOURCE_DIR}/cmake/zephmetadataui.pc.in
  ${PROJECT_BINARY_DIR}/zephmetadataui.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zephmetadataui.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

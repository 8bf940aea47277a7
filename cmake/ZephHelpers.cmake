# zeph_add_test(<name> SOURCES ... LIBS ...)
# One GoogleTest binary per subsystem; every test case becomes a ctest test.
# Qt runs on the offscreen platform so no display is needed.
include(GoogleTest)
function(zeph_add_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} GTest::gtest)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support)
  target_compile_definitions(${name} PRIVATE
    ZEPH_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
    ZEPH_CORPUS_DIR="${PROJECT_SOURCE_DIR}/../shared/corpus"
    ZEPH_BINARY_DIR="${PROJECT_BINARY_DIR}")
  gtest_discover_tests(${name}
    DISCOVERY_MODE PRE_TEST
    PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen;ASAN_OPTIONS=detect_leaks=0")
endfunction()

# zeph_add_platform_library(<name> <alias> SOURCES ...)
# Shared platform library with public headers under include/. Shared, so that
# the library, the app and the tests see one copy of each module-global state.
# Symbols are hidden unless a header marks them with <NAME>_EXPORT (from the
# generated <name>/<name>_export.h).
function(zeph_add_platform_library name alias)
  cmake_parse_arguments(ARG "" "" "SOURCES" ${ARGN})
  add_library(${name} SHARED ${ARG_SOURCES})
  add_library(${alias} ALIAS ${name})
  zeph_export_symbols(${name})
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
    PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/src)
  install(TARGETS ${name} EXPORT zephmetadatauiTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endfunction()

# Hidden visibility, the export header, the exported name, and the project's version as the
# library's (SOVERSION: the major version).
include(GenerateExportHeader)
function(zeph_export_symbols name)
  string(TOUPPER ${name} upper)
  set(header ${CMAKE_CURRENT_BINARY_DIR}/include/${name}/${name}_export.h)
  generate_export_header(${name} BASE_NAME ${upper} EXPORT_FILE_NAME ${header})
  # Installed as zeph::<name without "zeph">, the alias the build uses.
  string(REGEX REPLACE "^zeph" "" exportName ${name})
  set_target_properties(${name} PROPERTIES
    EXPORT_NAME ${exportName}
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR})
  target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${CMAKE_CURRENT_BINARY_DIR}/include>)
  install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${name})
endfunction()

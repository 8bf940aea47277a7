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
# the library, the app and the tests see one copy of each module-global state..
function(zeph_add_platform_library name alias)
  cmake_parse_arguments(ARG "" "" "SOURCES" ${ARGN})
  add_library(${name} SHARED ${ARG_SOURCES})
  add_library(${alias} ALIAS ${name})
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
    PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/src)
  install(TARGETS ${name} EXPORT zephmetadatauiTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endfunction()

set(CMAKE_INSTALL_RPATH "$ORIGIN")

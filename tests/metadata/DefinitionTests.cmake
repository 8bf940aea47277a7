# Tests of the definitions half of zephmetadata.
set(ZEPH_METADATA_DEFINITION_TESTS
  ${CMAKE_CURRENT_LIST_DIR}/DefinitionFilesTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/DefinitionLoaderTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PathDefinitionsTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ViewDefinitionsTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/CustomDefinitionsTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PanelConversionTest.cpp
)

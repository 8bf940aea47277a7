# Sources of the definitions half of zephmetadata: schemas, types and views
# from definition files, paths over them, custom schemas, panel conversion.
#
# The definition files are compiled into the library as a Qt resource, so an
# installed library needs no data folder. The resource list is written from
# the files present, and rewritten only when that set changes.
file(GLOB ZEPH_DEFINITION_FILES CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/definitions/*.xml")
set(_zeph_definitions_qrc_text "<RCC>\n  <qresource prefix=\"/zephmetadata/definitions\">\n")
foreach(_zeph_file IN LISTS ZEPH_DEFINITION_FILES)
  get_filename_component(_zeph_name "${_zeph_file}" NAME)
  string(APPEND _zeph_definitions_qrc_text "    <file alias=\"${_zeph_name}\">${_zeph_file}</file>\n")
endforeach()
string(APPEND _zeph_definitions_qrc_text "  </qresource>\n</RCC>\n")
file(CONFIGURE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/definitions.qrc" CONTENT "${_zeph_definitions_qrc_text}")
qt6_add_resources(ZEPH_DEFINITION_RESOURCE_SOURCES "${CMAKE_CURRENT_BINARY_DIR}/definitions.qrc")

set(ZEPH_METADATA_DEFINITION_SOURCES
  src/CustomDefinitions.cpp
  src/DefinitionFiles.cpp
  src/DefinitionLoader.cpp
  src/DefinitionReader.cpp
  src/DefinitionRegistry.cpp
  src/PanelConversion.cpp
  src/PathDefinitions.cpp
  src/ViewDefinitions.cpp
  ${ZEPH_DEFINITION_RESOURCE_SOURCES}
)

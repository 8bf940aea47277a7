# Tests of the toolkit's controls and multi-column tree (part of zephui_tests).
set(ZEPH_UI_CONTROL_TESTS
  ${CMAKE_CURRENT_LIST_DIR}/UI_MultiColumnTreeTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/UI_TextEditTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/UI_ValueControlsTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/UI_SectionViewTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ControlPanelScreenshotTest.cpp
)

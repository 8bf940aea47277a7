# The controls of the toolkit: value controls, buttons, scroll views and the
# multi-column tree.
set(ZEPH_UI_CONTROL_SOURCES
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_ScrollBar.cpp
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_ScrollView.cpp
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_MultiColumnTree.cpp
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_MultiColumnTreeRows.cpp
)

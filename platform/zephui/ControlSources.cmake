# The controls of the toolkit: value controls, buttons, scroll views and the
# multi-column tree.
set(ZEPH_UI_CONTROL_SOURCES
  ${CMAKE_CURRENT_LIST_DIR}/src/ControlSupport.h
  ${CMAKE_CURRENT_LIST_DIR}/src/TreeRowSlot.h
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_Button.cpp
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_Checkbox.cpp
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_Decorations.cpp
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_HotTextNumber.cpp
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_ListBox.cpp
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_MultiColumnTree.cpp
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_MultiColumnTreeRows.cpp
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_Popup.cpp
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_RadioGroup.cpp
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_ScrollBar.cpp
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_ScrollView.cpp
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_SearchBox.cpp
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_SectionView.cpp
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_SplitterView.cpp
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_StarRating.cpp
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_StaticImage.cpp
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_StaticText.cpp
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_TextEdit.cpp
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_TextLayout.cpp
  ${CMAKE_CURRENT_LIST_DIR}/src/UI_URLEdit.cpp
)

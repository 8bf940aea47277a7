# Tests of the toolkit's node model (see platform/zephui/NodeSources.cmake).
set(ZEPH_UI_NODE_TESTS
  ${CMAKE_CURRENT_SOURCE_DIR}/CaptureTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/ControlViewTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/DrawbotTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/EventDispatchTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/EventsTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/FocusAndMenuTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/NodeHostWidgetTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/NodeStateTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/NodeTreeTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/ResourceTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/ThemeTest.cpp
)

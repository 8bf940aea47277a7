#pragma once
// Conversions from Qt's input events to the toolkit's events. For platform
// code (the controls, the host adapter, tests) only.

#include "zephui/Events.h"
#include "zephui/zephui_export.h"

#include <Qt>

class QKeyEvent;
class QMouseEvent;
class QWheelEvent;
class QPointF;

namespace zephui
{

ZEPHUI_EXPORT Flags<unsigned char> ModifiersFromQt(Qt::KeyboardModifiers modifiers);
ZEPHUI_EXPORT KeyboardCode KeyboardCodeFromQt(int qtKey);
ZEPHUI_EXPORT int MouseButtonsFromQt(Qt::MouseButtons buttons);
ZEPHUI_EXPORT KeyboardEvent KeyboardEventFromQt(QKeyEvent const& event);
// position: in the handling node's coordinates.
ZEPHUI_EXPORT MouseEvent MouseEventFromQt(QMouseEvent const& event, QPointF const& position);
ZEPHUI_EXPORT MouseEvent MouseEventFromQt(QWheelEvent const& event, QPointF const& position);

} // namespace zephui

#pragma once
// Conversions from Qt's input events to the toolkit's events. For platform
// code (the controls, the host adapter, tests) only.

#include "zephui/Events.h"

#include <Qt>

class QKeyEvent;
class QMouseEvent;
class QWheelEvent;
class QPointF;

namespace zephui
{

Flags<unsigned char> ModifiersFromQt(Qt::KeyboardModifiers modifiers);
KeyboardCode KeyboardCodeFromQt(int qtKey);
int MouseButtonsFromQt(Qt::MouseButtons buttons);
KeyboardEvent KeyboardEventFromQt(QKeyEvent const& event);
// position: in the handling node's coordinates.
MouseEvent MouseEventFromQt(QMouseEvent const& event, QPointF const& position);
MouseEvent MouseEventFromQt(QWheelEvent const& event, QPointF const& position);

} // namespace zephui

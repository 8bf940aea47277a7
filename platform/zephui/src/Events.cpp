#include "zephui/Events.h"
#include "zephui/QtEvents.h"

#include "zephcore/QtStrings.h"

#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

namespace zephui
{

PointF GetGlobalMousePosition()
{
    QPoint const p = QCursor::pos();
    return PointF(float(p.x()), float(p.y()));
}

Flags<unsigned char> ModifiersFromQt(Qt::KeyboardModifiers modifiers)
{
    unsigned char bits = 0;
    if (modifiers & Qt::MetaModifier)
        bits |= kModifierCommand;
    if (modifiers & Qt::ShiftModifier)
        bits |= kModifierShift;
    if (modifiers & Qt::ControlModifier)
        bits |= kModifierControl;
    if (modifiers & Qt::KeypadModifier)
        bits |= kModifierKeypad;
    if (modifiers & Qt::AltModifier)
        bits |= kModifierAlt;
    return bits;
}

KeyboardCode KeyboardCodeFromQt(int key)
{
    switch (key)
    {
    case Qt::Key_Escape:
        return KeyboardCode(KeyboardCode::kKeyEscape);
    case Qt::Key_Backspace:
        return KeyboardCode(KeyboardCode::kKeyBackspace);
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return KeyboardCode(KeyboardCode::kKeyTab);
    case Qt::Key_Return:
        return KeyboardCode(KeyboardCode::kKeyReturn);
    case Qt::Key_Enter:
        return KeyboardCode(KeyboardCode::kKeyEnter);
    case Qt::Key_Space:
        return KeyboardCode(KeyboardCode::kKeySpace);
    case Qt::Key_Delete:
        return KeyboardCode(KeyboardCode::kKeyDelete);
    case Qt::Key_Insert:
        return KeyboardCode(KeyboardCode::kKeyInsert);
    case Qt::Key_F3:
        return KeyboardCode(KeyboardCode::kKeyF3);
    case Qt::Key_Home:
        return KeyboardCode(KeyboardCode::kKeyHome);
    case Qt::Key_End:
        return KeyboardCode(KeyboardCode::kKeyEnd);
    case Qt::Key_PageUp:
        return KeyboardCode(KeyboardCode::kKeyPageUp);
    case Qt::Key_PageDown:
        return KeyboardCode(KeyboardCode::kKeyPageDown);
    case Qt::Key_Left:
        return KeyboardCode(KeyboardCode::kKeyLeft);
    case Qt::Key_Right:
        return KeyboardCode(KeyboardCode::kKeyRight);
    case Qt::Key_Up:
        return KeyboardCode(KeyboardCode::kKeyUp);
    case Qt::Key_Down:
        return KeyboardCode(KeyboardCode::kKeyDown);
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_Meta:
    case Qt::Key_AltGr:
    case Qt::Key_CapsLock:
        return KeyboardCode(KeyboardCode::kKeyModifier);
    default:
        break;
    }
    if (key >= Qt::Key_F1 && key <= Qt::Key_F12)
        return KeyboardCode(KeyboardCode::kKeyF1 + static_cast<unsigned long>(key - Qt::Key_F1));
    return KeyboardCode(KeyboardCode::kKeyCharacter);
}

int MouseButtonsFromQt(Qt::MouseButtons buttons)
{
    int bits = 0;
    if (buttons & Qt::LeftButton)
        bits |= MouseEvent::kButtonLeft;
    if (buttons & Qt::MiddleButton)
        bits |= MouseEvent::kButtonMiddle;
    if (buttons & Qt::RightButton)
        bits |= MouseEvent::kButtonRight;
    return bits;
}

KeyboardEvent KeyboardEventFromQt(QKeyEvent const& event)
{
    Qt::KeyboardModifiers mods = event.modifiers();
    if (event.key() == Qt::Key_Backtab)
        mods |= Qt::ShiftModifier; // Qt reports Shift+Tab as Backtab, sometimes without Shift
    return KeyboardEvent(event.type() == QEvent::KeyRelease ? KeyboardEvent::kKeyUp
                                                            : KeyboardEvent::kKeyDown,
                         KeyboardCodeFromQt(event.key()), ModifiersFromQt(mods),
                         zephcore::ToUTF16(event.text()), event.isAutoRepeat());
}

MouseEvent MouseEventFromQt(QMouseEvent const& event, QPointF const& position)
{
    int action = PointerEvent::kActionMove;
    int clicks = 1;
    switch (event.type())
    {
    case QEvent::MouseButtonPress:
        action = PointerEvent::kActionPress;
        break;
    case QEvent::MouseButtonDblClick:
        action = PointerEvent::kActionPress;
        clicks = 2;
        break;
    case QEvent::MouseButtonRelease:
        action = PointerEvent::kActionRelease;
        break;
    default:
        action =
            event.buttons() != Qt::NoButton ? PointerEvent::kActionDrag : PointerEvent::kActionMove;
        break;
    }
    QPointF const global = event.globalPosition();
    return MouseEvent(action, PointF(float(position.x()), float(position.y())),
                      PointF(float(global.x()), float(global.y())),
                      MouseButtonsFromQt(event.button()), MouseButtonsFromQt(event.buttons()),
                      ModifiersFromQt(event.modifiers()), clicks);
}

MouseEvent MouseEventFromQt(QWheelEvent const& event, QPointF const& position)
{
    QPointF const global = event.globalPosition();
    MouseEvent e(PointerEvent::kActionWheel, PointF(float(position.x()), float(position.y())),
                 PointF(float(global.x()), float(global.y())), MouseEvent::kButtonNone,
                 MouseButtonsFromQt(event.buttons()), ModifiersFromQt(event.modifiers()));
    QPoint const angle = event.angleDelta();
    // Qt's positive angle turns the wheel away from the user (towards the top).
    if (angle.y() != 0)
        e.SetWheel(-float(angle.y()) / 120.0f, MouseEvent::kAxisVertical);
    else
        e.SetWheel(-float(angle.x()) / 120.0f, MouseEvent::kAxisHorizontal);
    return e;
}

} // namespace zephui

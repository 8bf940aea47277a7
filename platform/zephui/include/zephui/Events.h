#pragma once
// Input events as nodes see them, with the toolkit's own numbering of keys,
// modifiers, mouse actions and buttons (independent of Qt's).

#include "zephui/Geometry.h"
#include "zephui/zephui_export.h"

#include "zephcore/Strings.h"

namespace zephui
{

// Modifier bits of KeyboardEvent::GetModKey and UI_ButtonChangedMessage::GetModKeys.
enum ModifierKey : unsigned char
{
    kModifierCommand = 0x01, // the platform's command key (Meta here)
    kModifierShift = 0x02,
    kModifierControl = 0x04,
    kModifierKeypad = 0x08, // the key is on the keypad; shortcut comparison ignores it
    kModifierAlt = 0x10,
};

// A key, numbered by the toolkit. Keys without a number of their own carry
// kKeyCharacter and their text.
class ZEPHUI_EXPORT KeyboardCode
{
public:
    enum : unsigned long
    {
        kKeyCharacter = 0,
        kKeyEscape = 1,
        kKeyBackspace = 2,
        kKeyTab = 3,
        kKeyReturn = 4,
        kKeyEnter = 5, // the keypad's Enter
        kKeySpace = 6,
        kKeyDelete = 7,
        kKeyInsert = 8,
        kKeyF3 = 9, // find next; with Shift, find previous
        kKeyHome = 10,
        kKeyEnd = 11,
        kKeyPageUp = 12,
        kKeyPageDown = 13,
        kKeyLeft = 14,
        kKeyRight = 15,
        kKeyUp = 16,
        kKeyDown = 17,
        kKeyF1 = 20,       // F1 to F12 are 20 to 31, but F3, which is 9
        kKeyModifier = 40, // a modifier key alone
    };

    KeyboardCode() = default;
    explicit KeyboardCode(unsigned long code) : value(code) {}
    unsigned long Get() const { return value; }
    friend bool operator==(KeyboardCode a, KeyboardCode b) { return a.value == b.value; }
    friend bool operator!=(KeyboardCode a, KeyboardCode b) { return a.value != b.value; }

private:
    unsigned long value = kKeyCharacter;
};

class ZEPHUI_EXPORT KeyboardEvent
{
public:
    enum Action
    {
        kKeyDown = 1,
        kKeyUp = 2
    };

    KeyboardEvent() = default;
    KeyboardEvent(Action action, KeyboardCode code, Flags<unsigned char> modifiers,
                  zephcore::UTF16String text = {}, bool autoRepeat = false)
        : action(action), code(code), modifiers(modifiers), text(std::move(text)),
          autoRepeat(autoRepeat)
    {
    }

    Action GetAction() const { return action; }
    KeyboardCode GetCode() const { return code; }
    Flags<unsigned char> GetModKey() const { return modifiers; }
    zephcore::UTF16String const& GetText() const { return text; }
    bool IsAutoRepeat() const { return autoRepeat; }
    // A press (or its repeat) of a key that acts: not a release, not a modifier alone.
    bool IsActionKeyDown() const
    {
        return action == kKeyDown && code.Get() != KeyboardCode::kKeyModifier;
    }
    // Same key, whatever the modifiers.
    bool CompareCode(KeyboardCode other) const { return code == other; }
    // Same key and exactly these modifiers; the keypad bit is not compared.
    bool CompareShortcut(KeyboardCode other, Flags<unsigned char> mods) const
    {
        return code == other && modifiers.Without(kModifierKeypad).Get() ==
                                    Flags<unsigned char>(mods).Without(kModifierKeypad).Get();
    }

private:
    Action action = kKeyDown;
    KeyboardCode code;
    Flags<unsigned char> modifiers;
    zephcore::UTF16String text;
    bool autoRepeat = false;
};

class UI_Node;

// A pointer event; the position is in the coordinates of the node that handles it.
class ZEPHUI_EXPORT PointerEvent
{
public:
    enum Action
    {
        kActionPress = 1,
        kActionRelease = 2,
        kActionDrag = 3, // a move with a button held
        kActionWheel = 4,
        kActionMove = 5, // a move with no button held
    };

    virtual ~PointerEvent() = default;

    int GetAction() const { return action; }
    PointF GetPosition() const { return position; }
    PointF GetGlobalPosition() const { return globalPosition; }
    void SetPosition(PointF p) { position = p; }

protected:
    PointerEvent(int action, PointF position, PointF global)
        : action(action), position(position), globalPosition(global)
    {
    }

    int action = kActionMove;
    PointF position;
    PointF globalPosition;
};

class ZEPHUI_EXPORT MouseEvent : public PointerEvent
{
public:
    enum Button
    {
        kButtonNone = 0,
        kButtonLeft = 1,
        kButtonMiddle = 2,
        kButtonRight = 4
    };
    enum WheelAxis
    {
        kAxisVertical = 1,
        kAxisHorizontal = 2
    };

    MouseEvent(int action, PointF position, PointF global, int button = kButtonNone,
               int buttonsHeld = 0, Flags<unsigned char> modifiers = {}, int clickCount = 1)
        : PointerEvent(action, position, global), button(button), buttonsHeld(buttonsHeld),
          modifiers(modifiers), clickCount(clickCount)
    {
    }

    bool IsAction(int a) const { return action == a; }
    // The button that changed (press, release); for drags and moves the buttons held.
    bool IsButton(int b) const { return ((button != kButtonNone ? button : buttonsHeld) & b) != 0; }
    int GetButton() const { return button; }
    int GetButtonsHeld() const { return buttonsHeld; }
    Flags<unsigned char> GetModKey() const { return modifiers; }
    int GetClickCount() const { return clickCount; }
    bool IsLeftButtonDoubleClick() const
    {
        return action == kActionPress && button == kButtonLeft && clickCount >= 2;
    }
    // In steps of the wheel; positive scrolls towards the end of the document
    // (down or right), i.e. the wheel turned towards the user.
    float GetMouseWheelDelta() const { return wheelDelta; }
    int GetMouseWheelAxis() const { return wheelAxis; }
    void SetWheel(float delta, int axis)
    {
        wheelDelta = delta;
        wheelAxis = axis;
    }

private:
    int button = kButtonNone;
    int buttonsHeld = 0;
    Flags<unsigned char> modifiers;
    int clickCount = 1;
    float wheelDelta = 0.0f;
    int wheelAxis = kAxisVertical;
};

// Where the pointer is, in global (screen) coordinates.
ZEPHUI_EXPORT PointF GetGlobalMousePosition();

} // namespace zephui

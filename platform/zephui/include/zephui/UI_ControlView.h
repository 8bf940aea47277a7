#pragma once
// UI_ControlView: the base of every value control. It holds the known or
// unknown state of the value and the callables told of changes.
//
// How to build a control on this base
// -----------------------------------
// 1. Derive from UI_ControlView (or UI_InteractiveControlView for controls with
//    live changes during a gesture, such as a drag).
// 2. Give it a real Qt control as its widget: override CreateWidget() and
//    return `new NodeWidget<QLineEdit>(this)` (NodeWidget.h), or subclass
//    NodeWidget<QLineEdit> to override more, or call SetWidget(...) in the
//    constructor. The node's rectangle, shown, enabled and tool tip state are
//    applied to the widget when it is installed; UI_GetWidget() returns it
//    (made on first call; null if Qt deleted it, so test before use).
//    Keep the value on the node as well if it must survive without a widget.
// 3. When the user changes the value (a Qt signal), call SetValueKnown() if
//    the control was unknown, then SendValueChangedMessage(); a button sends
//    its own UI_ButtonChangedMessage through NotifyChanged(&message). Hold a
//    NodeEventScope in the slot: a callable may drop the control.
//    Programmatic SetValue sends nothing.
// 4. Override KnownValueStateChanged() to show the unknown state (mixed
//    check box, unknown-state text, ...); IsValueUnknown() reads it.
// 5. SetWantsKeyboardFocus(false) takes the control out of the Tab chain
//    (Qt::NoFocus); without a call the Qt control's own focus policy stays.
// 6. Drawing of your own: override UI_Draw(Drawbot*); it is called after the
//    Qt control painted (Drawbot::GetPainter() gives the QPainter).

#include "zephui/Messages.h"
#include "zephui/UI_SubView.h"
#include "zephui/zephui_export.h"

#include <optional>

namespace zephui
{

class ZEPHUI_EXPORT UI_ControlView : public UI_SubView
{
public:
    UI_ControlView() = default;

    virtual unsigned long GetMnemonicKeyCode() const { return 0; }
    // Puts the control in the unknown state (a mixed value).
    virtual void SetValueUnknown();
    virtual void SetDownState(bool down);
    virtual void SetWantsKeyboardFocus(bool wants);
    virtual void SetSuppressFocusDrawing(bool suppress) { suppressFocusDrawing = suppress; }
    virtual bool DoDrawRollover() const { return false; }
    // Removes the "&" of a mnemonic from a label; "&&" stands for "&".
    virtual zephcore::UTF16String UI_ProcessStringAndSetMnemonic(zephcore::UTF16String const& text);
    virtual zephcore::UTF16String
    UI_ProcessStringAndSetMnemonicInMultiFormat(zephcore::UTF16String const& text)
    {
        return UI_ProcessStringAndSetMnemonic(text);
    }
    virtual bool UI_CanGainSingleKeyMnemonicFocus() const { return false; }
    virtual bool UI_AllowsSingleKeyMnemonic() const { return false; }
    virtual void UI_TurnOnMnemonicDisplay() {}
    virtual void UI_TurnOffMnemonicDisplay() {}
    // Leaves the unknown state.
    virtual void SetValueKnown();
    // Called whenever the known/unknown state changes.
    virtual void KnownValueStateChanged() {}
    // Tells every registered callable, with a UI_ControlMessage.
    virtual void SendValueChangedMessage();
    virtual void SendHover(bool /*entered*/) {}

    bool UI_WantsKeyboardFocus() const override;

    bool IsValueUnknown() const { return valueUnknown; }
    bool IsValueKnown() const { return !valueUnknown; }
    bool GetDownState() const { return downState; }
    bool GetSuppressFocusDrawing() const { return suppressFocusDrawing; }
    void SetDisabled(bool disable) { UI_SetDisabled(disable); }
    void SetEnabled(bool enable) { UI_SetEnabled(enable); }

    // Registers a callable told of changes made by the user. The caller keeps
    // the holder and leaves by emptying the callable.
    void NotifyWhenChanged(MessageCallback const& callback) { changed.Add(callback); }

protected:
    // Sends a message of the control's own kind to the change callables.
    void NotifyChanged(Message* message) { changed.Notify(message); }

private:
    CallbackList<void(Message*)> changed;
    bool valueUnknown = false;
    bool downState = false;
    bool suppressFocusDrawing = false;
    std::optional<bool> wantsFocus;
};

// A control that also reports live changes during a gesture.
class ZEPHUI_EXPORT UI_InteractiveControlView : public UI_ControlView
{
public:
    void NotifyWhenChangedInteractively(MessageCallback const& callback)
    {
        interactive.Add(callback);
    }
    virtual void SendInteractiveValueChangedMessage();

protected:
    void NotifyChangedInteractively(Message* message) { interactive.Notify(message); }

private:
    CallbackList<void(Message*)> interactive;
};

using UI_ControlViewPtr = boost::intrusive_ptr<UI_ControlView>;

} // namespace zephui

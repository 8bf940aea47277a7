#pragma once
// Windows and dialogs. OS_Window is a node shown as a window of its own (a
// QDialog); OS_Dialog adds the modal run and size limits; UI_Dialog adds the
// OK and Cancel buttons: Enter presses OK, Escape and the window's close box
// press Cancel, and both go through the overridable DefaultCloseOk and
// DefaultCloseCancel, which end the modal run with 1 (OK) or 0.
//
// A window's rectangle, as a node, is its content area in screen
// coordinates; the "structure" rectangle (UI_GetGlobalStructureRect) is the
// whole window with its frame, which is what a host remembers and restores.
//
// The content of a window is a child node placed at 0, 0; the window lays
// out its children by their bindings when the user resizes it.

#include "zephui/UI_Button.h"
#include "zephui/UI_SubView.h"
#include "zephui/zephui_export.h"

#include <boost/function.hpp>

class QEventLoop;
class QWidget;

namespace zephui
{

// A native parent window is a QWidget here.
using HWND = QWidget*;

enum DialogResult
{
    kDialogResultCancel = 0,
    kDialogResultOK = 1
};

class ZEPHUI_EXPORT OS_Window : public UI_SubView
{
public:
    // parentWindow: the window the new one stays over; null for none.
    explicit OS_Window(zephcore::UTF16String const& title, HWND parentWindow = nullptr);
    // The parent's window is found from the node; null for none.
    OS_Window(zephcore::UTF16String const& title, UI_Node* parentNode);
    ~OS_Window() override;

    void SetWindowTitle(zephcore::UTF16String const& title);
    zephcore::UTF16String const& GetWindowTitle() const { return title; }
    HWND GetParentWindow() const { return parentWindow; }
    // Hides the window, ending a modal run with this result.
    virtual void Close(int result);
    // The window's close box; the base closes with kDialogResultCancel.
    virtual void UI_CloseBoxPressed() { Close(kDialogResultCancel); }

protected:
    QWidget* CreateWidget() override;

private:
    zephcore::UTF16String title;
    HWND parentWindow = nullptr;
};

class ZEPHUI_EXPORT OS_Dialog : public OS_Window
{
public:
    using OS_Window::OS_Window;

    // Shows the dialog and waits until it closes; its result. The dialog
    // stays alive for the whole run, whoever else holds it.
    int RunModal();
    bool IsRunningModal() const { return modalLoop != nullptr; }
    int GetResult() const { return result; }
    void Close(int result) override;

    // Limits of the content area, in layout units; the user can't resize
    // beyond them, and a present size outside them is brought inside.
    void SetMinimumSize(float width, float height);
    void SetMaximumSize(float width, float height);
    PointF GetMinimumSize() const { return minimumSize; }
    PointF GetMaximumSize() const { return maximumSize; }
    // Resizes the content area, keeping the top left corner.
    void SetContentSize(float width, float height);
    // Centres the window on its parent window, or on the screen without one.
    void Center();
    // Places a dialog that has not been placed: centred on its parent window,
    // a third of the way down, and kept on a monitor.
    void Position();

private:
    void ApplySizeLimits();

    PointF minimumSize;
    PointF maximumSize{16777215.0f, 16777215.0f};
    int result = kDialogResultCancel;
    QEventLoop* modalLoop = nullptr;
};

class ZEPHUI_EXPORT UI_Dialog : public OS_Dialog
{
public:
    using OS_Dialog::OS_Dialog;
    ~UI_Dialog() override;

    // The buttons that close the dialog. OK becomes the default button (Enter
    // presses it); Cancel is pressed by Escape. Either may be null.
    void SetButtons(UI_ButtonPtr const& ok, UI_ButtonPtr const& cancel);
    void SetOkButton(UI_ButtonPtr const& ok) { SetButtons(ok, cancelButton); }
    void SetCancelButton(UI_ButtonPtr const& cancel) { SetButtons(okButton, cancel); }
    UI_ButtonPtr const& GetOkButton() const { return okButton; }
    UI_ButtonPtr const& GetCancelButton() const { return cancelButton; }

    // Closing by the buttons; overrides store what they need, then call these.
    virtual void DefaultCloseOk() { Close(kDialogResultOK); }
    virtual void DefaultCloseCancel() { Close(kDialogResultCancel); }
    void UI_CloseBoxPressed() override { DefaultCloseCancel(); }

private:
    UI_ButtonPtr okButton;
    UI_ButtonPtr cancelButton;
    MessageCallback okPressed;
    MessageCallback cancelPressed;
};

using OS_WindowPtr = boost::intrusive_ptr<OS_Window>;
using OS_DialogPtr = boost::intrusive_ptr<OS_Dialog>;
using UI_DialogPtr = boost::intrusive_ptr<UI_Dialog>;

// The window that holds a node: its whole rectangle, frame included, in
// screen coordinates. An empty rectangle when the node is in no window.
ZEPHUI_EXPORT RectF UI_GetGlobalStructureRect(UI_Node* node);
// Moves and resizes the node's window so that its whole rectangle is this.
ZEPHUI_EXPORT void UI_SetGlobalStructureRect(UI_Node* node, RectF const& rect);

} // namespace zephui

#pragma once
// Drives modal windows without a person, for tests and scripted runs.
//
// A modal run (RunModal of a dialog, a message box, a file dialog) blocks its
// caller until the window closes, so a test can't act after the call. A
// ModalDriver acts from inside the run: while it lives, each modal window that
// opens is handed, once its modal loop runs, to the next action queued with
// Then(). Actions act through real events (mouse clicks on buttons, key
// presses into fields), as a user would.
//
//     zephui::ModalDriver driver;
//     driver.Then(ModalDriver::TypeInto("nameTextEdit", "Keeper"))
//           .Then(ModalDriver::PressNode("okButton"));   // same window, in turn
//     bool const ok = DoSomeDialog(...);                  // returns when closed
//     EXPECT_EQ(driver.Pending(), 0);
//
// Each action gets the window; Sequence() runs several on the same window.
// A nested modal window (a message box opened by an OK button, say) takes the
// next action in the queue. A modal window that opens when no action is left
// is closed as with Escape and counted by Unexpected(), so a test fails
// instead of hanging.

#include "zephui/zephui_export.h"

#include <QMessageBox>
#include <QString>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QWidget;

namespace zephui
{

class ZEPHUI_EXPORT ModalDriver
{
public:
    using Action = std::function<void(QWidget* window)>;

    ModalDriver();
    ~ModalDriver();
    ModalDriver(ModalDriver const&) = delete;
    ModalDriver& operator=(ModalDriver const&) = delete;

    // Queues an action for the next modal window that opens.
    ModalDriver& Then(Action action);
    // Actions not used yet.
    int Pending() const;
    // Modal windows that opened with no action left (closed as with Escape).
    int Unexpected() const;
    // The titles of the modal windows seen so far, in the order they opened.
    std::vector<QString> const& Titles() const;

    // Several actions on the same window, in order.
    static Action Sequence(std::vector<Action> actions);
    // Clicks the button with this node id in a dialog made of nodes.
    static Action PressNode(std::string const& id);
    // Clicks the push button whose text, without its "&" mnemonic marks, is this.
    static Action PressButton(QString const& text);
    // Clicks a message box's standard button.
    static Action Answer(QMessageBox::StandardButton button);
    // Presses Escape, which cancels a dialog or a message box.
    static Action Escape();
    // Presses Return, which presses the default button.
    static Action Return();
    // Replaces the text of a field: the node with this id in a dialog made of
    // nodes, or else the first line edit of the window (an input box). The
    // field is emptied with Ctrl+A and Delete, and the text typed in.
    static Action TypeInto(std::string const& id, QString const& text);
    static Action Type(QString const& text) { return TypeInto({}, text); }
    // Fills a file dialog with a path and accepts it.
    static Action ChooseFile(QString const& path);

private:
    struct State;
    std::shared_ptr<State> state;
};

// Sends a real left click (press and release) to the middle of a widget.
ZEPHUI_EXPORT void ClickWidget(QWidget* widget);
// Sends key presses that type the text into the widget.
ZEPHUI_EXPORT void TypeIntoWidget(QWidget* widget, QString const& text);

} // namespace zephui

#include "zephui/ModalDriver.h"

#include "zephui/NodeWidget.h"
#include "zephui/UI_Node.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTimer>

#include <deque>

namespace zephui
{

struct ModalDriver::State : QObject
{
    std::deque<Action> actions;
    int unexpected = 0;
    std::vector<QString> titles;
    // Windows shown and the actions for them, run once their modal loop turns.
    std::vector<std::pair<QPointer<QWidget>, Action>> due;
    QTimer turn;

    State()
    {
        turn.setSingleShot(true);
        turn.setInterval(0);
        connect(&turn, &QTimer::timeout, this, [this] { RunDue(); });
    }

    void RunDue()
    {
        auto const now = std::move(due);
        due.clear();
        for (auto const& [window, action] : now)
            if (window && window->isVisible())
                action(window.data());
    }

    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() != QEvent::Show || !object->isWidgetType())
            return false;
        auto* window = static_cast<QWidget*>(object);
        if (!window->isWindow() || !window->isModal())
            return false;
        titles.push_back(window->windowTitle());
        if (!actions.empty())
        {
            due.emplace_back(window, std::move(actions.front()));
            actions.pop_front();
        }
        else
        {
            ++unexpected;
            due.emplace_back(window, Escape());
        }
        turn.start();
        return false;
    }
};

ModalDriver::ModalDriver() : state(std::make_shared<State>())
{
    qApp->installEventFilter(state.get());
}

ModalDriver::~ModalDriver()
{
    qApp->removeEventFilter(state.get());
}

ModalDriver& ModalDriver::Then(Action action)
{
    state->actions.push_back(std::move(action));
    return *this;
}

int ModalDriver::Pending() const
{
    return int(state->actions.size());
}

int ModalDriver::Unexpected() const
{
    return state->unexpected;
}

std::vector<QString> const& ModalDriver::Titles() const
{
    return state->titles;
}

// ---- Events --------------------------------------------------------------

void ClickWidget(QWidget* widget)
{
    if (!widget)
        return;
    QPointer<QWidget> const guard(widget);
    QPointF const local(widget->width() / 2.0, widget->height() / 2.0);
    QPointF const global = widget->mapToGlobal(local);
    QMouseEvent press(QEvent::MouseButtonPress, local, global, Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(widget, &press);
    // The press may have closed the window and deleted the widget.
    if (!guard)
        return;
    QMouseEvent release(QEvent::MouseButtonRelease, local, global, Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QApplication::sendEvent(widget, &release);
}

namespace
{

void SendKey(QWidget* widget, int key, Qt::KeyboardModifiers modifiers, QString const& text = {})
{
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(widget, &press);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
    QApplication::sendEvent(widget, &release);
}

// The widget that takes typing: a node's line edit or text box itself.
QWidget* TypingTarget(QWidget* widget)
{
    if (qobject_cast<QLineEdit*>(widget) || qobject_cast<QPlainTextEdit*>(widget))
        return widget;
    if (auto* edit = widget->findChild<QLineEdit*>())
        return edit;
    if (auto* text = widget->findChild<QPlainTextEdit*>())
        return text;
    return widget;
}

QWidget* FocusTarget(QWidget* window)
{
    QWidget* focus = window->focusWidget();
    return focus ? focus : window;
}

QString WithoutMnemonics(QString text)
{
    text.replace(QLatin1String("&&"), QLatin1String("\x01"));
    text.remove(QLatin1Char('&'));
    text.replace(QLatin1Char('\x01'), QLatin1Char('&'));
    return text;
}

} // namespace

void TypeIntoWidget(QWidget* widget, QString const& text)
{
    if (!widget)
        return;
    QPointer<QWidget> const guard(widget);
    for (QChar const c : text)
    {
        if (!guard)
            return;
        SendKey(widget, c.unicode() < 128 ? int(c.toUpper().unicode()) : int(Qt::Key_unknown),
                Qt::NoModifier, QString(c));
    }
}

// ---- Actions -------------------------------------------------------------

ModalDriver::Action ModalDriver::Sequence(std::vector<Action> actions)
{
    return [actions](QWidget* window)
    {
        QPointer<QWidget> const guard(window);
        for (Action const& action : actions)
        {
            if (!guard || !guard->isVisible())
                return;
            action(window);
        }
    };
}

ModalDriver::Action ModalDriver::PressNode(std::string const& id)
{
    return [id](QWidget* window)
    {
        UI_Node const* root = NodeForWidget(window);
        UI_Node* node = root ? root->UI_ChildGetFromID(id) : nullptr;
        if (node)
            ClickWidget(node->UI_GetWidget());
    };
}

ModalDriver::Action ModalDriver::PressButton(QString const& text)
{
    return [text](QWidget* window)
    {
        for (QAbstractButton* button : window->findChildren<QAbstractButton*>())
            if (button->isVisible() && WithoutMnemonics(button->text()) == text)
            {
                ClickWidget(button);
                return;
            }
    };
}

ModalDriver::Action ModalDriver::Answer(QMessageBox::StandardButton which)
{
    return [which](QWidget* window)
    {
        if (auto* box = qobject_cast<QMessageBox*>(window))
            ClickWidget(box->button(which));
    };
}

ModalDriver::Action ModalDriver::Escape()
{
    return [](QWidget* window) { SendKey(FocusTarget(window), Qt::Key_Escape, Qt::NoModifier); };
}

ModalDriver::Action ModalDriver::Return()
{
    return [](QWidget* window)
    { SendKey(FocusTarget(window), Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r")); };
}

ModalDriver::Action ModalDriver::TypeInto(std::string const& id, QString const& text)
{
    return [id, text](QWidget* window)
    {
        QWidget* field = nullptr;
        if (!id.empty())
        {
            UI_Node const* root = NodeForWidget(window);
            if (UI_Node* node = root ? root->UI_ChildGetFromID(id) : nullptr)
                field = node->UI_GetWidget();
        }
        else
        {
            field = window->findChild<QLineEdit*>();
        }
        if (!field)
            return;
        field = TypingTarget(field);
        field->setFocus(Qt::OtherFocusReason);
        SendKey(field, Qt::Key_A, Qt::ControlModifier);
        SendKey(field, Qt::Key_Delete, Qt::NoModifier);
        TypeIntoWidget(field, text);
    };
}

ModalDriver::Action ModalDriver::ChooseFile(QString const& path)
{
    return [path](QWidget* window)
    {
        auto* dialog = qobject_cast<QFileDialog*>(window);
        if (!dialog)
            return;
        dialog->selectFile(path);
        static_cast<QDialog*>(dialog)->accept();
    };
}

} // namespace zephui

#include "zephui/UI_Dialog.h"

#include "zephui/MonitorInfo.h"
#include "zephui/NodeWidget.h"

#include "WindowParent.h"

#include "zephcore/QtStrings.h"

#include <QDialog>
#include <QEventLoop>
#include <QGuiApplication>
#include <QPointer>
#include <QScreen>

#include <boost/make_shared.hpp>

#include <algorithm>

namespace zephui
{

namespace
{

// A window's widget: Escape and the close box come to the node rather than
// closing the window behind its back.
class WindowWidget : public NodeWidget<QDialog>
{
public:
    WindowWidget(OS_Window* window, QWidget* parentWindow)
        : NodeWidget<QDialog>(window, parentWindow), window(window)
    {
    }
    void reject() override
    {
        if (GetNode())
        {
            NodeEventScope scope(window);
            window->UI_CloseBoxPressed();
        }
        else
        {
            QDialog::reject();
        }
    }

private:
    OS_Window* window;
};

// The frame around a window's content: left, top, right and bottom widths.
struct FrameMargins
{
    float left = 0, top = 0, right = 0, bottom = 0;
};

FrameMargins MarginsOf(QWidget const* window)
{
    if (!window || !window->isVisible())
        return {};
    QRect const outer = window->frameGeometry();
    QRect const inner = window->geometry();
    return {float(inner.left() - outer.left()), float(inner.top() - outer.top()),
            float(outer.right() - inner.right()), float(outer.bottom() - inner.bottom())};
}

RectF ToRectF(QRect const& r)
{
    return RectF(float(r.x()), float(r.y()), float(r.width()), float(r.height()));
}

QWidget* WindowOf(UI_Node* node)
{
    QWidget* w = node ? node->UI_GetWidget() : nullptr;
    return w ? w->window() : nullptr;
}

} // namespace

QWidget* ParentWindowOf(UI_Node* node)
{
    QWidget* window = WindowOf(node);
    return window ? window : QApplication::activeWindow();
}

// ---- OS_Window -----------------------------------------------------------

OS_Window::OS_Window(zephcore::UTF16String const& title, HWND parentWindow)
    : title(title), parentWindow(parentWindow)
{
    UI_SetLayoutsChildren(true);
}

OS_Window::OS_Window(zephcore::UTF16String const& title, UI_Node* parentNode)
    : OS_Window(title, WindowOf(parentNode))
{
}

OS_Window::~OS_Window() = default;

QWidget* OS_Window::CreateWidget()
{
    auto* w = new WindowWidget(this, parentWindow);
    w->setWindowTitle(zephcore::ToQString(title));
    w->setSizeGripEnabled(false);
    return w;
}

void OS_Window::SetWindowTitle(zephcore::UTF16String const& newTitle)
{
    title = newTitle;
    if (QWidget* w = UI_GetWidgetIfMade())
        w->setWindowTitle(zephcore::ToQString(title));
}

void OS_Window::Close(int /*result*/)
{
    UI_Show(false);
}

// ---- OS_Dialog -----------------------------------------------------------

int OS_Dialog::RunModal()
{
    UI_NodePtr const keep(this);
    QWidget* w = UI_GetWidget();
    if (!w || modalLoop)
        return kDialogResultCancel;
    result = kDialogResultCancel;
    w->setWindowModality(Qt::ApplicationModal);
    QEventLoop loop;
    QPointer<QWidget> const guard(w);
    QObject::connect(w, &QObject::destroyed, &loop, &QEventLoop::quit);
    modalLoop = &loop;
    UI_Show(true);
    if (guard && guard->isVisible())
        loop.exec(QEventLoop::DialogExec);
    modalLoop = nullptr;
    UI_Show(false);
    if (guard)
        guard->setWindowModality(Qt::NonModal);
    return result;
}

void OS_Dialog::Close(int newResult)
{
    result = newResult;
    OS_Window::Close(newResult);
    if (modalLoop)
        modalLoop->exit();
}

void OS_Dialog::SetMinimumSize(float width, float height)
{
    minimumSize = PointF(width, height);
    ApplySizeLimits();
}

void OS_Dialog::SetMaximumSize(float width, float height)
{
    maximumSize = PointF(width, height);
    ApplySizeLimits();
}

void OS_Dialog::ApplySizeLimits()
{
    if (QWidget* w = UI_GetWidget())
    {
        w->setMinimumSize(int(minimumSize.x), int(minimumSize.y));
        w->setMaximumSize(int(std::max(maximumSize.x, minimumSize.x)),
                          int(std::max(maximumSize.y, minimumSize.y)));
    }
    RectF r = UI_GetLocalRectF(true);
    float const w = std::clamp(r.width, minimumSize.x, std::max(maximumSize.x, minimumSize.x));
    float const h = std::clamp(r.height, minimumSize.y, std::max(maximumSize.y, minimumSize.y));
    if (w != r.width || h != r.height)
        SetContentSize(w, h);
}

void OS_Dialog::SetContentSize(float width, float height)
{
    RectF r = UI_GetLocalRectF(true);
    r.width = width;
    r.height = height;
    UI_SetLocalRectF(r);
}

void OS_Dialog::Center()
{
    RectF area;
    if (QWidget const* parent = GetParentWindow(); parent && parent->isVisible())
        area = ToRectF(parent->window()->frameGeometry());
    else
        area = OS_MonitorInfo().GetPrimaryWorkArea();
    RectF r = UI_GetGlobalStructureRect(this);
    r.left = area.left + (area.width - r.width) / 2.0f;
    r.top = area.top + (area.height - r.height) / 2.0f;
    UI_SetGlobalStructureRect(this, r);
}

void OS_Dialog::Position()
{
    OS_MonitorInfo const monitors;
    RectF area;
    if (QWidget const* parent = GetParentWindow(); parent && parent->isVisible())
        area = ToRectF(parent->window()->frameGeometry());
    else
        area = monitors.GetPrimaryWorkArea();
    RectF r = UI_GetGlobalStructureRect(this);
    r.left = area.left + (area.width - r.width) / 2.0f;
    r.top = area.top + std::max(0.0f, (area.height - r.height) / 3.0f);
    monitors.EnsureRectIsVisible(r);
    UI_SetGlobalStructureRect(this, r);
}

// ---- UI_Dialog -----------------------------------------------------------

UI_Dialog::~UI_Dialog()
{
    // The buttons may outlive the dialog in a caller's hands.
    if (okPressed)
        okPressed->clear();
    if (cancelPressed)
        cancelPressed->clear();
}

void UI_Dialog::SetButtons(UI_ButtonPtr const& ok, UI_ButtonPtr const& cancel)
{
    if (ok != okButton)
    {
        if (okPressed)
            okPressed->clear();
        okButton = ok;
        okPressed.reset();
        if (ok)
        {
            ok->SetDefaultAppearance(true);
            okPressed = boost::make_shared<boost::function<void(Message*)>>([this](Message*)
                                                                            { DefaultCloseOk(); });
            ok->NotifyWhenChanged(okPressed);
        }
    }
    if (cancel != cancelButton)
    {
        if (cancelPressed)
            cancelPressed->clear();
        cancelButton = cancel;
        cancelPressed.reset();
        if (cancel)
        {
            cancelPressed = boost::make_shared<boost::function<void(Message*)>>(
                [this](Message*) { DefaultCloseCancel(); });
            cancel->NotifyWhenChanged(cancelPressed);
        }
    }
}

// ---- Window rectangles ---------------------------------------------------

RectF UI_GetGlobalStructureRect(UI_Node* node)
{
    if (!node)
        return {};
    UI_Node* root = node->UI_GetRootNode();
    QWidget const* window = root->UI_GetWidgetIfMade();
    if (window && window->isVisible())
        return ToRectF(window->frameGeometry());
    if (dynamic_cast<OS_Window*>(root))
        return root->UI_GetLocalRectF(true);
    return {};
}

void UI_SetGlobalStructureRect(UI_Node* node, RectF const& rect)
{
    if (!node)
        return;
    UI_Node* root = node->UI_GetRootNode();
    FrameMargins const m = MarginsOf(root->UI_GetWidgetIfMade());
    root->UI_SetLocalRectF(RectF(rect.left + m.left, rect.top + m.top,
                                 rect.width - m.left - m.right, rect.height - m.top - m.bottom));
}

} // namespace zephui

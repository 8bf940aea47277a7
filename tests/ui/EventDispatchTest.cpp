// Mouse and keyboard reach nodes: Qt's events in the toolkit's numbering,
// overrides see their events, bubbling goes up the node tree, filter nodes see
// keys (Tab included) before anything else; and the float geometry beneath.
// (The cursor a node asks for is driven through the splitter's tests, a view
// that takes Tab to move the focus itself through the form view's.)

#include "ControlTestWindow.h"

#include "zephui/Geometry.h"
#include "zephui/NodeWidget.h"
#include "zephui/QtEvents.h"
#include "zephui/ResourceManager.h"
#include "zephui/UI_NodeManager.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using namespace zephui;

namespace
{

struct Seen
{
    std::string who;
    UI_Node* node;
    int action;
    PointF position;
    std::string over; // the name of node, filled in once the click is done
};

// Records mouse events; takes them if told to.
class MouseView : public UI_SubView
{
public:
    MouseView(std::string name, std::vector<Seen>* log, bool take)
        : name(std::move(name)), log(log), take(take)
    {
    }
    bool UI_DoMouseEvent(UI_Node* node, MouseEvent const& event) override
    {
        if (event.IsAction(PointerEvent::kActionMove))
            return false;
        log->push_back({name, node, event.GetAction(), event.GetPosition(), {}});
        return take;
    }
    std::string name;
    std::vector<Seen>* log;
    bool take;
};

// A view that takes the focus and records keys.
class KeyView : public UI_SubView
{
public:
    KeyView(std::string name, std::vector<std::string>* log) : name(std::move(name)), log(log) {}
    bool UI_WantsKeyboardFocus() const override { return true; }
    bool UI_DoKeyboardEvent(UI_Node*, KeyboardEvent const& event) override
    {
        if (event.IsActionKeyDown())
            log->push_back(name + ":key" + std::to_string(event.GetCode().Get()));
        return false;
    }
    bool UI_DoPreKeyboardEvent(UI_Node* node, KeyboardEvent const& event) override
    {
        if (!event.IsActionKeyDown())
            return false;
        auto const* focused = dynamic_cast<KeyView const*>(node);
        log->push_back(name + ":pre" + std::to_string(event.GetCode().Get()) + "@" +
                       (focused ? focused->name : "?"));
        return takePre;
    }
    std::string name;
    std::vector<std::string>* log;
    bool takePre = false;
};

// A root and a child at (10, 20), both recording; the root takes what it sees.
std::vector<Seen> ClickChild(bool childTakes, Qt::MouseButton button)
{
    std::vector<Seen> log;
    boost::intrusive_ptr<MouseView> root(new MouseView("root", &log, true));
    boost::intrusive_ptr<MouseView> child(new MouseView("child", &log, childTakes));
    zephtest::AddShown(root.get(), child, RectF(10, 20, 100, 50));
    zephtest::ActiveTestWindow window(root);
    QTest::mousePress(child->UI_GetWidget(), button, Qt::NoModifier, QPoint(5, 6));
    QTest::mouseRelease(child->UI_GetWidget(), button, Qt::NoModifier, QPoint(5, 6));
    for (Seen& seen : log)
        seen.over = seen.node == child.get() ? "child" : seen.node == root.get() ? "root" : "?";
    return log;
}

// A root with two focusable children, a above b, in an active window.
struct KeyTree
{
    std::vector<std::string> log;
    boost::intrusive_ptr<KeyView> root{new KeyView("root", &log)};
    boost::intrusive_ptr<KeyView> a{new KeyView("a", &log)};
    boost::intrusive_ptr<KeyView> b{new KeyView("b", &log)};
    std::unique_ptr<zephtest::ActiveTestWindow> window;
    KeyTree()
    {
        zephtest::AddShown(root.get(), a, RectF(0, 0, 50, 20));
        zephtest::AddShown(root.get(), b, RectF(0, 30, 50, 20));
        window = std::make_unique<zephtest::ActiveTestWindow>(root);
    }
};

} // namespace

TEST(EventDispatchTest, OverrideSeesPressThenParentWhenChildDeclines)
{
    std::vector<Seen> const log = ClickChild(false, Qt::LeftButton);
    ASSERT_GE(log.size(), 2u);
    EXPECT_EQ(log[0].who, "child");
    EXPECT_EQ(log[0].action, PointerEvent::kActionPress);
    EXPECT_EQ(log[0].position, PointF(5, 6));
    // The parent gets what the child left, in its own coordinates, and learns
    // which node the pointer is over.
    EXPECT_EQ(log[1].who, "root");
    EXPECT_EQ(log[1].over, "child");
    EXPECT_EQ(log[1].position, PointF(15, 26));

    // A child that takes the press keeps the whole click from its parent.
    std::vector<Seen> const taken = ClickChild(true, Qt::RightButton);
    ASSERT_FALSE(taken.empty());
    EXPECT_EQ(taken.front().action, PointerEvent::kActionPress);
    for (Seen const& seen : taken)
        EXPECT_EQ(seen.who, "child");
}

TEST(EventDispatchTest, FilterNodeSeesTabBeforeFocusMoves)
{
    KeyTree keys;
    ASSERT_TRUE(keys.a->UI_GainKeyboardFocus(kFocusReasonProgram));
    {
        UI_NodeManager::AddAndRemoveKeyboardEventFilterNode filter(UI_NodeManager::Get(),
                                                                   keys.root.get());
        keys.root->takePre = true;
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_TRUE(keys.a->UI_HasKeyboardFocus()) << "a filter that takes Tab keeps the focus";
        EXPECT_EQ(keys.log, (std::vector<std::string>{"root:pre3@a"})) << "nothing else saw it";
    }
    keys.log.clear();
    // Without the filter, Tab goes up the nodes first, then Qt moves the focus.
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(keys.b->UI_HasKeyboardFocus());
    EXPECT_EQ(keys.log, (std::vector<std::string>{"a:key3", "root:key3"}));
}

TEST(EventDispatchTest, KeysGoToQtControlBeforeAncestors)
{
    std::vector<std::string> log;
    boost::intrusive_ptr<KeyView> root(new KeyView("root", &log));
    struct EditNode : UI_SubView
    {
        QWidget* CreateWidget() override { return new NodeWidget<QLineEdit>(this); }
        bool UI_WantsKeyboardFocus() const override { return true; }
    };
    UI_NodePtr const edit =
        zephtest::AddShown(root.get(), UI_NodePtr(new EditNode), RectF(0, 0, 100, 24));
    zephtest::ActiveTestWindow window(root);
    ASSERT_TRUE(edit->UI_GainKeyboardFocus(kFocusReasonProgram));

    QTest::keyClicks(QApplication::focusWidget(), "ab");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F3);
    EXPECT_EQ(qobject_cast<QLineEdit*>(edit->UI_GetWidget())->text(), QStringLiteral("ab"));
    // The line edit leaves F3 unused: it comes up to the ancestor.
    EXPECT_EQ(log, (std::vector<std::string>{"root:key9"}));
}

TEST(EventsTest, QtKeysAndModifiersMapToTheToolkitsNumbers)
{
    struct Case
    {
        int qtKey;
        Qt::KeyboardModifiers qtMods;
        unsigned long code;
        unsigned char mods;
    };
    // Qt's Shift+Tab is Backtab, with Shift not always set; the keypad's Enter
    // carries the keypad bit; F3 has a number of its own.
    for (Case const c :
         {Case{Qt::Key_Backtab, Qt::NoModifier, 3, 2},
          Case{Qt::Key_Enter, Qt::KeypadModifier, 5, 8}, Case{Qt::Key_F3, Qt::ShiftModifier, 9, 2},
          Case{Qt::Key_F5, Qt::NoModifier, 24, 0}, Case{Qt::Key_A, Qt::ControlModifier, 0, 4},
          Case{Qt::Key_Tab, Qt::AltModifier | Qt::ShiftModifier, 3, 18},
          Case{Qt::Key_Down, Qt::MetaModifier, 17, 1}})
    {
        KeyboardEvent const e = KeyboardEventFromQt(QKeyEvent(QEvent::KeyPress, c.qtKey, c.qtMods));
        EXPECT_EQ(e.GetCode().Get(), c.code) << c.qtKey;
        EXPECT_EQ(e.GetModKey().Get(), c.mods) << c.qtKey;
    }
    KeyboardEvent const enter =
        KeyboardEventFromQt(QKeyEvent(QEvent::KeyPress, Qt::Key_Enter, Qt::KeypadModifier));
    EXPECT_TRUE(enter.CompareShortcut(KeyboardCode(5), 0)) << "shortcuts ignore the keypad bit";
    EXPECT_FALSE(enter.CompareShortcut(KeyboardCode(4), 0));
    KeyboardEvent const shiftTab =
        KeyboardEventFromQt(QKeyEvent(QEvent::KeyPress, Qt::Key_Tab, Qt::ShiftModifier));
    EXPECT_FALSE(shiftTab.CompareShortcut(KeyboardCode(3), 0)) << "but nothing else";
    EXPECT_FALSE(KeyboardEventFromQt(QKeyEvent(QEvent::KeyRelease, Qt::Key_Tab, Qt::NoModifier))
                     .IsActionKeyDown());
    EXPECT_FALSE(KeyboardEventFromQt(QKeyEvent(QEvent::KeyPress, Qt::Key_Shift, Qt::ShiftModifier))
                     .IsActionKeyDown());
    EXPECT_EQ(
        KeyboardEventFromQt(QKeyEvent(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a")).GetText(),
        zephcore::AsciiToUTF16("a"));
}

TEST(EventsTest, MouseActionsAndButtons)
{
    QPointF const p(3, 4);
    MouseEvent const press =
        MouseEventFromQt(QMouseEvent(QEvent::MouseButtonPress, p, p, p, Qt::RightButton,
                                     Qt::RightButton, Qt::NoModifier),
                         QPointF(13, 14));
    EXPECT_TRUE(press.IsAction(PointerEvent::kActionPress));
    EXPECT_TRUE(press.IsButton(MouseEvent::kButtonRight));
    EXPECT_FALSE(press.IsButton(MouseEvent::kButtonLeft));
    EXPECT_EQ(press.GetPosition(), PointF(13, 14));
    MouseEvent const drag = MouseEventFromQt(
        QMouseEvent(QEvent::MouseMove, p, p, p, Qt::NoButton, Qt::LeftButton, Qt::ShiftModifier),
        p);
    EXPECT_TRUE(drag.IsAction(PointerEvent::kActionDrag));
    EXPECT_TRUE(drag.IsButton(MouseEvent::kButtonLeft)) << "a drag reports the buttons held";
    EXPECT_EQ(drag.GetModKey().Get(), kModifierShift);
    EXPECT_TRUE(
        MouseEventFromQt(
            QMouseEvent(QEvent::MouseMove, p, p, p, Qt::NoButton, Qt::NoButton, Qt::NoModifier), p)
            .IsAction(PointerEvent::kActionMove));
    MouseEvent const twice =
        MouseEventFromQt(QMouseEvent(QEvent::MouseButtonDblClick, p, p, p, Qt::LeftButton,
                                     Qt::LeftButton, Qt::NoModifier),
                         p);
    EXPECT_TRUE(twice.IsAction(PointerEvent::kActionPress));
    EXPECT_TRUE(twice.IsLeftButtonDoubleClick());
    EXPECT_FALSE(press.IsLeftButtonDoubleClick());
}

TEST(EventsTest, MatricesComposeAndInvertAndRectanglesMeet)
{
    ScaleMatrixF const a(2.0f, 3.0f, 10.0f, -5.0f);
    PointF const p(4.0f, 2.0f);
    EXPECT_EQ((a * ScaleMatrixF::Translation(1.0f, 1.0f)).Transform(p), a.Transform(PointF(5, 3)));
    EXPECT_EQ(a.Inverse().Transform(a.Transform(p)), p);
    EXPECT_TRUE(ScaleMatrixF(0.0f, 1.0f, 5.0f, 5.0f).Inverse().IsIdentity())
        << "a flat matrix has no inverse";
    EXPECT_EQ(ScaleMatrixF(-1.0f, 1.0f, 0.0f, 0.0f).Transform(RectF(1, 2, 3, 4)),
              RectF(-4, 2, 3, 4));
    EXPECT_TRUE(RectF(0, 0, 10, 10).Contains(PointF(0, 9.5f)));
    EXPECT_FALSE(RectF(0, 0, 10, 10).Contains(PointF(10, 5)));
    EXPECT_EQ(RectF(0, 0, 10, 10).Intersect(RectF(5, 5, 10, 10)), RectF(5, 5, 5, 5));
    EXPECT_EQ(RectF(0, 0, 10, 10).Intersect(RectF(20, 20, 1, 1)).width, 0.0f);
}

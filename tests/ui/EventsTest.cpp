// The toolkit's numbering of keys, modifiers, mouse actions and buttons, as
// made from Qt's events; and the float geometry beneath the nodes.

#include "zephui/Events.h"
#include "zephui/Geometry.h"
#include "zephui/QtEvents.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include <gtest/gtest.h>

using namespace zephui;

namespace
{

struct KeyCase
{
    int qtKey;
    Qt::KeyboardModifiers qtMods;
    unsigned long code;
    unsigned char mods;
};

class KeyMappingTest : public testing::TestWithParam<KeyCase>
{
};

} // namespace

TEST_P(KeyMappingTest, MapsKeyAndModifiers)
{
    KeyCase const c = GetParam();
    QKeyEvent const qt(QEvent::KeyPress, c.qtKey, c.qtMods);
    KeyboardEvent const e = KeyboardEventFromQt(qt);
    EXPECT_EQ(e.GetCode().Get(), c.code);
    EXPECT_EQ(e.GetModKey().Get(), c.mods);
    EXPECT_TRUE(e.CompareCode(KeyboardCode(c.code)));
}

INSTANTIATE_TEST_SUITE_P(
    Keys, KeyMappingTest,
    testing::Values(
        KeyCase{Qt::Key_Tab, Qt::NoModifier, 3, 0}, KeyCase{Qt::Key_Tab, Qt::ShiftModifier, 3, 2},
        KeyCase{Qt::Key_Backtab, Qt::NoModifier, 3, 2}, // Qt's Shift+Tab, Shift not always set
        KeyCase{Qt::Key_Return, Qt::NoModifier, 4, 0},
        KeyCase{Qt::Key_Enter, Qt::KeypadModifier, 5, 8},
        KeyCase{Qt::Key_Escape, Qt::NoModifier, 1, 0}, KeyCase{Qt::Key_F3, Qt::ShiftModifier, 9, 2},
        KeyCase{Qt::Key_F5, Qt::NoModifier, 24, 0}, KeyCase{Qt::Key_A, Qt::ControlModifier, 0, 4},
        KeyCase{Qt::Key_Tab, Qt::AltModifier | Qt::ShiftModifier, 3, 18},
        KeyCase{Qt::Key_Down, Qt::MetaModifier, 17, 1}));

TEST(EventsTest, ShortcutsIgnoreTheKeypadBitButNothingElse)
{
    KeyboardEvent const enter =
        KeyboardEventFromQt(QKeyEvent(QEvent::KeyPress, Qt::Key_Enter, Qt::KeypadModifier));
    EXPECT_TRUE(enter.CompareShortcut(KeyboardCode(5), 0));
    EXPECT_FALSE(enter.CompareShortcut(KeyboardCode(4), 0));
    KeyboardEvent const shiftTab =
        KeyboardEventFromQt(QKeyEvent(QEvent::KeyPress, Qt::Key_Tab, Qt::ShiftModifier));
    EXPECT_TRUE(shiftTab.CompareShortcut(KeyboardCode(3), 2));
    EXPECT_FALSE(shiftTab.CompareShortcut(KeyboardCode(3), 0));
    EXPECT_TRUE(shiftTab.IsActionKeyDown());
    KeyboardEvent const release =
        KeyboardEventFromQt(QKeyEvent(QEvent::KeyRelease, Qt::Key_Tab, Qt::NoModifier));
    EXPECT_FALSE(release.IsActionKeyDown());
    KeyboardEvent const shiftAlone =
        KeyboardEventFromQt(QKeyEvent(QEvent::KeyPress, Qt::Key_Shift, Qt::ShiftModifier));
    EXPECT_FALSE(shiftAlone.IsActionKeyDown());
    KeyboardEvent const typed =
        KeyboardEventFromQt(QKeyEvent(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a"));
    EXPECT_EQ(typed.GetText(), zephcore::AsciiToUTF16("a"));
}

TEST(EventsTest, MouseActionsAndButtons)
{
    QPointF const p(3, 4);
    QMouseEvent const press(QEvent::MouseButtonPress, p, p, p, Qt::RightButton, Qt::RightButton,
                            Qt::NoModifier);
    MouseEvent const e = MouseEventFromQt(press, QPointF(13, 14));
    EXPECT_TRUE(e.IsAction(1));
    EXPECT_TRUE(e.IsButton(4));
    EXPECT_FALSE(e.IsButton(1));
    EXPECT_EQ(e.GetPosition(), PointF(13, 14));

    QMouseEvent const drag(QEvent::MouseMove, p, p, p, Qt::NoButton, Qt::LeftButton,
                           Qt::ShiftModifier);
    MouseEvent const d = MouseEventFromQt(drag, p);
    EXPECT_TRUE(d.IsAction(3));
    EXPECT_TRUE(d.IsButton(1)) << "a drag reports the buttons held";
    EXPECT_EQ(d.GetModKey().Get(), kModifierShift);

    QMouseEvent const hover(QEvent::MouseMove, p, p, p, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    EXPECT_TRUE(MouseEventFromQt(hover, p).IsAction(PointerEvent::kActionMove));
    QMouseEvent const twice(QEvent::MouseButtonDblClick, p, p, p, Qt::LeftButton, Qt::LeftButton,
                            Qt::NoModifier);
    MouseEvent const dbl = MouseEventFromQt(twice, p);
    EXPECT_TRUE(dbl.IsAction(1));
    EXPECT_TRUE(dbl.IsLeftButtonDoubleClick());
    EXPECT_FALSE(e.IsLeftButtonDoubleClick());
}

TEST(EventsTest, MatricesComposeAndInvert)
{
    ScaleMatrixF const a(2.0f, 3.0f, 10.0f, -5.0f);
    ScaleMatrixF const b = ScaleMatrixF::Translation(1.0f, 1.0f);
    PointF const p(4.0f, 2.0f);
    EXPECT_EQ((a * b).Transform(p), a.Transform(b.Transform(p)));
    EXPECT_EQ(a.Inverse().Transform(a.Transform(p)), p);
    EXPECT_TRUE((a * a.Inverse()).IsIdentity());
    EXPECT_TRUE(ScaleMatrixF(0.0f, 1.0f, 5.0f, 5.0f).Inverse().IsIdentity())
        << "a flat matrix has no inverse";
    RectF const flipped = ScaleMatrixF(-1.0f, 1.0f, 0.0f, 0.0f).Transform(RectF(1, 2, 3, 4));
    EXPECT_EQ(flipped, RectF(-4, 2, 3, 4));
    EXPECT_TRUE(RectF(0, 0, 10, 10).Contains(PointF(0, 9.5f)));
    EXPECT_FALSE(RectF(0, 0, 10, 10).Contains(PointF(10, 5)));
    EXPECT_EQ(RectF(0, 0, 10, 10).Intersect(RectF(5, 5, 10, 10)), RectF(5, 5, 5, 5));
    EXPECT_EQ(RectF(0, 0, 10, 10).Intersect(RectF(20, 20, 1, 1)).width, 0.0f);
}

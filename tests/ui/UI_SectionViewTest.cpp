// The collapsible section: the header opens and closes it, the callbacks hear
// each change once, and its size follows its content only while open.

#include "ControlTestWindow.h"

#include "zephui/UI_SectionView.h"

#include "zephcore/QtStrings.h"

#include <gtest/gtest.h>

using namespace zephui;

TEST(SectionViewTest, HeaderClickAndKeysToggleAndTellCallbacksOnce)
{
    zephtest::ControlTestWindow window;
    UI_SectionViewPtr section =
        window.Add(UI_SectionViewPtr(new UI_SectionView(zephcore::AsciiToUTF16("Camera"), true)),
                   RectF(10, 10, 300, 120));
    int changes = 0;
    bool seenOpen = true;
    section->AddOpenedStateChangedCallback(
        [&]
        {
            ++changes;
            seenOpen = section->GetOpened();
        });
    section->SetDisclosureTriangleWantsFocus(true);
    ASSERT_TRUE(window.ShowActive());
    QWidget* widget = section->UI_GetWidget();
    EXPECT_EQ(section->GetContentView()->UI_GetLocalRectF(true),
              RectF(0, UI_SectionView::kDefaultHeaderHeight, 300, 100));

    QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, QPoint(50, 8));
    EXPECT_FALSE(section->GetOpened());
    EXPECT_EQ(changes, 1);
    EXPECT_FALSE(seenOpen) << "the callback runs after the state changed";
    EXPECT_FALSE(section->GetContentView()->UI_IsShown());

    QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, QPoint(50, 60)); // below the header
    EXPECT_EQ(changes, 1);
    section->UI_GainKeyboardFocus(kFocusReasonProgram);
    QTest::keyClick(widget, Qt::Key_Space);
    EXPECT_TRUE(section->GetOpened());
    section->SetOpened(true); // no change, no call
    EXPECT_EQ(changes, 2);
}

TEST(SectionViewTest, SizeFromContentCountsContentOnlyWhileOpen)
{
    UI_SectionViewPtr section(new UI_SectionView);
    section->SetHeaderHeight(24.0f);
    EXPECT_EQ(section->GetSizeFromContentSize(PointF(200, 80)), PointF(200, 104));
    section->SetOpened(false);
    EXPECT_EQ(section->GetSizeFromContentSize(PointF(200, 80)), PointF(200, 24));
}

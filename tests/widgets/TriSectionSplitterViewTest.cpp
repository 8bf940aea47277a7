// The three-panel splitter as a user drives it: bars dragged with the mouse,
// past their limits too, and cancelled with Escape; panels closed and opened
// by their headers; and the window resized.

#include "../tree/TreeTestSupport.h"

#include <zephmetadataui/TriSectionSplitterView.h>

#include <zephui/ResourceManager.h>
#include <zephui/UI_NodeManager.h>

#include <QApplication>
#include <QPointer>
#include <QTest>

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <iomanip>
#include <sstream>

namespace
{

using zephmetadataui::TriSectionSplitterView;
using zephui::UI_NodeManager;
using zephui::UI_SubViewPtr;

struct Splitter
{
    UI_SubViewPtr contents[3] = {new zephui::UI_SubView, new zephui::UI_SubView,
                                 new zephui::UI_SubView};
    boost::intrusive_ptr<TriSectionSplitterView> view =
        new TriSectionSplitterView(contents[0], contents[1], contents[2]);
    std::vector<bool> splitterCalls;
    std::vector<int> sectionCalls;
    treetest::Window window{view, 400, 600};

    Splitter()
    {
        for (UI_SubViewPtr const& content : contents)
            content->UI_Show(true);
        view->SetSplitterChangedFxn(boost::make_shared<boost::function<void(bool)>>(
            [this](bool first) { splitterCalls.push_back(first); }));
        view->SetSectionViewChangedFxn(boost::make_shared<boost::function<void(int)>>(
            [this](int index) { sectionCalls.push_back(index); }));
    }

    QWidget* Widget() const { return view->UI_GetWidget(); }
    int Bottom(int index) const
    {
        return int(std::lround(view->GetSectionView(index)->UI_GetLocalRectF(true).GetBottom()));
    }
    // "top+height" of each panel, then both percentages.
    std::string Dump() const
    {
        std::ostringstream out;
        for (int i = 0; i < 3; ++i)
        {
            zephui::RectF const r = view->GetSectionView(i)->UI_GetLocalRectF(true);
            out << std::lround(r.top) << "+" << std::lround(r.height) << " ";
        }
        out << std::fixed << std::setprecision(2) << "| " << view->GetSplitterPercentage(true)
            << " " << view->GetSplitterPercentage(false);
        return out.str();
    }
    void ClickHeader(int index)
    {
        QPointer<QWidget> header = view->GetSectionView(index)->UI_GetWidget();
        QTest::mousePress(header, Qt::LeftButton, Qt::NoModifier, QPoint(120, 10));
        if (header)
            QTest::mouseRelease(header, Qt::LeftButton, Qt::NoModifier, QPoint(120, 10));
    }
    // Presses in the bar under panel `bar`, moves by each step, releases;
    // tells whether the press took the pointer.
    bool Drag(int bar, std::vector<int> const& steps)
    {
        QPoint at(200, Bottom(bar) + 2);
        QTest::mousePress(Widget(), Qt::LeftButton, Qt::NoModifier, at);
        bool const captured = UI_NodeManager::Get()->GetCurrentCapture() != nullptr;
        for (int step : steps)
            QTest::mouseMove(Widget(), at += QPoint(0, step));
        QTest::mouseRelease(Widget(), Qt::LeftButton, Qt::NoModifier, at);
        return captured;
    }
};

// 400 x 600: three headers and two bars leave 528 pixels to share.
char const* const kEvenThirds = "0+196 202+196 404+196 | 0.33 0.33";

TEST(TriSectionSplitterViewTest, BarFollowsThePointerWithinItsLimits)
{
    struct
    {
        char const* name;
        char const* setup; // digits: panels closed first; "z": the first bar put at 0 %
        int bar;
        std::vector<int> steps;
        bool grabs;
        char const* after;
    } const cases[] = {
        {"first up", "", 0, {-20, -30}, true, "0+146 152+246 404+196 | 0.24 0.43"},
        {"second up", "", 1, {-50}, true, "0+196 202+146 354+246 | 0.33 0.24"},
        {"one pixel waits", "", 0, {1}, true, kEvenThirds},
        {"one pixel steps add up", "", 0, {1, 1}, true, "0+198 204+194 404+196 | 0.34 0.33"},
        // Past the limits: the pointer is held to the view, panels to their headers.
        {"first past the bottom", "", 0, {800}, true, "0+548 554+20 580+20 | 1.00 0.00"},
        {"second pushes the first", "", 1, {-800}, true, "0+20 26+20 52+548 | 0.00 0.00"},
        {"second past the bottom stops", "z", 1, {800}, true, "0+20 26+548 580+20 | 0.00 1.00"},
        // A bar moves only with open panels on both sides.
        {"middle closed, first moves", "1", 0, {50}, true, "0+334 340+20 366+234 | 0.40 0.33"},
        {"last closed, first moves", "2", 0, {50}, true, "0+334 340+234 580+20 | 0.40 0.27"},
        {"last closed, second stays", "2", 1, {50}, false, "0+284 290+284 580+20 | 0.33 0.33"},
        {"only middle open, first stays", "02", 0, {50}, false, "0+20 26+548 580+20 | 0.33 0.33"},
    };
    for (auto const& c : cases)
    {
        SCOPED_TRACE(c.name);
        Splitter s;
        for (char const* step = c.setup; *step; ++step)
        {
            if (*step == 'z')
                s.view->SetSplitterPercentage(true, 0.0f);
            else
                s.ClickHeader(*step - '0');
        }
        EXPECT_EQ(s.Drag(c.bar, c.steps), c.grabs);
        EXPECT_EQ(s.Dump(), c.after);
    }
}

// The resize cursor over the bars only (a closed panel keeps its bar) and while
// a bar is dragged; Escape ends the drag, restoring the percentages.
TEST(TriSectionSplitterViewTest, ResizeCursorShowsOverTheBarsAndEscapeCancelsADrag)
{
    Splitter s;
    ASSERT_TRUE(s.window.Activate());
    s.ClickHeader(0);
    for (auto const& [y, shape] :
         {std::pair(s.Bottom(0), Qt::SizeVerCursor), std::pair(s.Bottom(0) + 5, Qt::ArrowCursor),
          std::pair(s.Bottom(1) + 4, Qt::SizeVerCursor)})
    {
        QTest::mouseMove(s.Widget(), QPoint(200, y));
        EXPECT_EQ(s.Widget()->cursor().shape(), shape) << y;
    }
    s.ClickHeader(0);
    QPoint const press(200, s.Bottom(0) + 2);
    QTest::mousePress(s.Widget(), Qt::LeftButton, Qt::NoModifier, press);
    QTest::mouseMove(s.Widget(), press + QPoint(0, 60));
    EXPECT_EQ(s.Dump(), "0+256 262+136 404+196 | 0.45 0.22");
    EXPECT_EQ(UI_NodeManager::Get()->GetDisplayedCursor(), zephui::kCursorResizeVertical);

    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_EQ(s.Dump(), kEvenThirds);
    EXPECT_EQ(s.splitterCalls, (std::vector<bool>{true, true})) << "the move, then the cancel";
    EXPECT_EQ(UI_NodeManager::Get()->GetDisplayedCursor(), zephui::kCursorArrow);
    QTest::mouseRelease(s.Widget(), Qt::LeftButton, Qt::NoModifier, press + QPoint(0, 60));
}

TEST(TriSectionSplitterViewTest, HeaderClickGivesTheShareToTheOpenPanels)
{
    Splitter s;
    char const* const closed[] = {"0+20 26+284 316+284 | 0.33 0.33",
                                  "0+284 290+20 316+284 | 0.33 0.33",
                                  "0+284 290+284 580+20 | 0.33 0.33"};
    for (int index = 0; index < 3; ++index)
    {
        s.ClickHeader(index);
        EXPECT_EQ(s.Dump(), closed[index]);
        EXPECT_FALSE(s.contents[index]->UI_AreAllParentsVisible()) << index;
        s.ClickHeader(index);
        EXPECT_EQ(s.Dump(), kEvenThirds);
    }
    EXPECT_EQ(s.sectionCalls, (std::vector<int>{0, 0, 1, 1, 2, 2}));
    EXPECT_TRUE(s.splitterCalls.empty());
}

TEST(TriSectionSplitterViewTest, PanelsAndContentsFollowTheWindowSize)
{
    Splitter s;
    struct
    {
        int width, height;
        char const* dump;
    } const sizes[] = {{300, 300, "0+96 102+96 204+96 | 0.33 0.33"},
                       // Too short: the shares keep a minimum, the last panel overflows.
                       {300, 100, "0+42 48+42 96+20 | 0.33 0.33"},
                       {400, 600, kEvenThirds}};
    for (auto const& size : sizes)
    {
        s.window.Widget()->resize(size.width, size.height);
        EXPECT_EQ(s.Dump(), size.dump);
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(s.contents[i]->UI_GetLocalRectF(true),
                      zephui::RectF(0, 0, float(size.width),
                                    s.view->GetSectionView(i)->UI_GetLocalRectF(false).height - 20))
                << "content " << i << " fills its panel";
    }
}

} // namespace

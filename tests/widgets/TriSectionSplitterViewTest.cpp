// The three-panel splitter as a user drives it: bars dragged with the mouse,
// past their limits too, and cancelled with Escape; panels closed and opened
// by their headers; the window resized; the state a host saves and restores;
// and pictures of it for people to look at.

#include "../tree/TreeTestSupport.h"

#include <zephmetadataui/TriSectionSplitterView.h>

#include <zephui/QtDrawing.h>
#include <zephui/ResourceManager.h>
#include <zephui/Skin.h>
#include <zephui/Theme.h>
#include <zephui/UI_NodeManager.h>
#include <zephui/UI_StaticText.h>

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QPointer>
#include <QTest>
#include <QWidget>

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <memory>
#include <set>

namespace
{

using zephmetadataui::TriSectionSplitterView;
using zephui::UI_NodeManager;
using zephui::UI_SubViewPtr;

struct Splitter
{
    std::vector<UI_SubViewPtr> contents;
    boost::intrusive_ptr<TriSectionSplitterView> view;
    std::vector<bool> splitterCalls;
    std::vector<int> sectionCalls;
    TriSectionSplitterView::SplitterChangedFxn splitterChanged =
        boost::make_shared<boost::function<void(bool)>>([this](bool first)
                                                        { splitterCalls.push_back(first); });
    TriSectionSplitterView::SectionViewChangedFxn sectionChanged =
        boost::make_shared<boost::function<void(int)>>([this](int index)
                                                       { sectionCalls.push_back(index); });
    std::unique_ptr<treetest::Window> window;

    explicit Splitter(std::vector<UI_SubViewPtr> given = {}) : contents(std::move(given))
    {
        while (contents.size() < 3)
            contents.push_back(new zephui::UI_SubView);
        for (UI_SubViewPtr const& content : contents)
            content->UI_Show(true);
        view = new TriSectionSplitterView(contents[0], contents[1], contents[2]);
        view->SetSplitterChangedFxn(splitterChanged);
        view->SetSectionViewChangedFxn(sectionChanged);
        window = std::make_unique<treetest::Window>(view, 400, 600);
    }

    QWidget* Widget() const { return view->UI_GetWidget(); }
    int Bottom(int index) const
    {
        return int(std::lround(view->GetSectionView(index)->UI_GetLocalRectF(true).GetBottom()));
    }
    // "top+height" of each panel, then both percentages.
    std::string Dump() const
    {
        char text[96];
        zephui::RectF r[3];
        for (int i = 0; i < 3; ++i)
            r[i] = view->GetSectionView(i)->UI_GetLocalRectF(true);
        std::snprintf(text, sizeof text, "%.0f+%.0f %.0f+%.0f %.0f+%.0f | %.2f %.2f",
                      double(r[0].top), double(r[0].height), double(r[1].top), double(r[1].height),
                      double(r[2].top), double(r[2].height),
                      double(view->GetSplitterPercentage(true)),
                      double(view->GetSplitterPercentage(false)));
        return text;
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
        {"first down", "", 0, {50}, true, "0+246 252+146 404+196 | 0.43 0.24"},
        {"first up", "", 0, {-20, -30}, true, "0+146 152+246 404+196 | 0.24 0.43"},
        {"second down", "", 1, {50}, true, "0+196 202+246 454+146 | 0.33 0.43"},
        {"second up", "", 1, {-50}, true, "0+196 202+146 354+246 | 0.33 0.24"},
        {"one pixel waits", "", 0, {1}, true, kEvenThirds},
        {"one pixel steps add up", "", 0, {1, 1}, true, "0+198 204+194 404+196 | 0.34 0.33"},
        // Past the limits: the pointer is held to the view, panels to their headers.
        {"first past the bottom", "", 0, {800}, true, "0+548 554+20 580+20 | 1.00 0.00"},
        {"second past the top pushes the first",
         "",
         1,
         {-800},
         true,
         "0+20 26+20 52+548 | 0.00 0.00"},
        {"second past the bottom stops", "z", 1, {800}, true, "0+20 26+548 580+20 | 0.00 1.00"},
        // A bar moves only with open panels on both sides.
        {"middle closed, first moves alone",
         "1",
         0,
         {50},
         true,
         "0+334 340+20 366+234 | 0.40 0.33"},
        {"last closed, first moves", "2", 0, {50}, true, "0+334 340+234 580+20 | 0.40 0.27"},
        {"last closed, second stays", "2", 1, {50}, false, "0+284 290+284 580+20 | 0.33 0.33"},
        {"only middle open, first stays", "02", 0, {50}, false, "0+20 26+548 580+20 | 0.33 0.33"},
        {"only middle open, second stays", "02", 1, {-50}, false, "0+20 26+548 580+20 | 0.33 0.33"},
        {"all closed, nothing moves", "012", 0, {50}, false, "0+20 26+20 52+20 | 0.33 0.33"},
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

TEST(TriSectionSplitterViewTest, EscapeCancelsADragAndRestoresThePercentages)
{
    Splitter s;
    ASSERT_TRUE(s.window->Activate());
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
        EXPECT_FALSE(s.contents[std::size_t(index)]->UI_AreAllParentsVisible()) << index;
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
        s.window->Widget()->resize(size.width, size.height);
        EXPECT_EQ(s.Dump(), size.dump);
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(s.contents[std::size_t(i)]->UI_GetLocalRectF(true),
                      zephui::RectF(0, 0, float(size.width),
                                    s.view->GetSectionView(i)->UI_GetLocalRectF(false).height - 20))
                << "content " << i << " fills its panel";
    }
}

TEST(TriSectionSplitterViewTest, HostRestoresSavedPercentagesAndOpenedStates)
{
    Splitter used;
    used.Drag(1, {70});
    used.ClickHeader(0);
    Splitter restored;
    for (int i = 0; i < 3; ++i)
        restored.view->GetSectionView(i)->SetOpened(used.view->GetSectionView(i)->GetOpened());
    restored.view->SetSplitterPercentage(true, used.view->GetSplitterPercentage(true));
    restored.view->SetSplitterPercentage(false, used.view->GetSplitterPercentage(false));
    EXPECT_EQ(restored.Dump(), used.Dump());
    EXPECT_EQ(used.Dump(), "0+20 26+389 421+179 | 0.33 0.47");
    EXPECT_EQ(std::multiset<bool>(restored.splitterCalls.begin(), restored.splitterCalls.end()),
              (std::multiset<bool>{true, false}));
}

TEST(TriSectionSplitterViewTest, ResizeCursorShowsOverTheBarsOnly)
{
    Splitter s;
    s.ClickHeader(0); // a closed panel keeps its bar
    std::pair<int, Qt::CursorShape> const points[] = {{s.Bottom(0), Qt::SizeVerCursor},
                                                      {s.Bottom(0) + 5, Qt::ArrowCursor},
                                                      {s.Bottom(1) + 4, Qt::SizeVerCursor}};
    for (auto const& [y, shape] : points)
    {
        QTest::mouseMove(s.Widget(), QPoint(200, y));
        EXPECT_EQ(s.Widget()->cursor().shape(), shape) << y;
    }
}

class SplitterPictureTest : public treetest::TreeTest
{
};

// Where the section headers begin, down the picture's left edge.
std::vector<int> HeaderTops(QImage const& picture, QRgb header)
{
    std::vector<int> tops;
    for (int y = 0; y < picture.height(); ++y)
        if (picture.pixel(2, y) == header && (y == 0 || picture.pixel(2, y - 1) != header))
            tops.push_back(y);
    return tops;
}

TEST_F(SplitterPictureTest, ClosedPanelIsOnlyItsHeaderHigh)
{
    for (std::string const theme : {"light", "dark"})
    {
        Splitter s({treetest::RichView(), new zephui::UI_StaticText(treetest::U16("Keywords")),
                    new zephui::UI_StaticText(treetest::U16("History"))});
        // The bars in the view's own theme, through the splitter skin.
        s.view->SetThemeName(theme);
        boost::intrusive_ptr<zephui::SkinSet> skins(new zephui::SkinSet);
        skins->AddSkin(boost::intrusive_ptr<zephui::Skin>(new zephui::SplitterViewSkin));
        s.view->SetSkinSet(skins);
        char const* const titles[] = {"Properties", "Keywords", "History"};
        for (int i = 0; i < 3; ++i)
        {
            s.view->SetSectionPrimaryText(i, treetest::U16(titles[i]));
            s.view->SetSectionImages(
                i, nullptr,
                UI_NodeManager::Get()->GetImage(s.view->UI_GetDrawSupplier(), "SP_Info_Sm_N"));
        }
        s.view->SetSectionSecondaryText(0, treetest::U16("frameright-IPTC-reference.jpg"));

        QDir const shots(QString(ZEPH_BINARY_DIR) + "/screenshots/sections");
        QDir().mkpath(shots.path());
        auto const colour = [&s](int id) { return zephui::ToQColor(s.view->GetColor(id)).rgb(); };
        // Saved for people to look at, measured here.
        QImage picture;
        auto const shoot = [&](char const* name)
        {
            picture = s.window->Widget()->grab().toImage();
            EXPECT_TRUE(picture.save(shots.filePath(QString::fromStdString(theme + name))));
            return HeaderTops(picture, colour(zephui::kColor_SectionHeaderBackground));
        };
        std::vector<int> const openTops = shoot("-three-open.png");
        s.ClickHeader(1);
        std::vector<int> const closedTops = shoot("-middle-closed.png");
        ASSERT_EQ(openTops.size(), 3u) << theme;
        ASSERT_EQ(closedTops.size(), 3u) << theme;
        EXPECT_EQ(openTops[2] - openTops[1], openTops[1] - openTops[0]) << "even thirds";
        EXPECT_EQ(closedTops[2] - closedTops[1], 20 + 6) << "only the header and one bar";
        int const freed = openTops[2] - openTops[1] - (closedTops[2] - closedTops[1]);
        EXPECT_EQ(closedTops[1] - closedTops[0], openTops[1] - openTops[0] + freed / 2)
            << "the first panel took half of what the closed one gave up";
        EXPECT_EQ(picture.pixel(2, closedTops[2] - 3), colour(zephui::kColor_SplitterBar)) << theme;
    }
}

} // namespace

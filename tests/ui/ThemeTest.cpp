// Colours by id from the theme that applies to a node, and the list box and
// splitter skins.

#include "zephui/Theme.h"
#include "zephui/QtDrawing.h"
#include "zephui/Skin.h"
#include "zephui/UI_SplitterView.h"
#include "zephui/UI_SubView.h"

#include <QImage>
#include <QWidget>

#include <gtest/gtest.h>

using namespace zephui;

namespace
{

// Restores the application theme after a test that changes it.
struct ThemeGuard
{
    ~ThemeGuard() { SetApplicationTheme("light"); }
};

float Brightness(ColorRGBA const& c)
{
    return (c.red + c.green + c.blue) / 3.0f;
}

} // namespace

// Text is dark on light panels and light on dark ones; ids without a name read
// as neutral grey.
TEST(ThemeTest, NamedIdsHaveColoursThatSuitTheirTheme)
{
    Theme const* light = FindTheme("light");
    Theme const* dark = FindTheme("dark");
    ASSERT_TRUE(light && dark);
    EXPECT_EQ(FindTheme("purple"), nullptr);
    EXPECT_LT(Brightness(light->GetColor(kColor_Text)), 0.5f);
    EXPECT_GT(Brightness(dark->GetColor(kColor_Text)), 0.5f);
    EXPECT_GT(Brightness(light->GetColor(kColor_TextBandA)), 0.8f);
    EXPECT_LT(Brightness(dark->GetColor(kColor_TextBandB)), 0.4f);
    EXPECT_EQ(light->GetColor(374), ColorRGBA(0.5f, 0.5f, 0.5f));
}

TEST(ThemeTest, NodeReadsNearestNamedThemeElseApplicationTheme)
{
    ThemeGuard guard;
    UI_NodePtr root(new UI_SubView);
    UI_NodePtr child(new UI_SubView);
    root->ChildPushBack(child);
    ColorRGBA const lightText = FindTheme("light")->GetColor(kColor_Text);
    ColorRGBA const darkText = FindTheme("dark")->GetColor(kColor_Text);

    EXPECT_EQ(child->GetColor(kColor_Text), lightText);
    root->SetThemeName("dark");
    EXPECT_EQ(child->GetColor(kColor_Text), darkText);
    EXPECT_EQ(GetColor(kColor_Text), lightText) << "the free function reads the application theme";

    root->SetThemeName("");
    EXPECT_TRUE(SetApplicationTheme("dark"));
    EXPECT_EQ(child->GetColor(kColor_Text), darkText);
    EXPECT_EQ(GetIconType(), 2) << "icons for dark panels";
    EXPECT_FALSE(SetApplicationTheme("no such theme"));
    EXPECT_EQ(GetApplicationTheme()->GetName(), "dark");
}

TEST(ThemeTest, ListBoxSkinGivesDividerColourOfTheNodesTheme)
{
    UI_NodePtr node(new UI_SubView);
    node->SetThemeName("dark");
    SkinSet const* skins = node->UI_GetCurrentSkinSet();
    ASSERT_NE(skins, nullptr);
    boost::intrusive_ptr<Skin> skin = skins->GetSkinWithMap("UI_ListBox");
    auto* listBox = dynamic_cast<ListBoxSkin*>(skin.get());
    ASSERT_NE(listBox, nullptr);
    EXPECT_EQ(listBox->GetDividerColor(node->UI_GetThemeProvider()),
              FindTheme("dark")->GetColor(kColor_ListBoxContentDivider));
    EXPECT_EQ(skins->GetSkinWithMap("StoryScriptView"), nullptr)
        << "views without a skin use the colour table";
    SkinMap const alias{{"MyList", "UI_ListBox"}};
    EXPECT_EQ(skins->GetSkinWithMap("MyList", &alias), skin);

    // A node's own skin set wins for it and its children.
    boost::intrusive_ptr<SkinSet> own(new SkinSet);
    UI_NodePtr child(new UI_SubView);
    node->ChildPushBack(child);
    node->SetSkinSet(own);
    EXPECT_EQ(child->UI_GetCurrentSkinSet(), own.get());
    EXPECT_EQ(child->UI_GetCurrentSkinSet()->GetSkinWithMap("UI_ListBox"), nullptr);
}

TEST(ThemeTest, SplitterViewSkinPaintsTheBarInTheNodesTheme)
{
    boost::intrusive_ptr<UI_SplitterView> splitter(new UI_SplitterView(false));
    splitter->UI_SetLocalRectF(RectF(0, 0, 120, 100));
    splitter->SetSplitPosition(40.0f);
    splitter->SetThemeName("dark");
    // The middle of the bar's left end, away from the grip.
    auto barColour = [&]
    { return FromQColor(splitter->UI_GetWidget()->grab().toImage().pixelColor(5, 42)); };
    auto const near = [](ColorRGBA const& a, ColorRGBA const& b)
    { return std::abs(a.red - b.red) + std::abs(a.green - b.green) < 0.02f; };

    EXPECT_TRUE(near(barColour(), FindTheme("light")->GetColor(kColor_SplitterBar)))
        << "without a skin the bar has the application's colours";
    boost::intrusive_ptr<SkinSet> skins(new SkinSet);
    skins->AddSkin(boost::intrusive_ptr<Skin>(new SplitterViewSkin));
    splitter->SetSkinSet(skins);
    EXPECT_TRUE(near(barColour(), FindTheme("dark")->GetColor(kColor_SplitterBar)));
}

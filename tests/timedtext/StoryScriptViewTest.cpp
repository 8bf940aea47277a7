#include "../tree/TreeTestSupport.h"
#include "ScriptTestSupport.h"

#include <zephmetadataui/StoryScriptView.h>

#include <zephui/QtDrawing.h>
#include <zephui/Skin.h>
#include <zephui/Theme.h>

#include <QApplication>
#include <QScrollBar>
#include <QWheelEvent>
#include <QtTest/qtestspontaneevent.h>

using namespace scripttest;
using treetest::ToStd;
using treetest::U16;
using treetest::Window;
using zephmetadataui::StoryScriptView;
using zephui::UI_ScrollBar;

namespace
{

using ViewPtr = boost::intrusive_ptr<StoryScriptView>;

char const* const kScript = "http://ns.adobe.com/xmp/1.0/Script/";

class StoryScriptViewTest : public treetest::TreeTest
{
};

ViewPtr MakeView(boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider, float width,
                 float height)
{
    ViewPtr view(new StoryScriptView(provider));
    view->UI_SetLocalRectF(zephui::RectF(0.0f, 0.0f, width, height));
    view->UI_Show(true);
    return view;
}

QImage Shot(StoryScriptView& view)
{
    return view.UI_GetWidget()->grab().toImage().convertToFormat(QImage::Format_RGB32);
}

UI_ScrollBar& BarOf(StoryScriptView& view)
{
    return dynamic_cast<UI_ScrollBar&>(*view.ChildGet(0));
}

float Top(StoryScriptView& view)
{
    return BarOf(view).GetValue().first;
}

// Turns the wheel by steps over the view's middle; positive is down.
void Wheel(StoryScriptView& view, int steps)
{
    QWidget* widget = view.UI_GetWidget();
    QPointF const middle(widget->width() / 2.0, widget->height() / 2.0);
    QWheelEvent wheel(middle, widget->mapToGlobal(middle), QPoint(), QPoint(0, -120 * steps),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&wheel);
    QApplication::sendEvent(widget, &wheel);
}

// Speeches by two speakers in turn, one short line each; the last one ends
// with "the last one".
std::vector<Speech> Numbered(int count)
{
    std::vector<Speech> speeches;
    for (int i = 1; i <= count; ++i)
        speeches.emplace_back(i % 2 ? "ELIN" : "TOMAS", "Speech " + std::to_string(i) +
                                                            (i == count ? ", the last one." : "."));
    return speeches;
}

// The row of the one stretch lit on screen; -1 for none or several.
int LitRow(StoryScriptView& view)
{
    std::vector<Lit> const lit = LitStretches(Shot(view), Top(view));
    return lit.size() == 1 ? lit.front().row : -1;
}

} // namespace

TEST_F(StoryScriptViewTest, SearchLightsEveryMatchInAnyCaseWhereItStands)
{
    ViewPtr view =
        MakeView(ScriptProvider(DialogueBody({{"ELIN", "You left the lamp burning again."},
                                              {"TOMAS", "Somebody has to. The ferry is late."},
                                              {"ÅSA", "The lamp, Tomas. Keep the lamp turning."}})),
                 500.0f, 100.0f);
    float const elin = 2.0f + TagWidth("ELIN");
    float const tomas = 2.0f + TagWidth("TOMAS");
    float const asa = 2.0f + TagWidth("ÅSA");
    struct Case
    {
        char const* term;
        char const* folded;
        std::vector<Lit> lit;
    };
    std::vector<Case> const cases = {
        {"LAMP",
         "lamp",
         {LitText(0, elin, "You left the ", "lamp"), LitText(2, asa, "The ", "lamp"),
          LitText(2, asa, "The lamp, Tomas. Keep the ", "lamp")}},
        {"Tomas", "tomas", {LitTag(1, "TOMAS"), LitText(2, asa, "The lamp, ", "Tomas")}},
        {"åSA", "åsa", {LitTag(2, "ÅSA")}},
        {"the FERRY", "the ferry", {LitText(1, tomas, "Somebody has to. ", "The ferry")}},
        {"raven", "raven", {}},
        {"", "", {}},
    };
    for (Case const& c : cases)
    {
        SCOPED_TRACE(c.term);
        view->SetCurrentSearchTerm(U16(c.term));
        EXPECT_EQ(ToStd(view->CurrentSearchTerm()), c.folded);
        ExpectLit(LitStretches(Shot(*view)), c.lit);
    }
}

TEST_F(StoryScriptViewTest, WheelAndScrollBarScrollTheScriptAndSearchDoesNot)
{
    ViewPtr view(new StoryScriptView(ScriptProvider(DialogueBody(Numbered(60)))));
    Window window(view, 400, 200);
    UI_ScrollBar& bar = BarOf(*view);

    view->SetCurrentSearchTerm(U16("LAST"));
    EXPECT_TRUE(LitStretches(Shot(*view)).empty()) << "the only hit is below the view";
    EXPECT_EQ(Top(*view), 0.0f);
    EXPECT_FALSE(bar.UI_IsOwnDisabled());

    Wheel(*view, 2);
    EXPECT_EQ(Top(*view), 32.0f) << "two lines down";

    auto* widget = qobject_cast<QScrollBar*>(bar.UI_GetWidget());
    ASSERT_TRUE(widget);
    widget->setValue(widget->maximum());
    EXPECT_EQ(Top(*view), bar.GetExtent().second - bar.GetValueRange());
    ExpectLit(LitStretches(Shot(*view), Top(*view)),
              {LitText(59, 2.0f + TagWidth("TOMAS"), "Speech 60, the ", "last")});

    float const bottom = Top(*view);
    Wheel(*view, -1);
    EXPECT_EQ(Top(*view), bottom - 16.0f) << "a line up";

    // Tall enough for all of it: nothing to scroll.
    window.Widget()->resize(400, 1100);
    Shot(*view);
    EXPECT_TRUE(bar.UI_IsOwnDisabled());
    EXPECT_EQ(Top(*view), 0.0f);
    Wheel(*view, 3);
    EXPECT_EQ(Top(*view), 0.0f);
}

TEST_F(StoryScriptViewTest, NarrowerViewWrapsIntoMoreRowsAndHeightAloneKeepsThem)
{
    ViewPtr view(new StoryScriptView(ScriptProvider(DialogueBody(
        {{"TOMAS", "The keeper climbed the stairs every night of the winter, one hundred and "
                   "twelve steps, and at the top he wound the clockwork, trimmed the wick and "
                   "looked out for the lights of the boats coming home."},
         {"ELIN", "Come down, the soup is cold."}}))));
    Window window(view, 600, 300);
    view->SetCurrentSearchTerm(U16("soup"));
    int const wide = LitRow(*view);
    float const wideExtent = BarOf(*view).GetExtent().second;
    ASSERT_GT(wide, 0);

    window.Widget()->resize(300, 300);
    int const narrow = LitRow(*view);
    EXPECT_GT(narrow, wide);
    EXPECT_FLOAT_EQ(BarOf(*view).GetExtent().second - wideExtent, 16.0f * float(narrow - wide));

    window.Widget()->resize(300, 150);
    EXPECT_EQ(LitRow(*view), narrow);
    window.Widget()->resize(600, 150);
    EXPECT_EQ(LitRow(*view), wide);
}

TEST_F(StoryScriptViewTest, ChangeReportedByTheProviderReloadsTheScript)
{
    auto const provider = ScriptProvider(DialogueBody(Numbered(30)));
    ViewPtr view(new StoryScriptView(provider));
    Window window(view, 400, 120);
    view->SetCurrentSearchTerm(U16("ravens"));
    Wheel(*view, 3);
    ASSERT_EQ(Top(*view), 48.0f);
    UI_ScrollBar::Range const extent = BarOf(*view).GetExtent();

    zephmetadata::Path const first(
        zephcore::ToUTF8(kScript),
        zephcore::ToUTF8("xmpScript:dialogSequence[1]/xmpScript:dialog"));
    treetest::WriteValue(provider, first, "The ravens are back.", true);
    ExpectLit(LitStretches(Shot(*view), Top(*view)),
              {LitText(0, 2.0f + TagWidth("ELIN"), "The ", "ravens")});
    EXPECT_EQ(Top(*view), 0.0f) << "a reload starts at the top";
    EXPECT_EQ(BarOf(*view).GetExtent(), extent) << "and measures the script again";

    // Another provider replaces the first, which the view then ignores.
    view->ResetMetadataProvider(ScriptProvider(DialogueBody({{"MAREK", "Ravens, and gulls."}})));
    treetest::WriteValue(provider, first, "More ravens.", true);
    ExpectLit(LitStretches(Shot(*view)), {LitText(0, 2.0f + TagWidth("MAREK"), "", "Ravens")});

    view->ResetMetadataProvider(nullptr);
    EXPECT_FALSE(view->HasStoryData());
}

TEST_F(StoryScriptViewTest, ScriptWithoutSpeechesShowsAnEmptyViewThatDoesNotScroll)
{
    ViewPtr const empty = MakeView(nullptr, 300.0f, 100.0f);
    QImage const nothing = Shot(*empty);
    ViewPtr const speaking =
        MakeView(ScriptProvider(DialogueBody({{"A", "Hello."}})), 300.0f, 100.0f);
    ASSERT_TRUE(speaking->HasStoryData());
    ASSERT_NE(Shot(*speaking), nothing);

    struct Case
    {
        char const* what;
        boost::shared_ptr<zephmetadata::MetaDataProvider> provider;
    };
    std::vector<Case> const cases = {
        {"no dialogue", ScriptProvider("<dc:format>text/plain</dc:format>")},
        {"dialogue as one text",
         ScriptProvider("<xmpScript:dialogSequence>A: hello</xmpScript:dialogSequence>")},
        {"items that are plain texts",
         ScriptProvider("<xmpScript:dialogSequence><rdf:Seq><rdf:li>A: hello</rdf:li>"
                        "</rdf:Seq></xmpScript:dialogSequence>")},
        {"items without fields", ScriptProvider(DialogueBody({{"", ""}, {"", ""}}))},
        {"a packet that does not parse", zephmetadata::BufferProviderImpl::Create("<x:xmpmeta")},
    };
    for (Case const& c : cases)
    {
        ViewPtr view = MakeView(c.provider, 300.0f, 100.0f);
        EXPECT_FALSE(view->HasStoryData()) << c.what;
        EXPECT_EQ(Shot(*view), nothing) << c.what;
        EXPECT_TRUE(BarOf(*view).UI_IsOwnDisabled()) << c.what;
    }
}

namespace
{

class GreenSkin : public zephui::TimedTextSkin
{
public:
    zephui::ColorRGBA GetScriptLineColor(zephui::ThemeProvider const*) const override
    {
        return zephui::ColorRGBA(0.0f, 0.5f, 0.0f);
    }
};

} // namespace

TEST_F(StoryScriptViewTest, SkinOfTheTimedTextViewsColoursTheLines)
{
    ViewPtr view = MakeView(ScriptProvider(DialogueBody({{"ELIN", "Lamp."}})), 300.0f, 60.0f);
    EXPECT_EQ(Shot(*view).pixel(200, 8),
              zephui::ToQColor(zephui::GetColor(zephui::kColor_TextBandB)).rgb());

    boost::intrusive_ptr<zephui::SkinSet> skins(new zephui::SkinSet);
    skins->AddSkin(boost::intrusive_ptr<zephui::Skin>(new GreenSkin));
    view->SetSkinSet(skins);
    EXPECT_EQ(Shot(*view).pixel(200, 8), qRgb(0, 128, 0));
}

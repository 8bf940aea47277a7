#include "../tree/TreeTestSupport.h"
#include "ScriptTestSupport.h"
#include "TemporalTestSupport.h"

#include <zephmetadataui/TextTranscriptEditorView.h>

#include <zephmetadata/Access.h>
#include <zephui/UI_ScrollBar.h>
#include <zephui/UI_TextEdit.h>

#include <boost/make_shared.hpp>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QTimer>

using scripttest::TagWidth;
using scripttest::Width;
using temporaltest::TickTime;
using treetest::ToStd;
using treetest::U16;
using treetest::Window;
using zephmetadataui::TextTranscriptEditorView;
using zephmetadataui::WordInfo;

namespace
{

using ViewPtr = boost::intrusive_ptr<TextTranscriptEditorView>;
using ProviderPtr = boost::shared_ptr<zephmetadata::BufferProviderImpl>;

class TextTranscriptEditorViewTest : public treetest::TreeTest
{
};

// One word of a generated track, in frames at 25 a second.
struct Spoken
{
    char const* text;
    int start;
    int duration;
    char const* speaker = "ANN";
    char const* extra = "";
};

TickTime Frames(int frames)
{
    return TickTime::FromFrames(frames, 25);
}

std::string SpeechPacket(std::vector<Spoken> const& words)
{
    std::string markers;
    for (Spoken const& w : words)
        markers += temporaltest::Marker(
            "<xmpDM:startTime>" + std::to_string(w.start) + "</xmpDM:startTime><xmpDM:duration>" +
            std::to_string(w.duration) + "</xmpDM:duration><xmpDM:name>" + w.text +
            "</xmpDM:name><xmpDM:speaker>" + w.speaker +
            "</xmpDM:speaker><xmpDM:probability>80</xmpDM:probability>" + w.extra);
    return temporaltest::TracksPacket(
        temporaltest::Track("<xmpDM:trackName>Words</xmpDM:trackName>"
                            "<xmpDM:trackType>Speech</xmpDM:trackType>"
                            "<xmpDM:frameRate>f25</xmpDM:frameRate>",
                            markers),
        "<xmpDM:shotName>take 2</xmpDM:shotName>"
        "<xmpMM:DocumentID>xmp.did:T</xmpMM:DocumentID>"
        "<xmpMM:InstanceID>xmp.iid:1</xmpMM:InstanceID>"
        "<xmpMM:History><rdf:Seq><rdf:li rdf:parseType=\"Resource\">"
        "<stEvt:action>saved</stEvt:action><stEvt:instanceID>xmp.iid:1</stEvt:instanceID>"
        "</rdf:li></rdf:Seq></xmpMM:History>");
}

// "Hello big world" by ANN, then "Yes" by BO; a gap between "big" and "world".
std::vector<Spoken> const kInterview = {
    {"Hello", 0, 10}, {"big", 10, 5}, {"world", 20, 10}, {"Yes", 40, 10, "BO"}};

ProviderPtr MakeProvider(std::vector<Spoken> const& words = kInterview)
{
    auto provider = zephmetadata::BufferProviderImpl::Create(SpeechPacket(words));
    EXPECT_TRUE(provider->IsValid());
    return provider;
}

QLineEdit* EditOf(TextTranscriptEditorView& view)
{
    return qobject_cast<QLineEdit*>(view.ChildGet(1)->UI_GetWidget());
}

std::string Selected(TextTranscriptEditorView const& view)
{
    WordInfo const* word = view.SelectedWord();
    return word ? ToStd(word->text) : "(none)";
}

// Where the n-th of ANN's words on the first line is drawn, in the middle.
QPoint WordPoint(std::vector<std::string> const& before, std::string const& word)
{
    float x = 2.0f + TagWidth("ANN");
    for (std::string const& w : before)
        x += Width(w) + 4.0f;
    return QPoint(int(x + Width(word) / 2.0f), 8);
}

void Press(TextTranscriptEditorView& view, QPoint point, Qt::MouseButton button = Qt::LeftButton)
{
    QTest::mousePress(view.UI_GetWidget(), button, Qt::NoModifier, point);
    QTest::mouseRelease(view.UI_GetWidget(), button, Qt::NoModifier, point);
}

// The track's markers as "name/probability" in list order, read back by exempi.
std::string MarkerNames(ProviderPtr const& provider)
{
    zephmetadata::MetaDataReadAccess const access(provider);
    temporaltest::XMPDocOpsTemporal ops;
    zephtemporalxmp::TXMPMeta shared(*access);
    ops.OpenXMP(&shared, "", 0);
    std::string names;
    auto& track = *ops.TrackListIteratorBegin();
    for (auto m = track.MarkerListIteratorBegin(); m != track.MarkerListIteratorEnd(); ++m)
        names += (names.empty() ? "" : " ") +
                 temporaltest::Field(m->second, zephtemporalxmp::kInfoFieldName) + "/" +
                 temporaltest::Field(m->second, zephtemporalxmp::kInfoFieldProbability);
    return names;
}

struct Host
{
    int calls = 0;
    std::string last;
    TextTranscriptEditorView::SelectedWordListener listener;

    explicit Host(TextTranscriptEditorView& view)
    {
        listener = boost::make_shared<boost::function<void(WordInfo const*)>>(
            [this](WordInfo const* word)
            {
                ++calls;
                last = word ? ToStd(word->text) : "(none)";
            });
        view.NotifyOnSelectedWordChanged(listener);
    }
};

} // namespace

TEST_F(TextTranscriptEditorViewTest, ClickSelectsAWordTellsTheHostASecondClickEditsAndArrowsMove)
{
    ViewPtr view(new TextTranscriptEditorView(MakeProvider()));
    Window window(view, 400, 120);
    ASSERT_TRUE(window.Activate());
    Host host(*view);

    Press(*view, WordPoint({"Hello"}, "big"));
    EXPECT_EQ(Selected(*view), "big");
    EXPECT_EQ(host.calls, 1);
    EXPECT_EQ(host.last, "big");
    EXPECT_FALSE(view->ChildGet(1)->UI_IsShown()) << "a first click only selects";

    Press(*view, WordPoint({"Hello"}, "big"));
    EXPECT_TRUE(view->ChildGet(1)->UI_IsShown()) << "a click on the selected word edits it";
    EXPECT_EQ(host.calls, 1) << "no news for the same word";

    Press(*view, QPoint(380, 60));
    EXPECT_EQ(Selected(*view), "(none)") << "a click beside the words";
    EXPECT_EQ(host.calls, 2);
    EXPECT_EQ(host.last, "(none)");

    // A withdrawn listener hears nothing more.
    host.listener->clear();
    Press(*view, WordPoint({}, "Hello"));
    EXPECT_EQ(host.calls, 2);

    // The arrow keys move the selection word by word, and stop at the ends.
    struct Step
    {
        Qt::Key key;
        char const* selected;
    };
    std::vector<Step> const steps = {{Qt::Key_Right, "big"},  {Qt::Key_Right, "world"},
                                     {Qt::Key_Right, "Yes"},  {Qt::Key_Right, "Yes"},
                                     {Qt::Key_Left, "world"}, {Qt::Key_Left, "big"},
                                     {Qt::Key_Left, "Hello"}, {Qt::Key_Left, "Hello"}};
    for (Step const& step : steps)
    {
        QTest::keyClick(QApplication::focusWidget(), step.key);
        EXPECT_EQ(Selected(*view), step.selected);
    }
}

TEST_F(TextTranscriptEditorViewTest, WordAtTimecodeFollowsThePlayhead)
{
    ViewPtr view(new TextTranscriptEditorView(
        MakeProvider({{"Hello", 10, 10}, {"big", 20, 5}, {"world", 30, 10}, {"Yes", 40, 10}})));
    Window window(view, 400, 120);
    struct Case
    {
        int frame;
        char const* selected;
    };
    // In order: each case starts from the selection the one before left.
    std::vector<Case> const cases = {
        {0, "Hello"},   // before the first word
        {20, "Hello"},  // the selected word's end still covers the time
        {21, "big"},    // inside the next word
        {27, "big"},    // in the gap: the word before it
        {30, "world"},  // exactly at a start
        {45, "(none)"}, // past the last word's start
        {40, "Yes"},    // exactly at the last word's start
        {45, "Yes"},    // the selected last word covers the time
    };
    for (Case const& c : cases)
    {
        view->SelectWordAtTimecode(Frames(c.frame), true);
        EXPECT_EQ(Selected(*view), c.selected) << "frame " << c.frame;
    }
}

TEST_F(TextTranscriptEditorViewTest, TypedWordIsWrittenAsAUsersWordAndNothingElseChanges)
{
    ProviderPtr const provider = MakeProvider();
    ViewPtr view(new TextTranscriptEditorView(provider));
    Window window(view, 400, 120);
    ASSERT_TRUE(window.Activate());
    Host host(*view);
    std::multiset<std::string> itemsBefore;
    std::map<std::string, std::string> othersBefore;
    {
        zephmetadata::MetaDataReadAccess const access(provider);
        itemsBefore = temporaltest::MarkerItems(*access, 1);
        othersBefore = temporaltest::OtherProperties(*access);
    }

    Press(*view, WordPoint({"Hello"}, "big"));
    Press(*view, WordPoint({"Hello"}, "big"));
    QLineEdit* edit = EditOf(*view);
    ASSERT_TRUE(edit && edit->isVisible());
    edit->selectAll();
    QTest::keyClicks(edit, "h");
    edit->insert(QString::fromUtf8("\xC3\xBCge")); // QTest types ASCII only
    QTest::keyClick(edit, Qt::Key_Return);

    EXPECT_EQ(MarkerNames(provider), "Hello/80 h\xC3\xBCge/-1 world/80 Yes/80");
    zephmetadata::MetaDataReadAccess const access(provider);
    std::multiset<std::string> const itemsAfter = temporaltest::MarkerItems(*access, 1);
    std::vector<std::string> removed;
    std::set_difference(itemsBefore.begin(), itemsBefore.end(), itemsAfter.begin(),
                        itemsAfter.end(), std::back_inserter(removed));
    ASSERT_EQ(removed.size(), 1u) << "only the edited marker differs";
    EXPECT_NE(removed.front().find("=big#"), std::string::npos);
    EXPECT_EQ(temporaltest::OtherProperties(*access), othersBefore);
    EXPECT_NE(temporaltest::Get(*access, modeltest::kMM, "xmpMM:InstanceID"), "xmp.iid:1");

    EXPECT_EQ(Selected(*view), "h\xC3\xBCge") << "its own save keeps the selection";
    EXPECT_EQ(view->SelectedWord()->probability, -1);
    EXPECT_EQ(host.last, "h\xC3\xBCge");
}

TEST_F(TextTranscriptEditorViewTest, AnotherWritersChangeOfTheTracksReloadsAndOtherChangesDoNot)
{
    ProviderPtr const provider = MakeProvider();
    ViewPtr view(new TextTranscriptEditorView(provider));
    Window window(view, 400, 120);
    view->SelectWordAtTimecode(Frames(12), false);
    ASSERT_EQ(Selected(*view), "big");

    treetest::WriteValue(
        provider,
        zephmetadata::Path(zephcore::ToUTF8(modeltest::kDM), zephcore::ToUTF8("xmpDM:shotName")),
        "take 3", true);
    EXPECT_EQ(Selected(*view), "big") << "the tracks did not change";

    {
        zephmetadata::MetaDataUpdateAccess access(provider);
        temporaltest::XMPDocOpsTemporal ops;
        zephtemporalxmp::TXMPMeta shared(*access);
        ops.OpenXMP(&shared, "", 0);
        auto& track = *ops.TrackListIteratorBegin();
        track.MarkerListIteratorBegin()->second =
            temporaltest::Word("Howdy", temporaltest::Seconds(0.0), Frames(10));
        ops.TrackListChanged();
        ops.PrepareForSave(nullptr, 0);
        access.AddChange(
            zephmetadata::Path(zephcore::ToUTF8(modeltest::kDM), zephcore::ToUTF8("xmpDM:Tracks")));
    }
    EXPECT_EQ(Selected(*view), "(none)") << "another writer's tracks: reloaded";
    view->SelectWordAtTimecode(Frames(0), false);
    EXPECT_EQ(Selected(*view), "Howdy");
}

namespace
{

// Right-clicks a word and chooses the menu item with this number.
void ChooseFromMenu(TextTranscriptEditorView& view, QPoint point, int number)
{
    // The words are hit where the last paint put them, as a user sees them.
    view.UI_GetWidget()->repaint();
    QTimer::singleShot(0,
                       [number]
                       {
                           auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
                           ASSERT_NE(menu, nullptr);
                           for (QAction* action : menu->actions())
                               if (action->data().toInt() == number)
                               {
                                   ASSERT_TRUE(action->isEnabled()) << number;
                                   menu->setActiveAction(action);
                               }
                           QTest::keyClick(menu, Qt::Key_Return);
                       });
    QTest::mousePress(view.UI_GetWidget(), Qt::RightButton, Qt::NoModifier, point);
    QTest::mouseRelease(view.UI_GetWidget(), Qt::RightButton, Qt::NoModifier, point);
}

} // namespace

TEST_F(TextTranscriptEditorViewTest, WordMenuDeletesInsertsAndMergesWords)
{
    struct Case
    {
        int command;
        char const* markers;
        char const* selected;
    };
    std::vector<Case> const cases = {
        {5, "Hello/80 world/80 Yes/80", "(none)"},
        {3, "Hello/80 (User String)/-1 big/80 world/80 Yes/80", "(User String)"},
        {4, "Hello/80 big/80 (User String)/-1 world/80 Yes/80", "(User String)"},
        {6, "Hello/80 bigworld/-1 Yes/80", "bigworld"},
        {7, "Hellobig/-1 world/80 Yes/80", "Hellobig"},
    };
    for (Case const& c : cases)
    {
        SCOPED_TRACE(c.command);
        ProviderPtr const provider = MakeProvider();
        ViewPtr view(new TextTranscriptEditorView(provider));
        Window window(view, 400, 120);
        ChooseFromMenu(*view, WordPoint({"Hello"}, "big"), c.command);
        EXPECT_EQ(MarkerNames(provider), c.markers);
        EXPECT_EQ(Selected(*view), c.selected);
    }
}

TEST_F(TextTranscriptEditorViewTest, MergedWordSpansBothAndCopyAllWritesSpeakerBlocks)
{
    ViewPtr view(new TextTranscriptEditorView(MakeProvider()));
    Window window(view, 400, 120);
    ChooseFromMenu(*view, WordPoint({"Hello"}, "big"), 6);
    ASSERT_TRUE(view->SelectedWord());
    EXPECT_EQ(view->SelectedWord()->startTime, Frames(10));
    EXPECT_EQ(view->SelectedWord()->duration, Frames(20)) << "to the end of world";

    ChooseFromMenu(*view, WordPoint({}, "Hello"), 11);
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "[ANN] Hello bigworld \n[BO] Yes");
}

TEST_F(TextTranscriptEditorViewTest, SearchLightsMatchesAndStepsThroughThem)
{
    ViewPtr view(new TextTranscriptEditorView(MakeProvider(
        {{"Wordy", 0, 10}, {"big", 10, 5}, {"sword", 20, 10}, {"Yes", 40, 10, "BO"}})));
    Window window(view, 400, 120);
    view->SetCurrentSearchTerm(U16("WOR"));
    EXPECT_EQ(ToStd(view->CurrentSearchTerm()), "wor");
    float const first = 2.0f + TagWidth("ANN");
    float const third = first + Width("Wordy") + Width("big") + 8.0f;
    scripttest::ExpectLit(
        scripttest::LitStretches(window.Widget()->grab().toImage()),
        {scripttest::LitText(0, first, "", "Wor"), scripttest::LitText(0, third, "s", "wor")});

    EXPECT_FALSE(view->HasNextSearchOccurrence()) << "nothing selected";
    EXPECT_TRUE(view->HasPreviousSearchOccurrence());
    std::vector<std::string> visited;
    while (view->SelectPreviousSearchOccurrence() && visited.size() < 4)
        visited.push_back(Selected(*view));
    EXPECT_EQ(visited, (std::vector<std::string>{"sword", "Wordy", "Wordy", "Wordy"}))
        << "backward travel stays on the first hit";
    EXPECT_TRUE(view->SelectNextSearchOccurrence());
    EXPECT_EQ(Selected(*view), "sword");
    EXPECT_FALSE(view->SelectNextSearchOccurrence());
    EXPECT_EQ(Selected(*view), "(none)");
}

TEST_F(TextTranscriptEditorViewTest, TranscriptWithASelectedWordAndARangeAsAUserSeesIt)
{
    std::vector<Spoken> words;
    int frame = 0;
    for (char const* text : {"So", "we", "climbed", "the", "stairs", "every", "night", "of"})
        words.push_back({text, (frame += 12) - 12, 10});
    ViewPtr view(new TextTranscriptEditorView(MakeProvider(words)));
    Window window(view, 300, 110);
    view->SetInPoint(Frames(26));
    view->SetOutPoint(Frames(100));
    view->SelectWordAtTimecode(Frames(60), true);
    ASSERT_EQ(Selected(*view), "every");
    QImage const shot = window.Widget()->grab().toImage().convertToFormat(QImage::Format_RGB32);

    // The selected word stands on the selection blue, in dark letters.
    float const x = 2.0f + TagWidth("ANN") + Width("So") + Width("we") + Width("climbed") +
                    Width("the") + Width("stairs") + 20.0f;
    int onBlue = 0;
    int dark = 0;
    for (int px = int(x) + 1; px < int(x + Width("every")) - 1; ++px)
        for (int py = 1; py < 14; ++py)
        {
            QColor const pixel = shot.pixelColor(px, py);
            onBlue += std::abs(pixel.red() - 113) + std::abs(pixel.blue() - 245) < 8;
            dark += qGray(pixel.rgb()) < 80;
        }
    EXPECT_GT(onBlue, 40);
    EXPECT_GT(dark, 8);
    // The range fill differs from the plain band: "So" lies before the in point.
    EXPECT_NE(shot.pixel(int(2.0f + TagWidth("ANN")) + 1, 2),
              shot.pixel(int(x + Width("every")) + 6, 2));
}

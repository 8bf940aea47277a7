// The raw data page: the packet as text, found case-insensitively, stepped
// through with F3, following the provider.

#include "../tree/TreeTestSupport.h"

#include <zephmetadataui/RawDataView.h>

#include <zephmetadata/Definitions.h>

#include <QTest>
#include <QWidget>

namespace
{

using namespace treetest;
using zephmetadataui::RawDataView;

class RawDataViewTest : public TreeTest
{
protected:
    // The view over a packet with this content, in a window and laid out at
    // its size unless it is to stay at the zero size it is made at.
    void Make(std::string const& body, bool shown = true)
    {
        provider = MakeProvider(body);
        auto made = zephmetadataui::CreateRawDataView(
            boost::make_shared<zephmetadata::ViewDefinition>(), provider, {});
        view.reset(dynamic_cast<RawDataView*>(made.get()));
        if (!shown)
            return;
        window = std::make_unique<Window>(view, 500, 300);
        view->UI_SetLocalRectF(zephui::RectF(0, 0, 500, 300));
        view->Layout();
    }
    void Type(std::string const& query)
    {
        view->GetSearchBox()->SetValue(U16(query));
        view->GetSearchBox()->SendValueChangedMessage();
    }
    std::string Selected()
    {
        auto const [start, end] = view->GetTextBox()->GetSelection();
        return ToStd(
            view->GetTextBox()->GetValue().substr(std::size_t(start), std::size_t(end - start)));
    }

    boost::shared_ptr<zephmetadata::BufferProviderImpl> provider;
    boost::intrusive_ptr<RawDataView> view;
    std::unique_ptr<Window> window;
};

TEST_F(RawDataViewTest, BuildsAtItsFirstRealSizeAndShowsThePacketWithoutWrapper)
{
    Make("<ta:title>Harbour at dawn</ta:title>", false);
    view->Refresh(); // zero size: nothing is built yet
    EXPECT_EQ(view->GetTextBox(), nullptr);

    view->UI_SetLocalRectF(zephui::RectF(0, 0, 500, 300));
    view->Layout();
    ASSERT_NE(view->GetTextBox(), nullptr);
    std::string const text = ToStd(view->GetTextBox()->GetValue());
    EXPECT_NE(text.find("Harbour at dawn"), std::string::npos);
    EXPECT_EQ(text.find("<?xpacket"), std::string::npos);
    EXPECT_GT(std::count(text.begin(), text.end(), '\n'), 3) << "one element per line";
    // The text box follows the view's size.
    view->UI_SetLocalRectF(zephui::RectF(0, 0, 700, 500));
    EXPECT_EQ(view->GetTextBox()->UI_GetLocalRectF(true), zephui::RectF(10, 25, 680, 475));
}

TEST_F(RawDataViewTest, SearchFindsEveryOccurrenceWithoutCaseAndStepsAroundWithF3)
{
    Make("<ta:title>QQ one, qq two, Qq three</ta:title><ta:note>aaa</ta:note>");

    Type("aa");
    EXPECT_EQ(view->GetMatches().size(), 1u) << "matches never overlap";
    Type("qQ");
    ASSERT_EQ(view->GetMatches().size(), 3u);
    EXPECT_EQ(Selected(), "QQ");

    QWidget* box = view->GetTextBox()->UI_GetWidget();
    // F3 steps on round the matches, Shift+F3 ("<") back.
    for (std::string const step : {"qq", "Qq", "QQ", "<Qq", "<qq"})
    {
        bool const back = step[0] == '<';
        QTest::keyClick(box, Qt::Key_F3, back ? Qt::ShiftModifier : Qt::NoModifier);
        EXPECT_EQ(Selected(), step.substr(back ? 1 : 0));
    }

    Type("");
    EXPECT_TRUE(view->GetMatches().empty());
    EXPECT_EQ(view->GetTextBox()->GetSelection(), std::make_pair(0, 0));
}

TEST_F(RawDataViewTest, AModelChangeRunsTheStandingQueryAgain)
{
    Make("<ta:title>marker</ta:title>");
    Type("MARKER");
    ASSERT_EQ(view->GetMatches().size(), 1u);
    WriteValue(provider, AlphaPath("title"), "marker and another marker", true);
    EXPECT_EQ(view->GetMatches().size(), 2u);
    EXPECT_EQ(view->GetCurrentMatch(), 0);
    EXPECT_NE(ToStd(view->GetTextBox()->GetValue()).find("another marker"), std::string::npos);
}

} // namespace

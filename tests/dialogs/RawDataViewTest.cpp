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
    boost::intrusive_ptr<RawDataView> Make(std::string const& body)
    {
        provider = MakeProvider(body);
        definition = boost::make_shared<zephmetadata::ViewDefinition>();
        auto view = zephmetadataui::CreateRawDataView(definition, provider, {});
        return boost::intrusive_ptr<RawDataView>(dynamic_cast<RawDataView*>(view.get()));
    }
    void Type(RawDataView* view, std::string const& query)
    {
        view->GetSearchBox()->SetValue(U16(query));
        view->GetSearchBox()->SendValueChangedMessage();
    }
    std::string Selected(RawDataView* view)
    {
        auto const [start, end] = view->GetTextBox()->GetSelection();
        return ToStd(
            view->GetTextBox()->GetValue().substr(std::size_t(start), std::size_t(end - start)));
    }

    boost::shared_ptr<zephmetadata::BufferProviderImpl> provider;
    boost::shared_ptr<zephmetadata::ViewDefinition> definition;
};

TEST_F(RawDataViewTest, BuildsAtItsFirstRealSizeAndShowsThePacketWithoutWrapper)
{
    auto view = Make("<ta:title>Harbour at dawn</ta:title>");
    EXPECT_EQ(std::string(definition->name.begin(), definition->name.end()),
              "com.velmora.xmp.view.rawdata");
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
    auto view = Make("<ta:title>QQ one, qq two, Qq three</ta:title><ta:note>aaa</ta:note>");
    Window window(view, 500, 300);
    view->UI_SetLocalRectF(zephui::RectF(0, 0, 500, 300));
    view->Layout();

    Type(view.get(), "aa");
    EXPECT_EQ(view->GetMatches().size(), 1u) << "matches never overlap";
    Type(view.get(), "qQ");
    ASSERT_EQ(view->GetMatches().size(), 3u);
    EXPECT_EQ(Selected(view.get()), "QQ");

    QWidget* box = view->GetTextBox()->UI_GetWidget();
    std::vector<std::pair<Qt::KeyboardModifiers, std::string>> const steps = {
        {Qt::NoModifier, "qq"},
        {Qt::NoModifier, "Qq"},
        {Qt::NoModifier, "QQ"},
        {Qt::ShiftModifier, "Qq"},
        {Qt::ShiftModifier, "qq"}};
    for (auto const& [modifiers, expected] : steps)
    {
        QTest::keyClick(box, Qt::Key_F3, modifiers);
        EXPECT_EQ(Selected(view.get()), expected);
    }

    Type(view.get(), "");
    EXPECT_TRUE(view->GetMatches().empty());
    EXPECT_EQ(view->GetTextBox()->GetSelection(), std::make_pair(0, 0));
}

TEST_F(RawDataViewTest, AModelChangeRunsTheStandingQueryAgain)
{
    auto view = Make("<ta:title>marker</ta:title>");
    Window window(view, 500, 300);
    view->UI_SetLocalRectF(zephui::RectF(0, 0, 500, 300));
    view->Layout();
    Type(view.get(), "MARKER");
    ASSERT_EQ(view->GetMatches().size(), 1u);
    WriteValue(provider, AlphaPath("title"), "marker and another marker", true);
    EXPECT_EQ(view->GetMatches().size(), 2u);
    EXPECT_EQ(view->GetCurrentMatch(), 0);
    EXPECT_NE(ToStd(view->GetTextBox()->GetValue()).find("another marker"), std::string::npos);
}

} // namespace

// The array editor driven by clicks and typing: lines, the editor box, Insert
// and Delete, each checked in the packet afterwards.
#include "LayoutTestSupport.h"

#include <zephmetadataui/ArrayControl.h>

#include <zephmetadata/Access.h>
#include <zephmetadata/Values.h>
#include <zephui/UI_Button.h>
#include <zephui/UI_ListBox.h>
#include <zephui/UI_OutlineBox.h>
#include <zephui/UI_StaticText.h>

#include <QTest>
#include <QWidget>

namespace layouttest
{
namespace
{

using treetest::MakeProvider;
using zephmetadataui::layout::ArrayControl;

std::string const kDash = "\xE2\x80\x94";
std::string const kMark = "\xE2\x96\xAA";

class ArrayControlTest : public LayoutTest
{
protected:
    void Open(std::string const& body, ItemPtr const& item)
    {
        provider = MakeProvider(body);
        form = std::make_unique<Form>(Definition({item, AlphaItem("title")}), provider);
        array = dynamic_cast<ArrayControl*>(form->Table()->rows[0]->items[0]->view.get());
        ASSERT_TRUE(array);
        path = item->GetPath();
    }
    // The list's lines joined by "|", and the items in the packet, each in [].
    std::string Lines() const
    {
        std::string lines;
        for (int i = 0; i < array->GetList()->CountItems(); ++i)
            lines += (i ? "|" : "") + zephcore::ToStdString(
                                          array->GetList()->GetItem(i)->GetItemLabel()->GetValue());
        return lines;
    }
    int Selected() const
    {
        auto const selected = array->GetList()->GetSelectedItems();
        return selected.empty() ? -1 : *selected.begin();
    }
    void ClickLine(int index, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        float const height = zephui::UI_ListBox::GetItemHeight();
        array->GetList()->GetScrollView()->ScrollIntoView(
            zephui::RectF(0.0f, float(index) * height, 1.0f, height));
        QWidget* line = array->GetList()->GetItem(index)->UI_GetWidget();
        ASSERT_TRUE(line && line->isVisible());
        QTest::mouseClick(line, Qt::LeftButton, modifiers, QPoint(20, 8));
    }
    zephui::UI_TextButton* Button(std::string const& text) const
    {
        zephui::UI_Node* bar = array->GetEditorBox()->ChildGet(1);
        for (std::size_t i = 0; i < bar->ChildCount(); ++i)
        {
            auto* button = dynamic_cast<zephui::UI_TextButton*>(bar->ChildGet(i));
            if (button && treetest::ControlText(button) == text)
                return button;
        }
        return nullptr;
    }
    void Press(std::string const& text, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        zephui::UI_TextButton* button = Button(text);
        ASSERT_TRUE(button) << text;
        QTest::mouseClick(button->UI_GetWidget(), Qt::LeftButton, modifiers);
    }
    std::string Stored() const
    {
        zephmetadata::MetaDataReadAccess access(provider);
        std::string items;
        for (int i = 1; i <= zephmetadata::CountArrayItems(*access, path); ++i)
        {
            zephmetadata::UTF8String text;
            zephmetadata::GetValue(*access, zephmetadata::CreatePathFromArrayItem(path, i), text,
                                   nullptr);
            items += "[" + zephcore::ToStdString(text) + "]";
        }
        return items;
    }

    boost::shared_ptr<zephmetadata::BufferProviderImpl> provider;
    std::unique_ptr<Form> form;
    ArrayControl* array = nullptr;
    Path path;
};

ItemPtr KeywordsAsArray()
{
    ItemPtr item = AlphaItem("keywords");
    item->format = zephcore::ToUTF8("array");
    return item;
}

std::string const kThreeKeywords =
    "<ta:keywords><rdf:Bag><rdf:li>a</rdf:li><rdf:li>b</rdf:li><rdf:li>c</rdf:li></rdf:Bag>"
    "</ta:keywords>";

TEST_F(ArrayControlTest, SelectingTheDashOfAnEmptyArrayMakesItsFirstItemAndTypingFillsIt)
{
    Open("<ta:title>x</ta:title>", AlphaItem("events"));
    EXPECT_EQ(Lines(), kDash);
    float const below = form->Table()->rows[1]->view->UI_GetLocalRectF(true).top;

    ClickLine(0);
    EXPECT_EQ(Stored(), "[]");
    ASSERT_TRUE(array->GetEditorBox()->UI_IsShown());
    EXPECT_GT(form->Table()->rows[1]->view->UI_GetLocalRectF(true).top, below + 40.0f)
        << "the form makes room for the editor box";

    zephui::UI_Node* action = ValueOfLabel(*array->GetEditorTable(), "Action:");
    ASSERT_TRUE(action);
    QWidget* edit = action->UI_GetWidget();
    edit->setFocus();
    QTest::keyClicks(edit, "shot");
    QTest::keyClick(edit, Qt::Key_Return);
    zephmetadata::MetaDataReadAccess access(provider);
    zephmetadata::UTF8String stored;
    EXPECT_TRUE(zephmetadata::GetValue(*access, treetest::AlphaPath("events[1]/ta:action"), stored,
                                       nullptr));
    EXPECT_EQ(std::string(stored.begin(), stored.end()), "shot");
    EXPECT_EQ(Lines(), kMark + "  shot");
}

TEST_F(ArrayControlTest, TheSameLineClosesAndReopensTheBoxWithoutRebuildingIt)
{
    Open(kThreeKeywords, KeywordsAsArray());
    ClickLine(1);
    ASSERT_TRUE(array->GetEditorBox()->UI_IsShown());
    zephui::UI_Node* const field = array->GetEditArea()->ChildGet(0);
    ClickLine(1);
    EXPECT_FALSE(array->GetEditorBox()->UI_IsShown());
    EXPECT_FLOAT_EQ(array->UI_GetLocalRectF(false).height, ArrayControl::kClosedHeight);
    ClickLine(1);
    EXPECT_TRUE(array->GetEditorBox()->UI_IsShown());
    EXPECT_EQ(array->GetEditArea()->ChildGet(0), field);
    Press("Close");
    EXPECT_FALSE(array->GetEditorBox()->UI_IsShown());
}

TEST_F(ArrayControlTest, InsertAndDeleteReachThePacketAndAnEmptiedArrayGoesWithTheForm)
{
    Open(kThreeKeywords, KeywordsAsArray());
    array->InsertItem(nullptr);
    EXPECT_EQ(Stored(), "[a][b][c][]") << "nothing selected: appended";
    EXPECT_EQ(Selected(), 3);
    ClickLine(1);
    Press("Insert");
    EXPECT_EQ(Stored(), "[a][b][][c][]") << "behind the selection";
    EXPECT_EQ(Selected(), 2);
    ClickLine(3);
    Press("Insert", Qt::AltModifier);
    EXPECT_EQ(Stored(), "[a][b][][][c][]") << "in front";
    EXPECT_EQ(Selected(), 3);

    ClickLine(5);
    Press("Delete");
    EXPECT_EQ(Stored(), "[a][b][][][c]");
    EXPECT_EQ(Selected(), 4) << "deleting the last line selects the new last";
    ClickLine(0);
    Press("Delete");
    EXPECT_EQ(Stored(), "[b][][][c]");
    EXPECT_EQ(Selected(), 0);
    for (int i = 0; i < 4; ++i)
        Press("Delete");
    EXPECT_EQ(Lines(), kDash);
    {
        zephmetadata::MetaDataReadAccess access(provider);
        EXPECT_TRUE(zephmetadata::HasValue(*access, path)) << "an empty array while the form shows";
    }
    form.reset();
    zephmetadata::MetaDataReadAccess access(provider);
    EXPECT_FALSE(zephmetadata::HasValue(*access, path));
}

TEST_F(ArrayControlTest, LinesJoinTheFieldsOfStructuresNestedOnesToo)
{
    Open("<ta:events><rdf:Seq><rdf:li rdf:parseType=\"Resource\"><ta:action>shot</ta:action>"
         "<ta:place rdf:parseType=\"Resource\"><ta:city>Oslo</ta:city><ta:email>a@b</ta:email>"
         "</ta:place></rdf:li></rdf:Seq></ta:events>",
         AlphaItem("events"));
    EXPECT_EQ(Lines(), kMark + "  shot / Oslo / a@b");
}

TEST_F(ArrayControlTest, AReadOnlyArrayOffersOnlyClose)
{
    provider = MakeProvider(kThreeKeywords);
    provider->SetReadOnly(true);
    Form readOnly(Definition({KeywordsAsArray()}), provider);
    array = dynamic_cast<ArrayControl*>(readOnly.Table()->rows[0]->items[0]->view.get());
    ASSERT_TRUE(array && array->IsReadOnly());
    EXPECT_TRUE(Button("Close"));
    EXPECT_FALSE(Button("Insert"));
    EXPECT_FALSE(Button("Delete"));
}

TEST_F(ArrayControlTest, TheLabelTakesOneColonAndAColumnOfAtLeast50)
{
    Open(kThreeKeywords, KeywordsAsArray());
    EXPECT_EQ(zephcore::ToStdString(array->GetLabel()->GetValue()), "Keywords:");
    array->SetLabel(treetest::U16("Words:"), {});
    EXPECT_EQ(zephcore::ToStdString(array->GetLabel()->GetValue()), "Words:");
    float const right = array->GetList()->UI_GetLocalRectF(true).GetRight();
    array->SetLabelWidth(40.0f);
    EXPECT_FLOAT_EQ(array->GetLabel()->UI_GetLocalRectF(false).width, 50.0f);
    EXPECT_FLOAT_EQ(array->GetList()->UI_GetLocalRectF(true).left, 60.0f);
    EXPECT_FLOAT_EQ(array->GetList()->UI_GetLocalRectF(true).GetRight(), right);
}

} // namespace
} // namespace layouttest

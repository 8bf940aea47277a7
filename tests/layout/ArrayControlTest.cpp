// The array editor driven by clicks and typing: lines, the editor box, Insert
// and Delete, each checked in the packet afterwards.
#include "LayoutTestSupport.h"

#include <zephmetadataui/ArrayControl.h>

#include <zephmetadata/Access.h>
#include <zephmetadata/Values.h>
#include <zephui/UI_Button.h>
#include <zephui/UI_ListBox.h>
#include <zephui/UI_OutlineBox.h>

#include <QTest>

namespace layouttest
{
namespace
{

using zephmetadataui::layout::ArrayControl;

std::string const kDash = "\xE2\x80\x94";
std::string const kMark = "\xE2\x96\xAA";
std::string const kThreeKeywords =
    "<ta:keywords><rdf:Bag><rdf:li>a</rdf:li><rdf:li>b</rdf:li><rdf:li>c</rdf:li></rdf:Bag>"
    "</ta:keywords>";

// A form of the array's item and a title below it.
class ArrayControlTest : public LayoutTest
{
protected:
    void Open(std::string const& body, ItemPtr const& item, bool readOnly = false)
    {
        provider = treetest::MakeProvider(body);
        provider->SetReadOnly(readOnly);
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
    // The buttons below the editor box, pressed by their text.
    std::vector<zephui::UI_TextButton*> Buttons() const
    {
        std::vector<zephui::UI_TextButton*> buttons;
        zephui::UI_Node* bar = array->GetEditorBox()->ChildGet(1);
        for (std::size_t i = 0; i < bar->ChildCount(); ++i)
            if (auto* button = dynamic_cast<zephui::UI_TextButton*>(bar->ChildGet(i)))
                buttons.push_back(button);
        return buttons;
    }
    void Press(std::string const& text, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        for (zephui::UI_TextButton* button : Buttons())
            if (treetest::ControlText(button) == text)
                return QTest::mouseClick(button->UI_GetWidget(), Qt::LeftButton, modifiers);
        ADD_FAILURE() << "no button " << text;
    }

    boost::shared_ptr<zephmetadata::BufferProviderImpl> provider;
    std::unique_ptr<Form> form;
    ArrayControl* array = nullptr;
    Path path;
};

TEST_F(ArrayControlTest, TheDashOfAnEmptyArrayMakesAnItemWhoseBoxFillsItsLineAndCloses)
{
    Open("<ta:title>x</ta:title>", AlphaItem("events"));
    EXPECT_EQ(Lines(), kDash);
    float const below = form->Table()->rows[1]->view->UI_GetLocalRectF(true).top;

    ClickLine(0);
    EXPECT_EQ(Stored(), "[]");
    ASSERT_TRUE(array->GetEditorBox()->UI_IsShown());
    EXPECT_GT(form->Table()->rows[1]->view->UI_GetLocalRectF(true).top, below + 40.0f)
        << "the form makes room for the editor box";

    // Fields of the item and of a structure in it; the line joins them.
    for (auto const& [label, text] : {std::pair{"Action:", "shot"}, std::pair{"City:", "Oslo"}})
    {
        zephui::UI_Node* const field = ValueOfLabel(*array->GetEditorTable(), label);
        ASSERT_TRUE(field) << label;
        field->UI_GetWidget()->setFocus();
        QTest::keyClicks(field->UI_GetWidget(), text);
        QTest::keyClick(field->UI_GetWidget(), Qt::Key_Return);
        EXPECT_NE(std::string::npos, provider->SerializedPacket().find(text));
    }
    EXPECT_EQ(Lines(), kMark + "  shot / Oslo");

    // The same line closes the box and opens it again, not rebuilt; so does Close.
    zephui::UI_Node* const fields = array->GetEditArea()->ChildGet(0);
    ClickLine(0);
    EXPECT_FALSE(array->GetEditorBox()->UI_IsShown());
    EXPECT_FLOAT_EQ(array->UI_GetLocalRectF(false).height, ArrayControl::kClosedHeight);
    ClickLine(0);
    EXPECT_TRUE(array->GetEditorBox()->UI_IsShown());
    EXPECT_EQ(array->GetEditArea()->ChildGet(0), fields);
    Press("Close");
    EXPECT_FALSE(array->GetEditorBox()->UI_IsShown());
}

TEST_F(ArrayControlTest, InsertAndDeleteReachThePacketAndAnEmptiedArrayGoesWithTheForm)
{
    Open(kThreeKeywords, AlphaItem("keywords", {}, "array"));
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
    auto const present = [this]
    { return zephmetadata::HasValue(*zephmetadata::MetaDataReadAccess(provider), path); };
    EXPECT_TRUE(present()) << "an empty array while the form shows";
    form.reset();
    EXPECT_FALSE(present());
}

TEST_F(ArrayControlTest, AReadOnlyArrayOffersOnlyClose)
{
    Open(kThreeKeywords, AlphaItem("keywords", {}, "array"), true);
    ASSERT_TRUE(array->IsReadOnly());
    ASSERT_EQ(1u, Buttons().size());
    EXPECT_EQ("Close", treetest::ControlText(Buttons()[0]));
}

} // namespace
} // namespace layouttest

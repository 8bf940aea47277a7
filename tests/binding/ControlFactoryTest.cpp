// The factory's choice of control for each kind of value, view item hint and
// format, and a host's creator; and that every property of the published
// schemas gets a control or a clean null.

#include "BindingTestSupport.h"

#include "binding/ControlStatusPrivate.h"
#include "zephmetadataui/ControlFactory.h"
#include "zephmetadataui/InlineControlFactory.h"
#include "zephmetadataui/UI_DateTextEdit.h"

#include "contracts/Toolkit.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

using namespace zephmetadataui;
using namespace bindingtest;

namespace
{

struct KindRow
{
    char const* ns;
    char const* name;
    char const* kind;
    char const* shown; // what the control shows of the sample value
};

std::ostream& operator<<(std::ostream& out, KindRow const& row)
{
    return out << row.name;
}

std::string Shown(boost::shared_ptr<Control> const& control)
{
    if (auto* date = As<UI_DateTextEdit>(control))
        return S(date->UI_TextEdit::GetValue());
    if (auto* text = As<UI_TextEdit>(control))
        return S(text->GetValue());
    if (auto* url = As<UI_URLEdit>(control))
        return S(url->GetValue());
    if (auto* label = As<UI_StaticText>(control))
        return S(label->GetValue());
    if (auto* box = As<UI_Checkbox>(control))
        return box->IsChecked() ? "checked" : "unchecked";
    if (auto* popup = As<UI_Popup>(control))
        return S(popup->GetValueString());
    if (auto* number = As<UI_HotTextNumber>(control))
        return std::to_string(number->GetValue());
    if (auto* stars = As<UI_StarRating>(control))
        return std::to_string(stars->GetValue());
    return "?";
}

class ControlKindTest : public ::testing::TestWithParam<KindRow>
{
};

bool TextIsLabel(Path const& path)
{
    return zephcore::ToStdString(path.propertyName) == "Label";
}

boost::shared_ptr<ViewItem> Item(Path const& path)
{
    return boost::make_shared<ViewItem>(path);
}

} // namespace

TEST_P(ControlKindTest, EachKindOfValueGetsItsControlShowingTheValue)
{
    auto const provider = MakeProvider(EveryKindDescription());
    KindRow const row = GetParam();
    boost::shared_ptr<Control> const control =
        InlineControlFactory(V(provider, row.ns, row.name), boost::intrusive_ptr<UI_Node>());
    ASSERT_TRUE(control);
    EXPECT_EQ(row.kind, KindOf(control));
    EXPECT_EQ(row.shown, Shown(control));
    EXPECT_TRUE(control->view->UI_IsShown());
    // Without a view item no display parameter travels in the node id.
    if (KindOf(control) == "UI_TextEdit")
    {
        EXPECT_EQ("", control->view->UI_GetNodeID());
    }
}

INSTANTIATE_TEST_SUITE_P(
    PublishedSchemas, ControlKindTest,
    ::testing::Values(KindRow{kXMP, "Label", "UI_TextEdit", "Red"},
                      KindRow{kXMP, "CreateDate", "UI_DateTextEdit", "2009-05-12 14:30 +02:00"},
                      KindRow{kXMP, "BaseURL", "UI_URLEdit", "http://example.com/harbour"},
                      KindRow{kXMP, "Rating", "UI_StarRating", "3.000000"},
                      KindRow{kCRS, "HasCrop", "UI_Checkbox", "checked"},
                      KindRow{kCRS, "Temperature", "UI_HotTextNumber", "5500.000000"},
                      KindRow{kCRS, "Exposure2012", "UI_HotTextNumber", "0.500000"},
                      KindRow{kCRS, "ToneCurveName", "UI_Popup", "Linear"},
                      KindRow{kTIFF, "Orientation", "UI_Popup", "Normal"},
                      KindRow{kEXIF, "FNumber", "UI_StaticText", "28/10"},
                      KindRow{kDC, "subject", "UI_TextEdit", "sea; storm"},
                      KindRow{kDC, "title", "UI_TextEdit", "Harbour at dawn"}));

TEST(ControlFactoryTest, ChoicePopupsAreEditableOnlyForOpenChoices)
{
    auto const provider = MakeProvider(EveryKindDescription());
    auto const open = InlineControlFactory(V(provider, kCRS, "ToneCurveName"), nullptr);
    auto const closed = InlineControlFactory(V(provider, kTIFF, "Orientation"), nullptr);
    ASSERT_TRUE(As<UI_Popup>(open));
    ASSERT_TRUE(As<UI_Popup>(closed));
    EXPECT_EQ(UI_Popup::kPopupEditable, As<UI_Popup>(open)->GetPopupType());
    EXPECT_EQ(UI_Popup::kPopupListOnly, As<UI_Popup>(closed)->GetPopupType());
    EXPECT_EQ("Normal", S(As<UI_Popup>(closed)->GetItemText(0)));
    EXPECT_EQ(8, As<UI_Popup>(closed)->CountItems());
}

TEST(ControlFactoryTest, NumbersTakeTheirLimitsFromEntryOrType)
{
    auto const provider = MakeProvider(EveryKindDescription());
    auto const temperature = InlineControlFactory(V(provider, kCRS, "Temperature"), nullptr);
    ASSERT_TRUE(As<UI_HotTextNumber>(temperature));
    EXPECT_EQ(2000.0, As<UI_HotTextNumber>(temperature)->GetMinValue());
    EXPECT_EQ(50000.0, As<UI_HotTextNumber>(temperature)->GetMaxValue());
    EXPECT_TRUE(As<UI_HotTextNumber>(temperature)->GetAllowEmptyNumberField());
    EXPECT_EQ(1.0, As<UI_HotTextNumber>(temperature)->GetIncrement());

    auto const exposure = InlineControlFactory(V(provider, kCRS, "Exposure2012"), nullptr);
    ASSERT_TRUE(As<UI_HotTextNumber>(exposure));
    EXPECT_EQ(0.01, As<UI_HotTextNumber>(exposure)->GetIncrement());
    EXPECT_EQ(-5.0, As<UI_HotTextNumber>(exposure)->GetMinValue());
}

TEST(ControlFactoryTest, ToolTipIsTheDescriptionAndParentGetsTheControl)
{
    auto const provider = MakeProvider(EveryKindDescription());
    boost::intrusive_ptr<UI_SubView> const parent(new UI_SubView());
    auto const control = InlineControlFactory(V(provider, kXMP, "Label"), parent);
    ASSERT_TRUE(control);
    EXPECT_EQ(parent.get(), control->view->UI_GetParentNode());
    auto const entry = PathEntryDefinition(P(kXMP, "Label"));
    EXPECT_EQ(entry->description, control->view->UI_GetToolTip());
    EXPECT_FLOAT_EQ(400.0f, control->view->UI_GetToolTipWidth());
}

TEST(ControlFactoryTest, ValuesWithoutDefinitionOrOfStructuresGetNoControl)
{
    auto const provider = MakeProvider(EveryKindDescription());
    EXPECT_FALSE(InlineControlFactory(V(provider, kXMP, "NoSuchProperty"), nullptr));
    EXPECT_FALSE(
        InlineControlFactory(V(provider, "http://example.com/unknown/", "Label"), nullptr));
    EXPECT_FALSE(InlineControlFactory(V(provider, "http://ns.adobe.com/xap/1.0/mm/", "DerivedFrom"),
                                      nullptr));
}

TEST(ControlFactoryTest, ViewItemPutsTheDisplayParameterIntoTextNodeIds)
{
    auto const provider = MakeProvider(EveryKindDescription());
    Value const label = V(provider, kXMP, "Label");

    auto const plain = ControlFactory(label, Item(label), nullptr, false, MessageCallback());
    ASSERT_TRUE(As<UI_TextEdit>(plain));
    EXPECT_EQ("metadata_view", plain->view->UI_GetNodeID());
    EXPECT_FALSE(As<UI_TextEdit>(plain)->GetReadOnlyMode());

    auto readOnlyItem = Item(label);
    readOnlyItem->SetHint("readOnly", "true");
    auto const readOnly = ControlFactory(label, readOnlyItem, nullptr, false, MessageCallback());
    ASSERT_TRUE(As<UI_TextEdit>(readOnly));
    EXPECT_EQ("metadata_view, read_only", readOnly->view->UI_GetNodeID());
    EXPECT_TRUE(As<UI_TextEdit>(readOnly)->GetReadOnlyMode());
    EXPECT_FALSE(readOnly->view->UI_IsDisabled()); // read-only, yet active
    EXPECT_EQ(
        kControlStatusReadOnly,
        QueryControlStatus(label, DisplayParameterFromNodeID(readOnly->view->UI_GetNodeID())));

    auto yesItem = Item(label);
    yesItem->SetHint("readOnly", "yes"); // only "true" counts
    auto const yes = ControlFactory(label, yesItem, nullptr, false, MessageCallback());
    ASSERT_TRUE(As<UI_TextEdit>(yes));
    EXPECT_FALSE(As<UI_TextEdit>(yes)->GetReadOnlyMode());
    EXPECT_EQ("metadata_view", yes->view->UI_GetNodeID());

    auto dateItem = Item(P(kXMP, "CreateDate"));
    dateItem->SetHint("readOnly", "true");
    auto const date = ControlFactory(V(provider, kXMP, "CreateDate"), dateItem, nullptr, false,
                                     MessageCallback());
    ASSERT_TRUE(As<UI_DateTextEdit>(date));
    EXPECT_EQ("metadata_view, read_only", date->view->UI_GetNodeID());
    EXPECT_TRUE(As<UI_DateTextEdit>(date)->GetReadOnlyMode());
}

TEST(ControlFactoryTest, ReadOnlyHintTurnsNumbersIntoStaticTextButKeepsListsEditable)
{
    auto const provider = MakeProvider(EveryKindDescription());
    auto numberItem = Item(P(kCRS, "Temperature"));
    numberItem->SetHint("readOnly", "true");
    auto const number = ControlFactory(V(provider, kCRS, "Temperature"), numberItem, nullptr, false,
                                       MessageCallback());
    EXPECT_EQ("UI_StaticText", KindOf(number));
    EXPECT_EQ("5500", Shown(number));

    auto listItem = Item(P(kDC, "subject"));
    listItem->SetHint("readOnly", "true");
    auto const list =
        ControlFactory(V(provider, kDC, "subject"), listItem, nullptr, false, MessageCallback());
    EXPECT_EQ("UI_TextEdit", KindOf(list));
    EXPECT_EQ("metadata_view, read_only", list->view->UI_GetNodeID());
}

TEST(ControlFactoryTest, BooleanStaysACheckboxUnlessItHasChoicesToShow)
{
    auto const provider = MakeProvider(EveryKindDescription());
    provider->SetReadOnly(true);
    auto const box = InlineControlFactory(V(provider, kCRS, "HasCrop"), nullptr);
    ASSERT_EQ("UI_Checkbox", KindOf(box));
    EXPECT_TRUE(box->view->UI_IsDisabled());

    auto item = Item(P(kCRS, "HasCrop"));
    auto yes = boost::make_shared<ChoiceDefinition>();
    yes->value = zephcore::ToUTF8("True");
    yes->label = U16("Cropped");
    item->choices.push_back(yes);
    item->SetHint("readOnly", "true");
    auto const label =
        ControlFactory(V(provider, kCRS, "HasCrop"), item, nullptr, false, MessageCallback());
    ASSERT_EQ("UI_StaticText", KindOf(label));
    EXPECT_EQ("Cropped", Shown(label));
}

TEST(ControlFactoryTest, RationalIsStaticTextUnlessEverythingIsForcedWritable)
{
    auto const provider = MakeProvider(EveryKindDescription());
    EXPECT_EQ("UI_StaticText",
              KindOf(InlineControlFactory(V(provider, kEXIF, "FNumber"), nullptr)));
    zephmetadata::SetAllMetadataForcedWritable(true);
    auto const forced = InlineControlFactory(V(provider, kEXIF, "FNumber"), nullptr);
    zephmetadata::SetAllMetadataForcedWritable(false);
    EXPECT_EQ("UI_TextEdit", KindOf(forced));
    EXPECT_EQ("28/10", Shown(forced));
}

TEST(ControlFactoryTest, DisplayOnlyAndFlaggedPathsGetStaticText)
{
    auto const provider = MakeProvider(EveryKindDescription());
    EXPECT_EQ("UI_StaticText",
              KindOf(ControlFactory(V(provider, kXMP, "BaseURL"), nullptr, true, nullptr)));
    EXPECT_EQ("UI_StaticText",
              KindOf(InlineControlFactory(V(provider, kXMP, "Label", true), nullptr)));
    auto const orientation =
        ControlFactory(V(provider, kTIFF, "Orientation"), nullptr, true, nullptr);
    EXPECT_EQ("UI_StaticText", KindOf(orientation));
    EXPECT_EQ("Normal", Shown(orientation)); // the choice's label, not "1"
    // Two truncation modes: one for plain values, one for addresses.
    EXPECT_EQ(zephui::TextTruncation(2), As<UI_StaticText>(orientation)->GetTextTruncation());
    auto const url = ControlFactory(V(provider, kXMP, "BaseURL"), nullptr, true, nullptr);
    EXPECT_EQ(zephui::TextTruncation(3), As<UI_StaticText>(url)->GetTextTruncation());
}

TEST(ControlFactoryTest, FormatsDropdownAndRating)
{
    auto const provider = MakeProvider(EveryKindDescription());
    // A dropdown of the item's own choices, editable with "openChoice".
    auto item = Item(P(kXMP, "Label"));
    item->format = zephcore::ToUTF8("dropdown");
    for (char const* colour : {"Red", "Green"})
    {
        auto choice = boost::make_shared<ChoiceDefinition>();
        choice->value = zephcore::ToUTF8(colour);
        choice->label = U16(colour);
        item->choices.push_back(choice);
    }
    item->SetHint("openChoice", "true");
    auto const dropdown = ControlFactory(V(provider, kXMP, "Label"), item, nullptr, false, nullptr);
    ASSERT_EQ("UI_Popup", KindOf(dropdown));
    EXPECT_EQ(UI_Popup::kPopupEditable, As<UI_Popup>(dropdown)->GetPopupType());
    EXPECT_EQ(0, As<UI_Popup>(dropdown)->GetValue());

    // Stars for a real; a rating format on an integer does nothing.
    auto stars = Item(P(kCRS, "Exposure2012"));
    stars->format = zephcore::ToUTF8("rating");
    stars->SetHint("size", "large");
    auto const rated =
        ControlFactory(V(provider, kCRS, "Exposure2012"), stars, nullptr, false, nullptr);
    ASSERT_EQ("UI_StarRating", KindOf(rated));
    EXPECT_FLOAT_EQ(31.0f, rated->view->UI_GetLocalRectF(false).height);

    auto integer = Item(P(kCRS, "Temperature"));
    integer->format = zephcore::ToUTF8("rating");
    EXPECT_EQ("UI_HotTextNumber", KindOf(ControlFactory(V(provider, kCRS, "Temperature"), integer,
                                                        nullptr, false, nullptr)));

    // A dropdown without choices falls through to the normal rules.
    auto empty = Item(P(kXMP, "Label"));
    empty->format = zephcore::ToUTF8("dropdown");
    EXPECT_EQ("UI_TextEdit",
              KindOf(ControlFactory(V(provider, kXMP, "Label"), empty, nullptr, false, nullptr)));
}

TEST(ControlFactoryTest, MultiLinesHintMakesATallEdit)
{
    auto const provider = MakeProvider(EveryKindDescription());
    auto one = Item(P(kXMP, "Label"));
    one->SetHint("multiLines", "1");
    auto const single = ControlFactory(V(provider, kXMP, "Label"), one, nullptr, false, nullptr);
    ASSERT_TRUE(As<UI_TextEdit>(single));
    EXPECT_FALSE(As<UI_TextEdit>(single)->IsMultiLine());

    auto two = Item(P(kXMP, "Label"));
    two->SetHint("multiLines", "2");
    auto const multi = ControlFactory(V(provider, kXMP, "Label"), two, nullptr, false, nullptr);
    ASSERT_TRUE(As<UI_TextEdit>(multi));
    EXPECT_TRUE(As<UI_TextEdit>(multi)->IsMultiLine());
    EXPECT_FLOAT_EQ(38.0f, multi->view->UI_GetLocalRectF(false).height);
    EXPECT_EQ("Red", Shown(multi));
}

TEST(ControlFactoryTest, RegisteredCreatorIsAskedFirstAndADropdownReplacesIt)
{
    auto const provider = MakeProvider(EveryKindDescription());
    int asked = 0;
    RegisterControlCreator(
        [&asked](Value const& value, boost::shared_ptr<ViewItem> item,
                 boost::intrusive_ptr<UI_Node>)
        {
            ++asked;
            EXPECT_TRUE(item); // a default item stands in when none was given
            if (!TextIsLabel(value))
                return boost::shared_ptr<Control>();
            boost::intrusive_ptr<UI_StaticText> const own(new UI_StaticText(U16("host's own")));
            return boost::make_shared<Control>(own, boost::function<void()>());
        });
    auto const own = InlineControlFactory(V(provider, kXMP, "Label"), nullptr);
    auto const fallback = InlineControlFactory(V(provider, kXMP, "Nickname"), nullptr);
    EXPECT_EQ(2, asked);
    EXPECT_EQ("host's own", Shown(own));
    EXPECT_EQ("UI_TextEdit", KindOf(fallback)); // a null answer lets the rules run

    auto item = Item(P(kXMP, "Label"));
    item->format = zephcore::ToUTF8("dropdown");
    item->choices.push_back(boost::make_shared<ChoiceDefinition>());
    auto const replaced = ControlFactory(V(provider, kXMP, "Label"), item, nullptr, false, nullptr);
    EXPECT_EQ("UI_Popup", KindOf(replaced));

    RegisterControlCreator(ControlCreator());
    EXPECT_TRUE(RegisteredControlCreator().empty());
    EXPECT_EQ("UI_TextEdit", KindOf(InlineControlFactory(V(provider, kXMP, "Label"), nullptr)));
}

TEST(ControlFactoryTest, EveryPropertyOfThePublishedSchemasGetsAControlOrNull)
{
    auto const provider = MakeProvider(EveryKindDescription());
    boost::intrusive_ptr<UI_SubView> const parent(new UI_SubView());
    int made = 0;
    int simple = 0;
    for (auto const& schema : zephmetadata::CommonSchemaDefinitions())
        for (Path const& path : zephmetadata::ChildPaths(schema))
        {
            boost::optional<PrimitiveType> const primitive = PrimitiveTypeOfPath(path);
            auto const control = InlineControlFactory(Value(path, provider), parent);
            // An array of structures is never one value: editing it as text
            // would replace or delete all its items.
            if (!boost::empty(zephmetadata::ChildPaths(path)))
            {
                EXPECT_FALSE(control) << zephcore::ToStdString(path.propertyName);
                continue;
            }
            if (primitive && *primitive <= kPrimitiveAlternative)
            {
                ++simple;
                EXPECT_TRUE(control) << zephcore::ToStdString(path.propertyName);
            }
            if (control)
                ++made;
        }
    EXPECT_GT(simple, 300);
    EXPECT_EQ(simple, made);
    // A field named through an array, not an item, has no value to bind.
    EXPECT_FALSE(InlineControlFactory(
        V(provider, "http://ns.adobe.com/xap/1.0/mm/", "History/stEvt:action"), parent));
}

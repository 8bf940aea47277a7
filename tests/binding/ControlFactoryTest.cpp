// The factory's choice of control for each kind of value, view item hint and
// format, and a host's creator; and that every property of the published
// schemas gets a control or a clean null.

#include "BindingTestSupport.h"

#include "zephmetadataui/ControlFactory.h"
#include "zephmetadataui/InlineControlFactory.h"
#include "zephmetadataui/UI_DateTextEdit.h"

#include "contracts/Toolkit.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

using namespace zephmetadataui;
using namespace bindingtest;

namespace
{

enum Mode : unsigned
{
    kInline = 0,
    kDisplayOnly = 1,
    kFlaggedReadOnly = 2,
    kReadOnlyProvider = 4,
    kForcedWritable = 8,
};

// One way of asking for a control and what it must give. A view item is made
// when format is given; hints read "name=value,...", choices "value=label,..."
// (a bare value is its own label).
struct KindCase
{
    char const* ns;
    char const* name;
    unsigned mode;
    char const* format;
    char const* hints;
    char const* choices;
    char const* kind;
    char const* shown; // what the control shows of the sample value
    char const* traits;
};

std::vector<std::pair<std::string, std::string>> Pairs(char const* list)
{
    std::vector<std::pair<std::string, std::string>> pairs;
    std::stringstream in(list ? list : "");
    for (std::string entry; std::getline(in, entry, ',');)
    {
        std::size_t const equals = entry.find('=');
        pairs.emplace_back(entry.substr(0, equals),
                           equals == std::string::npos ? entry : entry.substr(equals + 1));
    }
    return pairs;
}

boost::shared_ptr<ViewItem> ItemFor(KindCase const& c)
{
    if (!c.format)
        return nullptr;
    auto item = boost::make_shared<ViewItem>(P(c.ns, c.name));
    item->format = zephcore::ToUTF8(c.format);
    for (auto const& [name, value] : Pairs(c.hints))
        item->SetHint(name.c_str(), value.c_str());
    for (auto const& [value, label] : Pairs(c.choices))
    {
        auto choice = boost::make_shared<ChoiceDefinition>();
        choice->value = zephcore::ToUTF8(value.c_str());
        choice->label = U16(label.c_str());
        item->choices.push_back(choice);
    }
    return item;
}

// What sets a control apart beyond its class and text: its state, its
// shape, and the display parameter its node id carries.
std::string Traits(boost::shared_ptr<Control> const& control)
{
    std::string out;
    auto const add = [&out](std::string const& trait) { out += (out.empty() ? "" : " ") + trait; };
    if (control->view->UI_IsDisabled())
        add("disabled");
    if (!control->view->UI_IsShown())
        add("hidden");
    if (auto* text = As<UI_TextEdit>(control))
    {
        if (text->GetReadOnlyMode())
            add("read-only");
        if (text->IsMultiLine())
            add("multi-line " + std::to_string(int(text->UI_GetLocalRectF(false).height)) +
                " high");
    }
    if (auto* popup = As<UI_Popup>(control))
        add(std::string(popup->GetPopupType() == UI_Popup::kPopupEditable ? "open " : "") +
            "choice " + std::to_string(popup->GetValue()) + " of " +
            std::to_string(popup->CountItems()));
    if (auto* label = As<UI_StaticText>(control))
        add("truncation " + std::to_string(label->GetTextTruncation()));
    if (auto* stars = As<UI_StarRating>(control))
        add(std::to_string(int(stars->UI_GetLocalRectF(false).height)) + " high");
    if (!control->view->UI_GetNodeID().empty())
        add("[" + control->view->UI_GetNodeID() + "]");
    return out;
}

bool TextIsLabel(Path const& path)
{
    return zephcore::ToStdString(path.propertyName) == "Label";
}

boost::shared_ptr<ViewItem> Item(Path const& path)
{
    return boost::make_shared<ViewItem>(path);
}

} // namespace

TEST(ControlFactoryTest, EachKindOfValueItemAndModeGetsItsControlShowingTheValue)
{
    std::vector<KindCase> const cases{
        // The value's type alone decides.
        {kXMP, "Label", kInline, nullptr, nullptr, nullptr, "UI_TextEdit", "Red", ""},
        {kXMP, "CreateDate", kInline, nullptr, nullptr, nullptr, "UI_DateTextEdit",
         "2009-05-12 14:30 +02:00", "[UI_DateTextEdit]"},
        {kXMP, "BaseURL", kInline, nullptr, nullptr, nullptr, "UI_URLEdit",
         "http://example.com/harbour", ""},
        {kXMP, "Rating", kInline, nullptr, nullptr, nullptr, "UI_StarRating", "3.000000",
         "19 high"},
        {kCRS, "HasCrop", kInline, nullptr, nullptr, nullptr, "UI_Checkbox", "checked", ""},
        {kCRS, "Temperature", kInline, nullptr, nullptr, nullptr, "UI_HotTextNumber", "5500.000000",
         ""},
        {kCRS, "Exposure2012", kInline, nullptr, nullptr, nullptr, "UI_HotTextNumber", "0.500000",
         ""},
        {kCRS, "ToneCurveName", kInline, nullptr, nullptr, nullptr, "UI_Popup", "Linear",
         "open choice 0 of 4"},
        {kTIFF, "Orientation", kInline, nullptr, nullptr, nullptr, "UI_Popup", "Normal",
         "choice 0 of 8"},
        {kEXIF, "FNumber", kInline, nullptr, nullptr, nullptr, "UI_StaticText", "28/10",
         "truncation 2"},
        {kDC, "subject", kInline, nullptr, nullptr, nullptr, "UI_TextEdit", "sea; storm", ""},
        {kDC, "title", kInline, nullptr, nullptr, nullptr, "UI_TextEdit", "Harbour at dawn", ""},
        // A view item puts the display parameter into text node ids; only
        // readOnly "true" counts, and a read-only field stays active.
        {kXMP, "Label", kInline, "", nullptr, nullptr, "UI_TextEdit", "Red", "[metadata_view]"},
        {kXMP, "Label", kInline, "", "readOnly=true", nullptr, "UI_TextEdit", "Red",
         "read-only [metadata_view, read_only]"},
        {kXMP, "Label", kInline, "", "readOnly=yes", nullptr, "UI_TextEdit", "Red",
         "[metadata_view]"},
        {kXMP, "CreateDate", kInline, "", "readOnly=true", nullptr, "UI_DateTextEdit",
         "2009-05-12 14:30 +02:00", "read-only [metadata_view, read_only]"},
        // Read-only numbers become static text; lists stay editable text.
        {kCRS, "Temperature", kInline, "", "readOnly=true", nullptr, "UI_StaticText", "5500",
         "truncation 2"},
        {kDC, "subject", kInline, "", "readOnly=true", nullptr, "UI_TextEdit", "sea; storm",
         "read-only [metadata_view, read_only]"},
        // A boolean stays a box, disabled, unless it has choices to show.
        {kCRS, "HasCrop", kReadOnlyProvider, nullptr, nullptr, nullptr, "UI_Checkbox", "checked",
         "disabled"},
        {kCRS, "HasCrop", kReadOnlyProvider, "", "readOnly=true", "True=Cropped", "UI_StaticText",
         "Cropped", "truncation 2"},
        // A rational is shown only, unless everything is forced writable.
        {kEXIF, "FNumber", kForcedWritable, nullptr, nullptr, nullptr, "UI_TextEdit", "28/10", ""},
        // Display-only and flagged paths get static text; choices show their
        // label, addresses are cut in the middle.
        {kXMP, "BaseURL", kDisplayOnly, nullptr, nullptr, nullptr, "UI_StaticText",
         "http://example.com/harbour", "truncation 3"},
        {kXMP, "Label", kFlaggedReadOnly, nullptr, nullptr, nullptr, "UI_StaticText", "Red",
         "truncation 2"},
        {kTIFF, "Orientation", kDisplayOnly, nullptr, nullptr, nullptr, "UI_StaticText", "Normal",
         "truncation 2"},
        // Formats: a dropdown of the item's own choices; stars for a real
        // but not for an integer; a dropdown without choices falls through.
        {kXMP, "Label", kInline, "dropdown", "openChoice=true", "Red,Green", "UI_Popup", "Red",
         "open choice 0 of 2"},
        {kCRS, "Exposure2012", kInline, "rating", "size=large", nullptr, "UI_StarRating",
         "1.000000", "31 high"},
        {kCRS, "Temperature", kInline, "rating", nullptr, nullptr, "UI_HotTextNumber",
         "5500.000000", ""},
        {kXMP, "Label", kInline, "dropdown", nullptr, nullptr, "UI_TextEdit", "Red",
         "[metadata_view]"},
        // More than one line asked for makes a tall edit.
        {kXMP, "Label", kInline, "", "multiLines=1", nullptr, "UI_TextEdit", "Red",
         "[metadata_view]"},
        {kXMP, "Label", kInline, "", "multiLines=2", nullptr, "UI_TextEdit", "Red",
         "multi-line 38 high [metadata_view]"},
    };
    for (KindCase const& c : cases)
    {
        SCOPED_TRACE(std::string(c.name) + " " + (c.format ? c.format : "-") + " " +
                     (c.hints ? c.hints : "-") + " mode " + std::to_string(c.mode));
        auto const provider = MakeProvider(EveryKindDescription());
        provider->SetReadOnly((c.mode & kReadOnlyProvider) != 0);
        zephmetadata::SetAllMetadataForcedWritable((c.mode & kForcedWritable) != 0);
        Value const value = V(provider, c.ns, c.name, (c.mode & kFlaggedReadOnly) != 0);
        boost::shared_ptr<Control> const control =
            ControlFactory(value, ItemFor(c), nullptr, (c.mode & kDisplayOnly) != 0, nullptr);
        zephmetadata::SetAllMetadataForcedWritable(false);
        ASSERT_TRUE(control);
        EXPECT_EQ(c.kind, KindOf(control));
        EXPECT_EQ(c.shown, Shown(control));
        EXPECT_EQ(c.traits, Traits(control));
    }
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

// The factory's choice of control by value, view item and host's creator, on
// every published property; RefreshControl, its short form; the status rules
// by path, provider, type, switches and display parameter; and the display
// and travel filters on the published schemas.

#include "BindingTestSupport.h"

#include "binding/ControlStatusPrivate.h"
#include "binding/PathFilters.h"
#include "zephmetadataui/ControlFactory.h"
#include "zephmetadataui/InlineControlFactory.h"

#include "contracts/Toolkit.h"

#include <zephcore/Error.h>

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <sstream>
#include <tuple>
#include <vector>

using namespace zephmetadataui;
using namespace bindingtest;

namespace
{

constexpr unsigned kInline = 0, kDisplayOnly = 1, kFlaggedReadOnly = 2, kReadOnlyProvider = 4,
                   kForcedWritable = 8;

// What sets a control apart beyond its class and text: its state, its
// shape, and the display parameter its node id carries.
std::string Traits(boost::shared_ptr<Control> const& control)
{
    std::ostringstream out;
    if (control->view->UI_IsDisabled())
        out << " disabled";
    if (auto* text = As<UI_TextEdit>(control))
    {
        out << (text->GetReadOnlyMode() ? " read-only" : "");
        if (text->IsMultiLine())
            out << " multi-line " << int(text->UI_GetLocalRectF(false).height) << " high";
    }
    if (auto* popup = As<UI_Popup>(control))
        out << (popup->GetPopupType() == UI_Popup::kPopupEditable ? " open" : "") << " choice "
            << popup->GetValue() << " of " << popup->CountItems();
    if (auto* number = As<UI_HotTextNumber>(control))
        out << " " << number->GetMinValue() << " to " << number->GetMaxValue() << " by "
            << number->GetIncrement() << (number->GetAllowEmptyNumberField() ? " or empty" : "");
    if (auto* label = As<UI_StaticText>(control))
        out << " truncation " << label->GetTextTruncation();
    if (auto* stars = As<UI_StarRating>(control))
        out << " " << int(stars->UI_GetLocalRectF(false).height) << " high";
    if (!control->view->UI_GetNodeID().empty())
        out << " [" << control->view->UI_GetNodeID() << "]";
    return out.str().substr(out.str().empty() ? 0 : 1);
}

// The status of a value's control without a display parameter, with an editable
// one and with a read-only one: Editable, Read-only or Disabled each.
std::string Statuses(Value const& value)
{
    ControlDisplayParameter editable, readOnly;
    readOnly.read_only = true;
    std::string out;
    for (auto const& parameter : {boost::optional<ControlDisplayParameter>(),
                                  boost::make_optional(editable), boost::make_optional(readOnly)})
    {
        ControlStatus const status = QueryControlStatus(value, parameter);
        out += status == kControlStatusEditable   ? 'E'
               : status == kControlStatusReadOnly ? 'R'
               : status == kControlStatusDisabled ? 'D'
                                                  : '?';
    }
    return out;
}
} // namespace

TEST(ControlFactoryTest, EachKindOfValueItemAndModeGetsItsControlShowingTheValue)
{
    // A way of asking for a control (a view item as Item reads it, or none)
    // and what the control must be, show of the sample value, and set apart.
    using KindCase = std::tuple<char const*, char const*, unsigned, char const*, char const*,
                                char const*, char const*>;
    char const* const range = "2000 to 50000 by 1 or empty"; // of Temperature
    char const* const readOnlyView = "read-only [metadata_view, read_only]";
    char const* const date = "2009-05-12 14:30 +02:00";
    char const* const url = "http://example.com/harbour";
    std::vector<KindCase> const cases{
        // The value's type alone decides.
        {kXMP, "Label", kInline, nullptr, "UI_TextEdit", "Red", ""},
        {kXMP, "CreateDate", kInline, nullptr, "UI_DateTextEdit", date, "[UI_DateTextEdit]"},
        {kXMP, "BaseURL", kInline, nullptr, "UI_URLEdit", url, ""},
        {kXMP, "Rating", kInline, nullptr, "UI_StarRating", "3.000000", "19 high"},
        {kCRS, "HasCrop", kInline, nullptr, "UI_Checkbox", "checked", ""},
        {kCRS, "Temperature", kInline, nullptr, "UI_HotTextNumber", "5500.000000", range},
        {kCRS, "Exposure2012", kInline, nullptr, "UI_HotTextNumber", "0.500000",
         "-5 to 5 by 0.01 or empty"},
        {kCRS, "ToneCurveName", kInline, nullptr, "UI_Popup", "Linear", "open choice 0 of 4"},
        {kTIFF, "Orientation", kInline, nullptr, "UI_Popup", "Normal", "choice 0 of 8"},
        {kEXIF, "FNumber", kInline, nullptr, "UI_StaticText", "28/10", "truncation 2"},
        {kDC, "subject", kInline, nullptr, "UI_TextEdit", "sea; storm", ""},
        {kDC, "title", kInline, nullptr, "UI_TextEdit", "Harbour at dawn", ""},
        // A view item puts the display parameter into text node ids; only
        // readOnly "true" counts, and a read-only field stays active.
        {kXMP, "Label", kInline, "", "UI_TextEdit", "Red", "[metadata_view]"},
        {kXMP, "Label", kInline, "|readOnly=true", "UI_TextEdit", "Red", readOnlyView},
        {kXMP, "Label", kInline, "|readOnly=yes", "UI_TextEdit", "Red", "[metadata_view]"},
        {kXMP, "CreateDate", kInline, "|readOnly=true", "UI_DateTextEdit", date, readOnlyView},
        // Read-only numbers become static text; lists stay editable text.
        {kCRS, "Temperature", kInline, "|readOnly=true", "UI_StaticText", "5500", "truncation 2"},
        {kDC, "subject", kInline, "|readOnly=true", "UI_TextEdit", "sea; storm", readOnlyView},
        // A boolean stays a box, disabled, unless it has choices to show.
        {kCRS, "HasCrop", kReadOnlyProvider, nullptr, "UI_Checkbox", "checked", "disabled"},
        {kCRS, "HasCrop", kReadOnlyProvider, "|readOnly=true|True=Cropped", "UI_StaticText",
         "Cropped", "truncation 2"},
        // A rational is shown only, unless everything is forced writable.
        {kEXIF, "FNumber", kForcedWritable, nullptr, "UI_TextEdit", "28/10", ""},
        // Display-only and flagged paths get static text; choices show their
        // label, addresses are cut in the middle.
        {kXMP, "BaseURL", kDisplayOnly, nullptr, "UI_StaticText", url, "truncation 3"},
        {kXMP, "Label", kFlaggedReadOnly, nullptr, "UI_StaticText", "Red", "truncation 2"},
        {kTIFF, "Orientation", kDisplayOnly, nullptr, "UI_StaticText", "Normal", "truncation 2"},
        // Formats: a dropdown of the item's own choices; stars for a real
        // but not for an integer; a dropdown without choices falls through.
        {kXMP, "Label", kInline, "dropdown|openChoice=true|Red,Green", "UI_Popup", "Red",
         "open choice 0 of 2"},
        {kCRS, "Exposure2012", kInline, "rating|size=large", "UI_StarRating", "1.000000",
         "31 high"},
        {kCRS, "Temperature", kInline, "rating", "UI_HotTextNumber", "5500.000000", range},
        {kXMP, "Label", kInline, "dropdown", "UI_TextEdit", "Red", "[metadata_view]"},
        // More than one line asked for makes a tall edit.
        {kXMP, "Label", kInline, "|multiLines=1", "UI_TextEdit", "Red", "[metadata_view]"},
        {kXMP, "Label", kInline, "|multiLines=2", "UI_TextEdit", "Red",
         "multi-line 38 high [metadata_view]"},
    };
    for (auto const& [ns, name, mode, item, kind, shown, traits] : cases)
    {
        SCOPED_TRACE(std::string(name) + " " + (item ? item : "-") + " mode " +
                     std::to_string(mode));
        auto const provider = MakeProvider(EveryKindDescription());
        provider->SetReadOnly((mode & kReadOnlyProvider) != 0);
        zephmetadata::SetAllMetadataForcedWritable((mode & kForcedWritable) != 0);
        Value const value = V(provider, ns, name, (mode & kFlaggedReadOnly) != 0);
        boost::shared_ptr<Control> const control =
            ControlFactory(value, item ? Item(value, item) : nullptr, nullptr,
                           (mode & kDisplayOnly) != 0, nullptr);
        zephmetadata::SetAllMetadataForcedWritable(false);
        ASSERT_TRUE(control);
        EXPECT_EQ(kind, KindOf(control));
        EXPECT_EQ(shown, Shown(control));
        EXPECT_EQ(traits, Traits(control));
    }
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
            if (zephcore::ToStdString(value.propertyName) != "Label")
                return boost::shared_ptr<Control>();
            boost::intrusive_ptr<UI_StaticText> const own(
                new UI_StaticText(zephcore::UTF8to16("host's own")));
            return boost::make_shared<Control>(own, boost::function<void()>());
        });
    auto const own = InlineControlFactory(V(provider, kXMP, "Label"), nullptr);
    auto const fallback = InlineControlFactory(V(provider, kXMP, "Nickname"), nullptr);
    EXPECT_EQ(2, asked);
    EXPECT_EQ("host's own", Shown(own));
    EXPECT_EQ("UI_TextEdit", KindOf(fallback)); // a null answer lets the rules run
    // While a creator is registered, a refresh leaves the controls to it.
    Value const nickname = V(provider, kXMP, "Nickname");
    WriteElsewhere(nickname, "Silent", false);
    RefreshControl(nickname, fallback, false);
    EXPECT_EQ("", Shown(fallback));

    auto const replaced =
        ControlFactory(V(provider, kXMP, "Label"), Item(P(kXMP, "Label"), "dropdown||=none"),
                       nullptr, false, nullptr);
    EXPECT_EQ("UI_Popup", KindOf(replaced));

    RegisterControlCreator(ControlCreator());
    EXPECT_TRUE(RegisteredControlCreator().empty());
    EXPECT_EQ("UI_TextEdit", KindOf(InlineControlFactory(V(provider, kXMP, "Label"), nullptr)));
    RefreshControl(nickname, fallback, false);
    EXPECT_EQ("Silent", Shown(fallback));
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
            auto const control = InlineControlFactory(Value(path, provider), parent);
            // An array of structures is never one value: editing it as text
            // would replace or delete all its items.
            if (!boost::empty(zephmetadata::ChildPaths(path)))
            {
                EXPECT_FALSE(control) << zephcore::ToStdString(path.propertyName);
                continue;
            }
            if (auto const primitive = PrimitiveTypeOfPath(path);
                primitive && *primitive <= kPrimitiveAlternative)
            {
                ++simple;
                EXPECT_TRUE(control) << zephcore::ToStdString(path.propertyName);
            }
            if (!control)
                continue;
            ++made;
            EXPECT_EQ(PathEntryDefinition(path)->description, control->view->UI_GetToolTip());
            EXPECT_EQ(parent.get(), control->view->UI_GetParentNode());
        }
    EXPECT_GT(simple, 300);
    EXPECT_EQ(simple, made);
    // Nor do fields named through an array, or values without a definition.
    EXPECT_FALSE(InlineControlFactory(
        V(provider, "http://ns.adobe.com/xap/1.0/mm/", "History/stEvt:action"), parent));
    EXPECT_FALSE(InlineControlFactory(V(provider, kXMP, "NoSuchProperty"), nullptr));
    EXPECT_FALSE(InlineControlFactory(V(provider, "http://example.com/none/", "Label"), nullptr));
}

TEST(RefreshControlTest, BringsEachFactoryKindUpToDate)
{
    // What is written without telling anyone, and what the control shows after
    // a refresh (null: a control class it cannot refresh raises an error).
    using Case = std::tuple<char const*, char const*, bool, char const*, char const*>;
    for (auto const& [ns, name, displayOnly, written, shown] : std::vector<Case>{
             {kXMP, "Label", false, "Silent", "Silent"},
             {kXMP, "Label", true, "Silent", "Silent"},
             {kCRS, "HasCrop", false, "False", "unchecked"},
             {kCRS, "HasCrop", true, "False", "unchecked"}, // display-only, still a box
             {kCRS, "Temperature", false, "6000", "6000.000000"},
             {kTIFF, "Orientation", false, "6", "Rotated 90° clockwise"},
             {kEXIF, "FNumber", false, "40/10", "40/10"},
             // A date edit passes as a text edit: it gets the stored text as it is.
             {kXMP, "CreateDate", false, "2011-02-03", "2011-02-03"},
             {kXMP, "BaseURL", false, "x", nullptr},
             {kXMP, "Rating", false, "4", nullptr},
         })
    {
        SCOPED_TRACE(std::string(name) + (displayOnly ? " shown only" : ""));
        Value const value = V(MakeProvider(EveryKindDescription()), ns, name);
        auto const control = ControlFactory(value, nullptr, displayOnly, nullptr);
        std::string const before = Shown(control);
        WriteElsewhere(value, written, false);
        EXPECT_EQ(before, Shown(control)) << "nothing told the control";
        if (!shown)
        {
            EXPECT_THROW(RefreshControl(value, control, displayOnly), zephcore::ZephError);
            continue;
        }
        RefreshControl(value, control, displayOnly);
        EXPECT_EQ(shown, Shown(control));
    }
}

TEST(RefreshControlTest, NullControlsAndUnknownValuesAreLeftAloneAndAWrongClassRaises)
{
    auto const provider = MakeProvider(EveryKindDescription());
    Value const label = V(provider, kXMP, "Label");
    RefreshControl(label, boost::shared_ptr<Control>(), false);

    auto const text = InlineControlFactory(label, nullptr);
    // A display-only refresh wants static text.
    EXPECT_THROW(RefreshControl(label, text, true), zephcore::ZephError);
    RefreshControl(V(provider, kXMP, "NoSuchProperty"), text, false);
    EXPECT_EQ("Red", Shown(text));
}

TEST(ControlStatusTest, StatusFollowsPathProviderTypeAndDisplayParameter)
{
    std::string const packet = "<xmp:Label>Red</xmp:Label><exif:FNumber>28/10</exif:FNumber>";
    auto const readOnly = MakeProvider(packet);
    readOnly->SetReadOnly(true);
    auto const unparsed = zephmetadata::BufferProviderImpl::Create("<not a packet");
    auto const inapplicable = boost::make_shared<NothingApplicableProvider>(Packet(packet));
    // A value, what is made of it, the status of its control (see Statuses),
    // and whether its control shows while it has no value.
    using Row = std::tuple<char const*, Value, PathEditability, char const*, bool>;
    for (auto const& [what, value, editability, statuses, shownWhenAbsent] : std::vector<Row>{
             {"writable", V(MakeProvider(packet), kXMP, "Label"), kPathWritable, "EER", true},
             {"flagged", V(MakeProvider(packet), kXMP, "Label", true), kPathFlaggedReadOnly, "DRR",
              true},
             {"read-only provider", V(readOnly, kXMP, "Label"), kPathNotWritable, "DRR", true},
             {"rational", V(MakeProvider(packet), kEXIF, "FNumber"), kPathTypeNotEditable, "DDD",
              true},
             {"unknown property", V(MakeProvider(packet), kXMP, "NoSuchProperty"),
              kPathTypeNotEditable, "DDD", true},
             {"no provider", V(nullptr, kXMP, "Label"), kPathNoMetadata, "DDD", false},
             {"unparsed packet", V(unparsed, kXMP, "Label"), kPathNoMetadata, "DDD", false},
             // A path that does not apply shows only while it has a value.
             {"not applicable", V(inapplicable, kXMP, "Label"), kPathWritable, "EER", false},
         })
    {
        SCOPED_TRACE(what);
        EXPECT_EQ(editability, QueryPathEditability(value));
        EXPECT_EQ(statuses, Statuses(value));
        EXPECT_EQ(shownWhenAbsent, QueryVisibilityStatus(value, kGetValueAbsent));
        EXPECT_TRUE(QueryVisibilityStatus(value, kGetValueRead));
        EXPECT_TRUE(QueryVisibilityStatus(value, kGetValueMultiple));

        // Everything forced writable makes every control editable; the
        // verdict on the value itself stays.
        zephmetadata::SetAllMetadataForcedWritable(true);
        EXPECT_EQ("EEE", Statuses(value));
        EXPECT_EQ(editability, QueryPathEditability(value));
        zephmetadata::SetAllMetadataForcedWritable(false);
    }
}

TEST(PathFiltersTest, WhatIsShownAndWhatTakesTheFocus)
{
    // A path, whether it is shown, and whether it takes the focus.
    for (auto const& [path, shown, focused] :
         std::vector<std::tuple<zephmetadata::Path, bool, bool>>{
             {P(kXMP, "Label"), true, true},
             {P(kXMP, "Label", true), true, false}, // flagged read-only
             {P(kXMP, "CreateDate"), true, true},
             {P(kXMP, "Rating"), true, true}, // a real, but stars
             {P(kCRS, "HasCrop"), true, true},
             {P(kCRS, "Temperature"), true, false},  // a plain number
             {P(kEXIF, "FNumber"), true, false},     // rational
             {P(kDC, "date"), true, true},           // a seq of dates: not 4, 5 or 8
             {P(kDC, "title"), true, true},          // a language alternative of text
             {P(kTIFF, "Orientation"), true, true},  // a closed choice of integers
             {P(kCRS, "ToneCurveName"), true, true}, // an open choice of text
             {P(kXMP, "Thumbnails"), false, false},  // an alternative of structures
             {P(kXMP, "NoSuchProperty"), true, false},
             // The raw tone curve of the develop settings is never shown.
             {P(kCRS, "ToneCurve"), false, true},
             {P(kXMP, "ToneCurve"), true, false},
         })
    {
        SCOPED_TRACE(zephcore::ToStdString(path.schemaNamespace + path.propertyName));
        EXPECT_EQ(shown, IsShowablePath(path));
        EXPECT_EQ(focused, IsFocusablePath(path));
    }
}

TEST(PathFiltersTest, BlacklistedPathsVanishFromLaterFiltering)
{
    std::set<Path> paths{P(kDC, "coverage"), P(kDC, "source"), P(kCRS, "ToneCurve"),
                         P(kXMP, "Thumbnails")};
    FilterShowablePaths(paths);
    EXPECT_EQ((std::set<Path>{P(kDC, "coverage"), P(kDC, "source")}), paths);

    BlacklistPath(P(kDC, "coverage", true)); // readOnly takes no part in the key
    BlacklistPath(P(kDC, "coverage"));
    EXPECT_FALSE(IsShowablePath(P(kDC, "coverage")));
    FilterShowablePaths(paths);
    EXPECT_EQ((std::set<Path>{P(kDC, "source")}), paths);

    std::vector<Path> list{P(kDC, "source"), P(kDC, "coverage"), P(kDC, "source")};
    FilterShowablePaths(list);
    EXPECT_EQ((std::vector<Path>{P(kDC, "source"), P(kDC, "source")}), list);
}

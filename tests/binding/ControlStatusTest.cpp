// The status of a control by path, provider, type, switches and display
// parameter; and the display and travel filters on the published schemas.

#include "BindingTestSupport.h"

#include "binding/ControlStatusPrivate.h"
#include "binding/PathFilters.h"
#include "zephmetadataui/ControlFactory.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace zephmetadataui;
using namespace bindingtest;

namespace
{
// The status of a value's control without a display parameter, with an
// editable one and with a read-only one, as letters: Editable, Read-only,
// Disabled.
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

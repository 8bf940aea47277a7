// The display filter, the travel filter and the element types an array editor
// can edit in place, on the published schemas.

#include "BindingTestSupport.h"

#include "binding/PathFilters.h"
#include "zephmetadataui/ControlFactory.h"

#include <gtest/gtest.h>

using namespace zephmetadataui;
using namespace bindingtest;

TEST(PathFiltersTest, SimpleElementTypesAreThePrimitivesAndTypesOnThem)
{
    for (char const* id : {"integer", "real", "text", "boolean", "uri", "agentName", "rating"})
        EXPECT_TRUE(IsSimpleElementTypeId(zephcore::ToUTF8(id))) << id;
    for (char const* id :
         {"date", "bag", "seq", "alt", "openChoice", "Thumbnail", "Dimensions", "no such type"})
        EXPECT_FALSE(IsSimpleElementTypeId(zephcore::ToUTF8(id))) << id;
}

TEST(PathFiltersTest, ChoiceAndAlternativeListsShowOnlyOverSimpleElements)
{
    EXPECT_TRUE(IsShowablePath(P(kXMP, "Label")));          // text
    EXPECT_TRUE(IsShowablePath(P(kDC, "date")));            // seq of dates: not 4, 5 or 8
    EXPECT_TRUE(IsShowablePath(P(kDC, "title")));           // language alternative of text
    EXPECT_TRUE(IsShowablePath(P(kTIFF, "Orientation")));   // closed choice of integers
    EXPECT_TRUE(IsShowablePath(P(kCRS, "ToneCurveName")));  // open choice of text
    EXPECT_FALSE(IsShowablePath(P(kXMP, "Thumbnails")));    // alternative of structures
    EXPECT_TRUE(IsShowablePath(P(kXMP, "NoSuchProperty"))); // unknown kind: shown
}

TEST(PathFiltersTest, RawToneCurveOfTheDevelopSettingsIsNeverShown)
{
    EXPECT_FALSE(IsShowablePath(P(kCRS, "ToneCurve")));
    EXPECT_TRUE(IsShowablePath(P(kXMP, "ToneCurve")));
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

TEST(PathFiltersTest, FocusGoesToEditableTextLikeRowsAndStars)
{
    EXPECT_TRUE(IsFocusablePath(P(kXMP, "Label")));
    EXPECT_TRUE(IsFocusablePath(P(kXMP, "CreateDate")));
    EXPECT_TRUE(IsFocusablePath(P(kCRS, "HasCrop")));
    EXPECT_TRUE(IsFocusablePath(P(kTIFF, "Orientation")));
    EXPECT_TRUE(IsFocusablePath(P(kXMP, "Rating")));       // a real, but stars
    EXPECT_FALSE(IsFocusablePath(P(kCRS, "Temperature"))); // a plain number
    EXPECT_FALSE(IsFocusablePath(P(kEXIF, "FNumber")));    // rational
    EXPECT_FALSE(IsFocusablePath(P(kXMP, "Label", true))); // flagged read-only
    EXPECT_FALSE(IsFocusablePath(P(kXMP, "NoSuchProperty")));
}

// The display filter and the travel filter on the published schemas.

#include "BindingTestSupport.h"

#include "binding/PathFilters.h"
#include "zephmetadataui/ControlFactory.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace zephmetadataui;
using namespace bindingtest;

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

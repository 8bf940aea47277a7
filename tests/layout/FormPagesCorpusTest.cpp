// The ten standard pages on real files: every value column of a page starts
// at one x, no label is cut, and the values of the file are on the page.
#include "LayoutTestSupport.h"

#include <Corpus.h>

#include <zephmetadata/FileProvider.h>
#include <zephmetadata/ViewDefinitions.h>
#include <zephui/Drawbot.h>
#include <zephui/UI_StaticText.h>

#include <algorithm>
#include <cmath>
#include <map>

namespace layouttest
{
namespace
{

// Lays out every standard page on the file, checks its columns and labels, and
// gives the texts shown by page ("basic", ...), none for "No Data".
std::map<std::string, std::string> EveryPageOf(std::string const& file)
{
    auto const provider =
        boost::make_shared<zephmetadata::FileProvider>(treetest::U16(zephtest::CorpusFile(file)));
    EXPECT_TRUE(provider->HasMetadata()) << file;
    std::map<std::string, std::string> pages;
    zephmetadata::LoadAllViewDefinitions();
    for (auto const& definition : zephmetadata::CommonViewDefinitions())
    {
        std::string const name = zephcore::ToStdString(definition->name);
        std::string const page = name.substr(name.rfind('.') + 1);
        SCOPED_TRACE(page);
        Form form(definition, provider, 640, 1400);
        if (form.Table()->RowCount() == 0)
        {
            pages[page];
            continue;
        }
        std::vector<int> const lefts = ValueColumnLefts(*form.Table());
        EXPECT_FALSE(lefts.empty()) << "a page with rows shows no value";
        if (lefts.empty())
            continue;
        EXPECT_EQ(*std::min_element(lefts.begin(), lefts.end()),
                  *std::max_element(lefts.begin(), lefts.end()))
            << "value columns start at different x";
        // No label is cut: each is as wide as its text needs.
        ForEachRow(*form.Table(),
                   [](RowItem const& row)
                   {
                       auto const& label = row.items[0];
                       auto* text = label && label->kind == 1
                                        ? dynamic_cast<zephui::UI_StaticText*>(label->view.get())
                                        : nullptr;
                       if (!text || text->GetValue().empty())
                           return;
                       zephui::Drawbot measure(text->UI_GetDrawSupplier());
                       EXPECT_LE(std::floor(text->UI_GetRecommendedSize(&measure).x),
                                 text->UI_GetLocalRectF(false).width + 1.0f)
                           << zephcore::ToStdString(text->GetValue());
                   });
        pages[page] = ShownTexts(*form.Table());
    }
    return pages;
}

using FormPagesCorpusTest = LayoutTest;

TEST_F(FormPagesCorpusTest, EveryPageOfAnImageAndAVideoHasOneValueColumnAndItsValues)
{
    ZEPH_REQUIRE_CORPUS();
    auto pages = EveryPageOf("frameright-IPTC-PhotometadataRef-Std2021.1.jpg");
    ASSERT_EQ(pages.size(), 10u);
    EXPECT_NE(std::string::npos, pages["basic"].find("Creator1 (ref2021.1)"));
    EXPECT_NE(std::string::npos, pages["iptccore"].find("The Headline (ref2021.1)"));
    EXPECT_NE(std::string::npos, pages["iptcextension"].find("Person Shown 2 (ref2021.1)"));
    EXPECT_EQ("", pages["gps"]) << "a page of empty values that hides them says No Data";
    EXPECT_NE(std::string::npos, EveryPageOf("mei-xmp480qt.mov")["video"].find("29.970030 fps"));
}

} // namespace
} // namespace layouttest

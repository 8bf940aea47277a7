// The ten standard pages on real files: every value column of a page starts
// at one x, no label is cut, and the values of the file are on the page.
// Pictures of every page go into the build folder for people to look at.
#include "LayoutTestSupport.h"

#include <Corpus.h>

#include <zephmetadata/FileProvider.h>
#include <zephmetadata/ViewDefinitions.h>
#include <zephui/Drawbot.h>
#include <zephui/UI_ScrollView.h>
#include <zephui/UI_StaticText.h>

#include <QDir>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <map>

namespace layouttest
{
namespace
{

void ExpectNoLabelIsCut(TableLayout const& table)
{
    ForEachRow(table,
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
}

// Lays out every standard page on the file, checks the columns and labels of
// each, saves its picture, and gives the texts shown by page ("basic", ...);
// a page showing "No Data" has none.
std::map<std::string, std::vector<std::string>> EveryPageOf(std::string const& file)
{
    auto const provider =
        boost::make_shared<zephmetadata::FileProvider>(treetest::U16(zephtest::CorpusFile(file)));
    EXPECT_TRUE(provider->HasMetadata()) << file;
    QDir const shots(QString(ZEPH_BINARY_DIR) + "/screenshots/forms/" +
                     QString::fromStdString(file.substr(0, file.find('.'))));
    QDir().mkpath(shots.path());

    std::map<std::string, std::vector<std::string>> pages;
    zephmetadata::LoadAllViewDefinitions();
    for (auto const& definition : zephmetadata::CommonViewDefinitions())
    {
        std::string const name(definition->name.begin(), definition->name.end());
        std::string const page = name.substr(name.rfind('.') + 1);
        SCOPED_TRACE(page);
        Form form(definition, provider, 640, 1400);
        std::vector<std::string>& texts = pages[page];
        if (form.Table()->RowCount() == 0)
            continue;
        std::vector<int> const lefts = ValueColumnLefts(*form.Table());
        if (lefts.empty())
        {
            ADD_FAILURE() << "a page with rows shows no value";
            continue;
        }
        EXPECT_EQ(*std::min_element(lefts.begin(), lefts.end()),
                  *std::max_element(lefts.begin(), lefts.end()))
            << "value columns start at different x";
        ExpectNoLabelIsCut(*form.Table());
        texts = ShownTexts(*form.Table());
        // The picture ends where the form does.
        auto* scroll = dynamic_cast<zephui::UI_ScrollView*>(form.Table()->view.get());
        int const height = std::min(1400, int(scroll->GetContentRectF().height) + 4);
        EXPECT_TRUE(form.Window()
                        ->grab(QRect(0, 0, 640, height))
                        .save(shots.filePath(QString::fromStdString(page) + ".png")));
    }
    return pages;
}

bool Holds(std::vector<std::string> const& texts, std::string const& part)
{
    return std::any_of(texts.begin(), texts.end(),
                       [&part](std::string const& text)
                       { return text.find(part) != std::string::npos; });
}

class FormPagesCorpusTest : public LayoutTest
{
};

TEST_F(FormPagesCorpusTest, EveryPageOfTheReferenceImageHasOneValueColumnAndItsValues)
{
    ZEPH_REQUIRE_CORPUS();
    auto pages = EveryPageOf("frameright-IPTC-PhotometadataRef-Std2021.1.jpg");
    ASSERT_EQ(pages.size(), 10u);
    EXPECT_TRUE(Holds(pages["basic"], "Creator1 (ref2021.1)"));
    EXPECT_TRUE(Holds(pages["iptccore"], "The Headline (ref2021.1)"));
    EXPECT_TRUE(Holds(pages["iptcextension"], "Person Shown 2 (ref2021.1)"));
    EXPECT_TRUE(pages["gps"].empty()) << "a page of empty values that hides them says No Data";
}

TEST_F(FormPagesCorpusTest, EveryPageOfAVideoHasOneValueColumn)
{
    ZEPH_REQUIRE_CORPUS();
    auto pages = EveryPageOf("mei-xmp480qt.mov");
    EXPECT_TRUE(Holds(pages["video"], "29.970030 fps"));
}

} // namespace
} // namespace layouttest

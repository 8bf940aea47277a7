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
#include <QImage>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace layouttest
{
namespace
{

char const* const kReferenceImage = "frameright-IPTC-PhotometadataRef-Std2021.1.jpg";
char const* const kVideo = "mei-xmp480qt.mov";

struct PageRun
{
    std::string name;
    std::vector<int> valueLefts;
    std::vector<std::string> texts;
    bool noData = false;
};

class FormPagesCorpusTest : public LayoutTest
{
protected:
    // Lays out every standard page on the file, checks what every page must
    // hold, and saves a picture of each under the given folder name.
    std::vector<PageRun> LayOutEveryPage(std::string const& file, std::string const& folder)
    {
        auto provider = boost::make_shared<zephmetadata::FileProvider>(
            treetest::U16(zephtest::CorpusFile(file)));
        EXPECT_TRUE(provider->HasMetadata()) << file;
        QDir const shots(QString(ZEPH_BINARY_DIR) + "/screenshots/forms/" +
                         QString::fromStdString(folder));
        QDir().mkpath(shots.path());

        std::vector<PageRun> runs;
        zephmetadata::LoadAllViewDefinitions();
        for (auto const& definition : zephmetadata::CommonViewDefinitions())
        {
            PageRun run;
            run.name = std::string(definition->name.begin(), definition->name.end());
            SCOPED_TRACE(run.name);
            Form form(definition, provider, 640, 1400);
            if (form.Table()->RowCount() == 0)
            {
                run.noData = true;
                runs.push_back(run);
                continue;
            }
            run.valueLefts = ValueColumnLefts(*form.Table());
            run.texts = ShownTexts(*form.Table());
            ExpectNoLabelIsCut(*form.Table());
            QString const picture = shots.filePath(
                QString::fromStdString(run.name.substr(run.name.rfind('.') + 1)) + ".png");
            // The picture ends where the form does.
            auto* scroll = dynamic_cast<zephui::UI_ScrollView*>(form.Table()->view.get());
            int const height =
                scroll ? std::min(1400, int(scroll->GetContentRectF().height) + 4) : 1400;
            EXPECT_TRUE(form.Window()->grab(QRect(0, 0, 640, height)).save(picture))
                << picture.toStdString();
            runs.push_back(run);
        }
        return runs;
    }

    static void ExpectNoLabelIsCut(TableLayout const& table)
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
                           << treetest::ToStd(text->GetValue());
                   });
    }
};

bool Holds(std::vector<std::string> const& texts, std::string const& part)
{
    return std::any_of(texts.begin(), texts.end(),
                       [&part](std::string const& text)
                       { return text.find(part) != std::string::npos; });
}

TEST_F(FormPagesCorpusTest, EveryPageOfTheReferenceImageHasOneValueColumn)
{
    ZEPH_REQUIRE_CORPUS();
    std::vector<PageRun> const runs = LayOutEveryPage(kReferenceImage, "reference-image");
    ASSERT_EQ(runs.size(), 10u);
    for (PageRun const& run : runs)
    {
        SCOPED_TRACE(run.name);
        if (run.noData)
            continue;
        ASSERT_FALSE(run.valueLefts.empty());
        EXPECT_EQ(*std::min_element(run.valueLefts.begin(), run.valueLefts.end()),
                  *std::max_element(run.valueLefts.begin(), run.valueLefts.end()))
            << "value columns start at different x";
    }
    auto page = [&runs](char const* suffix) -> PageRun const&
    {
        return *std::find_if(runs.begin(), runs.end(),
                             [suffix](PageRun const& run) {
                                 return run.name.size() > 5 &&
                                        run.name.substr(run.name.rfind('.') + 1) == suffix;
                             });
    };
    // Values that the reference image carries, on the pages that show them.
    EXPECT_TRUE(Holds(page("basic").texts, "Creator1 (ref2021.1)"));
    EXPECT_TRUE(Holds(page("iptccore").texts, "Description"));
    EXPECT_FALSE(page("iptcextension").noData);
}

TEST_F(FormPagesCorpusTest, EveryPageOfAVideoIsAlignedToo)
{
    ZEPH_REQUIRE_CORPUS();
    for (PageRun const& run : LayOutEveryPage(kVideo, "video"))
    {
        SCOPED_TRACE(run.name);
        if (run.noData || run.valueLefts.empty())
            continue;
        EXPECT_EQ(*std::min_element(run.valueLefts.begin(), run.valueLefts.end()),
                  *std::max_element(run.valueLefts.begin(), run.valueLefts.end()));
    }
}

} // namespace
} // namespace layouttest

// A picture of the tree on a rich sample photo, for people to look at: the
// values with structures and array items open, a find in progress, and the
// tree as a chooser of properties. Saved beside the test binary.

#include "TreeTestSupport.h"

#include <zephmetadata/FileProvider.h>
#include <zephmetadata/PathDefinitions.h>

#include <zephui/NodeHostWidget.h>

#include <boost/make_shared.hpp>

#include <QApplication>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QTest>
#include <QVBoxLayout>

using namespace treetest;

namespace
{

class MetadataViewScreenshotTest : public TreeTest
{
};

// A panel: a caption, an optional search box, and the hosted view.
QWidget* Panel(QWidget* parent, QString const& caption, ViewPtr const& view,
               QString const& search = QString())
{
    auto* panel = new QWidget(parent);
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->setSpacing(4);
    auto* title = new QLabel(caption, panel);
    QFont font = title->font();
    font.setBold(true);
    title->setFont(font);
    layout->addWidget(title);
    if (!search.isNull())
    {
        auto* box = new QLineEdit(panel);
        box->setPlaceholderText("Find");
        box->setClearButtonEnabled(true);
        box->setText(search);
        QObject::connect(box, &QLineEdit::textChanged,
                         [view](QString const& text)
                         { view->SetRapidFindString(U16(text.toStdString())); });
        view->SetRapidFindString(U16(search.toStdString()));
        layout->addWidget(box);
    }
    layout->addWidget(new zephui::NodeHostWidget(view, panel), 1);
    return panel;
}

void OpenRowsLabelled(MetadataView* view, std::vector<std::string> const& labels)
{
    auto* tree = TreeOf(view);
    for (std::string const& label : labels)
        if (RowPtr const row = RowWithLabel(view, label))
            if (!tree->IsRowOpen(row))
                tree->ToggleRowByUser(row.get());
    tree->ScrollRowIntoView(tree->GetOpenedRows().front(), true, 0);
}

} // namespace

TEST_F(MetadataViewScreenshotTest, RichSamplePhoto)
{
    std::string const photo = SourcePath("samples/harbour-first-light.jpg");
    if (!QFileInfo::exists(QString::fromStdString(photo)))
        GTEST_SKIP() << "sample photo missing";
    auto const provider = boost::make_shared<zephmetadata::FileProvider>(U16(photo));
    ASSERT_TRUE(provider->HasMetadata());

    MetadataView::SetSharedLabelWidth(150.0f);
    ViewPtr const values =
        MakeView(std::vector<SchemaPtr>(zephmetadata::CommonSchemaDefinitions().begin(),
                                        zephmetadata::CommonSchemaDefinitions().end()),
                 provider, 430.0f, 760.0f);
    ViewPtr const found =
        MakeView(std::vector<SchemaPtr>(zephmetadata::CommonSchemaDefinitions().begin(),
                                        zephmetadata::CommonSchemaDefinitions().end()),
                 provider, 400.0f, 730.0f);
    ViewPtr const chooser =
        MakeView(std::vector<SchemaPtr>(zephmetadata::CommonSchemaDefinitions().begin(),
                                        zephmetadata::CommonSchemaDefinitions().end()),
                 provider, 300.0f, 760.0f);
    chooser->SetDisplayPropertyValue(false);
    std::set<Path> chosen;
    for (Path const& path :
         zephmetadata::DescendantLeafPaths(zephmetadata::CommonSchemaDefinitions().front()))
        chosen.insert(path);
    chosen.erase(chosen.begin());
    chooser->SetSelectedPaths(chosen);
    chooser->SetAllowPropertySelection(true);

    QWidget window;
    window.setWindowTitle("Metadata");
    auto* row = new QHBoxLayout(&window);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(Panel(&window, "Properties", values), 43);
    row->addWidget(Panel(&window, "Find in progress", found, "light"), 40);
    row->addWidget(Panel(&window, "Choose properties", chooser), 30);
    window.resize(1180, 800);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));

    OpenRowsLabelled(values.get(), {"Dublin Core", "IPTC Core", "Contact Info",
                                    "XMP Media Management", "History", "History [1]"});
    OpenRowsLabelled(chooser.get(), {"Dublin Core", "IPTC Core"});
    QApplication::processEvents();

    QPixmap const picture = window.grab();
    std::string const file = std::string(ZEPH_BINARY_DIR) + "/tree-screenshot.png";
    ASSERT_TRUE(picture.save(QString::fromStdString(file)));
    EXPECT_GT(picture.width(), 1000);
    // The find narrowed the tree: every row it shows holds "light".
    EXPECT_NE(std::string::npos, DumpTree(found.get()).find("ight"));
    window.close();
}

TEST_F(MetadataViewScreenshotTest, SpeechTrackOfTheSampleInterview)
{
    std::string const interview = SourcePath("samples/keeper-interview.wav");
    if (!QFileInfo::exists(QString::fromStdString(interview)))
        GTEST_SKIP() << "sample interview missing";
    auto const provider = boost::make_shared<zephmetadata::FileProvider>(U16(interview));
    ASSERT_TRUE(provider->HasMetadata());

    MetadataView::SetSharedLabelWidth(150.0f);
    ViewPtr const view = MakeView({SchemaFor("http://ns.adobe.com/xmp/1.0/DynamicMedia/")},
                                  provider, 560.0f, 640.0f);
    QWidget window;
    auto* row = new QHBoxLayout(&window);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(Panel(&window, "Speech track", view));
    window.resize(580, 700);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));

    OpenRowsLabelled(view.get(), {"Tracks", "Tracks [1]", "Markers", "Markers [1]", "Markers [2]"});
    // Words far down the track get their fields when they are looked at.
    RowPtr const markers = RowWithLabel(view.get(), "Markers");
    ASSERT_TRUE(markers);
    ASSERT_GT(markers->CountChildRows(), 1900u);
    RowPtr const late = markers->GetChildRow(1800);
    EXPECT_TRUE(late->HasDeferredChildRows());
    EXPECT_EQ(12u, late->CountChildRows()) << "every field of a marker has a row";
    TreeOf(view.get())->ScrollRowIntoView(RowWithLabel(view.get(), "Tracks"), true, 0);
    QApplication::processEvents();
    QPixmap const picture = window.grab();
    ASSERT_TRUE(picture.save(
        QString::fromStdString(std::string(ZEPH_BINARY_DIR) + "/speech-track-screenshot.png")));

    std::string const shown = DumpTree(view.get());
    EXPECT_NE(std::string::npos, shown.find("    v Markers (2000 entries)\n"
                                            "      v Markers [1]\n"
                                            "          Name = Thank\n"
                                            "          Start Time = 533433600000\n"
                                            "          Duration = 97796160000\n"
                                            "          Type = Speech\n"))
        << shown;
    EXPECT_NE(std::string::npos, shown.find("          Speaker = Interviewer\n"
                                            "          Probability = 60.00\n"
                                            "          Cue Point Type = \n"
                                            "        > Cue Point Parameters\n"
                                            "          GUID = \n"
                                            "      > Markers [3]\n"))
        << shown;
    window.close();
}

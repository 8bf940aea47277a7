// The metadata browser on real files in temporary folders: edits reach the
// files and nothing else in them changes; files that cannot be read or
// written give a clear message and lose nothing.

#include "BrowserWindow.h"

#include <zephmetadata/Access.h>
#include <zephmetadata/PathDefinitions.h>
#include <zephmetadata/Values.h>
#include <zephmetadataui/MetadataView.h>
#include <zephmetadataui/Module.h>

#include <exempi/xmp.h>

#include <QFile>
#include <QImage>
#include <QLineEdit>
#include <QListWidget>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace
{

constexpr char kPhotoshop[] = "http://ns.adobe.com/photoshop/1.0/";
QString const kHeadline = QStringLiteral("Boats head out as the season opens");

// Every leaf of a file's XMP as exempi alone reads it: path -> value.
std::map<std::string, std::string> RawLeaves(QString const& path)
{
    std::map<std::string, std::string> leaves;
    XmpFilePtr file = xmp_files_open_new(QFile::encodeName(path).constData(),
                                         XmpOpenFileOptions(XMP_OPEN_READ | XMP_OPEN_ONLYXMP));
    if (!file)
        return leaves;
    XmpPtr xmp = xmp_files_get_new_xmp(file);
    xmp_files_close(file, XMP_CLOSE_NOOPTION);
    xmp_files_free(file);
    if (!xmp)
        return leaves;
    XmpIteratorPtr it = xmp_iterator_new(xmp, nullptr, nullptr, XMP_ITER_JUSTLEAFNODES);
    XmpStringPtr schema = xmp_string_new(), name = xmp_string_new(), value = xmp_string_new();
    uint32_t options = 0;
    while (xmp_iterator_next(it, schema, name, value, &options))
        leaves[std::string(xmp_string_cstr(schema)) + " " + xmp_string_cstr(name)] =
            xmp_string_cstr(value);
    xmp_string_free(schema), xmp_string_free(name), xmp_string_free(value);
    xmp_iterator_free(it);
    xmp_free(xmp);
    return leaves;
}

std::string HeadlineKey()
{
    return std::string(kPhotoshop) + " photoshop:Headline";
}

class BrowserTest : public testing::Test
{
protected:
    void SetUp() override
    {
        zephmetadataui::Initialize();
        ASSERT_TRUE(folder.isValid());
        window = std::make_unique<browser::BrowserWindow>();
        window->SetWarningSink([this](QString const& text) { warnings << text; });
        window->SetCloseQuestion([] { return QMessageBox::Discard; });
    }
    void TearDown() override
    {
        window.reset();
        zephmetadataui::Terminate();
    }

    QString CopySample(QString const& name, QString const& as = QString())
    {
        QString const target = folder.filePath(as.isEmpty() ? name : as);
        QFile::copy(QStringLiteral(ZEPH_SOURCE_DIR "/samples/") + name, target);
        QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
        return target;
    }

    void OpenAndWait(QStringList const& paths)
    {
        window->Open(paths);
        window->Loader().WaitForAll();
        ASSERT_EQ(window->DocumentCount(), paths.size());
        for (int row = 0; row < paths.size(); ++row)
            ASSERT_EQ(window->DocumentAt(row)->Path(), paths[row])
                << "files are listed in the order asked for";
    }

    // Shows the window with every schema open and the tree narrowed by the
    // find text, so the rows the test wants are on screen.
    void ShowRowsMatching(QString const& find)
    {
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        auto const schemas = zephmetadata::CommonSchemaDefinitions();
        window->MetadataPanel()->SetOpenedSchemaRows({schemas.begin(), schemas.end()});
        QTest::keyClicks(window->FindBox(), find);
        QCoreApplication::processEvents();
    }

    QLineEdit* EditShowing(QString const& text)
    {
        for (QLineEdit* edit : window->findChildren<QLineEdit*>())
        {
            if (edit != window->FindBox() && edit->text() == text && edit->isVisible())
                return edit;
        }
        return nullptr;
    }

    QTemporaryDir folder;
    std::unique_ptr<browser::BrowserWindow> window;
    QStringList warnings;
};

} // namespace

TEST_F(BrowserTest, ValueTypedIntoTheTreeIsSavedAndNothingElseChanges)
{
    QString const photo = CopySample("harbour-first-light.jpg");
    auto const before = RawLeaves(photo);
    QImage const pixelsBefore(photo);
    ASSERT_EQ(before.at(HeadlineKey()), kHeadline.toStdString());

    OpenAndWait({photo});
    ShowRowsMatching("headline");
    QLineEdit* edit = EditShowing(kHeadline);
    ASSERT_NE(edit, nullptr) << "the headline row shows its value in a text field";
    edit->selectAll();
    QTest::keyClicks(edit, "Harbour reopens after the storms");
    QTest::keyClick(edit, Qt::Key_Return);

    EXPECT_TRUE(window->HasUnsavedChanges());
    EXPECT_TRUE(window->windowTitle().endsWith('*'));
    ASSERT_TRUE(window->SaveAll()) << window->LastWarning().toStdString();
    EXPECT_FALSE(window->HasUnsavedChanges());

    auto after = RawLeaves(photo);
    EXPECT_EQ(after.at(HeadlineKey()), "Harbour reopens after the storms");
    after[HeadlineKey()] = before.at(HeadlineKey());
    // The save records when the metadata changed, as other tools do.
    std::string const metadataDate = "http://ns.adobe.com/xap/1.0/ xmp:MetadataDate";
    ASSERT_EQ(after.count(metadataDate), 1u);
    EXPECT_NE(after.at(metadataDate), before.count(metadataDate) ? before.at(metadataDate) : "");
    after.erase(metadataDate);
    auto beforeUndated = before;
    beforeUndated.erase(metadataDate);
    EXPECT_EQ(after, beforeUndated) << "every other property reads back as it was";
    EXPECT_EQ(QImage(photo), pixelsBefore) << "the picture itself is untouched";
    EXPECT_TRUE(warnings.isEmpty());
}

TEST_F(BrowserTest, ReadOnlyFileShowsAClearMessageOnSaveAndLosesNothing)
{
    QString const photo = CopySample("harbour-first-light.jpg");
    QFile::setPermissions(photo, QFile::ReadOwner | QFile::ReadGroup);
    QByteArray const bytes = [&]
    {
        QFile file(photo);
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    }();

    OpenAndWait({photo});
    auto provider = window->DocumentAt(0)->Provider();
    ASSERT_TRUE(provider);
    zephmetadata::Path const headline(zephcore::ToUTF8(kPhotoshop), zephcore::ToUTF8("Headline"));
    EXPECT_FALSE(provider->QueryPathStatus(headline, zephmetadata::kPathStatusWritable))
        << "a read-only file offers its values read-only";
    {
        // A host could still change the metadata behind the views' back.
        zephmetadata::MetaDataUpdateAccess access(provider);
        ASSERT_TRUE(zephmetadata::SetValue(*access, headline, zephcore::ToUTF8("changed")));
        access.AddChange(headline);
    }
    EXPECT_TRUE(window->HasUnsavedChanges());
    EXPECT_FALSE(window->SaveAll());
    ASSERT_EQ(warnings.size(), 1);
    EXPECT_TRUE(warnings.front().contains("harbour-first-light.jpg"))
        << warnings.front().toStdString();
    EXPECT_TRUE(warnings.front().contains("read-only")) << warnings.front().toStdString();
    QFile file(photo);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), bytes) << "the file is exactly as it was";
    EXPECT_TRUE(window->HasUnsavedChanges()) << "the edit is kept for another try";
}

TEST_F(BrowserTest, MalformedFileOpensWithItsErrorShown)
{
    QString const broken = folder.filePath("broken.xmp");
    {
        QFile file(broken);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF><unclosed");
    }
    QString const photo = CopySample("harbour-first-light.jpg");
    OpenAndWait({broken, photo});

    int const brokenRow = 0;
    EXPECT_FALSE(window->DocumentAt(brokenRow)->Provider());
    EXPECT_FALSE(window->DocumentAt(brokenRow)->Error().isEmpty());
    window->SelectFiles({brokenRow});
    EXPECT_TRUE(window->PanelMessage().contains("broken.xmp"))
        << window->PanelMessage().toStdString();
    EXPECT_TRUE(window->PanelMessage().contains("no valid XMP"))
        << window->PanelMessage().toStdString();

    // The other file still works beside it.
    window->SelectFiles({1 - brokenRow});
    EXPECT_TRUE(window->PanelMessage().isEmpty());
    EXPECT_TRUE(window->SaveAll()) << "nothing to save is no failure";
    EXPECT_TRUE(warnings.isEmpty());
}

TEST_F(BrowserTest, EditOfSeveralSelectedFilesReachesEachOfThem)
{
    QString const first = CopySample("harbour-first-light.jpg", "first.jpg");
    QString const second = CopySample("harbour-first-light.jpg", "second.jpg");
    QString const sidecar = CopySample("breakwater-long-exposure.xmp");
    OpenAndWait({first, second, sidecar});
    window->SelectFiles({0, 1});
    EXPECT_TRUE(window->PanelMessage().contains("2 files selected"));

    ShowRowsMatching("headline");
    QLineEdit* edit = EditShowing(kHeadline);
    ASSERT_NE(edit, nullptr) << "equal values show as they are";
    edit->selectAll();
    QTest::keyClicks(edit, "Both files get this");
    QTest::keyClick(edit, Qt::Key_Return);
    ASSERT_TRUE(window->SaveAll()) << window->LastWarning().toStdString();

    EXPECT_EQ(RawLeaves(first).at(HeadlineKey()), "Both files get this");
    EXPECT_EQ(RawLeaves(second).at(HeadlineKey()), "Both files get this");
    EXPECT_EQ(RawLeaves(first), RawLeaves(second));
    EXPECT_FALSE(window->DocumentAt(2)->IsModified()) << "the unselected file is not touched";
}

TEST_F(BrowserTest, FolderOpensItsMediaFilesAndScreenshotsAreWritten)
{
    CopySample("harbour-first-light.jpg");
    CopySample("storm-night-scene12.png");
    CopySample("breakwater-long-exposure.xmp");
    window->Open({folder.path()});
    window->Loader().WaitForAll();
    EXPECT_EQ(window->DocumentCount(), 3);
    window->SelectFiles({0});
    QString const shots = QStringLiteral(ZEPH_BINARY_DIR "/screenshots/browser-test");
    ASSERT_TRUE(window->SaveScreenshots(shots));
    QImage const picture(shots + "/browser.png");
    EXPECT_GT(picture.width(), 600);
    EXPECT_GT(picture.height(), 400);
}

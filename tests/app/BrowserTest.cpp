// The metadata browser on real files in temporary folders: edits reach the
// files and nothing else in them changes; files that cannot be read or
// written give a clear message and lose nothing.

#include "BrowserFixture.h"
#include "BrowserWindow.h"
#include "FormPanel.h"
#include "PlaybackBar.h"

#include <zephmetadata/Access.h>
#include <zephmetadata/FileProvider.h>
#include <zephmetadata/PathDefinitions.h>
#include <zephmetadata/Values.h>
#include <zephmetadataui/MetadataSectionView.h>
#include <zephmetadataui/MetadataView.h>
#include <zephmetadataui/Module.h>
#include <zephmetadataui/StoryScriptView.h>
#include <zephmetadataui/TextTranscriptEditorView.h>
#include <zephmetadataui/TriSectionSplitterView.h>
#include <zephmetadataui/WordInfo.h>

#include <exempi/xmp.h>

#include <boost/make_shared.hpp>

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QStatusBar>
#include <QTableView>
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

zephcore::UTF16String ToUTF16Path(QString const& path)
{
    return zephcore::UTF16String(reinterpret_cast<unsigned short const*>(path.utf16()),
                                 std::size_t(path.size()));
}

zephmetadata::Path const kHeadlinePath(zephcore::ToUTF8(kPhotoshop), zephcore::ToUTF8("Headline"));
zephmetadata::Path const kLabelPath(zephcore::ToUTF8("http://ns.adobe.com/xap/1.0/"),
                                    zephcore::ToUTF8("Label"));

// Sets a value as an edit does, through the provider the views use.
void Edit(boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider,
          zephmetadata::Path const& path, char const* value)
{
    zephmetadata::MetaDataUpdateAccess access(provider);
    if (zephmetadata::SetValue(*access, path, zephcore::ToUTF8(value)))
        access.AddChange(path);
}

// A value as another reader of the file sees it now.
std::string ValueInFile(QString const& file, zephmetadata::Path const& path)
{
    auto provider = boost::make_shared<zephmetadata::FileProvider>(ToUTF16Path(file));
    zephmetadata::MetaDataReadAccess access(provider);
    zephmetadata::UTF8String value;
    zephmetadata::GetValue(*access, path, value, nullptr);
    return zephcore::ToStdString(value);
}

std::string HeadlineKey()
{
    return std::string(kPhotoshop) + " photoshop:Headline";
}

class BrowserTest : public browsertest::BrowserFixture
{
protected:
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

    // The text field of the form panel that shows this text, or this grey
    // placeholder when it has none of its own.
    QWidget* FormFieldShowing(QString const& text)
    {
        for (QWidget* field : window->Forms()->findChildren<QWidget*>())
        {
            auto* line = qobject_cast<QLineEdit*>(field);
            auto* plain = qobject_cast<QPlainTextEdit*>(field);
            QString const shown =
                line    ? (line->text().isEmpty() ? line->placeholderText() : line->text())
                : plain ? (plain->toPlainText().isEmpty() ? plain->placeholderText()
                                                          : plain->toPlainText())
                        : QString();
            if ((line || plain) && shown == text && field->isVisible())
                return field;
        }
        return nullptr;
    }
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
    EXPECT_TRUE(window->isWindowModified());
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

TEST_F(BrowserTest, DamagedPacketIsShownReadOnlyAndReplacedOnlyWhenTheUserAgrees)
{
    QString const broken = folder.filePath("broken.xmp");
    QByteArray const bytes = "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF><unclosed";
    {
        QFile file(broken);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QString const photo = CopySample("harbour-first-light.jpg");
    OpenAndWait({broken, photo});
    QStringList asked;
    bool agree = false;
    window->SetReplaceQuestion(
        [&](QString const& name, QString const& reason)
        {
            asked << name + ": " + reason;
            return agree;
        });

    // GIVEN the damaged file selected
    window->SelectFiles({0});
    auto provider = window->DocumentAt(0)->Provider();
    ASSERT_TRUE(provider);
    EXPECT_TRUE(window->PanelMessage().contains("broken.xmp"))
        << window->PanelMessage().toStdString();
    EXPECT_TRUE(window->PanelMessage().contains("not well-formed XML"))
        << window->PanelMessage().toStdString();
    EXPECT_TRUE(window->PanelMessage().contains("read-only"));
    EXPECT_FALSE(provider->QueryPathStatus(
        zephmetadata::Path(zephcore::ToUTF8(kPhotoshop), zephcore::ToUTF8("Headline")),
        zephmetadata::kPathStatusWritable));
    ASSERT_FALSE(window->ReplaceDamagedButton()->isHidden());
    // WHEN the user declines, nothing changes
    window->ReplaceDamagedButton()->click();
    ASSERT_EQ(asked.size(), 1);
    EXPECT_TRUE(asked.front().startsWith("broken.xmp: it is not well-formed XML"))
        << asked.front().toStdString();
    EXPECT_TRUE(provider->IsReadOnly());
    EXPECT_FALSE(window->HasUnsavedChanges());
    EXPECT_TRUE(window->SaveAll());
    QFile file(broken);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), bytes);
    file.close();

    // WHEN the user agrees, the file becomes editable and the save replaces it
    agree = true;
    window->ReplaceDamagedButton()->click();
    EXPECT_FALSE(provider->IsReadOnly());
    EXPECT_TRUE(window->ReplaceDamagedButton()->isHidden());
    EXPECT_FALSE(window->PanelMessage().contains("damaged"));
    EXPECT_TRUE(window->HasUnsavedChanges());
    ASSERT_TRUE(window->SaveAll()) << window->LastWarning().toStdString();
    EXPECT_FALSE(zephmetadata::FileProvider(ToUTF16Path(broken)).IsReadOnly());
    EXPECT_TRUE(zephmetadata::FileProvider(ToUTF16Path(broken)).DamagedPacketReason().empty());
    EXPECT_TRUE(warnings.isEmpty());

    // The other file still works beside it.
    window->SelectFiles({1});
    EXPECT_TRUE(window->PanelMessage().isEmpty());
    EXPECT_TRUE(window->ReplaceDamagedButton()->isHidden());
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

TEST_F(BrowserTest, FormPanelShowsTheSelectionAndItsEditsReachEveryFileOnSave)
{
    QString const first = CopySample("harbour-first-light.jpg", "first.jpg");
    QString const second = CopySample("harbour-first-light.jpg", "second.jpg");
    OpenAndWait({first, second});
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    EXPECT_GE(window->Forms()->PageChooser()->count(), 10);
    EXPECT_FALSE(window->Forms()->ChoosePage("no.such.page"));
    ASSERT_TRUE(window->Forms()->ChoosePage("com.velmora.xmp.view.iptccore"));

    window->SelectFiles({0});
    EXPECT_TRUE(FormFieldShowing(kHeadline)) << "the page shows the file's headline";
    Edit(window->DocumentAt(1)->Provider(), kHeadlinePath, "Another headline");
    window->SelectFiles({0, 1});
    QWidget* field = FormFieldShowing("<Multiple Values>");
    ASSERT_TRUE(field) << "values that differ say so";

    field->setFocus();
    QTest::keyClicks(field, "One headline for both");
    EXPECT_TRUE(window->HasUnsavedChanges());
    ASSERT_TRUE(window->SaveAll()) << window->LastWarning().toStdString();
    EXPECT_EQ(ValueInFile(first, kHeadlinePath), "One headline for both");
    EXPECT_EQ(ValueInFile(second, kHeadlinePath), "One headline for both");
}

TEST_F(BrowserTest, AFileWithAScriptShowsItInTheThirdPanelAndFindSearchesIt)
{
    QString const script = CopySample("storm-night-script.xmp");
    QString const photo = CopySample("harbour-first-light.jpg");
    OpenAndWait({photo, script});
    window->SelectFiles({0});
    EXPECT_FALSE(window->ScriptPanel()->HasStoryData());
    EXPECT_FALSE(window->Panels()->GetSectionView(2)->GetOpened());

    window->SelectFiles({1});
    EXPECT_TRUE(window->ScriptPanel()->HasStoryData());
    EXPECT_TRUE(window->Panels()->GetSectionView(2)->GetOpened()) << "the script panel opens";
    QTest::keyClicks(window->FindBox(), "LAMP");
    EXPECT_EQ(window->ScriptPanel()->CurrentSearchTerm(), zephcore::AsciiToUTF16("lamp"))
        << "the find box searches the script too, folded";
    QString const shots = QStringLiteral(ZEPH_BINARY_DIR "/screenshots/browser-script");
    window->resize(1280, 1000);
    ASSERT_TRUE(window->SaveScreenshots(shots));
    EXPECT_FALSE(QImage(shots + "/browser.png").isNull());
}

TEST_F(BrowserTest, TheTranscriptFollowsThePlayheadAndAClickedWordMovesIt)
{
    OpenAndWait({CopySample("keeper-interview.wav")});
    window->resize(1280, 1000);
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    window->SelectFiles({0});
    ASSERT_TRUE(window->Panels()->GetSectionView(2)->GetOpened()) << "the transcript panel opens";
    browser::PlaybackBar* bar = window->Playback();
    EXPECT_GT(bar->Duration().ToSeconds(), 300.0) << "the interview runs for minutes";

    bar->SetPlayhead(zephmediatypes::TickTime::FromSeconds(60.0));
    zephmetadataui::WordInfo const* word = window->TranscriptPanel()->SelectedWord();
    ASSERT_TRUE(word) << "the word under the playhead is selected";
    EXPECT_LE(word->startTime.ToSeconds(), 60.0);
    zephmediatypes::TickTime const wordStart = word->startTime;
    EXPECT_EQ(bar->Playhead(), zephmediatypes::TickTime::FromSeconds(60.0))
        << "following the playhead does not move it";
    QTest::mouseClick(bar->PlayButton(), Qt::LeftButton);
    for (int i = 0; i < 50; ++i)
        bar->Step();
    EXPECT_GT(window->TranscriptPanel()->SelectedWord()->startTime, wordStart)
        << "playing moves the selection along";
    QTest::mouseClick(bar->PlayButton(), Qt::LeftButton);

    // A click on the first word of the transcript brings the playhead to it.
    QWidget* transcript = window->TranscriptPanel()->UI_GetWidget();
    transcript->grab(); // lays the words out where a click can find them
    QTest::mouseClick(transcript, Qt::LeftButton, Qt::NoModifier, QPoint(90, 10));
    ASSERT_TRUE(window->TranscriptPanel()->SelectedWord());
    EXPECT_EQ(bar->Playhead(), window->TranscriptPanel()->SelectedWord()->startTime);
    EXPECT_LT(bar->Playhead().ToSeconds(), 10.0);

    // A second click edits the word in place; the edit saves with the file.
    QTest::mouseClick(transcript, Qt::LeftButton, Qt::NoModifier, QPoint(90, 10));
    QLineEdit* edit = nullptr;
    for (QLineEdit* shown : transcript->findChildren<QLineEdit*>())
        edit = shown->isVisible() ? shown : edit;
    ASSERT_TRUE(edit) << "the word opens in an edit field";
    edit->selectAll();
    QTest::keyClicks(edit, "Thanks");
    QTest::keyClick(edit, Qt::Key_Return);
    EXPECT_TRUE(window->HasUnsavedChanges());
    ASSERT_TRUE(window->SaveAll()) << window->LastWarning().toStdString();
    zephmetadata::Path const firstWord(
        zephcore::ToUTF8("http://ns.adobe.com/xmp/1.0/DynamicMedia/"),
        zephcore::ToUTF8("Tracks[1]/xmpDM:markers[1]/xmpDM:name"));
    EXPECT_EQ(ValueInFile(window->DocumentAt(0)->Path(), firstWord), "Thanks");
    ASSERT_TRUE(
        window->SaveScreenshots(QStringLiteral(ZEPH_BINARY_DIR "/screenshots/browser-transcript")));
}

TEST_F(BrowserTest, PanelSharesAndOpenPanelsAreKeptAcrossRuns)
{
    QString const file = folder.filePath("browser.ini");
    {
        QSettings settings(file, QSettings::IniFormat);
        window->Panels()->SetSplitterPercentage(true, 0.6f);
        window->Panels()->SetSplitterPercentage(false, 0.15f);
        window->Panels()->GetSectionView(1)->SetOpened(false);
        window->Panels()->GetSectionView(2)->SetOpened(true);
        window->SaveLayoutSettings(settings);
    }
    auto again = std::make_unique<browser::BrowserWindow>();
    {
        QSettings settings(file, QSettings::IniFormat);
        again->RestoreLayoutSettings(settings);
    }
    EXPECT_FLOAT_EQ(again->Panels()->GetSplitterPercentage(true), 0.6f);
    EXPECT_FLOAT_EQ(again->Panels()->GetSplitterPercentage(false), 0.15f);
    EXPECT_TRUE(again->Panels()->GetSectionView(0)->GetOpened());
    EXPECT_FALSE(again->Panels()->GetSectionView(1)->GetOpened());
    EXPECT_TRUE(again->Panels()->GetSectionView(2)->GetOpened());

    // Shares that cannot be (a damaged file) leave the defaults.
    {
        QSettings settings(file, QSettings::IniFormat);
        settings.setValue("panels/firstShare", "lots");
        settings.setValue("panels/secondShare", 0.9);
    }
    auto fresh = std::make_unique<browser::BrowserWindow>();
    float const share = fresh->Panels()->GetSplitterPercentage(true);
    QSettings settings(file, QSettings::IniFormat);
    fresh->RestoreLayoutSettings(settings);
    EXPECT_FLOAT_EQ(fresh->Panels()->GetSplitterPercentage(true), share);
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
    EXPECT_FALSE(QImage(shots + "/form-panel.png").isNull());
}

TEST_F(BrowserTest, FailedSaveOfReadOnlyFileLosesNothingBlocksNoOtherAndCanBeReverted)
{
    QString const locked = CopySample("harbour-first-light.jpg", "locked.jpg");
    QString const open = CopySample("harbour-first-light.jpg", "open.jpg");
    QFile::setPermissions(locked, QFile::ReadOwner | QFile::ReadGroup);
    QByteArray const lockedBytes = [&]
    {
        QFile file(locked);
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    }();
    OpenAndWait({locked, open});
    EXPECT_FALSE(window->DocumentAt(0)->Provider()->QueryPathStatus(
        kHeadlinePath, zephmetadata::kPathStatusWritable))
        << "a read-only file offers its values read-only";
    // A host could still change the metadata behind the views' back.
    for (int row : {0, 1})
        Edit(window->DocumentAt(row)->Provider(), kHeadlinePath, "Edited");

    EXPECT_FALSE(window->SaveAll());
    EXPECT_TRUE(window->HasUnsavedChanges()) << "the edit is kept for another try";
    QFile file(locked);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), lockedBytes) << "the file is exactly as it was";
    ASSERT_EQ(warnings.size(), 1);
    EXPECT_TRUE(warnings.front().contains(locked)) << "names the file";
    EXPECT_TRUE(warnings.front().contains("read-only")) << "and why";
    EXPECT_FALSE(warnings.front().contains("open.jpg"));
    EXPECT_EQ(ValueInFile(open, kHeadlinePath), "Edited") << "the other file is saved";
    EXPECT_TRUE(window->statusBar()->currentMessage().startsWith("Saved open.jpg."))
        << window->statusBar()->currentMessage().toStdString();
    EXPECT_TRUE(window->statusBar()->currentMessage().contains("1 file not saved"));

    // Saving again does not ask again about the file that failed.
    EXPECT_FALSE(window->SaveAll());
    EXPECT_EQ(warnings.size(), 1);
    window->SelectFiles({0});
    EXPECT_TRUE(window->PanelMessage().contains("was not saved"))
        << window->PanelMessage().toStdString();

    window->RevertFiles({0});
    EXPECT_FALSE(window->HasUnsavedChanges());
    zephmetadata::UTF8String headline;
    zephmetadata::GetValue(*zephmetadata::MetaDataReadAccess(window->DocumentAt(0)->Provider()),
                           kHeadlinePath, headline, nullptr);
    EXPECT_EQ(zephcore::ToStdString(headline), kHeadline.toStdString());
    EXPECT_TRUE(window->PanelMessage().isEmpty());
    EXPECT_TRUE(window->SaveAll());
}

// Rows: the user's answer when another program changed the file, and what
// the file, its copy and the browser then hold.
struct ConflictCase
{
    browser::ConflictAnswer answer;
    char const* headlineInFile;
    char const* labelInFile;
    bool copyMade;
    bool stillModified;
};

class BrowserConflictTest : public BrowserTest, public testing::WithParamInterface<ConflictCase>
{
};

TEST_P(BrowserConflictTest, ChangeByAnotherProgramIsAskedAboutAndTheAnswerIsDone)
{
    QString const photo = CopySample("harbour-first-light.jpg", "shared.jpg");
    OpenAndWait({photo});
    QStringList asked;
    window->SetConflictQuestion(
        [&](QString const& name)
        {
            asked << name;
            return GetParam().answer;
        });
    Edit(window->DocumentAt(0)->Provider(), kHeadlinePath, "Ours");
    {
        // GIVEN another program's edit after our read
        auto theirs = boost::make_shared<zephmetadata::FileProvider>(ToUTF16Path(photo));
        Edit(theirs, kLabelPath, "Theirs");
        ASSERT_EQ(theirs->Save(), zephmetadata::kMetadataSavedIntoFile);
    }

    bool const saved = window->SaveAll();
    window->Loader().WaitForAll();

    EXPECT_EQ(asked, QStringList{"shared.jpg"});
    EXPECT_EQ(ValueInFile(photo, kHeadlinePath), GetParam().headlineInFile);
    EXPECT_EQ(ValueInFile(photo, kLabelPath), GetParam().labelInFile);
    QString const copy = folder.filePath("shared (2).jpg");
    EXPECT_EQ(QFileInfo::exists(copy), GetParam().copyMade);
    EXPECT_EQ(window->DocumentCount(), GetParam().copyMade ? 2 : 1);
    if (GetParam().copyMade)
    {
        EXPECT_EQ(ValueInFile(copy, kHeadlinePath), "Ours");
        EXPECT_EQ(window->DocumentAt(1)->Path(), copy);
    }
    EXPECT_EQ(window->HasUnsavedChanges(), GetParam().stillModified);
    EXPECT_EQ(saved, !GetParam().stillModified);
    zephmetadata::UTF8String shownLabel;
    zephmetadata::GetValue(*zephmetadata::MetaDataReadAccess(window->DocumentAt(0)->Provider()),
                           kLabelPath, shownLabel, nullptr);
    EXPECT_EQ(zephcore::ToStdString(shownLabel),
              GetParam().stillModified ? "Selected" : GetParam().labelInFile)
        << "the browser shows what the file holds";
    EXPECT_TRUE(warnings.isEmpty()) << warnings.join("\n").toStdString();
}

std::string const kOriginalHeadline = kHeadline.toStdString();

INSTANTIATE_TEST_SUITE_P(
    Answers, BrowserConflictTest,
    testing::Values(ConflictCase{browser::ConflictAnswer::kReload, kOriginalHeadline.c_str(),
                                 "Theirs", false, false},
                    ConflictCase{browser::ConflictAnswer::kOverwrite, "Ours", "Selected", false,
                                 false},
                    ConflictCase{browser::ConflictAnswer::kKeepBoth, kOriginalHeadline.c_str(),
                                 "Theirs", true, false},
                    ConflictCase{browser::ConflictAnswer::kNotNow, kOriginalHeadline.c_str(),
                                 "Theirs", false, true}),
    // Stable test names: the answer, not the bytes of the case.
    [](testing::TestParamInfo<ConflictCase> const& info)
    {
        switch (info.param.answer)
        {
        case browser::ConflictAnswer::kReload:
            return std::string("Reload");
        case browser::ConflictAnswer::kOverwrite:
            return std::string("Overwrite");
        case browser::ConflictAnswer::kKeepBoth:
            return std::string("KeepBoth");
        case browser::ConflictAnswer::kNotNow:
            break;
        }
        return std::string("NotNow");
    });

namespace
{

// The headline the browser holds for the file at this row.
std::string ShownHeadline(browser::BrowserWindow& window, int row)
{
    zephmetadata::UTF8String value;
    zephmetadata::GetValue(*zephmetadata::MetaDataReadAccess(window.DocumentAt(row)->Provider()),
                           kHeadlinePath, value, nullptr);
    return zephcore::ToStdString(value);
}

} // namespace

TEST_F(BrowserTest, UndoAndRedoTakeEditsBackAndForthAcrossFilesUntilSaved)
{
    QString const first = CopySample("harbour-first-light.jpg", "first.jpg");
    QString const second = CopySample("harbour-first-light.jpg", "second.jpg");
    OpenAndWait({first, second});
    std::string const original = kHeadline.toStdString();

    // GIVEN one edit of both files, typed into the tree, then one of the first alone
    window->SelectFiles({0, 1});
    ShowRowsMatching("headline");
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    auto typeHeadline = [&](QString const& from, char const* to)
    {
        QLineEdit* edit = EditShowing(from);
        ASSERT_NE(edit, nullptr) << from.toStdString();
        edit->setFocus();
        edit->selectAll();
        QTest::keyClicks(edit, to);
        QTest::keyClick(edit, Qt::Key_Return);
    };
    typeHeadline(kHeadline, "Both");
    window->SelectFiles({0});
    typeHeadline("Both", "First only");
    window->FileList()->setFocus();

    // WHEN the keys are pressed one after another, THEN each step reaches the packets
    struct Step
    {
        Qt::KeyboardModifiers keys;
        std::string first, second;
        bool unsaved;
    };
    Step const steps[] = {
        {Qt::ControlModifier, "Both", "Both", true},
        {Qt::ControlModifier, original, original, false},
        {Qt::ControlModifier, original, original, false}, // nothing left to undo
        {Qt::ControlModifier | Qt::ShiftModifier, "Both", "Both", true},
        {Qt::ControlModifier | Qt::ShiftModifier, "First only", "Both", true},
    };
    for (Step const& step : steps)
    {
        QTest::keyClick(window.get(), Qt::Key_Z, step.keys);
        EXPECT_EQ(ShownHeadline(*window, 0), step.first);
        EXPECT_EQ(ShownHeadline(*window, 1), step.second);
        EXPECT_EQ(window->HasUnsavedChanges(), step.unsaved);
        EXPECT_EQ(window->isWindowModified(), step.unsaved);
    }
    ASSERT_TRUE(window->SaveAll()) << window->LastWarning().toStdString();
    EXPECT_EQ(ValueInFile(first, kHeadlinePath), "First only");
    EXPECT_EQ(ValueInFile(second, kHeadlinePath), "Both");
    EXPECT_FALSE(window->isWindowModified());
    // Undo after a save goes on from the saved files, which count as changed again.
    QTest::keyClick(window.get(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(ShownHeadline(*window, 0), "Both");
    EXPECT_TRUE(window->isWindowModified());
}

TEST_F(BrowserTest, AFileChangedByAnotherProgramIsReadAgainWhenSelected)
{
    QString const changed = CopySample("harbour-first-light.jpg", "changed.jpg");
    QString const other = CopySample("harbour-first-light.jpg", "other.jpg");
    OpenAndWait({changed, other});
    window->SelectFiles({0});
    window->SelectFiles({1});
    {
        auto theirs = boost::make_shared<zephmetadata::FileProvider>(ToUTF16Path(changed));
        Edit(theirs, kHeadlinePath, "Theirs");
        ASSERT_EQ(theirs->Save(), zephmetadata::kMetadataSavedIntoFile);
    }
    window->SelectFiles({0});
    EXPECT_EQ(ShownHeadline(*window, 0), "Theirs");
    EXPECT_FALSE(window->HasUnsavedChanges());
}

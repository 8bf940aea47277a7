// The metadata browser on real files in temporary folders: edits reach the
// files and nothing else in them changes; files that cannot be read or
// written give a clear message and lose nothing.

#include "BrowserFixture.h"
#include "PlaybackBar.h"

#include <zephui/NodeWidget.h>

#include <zephmetadataui/MetadataSectionView.h>
#include <zephmetadataui/StoryScriptView.h>
#include <zephmetadataui/TextTranscriptEditorView.h>
#include <zephmetadataui/TriSectionSplitterView.h>
#include <zephmetadataui/WordInfo.h>

#include <QFileInfo>
#include <QImage>
#include <QPushButton>
#include <QSettings>
#include <QStatusBar>
#include <QTableView>

namespace
{

using namespace browsertest;

Path const kLabelPath(U8("http://ns.adobe.com/xap/1.0/"), U8("Label"));

class BrowserTest : public BrowserFixture
{
protected:
    // Types into the tree's field that shows this text.
    void TypeIntoTree(QString const& shown, char const* typed)
    {
        QLineEdit* edit = TreeField(shown);
        ASSERT_NE(edit, nullptr) << "no field shows " << shown.toStdString();
        TypeOver(edit, typed);
    }
    // Types into the first field of the shown page of the File Info dialog.
    static ModalDriver::Action TypeIntoPage(QString const& text)
    {
        return [text](QWidget* window)
        {
            zephui::UI_Node* page = zephui::NodeForWidget(window)->UI_ChildGetFromID("PageSubView");
            for (QLineEdit* field : page->UI_GetWidget()->findChildren<QLineEdit*>())
                if (field->isVisible() && field->isEnabled() && !field->isReadOnly())
                    return TypeOver(field, text);
            ADD_FAILURE() << "no field on the page";
        };
    }
    // Another program's edit of the file, saved behind the browser's back.
    static void EditElsewhere(QString const& file, Path const& path, char const* value)
    {
        auto theirs = boost::make_shared<zephmetadata::FileProvider>(zephcore::ToUTF16(file));
        Edit(theirs, path, value);
        ASSERT_EQ(theirs->Save(), zephmetadata::kMetadataSavedIntoFile);
    }
};

TEST_F(BrowserTest, ValueTypedIntoTheTreeIsSavedAndNothingElseChanges)
{
    QString const photo = CopySample("harbour-first-light.jpg");
    Leaves const before = FileLeaves(photo);
    QImage const pixels(photo);
    Open({photo});
    Find("headline");
    TypeIntoTree(kHeadline, "Harbour reopens after the storms");
    ASSERT_TRUE(window->SaveAll()) << window->LastWarning().toStdString();

    Leaves const after = FileLeaves(photo);
    EXPECT_EQ(Changes(before, after),
              std::vector<std::string>{"http://ns.adobe.com/photoshop/1.0/ photoshop:Headline = "
                                       "Harbour reopens after the storms"})
        << "every other property reads back as it was";
    // The save records when the metadata changed, as other tools do.
    std::string const date = "http://ns.adobe.com/xap/1.0/ xmp:MetadataDate";
    ASSERT_EQ(after.count(date), 1u);
    EXPECT_NE(after.at(date), before.count(date) ? before.at(date) : "");
    EXPECT_EQ(QImage(photo), pixels) << "the picture itself is untouched";
    EXPECT_TRUE(warnings.isEmpty());
}

TEST_F(BrowserTest, DamagedPacketIsShownReadOnlyAndReplacedOnlyWhenTheUserAgrees)
{
    QString const broken = folder.filePath("broken.xmp");
    QByteArray const bytes = "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF><unclosed";
    WriteFile(broken, bytes);
    Open({broken, CopySample("harbour-first-light.jpg")});
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
    for (char const* part : {"broken.xmp", "not well-formed XML", "read-only"})
        EXPECT_TRUE(window->PanelMessage().contains(part)) << window->PanelMessage().toStdString();
    EXPECT_FALSE(provider->QueryPathStatus(kHeadlinePath, zephmetadata::kPathStatusWritable));
    ASSERT_FALSE(window->ReplaceDamagedButton()->isHidden());
    // WHEN the user declines, nothing changes
    window->ReplaceDamagedButton()->click();
    ASSERT_EQ(asked.size(), 1);
    EXPECT_TRUE(asked.front().startsWith("broken.xmp: it is not well-formed XML"))
        << asked.front().toStdString();
    EXPECT_TRUE(provider->IsReadOnly());
    EXPECT_FALSE(window->HasUnsavedChanges());
    EXPECT_TRUE(window->SaveAll());
    EXPECT_EQ(Bytes(broken), bytes);

    // WHEN the user agrees, the file becomes editable and the save replaces it
    agree = true;
    window->ReplaceDamagedButton()->click();
    EXPECT_FALSE(provider->IsReadOnly());
    EXPECT_TRUE(window->ReplaceDamagedButton()->isHidden());
    EXPECT_TRUE(window->HasUnsavedChanges());
    ASSERT_TRUE(window->SaveAll()) << window->LastWarning().toStdString();
    zephmetadata::FileProvider const replaced(zephcore::ToUTF16(broken));
    EXPECT_TRUE(!replaced.IsReadOnly() && replaced.DamagedPacketReason().empty());
    EXPECT_TRUE(warnings.isEmpty());

    // The other file still works beside it.
    window->SelectFiles({1});
    EXPECT_TRUE(window->PanelMessage().isEmpty());
    EXPECT_TRUE(window->ReplaceDamagedButton()->isHidden());
}

// File > File Info… over one file or several.
TEST_F(BrowserTest, FileInfoOkSavesExactlyTheEditIntoEachSelectedFileAndCancelNoByte)
{
    for (int count : {1, 2})
    {
        window = MakeWindow();
        QStringList paths;
        for (int i = 0; i < count; ++i)
            paths << CopySample("harbour-first-light.jpg", QString("%1-%2.jpg").arg(count).arg(i));
        Open(paths);
        window->SelectFiles({});
        std::vector<Leaves> before;
        std::vector<QByteArray> bytes;
        for (QString const& path : paths)
            before.push_back(FileLeaves(path)), bytes.push_back(Bytes(path));

        ModalDriver driver;
        driver.Then(ModalDriver::Sequence(
            {TypeIntoPage("Dropped"), ModalDriver::PressNode("CancelButton")}));
        window->ShowFileInfo();
        for (int i = 0; i < count; ++i)
            EXPECT_EQ(Bytes(paths[i]), bytes[std::size_t(i)]) << "Cancel, file " << i;

        driver.Then(ModalDriver::Sequence(
            {TypeIntoPage("Keeper's cove"), ModalDriver::PressNode("OKButton")}));
        window->ShowFileInfo();
        EXPECT_EQ(driver.Unexpected(), 0);
        EXPECT_FALSE(window->HasUnsavedChanges());
        for (int i = 0; i < count; ++i)
        {
            std::vector<std::string> const changed =
                Changes(before[std::size_t(i)], FileLeaves(paths[i]));
            ASSERT_EQ(changed.size(), 1u) << count << " files, file " << i;
            EXPECT_NE(changed[0].find("Keeper's cove"), std::string::npos) << changed[0];
        }
    }
}

TEST_F(BrowserTest, AFileWithAScriptShowsItInTheThirdPanelAndFindSearchesIt)
{
    Open({CopySample("harbour-first-light.jpg"), CopySample("storm-night-script.xmp")});
    window->SelectFiles({0});
    EXPECT_FALSE(window->ScriptPanel()->HasStoryData());
    EXPECT_FALSE(window->Panels()->GetSectionView(2)->GetOpened());

    window->SelectFiles({1});
    EXPECT_TRUE(window->ScriptPanel()->HasStoryData());
    EXPECT_TRUE(window->Panels()->GetSectionView(2)->GetOpened()) << "the script panel opens";
    QTest::keyClicks(window->FindBox(), "LAMP");
    EXPECT_EQ(window->ScriptPanel()->CurrentSearchTerm(), zephcore::AsciiToUTF16("lamp"))
        << "the find box searches the script too, folded";
}

TEST_F(BrowserTest, TheTranscriptFollowsThePlayheadAndAClickedWordMovesIt)
{
    Open({CopySample("keeper-interview.wav")});
    window->resize(1280, 1000);
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    window->SelectFiles({0});
    ASSERT_TRUE(window->Panels()->GetSectionView(2)->GetOpened()) << "the transcript panel opens";
    browser::PlaybackBar* bar = window->Playback();

    bar->SetPlayhead(zephmediatypes::TickTime::FromSeconds(60.0));
    zephmetadataui::WordInfo const* word = window->TranscriptPanel()->SelectedWord();
    ASSERT_TRUE(word) << "the word under the playhead is selected";
    EXPECT_LE(word->startTime.ToSeconds(), 60.0);
    EXPECT_EQ(bar->Playhead(), zephmediatypes::TickTime::FromSeconds(60.0))
        << "following the playhead does not move it";

    // A click on the first word of the transcript brings the playhead to it.
    QWidget* transcript = window->TranscriptPanel()->UI_GetWidget();
    transcript->grab(); // lays the words out where a click can find them
    QTest::mouseClick(transcript, Qt::LeftButton, Qt::NoModifier, QPoint(90, 10));
    ASSERT_TRUE(window->TranscriptPanel()->SelectedWord());
    EXPECT_EQ(bar->Playhead(), window->TranscriptPanel()->SelectedWord()->startTime);
    EXPECT_LT(bar->Playhead().ToSeconds(), 10.0);
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
    auto again = MakeWindow();
    again->RestoreLayoutSettings(QSettings(file, QSettings::IniFormat));
    EXPECT_FLOAT_EQ(again->Panels()->GetSplitterPercentage(true), 0.6f);
    EXPECT_FLOAT_EQ(again->Panels()->GetSplitterPercentage(false), 0.15f);
    for (int panel : {0, 1, 2})
        EXPECT_EQ(again->Panels()->GetSectionView(panel)->GetOpened(), panel != 1) << panel;

    // Shares that cannot be (a damaged file) leave the defaults.
    {
        QSettings damaged(file, QSettings::IniFormat);
        damaged.setValue("panels/firstShare", "lots");
        damaged.setValue("panels/secondShare", 0.9);
    }
    auto fresh = MakeWindow();
    float const share = fresh->Panels()->GetSplitterPercentage(true);
    fresh->RestoreLayoutSettings(QSettings(file, QSettings::IniFormat));
    EXPECT_FLOAT_EQ(fresh->Panels()->GetSplitterPercentage(true), share);
}

TEST_F(BrowserTest, FailedSaveOfReadOnlyFileLosesNothingBlocksNoOtherAndCanBeReverted)
{
    QString const locked = CopySample("harbour-first-light.jpg", "locked.jpg");
    QString const open = CopySample("harbour-first-light.jpg", "open.jpg");
    QFile::setPermissions(locked, QFile::ReadOwner | QFile::ReadGroup);
    QByteArray const lockedBytes = Bytes(locked);
    Open({locked, open});
    EXPECT_FALSE(window->DocumentAt(0)->Provider()->QueryPathStatus(
        kHeadlinePath, zephmetadata::kPathStatusWritable))
        << "a read-only file offers its values read-only";
    // A host could still change the metadata behind the views' back.
    for (int row : {0, 1})
        Edit(window->DocumentAt(row)->Provider(), kHeadlinePath, "Edited");

    EXPECT_FALSE(window->SaveAll());
    EXPECT_TRUE(window->HasUnsavedChanges()) << "the edit is kept for another try";
    EXPECT_EQ(Bytes(locked), lockedBytes) << "the file is exactly as it was";
    ASSERT_EQ(warnings.size(), 1);
    EXPECT_TRUE(warnings.front().contains(locked)) << "names the file";
    EXPECT_TRUE(warnings.front().contains("read-only")) << "and why";
    EXPECT_EQ(ValueInFile(open, kHeadlinePath), "Edited") << "the other file is saved";
    QString const status = window->statusBar()->currentMessage();
    EXPECT_TRUE(status.startsWith("Saved open.jpg.") && status.contains("1 file not saved"))
        << status.toStdString();

    // Saving again does not ask again about the file that failed.
    EXPECT_FALSE(window->SaveAll());
    EXPECT_EQ(warnings.size(), 1);
    window->SelectFiles({0});
    EXPECT_TRUE(window->PanelMessage().contains("was not saved"))
        << window->PanelMessage().toStdString();

    window->RevertFiles({0});
    EXPECT_FALSE(window->HasUnsavedChanges());
    EXPECT_EQ(Held(0, kHeadlinePath), kHeadline.toStdString());
    EXPECT_TRUE(window->PanelMessage().isEmpty());
    EXPECT_TRUE(window->SaveAll());
}

TEST_F(BrowserTest, ChangeByAnotherProgramIsAskedAboutAndTheAnswerIsDone)
{
    // Rows: the user's answer when another program changed the file, and what
    // the file, its copy and the browser then hold.
    struct Case
    {
        browser::ConflictAnswer answer;
        char const* headlineInFile; // null: the one it had
        char const* labelInFile;
        bool copyMade;
        bool stillModified;
    };
    Case const cases[] = {{browser::ConflictAnswer::kReload, nullptr, "Theirs", false, false},
                          {browser::ConflictAnswer::kOverwrite, "Ours", "Selected", false, false},
                          {browser::ConflictAnswer::kKeepBoth, nullptr, "Theirs", true, false},
                          {browser::ConflictAnswer::kNotNow, nullptr, "Theirs", false, true}};
    for (Case const& c : cases)
    {
        SCOPED_TRACE(int(c.answer));
        window = MakeWindow();
        QFile::remove(folder.filePath("shared.jpg"));
        QFile::remove(folder.filePath("shared (2).jpg"));
        QString const photo = CopySample("harbour-first-light.jpg", "shared.jpg");
        Open({photo});
        QStringList asked;
        window->SetConflictQuestion(
            [&](QString const& name)
            {
                asked << name;
                return c.answer;
            });
        Edit(window->DocumentAt(0)->Provider(), kHeadlinePath, "Ours");
        // GIVEN another program's edit after our read
        EditElsewhere(photo, kLabelPath, "Theirs");

        bool const saved = window->SaveAll();
        window->Loader().WaitForAll();

        EXPECT_EQ(asked, QStringList{"shared.jpg"});
        EXPECT_EQ(ValueInFile(photo, kHeadlinePath),
                  c.headlineInFile ? c.headlineInFile : kHeadline.toStdString());
        EXPECT_EQ(ValueInFile(photo, kLabelPath), c.labelInFile);
        QString const copy = folder.filePath("shared (2).jpg");
        EXPECT_EQ(QFileInfo::exists(copy), c.copyMade);
        EXPECT_EQ(window->DocumentCount(), c.copyMade ? 2 : 1);
        if (c.copyMade)
        {
            EXPECT_EQ(ValueInFile(copy, kHeadlinePath), "Ours");
            EXPECT_EQ(window->DocumentAt(1)->Path(), copy);
        }
        EXPECT_EQ(window->HasUnsavedChanges(), c.stillModified);
        EXPECT_EQ(saved, !c.stillModified);
        EXPECT_EQ(Held(0, kLabelPath), c.stillModified ? "Selected" : c.labelInFile)
            << "the browser shows what the file holds";
        EXPECT_TRUE(warnings.isEmpty()) << warnings.join("\n").toStdString();
    }
}

TEST_F(BrowserTest, UndoAndRedoTakeEditsBackAndForthAcrossFilesUntilSaved)
{
    QString const first = CopySample("harbour-first-light.jpg", "first.jpg");
    QString const second = CopySample("harbour-first-light.jpg", "second.jpg");
    Open({first, second, CopySample("breakwater-long-exposure.xmp")});
    std::string const original = kHeadline.toStdString();

    // GIVEN one edit of both files, typed into the tree, then one of the first alone
    window->SelectFiles({0, 1});
    EXPECT_TRUE(window->PanelMessage().contains("2 files selected"));
    Find("headline");
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    TypeIntoTree(kHeadline, "Both"); // equal values show as they are
    window->SelectFiles({0});
    TypeIntoTree("Both", "First only");
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
        EXPECT_EQ(Held(0, kHeadlinePath), step.first);
        EXPECT_EQ(Held(1, kHeadlinePath), step.second);
        EXPECT_EQ(window->HasUnsavedChanges(), step.unsaved);
        EXPECT_EQ(window->isWindowModified(), step.unsaved);
    }
    ASSERT_TRUE(window->SaveAll()) << window->LastWarning().toStdString();
    EXPECT_EQ(ValueInFile(first, kHeadlinePath), "First only");
    EXPECT_EQ(ValueInFile(second, kHeadlinePath), "Both");
    EXPECT_FALSE(window->DocumentAt(2)->IsModified()) << "the unselected file is not touched";
    EXPECT_FALSE(window->isWindowModified());
    // Undo after a save goes on from the saved files, which count as changed again.
    QTest::keyClick(window.get(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Held(0, kHeadlinePath), "Both");
    EXPECT_TRUE(window->isWindowModified());
}

TEST_F(BrowserTest, AFileChangedByAnotherProgramIsReadAgainWhenSelected)
{
    QString const changed = CopySample("harbour-first-light.jpg", "changed.jpg");
    Open({changed, CopySample("harbour-first-light.jpg", "other.jpg")});
    window->SelectFiles({0});
    window->SelectFiles({1});
    EditElsewhere(changed, kHeadlinePath, "Theirs");
    window->SelectFiles({0});
    EXPECT_EQ(Held(0, kHeadlinePath), "Theirs");
    EXPECT_FALSE(window->HasUnsavedChanges());
}

} // namespace

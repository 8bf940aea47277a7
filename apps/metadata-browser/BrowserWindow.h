#pragma once
// The metadata browser's main window: a list of opened files, the metadata
// panel (property tree with a find box) and the form panel (pages of a form)
// of the selected ones.

#include "Document.h"
#include "EditStep.h"
#include "FileLoader.h"

#include <QMainWindow>
#include <QMessageBox>

#include <boost/function.hpp>
#include <boost/intrusive_ptr.hpp>
#include <boost/shared_ptr.hpp>

#include <functional>
#include <list>
#include <memory>
#include <set>
#include <vector>

class QAction;
class QLabel;
class QLineEdit;
class QSettings;
class QTableView;
class QUndoStack;
class QProgressBar;
class QPushButton;
class QStackedWidget;

namespace zephui
{
class NodeHostWidget;
}
namespace zephmetadataui
{
class MetadataView;
class StoryScriptView;
class TextTranscriptEditorView;
struct WordInfo;
class TriSectionSplitterView;
} // namespace zephmetadataui

namespace browser
{

class BatchWork;
class FileSortProxy;
class FileTableModel;
class FormPanel;
class PlaybackBar;
class PreferencesWiring;
class ThumbnailCache;

// What the user wants when another program changed a file since it was read.
enum class ConflictAnswer
{
    kReload,    // show the other program's version; our edits are dropped
    kOverwrite, // save our edits over it
    kKeepBoth,  // our edits go into a copy beside it; the file keeps the change
    kNotNow,    // save nothing now; the edits stay
};

class BrowserWindow : public QMainWindow
{
    Q_OBJECT
public:
    BrowserWindow();
    ~BrowserWindow() override;

    // Opens files and folders; reading happens in the background.
    void Open(QStringList const& paths);
    // Selects the files at these rows of the list (all when empty).
    void SelectFiles(std::vector<int> const& rows);
    // Saves every modified file; a file changed meanwhile by another program
    // asks what to do. A file whose save failed is not tried again until it
    // is edited or reverted. False if any modified file is left unsaved.
    // With rows, only the files at those rows.
    bool SaveAll(std::vector<int> const& onlyRows = {});
    // File > File Info…: the file-information dialog over the selected
    // files; its OK saves them as Save does.
    void ShowFileInfo();
    // Drops the unsaved edits of the files at these rows: they are read again.
    void RevertFiles(std::vector<int> const& rows);
    bool HasUnsavedChanges() const;
    // Undoes or redoes the last step of edits made in the tree or the forms,
    // over every file they reached (Edit menu, Ctrl+Z and Ctrl+Shift+Z).
    void Undo();
    void Redo();
    QUndoStack* UndoHistory() const { return undoStack; }
    // Templates, values and saves over many files (the Batch menu).
    BatchWork& Batch() const { return *batch; }

    FileLoader& Loader() { return loader; }
    zephmetadataui::MetadataView* MetadataPanel() const;
    FormPanel* Forms() const { return formPanel; }
    QLineEdit* FindBox() const { return findBox; }
    // The file list: a sorted view over one row per opened file; its rows
    // map to DocumentAt() through FileRowOf().
    QTableView* FileList() const { return fileList; }
    // Narrows the file list to the files whose metadata holds the text.
    QLineEdit* FileFindBox() const { return fileFindBox; }
    int FileRowOf(int viewRow) const;
    ThumbnailCache& Thumbnails() { return *thumbnails; }
    Document* DocumentAt(int row) const;
    int DocumentCount() const { return int(documents.size()); }
    // What the panel says about the selection (errors, counts), as shown.
    QString PanelMessage() const;
    QString LastWarning() const { return lastWarning; }
    // Offered while one file with a damaged packet is selected.
    QPushButton* ReplaceDamagedButton() const { return replaceButton; }

    // Writes a picture of the window and of each panel into the folder.
    bool SaveScreenshots(QString const& folder);

    // The three panels (tree, form, script) as the user left them: their
    // shares of the height and which are open, kept across runs.
    zephmetadataui::TriSectionSplitterView* Panels() const { return panels.get(); }
    zephmetadataui::StoryScriptView* ScriptPanel() const { return scriptView.get(); }
    zephmetadataui::TextTranscriptEditorView* TranscriptPanel() const
    {
        return transcriptView.get();
    }
    PlaybackBar* Playback() const { return playback; }
    // Which properties the tree shows (Edit > Preferences), kept across runs.
    PreferencesWiring& Preferences() const { return *preferences; }
    void SaveLayoutSettings(QSettings& settings) const;
    void RestoreLayoutSettings(QSettings const& settings);

    // Hooks for hosts and tests: how to ask before closing with unsaved
    // changes, and how to show a warning. Defaults use message boxes.
    void SetCloseQuestion(std::function<QMessageBox::StandardButton()> ask)
    {
        closeQuestion = std::move(ask);
    }
    void SetWarningSink(std::function<void(QString const&)> sink) { warningSink = std::move(sink); }
    // How to ask about a file another program changed (its name is given),
    // and whether to replace a damaged packet (name and reason).
    void SetConflictQuestion(std::function<ConflictAnswer(QString const&)> ask)
    {
        conflictQuestion = std::move(ask);
    }
    void SetReplaceQuestion(std::function<bool(QString const&, QString const&)> ask)
    {
        replaceQuestion = std::move(ask);
    }

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void BuildMenus();
    void OnLoaded(std::vector<LoadedFile> files);
    void OnProgress(int done, int total, QString const& current);
    void OnSelectionChanged();
    void OnFindTextChanged(QString const& text);
    // Shows the transcript or the script of one file; several files show neither.
    void ShowTimedTextOf(boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider);
    void OpenSchemasWithValues(boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider);
    void OnDocumentModified(Document* document);
    void RefreshStaleSummaries();
    void OnEditRecorded(Document* document, RecordedChange change);
    void FlushPendingEdits();
    void KeepPacket(Document* document);
    void ReleaseOldPackets();
    void ShowWarning(QString const& text);
    ConflictAnswer AskAboutConflict(QString const& fileName);
    void OnReplaceDamaged();
    std::vector<int> SelectedRows() const;
    void UpdateTitle();
    void OpenFilesDialog();
    void OpenFolderDialog();

    FileLoader loader;
    std::vector<std::unique_ptr<Document>> documents;
    std::shared_ptr<SearchLabels const> searchLabels;
    std::unique_ptr<ThumbnailCache> thumbnails;
    FileTableModel* fileModel = nullptr;
    FileSortProxy* fileProxy = nullptr;
    QTableView* fileList = nullptr;
    QLineEdit* fileFindBox = nullptr;
    QLineEdit* findBox = nullptr;
    QLabel* panelMessage = nullptr;
    QPushButton* replaceButton = nullptr;
    QProgressBar* progress = nullptr;
    QLabel* progressLabel = nullptr;
    zephui::NodeHostWidget* panelHost = nullptr;
    FormPanel* formPanel = nullptr;
    // The transcript of the shown file under its time line, or its script, or
    // a line that says there is neither.
    QStackedWidget* thirdPanel = nullptr;
    boost::intrusive_ptr<zephmetadataui::StoryScriptView> scriptView;
    boost::intrusive_ptr<zephmetadataui::TextTranscriptEditorView> transcriptView;
    PlaybackBar* playback = nullptr;
    boost::shared_ptr<boost::function<void(zephmetadataui::WordInfo const*)>> wordSelected;
    boost::intrusive_ptr<zephmetadataui::TriSectionSplitterView> panels;
    boost::intrusive_ptr<zephmetadataui::MetadataView> metadataView;
    std::unique_ptr<PreferencesWiring> preferences;
    boost::shared_ptr<zephmetadata::MetaDataProvider> shownProvider;
    boost::shared_ptr<boost::function<void(__XMPMeta__*)>> shownEdited;
    std::set<Document*> staleSummaries;
    QUndoStack* undoStack = nullptr;
    BatchWork* batch = nullptr;
    QAction* undoAction = nullptr;
    // Edits of this moment, one step once the moment is over.
    std::vector<EditStep::Entry> pendingEdits;
    // Files whose packets are in memory, the most recently shown first.
    std::list<Document*> recentPackets;
    static constexpr int kKeptPackets = 12;
    QString lastWarning;
    std::function<QMessageBox::StandardButton()> closeQuestion;
    std::function<void(QString const&)> warningSink;
    std::function<ConflictAnswer(QString const&)> conflictQuestion;
    std::function<bool(QString const&, QString const&)> replaceQuestion;
};

} // namespace browser

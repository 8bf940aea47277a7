#pragma once
// The metadata browser's main window: a list of opened files and the
// metadata panel (property tree with a find box) of the selected ones.

#include "Document.h"
#include "FileLoader.h"

#include <QMainWindow>
#include <QMessageBox>

#include <boost/intrusive_ptr.hpp>

#include <functional>
#include <memory>
#include <set>
#include <vector>

class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;

namespace zephui
{
class NodeHostWidget;
}
namespace zephmetadataui
{
class MetadataView;
}

namespace browser
{

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
    // Saves every modified file. False if any could not be saved.
    bool SaveAll();
    bool HasUnsavedChanges() const;

    FileLoader& Loader() { return loader; }
    zephmetadataui::MetadataView* MetadataPanel() const;
    QLineEdit* FindBox() const { return findBox; }
    QListWidget* FileList() const { return fileList; }
    Document* DocumentAt(int row) const;
    int DocumentCount() const { return int(documents.size()); }
    // What the panel says about the selection (errors, counts), as shown.
    QString PanelMessage() const;
    QString LastWarning() const { return lastWarning; }

    // Writes a picture of the window and of each panel into the folder.
    bool SaveScreenshots(QString const& folder);

    // Hooks for hosts and tests: how to ask before closing with unsaved
    // changes, and how to show a warning. Defaults use message boxes.
    void SetCloseQuestion(std::function<QMessageBox::StandardButton()> ask)
    {
        closeQuestion = std::move(ask);
    }
    void SetWarningSink(std::function<void(QString const&)> sink) { warningSink = std::move(sink); }

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void BuildMenus();
    void OnLoaded(LoadedFile file);
    void OnProgress(int done, int total, QString const& current);
    void OnSelectionChanged();
    void OnFindTextChanged(QString const& text);
    void OpenSchemasWithValues(boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider);
    void OnDocumentModified();
    void ShowWarning(QString const& text);
    void UpdateTitle();
    void OpenFilesDialog();
    void OpenFolderDialog();

    FileLoader loader;
    std::vector<std::unique_ptr<Document>> documents;
    QListWidget* fileList = nullptr;
    QLineEdit* findBox = nullptr;
    QLabel* panelMessage = nullptr;
    QProgressBar* progress = nullptr;
    QLabel* progressLabel = nullptr;
    zephui::NodeHostWidget* panelHost = nullptr;
    boost::intrusive_ptr<zephmetadataui::MetadataView> metadataView;
    boost::shared_ptr<zephmetadata::MetaDataProvider> shownProvider;
    QString lastWarning;
    std::function<QMessageBox::StandardButton()> closeQuestion;
    std::function<void(QString const&)> warningSink;
};

} // namespace browser

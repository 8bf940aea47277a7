#pragma once
// Work over many files at once: a template or one value applied to the
// selected files, each then saved, and saving every file with unsaved edits.
// The files are read, changed and written on a worker thread, one at a time,
// under a progress dialog: Cancel stops before the next file, and the files
// done stay done. A file that cannot be saved is listed with the reason; the
// others are saved. What a batch writes is not in the undo history.

#include "FileSummary.h"

#include <zephmetadata/Types.h>

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

class QProgressDialog;
class QPushButton;

namespace browser
{

class BrowserWindow;
class Document;

class BatchWork : public QObject
{
    Q_OBJECT
public:
    explicit BatchWork(BrowserWindow& window);
    ~BatchWork() override;

    // Asks for a template file and how it is merged, then applies it to the
    // selected files, which are saved.
    void ApplyTemplateToSelected();
    // Asks which value of the current file (with its unsaved edits) goes
    // onto the selected files, then sets it there and saves them.
    void SetValueOnSelected();
    // Saves every file with unsaved edits. A file another program changed
    // since it was read is left for File > Save, which asks about it.
    void SaveAll();

    // The progress dialog of the batch under way; null between batches.
    QProgressDialog* Progress() const { return progress; }
    QPushButton* CancelButton() const { return cancelButton; }
    // For hosts and tests: runs on the user-interface thread each time a
    // file is done, before the next one is started.
    void SetProgressListener(std::function<void(int done, int total)> listener)
    {
        progressListener = std::move(listener);
    }

    // What one file's turn came to.
    struct Outcome
    {
        bool written = false;
        QString problem;     // why it was not saved; empty when it was or needed not be
        FileSummary summary; // of what was written
    };
    // Changes one file's metadata on the worker; whether it changed.
    using Change = std::function<bool(__XMPMeta__*)>;

private:
    struct Item;
    // Runs the change over the files and saves them; a null change only
    // saves their unsaved edits.
    void Run(QString const& title, std::vector<Document*> const& files, Change change);
    void Report(std::vector<Item> const& items, int done, int unchanged, bool cancelled,
                bool changing);
    std::vector<Document*> SelectedDocuments() const;
    Document* CurrentDocument() const;

    BrowserWindow& window;
    std::shared_ptr<SearchLabels const> labels;
    QProgressDialog* progress = nullptr;
    QPushButton* cancelButton = nullptr;
    std::function<void(int, int)> progressListener;
};

} // namespace browser

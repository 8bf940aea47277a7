#include "BatchWork.h"

#include <zephcore/QtStrings.h>

#include "BatchDialogs.h"
#include "BrowserWindow.h"
#include "Document.h"

#include <zephmetadata/Access.h>
#include <zephmetadata/FileProvider.h>
#include <zephmetadata/Templates.h>
#include <zephmetadata/XmpMeta.h>

#include <QEventLoop>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QItemSelectionModel>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QStatusBar>
#include <QTableView>
#include <QtConcurrent/QtConcurrentRun>

#include <algorithm>

namespace browser
{

namespace
{

std::shared_ptr<__XMPMeta__> Shared(zephmetadata::xmp::MetaPtr meta)
{
    return std::shared_ptr<__XMPMeta__>(meta.release(), zephmetadata::xmp::MetaDeleter());
}

// One file's turn, on the worker: its metadata (the copy of its unsaved
// edits, or else read from the file), changed, then written.
BatchWork::Outcome Process(QString const& path, std::shared_ptr<__XMPMeta__> const& edited,
                           bool replaceDamaged, BatchWork::Change const& change,
                           std::shared_ptr<SearchLabels const> const& labels)
{
    BatchWork::Outcome outcome;
    zephmetadata::xmp::MetaPtr read;
    __XMPMeta__* meta = edited.get();
    if (!meta)
    {
        zephmetadata::FileReadOutcome fromFile =
            zephmetadata::ReadMetadataFromFileQuietly(zephcore::ToUTF16(path));
        if (!fromFile.meta)
        {
            outcome.problem = zephcore::ToQString(fromFile.problem);
            return outcome;
        }
        if (!fromFile.damage.empty())
        {
            outcome.problem = QObject::tr("Its metadata packet is damaged (%1); select it to "
                                          "replace the packet first.")
                                  .arg(zephcore::ToQString(fromFile.damage));
            return outcome;
        }
        read = std::move(fromFile.meta);
        meta = read.get();
    }
    bool const changed = change ? change(meta) : false;
    // A file the change leaves as it was, with nothing unsaved, is not written.
    if (!changed && !edited)
        return outcome;
    if (zephmetadata::SaveMetadataToFile(meta, zephcore::ToUTF16(path), replaceDamaged) ==
        zephmetadata::kMetadataSaveFailed)
    {
        outcome.problem = LastProblemWith(path, QObject::tr("The file could not be written."));
        return outcome;
    }
    outcome.written = true;
    outcome.summary = SummarizeFile(path, meta, *labels);
    return outcome;
}

// The properties of meta a one-property template can set: the model keeps a
// file's identity and history its own, so those are left out.
std::vector<PropertyChoice> SettableProperties(__XMPMeta__* meta)
{
    std::vector<PropertyChoice> choices;
    for (auto const& [schemaNamespace, path] : zephmetadata::xmp::TopLevelProperties(meta))
    {
        zephmetadata::xmp::MetaPtr one = zephmetadata::xmp::NewMeta();
        zephmetadata::xmp::CopyProperty(meta, one.get(), schemaNamespace.c_str(), path.c_str());
        zephmetadata::xmp::MetaPtr probe = zephmetadata::xmp::NewMeta();
        if (!zephmetadata::ApplyTemplate(probe.get(), one.get(),
                                         zephmetadata::kTemplateImportKeepAndReplace))
            continue;
        QString value;
        for (zephmetadata::xmp::Node const& node :
             zephmetadata::xmp::ReadSubtree(meta, schemaNamespace.c_str(), path.c_str()))
        {
            if (!node.value.empty() && node.path.find("/?") == std::string::npos)
            {
                value = QString::fromStdString(node.value).simplified();
                break;
            }
        }
        if (value.size() > 60)
            value = value.left(59) + QChar(0x2026);
        QString const name = QString::fromStdString(path);
        choices.push_back({schemaNamespace, path,
                           value.isEmpty() ? name : QObject::tr("%1: %2").arg(name, value)});
    }
    return choices;
}

} // namespace

// One file of a batch, as prepared on the user-interface thread.
struct BatchWork::Item
{
    Document* document = nullptr;
    std::shared_ptr<__XMPMeta__> edited; // a copy of its unsaved edits, or null
    bool replaceDamaged = false;
    Outcome outcome;
};

BatchWork::BatchWork(BrowserWindow& window) : QObject(&window), window(window) {}

BatchWork::~BatchWork() = default;

std::vector<Document*> BatchWork::SelectedDocuments() const
{
    // In the order the list shows them, which is the order they are done in.
    std::vector<int> shownRows;
    for (QModelIndex const& shown : window.FileList()->selectionModel()->selectedRows())
        shownRows.push_back(shown.row());
    std::sort(shownRows.begin(), shownRows.end());
    std::vector<Document*> documents;
    for (int shown : shownRows)
    {
        if (Document* document = window.DocumentAt(window.FileRowOf(shown)))
            documents.push_back(document);
    }
    return documents;
}

Document* BatchWork::CurrentDocument() const
{
    QModelIndex const current = window.FileList()->currentIndex();
    if (!current.isValid() ||
        !window.FileList()->selectionModel()->isRowSelected(current.row(), QModelIndex()))
        return nullptr;
    return window.DocumentAt(window.FileRowOf(current.row()));
}

void BatchWork::ApplyTemplateToSelected()
{
    std::vector<Document*> const files = SelectedDocuments();
    if (files.empty())
        return;
    TemplateChoiceDialog dialog(int(files.size()), &window);
    if (dialog.exec() != QDialog::Accepted)
        return;
    zephmetadata::FileReadOutcome read =
        zephmetadata::ReadMetadataFromFileQuietly(zephcore::ToUTF16(dialog.TemplatePath()));
    if (!read.meta)
    {
        QMessageBox::warning(&window, tr("Apply Template"),
                             tr("The template %1 could not be read: %2")
                                 .arg(dialog.TemplatePath(), zephcore::ToQString(read.problem)));
        return;
    }
    std::shared_ptr<__XMPMeta__> const source = Shared(std::move(read.meta));
    zephmetadata::TemplateImportOptions const rule = dialog.Rule();
    Run(tr("Applying %1").arg(QFileInfo(dialog.TemplatePath()).fileName()), files,
        [source, rule](__XMPMeta__* meta)
        { return zephmetadata::ApplyTemplate(meta, source.get(), rule); });
}

void BatchWork::SetValueOnSelected()
{
    std::vector<Document*> const files = SelectedDocuments();
    Document* from = CurrentDocument();
    if (files.empty() || !from || !from->Provider())
        return;
    std::vector<PropertyChoice> choices;
    {
        zephmetadata::MetaDataReadAccess access(from->Provider());
        choices = SettableProperties(*access);
    }
    if (choices.empty())
    {
        QMessageBox::information(
            &window, tr("Set Value on Selected Files"),
            tr("%1 has no value to set on other files.").arg(from->FileName()));
        return;
    }
    PropertyChoiceDialog dialog(from->FileName(), int(files.size()), choices, &window);
    if (dialog.exec() != QDialog::Accepted || dialog.Chosen() < 0)
        return;
    PropertyChoice const& chosen = choices[std::size_t(dialog.Chosen())];
    // The value as it stands now, unsaved edits included, as a one-property
    // template that replaces the property whole.
    zephmetadata::xmp::MetaPtr one = zephmetadata::xmp::NewMeta();
    {
        zephmetadata::MetaDataReadAccess access(from->Provider());
        zephmetadata::xmp::CopyProperty(*access, one.get(), chosen.schemaNamespace.c_str(),
                                        chosen.path.c_str());
    }
    std::shared_ptr<__XMPMeta__> const source = Shared(std::move(one));
    Run(tr("Setting %1").arg(QString::fromStdString(chosen.path)), files,
        [source](__XMPMeta__* meta)
        {
            return zephmetadata::ApplyTemplate(meta, source.get(),
                                               zephmetadata::kTemplateImportKeepAndReplace);
        });
}

void BatchWork::SaveAll()
{
    std::vector<Document*> modified;
    for (int row = 0; row < window.DocumentCount(); ++row)
    {
        if (window.DocumentAt(row)->IsModified())
            modified.push_back(window.DocumentAt(row));
    }
    if (!modified.empty())
        Run(tr("Saving"), modified, nullptr);
}

void BatchWork::Run(QString const& title, std::vector<Document*> const& files, Change change)
{
    if (!labels)
        labels = SearchLabels::FromDefinitions();
    // A value being typed commits when its field loses focus: take the focus
    // first, so the value is part of what the batch starts from.
    if (QWidget* focused = window.focusWidget())
        focused->clearFocus();

    std::vector<Item> items;
    for (Document* document : files)
    {
        Item item;
        item.document = document;
        if (document->IsModified() && document->HasPacket())
        {
            auto const& provider = document->Provider();
            if (provider->ChangedSinceRead())
                item.outcome.problem = tr("Another program changed it since it was read; File "
                                          "> Save asks what to do.");
            zephmetadata::MetaDataReadAccess access(provider);
            item.edited = Shared(zephmetadata::xmp::Clone(*access));
            item.replaceDamaged = provider->IsReplacingDamagedPacket();
        }
        items.push_back(std::move(item));
    }

    QProgressDialog dialog(title, QString(), 0, int(items.size()), &window);
    dialog.setWindowTitle(title);
    dialog.setWindowModality(Qt::WindowModal);
    dialog.setAutoClose(false);
    dialog.setAutoReset(false);
    dialog.setMinimumWidth(420);
    auto* cancel = new QPushButton(tr("Cancel"), &dialog);
    dialog.setCancelButton(cancel);
    progress = &dialog;
    cancelButton = cancel;
    dialog.setValue(0);
    dialog.show();

    // One file at a time is handed to the worker: a cancel seen between two
    // files stops before the next one, whatever the worker's pace.
    QFutureWatcher<Outcome> watcher;
    QEventLoop loop;
    std::size_t next = 0;
    int unchanged = 0;
    bool running = false;
    auto startNext = [&]
    {
        while (next < items.size() && !items[next].outcome.problem.isEmpty())
            ++next;
        running = next < items.size() && !dialog.wasCanceled();
        if (!running)
        {
            loop.quit();
            return;
        }
        Item const& item = items[next];
        dialog.setLabelText(tr("%1: %2 (%3 of %4)")
                                .arg(title, item.document->FileName())
                                .arg(next + 1)
                                .arg(items.size()));
        watcher.setFuture(QtConcurrent::run(Process, item.document->Path(), item.edited,
                                            item.replaceDamaged, change, labels));
    };
    connect(&watcher, &QFutureWatcher<Outcome>::finished, &dialog,
            [&]
            {
                items[next].outcome = watcher.result();
                if (!items[next].outcome.written && items[next].outcome.problem.isEmpty())
                    ++unchanged;
                ++next;
                dialog.setValue(int(next));
                if (progressListener)
                    progressListener(int(next), int(items.size()));
                startNext();
            });
    startNext();
    if (running)
        loop.exec();
    bool const cancelled = dialog.wasCanceled() && next < items.size();
    progress = nullptr;
    cancelButton = nullptr;
    dialog.hide();
    Report(items, int(next), unchanged, cancelled, bool(change));
}

void BatchWork::Report(std::vector<Item> const& items, int done, int unchanged, bool cancelled,
                       bool changing)
{
    std::vector<std::pair<QString, QString>> failures;
    int saved = 0;
    for (std::size_t i = 0; i < items.size(); ++i)
    {
        Item const& item = items[i];
        Outcome const& outcome = item.outcome;
        if (outcome.written)
        {
            ++saved;
            // A file that took its own edits only still matches what was recorded.
            item.document->AdoptWritten(outcome.summary, changing);
        }
        else if (!outcome.problem.isEmpty())
        {
            item.document->SetSaveProblem(outcome.problem);
            failures.emplace_back(item.document->Path(), outcome.problem);
        }
    }
    QStringList message;
    message << tr("Saved %1.").arg(FileCount(saved));
    if (unchanged > 0)
        message << tr("%1 needed no change.").arg(FileCount(unchanged));
    if (!failures.empty())
        message << tr("%1 could not be saved.").arg(FileCount(int(failures.size())));
    if (cancelled)
        message << tr("Cancelled: %1 left as they were.").arg(FileCount(int(items.size()) - done));
    window.statusBar()->showMessage(message.join(' '), 8000);
    // The panels show what the files hold now, and what could not be saved.
    std::vector<int> rows;
    for (QModelIndex const& shown : window.FileList()->selectionModel()->selectedRows())
        rows.push_back(window.FileRowOf(shown.row()));
    if (!rows.empty())
        window.SelectFiles(rows);
    if (failures.empty())
        return;
    FailureListDialog list(
        tr("These files could not be saved and were left as they were. The others were saved."),
        failures, &window);
    list.exec();
}

} // namespace browser

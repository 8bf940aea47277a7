#include "BrowserWindow.h"

#include <zephcore/QtStrings.h>

#include "BatchWork.h"
#include "FileInfo.h"
#include "FileTableModel.h"
#include "FormPanel.h"
#include "PlaybackBar.h"
#include "PreferencesWiring.h"
#include "SpeechTrack.h"
#include "ThumbnailCache.h"
#include "WidgetNode.h"

#include <zephmetadata/Access.h>
#include <zephmetadata/MultiObjectProvider.h>
#include <zephmetadata/PathDefinitions.h>
#include <zephmetadata/Provider.h>
#include <zephmetadata/Values.h>

#include <boost/make_shared.hpp>
#include <zephmetadataui/MetadataSectionView.h>
#include <zephmetadataui/MetadataView.h>
#include <zephmetadataui/StoryScriptView.h>
#include <zephmetadataui/TextTranscriptEditorView.h>
#include <zephmetadataui/TriSectionSplitterView.h>
#include <zephui/NodeHostWidget.h>

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTableView>
#include <QTimer>
#include <QUndoStack>
#include <QVBoxLayout>

namespace browser
{

namespace
{

// The tree and the form share the height; the script, when opened, gets a fifth.
constexpr float kDefaultPanelShare = 0.4f;
constexpr int kThumbnailEdge = 48;

} // namespace

BrowserWindow::BrowserWindow()
{
    setWindowTitle(tr("Metadata Browser") + QStringLiteral("[*]"));
    setAcceptDrops(true);
    resize(1280, 900);

    auto* splitter = new QSplitter(this);
    searchLabels = SearchLabels::FromDefinitions();
    loader.SetSearchLabels(searchLabels);
    thumbnails = std::make_unique<ThumbnailCache>(kThumbnailEdge);
    fileModel = new FileTableModel(documents, *thumbnails, this);
    fileProxy = new FileSortProxy(*fileModel, this);
    auto* files = new QWidget(splitter);
    auto* filesLayout = new QVBoxLayout(files);
    filesLayout->setContentsMargins(6, 6, 0, 6);
    filesLayout->setSpacing(4);
    fileFindBox = new QLineEdit(files);
    fileFindBox->setPlaceholderText(tr("Find files whose metadata holds..."));
    fileFindBox->setClearButtonEnabled(true);
    connect(fileFindBox, &QLineEdit::textChanged, fileProxy, &FileSortProxy::SetFindText);
    fileList = new QTableView(files);
    filesLayout->addWidget(fileFindBox);
    filesLayout->addWidget(fileList, 1);
    fileList->setModel(fileProxy);
    fileList->setSelectionMode(QAbstractItemView::ExtendedSelection);
    fileList->setSelectionBehavior(QAbstractItemView::SelectRows);
    fileList->setEditTriggers(QAbstractItemView::NoEditTriggers);
    fileList->setShowGrid(false);
    fileList->setWordWrap(false);
    fileList->setIconSize(QSize(kThumbnailEdge, kThumbnailEdge));
    fileList->setMinimumWidth(200);
    // Rows of one height: the view then never measures rows it does not show.
    fileList->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    fileList->verticalHeader()->setDefaultSectionSize(kThumbnailEdge + 6);
    fileList->verticalHeader()->hide();
    fileList->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    fileList->horizontalHeader()->setStretchLastSection(true);
    fileList->setColumnWidth(FileTableModel::kName, 210);
    fileList->setColumnWidth(FileTableModel::kType, 50);
    fileList->setColumnWidth(FileTableModel::kTitle, 170);
    fileList->setColumnWidth(FileTableModel::kRating, 80);
    fileList->setSortingEnabled(true);
    fileList->sortByColumn(FileTableModel::kName, Qt::AscendingOrder);
    connect(fileList->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &BrowserWindow::OnSelectionChanged);

    auto* panel = new QWidget;
    auto* panelLayout = new QVBoxLayout(panel);
    panelLayout->setContentsMargins(6, 6, 6, 6);
    panelLayout->setSpacing(4);
    findBox = new QLineEdit(panel);
    findBox->setPlaceholderText(tr("Find in labels and values"));
    findBox->setClearButtonEnabled(true);
    connect(findBox, &QLineEdit::textChanged, this, &BrowserWindow::OnFindTextChanged);
    panelMessage = new QLabel(panel);
    panelMessage->setWordWrap(true);
    panelMessage->hide();
    replaceButton = new QPushButton(tr("Replace Damaged Metadata..."), panel);
    replaceButton->hide();
    connect(replaceButton, &QPushButton::clicked, this, &BrowserWindow::OnReplaceDamaged);
    metadataView =
        new zephmetadataui::MetadataView(zephmetadata::CommonSchemaDefinitions(),
                                         boost::shared_ptr<zephmetadata::MetaDataProvider>());
    panelHost = new zephui::NodeHostWidget(metadataView, panel);
    preferences = std::make_unique<PreferencesWiring>(
        metadataView.get(), [this](QString const& text) { ShowWarning(text); });
    panelLayout->addWidget(findBox);
    panelLayout->addWidget(panelMessage);
    panelLayout->addWidget(replaceButton, 0, Qt::AlignLeft);
    panelLayout->addWidget(panelHost, 1);

    formPanel = new FormPanel;
    preferences->SetShowInForms([this](std::set<zephmetadata::Path> const& paths)
                                { formPanel->SetIncludedPaths(paths); });
    thirdPanel = new QStackedWidget;
    auto* neither = new QLabel(tr("One selected file with a transcript or a script shows it here."),
                               thirdPanel);
    neither->setAlignment(Qt::AlignCenter);
    neither->setWordWrap(true);
    scriptView = new zephmetadataui::StoryScriptView();
    thirdPanel->addWidget(neither);
    thirdPanel->addWidget(new zephui::NodeHostWidget(scriptView, thirdPanel));
    auto* transcriptPage = new QWidget(thirdPanel);
    auto* transcriptLayout = new QVBoxLayout(transcriptPage);
    transcriptLayout->setContentsMargins(0, 0, 0, 0);
    transcriptLayout->setSpacing(0);
    playback = new PlaybackBar(transcriptPage);
    transcriptView = new zephmetadataui::TextTranscriptEditorView(
        boost::shared_ptr<zephmetadata::MetaDataProvider>());
    transcriptLayout->addWidget(playback);
    transcriptLayout->addWidget(new zephui::NodeHostWidget(transcriptView, transcriptPage), 1);
    thirdPanel->addWidget(transcriptPage);
    // The word under the playhead is selected as it moves; a word the user
    // picks moves the playhead (not while playing: the playhead leads then).
    playback->SetPlayheadListener([this](TickTime time)
                                  { transcriptView->SelectWordAtTimecode(time, false); });
    playback->SetRangeListener(
        [this](TickTime in, TickTime out)
        {
            transcriptView->SetInPoint(in);
            transcriptView->SetOutPoint(out);
        });
    wordSelected = boost::make_shared<boost::function<void(zephmetadataui::WordInfo const*)>>(
        [this](zephmetadataui::WordInfo const* word)
        {
            if (word && !playback->IsPlaying())
                playback->SetPlayhead(word->startTime);
        });
    transcriptView->NotifyOnSelectedWordChanged(wordSelected);

    // Tree, form and script stacked, each in a panel that opens and closes.
    panels = new zephmetadataui::TriSectionSplitterView(
        new WidgetNode(panel), new WidgetNode(formPanel), new WidgetNode(thirdPanel),
        [] { return new zephmetadataui::MetadataSectionView(); });
    panels->SetSectionPrimaryText(0, zephcore::ToUTF16(tr("Properties")));
    panels->SetSectionPrimaryText(1, zephcore::ToUTF16(tr("Form")));
    panels->SetSectionPrimaryText(2, zephcore::ToUTF16(tr("Transcript or Script")));
    panels->SetSplitterPercentage(true, kDefaultPanelShare);
    panels->SetSplitterPercentage(false, kDefaultPanelShare);
    panels->GetSectionView(2)->SetOpened(false);
    auto* panelsHost = new zephui::NodeHostWidget(panels, splitter);

    splitter->addWidget(files);
    splitter->addWidget(panelsHost);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({640, 640});
    setCentralWidget(splitter);

    progress = new QProgressBar(this);
    progress->setMaximumWidth(220);
    progress->hide();
    progressLabel = new QLabel(this);
    statusBar()->addPermanentWidget(progressLabel);
    statusBar()->addPermanentWidget(progress);

    loader.SetLoadedHandler([this](std::vector<LoadedFile> files) { OnLoaded(std::move(files)); });
    connect(&loader, &FileLoader::Progress, this, &BrowserWindow::OnProgress);
    undoStack = new QUndoStack(this);
    batch = new BatchWork(*this);
    shownEdited = boost::make_shared<boost::function<void(__XMPMeta__*)>>([this](__XMPMeta__*)
                                                                          { FlushPendingEdits(); });
    BuildMenus();
}

BrowserWindow::~BrowserWindow()
{
    loader.Stop();
    // The views let go of the providers before the documents do.
    metadataView->SetProvider(boost::shared_ptr<zephmetadata::MetaDataProvider>());
    formPanel->SetProvider(boost::shared_ptr<zephmetadata::MetaDataProvider>());
    scriptView->ResetMetadataProvider(boost::shared_ptr<zephmetadata::MetaDataProvider>());
    transcriptView->ResetTranscriptProvider(boost::shared_ptr<zephmetadata::MetaDataProvider>());
    wordSelected->clear();
    shownEdited->clear();
}

void BrowserWindow::BuildMenus()
{
    QMenu* file = menuBar()->addMenu(tr("&File"));
    QAction* open = file->addAction(tr("&Open Files..."), this, &BrowserWindow::OpenFilesDialog);
    open->setShortcut(QKeySequence::Open);
    file->addAction(tr("Open &Folder..."), this, &BrowserWindow::OpenFolderDialog);
    QAction* save = file->addAction(tr("&Save"), this, [this] { SaveAll(); });
    save->setShortcut(QKeySequence::Save);
    file->addAction(tr("&Revert Selected"), this, [this] { RevertFiles(SelectedRows()); });
    file->addSeparator();
    QAction* info = file->addAction(tr("File &Info..."), this, &BrowserWindow::ShowFileInfo);
    info->setShortcut(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_I));
    file->addAction(tr("Con&vert Panels..."), this, [this] { preferences->ConvertPanels(); });
    file->addSeparator();
    QAction* quit = file->addAction(tr("&Quit"), this, &QWidget::close);
    quit->setShortcut(QKeySequence::Quit);

    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    undoAction = edit->addAction(tr("&Undo"), this, &BrowserWindow::Undo);
    QAction* undo = undoAction;
    undo->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Z));
    QAction* redo = edit->addAction(tr("&Redo"), this, &BrowserWindow::Redo);
    redo->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z));
    edit->addSeparator();
    edit->addAction(tr("Pr&eferences..."), this, [this] { preferences->EditPreferences(); });
    undo->setEnabled(false);
    redo->setEnabled(false);
    connect(undoStack, &QUndoStack::canUndoChanged, undo, &QAction::setEnabled);
    connect(undoStack, &QUndoStack::canRedoChanged, redo, &QAction::setEnabled);
    connect(undoStack, &QUndoStack::undoTextChanged, undo,
            [undo](QString const& text)
            { undo->setText(text.isEmpty() ? tr("&Undo") : tr("&Undo %1").arg(text)); });
    connect(undoStack, &QUndoStack::redoTextChanged, redo,
            [redo](QString const& text)
            { redo->setText(text.isEmpty() ? tr("&Redo") : tr("&Redo %1").arg(text)); });

    QMenu* batchMenu = menuBar()->addMenu(tr("&Batch"));
    batchMenu->addAction(tr("Apply &Template to Selected Files..."), batch,
                         &BatchWork::ApplyTemplateToSelected);
    batchMenu->addAction(tr("Set &Value on Selected Files..."), batch,
                         &BatchWork::SetValueOnSelected);
    batchMenu->addAction(tr("Save &All in Background..."), batch, &BatchWork::SaveAll);
}

void BrowserWindow::OnEditRecorded(Document* document, RecordedChange change)
{
    if (pendingEdits.empty())
        QTimer::singleShot(0, this, &BrowserWindow::FlushPendingEdits);
    // Undo is there at once, before the step is made.
    undoAction->setEnabled(true);
    pendingEdits.push_back({document, document->Generation(), std::move(change)});
}

void BrowserWindow::FlushPendingEdits()
{
    if (pendingEdits.empty())
        return;
    std::vector<EditStep::Entry> entries;
    entries.swap(pendingEdits);
    undoStack->push(new EditStep(std::move(entries)));
}

void BrowserWindow::Undo()
{
    // A field being typed in commits first, so its edit is the one undone.
    if (QWidget* focused = QApplication::focusWidget())
        focused->clearFocus();
    FlushPendingEdits();
    undoStack->undo();
}

void BrowserWindow::Redo()
{
    FlushPendingEdits();
    undoStack->redo();
}

void BrowserWindow::OpenFilesDialog()
{
    QStringList const paths = QFileDialog::getOpenFileNames(this, tr("Open Files"));
    Open(paths);
}

void BrowserWindow::OpenFolderDialog()
{
    QString const folder = QFileDialog::getExistingDirectory(this, tr("Open Folder"));
    if (!folder.isEmpty())
        Open({folder});
}

void BrowserWindow::Open(QStringList const& paths)
{
    QStringList files = ExpandPaths(paths);
    files.removeIf([this](QString const& file) { return fileModel->RowOf(file) >= 0; });
    if (files.isEmpty())
    {
        if (!paths.isEmpty())
            ShowWarning(tr("Nothing to open in %1.").arg(paths.join(", ")));
        return;
    }
    loader.Load(files);
}

void BrowserWindow::OnProgress(int done, int total, QString const& current)
{
    bool const busy = done < total;
    progress->setVisible(busy);
    progress->setRange(0, total);
    progress->setValue(done);
    progressLabel->setText(busy ? tr("Reading %1 (%2 of %3)").arg(current).arg(done + 1).arg(total)
                                : tr("%n file(s) open", nullptr, int(documents.size())));
}

void BrowserWindow::OnLoaded(std::vector<LoadedFile> files)
{
    int const first = int(documents.size());
    documents.reserve(documents.size() + files.size());
    for (LoadedFile& file : files)
    {
        documents.push_back(std::make_unique<Document>(std::move(file), searchLabels, nullptr));
        Document* document = documents.back().get();
        document->SetModifiedHandler([this, document] { OnDocumentModified(document); });
        document->SetEditRecorder([this, document](RecordedChange change)
                                  { OnEditRecorded(document, std::move(change)); });
        KeepPacket(document);
    }
    fileModel->DocumentsAdded(first);
    // The first file that arrives is shown at once.
    if (!fileList->selectionModel()->hasSelection())
        SelectFiles({first});
    else
        ReleaseOldPackets();
}

Document* BrowserWindow::DocumentAt(int row) const
{
    return row >= 0 && row < int(documents.size()) ? documents[std::size_t(row)].get() : nullptr;
}

int BrowserWindow::FileRowOf(int viewRow) const
{
    return fileProxy->mapToSource(fileProxy->index(viewRow, 0)).row();
}

void BrowserWindow::SelectFiles(std::vector<int> const& rows)
{
    QItemSelection selection;
    for (int row = 0; row < fileModel->rowCount(); ++row)
    {
        if (!rows.empty() && std::find(rows.begin(), rows.end(), row) == rows.end())
            continue;
        QModelIndex const shown = fileProxy->mapFromSource(fileModel->index(row, 0));
        if (shown.isValid())
            selection.select(shown, shown);
    }
    {
        QSignalBlocker const block(fileList->selectionModel());
        fileList->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect |
                                                          QItemSelectionModel::Rows);
        if (!selection.isEmpty())
            fileList->selectionModel()->setCurrentIndex(selection.indexes().front(),
                                                        QItemSelectionModel::NoUpdate);
    }
    fileList->viewport()->update();
    OnSelectionChanged();
}

void BrowserWindow::OnSelectionChanged()
{
    std::vector<boost::shared_ptr<zephmetadata::MetaDataProvider>> providers;
    QStringList problems;
    for (int row : SelectedRows())
    {
        Document* document = DocumentAt(row);
        if (!document)
            continue;
        bool const hadPacket = document->HasPacket();
        // Another program changed the file behind us: with nothing of ours
        // to lose, show its version; edits of ours stay, and their save asks.
        if (hadPacket && !document->IsModified() && document->Provider()->ChangedSinceRead())
            document->Revert();
        auto const provider = document->Provider();
        if (!hadPacket)
            fileModel->RowChanged(row);
        KeepPacket(document);
        if (provider)
            providers.push_back(provider);
        else
            problems << tr("%1: %2").arg(document->FileName(), document->Error());
        if (provider && !document->Damage().isEmpty() && !provider->IsReplacingDamagedPacket())
            problems << tr("%1: its metadata packet is damaged (%2). It is shown read-only and "
                           "is never saved over unless you replace it.")
                            .arg(document->FileName(), document->Damage());
        if (!document->SaveProblem().isEmpty())
            problems
                << tr("%1 was not saved: %2").arg(document->FileName(), document->SaveProblem());
    }
    std::vector<int> const rows = SelectedRows();
    Document* only = rows.size() == 1 ? DocumentAt(rows.front()) : nullptr;
    replaceButton->setVisible(only && only->HasPacket() && !only->Damage().isEmpty() &&
                              !only->Provider()->IsReplacingDamagedPacket());

    boost::shared_ptr<zephmetadata::MetaDataProvider> shown;
    if (providers.size() == 1)
        shown = providers.front();
    else if (providers.size() > 1)
        shown = boost::make_shared<zephmetadata::MultiObjectProvider>(providers);
    if (shown != shownProvider || providers.size() > 1)
    {
        if (shownProvider)
            shownProvider->RemoveMetaDataChangedNotification(shownEdited);
        shownProvider = shown;
        // An edit of the shown files ends when the provider they are shown
        // through has heard of it: each file's part of it is recorded then,
        // and they make one step.
        if (shownProvider)
            shownProvider->NotifyWhenMetaDataChanged(shownEdited);
        // One rebuild for the new provider and the rows it opens.
        zephmetadataui::MetadataView::SuspendTreeRebuild const oneRebuild(metadataView.get());
        if (shown && metadataView->GetOpenedSchemaRows().empty())
            OpenSchemasWithValues(shown);
        metadataView->SetProvider(shown);
        formPanel->SetProvider(shown);
        ShowTimedTextOf(
            providers.size() == 1 ? shown : boost::shared_ptr<zephmetadata::MetaDataProvider>());
    }

    // The panels' headers name what they show.
    QString const shownName = only           ? only->FileName()
                              : rows.empty() ? QString()
                                             : tr("%n files", nullptr, int(rows.size()));
    panels->SetSectionSecondaryText(0, zephcore::ToUTF16(shownName));
    panels->SetSectionSecondaryText(1, zephcore::ToUTF16(shownName));
    panels->SetSectionSecondaryText(
        2, zephcore::ToUTF16(thirdPanel->currentIndex() != 0 ? shownName : QString()));

    if (providers.size() > 1)
        problems.prepend(
            tr("%1 files selected: values that differ show as <Multiple Values>; an edit "
               "applies to all of them.")
                .arg(providers.size()));
    panelMessage->setText(problems.join("\n"));
    panelMessage->setVisible(!problems.isEmpty());
    ReleaseOldPackets();
}

void BrowserWindow::KeepPacket(Document* document)
{
    if (!document->HasPacket())
        return;
    recentPackets.remove(document);
    recentPackets.push_front(document);
}

void BrowserWindow::ReleaseOldPackets()
{
    // Files shown lately keep their packets, so going back and forth between
    // a few reads nothing; the rest keep their summaries only. Edited and
    // shown files keep theirs whatever their place.
    int kept = 0;
    for (auto it = recentPackets.begin(); it != recentPackets.end();)
    {
        if (!(*it)->HasPacket() || (++kept > kKeptPackets && (*it)->ReleasePacket()))
            it = recentPackets.erase(it);
        else
            ++it;
    }
}

void BrowserWindow::OpenSchemasWithValues(
    boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider)
{
    // Until the user opens rows of their own, show what the file holds.
    std::set<boost::shared_ptr<zephmetadata::SchemaDefinition>> withValues;
    zephmetadata::MetaDataReadAccess access(provider);
    for (auto const& schema : zephmetadata::CommonSchemaDefinitions())
    {
        for (zephmetadata::Path const& path : zephmetadata::ChildPaths(schema))
        {
            if (zephmetadata::HasValue(*access, path))
            {
                withValues.insert(schema);
                break;
            }
        }
    }
    if (!withValues.empty())
        metadataView->SetOpenedSchemaRows(withValues);
}

void BrowserWindow::OnFindTextChanged(QString const& text)
{
    metadataView->SetRapidFindString(zephcore::ToUTF16(text));
    scriptView->SetCurrentSearchTerm(zephcore::ToUTF16(text));
    transcriptView->SetCurrentSearchTerm(zephcore::ToUTF16(text));
}

void BrowserWindow::ShowTimedTextOf(
    boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider)
{
    enum Page
    {
        kNeither = 0,
        kScript = 1,
        kTranscript = 2
    };
    playback->SetPlaying(false);
    transcriptView->ResetTranscriptProvider(provider);
    scriptView->ResetMetadataProvider(provider);
    std::optional<SpeechTrackSpan> const speech =
        provider ? FindSpeechTrack(provider) : std::nullopt;
    Page const page = speech ? kTranscript : scriptView->HasStoryData() ? kScript : kNeither;
    thirdPanel->setCurrentIndex(page);
    if (speech)
        playback->SetMedia(speech->end, speech->framesPerSecond);
    panels->SetSectionPrimaryText(2, zephcore::ToUTF16(page == kTranscript ? tr("Transcript")
                                                       : page == kScript
                                                           ? tr("Script")
                                                           : tr("Transcript or Script")));
    // A file with a transcript or a script opens the panel that shows it.
    if (page != kNeither)
        panels->GetSectionView(2)->SetOpened(true);
}

zephmetadataui::MetadataView* BrowserWindow::MetadataPanel() const
{
    return metadataView.get();
}

QString BrowserWindow::PanelMessage() const
{
    return panelMessage->isHidden() ? QString() : panelMessage->text();
}

void BrowserWindow::OnDocumentModified(Document* document)
{
    fileModel->RowChanged(fileModel->RowOf(document->Path()));
    UpdateTitle();
    // The list shows the edited values once the edits of this moment are
    // done: a summary costs a walk over the whole packet.
    if (staleSummaries.empty())
        QTimer::singleShot(0, this, &BrowserWindow::RefreshStaleSummaries);
    staleSummaries.insert(document);
}

void BrowserWindow::RefreshStaleSummaries()
{
    std::set<Document*> stale;
    stale.swap(staleSummaries);
    for (Document* document : stale)
    {
        document->RefreshSummary();
        fileModel->RowChanged(fileModel->RowOf(document->Path()));
    }
}

bool BrowserWindow::HasUnsavedChanges() const
{
    return std::any_of(documents.begin(), documents.end(),
                       [](auto const& d) { return d->IsModified(); });
}

void BrowserWindow::UpdateTitle()
{
    setWindowModified(HasUnsavedChanges());
}

std::vector<int> BrowserWindow::SelectedRows() const
{
    std::vector<int> rows;
    for (QModelIndex const& shown : fileList->selectionModel()->selectedRows())
        rows.push_back(fileProxy->mapToSource(shown).row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

void BrowserWindow::ShowFileInfo()
{
    std::vector<int> const rows = SelectedRows();
    if (rows.empty() || !shownProvider)
        return;
    Document const* only = rows.size() == 1 ? DocumentAt(rows.front()) : nullptr;
    QString const title = only ? only->FileName() : tr("%n files", nullptr, int(rows.size()));
    QSettings settings;
    if (RunFileInfo(this, shownProvider, title, settings))
        SaveAll(rows);
}

bool BrowserWindow::SaveAll(std::vector<int> const& onlyRows)
{
    // A text field commits when it loses focus: take the focus first, so the
    // value being typed is part of what is saved.
    if (QWidget* focused = QApplication::focusWidget())
        focused->clearFocus();

    QStringList saved, failures, copies;
    int unsaved = 0;
    for (std::size_t row = 0; row < documents.size(); ++row)
    {
        Document* document = documents[row].get();
        if (!document->IsModified() ||
            (!onlyRows.empty() && !std::binary_search(onlyRows.begin(), onlyRows.end(), int(row))))
            continue;
        // Told once; tried again after an edit or a revert, not at every save.
        if (!document->SaveProblem().isEmpty())
        {
            ++unsaved;
            continue;
        }
        QString where;
        Document::SaveOutcome outcome = document->Save(where);
        if (outcome == Document::kConflict)
        {
            switch (AskAboutConflict(document->FileName()))
            {
            case ConflictAnswer::kReload:
                document->Revert();
                continue;
            case ConflictAnswer::kOverwrite:
                outcome = document->SaveOverwriting(where);
                break;
            case ConflictAnswer::kKeepBoth:
            {
                QString const copy = document->SaveCopyBeside();
                if (copy.isEmpty())
                    break;
                copies << copy;
                saved << QFileInfo(copy).fileName();
                continue;
            }
            case ConflictAnswer::kNotNow:
                ++unsaved;
                continue;
            }
        }
        if (outcome == Document::kSaved)
        {
            saved << (where == document->Path()
                          ? document->FileName()
                          : tr("%1 (into %2)")
                                .arg(document->FileName(), QFileInfo(where).fileName()));
            continue;
        }
        ++unsaved;
        if (!document->SaveProblem().isEmpty())
            failures << tr("%1: %2").arg(document->Path(), document->SaveProblem());
    }
    UpdateTitle();
    OnSelectionChanged();
    if (!copies.isEmpty())
        Open(copies);
    QString message;
    if (!saved.isEmpty())
        message = tr("Saved %1.").arg(saved.join(", "));
    if (unsaved > 0)
        message +=
            (message.isEmpty() ? "" : " ") +
            (unsaved == 1 ? tr("1 file not saved.") : tr("%1 files not saved.").arg(unsaved));
    statusBar()->showMessage(message, 8000);
    if (!failures.isEmpty())
        ShowWarning(tr("These files could not be saved and were left as they were:\n%1")
                        .arg(failures.join("\n")));
    return unsaved == 0;
}

ConflictAnswer BrowserWindow::AskAboutConflict(QString const& fileName)
{
    if (conflictQuestion)
        return conflictQuestion(fileName);
    QMessageBox box(QMessageBox::Question, tr("Metadata Browser"),
                    tr("%1 was changed by another program since it was read.").arg(fileName),
                    QMessageBox::NoButton, this);
    box.setInformativeText(
        tr("Reload shows the other program's version and drops your edits. Overwrite saves your "
           "edits over it. Keep Both saves your edits into a copy beside it and keeps the other "
           "program's change in the file."));
    QAbstractButton* reload = box.addButton(tr("Reload"), QMessageBox::DestructiveRole);
    QAbstractButton* overwrite = box.addButton(tr("Overwrite"), QMessageBox::AcceptRole);
    QAbstractButton* both = box.addButton(tr("Keep Both"), QMessageBox::AcceptRole);
    box.addButton(QMessageBox::Cancel);
    box.setDefaultButton(qobject_cast<QPushButton*>(both));
    box.exec();
    if (box.clickedButton() == reload)
        return ConflictAnswer::kReload;
    if (box.clickedButton() == overwrite)
        return ConflictAnswer::kOverwrite;
    if (box.clickedButton() == both)
        return ConflictAnswer::kKeepBoth;
    return ConflictAnswer::kNotNow;
}

void BrowserWindow::RevertFiles(std::vector<int> const& rows)
{
    for (int row : rows)
    {
        if (Document* document = DocumentAt(row))
            document->Revert();
    }
    UpdateTitle();
    OnSelectionChanged();
}

void BrowserWindow::OnReplaceDamaged()
{
    std::vector<int> const rows = SelectedRows();
    Document* document = rows.size() == 1 ? DocumentAt(rows.front()) : nullptr;
    if (!document || document->Damage().isEmpty())
        return;
    bool const replace =
        replaceQuestion
            ? replaceQuestion(document->FileName(), document->Damage())
            : QMessageBox::question(
                  this, tr("Metadata Browser"),
                  tr("Replace the damaged metadata of %1?\n\n%2\n\nWhat could not be read is "
                     "lost when you save.")
                      .arg(document->FileName(), document->Damage()),
                  QMessageBox::Yes | QMessageBox::Cancel, QMessageBox::Cancel) == QMessageBox::Yes;
    if (!replace)
        return;
    document->ReplaceDamagedPacket();
    OnSelectionChanged();
}

void BrowserWindow::ShowWarning(QString const& text)
{
    lastWarning = text;
    if (warningSink)
        warningSink(text);
    else
        QMessageBox::warning(this, tr("Metadata Browser"), text);
}

void BrowserWindow::closeEvent(QCloseEvent* event)
{
    if (!HasUnsavedChanges())
    {
        event->accept();
        return;
    }
    QMessageBox::StandardButton const answer =
        closeQuestion
            ? closeQuestion()
            : QMessageBox::question(this, tr("Metadata Browser"),
                                    tr("Some files have changes that are not saved. Save them?"),
                                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel,
                                    QMessageBox::Save);
    if (answer == QMessageBox::Cancel || (answer == QMessageBox::Save && !SaveAll()))
        event->ignore();
    else
        event->accept();
}

void BrowserWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void BrowserWindow::dropEvent(QDropEvent* event)
{
    QStringList paths;
    for (QUrl const& url : event->mimeData()->urls())
    {
        if (url.isLocalFile())
            paths << url.toLocalFile();
    }
    Open(paths);
    event->acceptProposedAction();
}

void BrowserWindow::SaveLayoutSettings(QSettings& settings) const
{
    settings.setValue("panels/firstShare", panels->GetSplitterPercentage(true));
    settings.setValue("panels/secondShare", panels->GetSplitterPercentage(false));
    for (int i = 0; i < 3; ++i)
        settings.setValue(QString("panels/open%1").arg(i), panels->GetSectionView(i)->GetOpened());
}

void BrowserWindow::RestoreLayoutSettings(QSettings const& settings)
{
    // Shares that make no sense (a damaged file) leave the defaults.
    bool firstOk = false, secondOk = false;
    float const first = settings.value("panels/firstShare").toFloat(&firstOk);
    float const second = settings.value("panels/secondShare").toFloat(&secondOk);
    if (firstOk && secondOk && first >= 0.0f && second >= 0.0f && first + second <= 1.0f)
    {
        panels->SetSplitterPercentage(true, first);
        panels->SetSplitterPercentage(false, second);
    }
    for (int i = 0; i < 3; ++i)
    {
        QVariant const open = settings.value(QString("panels/open%1").arg(i));
        if (open.isValid())
            panels->GetSectionView(i)->SetOpened(open.toBool());
    }
}

bool BrowserWindow::SaveScreenshots(QString const& folder)
{
    QDir().mkpath(folder);
    bool ok = grab().save(QDir(folder).filePath("browser.png"));
    ok = panelHost->grab().save(QDir(folder).filePath("metadata-panel.png")) && ok;
    ok = formPanel->grab().save(QDir(folder).filePath("form-panel.png")) && ok;
    return ok;
}

} // namespace browser

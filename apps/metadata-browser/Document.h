#pragma once
// One opened file: its path, its summary for the file list, the provider
// read from it while it is in use, and whether the user has changed it since
// it was read or saved. A file nobody shows or edits lets its packet go and
// keeps only the summary; it is read again when wanted.

#include "FileSummary.h"

#include <zephmetadata/FileProvider.h>

#include <QString>

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace browser
{

struct LoadedFile
{
    QString path;
    zephmetadata::xmp::MetaPtr meta; // null when unreadable
    QString error;                   // why it could not be read
    QString damage;                  // why its packet is damaged, when it is
    FileSummary summary;
};

// Reads one file's metadata and its summary. Safe to call on a worker
// thread: it touches no widget and no state shared with the user-interface
// thread; the provider is made on that thread from what was read.
LoadedFile LoadFile(QString const& path, SearchLabels const& labels);

// The newest error-log entry about this file (or its sidecar), for the
// message the user sees; the fallback when there is none. Any thread.
QString LastProblemWith(QString const& path, QString const& fallback);

// One property of one file before and after an edit: the property's whole
// tree (every item and field), or the whole packet when `property` is empty.
struct RecordedChange
{
    std::string schemaNamespace;
    std::string property;
    std::shared_ptr<__XMPMeta__> before; // holds the property, or nothing when it was absent
    std::shared_ptr<__XMPMeta__> after;
    std::uint64_t versionBefore = 0;
    std::uint64_t versionAfter = 0;
};

class Document
{
public:
    // `onModified` runs on the user-interface thread after each change.
    Document(LoadedFile loaded, std::shared_ptr<SearchLabels const> labels,
             std::function<void()> onModified);
    ~Document();
    Document(Document const&) = delete;
    Document& operator=(Document const&) = delete;

    void SetModifiedHandler(std::function<void()> handler) { onModified = std::move(handler); }
    // Where each edit goes, with the values before and after it, so it can
    // be undone; runs on the user-interface thread as the edit finishes.
    void SetEditRecorder(std::function<void(RecordedChange)> recorder)
    {
        onRecorded = std::move(recorder);
    }
    // Puts back one side of a recorded edit (reading the file again first if
    // its packet was let go); not recorded again.
    void Replay(RecordedChange const& change, bool undo);
    // Changes when the edits held in memory stop being the ones recorded
    // (a revert, a reload): recorded edits of an older generation are stale.
    std::uint64_t Generation() const { return generation; }

    QString const& Path() const { return path; }
    QString FileName() const;
    // The file's metadata, read again if it was let go; null when the file
    // cannot be read (see Error()).
    boost::shared_ptr<zephmetadata::FileProvider> const& Provider();
    bool HasPacket() const { return provider != nullptr; }
    // Lets the packet go, keeping the summary: only when the file is not
    // edited and nobody else holds its provider. Whether it went.
    bool ReleasePacket();
    QString const& Error() const { return error; }
    // What the file list shows and searches.
    FileSummary const& Summary() const { return summary; }
    // Makes the summary again from the metadata as it now stands.
    void RefreshSummary();
    bool IsModified() const { return modified; }
    // Why the file's packet is damaged; empty when it is not. A damaged file
    // is shown read-only until the user chooses to replace its packet.
    QString Damage() const;
    void ReplaceDamagedPacket();
    // Why the last save failed; empty once it succeeded, or after a new edit
    // or a revert. Such a file is not tried again on every save.
    QString const& SaveProblem() const { return saveProblem; }

    enum SaveOutcome
    {
        kSaved,
        kFailed,
        // Another program changed the file since it was read: nothing written.
        kConflict,
    };
    // Writes the metadata back, atomically. kSaved with `where` the file
    // written (the file itself or its sidecar); kFailed with SaveProblem()
    // telling why, and the file left as it was.
    SaveOutcome Save(QString& where);
    // The same over another program's change.
    SaveOutcome SaveOverwriting(QString& where);
    // Keeps both versions: our metadata goes into a copy of the file beside
    // it ("name (2).ext"), and the file is read again with the other
    // program's change. The copy's path, or empty (see SaveProblem()).
    QString SaveCopyBeside();
    // Drops the unsaved edits: the file is read again.
    void Revert();
    // The file was written elsewhere (on a worker, from a copy of this
    // metadata) and holds what `written` summarizes: the packet, if held, is
    // read again and nothing is left unsaved. When the copy was changed
    // before it was written, the recorded edits no longer apply to it.
    void AdoptWritten(FileSummary written, bool changedBeforeWriting);
    // A save made elsewhere failed, for this reason.
    void SetSaveProblem(QString const& problem) { saveProblem = problem; }

private:
    friend class RecordingProvider;
    void Adopt(LoadedFile loaded);
    void OnMetadataChanged();
    void OnChangesWritten(std::vector<zephmetadata::Path> const& paths);
    void TakeSnapshot();
    void MarkSaved();
    SaveOutcome Finish(zephmetadata::MetadataSaveResult result, QString& where);

    QString path;
    boost::shared_ptr<zephmetadata::FileProvider> provider;
    QString error;
    QString saveProblem;
    FileSummary summary;
    std::shared_ptr<SearchLabels const> labels;
    bool modified = false;
    bool reloading = false;
    bool replaying = false;
    // The packet as of the last edit seen, for the values before the next.
    zephmetadata::xmp::MetaPtr snapshot;
    // Which recorded edit the packet now reflects, and which the file does.
    std::uint64_t version = 0;
    std::uint64_t savedVersion = 0;
    bool changedUnrecorded = false;
    std::uint64_t generation = 0;
    std::function<void(RecordedChange)> onRecorded;
    std::function<void()> onModified;
    boost::shared_ptr<boost::function<void(__XMPMeta__*)>> changeListener;
};

} // namespace browser

#pragma once
// One opened file: its path, the provider read from it off the user-interface
// thread, and whether the user has changed it since it was read or saved.

#include "FileSummary.h"

#include <zephmetadata/FileProvider.h>

#include <QString>

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>
#include <functional>

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

    QString const& Path() const { return path; }
    QString FileName() const;
    boost::shared_ptr<zephmetadata::FileProvider> const& Provider() const { return provider; }
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

private:
    void OnMetadataChanged();
    SaveOutcome Finish(zephmetadata::MetadataSaveResult result, QString& where);

    QString path;
    boost::shared_ptr<zephmetadata::FileProvider> provider;
    QString error;
    QString saveProblem;
    FileSummary summary;
    std::shared_ptr<SearchLabels const> labels;
    bool modified = false;
    bool reloading = false;
    std::function<void()> onModified;
    boost::shared_ptr<boost::function<void(__XMPMeta__*)>> changeListener;
};

} // namespace browser

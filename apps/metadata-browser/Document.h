#pragma once
// One opened file: its path, the provider read from it off the user-interface
// thread, and whether the user has changed it since it was read or saved.

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
};

// Reads one file's metadata. Safe to call on a worker thread: it touches no
// widget and no state shared with the user-interface thread; the provider is
// made on that thread from what was read.
LoadedFile LoadFile(QString const& path);

class Document
{
public:
    // `onModified` runs on the user-interface thread after each change.
    Document(LoadedFile loaded, std::function<void()> onModified);
    ~Document();
    Document(Document const&) = delete;
    Document& operator=(Document const&) = delete;

    QString const& Path() const { return path; }
    QString FileName() const;
    boost::shared_ptr<zephmetadata::FileProvider> const& Provider() const { return provider; }
    QString const& Error() const { return error; }
    bool IsModified() const { return modified; }

    // Writes the metadata back, atomically. True on success, with `where` the
    // file written (the file itself or its ".xmp" sidecar); false with
    // `problem` telling why, and the file left as it was.
    bool Save(QString& where, QString& problem);

private:
    void OnMetadataChanged();

    QString path;
    boost::shared_ptr<zephmetadata::FileProvider> provider;
    QString error;
    bool modified = false;
    std::function<void()> onModified;
    boost::shared_ptr<boost::function<void(__XMPMeta__*)>> changeListener;
};

} // namespace browser

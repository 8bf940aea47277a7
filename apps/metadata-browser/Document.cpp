#include "Document.h"

#include <zephcore/QtStrings.h>

#include <zephmetadata/Access.h>
#include <zephmetadata/ErrorLog.h>
#include <zephmetadata/FileProvider.h>
#include <zephmetadata/Values.h>

#include <QDir>
#include <QFileInfo>
#include <QObject>

#include <boost/make_shared.hpp>

namespace browser
{

namespace
{

std::uint64_t NextVersion()
{
    static std::uint64_t last = 0;
    return ++last;
}

std::shared_ptr<__XMPMeta__> Shared(zephmetadata::xmp::MetaPtr meta)
{
    return std::shared_ptr<__XMPMeta__>(meta.release(), zephmetadata::xmp::MetaDeleter());
}

// The top-level property a path lies in, with its prefix ("Tracks[1]/xmpDM:markers"
// -> "xmpDM:Tracks"): what an edit of the path may have changed, items added
// or removed included. The tree's walks want the prefix; paths may omit it.
std::string PropertyOf(std::string const& schemaNamespace, std::string const& path)
{
    std::string property = path.substr(0, path.find_first_of("/["));
    if (property.find(':') == std::string::npos && !property.empty())
    {
        std::string const prefix = zephmetadata::xmp::NamespacePrefix(schemaNamespace.c_str());
        if (!prefix.empty())
            property = prefix + ":" + property;
    }
    return property;
}

// A tree holding only that property of meta, or nothing.
std::shared_ptr<__XMPMeta__> PropertyCopy(__XMPMeta__* meta, std::string const& schemaNamespace,
                                          std::string const& property)
{
    zephmetadata::xmp::MetaPtr copy = zephmetadata::xmp::NewMeta();
    if (property.empty())
        zephmetadata::xmp::CopyTree(meta, copy.get());
    else
        zephmetadata::xmp::CopyProperty(meta, copy.get(), schemaNamespace.c_str(),
                                        property.c_str());
    return Shared(std::move(copy));
}

} // namespace

QString LastProblemWith(QString const& path, QString const& fallback)
{
    std::vector<zephmetadata::ErrorInfo> const errors = zephmetadata::GetErrorInfos();
    for (auto it = errors.rbegin(); it != errors.rend(); ++it)
    {
        QString const source = zephcore::ToQString(it->source);
        if (source == path ||
            source == zephcore::ToQString(zephmetadata::SidecarPathFor(zephcore::ToUTF16(path))))
            return zephcore::ToQString(it->message);
    }
    return fallback;
}

// Hears which paths each finished edit changed.
class RecordingProvider : public zephmetadata::FileProvider
{
public:
    RecordingProvider(Document& document, zephmetadata::xmp::MetaPtr meta,
                      zephcore::UTF16String const& damage)
        : FileProvider(zephcore::ToUTF16(document.path), std::move(meta), damage),
          document(document)
    {
    }

protected:
    void DoWriteChanges(std::vector<zephmetadata::Path> const& paths) override
    {
        document.OnChangesWritten(paths);
        FileProvider::DoWriteChanges(paths);
    }

private:
    Document& document;
};

LoadedFile LoadFile(QString const& path, SearchLabels const& labels)
{
    LoadedFile loaded;
    loaded.path = path;
    zephmetadata::FileReadOutcome outcome =
        zephmetadata::ReadMetadataFromFileQuietly(zephcore::ToUTF16(path));
    loaded.summary = SummarizeFile(path, outcome.meta.get(), labels);
    if (!outcome.meta)
    {
        loaded.error = loaded.summary.error = zephcore::ToQString(outcome.problem);
        return loaded;
    }
    loaded.meta = std::move(outcome.meta);
    loaded.damage = loaded.summary.damage = zephcore::ToQString(outcome.damage);
    return loaded;
}

Document::Document(LoadedFile loaded, std::shared_ptr<SearchLabels const> labels,
                   std::function<void()> onModified)
    : path(loaded.path), labels(std::move(labels)), onModified(std::move(onModified))
{
    Adopt(std::move(loaded));
}

Document::~Document()
{
    // Emptied in place: the provider still lists the holder, and skips it.
    if (changeListener)
        changeListener->clear();
}

void Document::Adopt(LoadedFile loaded)
{
    error = loaded.error;
    summary = std::move(loaded.summary);
    if (loaded.meta)
    {
        provider = boost::make_shared<RecordingProvider>(*this, std::move(loaded.meta),
                                                         zephcore::ToUTF16(loaded.damage));
        TakeSnapshot();
        changeListener = boost::make_shared<boost::function<void(__XMPMeta__*)>>(
            [this](__XMPMeta__*) { OnMetadataChanged(); });
        provider->NotifyWhenMetaDataChanged(changeListener);
    }
}

boost::shared_ptr<zephmetadata::FileProvider> const& Document::Provider()
{
    // An unreadable file is tried again too: it may have been mended.
    if (!provider)
        Adopt(LoadFile(path, *labels));
    return provider;
}

bool Document::ReleasePacket()
{
    if (!provider || modified || provider.use_count() > 1 || provider->IsReplacingDamagedPacket())
        return false;
    provider->RemoveMetaDataChangedNotification(changeListener);
    changeListener->clear();
    changeListener.reset();
    provider.reset();
    snapshot.reset();
    return true;
}

QString Document::FileName() const
{
    return QFileInfo(path).fileName();
}

QString Document::Damage() const
{
    return provider ? zephcore::ToQString(provider->DamagedPacketReason()) : summary.damage;
}

void Document::RefreshSummary()
{
    if (!provider)
        return;
    zephmetadata::MetaDataReadAccess access(provider);
    FileSummary fresh = SummarizeFile(path, *access, *labels);
    fresh.error = error;
    fresh.damage = Damage();
    summary = std::move(fresh);
}

void Document::ReplaceDamagedPacket()
{
    // The provider tells its listeners: the file then counts as changed, so
    // the next save writes the new packet.
    if (provider)
        provider->ReplaceDamagedPacket();
}

void Document::TakeSnapshot()
{
    zephmetadata::MetaDataReadAccess access(provider);
    snapshot = zephmetadata::xmp::Clone(*access);
}

void Document::OnChangesWritten(std::vector<zephmetadata::Path> const& paths)
{
    zephmetadata::MetaDataReadAccess access(provider);
    __XMPMeta__* now = *access;
    if (!snapshot || !now)
        return;
    std::vector<RecordedChange> changes;
    for (zephmetadata::Path const& path : paths)
    {
        RecordedChange change;
        change.schemaNamespace = zephcore::ToStdString(path.schemaNamespace);
        change.property =
            PropertyOf(change.schemaNamespace, zephcore::ToStdString(path.propertyName));
        // An edit that names no property may have changed any of them.
        if (change.schemaNamespace.empty())
            change.property.clear();
        bool const seen = std::any_of(changes.begin(), changes.end(),
                                      [&](auto const& known) {
                                          return known.schemaNamespace == change.schemaNamespace &&
                                                 known.property == change.property;
                                      });
        if (seen)
            continue;
        change.before = PropertyCopy(snapshot.get(), change.schemaNamespace, change.property);
        change.after = PropertyCopy(now, change.schemaNamespace, change.property);
        if (change.property.empty())
            zephmetadata::xmp::CopyTree(now, snapshot.get());
        else if (!zephmetadata::xmp::CopyProperty(
                     now, snapshot.get(), change.schemaNamespace.c_str(), change.property.c_str()))
        {
            std::uint32_t options = 0;
            if (!zephmetadata::xmp::NodeOptionsOf(now, change.schemaNamespace.c_str(),
                                                  change.property.c_str(), options))
                zephmetadata::DeleteValue(
                    snapshot.get(),
                    zephmetadata::Path(path.schemaNamespace, zephcore::ToUTF8(change.property)));
        }
        changes.push_back(std::move(change));
    }
    if (replaying)
        return;
    for (RecordedChange& change : changes)
    {
        change.versionBefore = version;
        change.versionAfter = version = NextVersion();
        if (onRecorded)
            onRecorded(std::move(change));
    }
}

void Document::Replay(RecordedChange const& change, bool undo)
{
    auto const& target = Provider();
    if (!target)
        return;
    __XMPMeta__* from = (undo ? change.before : change.after).get();
    replaying = true;
    {
        zephmetadata::MetaDataUpdateAccess access(target);
        zephmetadata::Path const path(zephcore::ToUTF8(change.schemaNamespace),
                                      zephcore::ToUTF8(change.property));
        std::uint32_t options = 0;
        if (change.property.empty())
            zephmetadata::xmp::CopyTree(from, *access);
        else if (zephmetadata::xmp::NodeOptionsOf(from, change.schemaNamespace.c_str(),
                                                  change.property.c_str(), options))
            zephmetadata::xmp::CopyProperty(from, *access, change.schemaNamespace.c_str(),
                                            change.property.c_str());
        else
            zephmetadata::DeleteValue(*access, path);
        access.AddChange(path);
        version = undo ? change.versionBefore : change.versionAfter;
    }
    replaying = false;
}

void Document::OnMetadataChanged()
{
    if (reloading)
        return;
    // An edit through an update access was recorded, with its version; any
    // other change (a replaced damaged packet) counts until the next save.
    if (!replaying && version == savedVersion)
        changedUnrecorded = true;
    modified = version != savedVersion || changedUnrecorded;
    saveProblem.clear();
    if (onModified)
        onModified();
}

void Document::MarkSaved()
{
    savedVersion = version;
    changedUnrecorded = false;
    modified = false;
}

Document::SaveOutcome Document::Finish(zephmetadata::MetadataSaveResult result, QString& where)
{
    switch (result)
    {
    case zephmetadata::kMetadataSavedIntoFile:
        where = path;
        break;
    case zephmetadata::kMetadataSavedIntoSidecar:
        where = zephcore::ToQString(zephmetadata::SidecarPathFor(zephcore::ToUTF16(path)));
        break;
    case zephmetadata::kMetadataSaveFailed:
        saveProblem = LastProblemWith(path, QObject::tr("The file could not be written."));
        return kFailed;
    case zephmetadata::kMetadataSaveConflict:
        return kConflict;
    }
    MarkSaved();
    saveProblem.clear();
    RefreshSummary();
    if (onModified)
        onModified();
    return kSaved;
}

Document::SaveOutcome Document::Save(QString& where)
{
    if (!provider)
    {
        saveProblem = error;
        return kFailed;
    }
    return Finish(provider->Save(), where);
}

Document::SaveOutcome Document::SaveOverwriting(QString& where)
{
    if (!provider)
        return Save(where);
    return Finish(provider->SaveOverwritingChanges(), where);
}

QString Document::SaveCopyBeside()
{
    if (!provider)
        return QString();
    QFileInfo const info(path);
    QString const suffix = info.suffix().isEmpty() ? QString() : "." + info.suffix();
    QString copy;
    // A free name, also for the sidecar the copy may get.
    for (int n = 2; copy.isEmpty() || QFileInfo::exists(copy) || QFileInfo::exists(copy + ".xmp");
         ++n)
        copy = info.dir().filePath(
            QStringLiteral("%1 (%2)%3").arg(info.completeBaseName()).arg(n).arg(suffix));
    zephmetadata::MetadataSaveResult result = zephmetadata::kMetadataSaveFailed;
    if (QFile::copy(path, copy))
    {
        zephmetadata::MetaDataReadAccess access(provider);
        result = zephmetadata::SaveMetadataToFile(*access, zephcore::ToUTF16(copy),
                                                  provider->IsReplacingDamagedPacket());
    }
    if (result == zephmetadata::kMetadataSaveFailed)
    {
        saveProblem = LastProblemWith(
            copy, QObject::tr("The copy %1 could not be written.").arg(QFileInfo(copy).fileName()));
        QFile::remove(copy);
        return QString();
    }
    Revert();
    return copy;
}

void Document::Revert()
{
    if (provider)
    {
        reloading = true;
        provider->Reload();
        reloading = false;
        TakeSnapshot();
    }
    ++generation;
    RefreshSummary();
    MarkSaved();
    saveProblem.clear();
    if (onModified)
        onModified();
}

void Document::AdoptWritten(FileSummary written, bool changedBeforeWriting)
{
    if (provider)
    {
        reloading = true;
        provider->Reload();
        reloading = false;
        TakeSnapshot();
    }
    if (changedBeforeWriting)
        ++generation;
    error.clear();
    summary = std::move(written);
    RefreshSummary();
    MarkSaved();
    saveProblem.clear();
    if (onModified)
        onModified();
}

} // namespace browser

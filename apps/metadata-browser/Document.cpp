#include "Document.h"

#include <zephmetadata/Access.h>
#include <zephmetadata/ErrorLog.h>
#include <zephmetadata/FileProvider.h>

#include <QDir>
#include <QFileInfo>
#include <QObject>

#include <boost/make_shared.hpp>

namespace browser
{

namespace
{

zephcore::UTF16String ToUTF16(QString const& text)
{
    return zephcore::UTF16String(reinterpret_cast<unsigned short const*>(text.utf16()),
                                 std::size_t(text.size()));
}

QString FromUTF16(zephcore::UTF16String const& text)
{
    return QString(reinterpret_cast<QChar const*>(text.data()), qsizetype(text.size()));
}

// The newest error-log entry about this file, for the message the user sees.
QString LastProblemWith(QString const& path, QString const& fallback)
{
    std::vector<zephmetadata::ErrorInfo> const errors = zephmetadata::GetErrorInfos();
    for (auto it = errors.rbegin(); it != errors.rend(); ++it)
    {
        QString const source = FromUTF16(it->source);
        if (source == path || source == FromUTF16(zephmetadata::SidecarPathFor(ToUTF16(path))))
            return FromUTF16(it->message);
    }
    return fallback;
}

} // namespace

LoadedFile LoadFile(QString const& path, SearchLabels const& labels)
{
    LoadedFile loaded;
    loaded.path = path;
    zephmetadata::FileReadOutcome outcome =
        zephmetadata::ReadMetadataFromFileQuietly(ToUTF16(path));
    loaded.summary = SummarizeFile(path, outcome.meta.get(), labels);
    if (!outcome.meta)
    {
        loaded.error = loaded.summary.error = FromUTF16(outcome.problem);
        return loaded;
    }
    loaded.meta = std::move(outcome.meta);
    loaded.damage = loaded.summary.damage = FromUTF16(outcome.damage);
    return loaded;
}

Document::Document(LoadedFile loaded, std::shared_ptr<SearchLabels const> labels,
                   std::function<void()> onModified)
    : path(loaded.path), error(loaded.error), summary(std::move(loaded.summary)),
      labels(std::move(labels)), onModified(std::move(onModified))
{
    if (loaded.meta)
    {
        provider = boost::make_shared<zephmetadata::FileProvider>(
            ToUTF16(path), std::move(loaded.meta), ToUTF16(loaded.damage));
        changeListener = boost::make_shared<boost::function<void(__XMPMeta__*)>>(
            [this](__XMPMeta__*) { OnMetadataChanged(); });
        provider->NotifyWhenMetaDataChanged(changeListener);
    }
}

Document::~Document()
{
    // Emptied in place: the provider still lists the holder, and skips it.
    if (changeListener)
        changeListener->clear();
}

QString Document::FileName() const
{
    return QFileInfo(path).fileName();
}

QString Document::Damage() const
{
    return provider ? FromUTF16(provider->DamagedPacketReason()) : QString();
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

void Document::OnMetadataChanged()
{
    if (reloading)
        return;
    modified = true;
    saveProblem.clear();
    if (onModified)
        onModified();
}

Document::SaveOutcome Document::Finish(zephmetadata::MetadataSaveResult result, QString& where)
{
    switch (result)
    {
    case zephmetadata::kMetadataSavedIntoFile:
        where = path;
        break;
    case zephmetadata::kMetadataSavedIntoSidecar:
        where = FromUTF16(zephmetadata::SidecarPathFor(ToUTF16(path)));
        break;
    case zephmetadata::kMetadataSaveFailed:
        saveProblem = LastProblemWith(path, QObject::tr("The file could not be written."));
        return kFailed;
    case zephmetadata::kMetadataSaveConflict:
        return kConflict;
    }
    modified = false;
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
        result = zephmetadata::SaveMetadataToFile(*access, ToUTF16(copy),
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
    }
    RefreshSummary();
    modified = false;
    saveProblem.clear();
    if (onModified)
        onModified();
}

} // namespace browser

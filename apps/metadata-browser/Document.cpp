#include "Document.h"

#include <zephmetadata/ErrorLog.h>
#include <zephmetadata/FileProvider.h>

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

LoadedFile LoadFile(QString const& path)
{
    LoadedFile loaded;
    loaded.path = path;
    zephmetadata::FileReadOutcome outcome =
        zephmetadata::ReadMetadataFromFileQuietly(ToUTF16(path));
    if (!outcome.meta)
    {
        loaded.error = FromUTF16(outcome.problem);
        return loaded;
    }
    loaded.meta = std::move(outcome.meta);
    return loaded;
}

Document::Document(LoadedFile loaded, std::function<void()> onModified)
    : path(loaded.path), error(loaded.error), onModified(std::move(onModified))
{
    if (loaded.meta)
    {
        provider =
            boost::make_shared<zephmetadata::FileProvider>(ToUTF16(path), std::move(loaded.meta));
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

void Document::OnMetadataChanged()
{
    modified = true;
    if (onModified)
        onModified();
}

bool Document::Save(QString& where, QString& problem)
{
    if (!provider)
    {
        problem = error;
        return false;
    }
    switch (provider->Save())
    {
    case zephmetadata::kMetadataSavedIntoFile:
        where = path;
        break;
    case zephmetadata::kMetadataSavedIntoSidecar:
        where = FromUTF16(zephmetadata::SidecarPathFor(ToUTF16(path)));
        break;
    case zephmetadata::kMetadataSaveFailed:
        problem = LastProblemWith(path, QObject::tr("The file could not be written."));
        return false;
    case zephmetadata::kMetadataSaveConflict:
        problem =
            QObject::tr("Another program changed the file since it was read; it was not saved.");
        return false;
    }
    modified = false;
    return true;
}

} // namespace browser

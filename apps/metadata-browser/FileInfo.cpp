#include "FileInfo.h"

#include <zephcore/QtStrings.h>

#include <QStringList>

namespace browser
{

namespace
{

QString KeyOf(std::string const& key)
{
    return QStringLiteral("FileInfo/") + QString::fromStdString(key);
}

} // namespace

QVariant FileInfoSettings::Read(std::string const& key) const
{
    return settings.value(KeyOf(key));
}

void FileInfoSettings::Write(std::string const& key, QVariant const& value)
{
    settings.setValue(KeyOf(key), value);
}

void FileInfoSettings::GetInt(std::string const& key, int& value)
{
    bool ok = false;
    int const stored = Read(key).toInt(&ok);
    if (ok)
        value = stored;
}

void FileInfoSettings::GetBool(std::string const& key, bool& value)
{
    QVariant const stored = Read(key);
    if (stored.isValid())
        value = stored.toBool();
}

bool FileInfoSettings::GetStringList(std::string const& key, std::vector<std::string>& value)
{
    if (!settings.contains(KeyOf(key)))
        return false;
    value.clear();
    for (QString const& item : Read(key).toStringList())
        value.push_back(item.toStdString());
    return true;
}

void FileInfoSettings::GetString(std::string const& key, std::string& value)
{
    QVariant const stored = Read(key);
    if (stored.isValid())
        value = stored.toString().toStdString();
}

void FileInfoSettings::SetInt(std::string const& key, int value)
{
    Write(key, value);
}

void FileInfoSettings::SetBool(std::string const& key, bool value)
{
    Write(key, value);
}

void FileInfoSettings::SetStringList(std::string const& key, std::vector<std::string> const& value)
{
    QStringList list;
    for (std::string const& item : value)
        list.push_back(QString::fromStdString(item));
    Write(key, list);
}

void FileInfoSettings::SetString(std::string const& key, std::string const& value)
{
    Write(key, QString::fromStdString(value));
}

bool RunFileInfo(QWidget* parent, boost::shared_ptr<zephmetadata::MetaDataProvider> provider,
                 QString const& title, QSettings& settings)
{
    FileInfoSettings choices(settings);
    zephmetadataui::MetadataDialogParameters parameters;
    parameters.title = zephcore::ToUTF16(title);
    parameters.settings = &choices;
    return zephmetadataui::DoMetadataDialog(std::move(provider), parent, parameters);
}

} // namespace browser

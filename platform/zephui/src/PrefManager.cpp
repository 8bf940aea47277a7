#include "zephui/PrefManager.h"

#include "zephcore/Files.h"
#include "zephcore/QtStrings.h"

#include <QFile>
#include <QSettings>
#include <QStringList>

#include <cmath>

namespace zephui
{

namespace
{

zephcore::UTF16String& SettingsPath()
{
    static zephcore::UTF16String path = zephcore::FileUtils::BuildPathSpec(
        zephcore::Dir::GlobalPrefDir().FullPath(), zephcore::ToUTF16("zephui/WindowPlaces.ini"));
    return path;
}

std::unique_ptr<PrefManager>& Instance()
{
    static std::unique_ptr<PrefManager> instance;
    return instance;
}

// Ids may hold any character; the settings file's key syntax does not.
QString KeyFor(zephcore::UTF16String const& id)
{
    return QStringLiteral("windows/") +
           QString::fromLatin1(zephcore::ToQString(id).toUtf8().toHex());
}

} // namespace

PrefManager* PrefManager::GetPrefManager(bool create)
{
    if (!Instance() && create)
        Instance().reset(new PrefManager(SettingsPath()));
    return Instance().get();
}

void PrefManager::SetSettingsFile(zephcore::UTF16String const& path)
{
    SettingsPath() = path;
    if (Instance())
        Instance().reset(new PrefManager(path));
}

zephcore::UTF16String PrefManager::GetSettingsFile()
{
    return SettingsPath();
}

PrefManager::PrefManager(zephcore::UTF16String const& path)
    : settings(std::make_unique<QSettings>(zephcore::ToQString(path), QSettings::IniFormat))
{
    static_cast<void>(settings->allKeys()); // reads the file, which QSettings does only when asked
    if (settings->status() != QSettings::FormatError)
        return;
    // A file that doesn't parse would never be written again: keep it aside
    // for whoever wants to look, and start afresh.
    QString const file = zephcore::ToQString(path);
    QFile::remove(file + QStringLiteral(".damaged"));
    QFile::rename(file, file + QStringLiteral(".damaged"));
    settings = std::make_unique<QSettings>(file, QSettings::IniFormat);
}

PrefManager::~PrefManager() = default;

bool PrefManager::GetWindowPositionAndSize(zephcore::UTF16String const& id, RectF& rect) const
{
    QStringList const parts = settings->value(KeyFor(id)).toString().split(QLatin1Char(' '));
    if (parts.size() != 4)
        return false;
    float values[4];
    for (int i = 0; i < 4; ++i)
    {
        bool ok = false;
        values[i] = parts[i].toFloat(&ok);
        if (!ok || !std::isfinite(values[i]))
            return false;
    }
    rect = RectF(values[0], values[1], values[2], values[3]);
    return true;
}

bool PrefManager::SetWindowPositionAndSize(zephcore::UTF16String const& id, RectF const& rect)
{
    settings->setValue(KeyFor(id), QStringLiteral("%1 %2 %3 %4")
                                       .arg(double(rect.left))
                                       .arg(double(rect.top))
                                       .arg(double(rect.width))
                                       .arg(double(rect.height)));
    settings->sync();
    return settings->status() == QSettings::NoError;
}

} // namespace zephui

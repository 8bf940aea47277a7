#include "zephui/ResourceManager.h"

#include "zephui/UI_NodeManager.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>

#include <algorithm>
#include <map>

namespace zephui
{

namespace
{

std::string Upper(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return char(std::toupper(c)); });
    return text;
}

} // namespace

void ResourceManager::DisplayCursor(int shape) const
{
    UI_NodeManager::Get()->DisplayCursor(shape);
}

// Per type (upper case): name without extension (upper case) to file path.
struct OS_ResourceManager::Index
{
    std::map<std::string, std::map<std::string, std::string>> types;
    std::map<std::string, bool> scanned;
};

OS_ResourceManager::OS_ResourceManager(std::string rootPath)
    : root(std::move(rootPath)), index(new Index)
{
}

OS_ResourceManager::OS_ResourceManager(void const* addressInLibrary)
    : root(RootForAddress(addressInLibrary)), index(new Index)
{
}

OS_ResourceManager::~OS_ResourceManager() = default;

std::string OS_ResourceManager::RootForAddress(void const* addressInLibrary)
{
    Dl_info info{};
    if (!addressInLibrary || dladdr(addressInLibrary, &info) == 0 || !info.dli_fname)
        return std::string();
    QString name = QFileInfo(QString::fromLocal8Bit(info.dli_fname)).fileName();
    if (name.startsWith(QLatin1String("lib")))
        name = name.mid(3);
    int const dot = name.indexOf(QLatin1Char('.'));
    if (dot > 0)
        name = name.left(dot);
    return ":/" + name.toStdString();
}

std::string OS_ResourceManager::FindPath(std::string const& type, std::string const& name) const
{
    if (root.empty())
        return std::string();
    std::string const typeKey = Upper(type);
    if (!index->scanned[typeKey])
    {
        index->scanned[typeKey] = true;
        QDir const base(QString::fromStdString(root));
        std::map<std::string, std::string>& names = index->types[typeKey];
        // The type's folder is matched without regard to case too.
        for (QFileInfo const& folder : base.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot))
        {
            if (Upper(folder.fileName().toStdString()) != typeKey)
                continue;
            for (QFileInfo const& file : QDir(folder.filePath()).entryInfoList(QDir::Files))
                names[Upper(file.completeBaseName().toStdString())] = file.filePath().toStdString();
        }
    }
    auto const& names = index->types[typeKey];
    auto it = names.find(Upper(name));
    return it != names.end() ? it->second : std::string();
}

bool OS_ResourceManager::GetBinary(std::string const& type, std::string const& name,
                                   std::vector<std::uint8_t>& data) const
{
    data.clear();
    std::string const path = FindPath(type, name);
    if (path.empty())
        return false;
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QByteArray const bytes = file.readAll();
    data.assign(reinterpret_cast<std::uint8_t const*>(bytes.constData()),
                reinterpret_cast<std::uint8_t const*>(bytes.constData()) + bytes.size());
    return true;
}

bool OS_ResourceManager::HasBinary(std::string const& type, std::string const& name) const
{
    return !FindPath(type, name).empty();
}

void OS_ResourceManager::GetResourceDataNames(std::string const& type,
                                              std::vector<std::string>& names) const
{
    names.clear();
    FindPath(type, std::string());
    auto it = index->types.find(Upper(type));
    if (it == index->types.end())
        return;
    for (auto const& entry : it->second)
        names.push_back(entry.first); // the map keeps them sorted
}

} // namespace zephui

#include "zephcore/Files.h"

#include "zephcore/QtStrings.h"
#include "zephcore/ReplacementFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUuid>

namespace zephcore
{

namespace
{

QString Q(UTF16String const& path)
{
    return ToQString(NormalizePath(path));
}

class FileByteStream : public IPlatformByteStream
{
public:
    explicit FileByteStream(QString const& path) : file(path) {}
    bool Open() { return file.open(QIODevice::ReadOnly); }
    std::uint64_t Length() const override { return std::uint64_t(file.size()); }
    std::uint64_t ReadBlock(void* buffer, std::uint64_t count) override
    {
        qint64 const read = file.read(static_cast<char*>(buffer), qint64(count));
        return read < 0 ? 0 : std::uint64_t(read);
    }

private:
    QFile file;
};

} // namespace

UTF16String NormalizePath(UTF16String const& path)
{
    UTF16String out = path;
    for (auto& c : out)
    {
        if (c == '\\')
            c = '/';
    }
    while (out.size() > 1 && out.back() == '/')
        out.pop_back();
    return out;
}

Dir::Dir(UTF16String path) : path(NormalizePath(path)) {}

Dir Dir::GlobalPrefDir()
{
    return Dir(ToUTF16(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)));
}

UTF16String Dir::GetName() const
{
    return FileUtils::GetPathFileName(path);
}

Dir Dir::Parent() const
{
    if (IsTopLevelDir())
        return *this;
    return Dir(ToUTF16(QFileInfo(ToQString(path)).absolutePath()));
}

Dir Dir::SubDir(UTF16String const& name) const
{
    return Dir(FileUtils::BuildPathSpec(path, name));
}

bool Dir::Exists() const
{
    return !path.empty() && QFileInfo(ToQString(path)).isDir();
}

bool Dir::IsTopLevelDir() const
{
    return QDir(ToQString(path)).isRoot();
}

bool Dir::Create() const
{
    return !path.empty() && (Exists() || QDir().mkdir(ToQString(path)));
}

File::File(UTF16String path) : path(NormalizePath(path)) {}

UTF16String File::GetName() const
{
    return FileUtils::GetPathFileName(path);
}

Dir File::GetParent() const
{
    return Dir(ToUTF16(QFileInfo(ToQString(path)).absolutePath()));
}

bool File::Exists() const
{
    return FileUtils::FileExists(path);
}

std::unique_ptr<IPlatformByteStream> OpenReadStream(UTF16String const& path)
{
    auto stream = std::make_unique<FileByteStream>(Q(path));
    if (!stream->Open())
        return nullptr;
    return stream;
}

Guid Guid::CreateUnique()
{
    Guid guid;
    QByteArray const raw = QUuid::createUuid().toRfc4122();
    std::copy(raw.begin(), raw.begin() + 16, guid.bytes);
    return guid;
}

UTF16String Guid::AsString() const
{
    static char const digits[] = "0123456789abcdef";
    UTF16String out;
    for (unsigned char b : bytes)
    {
        out.push_back(static_cast<unsigned short>(digits[b >> 4]));
        out.push_back(static_cast<unsigned short>(digits[b & 15]));
    }
    return out;
}

namespace FileUtils
{

bool FileExists(UTF16String const& path)
{
    QFileInfo const info(Q(path));
    return !path.empty() && info.exists() && !info.isDir();
}

bool EnsureDirectoryExists(UTF16String const& path)
{
    return !path.empty() && QDir().mkpath(Q(path));
}

std::vector<UTF16String> ContainedFiles(UTF16String const& folder)
{
    std::vector<UTF16String> files;
    QDir const dir(Q(folder));
    for (QFileInfo const& info : dir.entryInfoList(QDir::Files | QDir::Hidden, QDir::Unsorted))
        files.push_back(ToUTF16(info.absoluteFilePath()));
    return files;
}

UTF16String GetPathFileName(UTF16String const& path)
{
    UTF16String const normal = NormalizePath(path);
    auto const slash = normal.find_last_of('/');
    return slash == UTF16String::npos ? normal : normal.substr(slash + 1);
}

UTF16String BuildPathSpec(UTF16String const& folder, UTF16String const& name)
{
    UTF16String const base = NormalizePath(folder);
    if (base.empty())
        return NormalizePath(name);
    UTF16String tail = NormalizePath(name);
    while (!tail.empty() && tail.front() == '/')
        tail.erase(0, 1);
    return base.back() == '/' ? base + tail : base + static_cast<unsigned short>('/') + tail;
}

bool SimpleWriteStringToFile(UTF16String const& path, std::string const& data)
{
    // Every write and the flush to disk are checked before the rename: a
    // full disk must not put a short file in place of the old one.
    ReplacementFile file(path);
    return file.Begin(false) && file.Write(data.data(), data.size()) && file.Commit();
}

bool ReadFileToString(UTF16String const& path, std::string& data)
{
    QFile file(Q(path));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QByteArray const bytes = file.readAll();
    data.assign(bytes.constData(), std::size_t(bytes.size()));
    return file.error() == QFileDevice::NoError;
}

bool RemoveFile(UTF16String const& path)
{
    return QFile::remove(Q(path));
}

UTF16String ReplaceIllegalFileNameCharacters(UTF16String const& name,
                                             UTF16String::value_type replacement)
{
    UTF16String out = name;
    for (auto& c : out)
    {
        if (c < 0x20 || c == '/' || c == '\\' || c == ':' || c == '*' || c == '?' || c == '"' ||
            c == '<' || c == '>' || c == '|')
            c = replacement;
    }
    return out;
}

} // namespace FileUtils
} // namespace zephcore

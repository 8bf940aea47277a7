#include "zephcore/ReplacementFile.h"

#include "zephcore/Files.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <mutex>
#include <random>
#include <unordered_map>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace zephcore
{

namespace
{

namespace fs = std::filesystem;

// Names are ".zeph-HHHHHHHH-RRRRRR.ext": a hash of the target's name, so a
// later save of that file finds them, and short, so a name near the 255-byte
// limit can still be saved. The extension stays last: some writers pick
// their handler by it.
constexpr char kPrefix[] = ".zeph-";
constexpr std::size_t kRandomLength = 6;
constexpr std::size_t kLongestKeptExtension = 16;

std::string NameHash(std::string const& name)
{
    std::uint32_t hash = 2166136261u;
    for (unsigned char c : name)
        hash = (hash ^ c) * 16777619u;
    char text[9];
    std::snprintf(text, sizeof text, "%08x", hash);
    return text;
}

std::string KeptExtension(fs::path const& target)
{
    std::string const extension = target.extension().string();
    return extension.size() <= kLongestKeptExtension ? extension : std::string();
}

std::string RandomPart()
{
    static char const alphabet[] = "abcdefghijklmnopqrstuvwxyz0123456789";
    thread_local std::mt19937_64 generator(std::random_device{}());
    std::string part;
    for (std::size_t i = 0; i < kRandomLength; ++i)
        part.push_back(alphabet[generator() % (sizeof alphabet - 1)]);
    return part;
}

bool IsRandomPart(std::string const& text)
{
    if (text.size() != kRandomLength)
        return false;
    for (char c : text)
    {
        if (!((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')))
            return false;
    }
    return true;
}

bool IsDigits(std::string const& text)
{
    if (text.empty())
        return false;
    for (char c : text)
    {
        if (c < '0' || c > '9')
            return false;
    }
    return true;
}

// Ours: the present pattern, and the longer one earlier versions used
// (".a.jpg.zeph-save-N.jpg").
bool IsReplacementOf(std::string const& entry, fs::path const& target)
{
    std::string const name = target.filename().string();
    std::string const extension = KeptExtension(target);
    if (entry.size() < extension.size() ||
        entry.compare(entry.size() - extension.size(), extension.size(), extension) != 0)
        return false;
    std::string const stem = entry.substr(0, entry.size() - extension.size());
    std::string const present = kPrefix + NameHash(name) + "-";
    if (stem.rfind(present, 0) == 0)
        return IsRandomPart(stem.substr(present.size()));
    std::string const earlier = "." + name + ".zeph-save-";
    std::string const earlierExtension = target.extension().string();
    if (entry.size() < earlierExtension.size())
        return false;
    std::string const earlierStem = entry.substr(0, entry.size() - earlierExtension.size());
    return entry.compare(entry.size() - earlierExtension.size(), earlierExtension.size(),
                         earlierExtension) == 0 &&
           earlierStem.rfind(earlier, 0) == 0 && IsDigits(earlierStem.substr(earlier.size()));
}

// Follows symbolic links to the file they name, which need not exist yet.
// Empty for a loop.
std::string FollowLinks(std::string path)
{
    for (int depth = 0; depth < 40; ++depth)
    {
        struct stat info;
        if (::lstat(path.c_str(), &info) != 0 || !S_ISLNK(info.st_mode))
            return path;
        std::error_code error;
        fs::path const link = fs::read_symlink(path, error);
        if (error)
            return std::string();
        path = link.is_absolute() ? link.string() : (fs::path(path).parent_path() / link).string();
    }
    return std::string();
}

bool WriteAll(int fd, char const* data, std::size_t size)
{
    while (size > 0)
    {
        ssize_t const written = ::write(fd, data, size);
        if (written < 0)
        {
            if (errno == EINTR)
                continue;
            return false;
        }
        data += written;
        size -= std::size_t(written);
    }
    return true;
}

bool CopyContent(std::string const& from, int to)
{
    int const in = ::open(from.c_str(), O_RDONLY | O_CLOEXEC);
    if (in < 0)
        return false;
    std::vector<char> buffer(1 << 16);
    bool ok = true;
    for (;;)
    {
        ssize_t const read = ::read(in, buffer.data(), buffer.size());
        if (read < 0 && errno == EINTR)
            continue;
        if (read <= 0)
        {
            ok = read == 0;
            break;
        }
        if (!WriteAll(to, buffer.data(), std::size_t(read)))
        {
            ok = false;
            break;
        }
    }
    int const saved = errno;
    ::close(in);
    errno = saved;
    return ok;
}

// User attributes must come along; the others (security, trusted) only where
// the process may set them.
bool CopyAttributes(std::string const& from, int to)
{
    ssize_t const length = ::listxattr(from.c_str(), nullptr, 0);
    if (length <= 0)
        return length == 0 || errno == ENOTSUP;
    std::vector<char> names(std::size_t(length) + 1);
    ssize_t const listed = ::listxattr(from.c_str(), names.data(), names.size());
    if (listed < 0)
        return false;
    for (char const* name = names.data(); name < names.data() + listed;
         name += std::strlen(name) + 1)
    {
        bool const user = std::strncmp(name, "user.", 5) == 0;
        ssize_t const size = ::getxattr(from.c_str(), name, nullptr, 0);
        std::vector<char> value(size > 0 ? std::size_t(size) : 0);
        bool const copied = size >= 0 &&
                            ::getxattr(from.c_str(), name, value.data(), value.size()) == size &&
                            ::fsetxattr(to, name, value.data(), value.size(), 0) == 0;
        if (!copied && user)
            return false;
    }
    return true;
}

} // namespace

ReplacementFile::ReplacementFile(UTF16String const& path)
{
    std::string const native = ToStdString(NormalizePath(path));
    if (!native.empty())
    {
        std::error_code error;
        target = FollowLinks(fs::absolute(native, error).string());
    }
}

ReplacementFile::~ReplacementFile()
{
    if (fd >= 0)
    {
        if (!committed)
            ::unlink(work.c_str());
        ::close(fd);
    }
}

bool ReplacementFile::Fail(std::string const& message, bool withReason)
{
    problem = message;
    if (withReason)
        problem += std::string(" (") + std::strerror(errno) + ")";
    return false;
}

bool ReplacementFile::Begin(bool copyOfTarget)
{
    if (target.empty())
        return Fail("The file name is empty or its links go round in a loop.", false);
    struct stat info;
    hadOld = ::stat(target.c_str(), &info) == 0;
    if (hadOld)
    {
        if (!S_ISREG(info.st_mode))
            return Fail("The file is not a plain file.", false);
        if (info.st_nlink > 1)
            return Fail("The file has other names (hard links); saving would part them, so it was "
                        "not saved.",
                        false);
        // The mode bits, not access(): the superuser passes access() for any file.
        if ((info.st_mode & 0222) == 0 || ::access(target.c_str(), W_OK) != 0)
            return Fail("The file is read-only.", false);
        oldMode = info.st_mode & 07777;
        oldOwner = info.st_uid;
        oldGroup = info.st_gid;
    }
    else if (copyOfTarget)
        return Fail("The file could not be opened", true);

    RemoveStaleReplacements(UTF8to16(target));
    fs::path const targetPath(target);
    std::string const stem = targetPath.parent_path().string() + "/" + kPrefix +
                             NameHash(targetPath.filename().string()) + "-";
    for (int attempt = 0; attempt < 16 && fd < 0; ++attempt)
    {
        work = stem + RandomPart() + KeptExtension(targetPath);
        // Private until Commit gives it the old file's mode; a new file gets
        // the usual mode under the process's umask.
        fd = ::open(work.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, hadOld ? 0600 : 0666);
        if (fd < 0 && errno != EEXIST)
            break;
    }
    if (fd < 0)
        return Fail("No file could be made beside it for saving", true);
    // Held until the end, so no other save takes this one for a stale copy.
    ::flock(fd, LOCK_EX);
    if (copyOfTarget && !CopyContent(target, fd))
        return Fail("The file could not be copied for saving", true);
    return true;
}

bool ReplacementFile::Write(char const* data, std::size_t size)
{
    if (fd < 0)
        return Fail("The file was not prepared for writing.", false);
    if (!WriteAll(fd, data, size))
        return Fail("The file could not be written", true);
    return true;
}

bool ReplacementFile::Commit()
{
    if (fd < 0 || committed)
        return Fail("The file was not prepared for writing.", false);
    // Opened again by name: a writer that took the path may have replaced
    // the file we made with one of its own.
    int const made = ::open(work.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (made < 0)
        return Fail("The saved copy could not be opened", true);
    bool ok = ::fsync(made) == 0 || Fail("The saved copy could not be written to disk", true);
    if (ok && hadOld)
    {
        // Owner first: a change of owner clears set-id bits the mode restores.
        if (::fchown(made, oldOwner, oldGroup) != 0)
            (void)::fchown(made, static_cast<uid_t>(-1), oldGroup);
        ok = ::fchmod(made, oldMode) == 0 || Fail("The file's permissions could not be kept", true);
        ok = ok && (CopyAttributes(target, made) ||
                    Fail("The file's extended attributes could not be kept", true));
    }
    ::close(made);
    if (!ok)
        return false;
    if (::rename(work.c_str(), target.c_str()) != 0)
        return Fail("The saved copy could not replace the file", true);
    committed = true;
    int const folder =
        ::open(fs::path(target).parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0)
    {
        ::fsync(folder);
        ::close(folder);
    }
    return true;
}

namespace
{

// Folders listed lately that held no replacement of any file, as they were
// then. Every read looks for stale replacements beside its file; without
// this, reading every file of a folder of n files lists the folder n times.
struct CleanFolders
{
    struct Stamp
    {
        dev_t device;
        ino_t inode;
        timespec modified;
    };
    std::mutex lock;
    std::unordered_map<std::string, Stamp> folders;
};

CleanFolders& Clean()
{
    static CleanFolders clean;
    return clean;
}

bool SameStamp(CleanFolders::Stamp const& stamp, struct stat const& info)
{
    return stamp.device == info.st_dev && stamp.inode == info.st_ino &&
           stamp.modified.tv_sec == info.st_mtim.tv_sec &&
           stamp.modified.tv_nsec == info.st_mtim.tv_nsec;
}

} // namespace

void RemoveStaleReplacements(UTF16String const& path)
{
    std::string const native = ToStdString(NormalizePath(path));
    if (native.empty())
        return;
    std::error_code error;
    fs::path const target = FollowLinks(fs::absolute(native, error).string());
    if (target.empty())
        return;
    std::string const folder = target.parent_path().string();
    // A replacement made since the folder was listed changed its time.
    struct stat folderInfo;
    bool const stamped = ::stat(folder.c_str(), &folderInfo) == 0;
    if (stamped)
    {
        std::lock_guard<std::mutex> const guard(Clean().lock);
        auto const known = Clean().folders.find(folder);
        if (known != Clean().folders.end() && SameStamp(known->second, folderInfo))
            return;
    }
    DIR* listing = ::opendir(folder.c_str());
    if (!listing)
        return;
    std::vector<std::string> stale;
    bool anyReplacement = false;
    while (dirent* entry = ::readdir(listing))
    {
        if (std::strstr(entry->d_name, ".zeph-"))
            anyReplacement = true;
        if (IsReplacementOf(entry->d_name, target))
            stale.push_back(folder + "/" + entry->d_name);
    }
    ::closedir(listing);
    // Only a folder unchanged for a while is taken as clean: a file made
    // within the clock's last tick may not have moved its time.
    if (stamped && !anyReplacement && folderInfo.st_mtim.tv_sec + 2 < std::time(nullptr))
    {
        std::lock_guard<std::mutex> const guard(Clean().lock);
        if (Clean().folders.size() > 4096)
            Clean().folders.clear();
        Clean().folders[folder] = {folderInfo.st_dev, folderInfo.st_ino, folderInfo.st_mtim};
    }
    for (std::string const& name : stale)
    {
        int const file = ::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
        if (file < 0)
            continue;
        struct stat info;
        // A running save holds its lock; a killed one's lock died with it.
        if (::fstat(file, &info) == 0 && S_ISREG(info.st_mode) &&
            ::flock(file, LOCK_EX | LOCK_NB) == 0)
            ::unlink(name.c_str());
        ::close(file);
    }
}

} // namespace zephcore

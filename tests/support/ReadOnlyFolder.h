#pragma once
// Folders that refuse new files, for tests of failed saves.

#include <fcntl.h>
#include <filesystem>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace zephtest
{

// The superuser is not bound by permissions; the immutable attribute binds
// everyone.
inline bool SetImmutable(std::filesystem::path const& path, bool immutable)
{
    int const fd = ::open(path.c_str(), O_RDONLY);
    if (fd < 0)
        return false;
    int flags = 0;
    bool ok = ::ioctl(fd, FS_IOC_GETFLAGS, &flags) == 0;
    flags = immutable ? (flags | FS_IMMUTABLE_FL) : (flags & ~FS_IMMUTABLE_FL);
    ok = ok && ::ioctl(fd, FS_IOC_SETFLAGS, &flags) == 0;
    ::close(fd);
    return ok;
}

// Makes a folder refuse new files: by permissions, and for the superuser by
// the immutable attribute. False if that does not work here.
inline bool SetFolderWritable(std::filesystem::path const& folder, bool writable)
{
    namespace fs = std::filesystem;
    std::error_code error;
    fs::permissions(folder,
                    writable ? fs::perms::owner_all : fs::perms::owner_read | fs::perms::owner_exec,
                    fs::perm_options::replace, error);
    if (::geteuid() == 0 && !SetImmutable(folder, !writable))
        return false;
    if (writable)
        return true;
    // Check that a new file is really refused.
    std::string const probe = (folder / ".probe").string();
    int const fd = ::open(probe.c_str(), O_CREAT | O_WRONLY, 0600);
    if (fd >= 0)
    {
        ::close(fd);
        ::unlink(probe.c_str());
        return false;
    }
    return true;
}

} // namespace zephtest

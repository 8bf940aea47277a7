#pragma once
// File services. Paths are UTF-16 and accept both "/" and "\" as separators.
// Every write is atomic: the data goes to a file beside the target, which is
// then renamed over it, so a failed write leaves the old file whole (see
// ReplacementFile.h for what a replaced file keeps).

#include "zephcore/Strings.h"
#include "zephcore/zephcore_export.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zephcore
{

// Turns "\" into "/" and drops a trailing separator (but not the root's).
ZEPHCORE_EXPORT UTF16String NormalizePath(UTF16String const& path);

class ZEPHCORE_EXPORT Dir
{
public:
    Dir() = default;
    explicit Dir(UTF16String path);

    // The user's configuration folder ($XDG_CONFIG_HOME or ~/.config).
    static Dir GlobalPrefDir();

    UTF16String FullPath() const { return path; }
    UTF16String GetName() const;
    Dir Parent() const;
    Dir SubDir(UTF16String const& name) const;
    bool Exists() const;
    bool IsTopLevelDir() const;
    // Creates this folder; its parent must exist. True if it exists afterwards.
    bool Create() const;

private:
    UTF16String path;
};

class ZEPHCORE_EXPORT File
{
public:
    File() = default;
    explicit File(UTF16String path);

    UTF16String FullPath() const { return path; }
    UTF16String GetName() const;
    Dir GetParent() const;
    bool Exists() const;

private:
    UTF16String path;
};

// A readable stream of a file's bytes.
class ZEPHCORE_EXPORT IPlatformByteStream
{
public:
    virtual ~IPlatformByteStream() = default;
    virtual std::uint64_t Length() const = 0;
    // Reads up to count bytes at the current place; returns how many were read.
    virtual std::uint64_t ReadBlock(void* buffer, std::uint64_t count) = 0;
};

// Null when the file cannot be opened.
ZEPHCORE_EXPORT std::unique_ptr<IPlatformByteStream> OpenReadStream(UTF16String const& path);

class ZEPHCORE_EXPORT Guid
{
public:
    static Guid CreateUnique();
    // 32 lower-case hex digits, no braces or dashes.
    UTF16String AsString() const;

private:
    unsigned char bytes[16] = {};
};

namespace FileUtils
{

ZEPHCORE_EXPORT bool FileExists(UTF16String const& path);
// Creates the folder and every missing parent. True if it exists afterwards.
ZEPHCORE_EXPORT bool EnsureDirectoryExists(UTF16String const& path);
// Full paths of the plain files in a folder, not recursive, in the order the
// file system lists them.
ZEPHCORE_EXPORT std::vector<UTF16String> ContainedFiles(UTF16String const& folder);
// The last component of a path.
ZEPHCORE_EXPORT UTF16String GetPathFileName(UTF16String const& path);
// Joins a folder and a name with one "/".
ZEPHCORE_EXPORT UTF16String BuildPathSpec(UTF16String const& folder, UTF16String const& name);
// Atomic write of UTF-8 or binary data. False if anything failed, a full
// disk included; the old file is then untouched. A read-only or hard-linked
// file is refused.
ZEPHCORE_EXPORT bool SimpleWriteStringToFile(UTF16String const& path, std::string const& data);
ZEPHCORE_EXPORT bool ReadFileToString(UTF16String const& path, std::string& data);
ZEPHCORE_EXPORT bool RemoveFile(UTF16String const& path);
// Replaces characters that are not allowed in file names on any common
// system (/ \ : * ? " < > | and control characters) with `replacement`.
ZEPHCORE_EXPORT UTF16String ReplaceIllegalFileNameCharacters(
    UTF16String const& name, UTF16String::value_type replacement = '_');

} // namespace FileUtils
} // namespace zephcore

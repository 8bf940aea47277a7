#include "zephmetadata/FileProvider.h"

#include "zephmetadata/ErrorLog.h"
#include "zephmetadata/Switches.h"

#include "PacketCheck.h"
#include "PacketFiles.h"

#include <zephcore/Files.h>
#include <zephcore/ReplacementFile.h>

#include <exempi/xmp.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

namespace zephmetadata
{
namespace
{

namespace fs = std::filesystem;

// Absolute: exempi's format check fails on some relative paths ("s/a.jpg"),
// and a later save must reach the file that was read.
std::string Native(UTF16String const& path)
{
    std::string const native = zephcore::ToStdString(path);
    std::error_code error;
    fs::path const absolute = native.empty() ? fs::path() : fs::absolute(native, error);
    return error ? native : absolute.string();
}

std::string LowerExtension(std::string const& path)
{
    std::string extension = fs::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension;
}

bool IsSidecar(std::string const& path)
{
    return LowerExtension(path) == ".xmp";
}

void LogError(ErrorCode code, UTF16String const& path, std::string const& message)
{
    AddError(code, path, zephcore::UTF8to16(message));
}

bool IsEmptyFile(std::string const& path)
{
    std::error_code error;
    return fs::file_size(path, error) == 0 && !error;
}

bool Readable(std::string const& path)
{
    std::error_code error;
    if (!fs::is_regular_file(path, error))
        return false;
    std::ifstream probe(path, std::ios::binary);
    return probe.good();
}

// exempi writes WebP wrongly, and formats without a writing handler cannot
// take XMP at all: both keep their metadata in a sidecar.
bool FormatNeedsSidecar(std::string const& path)
{
    if (LowerExtension(path) == ".webp")
        return true;
    XmpFileType const type = xmp_files_check_file_format(path.c_str());
    if (type == XMP_FT_WEBP)
        return true;
    if (type == XMP_FT_UNKNOWN)
        return true;
    XmpFileFormatOptions options = static_cast<XmpFileFormatOptions>(0);
    if (!xmp_files_get_format_info(type, &options))
        return true;
    // The flags are combined into a value that no enumerator names: read
    // them as the bits they are, not as the enumeration.
    std::uint32_t bits = 0;
    static_assert(sizeof bits == sizeof options);
    std::memcpy(&bits, &options, sizeof bits);
    return (bits & (XMP_FMT_CAN_INJECT_XMP | XMP_FMT_CAN_EXPAND | XMP_FMT_CAN_REWRITE)) == 0;
}

char const* const kTooDeepMessage = "The file's metadata nests deeper than 100 levels and was "
                                    "not read.";
static_assert(xmp::kMaxPacketNesting == 100, "the message names the bound");

// "a.xmp", as many programs name a sidecar, is read for "a.heic" only when
// it can belong to no other file: no other file in the folder has the stem
// "a". Empty when there is none that qualifies.
std::string LegacySidecarFor(std::string const& path)
{
    fs::path const media(path);
    std::error_code error;
    for (char const* extension : {".xmp", ".XMP"})
    {
        fs::path const legacy = fs::path(media).replace_extension(extension);
        if (!fs::is_regular_file(legacy, error))
            continue;
        for (auto const& entry : fs::directory_iterator(media.parent_path(), error))
        {
            fs::path const& other = entry.path();
            if (other != media && other != legacy && other.stem() == media.stem())
                return std::string();
        }
        return legacy.string();
    }
    return std::string();
}

// The sidecar that holds a media file's metadata now: its own
// ("a.heic.xmp"), else an unambiguous "a.xmp"; empty when neither exists.
std::string SidecarToRead(std::string const& path)
{
    if (IsSidecar(path))
        return path;
    std::string const own = path + ".xmp";
    std::error_code error;
    if (fs::exists(own, error))
        return own;
    return LegacySidecarFor(path);
}

// A failed read says why through `problem` (and which file through `source`)
// and touches no shared state, so it may run on a worker thread.
struct ReadProblem
{
    char const* message = nullptr;
    UTF16String source;
    // Set when the file's packet is damaged: the tree read is then what
    // could be recovered, and no save may write over the packet unasked.
    std::string damage;
};

xmp::MetaPtr ReadSidecar(std::string const& path, UTF16String const& shownPath,
                         ReadProblem& problem)
{
    std::string packet;
    if (!zephcore::FileUtils::ReadFileToString(zephcore::UTF8to16(path), packet))
    {
        problem = {"The metadata file could not be read.", shownPath, {}};
        return xmp::MetaPtr();
    }
    if (xmp::NestsTooDeep(packet.data(), packet.size()))
    {
        problem = {kTooDeepMessage, shownPath, {}};
        return xmp::MetaPtr();
    }
    std::string damage;
    xmp::MetaPtr meta = packetcheck::ParseChecked(packet.data(), packet.size(), damage);
    if (meta)
        return meta;
    problem = {"The metadata file holds no valid XMP packet.", shownPath, damage};
    return xmp::NewMeta();
}

// Writes the packet into the copy by our own means; nothing when the file is
// left to exempi's handlers, false when the file must stay as it is.
std::optional<bool> WriteOwnPacket(std::string const& copy, __XMPMeta__* meta, bool replaceDamaged)
{
    switch (packetfiles::WritePacketIntoFile(copy, meta, replaceDamaged))
    {
    case packetfiles::Outcome::kDone:
    {
        xmp::MetaPtr reread;
        return packetfiles::ReadPacketOfFile(copy, reread) == packetfiles::Outcome::kDone;
    }
    case packetfiles::Outcome::kDamaged:
        return false;
    default:
        return std::nullopt;
    }
}

// The file's packet as exempi's handler found it, checked for its nesting
// (the handler has parsed it already, but its tree is not taken).
bool HandlerPacketTooDeep(XmpFilePtr file)
{
    xmp::XmpString packet;
    return xmp_files_get_xmp_xmpstring(file, packet.Get(), nullptr) &&
           xmp::NestsTooDeep(packet.CStr(), packet.Length());
}

xmp::MetaPtr ReadEmbedded(std::string const& path, UTF16String const& shownPath,
                          ReadProblem& problem)
{
    // The file's own packet where we know its container; otherwise exempi's
    // handlers, which mix native EXIF and IPTC into what they read.
    xmp::MetaPtr own;
    switch (packetfiles::ReadPacketOfFile(path, own, &problem.damage))
    {
    case packetfiles::Outcome::kDone:
        return own;
    case packetfiles::Outcome::kNoPacket:
        return xmp::NewMeta();
    case packetfiles::Outcome::kTooDeep:
        problem = {kTooDeepMessage, shownPath, {}};
        return xmp::MetaPtr();
    default:
        break;
    }
    // A damaged packet: exempi's handler may still recover part of it, which
    // is then shown, read-only.
    if (!problem.damage.empty())
        problem.source = shownPath;
    XmpFilePtr file = xmp_files_open_new(
        path.c_str(), static_cast<XmpOpenFileOptions>(XMP_OPEN_READ | XMP_OPEN_ONLYXMP));
    if (!file && !problem.damage.empty())
        return xmp::NewMeta();
    if (!file)
    {
        // Never an empty tree: a save would write it over what the file holds.
        problem = {"The file's metadata could not be read.", shownPath, {}};
        return xmp::MetaPtr();
    }
    if (HandlerPacketTooDeep(file))
    {
        xmp_files_close(file, XMP_CLOSE_NOOPTION);
        xmp_files_free(file);
        problem = {kTooDeepMessage, shownPath, {}};
        return xmp::MetaPtr();
    }
    xmp::MetaPtr meta(xmp_files_get_new_xmp(file));
    // No tree and an error: the file holds XMP that does not parse (a save
    // would write an empty packet over it). No tree and no error: it holds
    // none.
    int const error = meta ? 0 : xmp_get_error();
    xmp_files_close(file, XMP_CLOSE_NOOPTION);
    xmp_files_free(file);
    if (meta)
        return meta;
    if (!problem.damage.empty())
        return xmp::NewMeta();
    if (error != 0)
    {
        problem = {"The file's metadata could not be parsed.", shownPath, {}};
        return xmp::MetaPtr();
    }
    return xmp::NewMeta();
}

xmp::MetaPtr ReadFile(UTF16String const& filePath, ReadProblem& problem)
{
    std::string const path = Native(filePath);
    if (!Readable(path))
    {
        problem = {"The file could not be opened.", filePath, {}};
        return xmp::MetaPtr();
    }
    zephcore::RemoveStaleReplacements(zephcore::UTF8to16(path));
    if (IsSidecar(path))
        return ReadSidecar(path, filePath, problem);
    // An empty media file is damaged, not a file without XMP: a save must
    // not give it a sidecar.
    if (IsEmptyFile(path))
    {
        problem = {"The file is empty.", filePath, {}};
        return xmp::MetaPtr();
    }
    if (FormatNeedsSidecar(path))
    {
        zephcore::RemoveStaleReplacements(zephcore::UTF8to16(path + ".xmp"));
        std::string const sidecar = SidecarToRead(path);
        if (!sidecar.empty())
            return ReadSidecar(sidecar, zephcore::UTF8to16(sidecar), problem);
    }
    return ReadEmbedded(path, filePath, problem);
}

// A file marked read-only is respected also by a user (root) whom the system
// would let write it.
bool MayWrite(std::string const& path)
{
    std::error_code error;
    fs::perms const perms = fs::status(path, error).permissions();
    fs::perms const anyWrite =
        fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    return !error && (perms & anyWrite) != fs::perms::none && ::access(path.c_str(), W_OK) == 0;
}

enum class CopyWrite
{
    kWritten,
    kCannotHold,
    kFailed
};

CopyWrite WriteXmpInto(std::string const& path, __XMPMeta__* meta, bool replaceDamaged)
{
    if (std::optional<bool> const written = WriteOwnPacket(path, meta, replaceDamaged))
        return *written ? CopyWrite::kWritten : CopyWrite::kFailed;
    XmpFilePtr file = xmp_files_open_new(
        path.c_str(), static_cast<XmpOpenFileOptions>(XMP_OPEN_FORUPDATE | XMP_OPEN_ONLYXMP));
    if (!file)
        return CopyWrite::kFailed;
    if (!xmp_files_can_put_xmp(file, meta))
    {
        xmp_files_close(file, XMP_CLOSE_NOOPTION);
        xmp_files_free(file);
        return CopyWrite::kCannotHold;
    }
    bool ok = xmp_files_put_xmp(file, meta);
    ok = xmp_files_close(file, XMP_CLOSE_NOOPTION) && ok;
    xmp_files_free(file);
    if (!ok)
        return CopyWrite::kFailed;
    // Some handlers write a packet they cannot read back (seen with PNG files
    // from other tools): only a copy whose XMP parses again may replace the
    // original.
    XmpFilePtr check = xmp_files_open_new(
        path.c_str(), static_cast<XmpOpenFileOptions>(XMP_OPEN_READ | XMP_OPEN_ONLYXMP));
    if (!check)
        return CopyWrite::kFailed;
    xmp::MetaPtr const reread(xmp_files_get_new_xmp(check));
    xmp_files_close(check, XMP_CLOSE_NOOPTION);
    xmp_files_free(check);
    return reread ? CopyWrite::kWritten : CopyWrite::kFailed;
}

bool WriteSidecar(__XMPMeta__* meta, UTF16String const& sidecar)
{
    std::string packet;
    if (!xmp::SerializeToBuffer(meta, packet, xmp::kSerializeReadable))
    {
        LogError(kErrorMetadataWrite, sidecar, "The metadata could not be serialised.");
        return false;
    }
    zephcore::ReplacementFile file(sidecar);
    if (file.Begin(false) && file.Write(packet.data(), packet.size()) && file.Commit())
        return true;
    LogError(kErrorMetadataWrite, sidecar,
             "The metadata file could not be written: " + file.Problem());
    return false;
}

MetadataSaveResult SaveIntoSidecar(__XMPMeta__* meta, UTF16String const& mediaPath)
{
    return WriteSidecar(meta, SidecarPathFor(mediaPath)) ? kMetadataSavedIntoSidecar
                                                         : kMetadataSaveFailed;
}

// The XMP goes into a copy of the file, which replaces the original only
// when it reads back.
MetadataSaveResult SaveIntoFile(__XMPMeta__* meta, std::string const& path,
                                UTF16String const& filePath, bool replaceDamaged)
{
    CopyWrite written = CopyWrite::kFailed;
    {
        zephcore::ReplacementFile copy(zephcore::UTF8to16(path));
        if (!copy.Begin(true))
        {
            LogError(kErrorMetadataWrite, filePath, copy.Problem());
            return kMetadataSaveFailed;
        }
        written = WriteXmpInto(copy.WorkPath(), meta, replaceDamaged);
        if (written == CopyWrite::kWritten)
        {
            if (copy.Commit())
                return kMetadataSavedIntoFile;
            LogError(kErrorMetadataWrite, filePath, copy.Problem());
            return kMetadataSaveFailed;
        }
    }
    if (written == CopyWrite::kCannotHold)
        return SaveIntoSidecar(meta, filePath);
    LogError(kErrorMetadataWrite, filePath, "The metadata could not be written into the file.");
    return kMetadataSaveFailed;
}

// What a save compares to notice another program's change: the file that
// holds the metadata (its identity, size and time) and the XMP it holds.
std::string MetadataHolder(UTF16String const& filePath)
{
    if (!UsesSidecar(filePath))
        return Native(filePath);
    std::string const sidecar = SidecarToRead(Native(filePath));
    return sidecar.empty() ? Native(SidecarPathFor(filePath)) : sidecar;
}

std::string FileStamp(std::string const& path)
{
    struct stat info;
    if (::stat(path.c_str(), &info) != 0)
        return "absent;";
    return std::to_string(info.st_ino) + ":" + std::to_string(info.st_size) + ":" +
           std::to_string(info.st_mtim.tv_sec) + "." + std::to_string(info.st_mtim.tv_nsec) + ";";
}

std::string XmpStamp(__XMPMeta__* meta)
{
    std::string packet;
    if (!meta || !xmp::SerializeToBuffer(meta, packet))
        return "none";
    return std::to_string(std::hash<std::string>()(packet));
}

} // namespace

UTF16String SidecarPathFor(UTF16String const& mediaPath)
{
    std::string const path = Native(mediaPath);
    if (IsSidecar(path))
        return mediaPath;
    return zephcore::UTF8to16(path + ".xmp");
}

bool UsesSidecar(UTF16String const& mediaPath)
{
    std::string const path = Native(mediaPath);
    return IsSidecar(path) || FormatNeedsSidecar(path);
}

namespace
{

void LogReadProblem(xmp::MetaPtr const& meta, ReadProblem const& problem)
{
    if (!meta)
        LogError(kErrorMetadataRead, problem.source, problem.message);
    else if (!problem.damage.empty())
        LogError(kErrorMetadataRead, problem.source,
                 "The metadata packet is damaged (" + problem.damage + "); it is shown read-only.");
}

} // namespace

xmp::MetaPtr ReadMetadataFromFile(UTF16String const& filePath)
{
    ReadProblem problem;
    xmp::MetaPtr meta = ReadFile(filePath, problem);
    LogReadProblem(meta, problem);
    return meta;
}

FileReadOutcome ReadMetadataFromFileQuietly(UTF16String const& filePath)
{
    ReadProblem problem;
    FileReadOutcome outcome;
    outcome.meta = ReadFile(filePath, problem);
    if (!outcome.meta)
        outcome.problem = zephcore::AsciiToUTF16(problem.message);
    outcome.damage = zephcore::UTF8to16(problem.damage);
    return outcome;
}

MetadataSaveResult SaveMetadataToFile(__XMPMeta__* meta, UTF16String const& filePath,
                                      bool replaceDamaged)
{
    if (!meta || IsXMPWritingDisabled())
        return kMetadataSaveFailed;
    ReadProblem current;
    xmp::MetaPtr const saved = ReadFile(filePath, current);
    if (!current.damage.empty() && !replaceDamaged)
    {
        LogError(kErrorMetadataWrite, filePath,
                 "The file's metadata packet is damaged (" + current.damage +
                     "); it was not overwritten.");
        return kMetadataSaveFailed;
    }
    // A save that changes what the file says records when.
    if (saved)
        packetfiles::StampMetadataDateIfChanged(meta, saved.get());
    std::string const path = Native(filePath);
    if (IsSidecar(path))
        return WriteSidecar(meta, zephcore::UTF8to16(path)) ? kMetadataSavedIntoSidecar
                                                            : kMetadataSaveFailed;
    if (!Readable(path))
    {
        LogError(kErrorMetadataWrite, filePath, "The file to save into could not be opened.");
        return kMetadataSaveFailed;
    }
    if (IsEmptyFile(path))
    {
        LogError(kErrorMetadataWrite, filePath, "The file is empty; its metadata was not saved.");
        return kMetadataSaveFailed;
    }
    if (FormatNeedsSidecar(path))
        return SaveIntoSidecar(meta, zephcore::UTF8to16(path));
    return SaveIntoFile(meta, path, filePath, replaceDamaged);
}

FileProvider::FileProvider(UTF16String const& path) : filePath(zephcore::UTF8to16(Native(path)))
{
    ReadFromFile();
    MarkReadOnlyFile();
}

FileProvider::FileProvider(UTF16String const& path, xmp::MetaPtr meta, UTF16String damage)
    : filePath(zephcore::UTF8to16(Native(path))), damage(std::move(damage))
{
    readStamp = FileStamp(MetadataHolder(filePath)) + XmpStamp(meta.get());
    AdoptMetadata(meta.release());
    // A file shows everything it holds, also schemas nobody defined.
    ListUnknownSchemasAsDynamic();
    MarkReadOnlyFile();
}

void FileProvider::ReadFromFile()
{
    // Stamped before the read: a change during it shows as a change.
    std::string const before = FileStamp(MetadataHolder(filePath));
    ReadProblem problem;
    xmp::MetaPtr meta = ReadFile(filePath, problem);
    LogReadProblem(meta, problem);
    damage = zephcore::UTF8to16(problem.damage);
    replacingDamaged = false;
    readStamp = before + XmpStamp(meta.get());
    AdoptMetadata(meta.release());
    ListUnknownSchemasAsDynamic();
}

std::string FileProvider::StampNow() const
{
    std::string const before = FileStamp(MetadataHolder(filePath));
    ReadProblem problem;
    xmp::MetaPtr const meta = ReadFile(filePath, problem);
    return before + XmpStamp(meta.get());
}

void FileProvider::MarkReadOnlyFile()
{
    // A file that cannot be saved, or whose damaged packet the user has not
    // chosen to replace, shows its values read-only.
    std::string const target = MetadataHolder(filePath);
    std::error_code error;
    bool const unwritable = fs::exists(target, error) && !MayWrite(target);
    SetReadOnly(unwritable || (!damage.empty() && !replacingDamaged));
}

bool FileProvider::ChangedSinceRead() const
{
    return StampNow() != readStamp;
}

MetadataSaveResult FileProvider::Save()
{
    if (MetaDataAccess() && ChangedSinceRead())
        return kMetadataSaveConflict;
    return SaveOverwritingChanges();
}

MetadataSaveResult FileProvider::SaveOverwritingChanges()
{
    MetadataSaveResult const result =
        SaveMetadataToFile(MetaDataAccess(), filePath, replacingDamaged);
    if (result != kMetadataSaveFailed)
    {
        readStamp = StampNow();
        damage.clear();
        replacingDamaged = false;
        MarkReadOnlyFile();
    }
    return result;
}

void FileProvider::ReplaceDamagedPacket()
{
    if (damage.empty() || replacingDamaged)
        return;
    replacingDamaged = true;
    MarkReadOnlyFile();
    // The views read the values' status again: they become editable.
    NotifyMetaDataChanged();
}

void FileProvider::Reload()
{
    ReadFromFile();
    MarkReadOnlyFile();
    NotifyMetaDataChanged();
}

std::string FileProvider::DebugDescription(bool verbose, int indent)
{
    return TypicalProviderImpl::DebugDescription(verbose, indent) + " from " + Native(filePath);
}

void FileProvider::DoWriteChanges(std::vector<Path> const&)
{
    if (saveOnChange)
        Save();
}

} // namespace zephmetadata

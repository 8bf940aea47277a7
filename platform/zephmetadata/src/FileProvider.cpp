#include "zephmetadata/FileProvider.h"

#include "zephmetadata/ErrorLog.h"
#include "zephmetadata/Switches.h"

#include <zephcore/Files.h>

#include <exempi/xmp.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <system_error>

#include <unistd.h>

namespace zephmetadata {
namespace {

namespace fs = std::filesystem;

std::string Native(UTF16String const& path) { return zephcore::ToStdString(path); }

std::string LowerExtension(std::string const& path) {
    std::string extension = fs::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension;
}

bool IsSidecar(std::string const& path) { return LowerExtension(path) == ".xmp"; }

void LogError(ErrorCode code, UTF16String const& path, char const* message) {
    AddError(code, path, zephcore::AsciiToUTF16(message));
}

bool Readable(std::string const& path) {
    std::error_code error;
    if (!fs::is_regular_file(path, error))
        return false;
    std::ifstream probe(path, std::ios::binary);
    return probe.good();
}

// exempi writes WebP wrongly, and formats without a writing handler cannot
// take XMP at all: both keep their metadata in a sidecar.
bool FormatNeedsSidecar(std::string const& path) {
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

// A failed read says why through `problem` (and which file through `source`)
// and touches no shared state, so it may run on a worker thread.
struct ReadProblem {
    char const* message = nullptr;
    UTF16String source;
};

xmp::MetaPtr ReadSidecar(std::string const& path, UTF16String const& shownPath, ReadProblem& problem) {
    std::string packet;
    if (!zephcore::FileUtils::ReadFileToString(zephcore::UTF8to16(path), packet)) {
        problem = {"The metadata file could not be read.", shownPath};
        return xmp::MetaPtr();
    }
    xmp::MetaPtr meta = xmp::ParseMeta(packet.data(), packet.size());
    if (!meta)
        problem = {"The metadata file holds no valid XMP packet.", shownPath};
    return meta;
}

xmp::MetaPtr ReadEmbedded(std::string const& path, UTF16String const& shownPath, ReadProblem& problem) {
    XmpFilePtr file =
        xmp_files_open_new(path.c_str(), static_cast<XmpOpenFileOptions>(XMP_OPEN_READ | XMP_OPEN_ONLYXMP));
    if (!file) {
        // A readable file that no handler can open holds no XMP we can see.
        if (xmp_files_check_file_format(path.c_str()) == XMP_FT_UNKNOWN)
            return xmp::NewMeta();
        problem = {"The file's metadata could not be read.", shownPath};
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
    if (error != 0) {
        problem = {"The file's metadata could not be parsed.", shownPath};
        return xmp::MetaPtr();
    }
    return xmp::NewMeta();
}

xmp::MetaPtr ReadFile(UTF16String const& filePath, ReadProblem& problem) {
    std::string const path = Native(filePath);
    if (!Readable(path)) {
        problem = {"The file could not be opened.", filePath};
        return xmp::MetaPtr();
    }
    if (IsSidecar(path))
        return ReadSidecar(path, filePath, problem);
    if (FormatNeedsSidecar(path)) {
        std::string const sidecar = Native(SidecarPathFor(filePath));
        std::error_code error;
        if (fs::exists(sidecar, error))
            return ReadSidecar(sidecar, zephcore::UTF8to16(sidecar), problem);
    }
    return ReadEmbedded(path, filePath, problem);
}

// A file marked read-only is respected also by a user (root) whom the system
// would let write it.
bool MayWrite(std::string const& path) {
    std::error_code error;
    fs::perms const perms = fs::status(path, error).permissions();
    fs::perms const anyWrite = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    return !error && (perms & anyWrite) != fs::perms::none && ::access(path.c_str(), W_OK) == 0;
}

std::string TemporaryNameBeside(std::string const& path) {
    static std::mt19937_64 generator(std::random_device{}());
    fs::path const target(path);
    std::string name = "." + target.filename().string() + ".zeph-save-" +
                       std::to_string(generator() % 1000000000ULL);
    // Keep the extension last: exempi picks its handler by it.
    name += target.extension().string();
    return (target.parent_path() / name).string();
}

enum class CopyWrite { kWritten, kCannotHold, kFailed };

CopyWrite WriteXmpInto(std::string const& path, __XMPMeta__* meta) {
    XmpFilePtr file = xmp_files_open_new(
        path.c_str(), static_cast<XmpOpenFileOptions>(XMP_OPEN_FORUPDATE | XMP_OPEN_ONLYXMP));
    if (!file)
        return CopyWrite::kFailed;
    if (!xmp_files_can_put_xmp(file, meta)) {
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
    XmpFilePtr check =
        xmp_files_open_new(path.c_str(), static_cast<XmpOpenFileOptions>(XMP_OPEN_READ | XMP_OPEN_ONLYXMP));
    if (!check)
        return CopyWrite::kFailed;
    xmp::MetaPtr const reread(xmp_files_get_new_xmp(check));
    xmp_files_close(check, XMP_CLOSE_NOOPTION);
    xmp_files_free(check);
    return reread ? CopyWrite::kWritten : CopyWrite::kFailed;
}

bool WriteSidecar(__XMPMeta__* meta, UTF16String const& sidecar) {
    std::string packet;
    if (!xmp::SerializeToBuffer(meta, packet, xmp::kSerializeReadable))
        return false;
    return zephcore::FileUtils::SimpleWriteStringToFile(sidecar, packet);
}

MetadataSaveResult SaveIntoSidecar(__XMPMeta__* meta, UTF16String const& mediaPath) {
    UTF16String const sidecar = SidecarPathFor(mediaPath);
    if (WriteSidecar(meta, sidecar))
        return kMetadataSavedIntoSidecar;
    LogError(kErrorMetadataWrite, sidecar, "The metadata file could not be written.");
    return kMetadataSaveFailed;
}

} // namespace

UTF16String SidecarPathFor(UTF16String const& mediaPath) {
    std::string const path = Native(mediaPath);
    if (IsSidecar(path))
        return mediaPath;
    return zephcore::UTF8to16(fs::path(path).replace_extension(".xmp").string());
}

bool UsesSidecar(UTF16String const& mediaPath) {
    std::string const path = Native(mediaPath);
    return IsSidecar(path) || FormatNeedsSidecar(path);
}

xmp::MetaPtr ReadMetadataFromFile(UTF16String const& filePath) {
    ReadProblem problem;
    xmp::MetaPtr meta = ReadFile(filePath, problem);
    if (!meta)
        LogError(kErrorMetadataRead, problem.source, problem.message);
    return meta;
}

FileReadOutcome ReadMetadataFromFileQuietly(UTF16String const& filePath) {
    ReadProblem problem;
    FileReadOutcome outcome;
    outcome.meta = ReadFile(filePath, problem);
    if (!outcome.meta)
        outcome.problem = zephcore::AsciiToUTF16(problem.message);
    return outcome;
}

MetadataSaveResult SaveMetadataToFile(__XMPMeta__* meta, UTF16String const& filePath) {
    if (!meta || IsXMPWritingDisabled())
        return kMetadataSaveFailed;
    std::string const path = Native(filePath);
    if (IsSidecar(path))
        return WriteSidecar(meta, filePath) ? kMetadataSavedIntoSidecar
                                            : (LogError(kErrorMetadataWrite, filePath,
                                                        "The metadata file could not be written."),
                                               kMetadataSaveFailed);
    if (!Readable(path)) {
        LogError(kErrorMetadataWrite, filePath, "The file to save into could not be opened.");
        return kMetadataSaveFailed;
    }
    if (FormatNeedsSidecar(path))
        return SaveIntoSidecar(meta, filePath);
    // A file the user may not write stays as it is, although the rename
    // below would get past its permissions.
    if (!MayWrite(path)) {
        LogError(kErrorMetadataWrite, filePath, "The file is read-only.");
        return kMetadataSaveFailed;
    }

    std::string const copy = TemporaryNameBeside(path);
    std::error_code error;
    if (!fs::copy_file(path, copy, fs::copy_options::overwrite_existing, error)) {
        fs::remove(copy, error);
        LogError(kErrorMetadataWrite, filePath, "The file could not be copied for saving.");
        return kMetadataSaveFailed;
    }
    fs::permissions(copy, fs::status(path, error).permissions(), error);
    CopyWrite const written = WriteXmpInto(copy, meta);
    if (written != CopyWrite::kWritten) {
        fs::remove(copy, error);
        if (written == CopyWrite::kCannotHold)
            return SaveIntoSidecar(meta, filePath);
        LogError(kErrorMetadataWrite, filePath, "The metadata could not be written into the file.");
        return kMetadataSaveFailed;
    }
    fs::rename(copy, path, error);
    if (error) {
        fs::remove(copy, error);
        LogError(kErrorMetadataWrite, filePath, "The saved file could not replace the original.");
        return kMetadataSaveFailed;
    }
    return kMetadataSavedIntoFile;
}

FileProvider::FileProvider(UTF16String const& path) : filePath(path) {
    AdoptMetadata(ReadMetadataFromFile(filePath).release());
    // A file shows everything it holds, also schemas nobody defined.
    ListUnknownSchemasAsDynamic();
    MarkReadOnlyFile();
}

FileProvider::FileProvider(UTF16String const& path, xmp::MetaPtr meta) : filePath(path) {
    AdoptMetadata(meta.release());
    ListUnknownSchemasAsDynamic();
    MarkReadOnlyFile();
}

void FileProvider::MarkReadOnlyFile() {
    // A file that cannot be saved shows its values read-only.
    std::string const target = Native(UsesSidecar(filePath) ? SidecarPathFor(filePath) : filePath);
    std::error_code error;
    if (fs::exists(target, error) && !MayWrite(target))
        SetReadOnly(true);
}

MetadataSaveResult FileProvider::Save() { return SaveMetadataToFile(MetaDataAccess(), filePath); }

void FileProvider::Reload() {
    AdoptMetadata(ReadMetadataFromFile(filePath).release());
    ListUnknownSchemasAsDynamic();
    NotifyMetaDataChanged();
}

std::string FileProvider::DebugDescription(bool verbose, int indent) {
    return TypicalProviderImpl::DebugDescription(verbose, indent) + " from " + Native(filePath);
}

void FileProvider::DoWriteChanges(std::vector<Path> const&) {
    if (saveOnChange)
        Save();
}

} // namespace zephmetadata

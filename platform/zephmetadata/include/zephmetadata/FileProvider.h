#pragma once
// Metadata of media files on disk: reading a file's XMP into a provider and
// saving it back atomically.
//
// Reading goes through exempi's file handlers with "only XMP" (the packet as
// stored, nothing reconciled from native EXIF or IPTC); a ".xmp" sidecar is
// parsed directly, since exempi's handlers do not open a bare sidecar. A file
// without XMP gives an empty tree; a file that cannot be read gives no tree
// and an error-log entry. For WebP, and for formats exempi cannot write, the
// metadata lives in a sidecar beside the file ("clip.webp" ->
// "clip.webp.xmp", so a "clip.pdf" beside it never shares it), read in
// preference to the file when it exists. A "clip.xmp" is read as well when
// it is the only sidecar and no other file in the folder has the stem
// "clip"; a save leaves it as it is and writes "clip.webp.xmp".
//
// Saving never writes the original in place: the file is copied beside
// itself, the XMP is written into the copy by exempi (only the XMP packet is
// touched), and the copy is renamed over the original. A failed save leaves
// the original whole and no copy behind. The saved file keeps its mode,
// owner, group and extended attributes; a symbolic link is kept and its
// target saved; read-only, hard-linked and empty files are refused.

#include "zephmetadata/Provider.h"
#include "zephmetadata/XmpMeta.h"
#include "zephmetadata/zephmetadata_export.h"

namespace zephmetadata
{

// Where a save went.
enum MetadataSaveResult
{
    kMetadataSaveFailed = 0,
    kMetadataSavedIntoFile = 1,
    kMetadataSavedIntoSidecar = 2,
    // Another program changed the file since it was read; nothing was
    // written. The host asks the user: reload, or overwrite.
    kMetadataSaveConflict = 3,
};

// "dir/clip.webp" -> "dir/clip.webp.xmp", where a save writes; a ".xmp"
// path is its own sidecar.
ZEPHMETADATA_EXPORT UTF16String SidecarPathFor(UTF16String const& mediaPath);
// Whether metadata of this file is kept in its sidecar rather than inside it.
ZEPHMETADATA_EXPORT bool UsesSidecar(UTF16String const& mediaPath);

// Reads the XMP of a media file or sidecar. Null, with an error-log entry,
// when the file cannot be read or its packet does not parse.
ZEPHMETADATA_EXPORT xmp::MetaPtr ReadMetadataFromFile(UTF16String const& path);

// The same read for a host that reads on a worker thread: the failure comes
// back in the outcome instead of the error log, and no shared state is
// touched. Make the provider from the result on the user-interface thread.
struct ZEPHMETADATA_EXPORT FileReadOutcome
{
    xmp::MetaPtr meta;   // null when the file could not be read
    UTF16String problem; // why, for the user
    // Why the file's XMP packet is damaged, when it is; meta is then what
    // could be recovered of it (often nothing).
    UTF16String damage;
};
ZEPHMETADATA_EXPORT FileReadOutcome ReadMetadataFromFileQuietly(UTF16String const& path);

// Saves meta into the file (or its sidecar) atomically. Refused while XMP
// writing is disabled, and over a damaged packet unless `replaceDamaged`.
// Failures go to the error log. No check for changes by others:
// FileProvider::Save makes it.
ZEPHMETADATA_EXPORT MetadataSaveResult SaveMetadataToFile(__XMPMeta__* meta,
                                                          UTF16String const& path,
                                                          bool replaceDamaged = false);

// The metadata of one file. Changes stay in memory until Save, unless
// save-on-change is set. Namespaces of the file that no definition knows are
// its dynamic schemas.
class ZEPHMETADATA_EXPORT FileProvider : public TypicalProviderImpl
{
public:
    // A relative path is taken from the current folder, once.
    explicit FileProvider(UTF16String const& filePath);
    // Over metadata already read from the file (null: the file was unreadable;
    // `damage` as the read told it). A change of the file's XMP since that
    // read is still noticed.
    FileProvider(UTF16String const& filePath, xmp::MetaPtr meta,
                 UTF16String damage = UTF16String());

    UTF16String const& FilePath() const { return filePath; }
    // False when the file could not be read.
    bool HasMetadata() const { return MetaDataAccess() != nullptr; }

    // Saves the present metadata back into the file or its sidecar;
    // kMetadataSaveConflict, writing nothing, when another program changed
    // the file (its size, time or XMP) since it was read.
    MetadataSaveResult Save();
    // Saves even over another program's change: the user chose to.
    MetadataSaveResult SaveOverwritingChanges();
    // Whether another program changed the file since it was read or saved.
    bool ChangedSinceRead() const;
    // Re-reads the file, dropping unsaved changes, and tells the listeners.
    void Reload();
    // Why the file's packet is damaged, as the parser tells it; empty when it
    // is not. A damaged file shows what could be recovered, read-only, and
    // no save writes over its packet until the user asks to replace it.
    UTF16String const& DamagedPacketReason() const { return damage; }
    // The user chose to replace the damaged packet: the values become
    // editable (listeners are told) and the next save writes a new packet.
    void ReplaceDamagedPacket();
    bool IsReplacingDamagedPacket() const { return replacingDamaged; }
    // When set, every finished update is saved at once.
    void SetSaveOnChange(bool value) { saveOnChange = value; }

    std::string DebugDescription(bool verbose, int indent) override;

protected:
    void DoWriteChanges(std::vector<Path> const& paths) override;

private:
    void ReadFromFile();
    void MarkReadOnlyFile();
    std::string StampNow() const;

    UTF16String filePath;
    std::string readStamp; // the file as read: identity, size, time, XMP
    UTF16String damage;
    bool replacingDamaged = false;
    bool saveOnChange = false;
};

} // namespace zephmetadata

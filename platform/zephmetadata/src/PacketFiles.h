#pragma once
// A file's own XMP packet, found where the file's format puts it (JPEG APP1
// with its extended parts, PNG iTXt, GIF application extension, or the one
// packet of any other file), and written back so that no other byte of the
// file changes. What cannot be done that way is reported, never guessed at,
// so the caller can fall back.

#include "zephmetadata/XmpMeta.h"

#include <string>

namespace zephmetadata
{
namespace packetfiles
{

enum class Outcome
{
    kDone,     // read or written
    kNoPacket, // a format handled here that holds no packet
    kCannot,   // not a format or a packet handled here: the caller falls back
    kDamaged,  // the container or its packet is broken: leave the file alone
    kTooDeep,  // the packet nests deeper than xmp::kMaxPacketNesting: refused
};

// The file's main packet, parsed (extended parts merged in). When the
// packet itself is damaged (kDamaged), `damage` says why.
Outcome ReadPacket(std::string const& bytes, xmp::MetaPtr& meta, std::string* damage = nullptr);

// The file's bytes with meta as its packet: replaced in place, padded to the
// old packet's length, when it fits, otherwise a new XMP container for JPEG,
// PNG and GIF. Every byte outside the packet (or its container) is copied.
// A damaged packet is replaced only when `replaceDamaged` says the user
// chose to; otherwise the outcome is kDamaged.
Outcome WritePacket(std::string const& bytes, __XMPMeta__* meta, std::string& written,
                    bool replaceDamaged = false);

// The same on a file: read, and rewrite in place (meant for a copy that is
// then renamed over the original).
Outcome ReadPacketOfFile(std::string const& path, xmp::MetaPtr& meta,
                         std::string* damage = nullptr);
Outcome WritePacketIntoFile(std::string const& path, __XMPMeta__* meta,
                            bool replaceDamaged = false);

// Sets xmp:MetadataDate to now (local time with its offset) when meta says
// anything else than saved; the date alone is no change, so saving again
// without an edit keeps it.
void StampMetadataDateIfChanged(__XMPMeta__* meta, __XMPMeta__* saved);

} // namespace packetfiles
} // namespace zephmetadata

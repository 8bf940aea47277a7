#include "PacketFiles.h"

#include "PacketCheck.h"

#include <QCryptographicHash>

#include <exempi/xmp.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <map>
#include <vector>

namespace zephmetadata
{
namespace packetfiles
{
namespace
{

constexpr char kXmpNote[] = "http://ns.adobe.com/xmp/note/";
constexpr char kXmpBasic[] = "http://ns.adobe.com/xap/1.0/";

// Room left in a new packet so that the next few edits fit in place.
constexpr std::uint32_t kPadding = 2048;
// Files larger than this are left to exempi's handlers, which do not read
// them whole into memory.
constexpr std::uintmax_t kLargestFile = std::uintmax_t{512} * 1024 * 1024;

// JPEG: a segment holds at most 65,533 bytes after its length field.
constexpr char kJpegXmpSignature[] = "http://ns.adobe.com/xap/1.0/"; // + NUL
constexpr std::size_t kJpegXmpHeader = sizeof kJpegXmpSignature;
constexpr char kJpegExtensionSignature[] = "http://ns.adobe.com/xmp/extension/"; // + NUL
constexpr std::size_t kJpegExtensionHeader = sizeof kJpegExtensionSignature + 32 + 4 + 4;
constexpr std::size_t kJpegLargestStandardPacket = 65502;
constexpr std::size_t kJpegLargestPayload = 65533;

constexpr char kPngSignature[] = "\x89PNG\r\n\x1a\n";
constexpr char kPngXmpKeyword[] = "XML:com.adobe.xmp"; // + NUL

constexpr char kGifXmpIdentifier[] = "XMP DataXMP";

struct Span
{
    std::size_t offset = 0;
    std::size_t size = 0;
    std::size_t End() const { return offset + size; }
};

enum class Kind
{
    kJpeg,
    kPng,
    kGif,
    kScanned
};

// Where a file keeps its main packet, and where a new container would go.
struct Location
{
    Kind kind = Kind::kScanned;
    bool found = false;
    bool writable = true;      // the packet allows being rewritten in place
    bool canInsert = false;    // a new container may be inserted at insertAt
    bool leftToOthers = false; // a form of container not handled here
    Span container;            // the whole XMP container (JPEG segment, PNG chunk, GIF extension)
    Span packet;               // the packet inside it
    std::size_t insertAt = 0;
    std::vector<Span> extendedSegments; // JPEG: the parts that belong to this packet
    std::string extended;               // JPEG: those parts joined
};

std::uint32_t BigEndian16(std::string const& bytes, std::size_t at)
{
    return (std::uint32_t(std::uint8_t(bytes[at])) << 8) | std::uint8_t(bytes[at + 1]);
}

std::uint32_t BigEndian32(std::string const& bytes, std::size_t at)
{
    return (BigEndian16(bytes, at) << 16) | BigEndian16(bytes, at + 2);
}

void AppendBigEndian16(std::string& out, std::uint32_t value)
{
    out += char((value >> 8) & 0xFF);
    out += char(value & 0xFF);
}

void AppendBigEndian32(std::string& out, std::uint32_t value)
{
    AppendBigEndian16(out, value >> 16);
    AppendBigEndian16(out, value & 0xFFFF);
}

bool StartsWith(std::string const& bytes, std::size_t at, std::size_t available, char const* text,
                std::size_t length)
{
    return available >= length && at + length <= bytes.size() &&
           bytes.compare(at, length, text, length) == 0;
}

// The GUID the standard packet names for its extended part, or empty.
std::string ExtendedGuid(std::string const& packet)
{
    xmp::MetaPtr const meta = xmp::ParseMeta(packet.data(), packet.size());
    if (!meta)
        return std::string();
    xmp::XmpString value;
    if (!xmp_get_property(meta.get(), kXmpNote, "HasExtendedXMP", value.Get(), nullptr))
        return std::string();
    return value.Str();
}

// Walks the segments before the image data. A segment that is not where its
// predecessor's length says ends the walk: what follows is copied as it is.
bool LocateJpeg(std::string const& bytes, Location& where)
{
    where.kind = Kind::kJpeg;
    struct Part
    {
        std::uint32_t offset;
        Span segment;
        Span data;
    };
    std::map<std::string, std::vector<Part>> parts; // by GUID
    std::map<std::string, std::uint32_t> fullLengths;
    bool leading = true; // only APP0/APP1 so far: a new XMP segment goes after them
    bool reachedImage = false;
    std::size_t at = 2;
    where.insertAt = at;
    while (at + 4 <= bytes.size() && std::uint8_t(bytes[at]) == 0xFF)
    {
        std::uint8_t const marker = std::uint8_t(bytes[at + 1]);
        if (marker == 0xFF)
        { // fill byte
            ++at;
            continue;
        }
        if (marker == 0x01 || (marker >= 0xD0 && marker <= 0xD8))
        {
            at += 2;
            continue;
        }
        if (marker == 0xDA || marker == 0xD9)
        {
            reachedImage = true;
            break;
        }
        std::size_t const length = BigEndian16(bytes, at + 2);
        if (length < 2 || at + 2 + length > bytes.size())
            break;
        std::size_t const data = at + 4;
        std::size_t const dataSize = length - 2;
        if (marker == 0xE1 && !where.found &&
            StartsWith(bytes, data, dataSize, kJpegXmpSignature, kJpegXmpHeader))
        {
            where.found = true;
            where.container = {at, length + 2};
            where.packet = {data + kJpegXmpHeader, dataSize - kJpegXmpHeader};
        }
        else if (marker == 0xE1 && dataSize > kJpegExtensionHeader &&
                 StartsWith(bytes, data, dataSize, kJpegExtensionSignature,
                            sizeof kJpegExtensionSignature))
        {
            std::size_t const guidAt = data + sizeof kJpegExtensionSignature;
            std::string const guid = bytes.substr(guidAt, 32);
            fullLengths[guid] = BigEndian32(bytes, guidAt + 32);
            parts[guid].push_back({BigEndian32(bytes, guidAt + 36),
                                   {at, length + 2},
                                   {data + kJpegExtensionHeader, dataSize - kJpegExtensionHeader}});
        }
        at += 2 + length;
        leading = leading && (marker == 0xE0 || marker == 0xE1);
        if (leading)
            where.insertAt = at;
    }
    where.canInsert = reachedImage;
    if (!where.found)
        return reachedImage;

    std::string const guid = ExtendedGuid(bytes.substr(where.packet.offset, where.packet.size));
    auto const found = parts.find(guid);
    if (guid.empty() || found == parts.end())
        return true;
    std::vector<Part> pieces = found->second;
    std::sort(pieces.begin(), pieces.end(),
              [](Part const& a, Part const& b) { return a.offset < b.offset; });
    std::string joined;
    for (Part const& piece : pieces)
    {
        if (piece.offset != joined.size())
            return true; // incomplete: read the standard part alone
        joined += bytes.substr(piece.data.offset, piece.data.size);
        where.extendedSegments.push_back(piece.segment);
    }
    if (joined.size() != fullLengths[guid])
    {
        where.extendedSegments.clear();
        return true;
    }
    where.extended = std::move(joined);
    return true;
}

bool LocatePng(std::string const& bytes, Location& where)
{
    where.kind = Kind::kPng;
    std::size_t at = 8;
    bool sawHeader = false;
    while (at + 12 <= bytes.size())
    {
        std::size_t const length = BigEndian32(bytes, at);
        if (length > bytes.size() - at - 12)
            return false;
        std::string const type = bytes.substr(at + 4, 4);
        std::size_t const data = at + 8;
        if (type == "IHDR")
        {
            sawHeader = true;
            where.insertAt = at + 12 + length;
        }
        else if (type == "iTXt" && !where.found &&
                 StartsWith(bytes, data, length, kPngXmpKeyword, sizeof kPngXmpKeyword))
        {
            // keyword NUL, compression flag, method, language NUL, translated keyword NUL, text
            std::size_t const end = data + length;
            std::size_t p = data + sizeof kPngXmpKeyword;
            if (p + 2 > end)
                return false;
            if (bytes[p] != 0)
            {
                where.leftToOthers = true; // compressed
                return false;
            }
            p += 2;
            for (int field = 0; field < 2; ++field)
            {
                std::size_t const nul = bytes.find('\0', p);
                if (nul == std::string::npos || nul >= end)
                    return false;
                p = nul + 1;
            }
            where.found = true;
            where.container = {at, length + 12};
            where.packet = {p, end - p};
        }
        else if (type == "IEND")
        {
            where.canInsert = sawHeader;
            return sawHeader;
        }
        at += 12 + length;
    }
    return false; // no end chunk: cut short
}

std::string GifMagicTrailer()
{
    std::string trailer(1, '\x01');
    for (int value = 0xFF; value >= 0; --value)
        trailer += char(value);
    trailer += '\0';
    return trailer;
}

// Skips data sub-blocks; npos when they run past the end.
std::size_t SkipGifSubBlocks(std::string const& bytes, std::size_t at)
{
    while (at < bytes.size())
    {
        std::size_t const length = std::uint8_t(bytes[at]);
        ++at;
        if (length == 0)
            return at;
        at += length;
    }
    return std::string::npos;
}

bool LocateGif(std::string const& bytes, Location& where)
{
    where.kind = Kind::kGif;
    if (bytes.size() < 13)
        return false;
    std::uint8_t const flags = std::uint8_t(bytes[10]);
    std::size_t at = 13 + ((flags & 0x80) ? 3u * (2u << (flags & 7)) : 0u);
    // Extensions need the 89a header; an 87a file would need its header changed.
    where.canInsert = bytes.compare(0, 6, "GIF89a") == 0;
    where.insertAt = at;
    static std::string const trailer = GifMagicTrailer();
    while (at < bytes.size())
    {
        std::uint8_t const block = std::uint8_t(bytes[at]);
        if (block == 0x3B)
            return true;
        if (block == 0x21 && at + 2 < bytes.size())
        {
            std::size_t const identifier = at + 3;
            if (std::uint8_t(bytes[at + 1]) == 0xFF && std::uint8_t(bytes[at + 2]) == 11 &&
                StartsWith(bytes, identifier, 11, kGifXmpIdentifier, 11) && !where.found)
            {
                std::size_t const packet = identifier + 11;
                std::size_t const end = bytes.find(trailer, packet);
                if (end == std::string::npos)
                    return false;
                where.found = true;
                where.container = {at, end + trailer.size() - at};
                where.packet = {packet, end - packet};
                at = where.container.End();
                continue;
            }
            at = SkipGifSubBlocks(bytes, at + 2);
        }
        else if (block == 0x2C && at + 10 <= bytes.size())
        {
            std::uint8_t const imageFlags = std::uint8_t(bytes[at + 9]);
            at += 10 + ((imageFlags & 0x80) ? 3u * (2u << (imageFlags & 7)) : 0u);
            at = at < bytes.size() ? SkipGifSubBlocks(bytes, at + 1) : std::string::npos;
        }
        else
        {
            return false;
        }
        if (at == std::string::npos)
            return false;
    }
    return false; // no trailer: cut short
}

// Packets found by their wrappers between from and to. With firstOnly the
// first is the file's (an EPS, where later ones were appended by others);
// otherwise several (a thumbnail's, an older one) are not guessed between:
// the caller falls back.
bool LocateScanned(std::string const& bytes, Location& where, std::size_t from = 0,
                   std::size_t to = std::string::npos, bool firstOnly = false)
{
    where.kind = Kind::kScanned;
    static std::string const begin = "<?xpacket begin=";
    static std::string const end = "<?xpacket end=";
    std::size_t at = bytes.find(begin, from);
    int complete = 0;
    while (at < to)
    {
        std::size_t const close = bytes.find(end, at);
        std::size_t const finish = close == std::string::npos ? close : bytes.find("?>", close);
        if (finish == std::string::npos || finish >= to)
            break;
        if (++complete > 1)
            return false;
        where.found = true;
        where.container = where.packet = {at, finish + 2 - at};
        std::size_t const mode = close + end.size() + 1;
        where.writable = mode < bytes.size() && bytes[mode] == 'w';
        if (firstOnly)
            break;
        at = bytes.find(begin, finish);
    }
    return true;
}

// "12 0 R" at `at` (after white space); false if it is not there.
bool ReadPdfReference(std::string const& bytes, std::size_t at, unsigned long& number,
                      unsigned long& generation)
{
    auto skipSpace = [&]
    {
        while (at < bytes.size() && std::isspace(static_cast<unsigned char>(bytes[at])))
            ++at;
    };
    auto readNumber = [&](unsigned long& value)
    {
        skipSpace();
        std::size_t const start = at;
        value = 0;
        while (at < bytes.size() && std::isdigit(static_cast<unsigned char>(bytes[at])) &&
               at - start < 10)
            value = value * 10 + static_cast<unsigned long>(bytes[at++] - '0');
        return at > start;
    };
    if (!readNumber(number) || !readNumber(generation))
        return false;
    skipSpace();
    return at < bytes.size() && bytes[at] == 'R';
}

// The last definition of an object: an incremental update redefines it later.
std::size_t FindPdfObject(std::string const& bytes, unsigned long number, unsigned long generation)
{
    std::string const header = std::to_string(number) + ' ' + std::to_string(generation) + " obj";
    std::size_t at = bytes.rfind(header);
    while (at != std::string::npos && at > 0 &&
           std::isdigit(static_cast<unsigned char>(bytes[at - 1])))
        at = bytes.rfind(header, at - 1);
    return at;
}

// A PDF's packet is its catalog's metadata stream: the last trailer's /Root
// names the catalog, whose /Metadata names the stream. A catalog in a
// compressed object stream, or a compressed metadata stream, is not found.
bool LocatePdf(std::string const& bytes, Location& where)
{
    unsigned long number = 0, generation = 0;
    std::size_t const root = bytes.rfind("/Root");
    if (root == std::string::npos || !ReadPdfReference(bytes, root + 5, number, generation))
        return false;
    std::size_t const catalog = FindPdfObject(bytes, number, generation);
    std::size_t const catalogEnd =
        catalog == std::string::npos ? catalog : bytes.find("endobj", catalog);
    std::size_t const metadata = bytes.find("/Metadata", catalog);
    if (catalogEnd == std::string::npos || metadata > catalogEnd ||
        !ReadPdfReference(bytes, metadata + 9, number, generation))
        return false;
    std::size_t const object = FindPdfObject(bytes, number, generation);
    std::size_t const stream = object == std::string::npos ? object : bytes.find("stream", object);
    std::size_t const streamEnd =
        stream == std::string::npos ? stream : bytes.find("endstream", stream);
    return streamEnd != std::string::npos && LocateScanned(bytes, where, stream, streamEnd, true) &&
           where.found;
}

enum class Located
{
    kLocated,
    kDamaged,
    kCannot
};

Located Locate(std::string const& bytes, Location& where)
{
    bool ok = false;
    if (bytes.size() >= 3 && bytes.compare(0, 3, "\xFF\xD8\xFF") == 0)
        ok = LocateJpeg(bytes, where);
    else if (bytes.compare(0, 8, kPngSignature, 8) == 0)
        ok = LocatePng(bytes, where);
    else if (bytes.compare(0, 6, "GIF89a") == 0 || bytes.compare(0, 6, "GIF87a") == 0)
        ok = LocateGif(bytes, where);
    else if (bytes.compare(0, 5, "%PDF-") == 0)
        return LocatePdf(bytes, where) ? Located::kLocated : Located::kCannot;
    else if (bytes.compare(0, 4, "%!PS") == 0 || bytes.compare(0, 4, "\xC5\xD0\xD3\xC6") == 0)
        return LocateScanned(bytes, where, 0, std::string::npos, true) ? Located::kLocated
                                                                       : Located::kCannot;
    else if (LocateScanned(bytes, where))
        return Located::kLocated;
    else
        return Located::kCannot;
    if (where.leftToOthers)
        return Located::kCannot;
    return ok || where.found ? Located::kLocated : Located::kDamaged;
}

std::string Slice(std::string const& bytes, Span span)
{
    return bytes.substr(span.offset, span.size);
}

bool Serialize(__XMPMeta__* meta, std::string& out, std::uint32_t options, std::uint32_t padding)
{
    xmp::XmpString text;
    if (!xmp_serialize_and_format(meta, text.Get(), options, padding, "\n", " ", 0))
        return false;
    out = text.Str();
    return true;
}

bool SerializeExactly(__XMPMeta__* meta, std::size_t size, std::string& out)
{
    // Measured first: the toolkit complains on the console when it does not fit.
    return size > 0 && Serialize(meta, out, XMP_SERIAL_USECOMPACTFORMAT, 1) && out.size() <= size &&
           Serialize(meta, out, XMP_SERIAL_USECOMPACTFORMAT | XMP_SERIAL_EXACTPACKETLENGTH,
                     static_cast<std::uint32_t>(size)) &&
           out.size() == size;
}

bool SerializePadded(__XMPMeta__* meta, std::string& out)
{
    return Serialize(meta, out, XMP_SERIAL_USECOMPACTFORMAT, kPadding);
}

std::uint32_t Crc32(std::string const& bytes, std::size_t offset, std::size_t size)
{
    static std::uint32_t const* const table = []
    {
        static std::uint32_t values[256];
        for (std::uint32_t n = 0; n < 256; ++n)
        {
            std::uint32_t c = n;
            for (int k = 0; k < 8; ++k)
                c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
            values[n] = c;
        }
        return values;
    }();
    std::uint32_t crc = 0xFFFFFFFFu;
    for (std::size_t i = offset; i < offset + size; ++i)
        crc = table[(crc ^ std::uint8_t(bytes[i])) & 0xFF] ^ (crc >> 8);
    return crc ^ 0xFFFFFFFFu;
}

std::string PngChunk(char const* type, std::string const& data)
{
    std::string chunk;
    AppendBigEndian32(chunk, static_cast<std::uint32_t>(data.size()));
    chunk += type;
    chunk += data;
    AppendBigEndian32(chunk, Crc32(chunk, 4, chunk.size() - 4));
    return chunk;
}

std::string PngXmpChunk(std::string const& packet)
{
    std::string data(kPngXmpKeyword, sizeof kPngXmpKeyword); // with its NUL
    data += std::string(4, '\0'); // not compressed, method 0, no language, no translated keyword
    data += packet;
    return PngChunk("iTXt", data);
}

std::string GifXmpExtension(std::string const& packet)
{
    return std::string("\x21\xFF\x0B", 3) + kGifXmpIdentifier + packet + GifMagicTrailer();
}

std::string JpegSegment(std::string const& payload)
{
    std::string segment("\xFF\xE1", 2);
    AppendBigEndian16(segment, static_cast<std::uint32_t>(payload.size() + 2));
    return segment + payload;
}

std::string Md5Hex(std::string const& text)
{
    QByteArray const digest = QCryptographicHash::hash(
        QByteArray::fromRawData(text.data(), static_cast<int>(text.size())),
        QCryptographicHash::Md5);
    return digest.toHex().toUpper().toStdString();
}

// Size of one top-level property written alone: what moving it to the
// extended part saves.
std::size_t PropertySize(__XMPMeta__* meta, std::string const& ns, std::string const& path)
{
    xmp::MetaPtr alone = xmp::NewMeta();
    std::string text;
    if (!alone || !xmp::CopyProperty(meta, alone.get(), ns.c_str(), path.c_str()) ||
        !Serialize(alone.get(), text, XMP_SERIAL_USECOMPACTFORMAT | XMP_SERIAL_OMITPACKETWRAPPER,
                   0))
        return 0;
    return text.size();
}

// The XMP segments of a JPEG: a standard packet of at most 65,502 bytes and,
// when the tree is larger, the largest properties moved into extended
// segments named by the MD5 digest of their serialisation.
bool JpegXmpSegments(__XMPMeta__* meta, std::string& segments)
{
    std::string standard;
    xmp::MetaPtr main = xmp::Clone(meta);
    if (!main)
        return false;
    xmp_delete_property(main.get(), kXmpNote, "HasExtendedXMP");
    if (SerializePadded(main.get(), standard) && standard.size() > kJpegLargestStandardPacket)
        SerializeExactly(main.get(), kJpegLargestStandardPacket, standard);
    if (!standard.empty() && standard.size() <= kJpegLargestStandardPacket)
    {
        segments = JpegSegment(std::string(kJpegXmpSignature, kJpegXmpHeader) + standard);
        return true;
    }

    std::vector<std::pair<std::size_t, std::pair<std::string, std::string>>> bySize;
    for (auto const& property : xmp::TopLevelProperties(main.get()))
        bySize.push_back({PropertySize(main.get(), property.first, property.second), property});
    std::sort(bySize.begin(), bySize.end(),
              [](auto const& a, auto const& b) { return a.first > b.first; });
    xmp::MetaPtr extension = xmp::NewMeta();
    std::string extended;
    for (auto const& entry : bySize)
    {
        auto const& [ns, path] = entry.second;
        xmp::CopyProperty(main.get(), extension.get(), ns.c_str(), path.c_str());
        xmp_delete_property(main.get(), ns.c_str(), path.c_str());
        if (!Serialize(extension.get(), extended,
                       XMP_SERIAL_USECOMPACTFORMAT | XMP_SERIAL_OMITPACKETWRAPPER, 0))
            return false;
        xmp_set_property(main.get(), kXmpNote, "HasExtendedXMP", Md5Hex(extended).c_str(), 0);
        if (SerializePadded(main.get(), standard) && standard.size() <= kJpegLargestStandardPacket)
            break;
        if (SerializeExactly(main.get(), kJpegLargestStandardPacket, standard))
            break;
        standard.clear();
    }
    if (standard.empty())
        return false;
    std::string const guid = Md5Hex(extended);
    segments = JpegSegment(std::string(kJpegXmpSignature, kJpegXmpHeader) + standard);
    std::size_t const chunk = kJpegLargestPayload - kJpegExtensionHeader;
    for (std::size_t offset = 0; offset < extended.size(); offset += chunk)
    {
        std::string payload(kJpegExtensionSignature, sizeof kJpegExtensionSignature);
        payload += guid;
        AppendBigEndian32(payload, static_cast<std::uint32_t>(extended.size()));
        AppendBigEndian32(payload, static_cast<std::uint32_t>(offset));
        payload += extended.substr(offset, chunk);
        segments += JpegSegment(payload);
    }
    return true;
}

// The bytes with the spans removed and the insertion put where the first
// removed span was (or at `at` when there is none).
std::string Splice(std::string const& bytes, std::vector<Span> removed, std::size_t at,
                   std::string const& insertion)
{
    std::sort(removed.begin(), removed.end(), [](Span a, Span b) { return a.offset < b.offset; });
    if (!removed.empty())
        at = removed.front().offset;
    std::string out;
    out.reserve(bytes.size() + insertion.size());
    std::size_t copied = 0;
    bool inserted = false;
    for (Span const& span : removed)
    {
        out.append(bytes, copied, span.offset - copied);
        if (!inserted && span.offset == at)
        {
            out += insertion;
            inserted = true;
        }
        copied = span.End();
    }
    if (!inserted)
    {
        out.append(bytes, copied, at - copied);
        out += insertion;
        copied = at;
    }
    out.append(bytes, copied, std::string::npos);
    return out;
}

bool WriteInPlace(std::string const& bytes, Location const& where, __XMPMeta__* meta,
                  std::string& written)
{
    if (!where.found || !where.writable || !where.extendedSegments.empty())
        return false;
    std::string packet;
    if (where.kind == Kind::kJpeg)
    {
        xmp::MetaPtr main = xmp::Clone(meta);
        if (!main)
            return false;
        xmp_delete_property(main.get(), kXmpNote, "HasExtendedXMP");
        if (!SerializeExactly(main.get(), where.packet.size, packet))
            return false;
    }
    else if (!SerializeExactly(meta, where.packet.size, packet))
    {
        return false;
    }
    written = bytes;
    written.replace(where.packet.offset, where.packet.size, packet);
    if (where.kind == Kind::kPng)
    {
        std::size_t const crcAt = where.container.End() - 4;
        std::string crc;
        AppendBigEndian32(crc,
                          Crc32(written, where.container.offset + 4, where.container.size - 8));
        written.replace(crcAt, 4, crc);
    }
    return true;
}

bool WriteContainer(std::string const& bytes, Location const& where, __XMPMeta__* meta,
                    std::string& written)
{
    if (!where.found && !where.canInsert)
        return false;
    std::string container;
    std::string packet;
    switch (where.kind)
    {
    case Kind::kJpeg:
        if (!JpegXmpSegments(meta, container))
            return false;
        break;
    case Kind::kPng:
        if (!SerializePadded(meta, packet))
            return false;
        container = PngXmpChunk(packet);
        break;
    case Kind::kGif:
        if (!SerializePadded(meta, packet))
            return false;
        container = GifXmpExtension(packet);
        break;
    case Kind::kScanned:
        return false;
    }
    std::vector<Span> removed = where.extendedSegments;
    if (where.found)
        removed.push_back(where.container);
    written = Splice(bytes, removed, where.insertAt, container);
    return true;
}

// Every node but xmp:MetadataDate, in an order that does not depend on how
// the tree was built.
std::vector<std::string> ComparableNodes(__XMPMeta__* meta)
{
    std::vector<std::string> nodes;
    xmp::Iterator iterator(meta, nullptr, nullptr);
    xmp::Node node;
    while (iterator.Next(node))
        if (node.path != "xmp:MetadataDate")
            nodes.push_back(node.schemaNamespace + ' ' + node.path + ' ' +
                            std::to_string(node.options) + ' ' + node.value);
    std::sort(nodes.begin(), nodes.end());
    return nodes;
}

// What a file whose packet was not located gives its caller.
Outcome OutcomeOf(Located located)
{
    return located == Located::kDamaged ? Outcome::kDamaged : Outcome::kCannot;
}

} // namespace

Outcome ReadPacket(std::string const& bytes, xmp::MetaPtr& meta, std::string* damage)
{
    Location where;
    if (Located const located = Locate(bytes, where); located != Located::kLocated)
        return OutcomeOf(located);
    if (!where.found)
        return where.kind == Kind::kScanned ? Outcome::kCannot : Outcome::kNoPacket;
    std::string const packet = Slice(bytes, where.packet);
    if (xmp::NestsTooDeep(packet.data(), packet.size()))
        return Outcome::kTooDeep;
    std::string why;
    meta = packetcheck::ParseChecked(packet.data(), packet.size(), why);
    if (!meta)
    {
        if (damage)
            *damage = why;
        return Outcome::kDamaged;
    }
    xmp::ParseFailure failure = xmp::ParseFailure::kNone;
    if (!where.extended.empty())
    {
        xmp::MetaPtr const extension =
            xmp::ParseMeta(where.extended.data(), where.extended.size(), &failure);
        if (failure == xmp::ParseFailure::kTooDeep)
        {
            meta.reset();
            return Outcome::kTooDeep;
        }
        if (extension)
            xmp::AppendProperties(extension.get(), meta.get(), xmp::kAppendReplaceExisting);
    }
    // The note only names the container's extended part: not a value of the file.
    xmp_delete_property(meta.get(), kXmpNote, "HasExtendedXMP");
    return Outcome::kDone;
}

Outcome WritePacket(std::string const& bytes, __XMPMeta__* meta, std::string& written,
                    bool replaceDamaged)
{
    if (!meta)
        return Outcome::kCannot;
    Location where;
    if (Located const located = Locate(bytes, where); located != Located::kLocated)
        return OutcomeOf(located);
    if (where.found)
    {
        // A packet that does not parse is never overwritten by one that does.
        std::string const packet = Slice(bytes, where.packet);
        std::string damage;
        if (!replaceDamaged && !packetcheck::ParseChecked(packet.data(), packet.size(), damage))
            return Outcome::kDamaged;
    }
    else if (where.kind != Kind::kScanned && !where.canInsert)
    {
        return Outcome::kDamaged;
    }
    if (WriteInPlace(bytes, where, meta, written) || WriteContainer(bytes, where, meta, written))
        return Outcome::kDone;
    return Outcome::kCannot;
}

Outcome ReadPacketOfFile(std::string const& path, xmp::MetaPtr& meta, std::string* damage)
{
    std::error_code error;
    std::uintmax_t const size = std::filesystem::file_size(path, error);
    if (error || size > kLargestFile)
        return Outcome::kCannot;
    std::ifstream in(path, std::ios::binary);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    if (!in.read(bytes.data(), static_cast<std::streamsize>(bytes.size())))
        return Outcome::kCannot;
    return ReadPacket(bytes, meta, damage);
}

Outcome WritePacketIntoFile(std::string const& path, __XMPMeta__* meta, bool replaceDamaged)
{
    std::error_code error;
    std::uintmax_t const size = std::filesystem::file_size(path, error);
    if (error || size > kLargestFile)
        return Outcome::kCannot;
    std::string bytes(static_cast<std::size_t>(size), '\0');
    {
        std::ifstream in(path, std::ios::binary);
        if (!in.read(bytes.data(), static_cast<std::streamsize>(bytes.size())))
            return Outcome::kCannot;
    }
    std::string written;
    Outcome const outcome = WritePacket(bytes, meta, written, replaceDamaged);
    if (outcome != Outcome::kDone)
        return outcome;
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(written.data(), static_cast<std::streamsize>(written.size()));
    out.close();
    return out ? Outcome::kDone : Outcome::kDamaged;
}

void StampMetadataDateIfChanged(__XMPMeta__* meta, __XMPMeta__* saved)
{
    if (!meta || !saved || ComparableNodes(meta) == ComparableNodes(saved))
        return;
    std::time_t const now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char text[40];
    std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S%z", &local);
    // strftime writes the offset as +hhmm; XMP dates want +hh:mm.
    std::string date(text, length);
    if (date.size() >= 5)
        date.insert(date.size() - 2, ":");
    xmp_set_property(meta, kXmpBasic, "MetadataDate", date.c_str(), 0);
}

} // namespace packetfiles
} // namespace zephmetadata

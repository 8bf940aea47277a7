// One value edited and saved: every byte outside the file's XMP container and
// every other property of its packet must come back as they were.
#include "Corpus.h"
#include "zephmetadata/FileProvider.h"

#include "zephmetadata/Access.h"
#include "zephmetadata/ErrorLog.h"
#include "zephmetadata/Values.h"

#include "ModelTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <set>
#include <sstream>
#include <tuple>

using namespace zephmetadata;
using namespace modeltest;
namespace fs = std::filesystem;

namespace
{

// Big-endian numbers of `size` bytes, read and written.
std::uint32_t Be(std::string const& b, std::size_t at, int size = 4)
{
    std::uint32_t value = 0;
    for (int i = 0; i < size; ++i)
        value = value << 8 | std::uint8_t(b[at + i]);
    return value;
}
std::string BeBytes(std::size_t value, int size = 4)
{
    std::string bytes;
    for (int i = size - 1; i >= 0; --i)
        bytes += char((value >> (8 * i)) & 0xFF);
    return bytes;
}

std::uint32_t PngCrc(std::string const& typeAndData)
{
    std::uint32_t crc = 0xFFFFFFFFu;
    for (char c : typeAndData)
    {
        crc ^= std::uint8_t(c);
        for (int k = 0; k < 8; ++k)
            crc = (crc & 1) ? 0xEDB88320u ^ (crc >> 1) : crc >> 1;
    }
    return crc ^ 0xFFFFFFFFu;
}

// The file without its XMP containers, cut out as each format defines them,
// so that the rest compares byte for byte. Written apart from the library on
// purpose: it referees the library's writer.
std::string WithoutXmp(std::string const& bytes)
{
    std::string rest;
    if (bytes.compare(0, 3, "\xFF\xD8\xFF") == 0)
    {
        std::size_t at = 2, copied = 0;
        while (at + 4 <= bytes.size() && std::uint8_t(bytes[at]) == 0xFF)
        {
            std::uint8_t const marker = std::uint8_t(bytes[at + 1]);
            if (marker == 0xDA || marker == 0xD9)
                break;
            if (marker == 0xFF || marker == 0x01 || (marker >= 0xD0 && marker <= 0xD8))
            {
                at += marker == 0xFF ? 1 : 2;
                continue;
            }
            std::size_t const end = at + 2 + Be(bytes, at + 2, 2);
            if (end > bytes.size())
                break;
            std::string const payload = bytes.substr(at + 4, 35);
            if (marker == 0xE1 &&
                (payload.compare(0, 29, std::string("http://ns.adobe.com/xap/1.0/\0", 29)) == 0 ||
                 payload.compare(0, 35, std::string("http://ns.adobe.com/xmp/extension/\0", 35)) ==
                     0))
            {
                rest += bytes.substr(copied, at - copied);
                copied = end;
            }
            at = end;
        }
        return rest + bytes.substr(copied);
    }
    if (bytes.compare(0, 8, "\x89PNG\r\n\x1a\n") == 0)
    {
        std::size_t at = 8;
        rest = bytes.substr(0, 8);
        while (at + 12 <= bytes.size())
        {
            std::size_t const length = Be(bytes, at), end = at + 12 + length;
            if (end > bytes.size())
                break;
            // Other readers check the chunks' CRCs, ours does not: a wrong
            // one in the XMP chunk shows as a difference.
            if (bytes.compare(at + 4, 4, "iTXt") != 0 ||
                bytes.compare(at + 8, 18, std::string("XML:com.adobe.xmp\0", 18)) != 0)
                rest += bytes.substr(at, end - at);
            else if (PngCrc(bytes.substr(at + 4, 4 + length)) != Be(bytes, end - 4))
                rest += "<wrong CRC>";
            at = end;
        }
        return rest + bytes.substr(std::min(at, bytes.size()));
    }
    // Any other file, a GIF among them: its packets, wrapper to wrapper.
    std::size_t copied = 0;
    for (std::size_t at = bytes.find("<?xpacket begin="); at != std::string::npos;
         at = bytes.find("<?xpacket begin=", copied))
    {
        std::size_t const end = bytes.find("?>", bytes.find("<?xpacket end=", at));
        if (end == std::string::npos)
            break;
        rest += bytes.substr(copied, at - copied);
        copied = end + 2;
    }
    return rest + bytes.substr(copied);
}

// Every node of a tree as a line, but the edited value and the save date.
std::vector<std::string> Nodes(__XMPMeta__* meta, std::string const& edited)
{
    std::vector<std::string> lines;
    xmp::Iterator iterator(meta, nullptr, nullptr);
    for (xmp::Node node; iterator.Next(node);)
    {
        // Schema nodes come and go with their first property.
        if (node.path.empty() || node.path.rfind(edited, 0) == 0 || node.path == "xmp:MetadataDate")
            continue;
        lines.push_back(node.schemaNamespace + " " + node.path + " [" +
                        std::to_string(node.options) + "] = " + node.value.substr(0, 80));
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

// Copies the file, edits one value through a FileProvider, saves, and lists
// what changed beyond the edit, a line each. `inPlace` is set when the file
// kept its size.
std::string RoundTrip(std::string const& source, char const* ns, char const* property,
                      std::string const& value, bool* inPlace = nullptr)
{
    TempFolder folder;
    std::string const path = (folder.path / fs::path(source).filename()).string();
    fs::copy_file(source, path);
    fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
    std::string const original = ReadFile(path);
    std::string differences;
    auto const note = [&](std::string const& line) { differences += "\n  " + line; };

    auto provider = Open(path);
    if (!provider->HasMetadata())
        return "not read";
    std::string const edited = xmp::NamespacePrefix(ns) + ":" + property;
    std::vector<std::string> const before = Nodes(*MetaDataReadAccess(provider), edited);
    Write(provider, P(ns, property), value);
    MetadataSaveResult const result = provider->Save();
    if (result == kMetadataSaveFailed)
        return "save failed";
    std::string const saved = ReadFile(path);
    bool const isSidecar = S(zephcore::UTF16to8(SidecarPathFor(U16(path)))) == path;
    if (result == kMetadataSavedIntoSidecar && !isSidecar && saved != original)
        note("saved into a sidecar, but the file changed");
    if (result == kMetadataSavedIntoFile && WithoutXmp(saved) != WithoutXmp(original))
        note("bytes outside the XMP container changed, or its CRC is wrong");
    if (inPlace)
        *inPlace = saved.size() == original.size();

    auto reread = Open(path);
    if (!reread->HasMetadata())
        return "not read after saving";
    if (std::string const now = Read(reread, P(ns, property)); now != value)
        note("edited value reads back as " + now.substr(0, 40));
    if (Read(reread, P(kXMP, "MetadataDate")).empty())
        note("no xmp:MetadataDate");
    std::vector<std::string> const after = Nodes(*MetaDataReadAccess(reread), edited);
    for (auto const& [from, in, what] :
         {std::tuple(&before, &after, "lost: "), std::tuple(&after, &before, "added: ")})
    {
        std::vector<std::string> missing;
        std::set_difference(from->begin(), from->end(), in->begin(), in->end(),
                            std::back_inserter(missing));
        for (std::size_t i = 0; i < missing.size() && i < 10; ++i)
            note(what + missing[i]);
    }
    return differences;
}

// --- files the test writes itself -------------------------------------------

// A packet with the toolkit's padding, as a writer that leaves room writes it.
std::string PaddedPacket(std::string const& description)
{
    xmp::MetaPtr meta = Parse(Packet(description));
    std::string packet;
    xmp::SerializeToBuffer(meta.get(), packet);
    return packet;
}

std::string SamplePacket()
{
    return PaddedPacket(R"(
        <xmp:CreatorTool>Sample Writer</xmp:CreatorTool>
        <xmp:Label>Before</xmp:Label>
        <tiff:Make xmlns:tiff="http://ns.adobe.com/tiff/1.0/">Maker</tiff:Make>
        <exif:DateTimeOriginal xmlns:exif="http://ns.adobe.com/exif/1.0/">2024-05-01T10:30:00.25+02:00</exif:DateTimeOriginal>
        <exif:GPSLatitude xmlns:exif="http://ns.adobe.com/exif/1.0/">48,51.123456N</exif:GPSLatitude>
        <dc:subject><rdf:Bag><rdf:li>sea</rdf:li><rdf:li>sky</rdf:li></rdf:Bag></dc:subject>)");
}

std::string JpegSegment(int marker, std::string const& payload)
{
    return std::string{char(0xFF), char(marker)} + BeBytes(payload.size() + 2, 2) + payload;
}

// A JPEG with EXIF (a one-entry IFD: ImageDescription), XMP and IPTC (a
// Photoshop resource with a caption), around the scan of a tiny image.
std::string SampleJpeg()
{
    std::string const tiny = ReadFile(DataFile("tiny.jpg"));
    std::string exif("Exif\0\0MM\0\x2a\0\0\0\x08\0\x01", 16);
    exif += std::string("\x01\x0e\0\x02\0\0\0\x04", 8) + "EXIF" + std::string(4, '\0');
    std::string const iim = std::string("\x1c\x02\x78", 3) + BeBytes(7, 2) + "Caption";
    std::string const iptc = std::string("Photoshop 3.0\0", 14) + "8BIM\x04\x04" +
                             std::string(2, '\0') + BeBytes(iim.size()) + iim;
    std::size_t const afterApp0 = 2 + 2 + Be(tiny, 4, 2);
    return tiny.substr(0, afterApp0) + JpegSegment(0xE1, exif) +
           JpegSegment(0xE1, std::string("http://ns.adobe.com/xap/1.0/\0", 29) + SamplePacket()) +
           JpegSegment(0xED, iptc) + tiny.substr(afterApp0);
}

std::string PngChunk(std::string const& type, std::string const& data)
{
    return BeBytes(data.size()) + type + data + BeBytes(PngCrc(type + data));
}

std::string SamplePng()
{
    std::string const tiny = ReadFile(DataFile("tiny.png"));
    std::size_t const afterHeader = 8 + 12 + Be(tiny, 8);
    return tiny.substr(0, afterHeader) + PngChunk("tEXt", std::string("Comment\0kept", 12)) +
           PngChunk("iTXt", std::string("XML:com.adobe.xmp\0\0\0\0\0", 22) + SamplePacket()) +
           PngChunk("tIME", std::string("\x07\xe8\x05\x01\x0a\x1e\x00", 7)) +
           tiny.substr(afterHeader);
}

// A 1x1 GIF89a with a comment and an XMP extension.
std::string SampleGif()
{
    std::string gif("GIF89a\x01\0\x01\0\x80\0\0\0\0\0\xff\xff\xff", 19);
    gif += std::string("\x21\xFE\x04kept\0", 8);
    gif += std::string("\x21\xFF\x0BXMP DataXMP", 14) + SamplePacket() + '\x01';
    for (int value = 0xFF; value >= 0; --value)
        gif += char(value);
    gif += '\0';
    gif += std::string("\x2C\0\0\0\0\x01\0\x01\0\0\x02\x02\x44\x01\0\x3B", 16);
    return gif;
}

TEST(FileRoundTripTest, SmallEditStaysInPlaceAndLargeEditRewritesOnlyTheContainer)
{
    TempFolder folder;
    for (auto const& [name, bytes] :
         {std::pair("exif-xmp-iptc.jpg", SampleJpeg()), std::pair("chunks.png", SamplePng()),
          std::pair("comment.gif", SampleGif())})
    {
        SCOPED_TRACE(name);
        std::string const path = folder.File(name);
        ASSERT_TRUE(WriteFile(path, bytes));
        bool inPlace = false;
        EXPECT_EQ(RoundTrip(path, kXMP, "Label", "Checked", &inPlace), "");
        EXPECT_TRUE(inPlace) << "the edit fits the packet's padding";
        // Too large for the padding (and, in a JPEG, for one segment).
        EXPECT_EQ(RoundTrip(path, kDC, "description", std::string(200000, 'x'), &inPlace), "");
        EXPECT_FALSE(inPlace);
    }
}

TEST(FileRoundTripTest, FilesWithoutXmpTakeAPacketAndKeepTheRest)
{
    for (char const* name : {"tiny.jpg", "tiny.png"})
        EXPECT_EQ(RoundTrip(DataFile(name), kXMP, "Label", "First"), "") << name;
}

std::string LabelledPacket(char const* label)
{
    return PaddedPacket(std::string("<xmp:Label>") + label + "</xmp:Label>");
}

TEST(FileRoundTripTest, PdfShowsTheCatalogsPacketNotAnotherStreams)
{
    TempFolder folder;
    std::string const path = folder.File("two.pdf");
    auto const stream = [](int object, std::string const& packet)
    {
        return std::to_string(object) + " 0 obj\n<< /Type /Metadata /Length " +
               std::to_string(packet.size()) + " >>\nstream\n" + packet + "\nendstream\nendobj\n";
    };
    ASSERT_TRUE(WriteFile(
        path, "%PDF-1.4\n1 0 obj\n<< /Type /Catalog /Metadata 3 0 R >>\nendobj\n" +
                  stream(2, LabelledPacket("Page")) + stream(3, LabelledPacket("Document")) +
                  "trailer\n<< /Root 1 0 R >>\n%%EOF\n"));
    EXPECT_EQ(LabelOf(path), "Document");
}

TEST(FileRoundTripTest, EpsEditLeavesAnAppendedPacketAlone)
{
    TempFolder folder;
    std::string const path = folder.File("appended.eps");
    std::string const appended = LabelledPacket("Appended");
    ASSERT_TRUE(WriteFile(path, "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 1 1\n" +
                                    LabelledPacket("Main") + "\nshowpage\n%%EOF\n" + appended));
    EXPECT_EQ(LabelOf(path), "Main");
    EXPECT_EQ(RoundTrip(path, kDC, "format", "application/postscript"), "");
    // RoundTrip leaves packets alone wherever they are: the appended one is
    // checked here.
    EXPECT_EQ(Open(path, "Edited")->Save(), kMetadataSavedIntoFile);
    std::string const saved = ReadFile(path);
    EXPECT_EQ(saved.substr(saved.size() - appended.size()), appended);
}

// --- the shared corpus -------------------------------------------------------

// Files that may still differ, with the reason, as listed in the model's
// document: rows "| `file` | reason |" under "Round-trip exceptions".
std::set<std::string> DocumentedExceptions()
{
    std::istringstream document(ReadFile(ZEPH_SOURCE_DIR "/docs/metadata-model.md"));
    std::set<std::string> exceptions;
    bool inSection = false;
    for (std::string line; std::getline(document, line);)
    {
        if (line.rfind("#", 0) == 0)
            inSection = line.find("Round-trip exceptions") != std::string::npos;
        else if (inSection && line.rfind("| `", 0) == 0)
            exceptions.insert(line.substr(3, line.find('`', 3) - 3));
    }
    return exceptions;
}

TEST(FileRoundTripCorpusTest, CorpusFilesChangeOnlyTheEditedValue)
{
    ZEPH_REQUIRE_CORPUS();
    std::set<std::string> const exceptions = DocumentedExceptions();
    std::vector<fs::path> files;
    for (auto const& entry : fs::directory_iterator(zephtest::CorpusDir()))
        if (entry.is_regular_file() && entry.path().filename() != "MANIFEST.md")
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    int lossless = 0;
    for (fs::path const& file : files)
    {
        std::string const name = file.filename().string();
        std::string const differences = RoundTrip(file.string(), kXMP, "Label", "Checked");
        bool const listed = exceptions.count(name) != 0;
        lossless += differences.empty() ? 1 : 0;
        EXPECT_NE(differences.empty(), listed)
            << name << (listed ? " is lossless now: remove it from the exceptions" : differences);
    }
    ClearErrors();
    std::cout << lossless << " of " << files.size() << " corpus files lossless\n";
    RecordProperty("lossless", lossless);
}

} // namespace

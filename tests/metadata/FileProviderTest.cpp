#include "zephmetadata/FileProvider.h"

#include "Corpus.h"
#include "ModelTestSupport.h"
#include "ReadOnlyFolder.h"
#include "zephmetadata/Access.h"
#include "zephmetadata/ErrorLog.h"
#include "zephmetadata/Switches.h"
#include "zephmetadata/Values.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <filesystem>
#include <optional>
#include <set>

using namespace zephmetadata;
using namespace modeltest;
namespace fs = std::filesystem;
using xmp::kMaxPacketNesting;

namespace
{

std::string CopyInto(TempFolder const& dir, std::string const& source, std::string const& name)
{
    std::string const target = dir.File(name);
    fs::copy_file(source, target, fs::copy_options::overwrite_existing);
    fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write);
    return target;
}

class FileProviderTest : public testing::Test
{
protected:
    void SetUp() override { ClearErrors(); }
    void TearDown() override { ClearErrors(); }
    TempFolder dir;
};

using FileProviderCorpusTest = FileProviderTest;

} // namespace

TEST_F(FileProviderTest, SaveDateIsSetWhenSomethingChangedAndKeptOtherwise)
{
    std::string const path = CopyInto(dir, DataFile("tiny.png"), "tiny.png");
    auto provider = Open(path);
    EXPECT_EQ(provider->Save(), kMetadataSavedIntoFile);
    EXPECT_EQ(Read(Open(path), P(kXMP, "MetadataDate")), "") << "nothing changed";
    // A date is written with an edit (the round trip checks it); the provider
    // holds the date it saved, so saving again is no change.
    SetLabel(provider, "Dated");
    EXPECT_EQ(provider->Save(), kMetadataSavedIntoFile);
    std::string const bytes = ReadFile(path);
    EXPECT_EQ(provider->Save(), kMetadataSavedIntoFile);
    EXPECT_EQ(ReadFile(path), bytes);
}

// An absent, an empty and two damaged files: a save fails, leaves the file
// as it was and writes nothing else, not even a sidecar; the unreadable ones
// give no metadata and an entry.
TEST_F(FileProviderTest, SaveIntoUnreadableOrDamagedFileFailsAndLeavesItWhole)
{
    using namespace std::string_literals;
    std::string const path = dir.File("clip.jpg");
    for (auto const& bytes :
         {std::optional<std::string>(), std::optional(""s),
          std::optional("\xFF\xD8\xFF\xE0\x00\x10garbagegarbage"s), std::optional("\xFF\xD8"s)})
    {
        SCOPED_TRACE(bytes ? bytes->size() : -1);
        ClearErrors();
        if (bytes)
            WriteFile(path, *bytes);
        if (!bytes || bytes->empty())
        {
            auto provider = Open(path);
            EXPECT_EQ(*MetaDataReadAccess(provider), nullptr);
            ASSERT_EQ(GetErrorInfos().size(), 1u);
            EXPECT_EQ(GetErrorInfos()[0].code, kErrorMetadataRead);
            EXPECT_EQ(provider->Save(), kMetadataSaveFailed);
        }
        xmp::MetaPtr meta = Parse(EveryKindPacket());
        EXPECT_EQ(SaveMetadataToFile(meta.get(), U16(path)), kMetadataSaveFailed);
        EXPECT_TRUE(HasErrors());
        EXPECT_EQ(dir.Names().size(), bytes ? 1u : 0u);
        EXPECT_EQ(ReadFile(path), bytes.value_or(""));
    }
}

std::string const kXmpMeta = "<x:xmpmeta xmlns:x='adobe:ns:meta/'>";
std::string const kRdfOpen = "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>";

TEST_F(FileProviderTest, DamagedPacketIsShownReadOnlyWithItsReasonAndReplacedOnlyWhenAsked)
{
    // Rows: a file name and a damaged packet, as exempi refuses it or as it
    // parses it into nothing without a word.
    std::string const twoRdf =
        kXmpMeta + kRdfOpen + "</rdf:RDF>" + kRdfOpen + "</rdf:RDF></x:xmpmeta>";
    std::pair<char const*, std::string> const cases[] = {
        {"broken.xmp", "<x:xmpmeta><rdf:RDF><oops></x:xmpmeta>"},
        {"two-rdf.xmp", twoRdf},
        {"text.xmp", kXmpMeta + "A text value</x:xmpmeta>"},
        {"wrong-rdf.xmp", kXmpMeta + "<rdf:RDF xmlns:rdf=' '><rdf:Description xmlns:xmp="
                                     "'http://ns.adobe.com/xap/1.0/'><xmp:Label>lost</xmp:Label>"
                                     "</rdf:Description></rdf:RDF></x:xmpmeta>"},
        {"broken.jpg", kXmpMeta + kRdfOpen + "<rdf:Description><b></rdf:RDF></x:xmpmeta>"},
        {"two-rdf.jpg", twoRdf}};
    std::string const image = ReadFile(DataFile("tiny.jpg")).substr(2);
    for (auto const& [name, packet] : cases)
    {
        SCOPED_TRACE(name);
        ClearErrors();
        TempFolder folder;
        std::string const path = folder.File(name);
        bool const jpeg = fs::path(path).extension() == ".jpg";
        std::string const bytes = jpeg ? JpegWithPacket(packet) : packet;
        WriteFile(path, bytes);
        auto provider = Open(path, "Unasked");
        ASSERT_TRUE(provider->HasMetadata()) << "what could be recovered is shown";
        EXPECT_TRUE(provider->IsReadOnly());
        ASSERT_EQ(GetErrorInfos().size(), 1u);
        EXPECT_NE(S(zephcore::UTF16to8(GetErrorInfos()[0].message)).find("damaged ("),
                  std::string::npos);
        EXPECT_EQ(provider->Save(), kMetadataSaveFailed);
        xmp::MetaPtr const other = Parse(EveryKindPacket());
        EXPECT_EQ(SaveMetadataToFile(other.get(), U16(path)), kMetadataSaveFailed);
        EXPECT_EQ(ReadFile(path), bytes);
        EXPECT_EQ(folder.Names().size(), 1u);

        provider->ReplaceDamagedPacket();
        EXPECT_FALSE(provider->IsReadOnly());
        SetLabel(provider, "Replaced");
        EXPECT_NE(provider->Save(), kMetadataSaveFailed);
        auto reread = Open(path);
        EXPECT_EQ(Label(reread), "Replaced");
        EXPECT_FALSE(reread->IsReadOnly());
        std::string const saved = ReadFile(path);
        if (jpeg)
        {
            EXPECT_EQ(saved.substr(saved.size() - std::min(saved.size(), image.size())), image)
                << "the image itself is kept";
        }
    }
}

TEST_F(FileProviderTest, EmptyPacketsAreNotDamaged)
{
    for (std::string const& packet :
         {std::string(), Packet(""), kXmpMeta + "</x:xmpmeta>",
          kXmpMeta + kRdfOpen +
              "<rdf:Description rdf:about='' xmlns:dc='http://purl.org/dc/elements/1.1/'/>"
              "</rdf:RDF></x:xmpmeta>"})
    {
        WriteFile(dir.File("empty.xmp"), packet);
        FileProvider provider(U16(dir.File("empty.xmp")));
        EXPECT_TRUE(provider.HasMetadata() && provider.DamagedPacketReason().empty() &&
                    !provider.IsReadOnly())
            << packet;
    }
}

TEST_F(FileProviderTest, RelativePathReadsAndSavesTheFileItNames)
{
    fs::create_directories(dir.path / "s");
    std::string const path = CopyInto(dir, DataFile("tiny.jpg"), "s/a.jpg");
    fs::path const previous = fs::current_path();
    fs::current_path(dir.path);
    auto provider = Open("s/a.jpg", "After");
    fs::current_path(previous);
    // The same file, wherever the process stands later.
    EXPECT_EQ(provider->Save(), kMetadataSavedIntoFile);
    EXPECT_EQ(LabelOf(path), "After");
    EXPECT_FALSE(fs::exists(dir.File("s/a.xmp")));
}

// The worker thread reads quietly and hands the tree to the provider; a
// sidecar given directly is read and written as the file itself.
TEST_F(FileProviderTest, QuietReadReportsInsteadOfLoggingAndSidecarIsWrittenDirectly)
{
    FileReadOutcome missing = ReadMetadataFromFileQuietly(U16(dir.File("absent.jpg")));
    EXPECT_FALSE(missing.meta || missing.problem.empty() || HasErrors());
    std::string const path = dir.File("clip.xmp");
    WriteFile(path, EveryKindPacket());
    FileReadOutcome read = ReadMetadataFromFileQuietly(U16(path));
    ASSERT_TRUE(read.meta && read.problem.empty());
    auto provider = boost::make_shared<FileProvider>(U16(path), std::move(read.meta));
    SetLabel(provider, "Worker");
    EXPECT_EQ(provider->Save(), kMetadataSavedIntoSidecar);
    EXPECT_EQ(Serialized(*MetaDataReadAccess(provider)),
              Serialized(*MetaDataReadAccess(Open(path))));
    EXPECT_EQ(dir.Names(), std::vector<std::string>{"clip.xmp"});
}

// A format that takes no XMP in place gets a sidecar named after the whole
// file, so files of one stem never share one (WebP: the save-fault tests and
// the stem sidecar test below).
TEST_F(FileProviderTest, HeicIsNeverWrittenInPlace)
{
    std::string const heic = dir.File("a.heic"), bytes("\0\0\0\x18"
                                                       "ftypheic\0\0\0\0heicmif1",
                                                       24);
    WriteFile(heic, bytes);
    EXPECT_EQ(Open(heic, "Mine")->Save(), kMetadataSavedIntoSidecar);
    EXPECT_EQ(S(zephcore::UTF16to8(SidecarPathFor(U16(heic)))), heic + ".xmp");
    EXPECT_EQ(LabelOf(heic), "Mine");
    EXPECT_EQ(ReadFile(heic), bytes);
}

TEST_F(FileProviderTest, StemSidecarIsReadWhenUnambiguousAndKeptOnSave)
{
    std::string const legacyBytes =
        Packet("<xmp:Label>Old</xmp:Label><dc:format>image/webp</dc:format>");
    // Rows: the other files beside "a.webp" and "a.xmp", and whether "a.xmp"
    // is taken as the WebP's sidecar.
    std::pair<std::vector<std::string>, bool> const cases[] = {
        {{}, true}, {{"b.jpg", "a.webp.txt"}, true}, {{"a.jpg"}, false}, {{"a.pdf"}, false}};
    for (auto const& [others, read] : cases)
    {
        SCOPED_TRACE(others.empty() ? "alone" : others[0]);
        TempFolder folder;
        std::string const webp = folder.File("a.webp"), legacy = folder.File("a.xmp");
        WriteFile(webp, kWebP);
        WriteFile(legacy, legacyBytes);
        for (std::string const& name : others)
            WriteFile(folder.File(name), "other");
        auto provider = Open(webp);
        EXPECT_EQ(Label(provider), read ? "Old" : "");
        SetLabel(provider, "New");
        EXPECT_EQ(provider->Save(), kMetadataSavedIntoSidecar);
        EXPECT_EQ(ReadFile(legacy) + ReadFile(webp), legacyBytes + kWebP)
            << "both left as they were";
        EXPECT_TRUE(fs::exists(webp + ".xmp"));
        auto reread = Open(webp);
        EXPECT_EQ(Label(reread), "New") << "the file's own sidecar wins";
        EXPECT_EQ(Read(reread, P(kDC, "format")), read ? "image/webp" : "")
            << "what the old sidecar held is carried into the new one";
    }
}

TEST_F(FileProviderTest, SaveIsRefusedWhileWritingIsDisabled)
{
    std::string const path = CopyInto(dir, DataFile("tiny.jpg"), "tiny.jpg");
    auto provider = Open(path, "Never");
    DisableXMPWriting(true);
    EXPECT_EQ(provider->Save(), kMetadataSaveFailed);
    DisableXMPWriting(false);
    EXPECT_EQ(ReadFile(path), ReadFile(DataFile("tiny.jpg")));
}

TEST_F(FileProviderTest, FailedSaveIntoReadOnlyFolderLeavesTheFileWhole)
{
    std::string const path = CopyInto(dir, DataFile("tiny.jpg"), "tiny.jpg");
    auto provider = Open(path, "Blocked");
    bool const locked = zephtest::SetFolderWritable(dir.path, false);
    MetadataSaveResult const result = provider->Save();
    zephtest::SetFolderWritable(dir.path, true);
    if (!locked)
        GTEST_SKIP() << "cannot make a folder refuse new files here";
    EXPECT_EQ(result, kMetadataSaveFailed);
    EXPECT_EQ(ReadFile(path), ReadFile(DataFile("tiny.jpg")));
    EXPECT_EQ(dir.Names(), std::vector<std::string>{"tiny.jpg"});
    EXPECT_TRUE(HasErrors());
}

TEST_F(FileProviderTest, SaveOnChangeWritesAfterEachUpdate)
{
    std::string const path = CopyInto(dir, DataFile("tiny.png"), "tiny.png");
    auto provider = Open(path);
    provider->SetSaveOnChange(true);
    SetLabel(provider, "Auto");
    auto reread = Open(path);
    int told = 0;
    auto listener =
        boost::make_shared<boost::function<void(__XMPMeta__*)>>([&](__XMPMeta__*) { ++told; });
    reread->NotifyWhenMetaDataChanged(listener);
    SetLabel(provider, "Again");
    reread->Reload();
    EXPECT_EQ(Label(reread) + std::to_string(told), "Again1"); // a reload tells the listeners
}

TEST_F(FileProviderCorpusTest, FilesExempisHandlersMisreadAreReadFromTheirOwnPacket)
{
    ZEPH_REQUIRE_CORPUS();
    // exempi's GIF handler cannot parse the first packet, its JPEG handler
    // seeks past the end of the second file.
    for (char const* name : {"exiftool-GIF.gif", "mei-issue 121.jpg"})
        EXPECT_FALSE(
            xmp::TopLevelProperties(*MetaDataReadAccess(Open(zephtest::CorpusFile(name)))).empty())
            << name;
    EXPECT_EQ(Read(Open(zephtest::CorpusFile("exiftool-GIF.gif")), P(kDC, "title")),
              "GIF with XMP");
    EXPECT_FALSE(HasErrors());
    // exempi's JPEG handler replaces these with values derived from native EXIF.
    auto jpeg = Open(zephtest::CorpusFile("exiv2-exiv2-bug540.jpg"));
    EXPECT_EQ(Read(jpeg, P(kEXIF, "GPSLatitude")), "54,59.380000N");
    EXPECT_EQ(Read(jpeg, P("http://ns.adobe.com/tiff/1.0/", "ImageWidth")), "600");
}

TEST_F(FileProviderCorpusTest, MalformedFilesShowTheirDamageAndAreNeverOverwritten)
{
    ZEPH_REQUIRE_CORPUS();
    // Their packets parse; the fuzzed file's container is what is broken.
    std::set<std::string> const intact = {
        "exiftool-XMP3.xmp", "mei-crash-0f5b7f736ab835dbc411ab23575a703acdde727f.fuzzed"};
    std::size_t damaged = 0;
    for (auto const& entry : fs::directory_iterator(zephtest::CorpusDir() / "malformed"))
    {
        std::string const name = entry.path().filename().string();
        TempFolder dir;
        std::string const path = CopyInto(dir, entry.path().string(), name);
        auto provider = Open(path, "Unasked");
        ASSERT_TRUE(provider->HasMetadata()) << name;
        EXPECT_EQ(provider->DamagedPacketReason().empty(), intact.count(name) == 1) << name;
        if (provider->DamagedPacketReason().empty())
            continue;
        ++damaged;
        EXPECT_EQ(provider->Save(), kMetadataSaveFailed) << name;
        EXPECT_EQ(ReadFile(path), ReadFile(entry.path().string())) << name;
        EXPECT_EQ(dir.Names(), std::vector<std::string>{name}) << name;
    }
    EXPECT_GT(damaged, 0u);
    EXPECT_EQ(GetErrorInfos().size(), 2 * damaged) << "one entry for the read, one for the save";
}

// Packets nested deeper than the model's bound are refused wherever the
// model reads them, with an error-log entry; packets within it read whole.

namespace
{

constexpr char const* kPrivate = "http://example.com/nesting/";

// A packet `depth` elements deep, and the path of its deepest value
// ("bottom"): x:xmpmeta, rdf:RDF, rdf:Description, n:top, then n:s levels
// and n:leaf; or for arrays, rdf:Bag and rdf:li a level below n:top.
std::pair<std::string, std::string> Nested(int depth, bool arrays = false)
{
    std::string open, close, leaf = "top";
    for (int i = 0; i < (arrays ? (depth - 4) / 2 : depth - 5); ++i)
    {
        open += arrays ? "<rdf:Bag><rdf:li>" : "<n:s rdf:parseType=\"Resource\">";
        close += arrays ? "</rdf:li></rdf:Bag>" : "</n:s>";
        leaf += arrays ? "[1]" : "/n:s";
    }
    std::string const bottom = arrays ? "bottom" : "<n:leaf>bottom</n:leaf>";
    return {Packet("<n:top xmlns:n=\"" + std::string(kPrivate) + "\"" +
                   (arrays ? "" : " rdf:parseType=\"Resource\"") + ">" + open + bottom + close +
                   "</n:top>"),
            arrays ? leaf : leaf + "/n:leaf"};
}

// The packet read as text, as a sidecar or template, and inside a JPEG.
ProviderPtr ReadBy(int reader, std::string const& packet, TempFolder const& dir)
{
    if (reader == 0)
        return BufferProviderImpl::Create(packet);
    std::string const path = dir.File(reader == 1 ? "template.xmp" : "photo.jpg");
    WriteFile(path, reader == 1 ? packet : JpegWithPacket(packet));
    return Open(path);
}

TEST(PacketNestingTest, PacketAtTheBoundReadsWholeAndDeeperIsRefusedWithAnErrorEntry)
{
    for (int reader : {0, 1, 2})
    {
        SCOPED_TRACE(reader);
        for (bool const arrays : {false, true})
        {
            ClearErrors();
            TempFolder dir;
            auto const [packet, leaf] = Nested(kMaxPacketNesting, arrays);
            EXPECT_EQ(Read(ReadBy(reader, packet, dir), P(kPrivate, leaf)), "bottom") << leaf;
            EXPECT_FALSE(HasErrors());
        }
        for (auto const& [packet, leaf] :
             {Nested(kMaxPacketNesting + 1), Nested(kMaxPacketNesting + 2, true), Nested(20000)})
        {
            ClearErrors();
            TempFolder dir;
            EXPECT_EQ(*MetaDataReadAccess(ReadBy(reader, packet, dir)), nullptr) << leaf.size();
            std::vector<ErrorInfo> const errors = GetErrorInfos();
            ASSERT_EQ(errors.size(), 1u);
            EXPECT_EQ(errors[0].code, kErrorMetadataRead);
            EXPECT_NE(zephcore::ToStdString(errors[0].message).find("nests deeper"),
                      std::string::npos);
        }
    }
    ClearErrors();
}

TEST(PacketNestingScanTest, CountsElementsInEveryEncodingAndOnlyElements)
{
    // The packet's code units widened: UTF-16 or UTF-32, either byte order.
    auto const widened = [](std::string const& text, int width, bool bigEndian)
    {
        std::string wide;
        for (char c : text)
        {
            std::string unit(width, '\0');
            unit[bigEndian ? width - 1 : 0] = c;
            wide += unit;
        }
        return wide;
    };
    for (auto const& [width, bigEndian] :
         {std::pair(1, false), std::pair(2, false), std::pair(2, true), std::pair(4, false),
          std::pair(4, true)})
    {
        std::string const deep = widened(Nested(kMaxPacketNesting + 1).first, width, bigEndian);
        std::string const bound = widened(Nested(kMaxPacketNesting).first, width, bigEndian);
        EXPECT_TRUE(xmp::NestsTooDeep(deep.data(), deep.size())) << width;
        EXPECT_FALSE(xmp::NestsTooDeep(bound.data(), bound.size())) << width;
    }
    // Markup that opens no element: comments, character data, instructions,
    // '>' in attribute values, empty elements.
    std::string many;
    for (int i = 0; i < 3 * kMaxPacketNesting; ++i)
        many += "<!-- <a> --><?pi <b> ?><n:e n:a=\"x>y\"/><n:f><![CDATA[<c>]]></n:f>";
    std::string const flat = Packet("<n:p xmlns:n=\"" + std::string(kPrivate) +
                                    "\" rdf:parseType=\"Resource\">" + many + "</n:p>");
    EXPECT_FALSE(xmp::NestsTooDeep(flat.data(), flat.size()));
}

} // namespace

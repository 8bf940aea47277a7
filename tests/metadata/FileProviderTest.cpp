#include "zephmetadata/FileProvider.h"
#include "Corpus.h"
#include "ReadOnlyFolder.h"

#include "zephmetadata/Access.h"
#include "zephmetadata/ErrorLog.h"
#include "zephmetadata/Switches.h"
#include "zephmetadata/Values.h"

#include "ModelTestSupport.h"

#include <gtest/gtest.h>

#include <exempi/xmp.h>

#include <boost/make_shared.hpp>

#include <filesystem>
#include <set>

using namespace zephmetadata;
using namespace modeltest;
namespace fs = std::filesystem;

namespace
{

std::string CopyInto(TempFolder const& dir, std::string const& source, std::string const& name)
{
    std::string const target = dir.File(name);
    fs::copy_file(source, target, fs::copy_options::overwrite_existing);
    fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write);
    return target;
}

} // namespace

TEST(FileProviderTest, FileWithoutXmpGivesAnEmptyTreeAndSavesIntoIt)
{
    TempFolder dir;
    for (char const* name : {"tiny.jpg", "tiny.png"})
    {
        std::string const original = ReadFile(DataFile(name));
        std::string const path = CopyInto(dir, DataFile(name), name);
        auto provider = boost::make_shared<FileProvider>(U16(path));
        ASSERT_TRUE(provider->HasMetadata()) << name;
        {
            MetaDataReadAccess access(provider);
            EXPECT_TRUE(xmp::TopLevelProperties(*access).empty()) << name;
        }
        SetLabel(provider, "First");
        EXPECT_EQ(provider->Save(), kMetadataSavedIntoFile) << name;
        std::string const saved = ReadFile(path);
        EXPECT_GT(saved.size(), original.size());
        // The image data is still there, untouched, at the end of the file.
        std::string const tail = original.substr(original.size() / 2);
        EXPECT_EQ(saved.substr(saved.size() - tail.size()), tail) << name;
        auto reread = boost::make_shared<FileProvider>(U16(path));
        EXPECT_EQ(Label(reread), "First") << name;
    }
}

TEST(FileProviderTest, SaveDateIsSetWhenSomethingChangedAndKeptOtherwise)
{
    TempFolder dir;
    std::string const path = CopyInto(dir, DataFile("tiny.png"), "tiny.png");
    auto provider = boost::make_shared<FileProvider>(U16(path));
    EXPECT_EQ(provider->Save(), kMetadataSavedIntoFile);
    auto reread = boost::make_shared<FileProvider>(U16(path));
    EXPECT_EQ(Read(reread, P(kXMP, "MetadataDate")), "") << "nothing changed";

    SetLabel(provider, "Dated");
    EXPECT_EQ(provider->Save(), kMetadataSavedIntoFile);
    reread->Reload();
    std::string const saved = Read(reread, P(kXMP, "MetadataDate"));
    EXPECT_EQ(saved.substr(0, 2), "20");
    // The provider holds the date it saved: saving again is no change.
    EXPECT_EQ(Read(provider, P(kXMP, "MetadataDate")), saved);
    std::string const bytes = ReadFile(path);
    EXPECT_EQ(provider->Save(), kMetadataSavedIntoFile);
    EXPECT_EQ(ReadFile(path), bytes);
}

// An absent file and an empty one: nothing to show, and nothing is written,
// not even a sidecar.
TEST(FileProviderTest, UnreadableFileGivesNoMetadataAnErrorEntryAndNoSidecar)
{
    for (bool const exists : {false, true})
    {
        SCOPED_TRACE(exists ? "empty" : "absent");
        ClearErrors();
        TempFolder dir;
        std::string const path = dir.File("clip.jpg");
        if (exists)
            WriteFile(path, "");
        auto provider = boost::make_shared<FileProvider>(U16(path));
        EXPECT_FALSE(provider->HasMetadata());
        EXPECT_EQ(*MetaDataReadAccess(provider), nullptr);
        ASSERT_EQ(GetErrorInfos().size(), 1u);
        EXPECT_EQ(GetErrorInfos()[0].code, kErrorMetadataRead);
        EXPECT_EQ(provider->Save(), kMetadataSaveFailed);
        xmp::MetaPtr meta = Parse(EveryKindPacket());
        EXPECT_EQ(SaveMetadataToFile(meta.get(), U16(path)), kMetadataSaveFailed);
        EXPECT_EQ(dir.Names(),
                  exists ? std::vector<std::string>{"clip.jpg"} : std::vector<std::string>{});
        EXPECT_EQ(ReadFile(path), "");
    }
    ClearErrors();
}

// Rows: a file name and a damaged packet, as exempi refuses it or as it
// parses it into nothing without a word.
struct DamagedCase
{
    char const* name;
    std::string packet;
};

class DamagedPacketTest : public testing::TestWithParam<DamagedCase>
{
};

TEST_P(DamagedPacketTest, IsShownReadOnlyWithItsReasonAndReplacedOnlyWhenAsked)
{
    ClearErrors();
    TempFolder dir;
    std::string const path = dir.File(GetParam().name);
    bool const jpeg = fs::path(path).extension() == ".jpg";
    std::string const bytes = jpeg ? JpegWithPacket(GetParam().packet) : GetParam().packet;
    WriteFile(path, bytes);

    auto provider = boost::make_shared<FileProvider>(U16(path));
    ASSERT_TRUE(provider->HasMetadata()) << "what could be recovered is shown";
    EXPECT_FALSE(provider->DamagedPacketReason().empty());
    EXPECT_TRUE(provider->IsReadOnly());
    ASSERT_EQ(GetErrorInfos().size(), 1u);
    EXPECT_NE(S(zephcore::UTF16to8(GetErrorInfos()[0].message)).find("damaged ("),
              std::string::npos);
    SetLabel(provider, "Unasked");
    EXPECT_EQ(provider->Save(), kMetadataSaveFailed);
    xmp::MetaPtr const other = Parse(EveryKindPacket());
    EXPECT_EQ(SaveMetadataToFile(other.get(), U16(path)), kMetadataSaveFailed);
    EXPECT_EQ(ReadFile(path), bytes);
    EXPECT_EQ(dir.Names(), std::vector<std::string>{GetParam().name});

    provider->ReplaceDamagedPacket();
    EXPECT_FALSE(provider->IsReadOnly());
    SetLabel(provider, "Replaced");
    EXPECT_NE(provider->Save(), kMetadataSaveFailed);
    EXPECT_TRUE(provider->DamagedPacketReason().empty());
    auto reread = boost::make_shared<FileProvider>(U16(path));
    EXPECT_EQ(Label(reread), "Replaced");
    EXPECT_TRUE(reread->DamagedPacketReason().empty());
    EXPECT_FALSE(reread->IsReadOnly());
    std::string const image = ReadFile(DataFile("tiny.jpg")).substr(2);
    std::string const saved = ReadFile(path);
    if (jpeg)
    {
        EXPECT_EQ(saved.substr(saved.size() - std::min(saved.size(), image.size())), image)
            << "the image itself is kept";
    }
    ClearErrors();
}

std::string const kRdfOpen = "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>";

INSTANTIATE_TEST_SUITE_P(
    Packets, DamagedPacketTest,
    testing::Values(
        DamagedCase{"broken.xmp", "<x:xmpmeta><rdf:RDF><oops></x:xmpmeta>"},
        DamagedCase{"two-rdf.xmp", "<x:xmpmeta xmlns:x='adobe:ns:meta/'>" + kRdfOpen +
                                       "</rdf:RDF>" + kRdfOpen + "</rdf:RDF></x:xmpmeta>"},
        DamagedCase{"text.xmp", "<x:xmpmeta xmlns:x='adobe:ns:meta/'>A text value</x:xmpmeta>"},
        DamagedCase{"wrong-rdf.xmp",
                    "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF xmlns:rdf=' '>"
                    "<rdf:Description xmlns:xmp='http://ns.adobe.com/xap/1.0/'>"
                    "<xmp:Label>lost</xmp:Label></rdf:Description></rdf:RDF></x:xmpmeta>"},
        DamagedCase{"broken.jpg", "<x:xmpmeta xmlns:x='adobe:ns:meta/'>" + kRdfOpen +
                                      "<rdf:Description><b></rdf:RDF></x:xmpmeta>"},
        DamagedCase{"two-rdf.jpg", "<x:xmpmeta xmlns:x='adobe:ns:meta/'>" + kRdfOpen +
                                       "</rdf:RDF>" + kRdfOpen + "</rdf:RDF></x:xmpmeta>"}));

TEST(FileProviderTest, EmptyPacketsAreNotDamaged)
{
    TempFolder dir;
    for (std::string const& packet :
         {std::string(), Packet(""), std::string("<x:xmpmeta xmlns:x='adobe:ns:meta/'/>"),
          "<x:xmpmeta xmlns:x='adobe:ns:meta/'>" + kRdfOpen +
              "<rdf:Description rdf:about='' xmlns:dc='http://purl.org/dc/elements/1.1/'/>"
              "</rdf:RDF></x:xmpmeta>"})
    {
        WriteFile(dir.File("empty.xmp"), packet);
        FileProvider provider(U16(dir.File("empty.xmp")));
        EXPECT_TRUE(provider.HasMetadata()) << packet;
        EXPECT_TRUE(provider.DamagedPacketReason().empty()) << packet;
        EXPECT_FALSE(provider.IsReadOnly()) << packet;
    }
}

TEST(FileProviderTest, RelativePathReadsAndSavesTheFileItNames)
{
    TempFolder dir;
    fs::create_directories(dir.path / "s");
    std::string const path = CopyInto(dir, DataFile("tiny.jpg"), "s/a.jpg");
    xmp::MetaPtr meta = Parse(LabelPacket("Before"));
    ASSERT_EQ(SaveMetadataToFile(meta.get(), U16(path)), kMetadataSavedIntoFile);
    fs::path const previous = fs::current_path();
    fs::current_path(dir.path);
    auto provider = boost::make_shared<FileProvider>(U16("s/a.jpg"));
    fs::current_path(previous);
    // The same file, wherever the process stands later.
    EXPECT_EQ(Label(provider), "Before");
    SetLabel(provider, "After");
    EXPECT_EQ(provider->Save(), kMetadataSavedIntoFile);
    EXPECT_EQ(LabelOf(path), "After");
    EXPECT_FALSE(fs::exists(dir.File("s/a.xmp")));
}

// The worker thread reads quietly and hands the tree to the provider; a
// sidecar given directly is read and written as the file itself.
TEST(FileProviderTest, QuietReadReportsInsteadOfLoggingAndSidecarIsWrittenDirectly)
{
    ClearErrors();
    TempFolder dir;
    FileReadOutcome missing = ReadMetadataFromFileQuietly(U16(dir.File("absent.jpg")));
    EXPECT_FALSE(missing.meta);
    EXPECT_FALSE(missing.problem.empty());
    EXPECT_FALSE(HasErrors());
    std::string const path = dir.File("clip.xmp");
    WriteFile(path, EveryKindPacket());
    FileReadOutcome read = ReadMetadataFromFileQuietly(U16(path));
    ASSERT_TRUE(read.meta);
    EXPECT_TRUE(read.problem.empty());
    auto provider = boost::make_shared<FileProvider>(U16(path), std::move(read.meta));
    EXPECT_TRUE(provider->HasMetadata());
    SetLabel(provider, "Worker");
    EXPECT_EQ(provider->Save(), kMetadataSavedIntoSidecar);
    auto reread = boost::make_shared<FileProvider>(U16(path));
    EXPECT_EQ(Label(reread), "Worker");
    EXPECT_EQ(Serialized(*MetaDataReadAccess(provider)), Serialized(*MetaDataReadAccess(reread)));
    EXPECT_EQ(dir.Names(), std::vector<std::string>{"clip.xmp"});
}

// A format that takes no XMP in place gets a sidecar named after the whole
// file, so files of one stem never share one; the sidecar wins on reading.
TEST(FileProviderTest, WebPIsNeverWrittenInPlaceAndFilesOfOneStemNeverShareASidecar)
{
    TempFolder dir;
    std::string const webp = dir.File("a.webp"), other = dir.File("a.heic");
    std::string const heic("\0\0\0\x18"
                           "ftypheic\0\0\0\0heicmif1",
                           24);
    WriteFile(webp, kWebP);
    WriteFile(other, heic);
    for (std::string const& path : {webp, other})
    {
        auto provider = boost::make_shared<FileProvider>(U16(path));
        ASSERT_TRUE(provider->HasMetadata()) << path;
        SetLabel(provider, path);
        EXPECT_EQ(provider->Save(), kMetadataSavedIntoSidecar) << path;
        EXPECT_EQ(S(zephcore::UTF16to8(SidecarPathFor(U16(path)))), path + ".xmp");
    }
    EXPECT_EQ(dir.Names(),
              (std::vector<std::string>{"a.heic", "a.heic.xmp", "a.webp", "a.webp.xmp"}));
    EXPECT_EQ(ReadFile(webp), kWebP);
    EXPECT_EQ(ReadFile(other), heic);
    for (std::string const& path : {webp, other})
        EXPECT_EQ(LabelOf(path), path);
}

// Rows: the other files in the folder beside "a.webp" and "a.xmp", and
// whether "a.xmp" is taken as the WebP's sidecar.
struct LegacySidecarCase
{
    std::vector<std::string> others;
    bool read;
};

class LegacySidecarTest : public testing::TestWithParam<LegacySidecarCase>
{
};

TEST_P(LegacySidecarTest, StemSidecarIsReadWhenUnambiguousAndKeptOnSave)
{
    TempFolder dir;
    std::string const webp = dir.File("a.webp"), legacy = dir.File("a.xmp");
    WriteFile(webp, kWebP);
    std::string const legacyBytes =
        Packet("<xmp:Label>Old</xmp:Label><dc:format>image/webp</dc:format>");
    WriteFile(legacy, legacyBytes);
    for (std::string const& name : GetParam().others)
        WriteFile(dir.File(name), "other");

    auto provider = boost::make_shared<FileProvider>(U16(webp));
    ASSERT_TRUE(provider->HasMetadata());
    EXPECT_EQ(Label(provider), GetParam().read ? "Old" : "");
    SetLabel(provider, "New");
    EXPECT_EQ(provider->Save(), kMetadataSavedIntoSidecar);
    EXPECT_EQ(ReadFile(legacy), legacyBytes) << "the old sidecar is left as it was";
    EXPECT_EQ(ReadFile(webp), kWebP);
    auto reread = boost::make_shared<FileProvider>(U16(webp));
    EXPECT_EQ(Label(reread), "New") << "the file's own sidecar wins";
    EXPECT_EQ(Read(reread, P(kDC, "format")), GetParam().read ? "image/webp" : "")
        << "what the old sidecar held is carried into the new one";
}

INSTANTIATE_TEST_SUITE_P(Folders, LegacySidecarTest,
                         testing::Values(LegacySidecarCase{{}, true},
                                         LegacySidecarCase{{"b.jpg", "a.webp.txt"}, true},
                                         LegacySidecarCase{{"a.jpg"}, false},
                                         LegacySidecarCase{{"a.pdf"}, false}));

TEST(FileProviderTest, SaveIsRefusedWhileWritingIsDisabled)
{
    TempFolder dir;
    std::string const path = CopyInto(dir, DataFile("tiny.jpg"), "tiny.jpg");
    auto provider = boost::make_shared<FileProvider>(U16(path));
    SetLabel(provider, "Never");
    DisableXMPWriting(true);
    EXPECT_EQ(provider->Save(), kMetadataSaveFailed);
    DisableXMPWriting(false);
    EXPECT_EQ(ReadFile(path), ReadFile(DataFile("tiny.jpg")));
}

TEST(FileProviderTest, FailedSaveIntoReadOnlyFolderLeavesTheFileWhole)
{
    ClearErrors();
    TempFolder dir;
    std::string const path = CopyInto(dir, DataFile("tiny.jpg"), "tiny.jpg");
    auto provider = boost::make_shared<FileProvider>(U16(path));
    SetLabel(provider, "Blocked");
    if (!zephtest::SetFolderWritable(dir.path, false))
    {
        zephtest::SetFolderWritable(dir.path, true);
        GTEST_SKIP() << "cannot make a folder refuse new files here";
    }
    MetadataSaveResult const result = provider->Save();
    zephtest::SetFolderWritable(dir.path, true);
    EXPECT_EQ(result, kMetadataSaveFailed);
    EXPECT_EQ(ReadFile(path), ReadFile(DataFile("tiny.jpg")));
    EXPECT_EQ(dir.Names(), std::vector<std::string>{"tiny.jpg"});
    EXPECT_TRUE(HasErrors());
    ClearErrors();
}

TEST(FileProviderTest, FailedSaveIntoDamagedFileLeavesItWholeAndNoCopyBehind)
{
    TempFolder dir;
    using namespace std::string_literals;
    for (std::string const& bytes : {"\xFF\xD8\xFF\xE0\x00\x10garbagegarbage"s, "\xFF\xD8"s})
    {
        ClearErrors();
        std::string const path = dir.File("damaged.jpg");
        WriteFile(path, bytes);
        xmp::MetaPtr meta = Parse(EveryKindPacket());
        EXPECT_EQ(SaveMetadataToFile(meta.get(), U16(path)), kMetadataSaveFailed);
        EXPECT_EQ(ReadFile(path), bytes);
        EXPECT_EQ(dir.Names(), std::vector<std::string>{"damaged.jpg"});
        EXPECT_TRUE(HasErrors());
    }
    ClearErrors();
}

TEST(FileProviderTest, SaveOnChangeWritesAfterEachUpdate)
{
    TempFolder dir;
    std::string const path = CopyInto(dir, DataFile("tiny.png"), "tiny.png");
    auto provider = boost::make_shared<FileProvider>(U16(path));
    provider->SetSaveOnChange(true);
    SetLabel(provider, "Auto");
    auto reread = boost::make_shared<FileProvider>(U16(path));
    EXPECT_EQ(Label(reread), "Auto");
    int told = 0;
    auto listener =
        boost::make_shared<boost::function<void(__XMPMeta__*)>>([&](__XMPMeta__*) { ++told; });
    reread->NotifyWhenMetaDataChanged(listener);
    SetLabel(provider, "Again");
    reread->Reload();
    EXPECT_EQ(Label(reread), "Again");
    EXPECT_EQ(told, 1);
}

TEST(FileProviderCorpusTest, RealSidecarsReadWithTheirStructures)
{
    ZEPH_REQUIRE_CORPUS();
    auto provider =
        boost::make_shared<FileProvider>(U16(zephtest::CorpusFile("exiftool-XMP4.xmp")));
    ASSERT_TRUE(provider->HasMetadata());
    MetaDataReadAccess access(provider);
    EXPECT_GT(CountArrayItems(*access,
                              P("http://iptc.org/std/Iptc4xmpExt/2008-02-29/", "LocationCreated")),
              0);
    EXPECT_GT(xmp::TopLevelProperties(*access).size(), 3u);
}

TEST(FileProviderCorpusTest, FilesExempisHandlersRefuseAreReadFromTheirOwnPacket)
{
    ZEPH_REQUIRE_CORPUS();
    ClearErrors();
    // exempi's GIF handler cannot parse the first packet, its JPEG handler
    // seeks past the end of the second file.
    for (char const* name : {"exiftool-GIF.gif", "mei-issue 121.jpg"})
    {
        auto provider = boost::make_shared<FileProvider>(U16(zephtest::CorpusFile(name)));
        ASSERT_TRUE(provider->HasMetadata()) << name;
        MetaDataReadAccess access(provider);
        EXPECT_FALSE(xmp::TopLevelProperties(*access).empty()) << name;
    }
    auto gif = boost::make_shared<FileProvider>(U16(zephtest::CorpusFile("exiftool-GIF.gif")));
    EXPECT_EQ(Read(gif, P(kDC, "title")), "GIF with XMP");
    EXPECT_FALSE(HasErrors());
}

TEST(FileProviderCorpusTest, JpegShowsItsPacketNotValuesDerivedFromExif)
{
    ZEPH_REQUIRE_CORPUS();
    // exempi's handler replaces these with values derived from native EXIF.
    auto provider =
        boost::make_shared<FileProvider>(U16(zephtest::CorpusFile("exiv2-exiv2-bug540.jpg")));
    EXPECT_EQ(Read(provider, P(kEXIF, "GPSLatitude")), "54,59.380000N");
    EXPECT_EQ(Read(provider, P("http://ns.adobe.com/tiff/1.0/", "ImageWidth")), "600");
}

TEST(FileProviderCorpusTest, MalformedFilesShowTheirDamageAndAreNeverOverwritten)
{
    ZEPH_REQUIRE_CORPUS();
    ClearErrors();
    // Their packets parse; the fuzzed file's container is what is broken.
    std::set<std::string> const intact = {
        "exiftool-XMP3.xmp", "mei-crash-0f5b7f736ab835dbc411ab23575a703acdde727f.fuzzed"};
    std::size_t damaged = 0;
    for (auto const& entry : fs::directory_iterator(zephtest::CorpusDir() / "malformed"))
    {
        std::string const name = entry.path().filename().string();
        TempFolder dir;
        std::string const path = CopyInto(dir, entry.path().string(), name);
        auto provider = boost::make_shared<FileProvider>(U16(path));
        ASSERT_TRUE(provider->HasMetadata()) << name;
        EXPECT_EQ(provider->DamagedPacketReason().empty(), intact.count(name) == 1) << name;
        if (provider->DamagedPacketReason().empty())
            continue;
        ++damaged;
        EXPECT_TRUE(provider->IsReadOnly()) << name;
        SetLabel(provider, "Unasked");
        EXPECT_EQ(provider->Save(), kMetadataSaveFailed) << name;
        EXPECT_EQ(ReadFile(path), ReadFile(entry.path().string())) << name;
        EXPECT_EQ(dir.Names(), std::vector<std::string>{name}) << name;
    }
    EXPECT_GT(damaged, 0u);
    EXPECT_EQ(GetErrorInfos().size(), 2 * damaged) << "one entry for the read, one for the save";
    ClearErrors();
}

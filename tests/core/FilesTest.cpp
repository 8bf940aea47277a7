#include "zephcore/Files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>

using namespace zephcore;
namespace fs = std::filesystem;

namespace
{

UTF16String U(std::string const& text)
{
    return UTF8to16(ToUTF8(text));
}

class FilesTest : public testing::Test
{
protected:
    void SetUp() override
    {
        root = fs::temp_directory_path() / ("zeph-files-" + std::to_string(::getpid()));
        fs::remove_all(root);
        fs::create_directories(root);
    }
    void TearDown() override
    {
        fs::permissions(root, fs::perms::owner_all, fs::perm_options::add);
        for (auto& entry : fs::recursive_directory_iterator(root))
            fs::permissions(entry.path(), fs::perms::owner_all, fs::perm_options::add);
        fs::remove_all(root);
    }
    std::string Read(fs::path const& path)
    {
        std::ifstream in(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }
    fs::path root;
};

} // namespace

TEST_F(FilesTest, WriteReplacesContentAndLeavesNoTemporaryFile)
{
    UTF16String const path = U((root / "a.xml").string());
    ASSERT_TRUE(FileUtils::SimpleWriteStringToFile(path, "first"));
    ASSERT_TRUE(FileUtils::SimpleWriteStringToFile(path, std::string("sec\0ond", 7)));
    EXPECT_EQ(Read(root / "a.xml"), std::string("sec\0ond", 7));
    EXPECT_EQ(std::distance(fs::directory_iterator(root), fs::directory_iterator()), 1);
}

TEST_F(FilesTest, FailedWriteIntoReadOnlyFolderKeepsTheOldFile)
{
    if (::geteuid() == 0)
    {
        // Root ignores folder permissions; a missing folder still fails.
        EXPECT_FALSE(
            FileUtils::SimpleWriteStringToFile(U((root / "missing" / "x").string()), "data"));
    }
    fs::path const folder = root / "locked";
    fs::create_directories(folder);
    std::ofstream(folder / "keep.txt") << "old content";
    fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec);
    bool const written =
        FileUtils::SimpleWriteStringToFile(U((folder / "keep.txt").string()), "new");
    if (::geteuid() != 0)
    {
        EXPECT_FALSE(written);
    }
    if (!written)
    {
        EXPECT_EQ(Read(folder / "keep.txt"), "old content");
    }
    EXPECT_FALSE(FileUtils::SimpleWriteStringToFile(UTF16String(), "x"));
}

TEST_F(FilesTest, BothSeparatorsNameTheSameFile)
{
    std::string const native = (root / "sub" / "file.xmp").string();
    std::string backslashed = native;
    std::replace(backslashed.begin(), backslashed.end(), '/', '\\');

    ASSERT_TRUE(FileUtils::EnsureDirectoryExists(U((root / "sub").string())));
    ASSERT_TRUE(FileUtils::SimpleWriteStringToFile(U(backslashed), "x"));
    EXPECT_TRUE(fs::exists(native));
    EXPECT_TRUE(FileUtils::FileExists(U(native)));
    EXPECT_TRUE(FileUtils::FileExists(U(backslashed)));
    EXPECT_EQ(FileUtils::GetPathFileName(U("a\\b/c.xmp")), U("c.xmp"));
    EXPECT_EQ(FileUtils::BuildPathSpec(U("dir\\"), U("name")), U("dir/name"));
    EXPECT_EQ(FileUtils::BuildPathSpec(U("dir"), U("\\sub\\name")), U("dir/sub/name"));
    EXPECT_EQ(Dir(U(root.string() + "\\sub\\")).GetName(), U("sub"));
    EXPECT_EQ(Dir(U((root / "sub").string())).Parent().FullPath(), U(root.string()));
}

TEST_F(FilesTest, FoldersAreCreatedListedAndRecognised)
{
    UTF16String const deep = U((root / "x" / "y" / "z").string());
    EXPECT_FALSE(Dir(deep).Exists());
    EXPECT_FALSE(Dir(deep).Create()) << "Create makes one level only";
    ASSERT_TRUE(FileUtils::EnsureDirectoryExists(deep));
    EXPECT_TRUE(Dir(deep).Exists());
    EXPECT_TRUE(FileUtils::EnsureDirectoryExists(deep)) << "an existing folder is fine";
    EXPECT_FALSE(FileUtils::FileExists(deep)) << "a folder is not a file";

    std::ofstream(root / "x" / "one.xmp") << "1";
    std::ofstream(root / "x" / "Two.XMP") << "2";
    auto files = FileUtils::ContainedFiles(U((root / "x").string()));
    ASSERT_EQ(files.size(), 2u) << "sub-folders are not listed";
    std::vector<UTF16String> names;
    for (auto const& f : files)
        names.push_back(FileUtils::GetPathFileName(f));
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names[0], U("Two.XMP"));
    EXPECT_EQ(names[1], U("one.xmp"));
    EXPECT_TRUE(FileUtils::ContainedFiles(U((root / "none").string())).empty());
    EXPECT_TRUE(Dir(U("/")).IsTopLevelDir());
    EXPECT_FALSE(Dir(deep).IsTopLevelDir());
}

TEST_F(FilesTest, ByteStreamReadsWholeFileInBlocks)
{
    std::string content(10000, '\0');
    for (std::size_t i = 0; i < content.size(); ++i)
        content[i] = static_cast<char>(i * 7);
    UTF16String const path = U((root / "bin").string());
    ASSERT_TRUE(FileUtils::SimpleWriteStringToFile(path, content));
    auto stream = OpenReadStream(path);
    ASSERT_TRUE(stream);
    EXPECT_EQ(stream->Length(), content.size());
    std::string read(content.size() + 1, 'x');
    EXPECT_EQ(stream->ReadBlock(read.data(), 4096), 4096u);
    EXPECT_EQ(stream->ReadBlock(read.data() + 4096, 100000), content.size() - 4096);
    read.resize(content.size());
    EXPECT_EQ(read, content);
    EXPECT_FALSE(OpenReadStream(path + U(".none")));
}

TEST_F(FilesTest, NamesAreCleanedAndGuidsAreUnique)
{
    EXPECT_EQ(FileUtils::ReplaceIllegalFileNameCharacters(U("a/b\\c:d*e?f\"g<h>i|j\tk")),
              U("a_b_c_d_e_f_g_h_i_j_k"));
    EXPECT_EQ(FileUtils::ReplaceIllegalFileNameCharacters(U("My/Data:1_x"), '-'), U("My-Data-1_x"));
    EXPECT_EQ(FileUtils::ReplaceIllegalFileNameCharacters(U("Schéma 1")), U("Schéma 1"));
    auto const a = Guid::CreateUnique().AsString();
    auto const b = Guid::CreateUnique().AsString();
    EXPECT_EQ(a.size(), 32u);
    EXPECT_NE(a, b);
    EXPECT_EQ(a.find_first_not_of(U("0123456789abcdef")), UTF16String::npos);
}

TEST_F(FilesTest, PreferenceFolderFollowsTheEnvironment)
{
    char const* old = getenv("XDG_CONFIG_HOME");
    std::string const saved = old ? old : "";
    setenv("XDG_CONFIG_HOME", root.c_str(), 1);
    EXPECT_EQ(Dir::GlobalPrefDir().FullPath(), U(root.string()));
    if (old)
        setenv("XDG_CONFIG_HOME", saved.c_str(), 1);
    else
        unsetenv("XDG_CONFIG_HOME");
}

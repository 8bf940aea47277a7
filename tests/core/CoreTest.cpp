#include "zephcore/Error.h"
#include "zephcore/Files.h"
#include "zephcore/ImmutableString.h"
#include "zephcore/Localizer.h"
#include "zephcore/RefCounted.h"
#include "zephcore/Strings.h"

#include "ReadOnlyFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <unistd.h>

using namespace zephcore;
namespace fs = std::filesystem;

namespace
{

UTF16String U(std::u16string const& text)
{
    return UTF16String(text.begin(), text.end());
}

class FilesTest : public testing::Test
{
protected:
    void SetUp() override { fs::create_directories(root); }
    void TearDown() override
    {
        fs::remove_all(root);
        localizer.Clear(); // translations go with the test that loaded them
    }
    std::string Read(fs::path const& path)
    {
        std::ifstream in(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }
    UTF16String In(std::string const& name) { return UTF8to16((root / name).string()); }
    Localizer& localizer = Localizer::Get();
    fs::path const root = fs::temp_directory_path() / ("zeph-files-" + std::to_string(::getpid()));
};

using LocalizerTest = FilesTest;

} // namespace

TEST_F(FilesTest, WriteReplacesContentAndLeavesNoTemporaryFile)
{
    ASSERT_TRUE(FileUtils::SimpleWriteStringToFile(In("a.xml"), "first"));
    ASSERT_TRUE(FileUtils::SimpleWriteStringToFile(In("a.xml"), std::string("sec\0ond", 7)));
    EXPECT_EQ(Read(root / "a.xml"), std::string("sec\0ond", 7));
    EXPECT_EQ(std::distance(fs::directory_iterator(root), fs::directory_iterator()), 1);
}

TEST_F(FilesTest, FailedWriteKeepsTheOldFile)
{
    EXPECT_FALSE(FileUtils::SimpleWriteStringToFile(In("missing/x"), "data"));
    EXPECT_FALSE(FileUtils::SimpleWriteStringToFile(UTF16String(), "x"));
    std::ofstream(root / "keep.txt") << "old content";
    bool const locked = zephtest::SetFolderWritable(root, false);
    bool const written = FileUtils::SimpleWriteStringToFile(In("keep.txt"), "new");
    zephtest::SetFolderWritable(root, true);
    if (!locked)
        GTEST_SKIP() << "cannot make a folder refuse new files here";
    EXPECT_FALSE(written);
    EXPECT_EQ(Read(root / "keep.txt"), "old content");
}

TEST_F(FilesTest, BothSeparatorsNameTheSameFile)
{
    std::string backslashed = (root / "sub" / "file.xmp").string();
    std::replace(backslashed.begin(), backslashed.end(), '/', '\\');
    ASSERT_TRUE(FileUtils::EnsureDirectoryExists(In("sub")));
    ASSERT_TRUE(FileUtils::SimpleWriteStringToFile(UTF8to16(backslashed), "x"));
    EXPECT_TRUE(FileUtils::FileExists(In("sub/file.xmp")) &&
                FileUtils::FileExists(UTF8to16(backslashed)));
    EXPECT_EQ(FileUtils::GetPathFileName(U(u"a\\b/c.xmp")), U(u"c.xmp"));
    EXPECT_EQ(FileUtils::BuildPathSpec(U(u"dir\\"), U(u"name")), U(u"dir/name"));
    EXPECT_EQ(FileUtils::BuildPathSpec(U(u"dir"), U(u"\\sub\\name")), U(u"dir/sub/name"));
    EXPECT_EQ(Dir(UTF8to16(root.string() + "\\sub\\")).GetName(), U(u"sub"));
    EXPECT_EQ(Dir(In("sub")).Parent().FullPath(), UTF8to16(root.string()));
}

TEST_F(FilesTest, FoldersAreCreatedListedAndRecognised)
{
    UTF16String const deep = In("x/y/z");
    EXPECT_FALSE(Dir(deep).Create()) << "Create makes one level only";
    ASSERT_TRUE(FileUtils::EnsureDirectoryExists(deep));
    EXPECT_TRUE(Dir(deep).Exists());
    EXPECT_TRUE(FileUtils::EnsureDirectoryExists(deep)) << "an existing folder is fine";
    EXPECT_FALSE(FileUtils::FileExists(deep)) << "a folder is not a file";
    std::ofstream(root / "x" / "one.xmp") << "1";
    std::ofstream(root / "x" / "Two.XMP") << "2";
    std::vector<UTF16String> names;
    for (auto const& file : FileUtils::ContainedFiles(In("x"))) // sub-folders are not listed
        names.push_back(FileUtils::GetPathFileName(file));
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<UTF16String>{U(u"Two.XMP"), U(u"one.xmp")}));
    EXPECT_TRUE(FileUtils::ContainedFiles(In("none")).empty());
    EXPECT_TRUE(Dir(U(u"/")).IsTopLevelDir() && !Dir(deep).IsTopLevelDir());
}

TEST_F(FilesTest, ByteStreamReadsWholeFileInBlocks)
{
    std::string content;
    for (int i = 0; i < 10000; ++i)
        content += static_cast<char>(i * 7);
    ASSERT_TRUE(FileUtils::SimpleWriteStringToFile(In("bin"), content));
    auto stream = OpenReadStream(In("bin"));
    ASSERT_TRUE(stream);
    EXPECT_EQ(stream->Length(), content.size());
    std::string read(content.size() + 1, 'x');
    EXPECT_EQ(stream->ReadBlock(read.data(), 4096), 4096u);
    EXPECT_EQ(stream->ReadBlock(read.data() + 4096, 100000), content.size() - 4096);
    EXPECT_EQ(read.substr(0, content.size()), content);
    EXPECT_FALSE(OpenReadStream(In("none")));
}

TEST_F(FilesTest, NamesAreCleanedGuidsAreUniqueAndPreferencesFollowTheEnvironment)
{
    EXPECT_EQ(FileUtils::ReplaceIllegalFileNameCharacters(U(u"a/b\\c:d*e?f\"g<h>i|j\tk")),
              U(u"a_b_c_d_e_f_g_h_i_j_k"));
    EXPECT_EQ(FileUtils::ReplaceIllegalFileNameCharacters(U(u"My/Data:1_x"), '-'),
              U(u"My-Data-1_x"));
    EXPECT_EQ(FileUtils::ReplaceIllegalFileNameCharacters(U(u"Schéma 1")), U(u"Schéma 1"));
    auto const guid = Guid::CreateUnique().AsString();
    EXPECT_EQ(guid.size(), 32u);
    EXPECT_NE(guid, Guid::CreateUnique().AsString());
    EXPECT_EQ(guid.find_first_not_of(U(u"0123456789abcdef")), UTF16String::npos);
    char const* old = getenv("XDG_CONFIG_HOME");
    std::string const saved = old ? old : "";
    setenv("XDG_CONFIG_HOME", root.c_str(), 1);
    EXPECT_EQ(Dir::GlobalPrefDir().FullPath(), UTF8to16(root.string()));
    old ? setenv("XDG_CONFIG_HOME", saved.c_str(), 1) : unsetenv("XDG_CONFIG_HOME");
}

TEST(ErrorTest, ThrowErrorSaysTheKeysDefaultText)
{
    try
    {
        ThrowError(kErrorLevelFatal, "$$$/zephmetadataui/Errors/Cast=Invalid type conversion.");
    }
    catch (ZephError const& error)
    {
        EXPECT_STREQ(error.what(), "Invalid type conversion.");
    }
    EXPECT_THROW(ThrowError(kErrorLevelError, nullptr), std::exception);
}

TEST(ErrorTest, ImmutableStringsShareAndTellNullFromEmpty)
{
    EXPECT_TRUE(ImmutableString::sNullString.IsNull() && !ImmutableString(std::string()).IsNull());
    EXPECT_NE(ImmutableString::sNullString, ImmutableString(std::string()));
    static char const literal[] = "PNG";
    ImmutableString const wrapped = ImmutableString::CreateStatic(literal), copy = wrapped;
    EXPECT_EQ(copy.c_str(), literal) << "a static string is not copied";
    EXPECT_EQ(wrapped, ImmutableString("PNG"));
}

namespace
{

struct Counted : RefCountedObject
{
    ~Counted() override { ++deaths; }
    static inline int deaths = 0;
};

} // namespace

TEST(ErrorTest, RefCountedObjectsDieWithTheirLastPointer)
{
    int& deaths = Counted::deaths;
    boost::intrusive_ptr<Counted> first(new Counted);
    {
        boost::intrusive_ptr<Counted> second = first;
        EXPECT_EQ(first->GetRefCount(), 2);
        first.reset();
        EXPECT_EQ(deaths, 0);
    }
    EXPECT_EQ(deaths, 1);
    Counted* raw = new Counted;
    EXPECT_EQ(raw->GetRefCount(), 0) << "a new object starts uncounted";
    boost::intrusive_ptr<Counted>{raw};
    EXPECT_EQ(deaths, 2);
}

TEST_F(LocalizerTest, DefaultTextWithNamedCharactersWhenNothingIsLoaded)
{
    std::pair<char const*, std::u16string> const cases[] = {
        {"$$$/zephmetadataui/ArrayControl/Close=Close", u"Close"},
        {"$$$/g/Equation=a=b", u"a=b"}, // only the first = splits
        {"$$$/g/Empty=", u""},
        {"plain text", u"plain text"},
        {"$$$/g/Two=#{copy} 2026 #{mdash} #{hellip}", u"\u00A9 2026 \u2014 \u2026"},
        // Unknown names, unclosed and empty markers stay as they stand.
        {"$$$/g/Odd=#{nosuch} #{plusmn #{} ##{deg}", u"#{nosuch} #{plusmn #{} #\u00B0"}};
    for (auto const& [key, text] : cases)
        EXPECT_EQ(localizer.GetString(key), U(text)) << key;
    EXPECT_EQ(localizer.GetString(static_cast<char const*>(nullptr)), U(u""));
    localizer.LoadTranslations("$$$/g/Zone=Zone #{plusmn}hh:mm\n");
    EXPECT_EQ(localizer.GetString("$$$/g/Zone=#{plusmn}HH:MM"), U(u"Zone \u00B1hh:mm"));
}

TEST_F(LocalizerTest, TranslationFileReplacesDefaultsAndReportsBadLines)
{
    UTF16String const path = In("de.txt");
    ASSERT_TRUE(FileUtils::SimpleWriteStringToFile(
        path, "\xEF\xBB\xBF# German\r\n$$$/zephmetadataui/ArrayControl/Close=Schlie\xC3\x9F"
              "en\r\n\nno equals sign here\nClose=not a key\n$$$/g/Multi=Zeile 1\\nZeile 2\n"));
    std::vector<std::string> problems;
    ASSERT_TRUE(localizer.LoadTranslationFile(path, &problems));
    EXPECT_EQ(localizer.GetString("$$$/zephmetadataui/ArrayControl/Close=Close"), U(u"Schließen"));
    EXPECT_EQ(localizer.GetString("$$$/g/Multi=x"), U(u"Zeile 1\nZeile 2"));
    EXPECT_EQ(localizer.GetString("$$$/g/Other=Fallback"), U(u"Fallback"));
    ASSERT_EQ(problems.size(), 2u);
    EXPECT_NE(problems[0].find("line 4"), std::string::npos);
    EXPECT_NE(problems[1].find("line 5"), std::string::npos);
    EXPECT_FALSE(localizer.LoadTranslationFile(path + U(u".missing"), &problems));
    EXPECT_EQ(problems.size(), 3u);
}

TEST_F(LocalizerTest, PlaceholdersFillInOrderRepeatAndSurviveWhenMissing)
{
    EXPECT_EQ(ReplaceInString(U(u"@0 of @1"), U(u"3"), U(u"10")), U(u"3 of 10"));
    EXPECT_EQ(ReplaceInString(U(u"@1-@0-@1"), U(u"a"), U(u"b")), U(u"b-a-b"));
    EXPECT_EQ(ReplaceInString(U(u"@0 and @2"), U(u"x")), U(u"x and @2"));
    EXPECT_EQ(ReplaceInString(U(u"@0"), U(u"@1"), U(u"no")), U(u"@1"))
        << "arguments are not rescanned";
    EXPECT_EQ(ReplaceInString(U(u"@9!"), U(u"0"), U(u"1"), U(u"2"), U(u"3"), U(u"4"), U(u"5"),
                              U(u"6"), U(u"7"), U(u"8"), U(u"nine")),
              U(u"nine!"));
    EXPECT_EQ(ZString("$$$/g/Count=@0 items", U(u"5")), U(u"5 items"));
}

TEST(StringsTest, EveryEncodingLengthAndPlaneBoundaryRoundTripsThroughUTF16)
{
    // NUL, each length of encoding at its bounds, both sides of the
    // surrogates, and the last plane, in one text.
    static char const utf8[] =
        "\0A\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF"
        "\xBF\xF0\x90\x80\x80\xF0\x9F\x98\x80\xF3\xA0\x80\x81\xF4\x8F\xBF\xBF";
    static char16_t const utf16[] = u"\0A\x7F\x80\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000"
                                    u"\U0001F600\U000E0001\U0010FFFF";
    std::string const bytes(utf8, sizeof utf8 - 1);
    UTF16String const units(utf16, utf16 + std::size(utf16) - 1);
    EXPECT_EQ(UTF8to16(std::string_view(bytes)), units);
    EXPECT_EQ(ToStdString(UTF16to8(units)), bytes);
}

TEST(StringsTest, MalformedTextBecomesReplacementCharactersAndKeepsTheRest)
{
    std::pair<std::string, std::u16string> const cases[] = {
        {"a\x80z", u"a\uFFFDz"},         // stray continuation
        {"\xFF\xFE", u"\uFFFD\uFFFD"},   // invalid lead
        {"ab\xE2\x82", u"ab\uFFFD"},     // truncated at the end
        {"\xE2\x82x", u"\uFFFDx"},       // truncated before ASCII
        {"\xC0\xAF!", u"\uFFFD!"},       // overlong slash
        {"\xED\xA0\x80", u"\uFFFD"},     // encoded surrogate
        {"\xF4\x90\x80\x80", u"\uFFFD"}, // beyond U+10FFFF
        {"\xE2\x82\xAC", u"\u20AC"}};    // a valid euro among them
    for (auto const& [bytes, expected] : cases)
        EXPECT_EQ(UTF8to16(std::string_view(bytes)), U(expected));
    // Unpaired surrogates the other way.
    EXPECT_EQ(ToStdString(UTF16to8(UTF16String{'a', 0xD800, 'b', 0xDC00})),
              "a\xEF\xBF\xBD\x62\xEF\xBF\xBD"); // b between
    EXPECT_EQ(AsciiToUTF16("ok\xC3"), U(u"ok\uFFFD"));
    EXPECT_TRUE(AsciiToUTF16(static_cast<char const*>(nullptr)).empty());
}

TEST(StringsTest, FoldingIsFullAndLocaleIndependentAndSearchFormsMatch)
{
    EXPECT_EQ(FoldCase(U(u"Straße")), U(u"strasse"));
    EXPECT_EQ(FoldCase(U(u"ΣΊΣΥΦΟΣ")), FoldCase(U(u"σίσυφος")));
    EXPECT_EQ(FoldCase(U(u"İstanbul")).substr(0, 1), U(u"i"));
    EXPECT_EQ(LowerCase(U(u"ÉCOLE")), U(u"école"));
    // Composed, decomposed and compatibility text search alike.
    auto const search = [](std::u16string const& text)
    { return NormalizedString(FoldCase(U(text)), kNormalizationFormKC); };
    EXPECT_EQ(search(u"Cafe\u0301"), search(u"CAFÉ"));
    EXPECT_EQ(search(u"\uFB01le"), search(u"FILE"));
    EXPECT_EQ(search(u"\uFF21\uFF22"), search(u"ab"));
    EXPECT_EQ(NormalizedString(U(u"e\u0301"), kNormalizationFormC), U(u"\u00E9"));
}

TEST(StringsTest, TruncationNeverSplitsASurrogatePair)
{
    UTF16String const text = U(u"ab\U0001F600cd");
    EXPECT_EQ(TruncateStringToNumChars(text, 3), U(u"ab"));
    EXPECT_EQ(TruncateStringToNumChars(text, 4), U(u"ab\U0001F600"));
}

TEST(StringsTest, NumbersParseWithSpacesAndRejectJunk)
{
    double number = -1;
    EXPECT_TRUE(StringToNumber(U(u" 12.5 "), number));
    EXPECT_DOUBLE_EQ(number, 12.5);
    EXPECT_TRUE(StringToNumber(U(u"-3e2"), number));
    EXPECT_DOUBLE_EQ(number, -300);
    for (char16_t const* junk : {u"12,5", u"", u"1 2"})
        EXPECT_FALSE(StringToNumber(U(junk), number));
    EXPECT_DOUBLE_EQ(number, -300) << "a failed parse leaves the number alone";
    EXPECT_TRUE(IsNumericChar('7') && IsNumericChar('.') && !IsNumericChar('x'));
    EXPECT_FALSE(IsNumericChar(0x0660)); // Arabic-Indic zero is not typed into our fields
}

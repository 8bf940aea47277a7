#include "zephcore/Localizer.h"
#include "zephcore/Files.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace zephcore;

namespace
{

UTF16String U(std::u16string const& text)
{
    return UTF16String(text.begin(), text.end());
}

class LocalizerTest : public testing::Test
{
protected:
    void TearDown() override { Localizer::Get().Clear(); }
};

} // namespace

TEST_F(LocalizerTest, DefaultTextWhenNothingIsLoaded)
{
    auto& localizer = Localizer::Get();
    EXPECT_EQ(localizer.GetString("$$$/zephmetadataui/ArrayControl/Close=Close"), U(u"Close"));
    EXPECT_EQ(localizer.GetString("$$$/g/Equation=a=b"), U(u"a=b")) << "only the first = splits";
    EXPECT_EQ(localizer.GetString("$$$/g/Empty="), U(u""));
    EXPECT_EQ(localizer.GetString("plain text"), U(u"plain text"));
    EXPECT_EQ(localizer.GetString(static_cast<char const*>(nullptr)), U(u""));
}

TEST_F(LocalizerTest, NamedCharactersAreExpandedInDefaultsAndTranslations)
{
    auto& localizer = Localizer::Get();
    EXPECT_EQ(localizer.GetString("$$$/g/Zone=#{plusmn}HH:MM"), U(u"\u00B1HH:MM"));
    EXPECT_EQ(localizer.GetString("$$$/g/Two=#{copy} 2026 #{mdash} #{hellip}"),
              U(u"\u00A9 2026 \u2014 \u2026"));
    // Unknown names, unclosed and empty markers stay as they stand.
    EXPECT_EQ(localizer.GetString("$$$/g/Odd=#{nosuch} #{plusmn #{} ##{deg}"),
              U(u"#{nosuch} #{plusmn #{} #\u00B0"));
    localizer.LoadTranslations("$$$/g/Zone=Zone #{plusmn}hh:mm\n");
    EXPECT_EQ(localizer.GetString("$$$/g/Zone=#{plusmn}HH:MM"), U(u"Zone \u00B1hh:mm"));
}

TEST_F(LocalizerTest, TranslationFileReplacesDefaultsAndReportsBadLines)
{
    auto const dir = std::filesystem::temp_directory_path() / "zeph-localizer-test";
    std::filesystem::create_directories(dir);
    std::string const text = "\xEF\xBB\xBF# German\r\n"
                             "$$$/zephmetadataui/ArrayControl/Close=Schlie\xC3\x9F"
                             "en\r\n"
                             "\n"
                             "no equals sign here\n"
                             "Close=not a key\n"
                             "$$$/g/Multi=Zeile 1\\nZeile 2\n";
    UTF16String const path = UTF8to16(ToUTF8((dir / "de.txt").string()));
    ASSERT_TRUE(FileUtils::SimpleWriteStringToFile(path, text));

    std::vector<std::string> problems;
    auto& localizer = Localizer::Get();
    ASSERT_TRUE(localizer.LoadTranslationFile(path, &problems));
    EXPECT_EQ(localizer.GetString("$$$/zephmetadataui/ArrayControl/Close=Close"), U(u"Schließen"));
    EXPECT_EQ(localizer.GetString("$$$/g/Multi=x"), U(u"Zeile 1\nZeile 2"));
    EXPECT_EQ(localizer.GetString("$$$/g/Other=Fallback"), U(u"Fallback"));
    ASSERT_EQ(problems.size(), 2u);
    EXPECT_NE(problems[0].find("line 4"), std::string::npos);
    EXPECT_NE(problems[1].find("line 5"), std::string::npos);

    EXPECT_FALSE(localizer.LoadTranslationFile(path + U(u".missing"), &problems));
    EXPECT_EQ(problems.size(), 3u);
    std::filesystem::remove_all(dir);
}

TEST_F(LocalizerTest, PlaceholdersFillInOrderRepeatAndSurviveWhenMissing)
{
    EXPECT_EQ(ReplaceInString(U(u"@0 of @1"), U(u"3"), U(u"10")), U(u"3 of 10"));
    EXPECT_EQ(ReplaceInString(U(u"@1-@0-@1"), U(u"a"), U(u"b")), U(u"b-a-b"));
    EXPECT_EQ(ReplaceInString(U(u"@0 and @2"), U(u"x")), U(u"x and @2"));
    EXPECT_EQ(ReplaceInString(U(u"mail@ or @"), U(u"x")), U(u"mail@ or @"));
    EXPECT_EQ(ReplaceInString(U(u"@0"), U(u"@1"), U(u"no")), U(u"@1"))
        << "arguments are not rescanned";
    EXPECT_EQ(ReplaceInString(U(u"@9!"), U(u"0"), U(u"1"), U(u"2"), U(u"3"), U(u"4"), U(u"5"),
                              U(u"6"), U(u"7"), U(u"8"), U(u"nine")),
              U(u"nine!"));
    EXPECT_EQ(ZString("$$$/g/Count=@0 items", U(u"5")), U(u"5 items"));
}

#include "zephmetadata/Settings.h"

#include "ModelTestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <unistd.h>

using namespace zephmetadata;
using namespace modeltest;

namespace
{

std::string TempFile(char const* name)
{
    return (std::filesystem::temp_directory_path() / (std::to_string(::getpid()) + "-" + name))
        .string();
}

bool ReadText(std::set<Path>& paths, std::string const& xml)
{
    std::string const file = TempFile("settings.xmp_view_settings.xml");
    WriteFile(file, xml);
    bool const ok = ReadIncludedLeafPathsAsXMLFile(paths, zephcore::UTF8to16(file));
    std::filesystem::remove(file);
    return ok;
}

} // namespace

TEST(SettingsTest, IncludedPathsReadBackEqual)
{
    // Markup, accents, control characters, line ends and bytes that are not
    // UTF-8 all come back as they were.
    std::set<Path> paths = {P(kDC, "title"),
                            P(kDC, "subject"),
                            P(kMM, "History[1]/stEvt:action"),
                            P("urn:x-own:<&\">", "name \xC3\xA9"),
                            P("urn:x-own:", "bell\x07and\x01"),
                            P("urn:x-own:", "two\nlines\ttab"),
                            P("urn:x-own:\xFF\xFE", "latin \xE9")};
    Path flagged = P(kXMP, "Rating");
    flagged.readOnly = true;
    flagged.pathExtra1 = U8("one");
    flagged.pathExtra2 = U8("\x1F"
                            "extra");
    paths.insert(flagged);
    UTF8String xml;
    IncludedLeafPathsAsXMLString(paths, xml);
    std::set<Path> read;
    ASSERT_TRUE(ReadText(read, S(xml)));
    EXPECT_EQ(read, paths);
    auto const rating = read.find(flagged);
    ASSERT_NE(rating, read.end());
    EXPECT_TRUE(rating->readOnly && rating->pathExtra1 == flagged.pathExtra1 &&
                rating->pathExtra2 == flagged.pathExtra2);
    // An empty set is a valid file too, and replaces what was read before.
    IncludedLeafPathsAsXMLString({}, xml);
    EXPECT_TRUE(ReadText(read, S(xml)));
    EXPECT_TRUE(read.empty());
}

TEST(SettingsTest, MissingOrMalformedFilesAreRefusedAndLeaveTheSetAlone)
{
    std::set<Path> const original = {P(kDC, "title")};
    std::set<Path> read = original;
    EXPECT_FALSE(ReadIncludedLeafPathsAsXMLFile(read, zephcore::UTF8to16(TempFile("absent.xml"))));
    EXPECT_FALSE(ReadIncludedLeafPathsAsXMLFile(read, UTF16String()));
    EXPECT_FALSE(ReadText(read, ""));
    EXPECT_FALSE(ReadText(read, "<xmpViewSettings><path namespace=\"a\" property=\"b\">"));
    EXPECT_FALSE(ReadText(read, "<other/>"));
    EXPECT_FALSE(ReadText(read, "<xmpViewSettings><path property=\"b\"/></xmpViewSettings>"));
    EXPECT_FALSE(ReadText(read, "<xmpViewSettings><folder/></xmpViewSettings>"));
    EXPECT_FALSE(ReadText(
        read, "<xmpViewSettings><path namespace=\"a\" propertyHex=\"6g\"/></xmpViewSettings>"));
    EXPECT_FALSE(ReadText(read, "\x89PNG\r\n\x1a\n binary"));
    EXPECT_EQ(read, original);
}

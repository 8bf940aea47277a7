// Conversion of generic panels of earlier suite generations into view
// definitions: one report line per panel, and views that load at next start.

#include "DefinitionTestSupport.h"

#include <zephmetadata/CustomDefinitions.h>
#include <zephmetadata/PanelConversion.h>
#include <zephmetadata/ViewDefinitions.h>

namespace zephmetadata::test
{
namespace
{

using utility::GenericPanelsDirectory;
using utility::LoadAndConvertGenericPanels;

char const* const kShootNamespace = "http://example.com/ns/shoot/1.0/";

class PanelConversionTest : public LoadedDefinitionTest
{
protected:
    std::filesystem::path PanelFolder(utility::SuiteVersion version)
    {
        return std::filesystem::path(S(GenericPanelsDirectory(version)));
    }

    void WritePanel(utility::SuiteVersion version, std::string const& name, std::string const& text)
    {
        std::filesystem::create_directories(PanelFolder(version));
        std::ofstream(PanelFolder(version) / name) << text;
    }

    static std::vector<std::string> Lines(UTF16String const& report)
    {
        std::vector<std::string> lines;
        std::string const text = S(report);
        std::size_t start = 0;
        for (std::size_t end; (end = text.find('\n', start)) != std::string::npos; start = end + 1)
            lines.push_back(text.substr(start, end - start));
        return lines;
    }
};

std::string const kDcTitle = R"(<field namespace="http://purl.org/dc/elements/1.1/" name="title")";
std::string const kShootPanel =
    R"(<panel id="shoot" title="Shoot Log" description="On-set notes" version="6">)" + kDcTitle +
    R"( label="Clip Title"/><group title="Take"><field namespace=")" + kShootNamespace +
    R"(" prefix="shoot" name="takeQuality" label="Quality" type="closedChoice">
      <option value="good" label="Good"/><option value="bad" label="Bad"/></field>
    <field namespace=")" +
    kShootNamespace + R"(" prefix="shoot" name="notes" label="Notes" lines="3"/>
    <static text="Ask the script supervisor."/> <separator/>
    <field namespace="http://purl.org/dc/elements/1.1/" name="nosuchproperty"/></group></panel>)";

TEST_F(PanelConversionTest, EachPanelGivesOneLineConvertedOrRefused)
{
    std::pair<char const*, std::string> const panels[] = {
        {"a-shoot.xml", kShootPanel},
        {"b-older.xml",
         R"(<panel id="older" title="Older" version="5">)" + kDcTitle + "/></panel>"},
        {"c-broken.xml", R"(<panel id="broken" title="Broken" version="6"><field)"},
        {"d-noid.xml", R"(<panel title="No id" version="6">)" + kDcTitle + "/></panel>"},
        {"e-empty.xml", R"(<panel id="empty" title="Empty" version="6"><field )"
                        R"(namespace="http://purl.org/dc/elements/1.1/" name="nosuch"/></panel>)"},
        {"f-other.xml", R"(<form id="x"/>)"}};
    for (auto const& [name, text] : panels)
        WritePanel(utility::kSuiteVersionR6, name, text);

    UTF16String report = zephcore::UTF8to16(std::string("earlier text\n"));
    LoadAndConvertGenericPanels(utility::kSuiteVersionR6, report);
    std::vector<std::string> const lines = Lines(report);
    ASSERT_EQ(lines.size(), 7u) << S(report);
    char const* const expected[] = {"earlier text",
                                    "Converted \"a-shoot.xml\"",
                                    "not R6",
                                    "Refused \"c-broken.xml\"",
                                    "Refused \"d-noid.xml\"",
                                    "no field",
                                    "not a generic panel"};
    for (std::size_t i = 0; i < lines.size(); ++i)
        EXPECT_NE(lines[i].find(expected[i]), std::string::npos) << lines[i];
    EXPECT_NE(lines[1].find("3 fields, 1 left out"), std::string::npos) << lines[1];
    EXPECT_FALSE(HasErrors()) << ErrorLogText();
}

TEST_F(PanelConversionTest, AConvertedPanelIsAViewAtOnceAndAfterTheNextStart)
{
    WritePanel(
        utility::kSuiteVersionR5, "shoot.xml",
        std::string(kShootPanel).replace(kShootPanel.find("version=\"6\""), 11, "version=\"5\""));
    UTF16String report;
    LoadAndConvertGenericPanels(utility::kSuiteVersionR5, report);
    ASSERT_EQ(S(report).rfind("Converted", 0), 0u) << S(report);

    for (int start = 0; start < 2; ++start)
    {
        SCOPED_TRACE(start);
        auto const view = GetViewDefinitionForName(U8("com.velmora.xmp.view.panel.shoot"));
        ASSERT_TRUE(view);
        EXPECT_EQ(S(view->GetLabel()) + "/" + S(view->GetDescription()), "Shoot Log/On-set notes");
        ASSERT_EQ(view->items.size(), 2u);
        EXPECT_EQ(S(view->items[0]->GetLabel()), "Clip Title");
        ViewItem const& take = *view->items[1];
        ASSERT_EQ(take.items.size(), 4u);
        EXPECT_EQ(S(take.format) + " " + S(take.items[2]->format) + " " + S(take.items[3]->format),
                  "section note separator");
        EXPECT_EQ(S(take.items[1]->GetHint("multiLines")), "3");
        // The unknown fields became properties of a custom schema.
        Path const quality = take.items[0]->GetPath();
        EXPECT_EQ(S(quality.schemaNamespace), kShootNamespace);
        EXPECT_EQ(*PrimitiveTypeOfPath(quality), kPrimitiveClosedChoice);
        EXPECT_EQ(S(PathEntryDefinition(quality)->choices.back()->label), "Bad");
        EXPECT_TRUE(NamespaceDefinition(U8(kShootNamespace))->schemaFlag1);
        EXPECT_FALSE(HasErrors()) << ErrorLogText();
        UnloadDefinitions();
        LoadDefinitions();
    }
}

TEST_F(PanelConversionTest, AGenerationWithoutPanelsSaysSo)
{
    UTF16String report;
    LoadAndConvertGenericPanels(utility::kSuiteVersionR4, report);
    EXPECT_EQ(S(report).rfind("No R4 panels found", 0), 0u) << S(report);
}

TEST_F(PanelConversionTest, AChosenFolderIsLookedInUntilItIsGivenUp)
{
    std::filesystem::path const chosen = WriteFile("chosen/shoot.xml", kShootPanel).parent_path();
    WritePanel(utility::kSuiteVersionR6, "default.xml", R"(<form id="x"/>)");
    UTF16String const defaultFolder = GenericPanelsDirectory(utility::kSuiteVersionR6);

    utility::SetGenericPanelsDirectory(U16(chosen));
    UTF16String report;
    LoadAndConvertGenericPanels(utility::kSuiteVersionR6, report);
    // Its panels are still of their own generation.
    LoadAndConvertGenericPanels(utility::kSuiteVersionR5, report);
    utility::SetGenericPanelsDirectory(UTF16String());
    std::vector<std::string> const lines = Lines(report);
    ASSERT_EQ(lines.size(), 2u) << S(report);
    EXPECT_EQ(lines[0].rfind("Converted \"shoot.xml\"", 0), 0u) << lines[0];
    EXPECT_NE(lines[1].find("not R5"), std::string::npos) << lines[1];
    EXPECT_TRUE(GetViewDefinitionForName(U8("com.velmora.xmp.view.panel.shoot")));

    EXPECT_EQ(S(GenericPanelsDirectory(utility::kSuiteVersionR6)), S(defaultFolder));
    report.clear();
    LoadAndConvertGenericPanels(utility::kSuiteVersionR6, report);
    EXPECT_EQ(S(report).rfind("Refused \"default.xml\"", 0), 0u) << S(report);
}

TEST_F(PanelConversionTest, DeeplyNestedGroupsAreRefused)
{
    std::string panel = R"(<panel id="deep" title="Deep" version="4">)";
    for (int i = 0; i < 10000; ++i)
        panel += "<group>";
    panel += R"(<field namespace="http://purl.org/dc/elements/1.1/" name="title"/>)";
    for (int i = 0; i < 10000; ++i)
        panel += "</group>";
    panel += "</panel>";
    WritePanel(utility::kSuiteVersionR4, "deep.xml", panel);
    UTF16String report;
    LoadAndConvertGenericPanels(utility::kSuiteVersionR4, report);
    EXPECT_EQ(S(report).rfind("Refused \"deep.xml\": groups nested deeper", 0), 0u) << S(report);
}

} // namespace
} // namespace zephmetadata::test

// Conversion of generic panels of earlier suite generations into view
// definitions: one report line per panel, and views that load at next start.

#include "ModelTestSupport.h"

#include <zephmetadata/CustomDefinitions.h>
#include <zephmetadata/PanelConversion.h>
#include <zephmetadata/ViewDefinitions.h>

#include <sstream>

using namespace zephmetadata;
using namespace modeltest;

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

TEST_F(PanelConversionTest, EachPanelGivesOneLineAndAConvertedOneIsAViewNowAndAfterRestart)
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
    // A line each, in the files' order, after what the report held.
    std::istringstream lines(S(report));
    std::string line;
    for (char const* expected :
         {"earlier text", "Converted \"a-shoot.xml\"", "not R6", "Refused \"c-broken.xml\"",
          "Refused \"d-noid.xml\"", "no field", "not a generic panel"})
    {
        std::getline(lines, line);
        EXPECT_NE(line.find(expected), std::string::npos) << line;
    }
    EXPECT_FALSE(std::getline(lines, line)) << line;
    EXPECT_NE(S(report).find("3 fields, 1 left out"), std::string::npos) << S(report);
    EXPECT_FALSE(HasErrors()) << ErrorLogText();
    // The converted panel is a view at once and after the next start.
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

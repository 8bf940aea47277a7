// View definitions: what the files say arrives in ViewItems. Walking them
// through a builder is the layout tests' part, whose forms are built so.

#include "ModelTestSupport.h"

#include <zephcore/Localizer.h>
#include <zephmetadata/CustomDefinitions.h>
#include <zephmetadata/PanelConversion.h>
#include <zephmetadata/ViewDefinitions.h>

#include <sstream>

using namespace zephmetadata;
using namespace modeltest;

namespace
{

class ViewDefinitionsTest : public LoadedDefinitionTest
{
protected:
    std::string Text(UTF8String const& key) { return S(zephcore::Localizer::Get().GetString(key)); }
};

TEST_F(ViewDefinitionsTest, ItemsCarryFormatsHintsChoicesAndTexts)
{
    auto const file = WriteFile("items.xml", R"(<definitions>
  <view id="com.example.view.items" label="Items" description="All kinds" hideEmptyValues="true">
    <item property="dc:description" multiLines="3" hint="Say what it shows."/>
    <item property="xmp:Label" label="Colour" kind="dropdown" openChoice="true">
      <choice value="Red" label="Red label"/><choice value="Green"/></item>
    <note message="Fill in what you know." icon="info" fontSize="small"/>
    <formatter label="Size" format="@0 × @1">
      <item property="exif:PixelXDimension"/><item property="exif:PixelYDimension"/></formatter>
    <schema namespace="http://purl.org/dc/elements/1.1/" style="noHeader" readOnly="true"/>
    <item property="xmp:Rating"><hint name="size" value="large"/></item>
  </view>
</definitions>)");
    LoadDefinitionFiles({U16(file)});
    ASSERT_FALSE(HasErrors()) << ErrorLogText();
    auto const view = GetViewDefinitionForName(U8("com.example.view.items"));
    ASSERT_TRUE(view);
    EXPECT_EQ(S(view->GetLabel()) + "/" + S(view->GetDescription()), "Items/All kinds");
    EXPECT_TRUE(view->hideEmptyValues);
    ASSERT_EQ(view->items.size(), 6u);
    auto const hint = [&](std::size_t item, char const* name)
    { return S(view->items[item]->GetHint(name)); };
    EXPECT_EQ(S(view->items[0]->GetLabel()), "Description"); // from the definition
    EXPECT_EQ(hint(0, "multiLines") + hint(1, "openChoice") + hint(5, "size"), "3truelarge");
    EXPECT_TRUE(hint(5, "missing").empty());
    // Texts become localiser keys of the view with the text as default.
    EXPECT_EQ(hint(0, "hint").rfind("$$$/zephmetadata/View/items/", 0), 0u);
    EXPECT_EQ(Text(view->items[0]->GetHint("hint")), "Say what it shows.");
    EXPECT_EQ(Text(view->items[2]->GetHint("message")), "Fill in what you know.");
    EXPECT_EQ(Text(view->items[3]->GetHint("format")), "@0 × @1");

    ViewItem const& label = *view->items[1];
    EXPECT_EQ(S(label.format) + " " + S(label.GetLabel()), "dropdown Colour");
    EXPECT_TRUE(label.hints.count(U8("kind")) == 0);
    ASSERT_EQ(label.choices.size(), 2u);
    EXPECT_EQ(S(label.choices[0]->label) + "/" + S(label.choices[1]->label), "Red label/Green");
    ASSERT_EQ(view->items[3]->items.size(), 2u);
    EXPECT_EQ(S(view->items[3]->items[1]->GetPath().propertyName), "PixelYDimension");
    EXPECT_EQ(hint(4, "namespace"), "http://purl.org/dc/elements/1.1/");
}

TEST_F(ViewDefinitionsTest, LoadAllViewDefinitionsPicksUpViewsAddedToTheUserFolder)
{
    std::size_t const before = boost::size(CommonViewDefinitions());
    EXPECT_FALSE(GetViewDefinitionForName(U8("com.example.view.late")));
    std::filesystem::path const user = zephcore::ToStdString(CustomDefinitionsUserDirectory());
    std::ofstream(user / "late.xml")
        << R"(<definitions><view id="com.example.view.late" label="Late"><item property="dc:title"/></view></definitions>)";
    LoadAllViewDefinitions();
    ASSERT_TRUE(GetViewDefinitionForName(U8("com.example.view.late")));
    EXPECT_EQ(boost::size(CommonViewDefinitions()), before + 1);
    // Reading again replaces the view rather than adding a second one.
    LoadAllViewDefinitions();
    EXPECT_EQ(boost::size(CommonViewDefinitions()), before + 1);
    EXPECT_FALSE(HasErrors()) << ErrorLogText();
}

} // namespace

// Conversion of generic panels of earlier suite generations into view
// definitions: one report line per panel, and views that load at next start.

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
    EXPECT_EQ(S(report).rfind("Converted \"shoot.xml\"", 0), 0u) << S(report);
    EXPECT_NE(S(report).find("not R5"), std::string::npos) << S(report);
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

// View definitions: what the files say arrives in ViewItems, and BuildView
// walks a definition through a builder in order.

#include "DefinitionTestSupport.h"

#include <zephmetadata/CustomDefinitions.h>
#include <zephmetadata/ViewDefinitions.h>

#include <zephcore/Localizer.h>

namespace zephmetadata::test
{
namespace
{

// A builder that writes down every call it gets, as the form builder would
// receive them.
class RecordingBuilder : public AbstractViewBuilder
{
public:
    void BeginView(ViewDefinition& definition) override
    {
        calls.push_back("begin " + S(definition.name) +
                        (definition.hideEmptyValues ? " hide" : ""));
    }
    bool EndView() override
    {
        calls.push_back("end");
        return taken > 0;
    }
    bool AddViewItem(boost::shared_ptr<ViewItem> const& item) override
    {
        std::string what = item->GetPath().propertyName.empty() ? S(item->format)
                                                                : S(item->GetPath().propertyName);
        calls.push_back("item " + what);
        bool const take = !item->GetPath().propertyName.empty();
        taken += take ? 1 : 0;
        return take;
    }

    std::vector<std::string> calls;
    int taken = 0;
};

class ViewDefinitionsTest : public DefinitionTest
{
protected:
    void SetUp() override
    {
        DefinitionTest::SetUp();
        LoadDefinitions();
        ASSERT_FALSE(HasErrors()) << ErrorLogText();
    }

    std::string Text(UTF8String const& key) { return S(zephcore::Localizer::Get().GetString(key)); }
};

TEST_F(ViewDefinitionsTest, BuildViewWalksTheTopLevelItemsInOrderAndANullDefinitionAsEmpty)
{
    auto const file = WriteFile("walk.xml", R"(<definitions>
  <view id="test.walk" label="Walk" hideEmptyValues="true">
    <item property="dc:title"/>
    <separator/>
    <section type="header" label="Inner">
      <item property="dc:creator"/>
    </section>
    <item property="xmp:Rating" kind="rating"/>
  </view>
</definitions>)");
    LoadDefinitionFiles({U16(file)});
    ASSERT_FALSE(HasErrors()) << ErrorLogText();
    RecordingBuilder builder;
    BuildView(GetViewDefinitionForName(U8("test.walk")), builder);
    EXPECT_EQ(builder.calls,
              (std::vector<std::string>{"begin test.walk hide", "item title", "item separator",
                                        "item section", "item Rating", "end"}));
    EXPECT_EQ(builder.taken, 2);
    RecordingBuilder empty;
    BuildView(boost::shared_ptr<ViewDefinition>(), empty);
    EXPECT_EQ(empty.calls, (std::vector<std::string>{"begin ", "end"}));
}

TEST_F(ViewDefinitionsTest, ItemsCarryFormatsHintsChoicesAndLocalisedTexts)
{
    auto const file = WriteFile("items.xml", R"(<definitions>
  <view id="com.example.view.items" label="Items" description="All kinds">
    <item property="dc:description" multiLines="3" hint="Say what it shows."/>
    <item property="xmp:Label" label="Colour" kind="dropdown" openChoice="true">
      <choice value="Red" label="Red label"/>
      <choice value="Green"/>
    </item>
    <note message="Fill in what you know." icon="info" fontSize="small"/>
    <formatter label="Size" format="@0 × @1">
      <item property="exif:PixelXDimension"/>
      <item property="exif:PixelYDimension"/>
    </formatter>
    <schema namespace="http://purl.org/dc/elements/1.1/" style="noHeader" readOnly="true"/>
    <item property="xmp:Rating"><hint name="size" value="large"/></item>
  </view>
</definitions>)");
    LoadDefinitionFiles({U16(file)});
    ASSERT_FALSE(HasErrors()) << ErrorLogText();
    auto const view = GetViewDefinitionForName(U8("com.example.view.items"));
    ASSERT_TRUE(view);
    EXPECT_EQ(S(view->GetLabel()), "Items");
    EXPECT_EQ(S(view->GetDescription()), "All kinds");
    ASSERT_EQ(view->items.size(), 6u);

    ViewItem const& description = *view->items[0];
    EXPECT_EQ(S(description.GetLabel()), "Description"); // from the definition
    EXPECT_EQ(S(description.GetHint("multiLines")), "3");
    EXPECT_EQ(Text(description.GetHint("hint")), "Say what it shows.");
    EXPECT_EQ(S(description.GetHint("hint")).rfind("$$$/zephmetadata/View/items/", 0), 0u);

    ViewItem const& label = *view->items[1];
    EXPECT_EQ(S(label.format), "dropdown");
    EXPECT_EQ(S(label.GetLabel()), "Colour");
    EXPECT_EQ(S(label.GetHint("openChoice")), "true");
    ASSERT_EQ(label.choices.size(), 2u);
    EXPECT_EQ(S(label.choices[0]->label), "Red label");
    EXPECT_EQ(S(label.choices[1]->label), "Green");
    EXPECT_TRUE(label.hints.count(U8("kind")) == 0);

    ViewItem const& note = *view->items[2];
    EXPECT_EQ(S(note.format), "note");
    EXPECT_TRUE(note.GetPath().schemaNamespace.empty());
    EXPECT_EQ(Text(note.GetHint("message")), "Fill in what you know.");
    EXPECT_EQ(S(note.GetHint("icon")), "info");

    ViewItem const& formatter = *view->items[3];
    EXPECT_EQ(S(formatter.format), "formatter");
    EXPECT_EQ(Text(formatter.GetHint("format")), "@0 × @1");
    ASSERT_EQ(formatter.items.size(), 2u);
    EXPECT_EQ(S(formatter.items[1]->GetPath().propertyName), "PixelYDimension");

    ViewItem const& schema = *view->items[4];
    EXPECT_EQ(S(schema.format), "schema");
    EXPECT_EQ(S(schema.GetHint("namespace")), "http://purl.org/dc/elements/1.1/");
    EXPECT_EQ(S(schema.GetHint("style")), "noHeader");
    EXPECT_EQ(S(schema.GetHint("readOnly")), "true");

    EXPECT_EQ(S(view->items[5]->GetHint("size")), "large");
    EXPECT_TRUE(view->items[5]->GetHint("missing").empty());
}

TEST_F(ViewDefinitionsTest, ItemsMadeInCodeBehaveLikeLoadedOnes)
{
    ViewItem note("note");
    EXPECT_TRUE(note.GetLabel().empty());
    auto const title = boost::make_shared<ViewItem>(
        PathForSchemaNameAndPropertyName(U8("http://purl.org/dc/elements/1.1/"), U8("title")));
    note.AddItem(title);
    note.AddItem(boost::shared_ptr<ViewItem>());
    ASSERT_EQ(note.items.size(), 1u);
    EXPECT_EQ(S(title->GetLabel()), "Title");
    EXPECT_FALSE(title->GetDescription().empty());
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
} // namespace zephmetadata::test

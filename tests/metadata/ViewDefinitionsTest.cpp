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
        UTF8String const& name = item->GetPath().propertyName;
        calls.push_back("item " + S(name.empty() ? item->format : name));
        taken += name.empty() ? 0 : 1;
        return !name.empty();
    }

    std::vector<std::string> calls;
    int taken = 0;
};

class ViewDefinitionsTest : public LoadedDefinitionTest
{
protected:
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
    EXPECT_EQ(S(view->GetLabel()) + "/" + S(view->GetDescription()), "Items/All kinds");
    ASSERT_EQ(view->items.size(), 6u);
    auto const hint = [&](std::size_t item, char const* name)
    { return S(view->items[item]->GetHint(name)); };

    EXPECT_EQ(S(view->items[0]->GetLabel()), "Description"); // from the definition
    EXPECT_EQ(hint(0, "multiLines"), "3");
    // Texts become localiser keys of the view with the text as default.
    EXPECT_EQ(hint(0, "hint").rfind("$$$/zephmetadata/View/items/", 0), 0u);
    EXPECT_EQ(Text(view->items[0]->GetHint("hint")), "Say what it shows.");

    ViewItem const& label = *view->items[1];
    EXPECT_EQ(S(label.format) + " " + S(label.GetLabel()), "dropdown Colour");
    EXPECT_EQ(hint(1, "openChoice"), "true");
    EXPECT_TRUE(label.hints.count(U8("kind")) == 0);
    ASSERT_EQ(label.choices.size(), 2u);
    EXPECT_EQ(S(label.choices[0]->label) + "/" + S(label.choices[1]->label), "Red label/Green");

    EXPECT_EQ(S(view->items[2]->format), "note");
    EXPECT_TRUE(view->items[2]->GetPath().schemaNamespace.empty());
    EXPECT_EQ(Text(view->items[2]->GetHint("message")), "Fill in what you know.");

    ViewItem const& formatter = *view->items[3];
    EXPECT_EQ(Text(formatter.GetHint("format")), "@0 × @1");
    ASSERT_EQ(formatter.items.size(), 2u);
    EXPECT_EQ(S(formatter.items[1]->GetPath().propertyName), "PixelYDimension");

    EXPECT_EQ(S(view->items[4]->format), "schema");
    EXPECT_EQ(hint(4, "namespace") + " " + hint(4, "style") + " " + hint(4, "readOnly"),
              "http://purl.org/dc/elements/1.1/ noHeader true");
    EXPECT_EQ(hint(5, "size"), "large"); // a hint element
    EXPECT_TRUE(hint(5, "missing").empty());
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

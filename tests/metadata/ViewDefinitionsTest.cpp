// View definitions: what the files say arrives in ViewItems, and BuildView
// walks a definition through a builder in order.

#include "ModelTestSupport.h"

#include <zephmetadata/CustomDefinitions.h>
#include <zephmetadata/ViewDefinitions.h>

#include <zephcore/Localizer.h>

using namespace zephmetadata;
using namespace modeltest;

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

TEST_F(ViewDefinitionsTest, ItemsCarryFormatsHintsChoicesAndTextsAndAreBuiltInOrder)
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

    // The builder gets the top-level items in order, and a missing view as empty.
    RecordingBuilder builder;
    BuildView(view, builder);
    EXPECT_EQ(builder.calls,
              (std::vector<std::string>{"begin com.example.view.items hide", "item description",
                                        "item Label", "item note", "item formatter", "item schema",
                                        "item Rating", "end"}));
    EXPECT_EQ(builder.taken, 3);
    RecordingBuilder empty;
    BuildView(boost::shared_ptr<ViewDefinition>(), empty);
    EXPECT_EQ(empty.calls, (std::vector<std::string>{"begin ", "end"}));
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

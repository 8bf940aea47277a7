// The form view as a host uses it: pages by name, "No Data", Tab through a
// long form, and wrapping at a new width.
#include "LayoutTestSupport.h"

#include <zephmetadata/ViewDefinitions.h>
#include <zephui/UI_ScrollView.h>
#include <zephui/UI_StaticText.h>

#include <QApplication>
#include <QTest>

namespace layouttest
{
namespace
{

using treetest::MakeProvider;
using treetest::RichAlphaBody;

bool ShowsNoData(MetadataLayoutView* view)
{
    auto* text = view->ChildCount() == 1 && view->ChildGet(0)->ChildCount() == 1
                     ? dynamic_cast<zephui::UI_StaticText*>(view->ChildGet(0)->ChildGet(0))
                     : nullptr;
    return text && zephcore::ToStdString(text->GetValue()) == "No Data";
}

using MetadataLayoutViewTest = LayoutTest;

TEST_F(MetadataLayoutViewTest, PagesAreFoundByNameAndAFormWithoutRowsSaysNoData)
{
    auto const provider = MakeProvider(RichAlphaBody());
    zephmetadata::LoadAllViewDefinitions();
    boost::intrusive_ptr<MetadataLayoutView> const unknown(
        new MetadataLayoutView(zephcore::ToUTF8("no.such.view"), provider));
    EXPECT_TRUE(unknown->GetViewName().empty());
    unknown->Layout();
    EXPECT_TRUE(ShowsNoData(unknown.get()));

    Form hidden(Definition({AlphaItem("count", {{"readOnly", "true"}})}, true),
                MakeProvider("<ta:title>x</ta:title>"));
    EXPECT_TRUE(ShowsNoData(hidden.View())) << "every item hidden";

    Form form(Definition({AlphaItem("title")}), provider);
    EXPECT_FALSE(ShowsNoData(form.View()));
    auto const table = form.Table();
    form.View()->SetViewDefinition(nullptr);
    form.View()->SetViewDefinitionByName(zephcore::ToUTF8("no.such.view"));
    EXPECT_EQ(form.View()->GetViewName(), zephcore::ToUTF8("test.view"));
    EXPECT_EQ(form.Table(), table) << "nothing was rebuilt";
    form.View()->SetViewDefinitionByName(zephcore::ToUTF8("com.velmora.xmp.view.basic"));
    EXPECT_EQ(form.View()->GetDisplayName(), zephcore::ToUTF8("Basic"));
    EXPECT_NE(form.Table(), table);
}

TEST_F(MetadataLayoutViewTest, TabBringsTheNextFieldOfALongFormIntoView)
{
    std::vector<ItemPtr> items;
    for (int i = 0; i < 30; ++i)
        items.push_back(AlphaItem(i % 2 ? "title" : "count"));
    Form form(Definition(items), MakeProvider(RichAlphaBody()), 500, 200);
    form.Window()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form.Window()));
    auto* scroll = dynamic_cast<zephui::UI_ScrollView*>(form.Table()->view.get());
    ASSERT_TRUE(scroll);
    form.Table()->rows[0]->items[1]->view->UI_GetWidget()->setFocus();
    for (int i = 0; i < 12; ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_GT(scroll->GetScrollPosition().y, 150.0f) << "the form scrolled along";
    QWidget* focused = QApplication::focusWidget();
    ASSERT_TRUE(focused);
    QRect const shown(focused->mapTo(form.Window(), QPoint(0, 0)), focused->size());
    EXPECT_TRUE(form.Window()->rect().contains(shown)) << "the focused field is in view";
}

TEST_F(MetadataLayoutViewTest, ReadOnlyTextWrapsAnewAtANarrowerWidth)
{
    std::string const words = "a long caption of many words that will need several lines when "
                              "the form is narrow, and one line when it is wide enough";
    Form form(Definition({AlphaItem("title", {{"readOnly", "true"}, {"format", "@0"}})}),
              MakeProvider("<ta:title>" + words + "</ta:title>"), 1200, 300);
    auto height = [&form] { return form.Table()->rows[0]->view->UI_GetLocalRectF(false).height; };
    float const wide = height();
    form.Window()->resize(320, 300);
    form.View()->Relayout();
    EXPECT_GT(height(), 2.5f * wide);
    EXPECT_EQ(treetest::ControlText(form.Table()->rows[0]->items[1]->view.get()), words);
}

} // namespace
} // namespace layouttest

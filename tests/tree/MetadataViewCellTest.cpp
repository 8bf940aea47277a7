// Row cells: labels, the shared divider, link buttons, and cells handed over.

#include "TreeTestSupport.h"

#include <zephmetadataui/MetadataView_LinkDelegate.h>

#include "module/ModuleResources.h"

#include <zephui/UI_Button.h>
#include <zephui/UI_Checkbox.h>
#include <zephui/UI_NodeManager.h>

#include <zephmetadata/Access.h>
#include <zephmetadata/FileProvider.h>
#include <zephmetadata/PathDefinitions.h>
#include <zephmetadata/Switches.h>
#include <zephmetadata/Values.h>

#include <zephui/UI_ScrollView.h>

#include <QLineEdit>

#include <functional>
#include <tuple>
#include <typeinfo>

#include <boost/make_shared.hpp>

#include <QTest>

using namespace treetest;

namespace
{

using MetadataViewCellTest = TreeTest;

struct Delegate : zephmetadataui::MetadataView_LinkDelegate
{
    bool CanLinkPath(Path const& path) override { return linkable.count(path) != 0; }
    bool IsPathLinked(Path const& path) override { return linked.count(path) != 0; }
    void SetPathLinked(Path const& path, bool on) override
    {
        if (on)
            linked.insert(path);
        else
            linked.erase(path);
    }
    bool IsLinkingEnabled() override { return enabled; }

    std::set<Path> linkable, linked;
    bool enabled = true;
};

} // namespace

TEST_F(MetadataViewCellTest, AnEmptyArrayHasNoCountButShowsItsItemsFields)
{
    // Counts ("(1 entries)") and subscripts ("Events [1]") show in the other
    // tree tests' rows.
    ViewPtr const view = MakeView({Alpha()}, MakeProvider("<ta:events><rdf:Seq/></ta:events>"));
    OpenAll(view.get());
    std::string const shown = DumpTree(view.get(), false);
    EXPECT_NE(std::string::npos,
              shown.find("\nv Events\n    Action\n    When\n  v Place\n      City\n"))
        << shown;
}

TEST_F(MetadataViewCellTest, TheDividerIsClampedSharedByAllCellsAndDraggedOrPutBack)
{
    ViewPtr const view = RichView(600.0f, 600.0f);
    Window const window(view, 600, 600);
    OpenAll(view.get());
    MetadataViewCell* const title = CellWithLabel(view.get(), "Title");
    MetadataViewCell* const count = CellWithLabel(view.get(), "Count");
    MetadataViewCell* const city = CellWithLabel(view.get(), "City");
    ASSERT_TRUE(title && count && city);
    title->SetLabelWidth(10.0f);
    EXPECT_FLOAT_EQ(80.0f, title->GetLabelWidth());
    title->SetLabelWidth(5000.0f);
    EXPECT_FLOAT_EQ(title->UI_GetLocalRectF(false).width - 100.0f, title->GetLabelWidth());
    title->SetLabelWidth(200.0f);

    // A drag moves it in every row: values 5 to its right, the same x in tree
    // coordinates for an indented cell.
    QWidget* const widget = title->UI_GetWidget();
    QTest::mousePress(widget, Qt::LeftButton, Qt::NoModifier, QPoint(200, 8));
    EXPECT_EQ(10, zephui::UI_NodeManager::Get(false)->GetDisplayedCursor());
    QTest::mouseMove(widget, QPoint(260, 8));
    QTest::mouseRelease(widget, Qt::LeftButton, Qt::NoModifier, QPoint(260, 8));
    EXPECT_FLOAT_EQ(260.0f, title->GetLabelWidth());
    count->UI_GetWidget()->repaint();
    city->UI_GetWidget()->repaint();
    EXPECT_FLOAT_EQ(265.0f, count->GetChild_Value()->UI_GetLocalRectF(true).left);
    zephui::ScaleMatrixF const cityToTree =
        zephui::UI_Node::UI_GetSelfToSpecificParentMatrix(city, TreeOf(view.get()));
    EXPECT_LT(city->GetLabelWidth(), 260.0f);
    EXPECT_FLOAT_EQ(MetadataView::GetSharedLabelWidth(),
                    cityToTree.Transform(zephui::PointF(city->GetLabelWidth(), 0)).x);

    QTest::mousePress(widget, Qt::LeftButton, Qt::NoModifier, QPoint(260, 8));
    QTest::mouseMove(widget, QPoint(340, 8));
    EXPECT_FLOAT_EQ(340.0f, title->GetLabelWidth());
    zephui::UI_NodeManager::Get(false)->CancelCapture();
    QTest::mouseRelease(widget, Qt::LeftButton, Qt::NoModifier, QPoint(340, 8));
    EXPECT_FLOAT_EQ(260.0f, title->GetLabelWidth());
}

TEST_F(MetadataViewCellTest, LinkColumnIsReservedInEveryRowButtonsToggleAndANarrowCellHidesIt)
{
    auto const delegate = boost::make_shared<Delegate>();
    delegate->linkable = delegate->linked = {AlphaPath("title")};
    ViewPtr const view = RichView(600.0f, 400.0f);
    view->SetLinkDelegate(delegate);
    view->RefilterMetadataFieldsForRapidFindString();
    Window const window(view, 600, 400);

    MetadataViewCell* title = CellWithLabel(view.get(), "Title");
    MetadataViewCell* const dates = CellWithLabel(view.get(), "Dates");
    ASSERT_TRUE(title && dates && title->GetChild_Link());
    EXPECT_FALSE(dates->GetChild_Link());
    // The column is kept in rows without a link too.
    float const width = title->UI_GetLocalRectF(false).width;
    EXPECT_FLOAT_EQ(width - 21.0f, title->GetChild_Value()->UI_GetLocalRectF(true).GetRight());
    EXPECT_FLOAT_EQ(width - 21.0f, dates->GetChild_Value()->UI_GetLocalRectF(true).GetRight());

    // Linked: the link picture; a click unlinks: the empty well.
    auto* const button = dynamic_cast<zephui::UI_PictureButton*>(title->GetChild_Link().get());
    ASSERT_TRUE(button);
    auto const picture = [&](char const* name)
    { return zephmetadataui::LoadModuleImage(button->UI_GetDrawSupplier(), name); };
    ASSERT_TRUE(picture("SP_Link_Sm_N_D") && picture("P_IconWell_N"));
    ASSERT_NE(picture("SP_Link_Sm_N_D"), picture("P_IconWell_N"));
    EXPECT_EQ(picture("SP_Link_Sm_N_D"), button->SupplyImage());

    Click(title->GetChild_Link().get());
    EXPECT_TRUE(delegate->linked.empty());
    EXPECT_EQ(picture("P_IconWell_N"), button->SupplyImage());

    delegate->linked = {AlphaPath("title")};
    delegate->enabled = false;
    view->UpdateAllLinkButtons();
    EXPECT_TRUE(title->GetChild_Link()->UI_IsDisabled());

    // Too narrow: the label keeps its minimum and the link hides.
    view->UI_SetLocalRectF(zephui::RectF(0, 0, 95.0f, 400.0f));
    title = CellWithLabel(view.get(), "Title");
    title->SetLabelWidth(300.0f);
    EXPECT_FLOAT_EQ(80.0f, title->GetLabelWidth());
    title->PlaceChildren();
    EXPECT_FALSE(title->GetChild_Link()->UI_IsShown());
}

namespace
{

// Each reachable row's cell as seen and made up, scrolled on screen, or only
// the rows on screen now, as they are.
std::string CellShapes(MetadataView* view, bool onScreenOnly = false)
{
    auto const kind = [](zephui::UI_SubViewPtr const& child)
    {
        if (!child)
            return std::string("-");
        QWidget* const widget = child->UI_GetWidget();
        return std::string(typeid(*child).name()) + " " + ControlText(child.get()) + " [" +
               widget->toolTip().left(40).toStdString() + (widget->isEnabled() ? "" : " disabled") +
               "]";
    };
    auto* const tree = TreeOf(view);
    std::string out;
    for (RowPtr const& row : onScreenOnly ? tree->GetVisibleRows()
                                          : std::vector<RowPtr>(tree->GetOpenedRows().begin(),
                                                                tree->GetOpenedRows().end()))
    {
        MetadataViewCell* cell = onScreenOnly ? nullptr : CellOf(view, row);
        if (auto const cellView = row->GetCellView(0); onScreenOnly && cellView)
            cell = dynamic_cast<MetadataViewCell*>(cellView->ChildGet(0));
        out += std::to_string(row->GetDepth()) + " ";
        out += !cell ? "<no cell>\n"
                     : kind(cell->GetChild_Label()) + " | " + kind(cell->GetChild_Value()) + " | " +
                           kind(cell->GetChild_Link()) +
                           (cell->UI_IsOwnDisabled() ? " (greyed)" : "") + "\n";
    }
    return out;
}

} // namespace

// A rebuild keeps cells on screen only while nothing that shaped them has
// changed: after any switch they are what a fresh view makes.
TEST_F(MetadataViewCellTest, AfterAnySwitchARebuildMakesTheCellsAFreshViewWould)
{
    auto const held = boost::make_shared<Delegate>();
    held->linkable = {AlphaPath("title"), AlphaPath("count")};
    auto const other = MakeProvider("<ta:title>Other</ta:title><ta:count>7</ta:count>");
    Path const title = AlphaPath("title");
    auto const nothing = [](MetadataView*) {};
    using Switch = std::function<void(MetadataView*)>; // a setup, then the change
    std::vector<std::tuple<char const*, Switch, Switch>> const switches{
        {"selection on", nothing, [](MetadataView* v) { v->SetAllowPropertySelection(true); }},
        {"selection off", [](MetadataView* v) { v->SetAllowPropertySelection(true); },
         [](MetadataView* v) { v->SetAllowPropertySelection(false); }},
        {"link delegate set", nothing, [&](MetadataView* v) { v->SetLinkDelegate(held); }},
        {"link delegate removed", [&](MetadataView* v) { v->SetLinkDelegate(held); },
         [](MetadataView* v) { v->SetLinkDelegate(nullptr); }},
        {"forced writable", [&](MetadataView* v) { v->SetReadOnlyPaths({title}); },
         [](MetadataView*) { zephmetadata::SetAllMetadataForcedWritable(true); }},
        {"provider", nothing, [&](MetadataView* v) { v->SetProvider(other); }},
        {"read-only paths", nothing, [&](MetadataView* v) { v->SetReadOnlyPaths({title}); }},
        {"disabled paths", nothing, [&](MetadataView* v) { v->SetDisabledPaths({title}); }},
        {"values hidden", nothing, [](MetadataView* v) { v->SetDisplayPropertyValue(false); }},
        {"read-only paths in a chooser",
         [](MetadataView* v) { v->SetAllowPropertySelection(true); },
         [&](MetadataView* v) { v->SetReadOnlyPaths({title}); }},
    };
    for (auto const& [name, setup, change] : switches)
    {
        SCOPED_TRACE(name);
        ViewPtr const kept = RichView(600.0f, 400.0f);
        Window keptWindow(kept, 600, 400);
        setup(kept.get());
        kept->RefilterMetadataFieldsForRapidFindString();
        CellShapes(kept.get()); // every row's cell is made under the old mode
        change(kept.get());
        kept->RefilterMetadataFieldsForRapidFindString();

        ViewPtr const fresh = RichView(600.0f, 400.0f);
        Window freshWindow(fresh, 600, 400);
        setup(fresh.get());
        change(fresh.get());
        fresh->RefilterMetadataFieldsForRapidFindString();
        EXPECT_EQ(CellShapes(fresh.get()), CellShapes(kept.get()));

        // Every box reaches a live row and the selection follows.
        for (MetadataView* view : {kept.get(), fresh.get()})
            for (char const* label : {"Title", "Contact", "Count"})
                if (MetadataViewCell* cell = CellWithLabel(view, label))
                    if (dynamic_cast<zephui::UI_Checkbox*>(cell->GetChild_Label().get()))
                        Click(cell->GetChild_Label().get());
        EXPECT_EQ(SelectedOf(fresh.get()), SelectedOf(kept.get()));
        zephmetadata::SetAllMetadataForcedWritable(false);
    }
}

// Scrolling hands the cells of rows that left the screen to rows that come on
// it: a row shows what a fresh view shows, and an edit reaches its own value.
TEST_F(MetadataViewCellTest, CellsHandedOverWhileScrollingShowAndEditTheirOwnRow)
{
    std::string const photo = SourcePath("samples/harbour-first-light.jpg");
    auto const provider = boost::make_shared<zephmetadata::FileProvider>(U16(photo));
    ASSERT_TRUE(provider->HasMetadata());
    std::vector<SchemaPtr> schemas(zephmetadata::CommonSchemaDefinitions().begin(),
                                   zephmetadata::CommonSchemaDefinitions().end());
    auto const scrolledTo = [&](ViewPtr const& view, int page)
    {
        auto const scroll = TreeOf(view.get())->GetScrollView();
        float const height = scroll->GetViewportRectF().height;
        scroll->OffsetScroll(0.0f, float(page) * height - scroll->GetScrollPosition().y);
        return CellShapes(view.get(), true);
    };
    ViewPtr const scrolled = MakeView(schemas, provider, 600.0f, 400.0f);
    OpenAll(scrolled.get());
    for (int page : {3, 1, 4, 2, 6, 0, 5})
    {
        SCOPED_TRACE(page);
        std::string const shown = scrolledTo(scrolled, page);
        ViewPtr const fresh = MakeView(schemas, provider, 600.0f, 400.0f);
        OpenAll(fresh.get());
        EXPECT_EQ(scrolledTo(fresh, page), shown);
    }

    // An edit in a cell that served other rows before; a language
    // alternative is one text, without a count.
    scrolledTo(scrolled, 1);
    scrolledTo(scrolled, 0);
    MetadataViewCell* const title = CellWithLabel(scrolled.get(), "Title");
    ASSERT_TRUE(title);
    EXPECT_EQ("Title", ControlText(title->GetChild_Label().get()));
    TypeIntoValue(title, "Harbour at noon");
    ViewPtr const fresh = MakeView(schemas, provider, 600.0f, 400.0f); // reads the model anew
    OpenAll(fresh.get());
    MetadataViewCell* const stored = CellWithLabel(fresh.get(), "Title");
    ASSERT_TRUE(stored);
    EXPECT_EQ("Harbour at noon", ControlText(stored->GetChild_Value().get()));
}

// A bad date typed into a handed-over field must not bring back the date of
// the row the field served before.
TEST_F(MetadataViewCellTest, AHandedOverDateFieldForgetsTheDateOfItsFormerRow)
{
    auto const provider = MakeProvider(EventsBody(60, 30));
    ViewPtr const view = MakeView({Alpha()}, provider, 600.0f, 300.0f);
    OpenAll(view.get());
    auto* const tree = TreeOf(view.get());
    RowPtr const events = RowWithLabel(view.get(), "Events");
    ASSERT_TRUE(events && events->CountChildRows() == 60u);
    tree->ScrollRowIntoView(events->GetChildRow(0), true, 0);
    std::set<MetadataViewCell*> early;
    for (std::size_t i = 0; i < 5; ++i)
        early.insert(CellOf(view.get(), events->GetChildRow(i)->GetChildRow(1)));
    tree->ScrollRowIntoView(events->GetChildRow(50), true, 0);
    RowPtr const late = events->GetChildRow(50)->GetChildRow(1); // When of item 51: no date
    MetadataViewCell* const cell = CellOf(view.get(), late);
    ASSERT_TRUE(cell && cell->GetChild_Value());
    ASSERT_EQ(1u, early.count(cell)) << "the cell of a dated row is handed over";
    auto* edit = qobject_cast<QLineEdit*>(cell->GetChild_Value()->UI_GetWidget());
    ASSERT_TRUE(edit);
    EXPECT_EQ("", edit->text().toStdString());
    QTest::keyClicks(edit, "not a date");
    QTest::keyClick(edit, Qt::Key_Return);
    EXPECT_EQ(std::string::npos, edit->text().toStdString().find("2024"));
    zephmetadata::MetaDataReadAccess const access(provider);
    EXPECT_FALSE(zephmetadata::HasValue(*access, AlphaPath("events[51]/ta:when")));
}

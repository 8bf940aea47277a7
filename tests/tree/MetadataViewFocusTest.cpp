// Tab and Shift+Tab through the editable values and out at either end.

#include "TreeTestSupport.h"

#include <zephmetadataui/FocusMover.h>

#include <zephui/UI_TextEdit.h>

#include <QApplication>
#include <QTest>

using namespace treetest;

namespace
{

// Records a move out of its view as ">" or "<".
struct RecordingMover : zephmetadataui::FocusMover
{
    void MoveFocus(MetadataView* from, bool forward) override
    {
        moves += from != view ? "?" : forward ? ">" : "<";
    }
    MetadataView* view = nullptr;
    std::string moves;
};

// Edits above and below the tree, its neighbours, and one elsewhere.
class MetadataViewFocusTest : public TreeTest
{
protected:
    void MakePanel(boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider,
                   bool withNeighbours = true)
    {
        root.reset(new zephui::UI_SubView(zephui::RectF(0, 0, 500, 700)));
        above = MakeEdit(zephui::RectF(0, 0, 500, 24));
        view = MakeView({Alpha()}, provider, 500.0f, 600.0f);
        view->UI_SetLocalRectF(zephui::RectF(0, 30, 500, 600));
        root->ChildPushBack(view);
        below = MakeEdit(zephui::RectF(0, 640, 250, 24));
        elsewhere = MakeEdit(zephui::RectF(250, 640, 250, 24));
        if (withNeighbours)
            view->SetFocusOrder(above.get(), below.get());
        window = std::make_unique<Window>(root, 500, 700);
        ASSERT_TRUE(window->Activate());
    }
    boost::intrusive_ptr<zephui::UI_TextEdit> MakeEdit(zephui::RectF const& rect)
    {
        boost::intrusive_ptr<zephui::UI_TextEdit> edit(new zephui::UI_TextEdit(16, 0));
        edit->UI_SetLocalRectF(rect);
        edit->UI_Show(true);
        root->ChildPushBack(edit);
        return edit;
    }
    void Tab(bool shift = false)
    {
        ASSERT_TRUE(QApplication::focusWidget());
        QTest::keyClick(QApplication::focusWidget(), shift ? Qt::Key_Backtab : Qt::Key_Tab,
                        shift ? Qt::ShiftModifier : Qt::NoModifier);
        QApplication::processEvents();
    }
    // The label of the row whose value has the focus, or the neighbour's name.
    std::string Focused()
    {
        QWidget* const focus = QApplication::focusWidget();
        for (auto const& [name, edit] : {std::pair{"above", above}, std::pair{"below", below},
                                         std::pair{"elsewhere", elsewhere}})
            if (focus && focus == edit->UI_GetWidgetIfMade())
                return name;
        for (RowPtr const& row : TreeOf(view.get())->GetOpenedRows())
        {
            auto const cellView = row->GetCellView(0);
            auto* cell =
                cellView ? dynamic_cast<MetadataViewCell*>(cellView->ChildGet(0)) : nullptr;
            QWidget* const value = cell && cell->GetChild_Value()
                                       ? cell->GetChild_Value()->UI_GetWidgetIfMade()
                                       : nullptr;
            if (focus && value && (value == focus || value->isAncestorOf(focus)))
                return ControlText(cell->GetChild_Label().get());
        }
        return focus ? "unknown" : "nothing";
    }

    boost::intrusive_ptr<zephui::UI_SubView> root;
    boost::intrusive_ptr<zephui::UI_TextEdit> above, below, elsewhere;
    ViewPtr view;
    std::unique_ptr<Window> window;
};

} // namespace

TEST_F(MetadataViewFocusTest, TabAndShiftTabWalkTheEditableValuesAndLeaveAtTheEnds)
{
    struct Walk
    {
        char const* what;
        bool withProvider;
        char const* opened; // a row opened first, or null
        char const* from;   // a neighbour's name or the label of a value's row
        char const* keys;   // '+' a Tab, '-' a Shift+Tab
        char const* stops;  // where each key leaves the focus, and a mover's moves
        bool withNeighbours = true;
        bool withMover = false;
    };
    for (Walk const& walk : std::vector<Walk>{
             // Count (hot text), closed Contact and Events (no value) are passed.
             {"forward", true, nullptr, "above", "+++++",
              "Title|Keywords (2 entries)|Approved|Dates|below"},
             {"backward", true, nullptr, "below", "--", "Dates|Approved"},
             {"backward out", true, nullptr, "Title", "-", "above"},
             {"into an opened structure", true, "Contact", "Keywords", "++", "City|Phone"},
             {"nothing writable", false, nullptr, "above", "+", "below"},
             // Not the tree's to take: from elsewhere, or backward from above.
             {"from elsewhere", true, nullptr, "elsewhere", "+", "above"},
             {"backward from above", true, nullptr, "above", "-", "elsewhere"},
             {"no neighbours", true, nullptr, "Dates", "+", "Dates", false},
             // A focus mover decides at the ends instead of the neighbours.
             {"mover", true, nullptr, "Dates", "+", "Dates>", true, true},
         })
    {
        SCOPED_TRACE(walk.what);
        MakePanel(walk.withProvider ? MakeProvider(RichAlphaBody()) : nullptr, walk.withNeighbours);
        if (walk.opened)
            Toggle(view.get(), walk.opened);
        RecordingMover mover;
        mover.view = view.get();
        if (walk.withMover)
            view->SetFocusMover(&mover);
        std::string const from = walk.from;
        zephui::UI_Node* const start =
            from == "above"       ? above.get()
            : from == "below"     ? below.get()
            : from == "elsewhere" ? elsewhere.get()
                                  : CellWithLabel(view.get(), from)->GetChild_Value().get();
        start->UI_GainKeyboardFocus(3);
        QApplication::processEvents();
        std::string stops;
        for (char const* key = walk.keys; *key; ++key)
        {
            Tab(*key == '-');
            stops += (stops.empty() ? "" : "|") + Focused() + mover.moves;
        }
        EXPECT_EQ(walk.stops, stops);
        view->SetFocusMover(nullptr);
    }
}

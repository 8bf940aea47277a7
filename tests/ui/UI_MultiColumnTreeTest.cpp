// The multi-column tree: lazily made cells, the live list of opened rows,
// deferred layout, recycling on scroll, removal, sorting and disclosure.

#include "ControlTestWindow.h"

#include "zephui/Drawbot.h"
#include "zephui/Theme.h"
#include "zephui/UI_MultiColumnTree.h"
#include "zephui/UI_ScrollView.h"
#include "zephui/UI_TextEdit.h"

#include "zephcore/QtStrings.h"

#include <QApplication>
#include <QImage>
#include <QPixmap>
#include <QWheelEvent>
#include <QtTest/qtestspontaneevent.h>

#include <set>
#include <string>

using namespace zephui;
using RowPtr = UI_MultiColumnTree::RowPtr;
using zephcore::AsciiToUTF16;

namespace
{

constexpr float kRowHeight = 20.0f;

std::string Name(UI_MultiColumnTreeRow const* row)
{
    return zephcore::ToStdString(row->GetSortKey());
}

RowPtr Append(UI_MultiColumnTree& tree, RowPtr const& parent, std::string const& name,
              bool open = true)
{
    RowPtr row = tree.CreateAndAppendRow(parent, true, true);
    row->SetSortKey(zephcore::AsciiToUTF16(name));
    if (!open)
        tree.CloseRow(row);
    return row;
}

// "a b b1 c": the opened rows, in display order, as one string.
std::string Flatten(UI_MultiColumnTree const& tree)
{
    std::string out;
    for (RowPtr const& row : tree.GetOpenedRows())
        out += (out.empty() ? "" : " ") + Name(row.get());
    return out;
}

// A tree 300 wide whose viewport shows ten rows, in a window shown only for
// tests of focus; each row that comes on screen gets a text field in cell 0
// that holds the row's name.
struct TreeFixture : testing::Test
{
    zephtest::ControlTestWindow window;
    boost::intrusive_ptr<UI_MultiColumnTree> tree =
        window.Add(boost::intrusive_ptr<UI_MultiColumnTree>(new UI_MultiColumnTree(2, kRowHeight)),
                   RectF(0, 0, 300, 10 * kRowHeight));
    int arrivals = 0;
    int departures = 0;
    UI_MultiColumnTree::RowVisibilityChangedCallback visibility =
        boost::make_shared<boost::function<void(UI_MultiColumnTreeRow*)>>(
            [this](UI_MultiColumnTreeRow* row)
            {
                if (!tree->IsRowVisible(row))
                {
                    ++departures;
                    return;
                }
                ++arrivals;
                auto cell = row->GetCellView(0);
                ASSERT_TRUE(cell);
                EXPECT_EQ(cell->ChildCount(), 0u) << "a recycled cell must come back empty";
                zephtest::AddShown(cell.get(), UI_TextEditPtr(new UI_TextEdit(16, 0)),
                                   RectF(0, 0, 50, kRowHeight - 1))
                    ->SetValue(row->GetSortKey());
            });

    void SetUp() override
    {
        tree->Init(UI_MultiColumnTree::kTreeFlagPropertyList);
        tree->SetRowVisibilityChangedCallback(visibility);
    }
    void TearDown() override { visibility->clear(); }

    void AppendFlat(int count)
    {
        UI_MultiColumnTree::ScDeferLayoutForOpenAndCloseRow defer(tree);
        for (int i = 0; i < count; ++i)
            Append(*tree, nullptr, "r" + std::to_string(i));
    }
    UI_TextEdit* EditOf(RowPtr const& row)
    {
        auto cell = row->GetCellView(0);
        return cell ? dynamic_cast<UI_TextEdit*>(cell->ChildGet(0)) : nullptr;
    }
    std::string MarkerOf(RowPtr const& row)
    {
        UI_TextEdit* edit = EditOf(row);
        return edit ? zephcore::ToStdString(edit->GetValue()) : std::string("-");
    }
};

} // namespace

// Of a thousand rows only those on screen have cells; a page scrolled brings
// the next rows, which take the cells of those that left.
TEST_F(TreeFixture, OnlyRowsOnScreenHaveCellsAndScrollingRecyclesThem)
{
    AppendFlat(1000);
    ASSERT_EQ(tree->GetVisibleRows().size(), 10u);
    EXPECT_EQ(MarkerOf(tree->GetTopRow(9)), "r9");
    EXPECT_FALSE(tree->GetTopRow(10)->GetCellView(0));
    std::size_t const sets = tree->CountCellViewSets();
    EXPECT_LE(sets, 11u);

    tree->GetScrollView()->OffsetScroll(0.0f, 10 * kRowHeight);
    EXPECT_EQ(Name(tree->GetVisibleRows().front().get()), "r10");
    EXPECT_FALSE(tree->GetTopRow(0)->GetCellView(0)) << "a row off screen holds no cells";
    EXPECT_EQ(MarkerOf(tree->GetTopRow(15)), "r15");
    EXPECT_EQ(departures, 10);
    EXPECT_EQ(arrivals, 20);
    EXPECT_EQ(tree->CountCellViewSets(), sets)
        << "the rows that came took the cells of those that left";
}

TEST_F(TreeFixture, OpenedRowsListGrowsWhileWalkedAndOpened)
{
    for (std::string top : {"a", "b"})
    {
        RowPtr t = Append(*tree, nullptr, top, false);
        for (std::string mid : {"1", "2"})
            Append(*tree, Append(*tree, t, top + mid, false), top + mid + "x", false);
    }
    EXPECT_EQ(Flatten(*tree), "a b");

    // One pass that opens every row it meets must reach the deepest rows.
    int visited = 0;
    for (auto it = tree->GetOpenedRows().begin(); it != tree->GetOpenedRows().end(); ++it)
    {
        ++visited;
        tree->OpenRow(*it);
    }
    EXPECT_EQ(visited, 10);
    EXPECT_EQ(Flatten(*tree), "a a1 a1x a2 a2x b b1 b1x b2 b2x");
    EXPECT_EQ(tree->GetVisibleRows().size(), 10u);
}

// Deferred children are made when a row on screen shows whether it has any,
// when counted, when opened, and in front of a child appended; a row that goes
// before anyone needed them never calls back. (A long list whose items get
// their rows when first needed is the property tree's own test.)
TEST_F(TreeFixture, DeferredChildrenAreMadeOnceWhenFirstNeeded)
{
    std::vector<std::string> made;
    auto const makeChildren = boost::make_shared<boost::function<void(UI_MultiColumnTreeRow*)>>(
        [&](UI_MultiColumnTreeRow* row)
        {
            made.push_back(Name(row));
            Append(*tree, RowPtr(row), Name(row) + ".1", false);
            Append(*tree, RowPtr(row), Name(row) + ".2", false);
        });
    tree->SetMakeChildRowsCallback(makeChildren);
    {
        UI_MultiColumnTree::ScDeferLayoutForOpenAndCloseRow defer(tree);
        for (int i = 0; i < 30; ++i)
            tree->DeferChildRows(Append(*tree, nullptr, "r" + std::to_string(i), false));
    }
    EXPECT_EQ(made.size(), 10u) << "the rows on screen";
    EXPECT_EQ(tree->GetTopRow(20)->CountChildRows(), 2u);
    tree->OpenRow(tree->GetTopRow(25));
    EXPECT_NE(Flatten(*tree).find("r25 r25.1 r25.2 r26"), std::string::npos) << Flatten(*tree);
    RowPtr const r27 = tree->GetTopRow(27);
    Append(*tree, r27, "extra");
    EXPECT_EQ(Name(r27->GetChildRow(0).get()), "r27.1");
    EXPECT_EQ(Name(r27->GetChildRow(2).get()), "extra");
    EXPECT_EQ(made, (std::vector<std::string>{"r0", "r1", "r2", "r3", "r4", "r5", "r6", "r7", "r8",
                                              "r9", "r20", "r25", "r27"}));
    RowPtr const r28 = tree->GetTopRow(28);
    tree->RemoveAllRows(true);
    EXPECT_EQ(r28->CountChildRows(), 0u);
    EXPECT_EQ(made.size(), 13u);
    makeChildren->clear();
}

TEST_F(TreeFixture, CloseHidesDescendantsAndReopenRestoresTheirOpenState)
{
    RowPtr a = Append(*tree, nullptr, "a");
    RowPtr a1 = Append(*tree, a, "a1");
    Append(*tree, a1, "a1x");
    RowPtr a2 = Append(*tree, a, "a2", false);
    Append(*tree, a2, "a2x");
    Append(*tree, nullptr, "b");
    ASSERT_EQ(Flatten(*tree), "a a1 a1x a2 b");

    tree->CloseRow(a);
    EXPECT_EQ(Flatten(*tree), "a b");
    EXPECT_TRUE(tree->IsRowOpen(a1)) << "a closed parent keeps its children's state";
    EXPECT_FALSE(tree->IsRowVisible(a1));

    tree->OpenRow(a);
    EXPECT_EQ(Flatten(*tree), "a a1 a1x a2 b");
    // A child appended under an open row lands behind the row's last reachable descendant.
    Append(*tree, a1, "a1y");
    EXPECT_EQ(Flatten(*tree), "a a1 a1x a1y a2 b");
}

TEST_F(TreeFixture, DeferredLayoutLaysOutOnceAtTheEnd)
{
    AppendFlat(5);
    unsigned long const before = tree->GetLayoutCount();
    {
        UI_MultiColumnTree::ScDeferLayoutForOpenAndCloseRow outer(tree);
        RowPtr parent = Append(*tree, nullptr, "p");
        {
            UI_MultiColumnTree::ScDeferLayoutForOpenAndCloseRow inner(tree);
            for (int i = 0; i < 50; ++i)
                Append(*tree, parent, "c" + std::to_string(i));
        }
        tree->CloseRow(parent);
        tree->OpenRow(parent);
        EXPECT_EQ(tree->GetLayoutCount(), before) << "nothing is laid out inside the scopes";
        EXPECT_EQ(arrivals, 5);
    }
    EXPECT_EQ(tree->GetLayoutCount(), before + 1);
    EXPECT_EQ(arrivals, 10) << "rows p, c0 to c3 came on screen at the end";
}

TEST_F(TreeFixture, RemovedRowsLeaveListAndTree)
{
    RowPtr a = Append(*tree, nullptr, "a");
    RowPtr a1 = Append(*tree, a, "a1");
    Append(*tree, a1, "a1x");
    Append(*tree, nullptr, "b");

    tree->RemoveRow(a1, true, false, false);
    EXPECT_EQ(Flatten(*tree), "a b");
    EXPECT_EQ(a->CountChildRows(), 0u);
    EXPECT_FALSE(a1->GetCellView(0));
    EXPECT_FALSE(tree->CreateAndAppendRow(a1, true, true)) << "a removed row takes no children";
    tree->OpenRow(a1); // does nothing, and does not crash

    // The caller may pass the list's own element, which the removal erases.
    tree->RemoveRow(tree->GetOpenedRows().back(), true, false, false);
    EXPECT_EQ(Flatten(*tree), "a");

    tree->RemoveAllRows(true);
    EXPECT_TRUE(tree->GetOpenedRows().empty());
    EXPECT_TRUE(tree->GetVisibleRows().empty());
    EXPECT_EQ(tree->CountTopRows(), 0u);
}

TEST_F(TreeFixture, ClickOnTriangleOpensRowAndTellsTheCallback)
{
    RowPtr a = Append(*tree, nullptr, "a", false);
    Append(*tree, a, "a1");
    std::vector<std::pair<std::string, bool>> seen;
    auto disclosure = boost::make_shared<boost::function<void(UI_MultiColumnTreeRow*, bool)>>(
        [&seen](UI_MultiColumnTreeRow* row, bool open) { seen.emplace_back(Name(row), open); });
    tree->SetRowDisclosureChangedCallback(disclosure);
    QWidget* rowWidget = a->GetCellView(0)->UI_GetParentNode()->UI_GetWidget();
    ASSERT_TRUE(rowWidget);
    QPoint const triangle(int(tree->GetIndentForDepth(0)) - 7, int(kRowHeight / 2));

    QTest::mousePress(rowWidget, Qt::LeftButton, Qt::NoModifier, triangle);
    QTest::mouseRelease(rowWidget, Qt::LeftButton, Qt::NoModifier, triangle);
    EXPECT_TRUE(tree->IsRowOpen(a));
    EXPECT_EQ(Flatten(*tree), "a a1");

    tree->CloseRow(a); // by program: no callback
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_EQ(seen[0], std::make_pair(std::string("a"), true));
}

TEST_F(TreeFixture, FocusedRowKeepsItsEditorWhileScrolledAway)
{
    AppendFlat(100);
    ASSERT_TRUE(window.ShowActive());
    RowPtr const first = tree->GetTopRow(0);
    UI_TextEdit* edit = EditOf(first);
    ASSERT_TRUE(edit);
    ASSERT_TRUE(edit->UI_GainKeyboardFocus(kFocusReasonProgram));
    QTest::keyClicks(QApplication::focusWidget(), "-typed");

    tree->GetScrollView()->OffsetScroll(0.0f, 50 * kRowHeight);
    EXPECT_FALSE(tree->IsRowVisible(first));
    EXPECT_EQ(EditOf(first), edit) << "the edit in progress survives";
    EXPECT_TRUE(edit->UI_HasKeyboardFocus(false));
    EXPECT_EQ(edit->GetValue(), AsciiToUTF16("r0-typed"));

    tree->GetScrollView()->ScrollTo(PointF(0.0f, 0.0f));
    EXPECT_EQ(EditOf(first), edit) << "coming back, the row keeps the same cells";

    // Once the focus leaves, a row scrolled away gives its cells back.
    tree->GetScrollView()->OffsetScroll(0.0f, 50 * kRowHeight);
    UI_TextEdit* elsewhere = EditOf(tree->GetVisibleRows().front());
    ASSERT_TRUE(elsewhere);
    elsewhere->UI_GainKeyboardFocus(kFocusReasonProgram);
    EXPECT_FALSE(first->GetCellView(0));
}

TEST_F(TreeFixture, WheelOverACellScrollsTheTree)
{
    AppendFlat(100);
    ASSERT_TRUE(window.ShowActive());
    RowPtr const top = tree->GetTopRow(0);
    QWidget* cellWidget = top->GetCellView(0)->UI_GetWidget();
    QPointF const at(70, 5); // right of the editor, on the cell itself
    QWheelEvent wheel(at, cellWidget->mapToGlobal(at), QPoint(), QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&wheel);
    // sendEvent would clear the spontaneous mark.
    QApplication::instance()->notify(cellWidget, &wheel);
    EXPECT_GT(tree->GetScrollView()->GetScrollPosition().y, 0.0f);
    EXPECT_NE(tree->GetVisibleRows().front(), top);
}

TEST_F(TreeFixture, DrawCellCallbackPaintsEveryColumnOfRowsOnScreen)
{
    AppendFlat(50);
    std::set<std::pair<std::string, unsigned long>> drawn;
    auto draw = boost::make_shared<
        boost::function<void(Drawbot*, UI_MultiColumnTreeRow*, unsigned long, RectF const&)>>(
        [&](Drawbot* drawbot, UI_MultiColumnTreeRow* row, unsigned long column, RectF const& rect)
        {
            drawn.emplace(Name(row), column);
            tree->DrawCellString(drawbot, row, rect, AsciiToUTF16("WWWW"), kColor_Text,
                                 tree->GetCellTextFontSize(), tree->GetCellTextLeftInset(),
                                 GetFontName(0), {}, 0, kTruncationEnd);
        });
    tree->SetDrawCellOfRowCallback(draw);
    QImage const image = tree->UI_GetWidget()->grab().toImage();
    EXPECT_EQ(drawn.size(), 20u) << "two columns of the ten rows on screen, nothing more";
    EXPECT_TRUE(drawn.count({"r9", 1}));
    // The text left marks in column 1 of the first row.
    EXPECT_NE(image.copy(102, 2, 38, 16), image.copy(240, 2, 38, 16));
    draw->clear();
}

#pragma once
// A tree of rows with several columns, for property lists and tables.
//
// Rows are light records; only rows on screen hold widgets. When a row comes
// on screen it borrows a set of cell views (recycled from rows that left) and
// the row-visibility callback fills them; when it leaves, the cell views go
// back to the pool and GetCellView gives null. The row whose cells hold the
// keyboard focus keeps them while it is scrolled away, so an edit in progress
// is never cut off. All rows have one height, so finding the rows on screen
// costs the same for ten rows as for a hundred thousand.

#include "zephui/UI_MultiColumnTreeRow.h"
#include "zephui/UI_SubView.h"
#include "zephui/zephui_export.h"

#include <QObject>
#include <QPointer>
#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <vector>

namespace zephui
{

class UI_ScrollView;
class UI_MultiColumnTreeHeaderRow;
class TreeRowSlot;

class ZEPHUI_EXPORT UI_MultiColumnTree : public UI_SubView
{
public:
    using RowPtr = boost::intrusive_ptr<UI_MultiColumnTreeRow>;
    using OpenedRowList = std::list<RowPtr>;
    using RowVisibilityChangedCallback =
        boost::shared_ptr<boost::function<void(UI_MultiColumnTreeRow*)>>;
    // The kind of a row's cells, any number the owner chooses; 0 is none.
    using RowCellKindCallback =
        boost::shared_ptr<boost::function<std::uintptr_t(UI_MultiColumnTreeRow*)>>;
    using RowDisclosureChangedCallback =
        boost::shared_ptr<boost::function<void(UI_MultiColumnTreeRow*, bool)>>;
    // Draws a cell's contents with the tree's own drawing (for tables of text
    // without cell views): the cell's rectangle is in the row's coordinates.
    using DrawCellOfRowCallback = boost::shared_ptr<boost::function<void(
        Drawbot*, UI_MultiColumnTreeRow*, unsigned long column, RectF const& cellRect)>>;
    using RowComparison =
        boost::function<bool(UI_MultiColumnTreeRow const*, UI_MultiColumnTreeRow const*)>;
    using MakeChildRowsCallback = boost::shared_ptr<boost::function<void(UI_MultiColumnTreeRow*)>>;

    // Flags of Init.
    enum InitFlags : unsigned long
    {
        kTreeFlagAlternateRowColors = 0x1,
        kTreeFlagNoDisclosure = 0x2, // a flat list: no triangles, no indent
        kTreeFlagFrame = 0x4,        // a 1-pixel frame around the rows
        kTreeFlagPropertyList = 0x8, // plain rows, triangles in the indent, no frame
    };

    UI_MultiColumnTree(unsigned long columns, float rowHeight);
    ~UI_MultiColumnTree() override;

    static float GetDefaultRowHeight() { return 22.0f; }
    float GetRowHeight() const { return rowHeight; }

    // Chooses the look; call once, before rows are added.
    virtual void Init(Flags<unsigned long> flags);

    void SetSupportUserSelectableRows(bool selectable);
    bool GetSupportUserSelectableRows() const { return userSelectableRows; }
    void SetDrawGridLines(bool horizontal, bool vertical);
    // Draws a focus ring around the row whose cells hold the keyboard focus.
    void SetIndicateFocus(bool indicate);
    void SetNumberOfColumns(unsigned long columns);
    unsigned long GetNumberOfColumns() const
    {
        return static_cast<unsigned long>(columnWidths.size());
    }
    void SetColumnWidth(unsigned long column, float width);
    float GetColumnWidth(unsigned long column) const;
    // Auto-resizable columns share the width that the fixed ones leave free.
    void SetAutoResizableColumns(bool all);
    void SetAutoResizableColumns(std::vector<unsigned long> const& columns);

    // Appends a row under parent, or at the top for a null parent. open: the
    // row starts open; layoutNow: lay out at once (else LayoutAfterAppendRow).
    RowPtr CreateAndAppendRow(RowPtr const& parent, bool open, bool layoutNow);
    // Makes room for count more children of row (a hint for long appends).
    void ReserveChildRows(RowPtr const& row, std::size_t count);
    // Leaves the children of a closed row to be made when first needed: when
    // the row comes on screen or is opened, or its children are counted,
    // read, appended to or sorted. The callback then appends them. A long
    // list of structures costs one row per item until its items are looked at.
    void DeferChildRows(RowPtr const& row);
    void SetMakeChildRowsCallback(MakeChildRowsCallback const& callback);
    void LayoutAfterAppendRow();
    // Removes the row and everything below it.
    void RemoveRow(RowPtr const& row, bool layoutNow, bool notify, bool reserved);
    virtual void RemoveAllRows(bool layoutNow);
    std::size_t CountTopRows() const { return topRows.size(); }
    RowPtr GetTopRow(std::size_t index) const;

    // The live list of reachable rows (all ancestors open), in display order.
    // Opening a row inserts its reachable descendants right behind it and
    // closing removes them, so a walk that opens rows visits the new ones;
    // the row being walked never leaves the list by opening or closing.
    OpenedRowList const& GetOpenedRows() const { return openedRows; }
    // The rows on screen now, top to bottom.
    std::vector<RowPtr> GetVisibleRows();

    bool IsRowOpen(RowPtr const& row) const;
    bool IsRowVisible(RowPtr const& row);
    void OpenRow(RowPtr const& row);
    void CloseRow(RowPtr const& row);
    // Scrolls as little as needed (or, with alignTop, so the row is at the
    // top), leaving margin pixels free around it.
    void ScrollRowIntoView(RowPtr const& row, bool alignTop, int margin);

    // Called when a row comes on screen (IsRowVisible true: fill its cells)
    // or leaves it. Not called for rows that are removed.
    void SetRowVisibilityChangedCallback(RowVisibilityChangedCallback const& callback);
    // With a kind callback, the cells of a row that leaves the screen are not
    // emptied: they wait with their slot, and a row that comes on screen gets
    // a slot that last held a row of its kind when one is free, so that its
    // owner can refill the cells it finds instead of making new ones. The
    // visibility callback must then fill or empty every cell it is given.
    void SetRowCellKindCallback(RowCellKindCallback const& callback);
    // Called when the user opens or closes a row; not for OpenRow and CloseRow.
    void SetRowDisclosureChangedCallback(RowDisclosureChangedCallback const& callback);

    // Sorts the children of every row, and the top rows. Without a comparison
    // rows are ordered by their sort keys, ignoring case; the order is stable.
    void SortTree(RowComparison const& less = RowComparison());

    boost::intrusive_ptr<UI_ScrollView> GetScrollView() const;
    // The header strip above the rows, made and shown on first call.
    UI_MultiColumnTreeHeaderRow* GetHeaderRow();

    // Drawing of cells by the owner, for rows whose cells hold no views.
    void SetDrawCellOfRowCallback(DrawCellOfRowCallback const& callback);
    DrawCellOfRowCallback const& GetDrawCellOfRowCallback() const { return drawCell; }
    // Draws text in a cell, vertically centred, from leftInset on, cut to the
    // cell by the truncation mode (TextTruncation). A second text, if any,
    // follows in a lighter colour. flags: 1 draws the first text bold.
    void DrawCellString(Drawbot* drawbot, UI_MultiColumnTreeRow* row, RectF const& cellRect,
                        zephcore::UTF16String const& text, int colorID, float fontSize,
                        float leftInset, std::string const& fontName,
                        zephcore::UTF16String const& secondText, unsigned long flags,
                        int truncation) const;
    float GetCellTextLeftInset() const { return 4.0f; }
    float GetCellTextFontSize() const;

    // Lays out now if anything changed since the last layout.
    void LayoutRows();
    // How many times rows were laid out; for tests and benchmarks.
    unsigned long GetLayoutCount() const { return layoutCount; }
    // How many sets of cell views were ever made; recycling keeps it at about
    // one screen's worth.
    std::size_t CountCellViewSets() const { return allSlots.size(); }

    // Scope object: while it lives, appending, opening and closing rows lay
    // nothing out; at its end the tree lays out once. Scopes nest.
    class ScDeferLayoutForOpenAndCloseRow
    {
    public:
        explicit ScDeferLayoutForOpenAndCloseRow(UI_MultiColumnTree* tree);
        explicit ScDeferLayoutForOpenAndCloseRow(
            boost::intrusive_ptr<UI_MultiColumnTree> const& tree);
        ~ScDeferLayoutForOpenAndCloseRow();
        ScDeferLayoutForOpenAndCloseRow(ScDeferLayoutForOpenAndCloseRow const&) = delete;
        ScDeferLayoutForOpenAndCloseRow& operator=(ScDeferLayoutForOpenAndCloseRow const&) = delete;

    private:
        boost::intrusive_ptr<UI_MultiColumnTree> tree;
    };

    void UI_SizeChanged(RectF const& rect) override;
    void UI_Draw(Drawbot* drawbot) override;

    // Internal: the user clicked a row's disclosure triangle.
    void ToggleRowByUser(UI_MultiColumnTreeRow* row);
    // Internal: geometry of the rows, for the row views.
    float GetIndentForDepth(int depth) const;
    bool DrawsDisclosure() const;
    bool DrawsHorizontalGridLines() const { return horizontalGridLines; }
    bool DrawsVerticalGridLines() const { return verticalGridLines; }
    bool IndicatesFocus() const { return indicateFocus; }
    // Left edges of the columns for a row of this width, and the right end.
    std::vector<float> ColumnLefts(float rowWidth) const;
    unsigned long GetInitFlags() const { return initFlags; }

private:
    friend class UI_MultiColumnTreeRow;
    using Row = UI_MultiColumnTreeRow;

    void RequestLayout(bool now);
    void MakeDeferredChildRows(Row* row);
    void InsertReachableDescendants(Row* row, OpenedRowList::iterator before);
    void RemoveReachableDescendants(Row* row);
    void MarkOrderChangedBefore(Row* row);
    void EnsureDisplayIndicesUpTo(std::size_t last);
    std::size_t DisplayIndexOf(Row* row);
    OpenedRowList::iterator InsertionPointAfterSubtree(Row* row);
    void DetachSubtree(Row* row);
    void RebuildOpenedList();
    void SortChildren(std::vector<RowPtr>& rows, RowComparison const& less);

    void LayoutOnce();
    TreeRowSlot* AcquireSlot(Row* row);
    void ReleaseSlot(Row* row);
    void DropAllSlots();
    void PlaceSlot(Row* row, float y, float width);
    void NotifyVisibility(Row* row);
    void OnScrolled();
    void OnFocusChanged();
    void WatchFocus();
    void UpdateExtent();
    Row* FocusedRow() const;

    float rowHeight = 22.0f;
    unsigned long initFlags = 0;
    bool userSelectableRows = false;
    bool horizontalGridLines = false;
    bool verticalGridLines = false;
    bool indicateFocus = false;
    std::vector<float> columnWidths;
    std::vector<bool> autoResizable;

    std::vector<RowPtr> topRows;
    OpenedRowList openedRows;
    // Display order as a vector, valid below validCount; rebuilt lazily from
    // openedRows so that opening rows one by one stays linear.
    std::vector<UI_MultiColumnTreeRow*> displayOrder;
    std::size_t validCount = 0;
    std::vector<UI_MultiColumnTreeRow*> rowsOnScreen;
    unsigned layoutStamp = 0;

    // The row whose cells hold the focus, kept while scrolled away.
    Row* parkedRow = nullptr;
    std::vector<std::unique_ptr<TreeRowSlot>> allSlots;
    std::vector<TreeRowSlot*> freeSlots;

    boost::intrusive_ptr<UI_ScrollView> scrollView;
    boost::intrusive_ptr<UI_SubView> contentView;
    QPointer<QWidget> watchedWidget;
    QMetaObject::Connection focusWatch; // cut when the tree goes; its widgets may die later
    unsigned geometryGeneration = 0;
    bool ignoreScroll = false;
    RowVisibilityChangedCallback visibilityChanged;
    RowCellKindCallback cellKind;
    RowDisclosureChangedCallback disclosureChanged;
    DrawCellOfRowCallback drawCell;
    MakeChildRowsCallback makeChildRows;
    boost::intrusive_ptr<UI_MultiColumnTreeHeaderRow> headerRow;

    int deferDepth = 0;
    bool layoutPending = false;
    bool inLayout = false;
    unsigned long layoutCount = 0;
};

} // namespace zephui

// The row model of UI_MultiColumnTree: the row hierarchy, the live list of
// reachable rows, and display positions. Nothing here touches a widget; the
// on-screen side is in UI_MultiColumnTree.cpp.

#include "zephui/UI_MultiColumnTree.h"

#include <algorithm>

namespace zephui
{

using Row = UI_MultiColumnTreeRow;

UI_MultiColumnTreeRow::UI_MultiColumnTreeRow(UI_MultiColumnTree* owner) : tree(owner) {}

UI_MultiColumnTreeRow::~UI_MultiColumnTreeRow() = default;

void UI_MultiColumnTreeRow::SetSortKey(zephcore::UTF16String const& key)
{
    if (!sortKey)
        sortKey = std::make_unique<zephcore::UTF16String>(key);
    else
        *sortKey = key;
}

zephcore::UTF16String const& UI_MultiColumnTreeRow::GetSortKey() const
{
    static zephcore::UTF16String const kNone;
    return sortKey ? *sortKey : kNone;
}

std::size_t UI_MultiColumnTreeRow::CountChildRows() const
{
    // Making deferred children changes nothing a reader could tell apart.
    if (childrenDeferred && tree)
        tree->MakeDeferredChildRows(const_cast<UI_MultiColumnTreeRow*>(this));
    return childRows.size();
}

UI_MultiColumnTreeRow::RowPtr UI_MultiColumnTreeRow::GetChildRow(std::size_t index) const
{
    return index < CountChildRows() ? childRows[index] : RowPtr();
}

UI_MultiColumnTree::RowPtr UI_MultiColumnTree::GetTopRow(std::size_t index) const
{
    return index < topRows.size() ? topRows[index] : RowPtr();
}

UI_MultiColumnTree::RowPtr UI_MultiColumnTree::CreateAndAppendRow(RowPtr const& parent, bool open,
                                                                  bool layoutNow)
{
    if (parent && parent->tree != this)
        return RowPtr(); // a removed row, or one of another tree, takes no children

    if (parent && parent->childrenDeferred)
        MakeDeferredChildRows(parent.get());
    RowPtr row(new Row(this));
    row->open = open;
    if (parent)
    {
        row->parentRow = parent.get();
        row->depth = parent->depth + 1;
        bool const reachable = parent->inOpenedList && parent->open;
        OpenedRowList::iterator before;
        if (reachable)
            before = InsertionPointAfterSubtree(parent.get());
        parent->childRows.push_back(row);
        if (reachable)
        {
            row->openedPosition = openedRows.insert(before, row);
            row->inOpenedList = true;
            MarkOrderChangedBefore(row.get());
        }
    }
    else
    {
        topRows.push_back(row);
        row->openedPosition = openedRows.insert(openedRows.end(), row);
        row->inOpenedList = true;
        MarkOrderChangedBefore(row.get());
    }
    RequestLayout(layoutNow);
    return row;
}

void UI_MultiColumnTree::ReserveChildRows(RowPtr const& row, std::size_t count)
{
    if (row && row->tree == this)
        row->childRows.reserve(row->childRows.size() + count);
}

void UI_MultiColumnTree::DeferChildRows(RowPtr const& row)
{
    if (!row || row->tree != this || row->childrenDeferred)
        return;
    row->childrenDeferred = true;
    if (row->open)
        MakeDeferredChildRows(row.get());
}

void UI_MultiColumnTree::SetMakeChildRowsCallback(MakeChildRowsCallback const& callback)
{
    makeChildRows = callback;
}

void UI_MultiColumnTree::MakeDeferredChildRows(Row* row)
{
    row->childrenDeferred = false;
    if (!makeChildRows || !*makeChildRows)
        return;
    RowPtr const keep(row);
    bool const wasPending = layoutPending;
    ++deferDepth;
    (*makeChildRows)(row);
    --deferDepth;
    // Children of a closed row are not reachable: nothing moved on screen.
    if (!row->open)
        layoutPending = wasPending;
    else
        RequestLayout(true);
}

void UI_MultiColumnTree::LayoutAfterAppendRow()
{
    RequestLayout(true);
}

UI_MultiColumnTree::OpenedRowList::iterator UI_MultiColumnTree::InsertionPointAfterSubtree(Row* row)
{
    // The last reachable descendant is found by following last children
    // while they are open: O(depth), not O(subtree).
    Row* last = row;
    while (last->open && !last->childRows.empty())
        last = last->childRows.back().get();
    return std::next(last->openedPosition);
}

void UI_MultiColumnTree::MarkOrderChangedBefore(Row* row)
{
    // Everything from row's position on may have moved. If the row in front
    // has a trusted index the valid mark drops to just behind it; if not, the
    // mark already lies at or before it.
    if (row->openedPosition == openedRows.begin())
    {
        validCount = 0;
        return;
    }
    Row* const previous = std::prev(row->openedPosition)->get();
    std::size_t const index = previous->displayIndex;
    if (index < validCount && displayOrder[index] == previous)
        validCount = std::min(validCount, index + 1);
}

void UI_MultiColumnTree::InsertReachableDescendants(Row* row, OpenedRowList::iterator before)
{
    for (RowPtr const& child : row->childRows)
    {
        child->openedPosition = openedRows.insert(before, child);
        child->inOpenedList = true;
        if (child->open)
            InsertReachableDescendants(child.get(), before);
    }
}

void UI_MultiColumnTree::RemoveReachableDescendants(Row* row)
{
    auto it = std::next(row->openedPosition);
    while (it != openedRows.end() && (*it)->depth > row->depth)
    {
        (*it)->inOpenedList = false;
        (*it)->displayIndex = Row::kNoIndex;
        it = openedRows.erase(it);
    }
}

void UI_MultiColumnTree::EnsureDisplayIndicesUpTo(std::size_t last)
{
    if (last < validCount || openedRows.empty())
        return;
    displayOrder.resize(openedRows.size());
    std::size_t i = validCount;
    auto it = i == 0 ? openedRows.begin() : std::next(displayOrder[i - 1]->openedPosition);
    for (; it != openedRows.end() && i <= last; ++it, ++i)
    {
        displayOrder[i] = it->get();
        (*it)->displayIndex = i;
    }
    validCount = i;
}

std::size_t UI_MultiColumnTree::DisplayIndexOf(Row* row)
{
    if (!row->inOpenedList)
        return Row::kNoIndex;
    std::size_t const index = row->displayIndex;
    if (index < validCount && displayOrder[index] == row)
        return index;
    // Extend the trusted prefix until it reaches the row.
    while (validCount < openedRows.size())
    {
        EnsureDisplayIndicesUpTo(std::max<std::size_t>(validCount * 2, validCount + 256));
        if (row->displayIndex < validCount && displayOrder[row->displayIndex] == row)
            return row->displayIndex;
    }
    return Row::kNoIndex;
}

bool UI_MultiColumnTree::IsRowOpen(RowPtr const& row) const
{
    return row && row->tree == this && row->open;
}

void UI_MultiColumnTree::OpenRow(RowPtr const& row)
{
    if (!row || row->tree != this || row->open)
        return;
    if (row->childrenDeferred)
        MakeDeferredChildRows(row.get());
    row->open = true;
    if (row->inOpenedList && !row->childRows.empty())
    {
        InsertReachableDescendants(row.get(), std::next(row->openedPosition));
        MarkOrderChangedBefore(row->childRows.front().get());
    }
    RequestLayout(true);
}

void UI_MultiColumnTree::CloseRow(RowPtr const& row)
{
    if (!row || row->tree != this || !row->open)
        return;
    row->open = false;
    if (row->inOpenedList && !row->childRows.empty())
    {
        RemoveReachableDescendants(row.get());
        std::size_t const index = row->displayIndex;
        if (index < validCount && displayOrder[index] == row.get())
            validCount = std::min(validCount, index + 1);
    }
    RequestLayout(true);
}

void UI_MultiColumnTree::RemoveRow(RowPtr const& rowRef, bool layoutNow, bool /*notify*/,
                                   bool /*reserved*/)
{
    if (!rowRef || rowRef->tree != this)
        return;
    // The caller's pointer may be the very element of the opened list that is
    // erased below: work on a pointer of our own from here on.
    RowPtr const row = rowRef; // NOLINT(performance-unnecessary-copy-initialization)
    if (row->inOpenedList)
    {
        RemoveReachableDescendants(row.get());
        auto const position = row->openedPosition;
        if (position == openedRows.begin())
            validCount = 0;
        else
        {
            Row* const previous = std::prev(position)->get();
            std::size_t const index = previous->displayIndex;
            if (index < validCount && displayOrder[index] == previous)
                validCount = std::min(validCount, index + 1);
        }
        row->inOpenedList = false;
        row->displayIndex = Row::kNoIndex;
        openedRows.erase(position);
    }
    std::vector<RowPtr>& siblings = row->parentRow ? row->parentRow->childRows : topRows;
    auto const found = std::find(siblings.begin(), siblings.end(), row);
    if (found != siblings.end())
        siblings.erase(found);
    row->parentRow = nullptr;
    DetachSubtree(row.get());
    RequestLayout(layoutNow);
}

void UI_MultiColumnTree::RemoveAllRows(bool layoutNow)
{
    for (RowPtr const& row : topRows)
        DetachSubtree(row.get());
    topRows.clear();
    openedRows.clear();
    displayOrder.clear();
    validCount = 0;
    RequestLayout(layoutNow);
}

void UI_MultiColumnTree::DetachSubtree(Row* row)
{
    // The row outlives its removal if someone holds it; it then belongs to
    // no tree, and every operation on it does nothing.
    ReleaseSlot(row);
    row->tree = nullptr;
    row->inOpenedList = false;
    row->displayIndex = Row::kNoIndex;
    if (row->onScreen)
    {
        row->onScreen = false;
        rowsOnScreen.erase(std::remove(rowsOnScreen.begin(), rowsOnScreen.end(), row),
                           rowsOnScreen.end());
    }
    if (parkedRow == row)
        parkedRow = nullptr;
    for (RowPtr const& child : row->childRows)
        DetachSubtree(child.get());
}

void UI_MultiColumnTree::SortChildren(std::vector<RowPtr>& rows, RowComparison const& less)
{
    if (less)
        std::stable_sort(rows.begin(), rows.end(),
                         [&less](RowPtr const& a, RowPtr const& b)
                         { return less(a.get(), b.get()); });
    else
        std::stable_sort(
            rows.begin(), rows.end(),
            [](RowPtr const& a, RowPtr const& b)
            { return zephcore::FoldCase(a->GetSortKey()) < zephcore::FoldCase(b->GetSortKey()); });
    for (RowPtr const& row : rows)
    {
        if (row->childrenDeferred)
            MakeDeferredChildRows(row.get());
        SortChildren(row->childRows, less);
    }
}

void UI_MultiColumnTree::SortTree(RowComparison const& less)
{
    SortChildren(topRows, less);
    RebuildOpenedList();
    RequestLayout(true);
}

void UI_MultiColumnTree::RebuildOpenedList()
{
    for (RowPtr const& row : openedRows)
        row->inOpenedList = false;
    openedRows.clear();
    for (RowPtr const& row : topRows)
    {
        row->openedPosition = openedRows.insert(openedRows.end(), row);
        row->inOpenedList = true;
        if (row->open)
            InsertReachableDescendants(row.get(), openedRows.end());
    }
    validCount = 0;
}

} // namespace zephui

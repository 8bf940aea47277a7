#pragma once
// One row of a UI_MultiColumnTree. A row is a light record, not a node: it
// holds its child rows and its open state, and borrows cell views from the
// tree only while it is on screen, so a tree of many rows costs what one
// screen costs. A property tree of a long speech track holds over a hundred
// thousand rows, so every byte of a row counts.

#include "zephui/UI_SubView.h"
#include "zephui/zephui_export.h"

#include "zephcore/Strings.h"

#include <boost/intrusive_ptr.hpp>

#include <cstddef>
#include <list>
#include <memory>
#include <vector>

namespace zephui
{

class UI_MultiColumnTree;
class TreeRowSlot;

class ZEPHUI_EXPORT UI_MultiColumnTreeRow
{
public:
    using RowPtr = boost::intrusive_ptr<UI_MultiColumnTreeRow>;

    // The view that holds the contents of one cell, or null while the row
    // is off screen (or the column does not exist).
    boost::intrusive_ptr<UI_SubView> GetCellView(unsigned long column) const;

    UI_MultiColumnTreeRow* GetParentRow() const { return parentRow; }
    // Both make the children of a row whose children were deferred.
    std::size_t CountChildRows() const;
    // Null for an index out of range.
    RowPtr GetChildRow(std::size_t index) const;
    // True while the children are still to be made (UI_MultiColumnTree::DeferChildRows).
    bool HasDeferredChildRows() const { return childrenDeferred; }
    UI_MultiColumnTree* GetTree() const { return tree; }
    // 0 for a top row.
    int GetDepth() const { return depth; }
    bool IsOpen() const { return open; }

    // The text SortTree compares when no comparison is given.
    void SetSortKey(zephcore::UTF16String const& key);
    zephcore::UTF16String const& GetSortKey() const;

    UI_MultiColumnTreeRow(UI_MultiColumnTreeRow const&) = delete;
    UI_MultiColumnTreeRow& operator=(UI_MultiColumnTreeRow const&) = delete;
    ~UI_MultiColumnTreeRow();

private:
    friend class UI_MultiColumnTree;
    friend class TreeRowView;
    explicit UI_MultiColumnTreeRow(UI_MultiColumnTree* owner);

    // Counted without a virtual call: rows are made and dropped by the
    // hundred thousand, always on the user-interface thread.
    friend void intrusive_ptr_add_ref(UI_MultiColumnTreeRow const* row) { ++row->refCount; }
    friend void intrusive_ptr_release(UI_MultiColumnTreeRow const* row)
    {
        if (--row->refCount == 0)
            delete row;
    }

    static constexpr std::size_t kNoIndex = std::size_t(-1);

    mutable int refCount = 0;
    int depth = 0;
    UI_MultiColumnTree* tree = nullptr;
    UI_MultiColumnTreeRow* parentRow = nullptr;
    std::vector<RowPtr> childRows;
    // Where the row stands in the tree's list of reachable rows, if it does.
    std::list<RowPtr>::iterator openedPosition;
    // Position in display order; trusted only below the tree's valid mark.
    std::size_t displayIndex = kNoIndex;
    // On-screen widgets, lent by the tree; null off screen.
    TreeRowSlot* slot = nullptr;
    // Few trees sort by key; the others pay one pointer for it.
    std::unique_ptr<zephcore::UTF16String> sortKey;
    unsigned layoutStamp = 0;
    bool open = false;
    bool inOpenedList = false;
    bool onScreen = false;
    bool childrenDeferred = false;
};

} // namespace zephui

#pragma once
// One row of a UI_MultiColumnTree. A row is a light record: it holds its
// child rows and its open state, and borrows cell views from the tree only
// while it is on screen, so a tree of many rows costs what one screen costs.

#include "zephui/UI_SubView.h"

#include "zephcore/Strings.h"

#include <boost/intrusive_ptr.hpp>

#include <cstddef>
#include <list>
#include <vector>

namespace zephui {

class UI_MultiColumnTree;
class TreeRowSlot;

class UI_MultiColumnTreeRow : public UI_SubView {
public:
    using RowPtr = boost::intrusive_ptr<UI_MultiColumnTreeRow>;

    // The view that holds the contents of one cell, or null while the row
    // is off screen (or the column does not exist).
    boost::intrusive_ptr<UI_SubView> GetCellView(unsigned long column) const;

    UI_MultiColumnTreeRow* GetParentRow() const { return parentRow; }
    std::size_t CountChildRows() const { return childRows.size(); }
    // Null for an index out of range.
    RowPtr GetChildRow(std::size_t index) const;
    UI_MultiColumnTree* GetTree() const { return tree; }
    // 0 for a top row.
    int GetDepth() const { return depth; }
    bool IsOpen() const { return open; }

    // The text SortTree compares when no comparison is given.
    void SetSortKey(zephcore::UTF16String const& key) { sortKey = key; }
    zephcore::UTF16String const& GetSortKey() const { return sortKey; }

    ~UI_MultiColumnTreeRow() override;

private:
    friend class UI_MultiColumnTree;
    friend class TreeRowView;
    explicit UI_MultiColumnTreeRow(UI_MultiColumnTree* owner);

    static constexpr std::size_t kNoIndex = std::size_t(-1);

    UI_MultiColumnTree* tree = nullptr;
    UI_MultiColumnTreeRow* parentRow = nullptr;
    std::vector<RowPtr> childRows;
    zephcore::UTF16String sortKey;
    int depth = 0;
    bool open = false;
    // Where the row stands in the tree's list of reachable rows, if it does.
    bool inOpenedList = false;
    std::list<RowPtr>::iterator openedPosition;
    // Position in display order; trusted only below the tree's valid mark.
    std::size_t displayIndex = kNoIndex;
    // On-screen widgets, lent by the tree; null off screen.
    TreeRowSlot* slot = nullptr;
    bool onScreen = false;
    unsigned layoutStamp = 0;
};

} // namespace zephui

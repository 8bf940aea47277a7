#pragma once
// The widgets a tree row borrows while it is on screen: a row view that draws
// the disclosure triangle, grid lines and focus ring, and one cell view per
// column inside it. Slots are recycled between rows.

#include "zephui/UI_SubView.h"

#include <cstdint>
#include <vector>

namespace zephui
{

class UI_MultiColumnTree;
class UI_MultiColumnTreeRow;

class TreeRowView : public UI_SubView
{
public:
    explicit TreeRowView(UI_MultiColumnTree* tree) : tree(tree) {}

    void UI_Draw(Drawbot* drawbot) override;
    bool UI_DoMouseEvent(UI_Node* node, MouseEvent const& event) override;

    // The row shown, or null while the slot is in the pool.
    UI_MultiColumnTreeRow* row = nullptr;
    // Where the disclosure triangle sits, in local coordinates.
    RectF DisclosureRect() const;

private:
    UI_MultiColumnTree* tree = nullptr;
};

class TreeRowSlot
{
public:
    boost::intrusive_ptr<TreeRowView> rowView;
    std::vector<boost::intrusive_ptr<UI_SubView>> cellViews;
    // The depth and width the cells were last placed for.
    int placedDepth = -1;
    float placedWidth = -1.0f;
    unsigned placedGeneration = 0;
    // The kind of the row whose cells the slot holds (see SetRowCellKindCallback).
    std::uintptr_t cellKind = 0;
};

} // namespace zephui

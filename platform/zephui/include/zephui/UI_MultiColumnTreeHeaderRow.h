#pragma once
// The header strip of a UI_MultiColumnTree: one named column per column of
// the tree, drawn at the tree's column positions.

#include "zephui/UI_SubView.h"
#include "zephui/zephui_export.h"

#include <memory>
#include <vector>

namespace zephui
{

class UI_MultiColumnTree;

class ZEPHUI_EXPORT UI_MultiColumnTreeHeaderColumn
{
public:
    void SetColumnName(zephcore::UTF16String const& text) { name = text; }
    zephcore::UTF16String const& GetColumnName() const { return name; }

private:
    zephcore::UTF16String name;
};

class ZEPHUI_EXPORT UI_MultiColumnTreeHeaderRow : public UI_SubView
{
public:
    static constexpr float kHeight = 20.0f;

    explicit UI_MultiColumnTreeHeaderRow(UI_MultiColumnTree* tree);

    // Null past the tree's last column.
    UI_MultiColumnTreeHeaderColumn* GetColumnAt(unsigned long index);
    void ShowSortIndicator(bool show);
    bool IsSortIndicatorShown() const { return sortIndicator; }
    // Columns keep their order here: moving them is not offered.
    void SetAllowUserColumnMove(bool allow) { allowMove = allow; }
    bool GetAllowUserColumnMove() const { return allowMove; }

    void UI_Draw(Drawbot* drawbot) override;

private:
    friend class UI_MultiColumnTree;
    UI_MultiColumnTree* tree = nullptr;
    std::vector<std::unique_ptr<UI_MultiColumnTreeHeaderColumn>> columns;
    bool sortIndicator = false;
    bool allowMove = false;
};

} // namespace zephui

#pragma once
// A list of text lines in a scroll view. A click (or the arrow keys) selects
// a line and tells the item-selected callback; SelectItem by program tells
// nobody. Each line is a UI_ListBoxItem whose label is a UI_StaticText; only
// the lines in view are on screen, the others wait as nodes without widgets.

#include "zephui/UI_ControlView.h"
#include "zephui/UI_ScrollView.h"
#include "zephui/UI_StaticText.h"
#include "zephui/zephui_export.h"

#include <set>
#include <vector>

namespace zephui
{

class UI_ListBox;

class ZEPHUI_EXPORT UI_ListBoxItem : public UI_SubView
{
public:
    UI_ListBoxItem(UI_ListBox* list, zephcore::UTF16String const& text);
    UI_StaticTextPtr GetItemLabel() const { return label; }
    bool IsSelected() const { return selected; }

    void UI_Draw(Drawbot* drawbot) override;
    bool UI_DoMouseEvent(UI_Node* node, MouseEvent const& event) override;
    void UI_SizeChanged(RectF const& rect) override;
    void UI_NodeChanged() override;

private:
    friend class UI_ListBox;
    UI_ListBox* list;
    UI_StaticTextPtr label;
    bool selected = false;
};

class ZEPHUI_EXPORT UI_ListBox : public UI_ControlView
{
public:
    // multipleSelection: a click with Shift or Ctrl adds to the selection.
    explicit UI_ListBox(bool multipleSelection = false, bool unused1 = false, bool unused2 = false);
    ~UI_ListBox() override;
    // Kept for callers: everything is set up by the constructor.
    void Init() {}

    static float GetItemHeight() { return 19.0f; }

    void AppendItem(zephcore::UTF16String const& text);
    void InsertItem(int index, zephcore::UTF16String const& text);
    void RemoveItem(int index);
    void ClearItems();
    int CountItems() const { return int(items.size()); }
    // Null past the end.
    UI_ListBoxItem* GetItem(int index) const;
    std::set<int> GetSelectedItems() const;
    // With notify, the item-selected callback is told as for a user's choice.
    void SelectItem(int index, bool select, bool notify = false);
    UI_ScrollViewPtr GetScrollView() const { return scrollView; }
    // Lines added or removed inside this scope are placed once, when it ends:
    // for filling a list of thousands of lines.
    class ScDeferLayout
    {
    public:
        explicit ScDeferLayout(UI_ListBox& list);
        ~ScDeferLayout();
        ScDeferLayout(ScDeferLayout const&) = delete;
        ScDeferLayout& operator=(ScDeferLayout const&) = delete;

    private:
        UI_ListBox& list;
    };

    // Told when the user changes the selection.
    void SetItemSelectedCallback(MessageCallback const& callback) { itemSelected = callback; }

    void UI_SizeChanged(RectF const& rect) override;
    bool UI_DoKeyboardEvent(UI_Node* node, KeyboardEvent const& event) override;
    void UI_Draw(Drawbot* drawbot) override;

    // Internal: a click on an item.
    void ItemPressed(UI_ListBoxItem* item, Flags<unsigned char> modifiers);

private:
    void Relayout();
    void ShowVisibleItems();
    void Detach(UI_ListBoxItem* item);
    RectF ItemRect(int index) const;
    void TellSelected();
    int IndexOf(UI_ListBoxItem const* item) const;

    bool multipleSelection = false;
    int layoutDeferred = 0;
    UI_ScrollViewPtr scrollView;
    std::vector<boost::intrusive_ptr<UI_ListBoxItem>> items;
    std::vector<UI_ListBoxItem*> shownItems; // attached to the content view
    MessageCallback itemSelected;
};

using UI_ListBoxPtr = boost::intrusive_ptr<UI_ListBox>;

} // namespace zephui

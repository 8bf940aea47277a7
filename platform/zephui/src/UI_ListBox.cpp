#include "zephui/UI_ListBox.h"

#include "zephui/Drawbot.h"
#include "zephui/NodeWidget.h"

#include <algorithm>
#include <cmath>

namespace zephui
{

UI_ListBoxItem::UI_ListBoxItem(UI_ListBox* owner, zephcore::UTF16String const& text)
    : list(owner), label(new UI_StaticText(text))
{
    label->UI_Show(true);
    label->SetTextTruncation(kTruncationEnd);
}

void UI_ListBoxItem::UI_NodeChanged()
{
    UI_SubView::UI_NodeChanged();
    // The label joins when the line first goes on screen: a child makes its
    // parent's widget, and lines out of view should have none.
    if (UI_GetParentNode() && label->UI_GetParentNode() != this)
        ChildPushBack(label);
}

void UI_ListBoxItem::UI_SizeChanged(RectF const& rect)
{
    UI_SubView::UI_SizeChanged(rect);
    label->UI_SetLocalRectF(RectF(4.0f, 0.0f, std::max(0.0f, rect.width - 8.0f), rect.height));
}

void UI_ListBoxItem::UI_Draw(Drawbot* drawbot)
{
    if (selected)
        drawbot->FillRect(UI_GetLocalRectF(false), GetColor(kColor_ListBoxSelection));
    UI_SubView::UI_Draw(drawbot);
}

bool UI_ListBoxItem::UI_DoMouseEvent(UI_Node*, MouseEvent const& event)
{
    if (!event.IsAction(MouseEvent::kActionPress) || event.GetButton() != MouseEvent::kButtonLeft ||
        !list)
        return false;
    list->ItemPressed(this, event.GetModKey());
    return true;
}

UI_ListBox::UI_ListBox(bool multiple, bool, bool)
    : multipleSelection(multiple), scrollView(new UI_ScrollView)
{
    SetWantsKeyboardFocus(true);
    scrollView->UI_Show(true);
    ChildPushBack(scrollView);
    scrollView->SetScrollChangedCallback([this] { ShowVisibleItems(); });
}

UI_ListBox::~UI_ListBox()
{
    scrollView->SetScrollChangedCallback(boost::function<void()>());
    for (auto const& item : items)
        item->list = nullptr;
}

void UI_ListBox::AppendItem(zephcore::UTF16String const& text)
{
    InsertItem(int(items.size()), text);
}

void UI_ListBox::InsertItem(int index, zephcore::UTF16String const& text)
{
    index = std::clamp(index, 0, int(items.size()));
    boost::intrusive_ptr<UI_ListBoxItem> item(new UI_ListBoxItem(this, text));
    item->UI_Show(true);
    items.insert(items.begin() + index, item);
    Relayout();
}

void UI_ListBox::RemoveItem(int index)
{
    if (index < 0 || index >= int(items.size()))
        return;
    items[std::size_t(index)]->list = nullptr;
    Detach(items[std::size_t(index)].get());
    items.erase(items.begin() + index);
    Relayout();
}

void UI_ListBox::ClearItems()
{
    for (auto const& item : items)
    {
        item->list = nullptr;
        Detach(item.get());
    }
    items.clear();
    Relayout();
}

UI_ListBoxItem* UI_ListBox::GetItem(int index) const
{
    return index >= 0 && index < int(items.size()) ? items[std::size_t(index)].get() : nullptr;
}

std::set<int> UI_ListBox::GetSelectedItems() const
{
    std::set<int> selected;
    for (std::size_t i = 0; i < items.size(); ++i)
        if (items[i]->selected)
            selected.insert(int(i));
    return selected;
}

void UI_ListBox::SelectItem(int index, bool select, bool notify)
{
    if (index < 0 || index >= int(items.size()))
        return;
    if (select && !multipleSelection)
        for (auto const& item : items)
            if (item->selected)
            {
                item->selected = false;
                item->UI_Invalidate();
            }
    items[std::size_t(index)]->selected = select;
    items[std::size_t(index)]->UI_Invalidate();
    if (select)
        scrollView->ScrollIntoView(ItemRect(index));
    if (notify)
        TellSelected();
}

int UI_ListBox::IndexOf(UI_ListBoxItem const* item) const
{
    for (std::size_t i = 0; i < items.size(); ++i)
        if (items[i].get() == item)
            return int(i);
    return -1;
}

void UI_ListBox::ItemPressed(UI_ListBoxItem* item, Flags<unsigned char> modifiers)
{
    NodeEventScope scope(this);
    UI_GainKeyboardFocus(kFocusReasonMouse);
    int const index = IndexOf(item);
    if (index < 0)
        return;
    bool const adding = multipleSelection &&
                        modifiers.IsAnySet(kModifierShift | kModifierControl | kModifierCommand);
    if (adding)
        SelectItem(index, !item->selected);
    else
    {
        if (item->selected && GetSelectedItems().size() == 1)
        {
            TellSelected(); // a click on the selected line still reports it
            return;
        }
        for (auto const& other : items)
            if (other->selected)
            {
                other->selected = false;
                other->UI_Invalidate();
            }
        SelectItem(index, true);
    }
    TellSelected();
}

void UI_ListBox::TellSelected()
{
    MessageCallback const callback = itemSelected;
    UI_ControlMessage message(this);
    if (callback && *callback)
        (*callback)(&message);
    SendValueChangedMessage();
}

bool UI_ListBox::UI_DoKeyboardEvent(UI_Node*, KeyboardEvent const& event)
{
    if (!event.IsActionKeyDown() || items.empty())
        return false;
    bool const down = event.CompareCode(KeyboardCode(KeyboardCode::kKeyDown));
    bool const up = event.CompareCode(KeyboardCode(KeyboardCode::kKeyUp));
    if (!down && !up)
        return false;
    std::set<int> const selected = GetSelectedItems();
    int current = selected.empty() ? (down ? -1 : int(items.size()))
                                   : (down ? *selected.rbegin() : *selected.begin());
    int const next = std::clamp(current + (down ? 1 : -1), 0, int(items.size()) - 1);
    if (selected.size() == 1 && next == current)
        return true;
    NodeEventScope scope(this);
    for (auto const& item : items)
        item->selected = false;
    SelectItem(next, true);
    for (auto const& item : items)
        item->UI_Invalidate();
    TellSelected();
    return true;
}

RectF UI_ListBox::ItemRect(int index) const
{
    return RectF(0.0f, float(index) * GetItemHeight(), scrollView->GetViewportRectF().width,
                 GetItemHeight());
}

void UI_ListBox::Detach(UI_ListBoxItem* item)
{
    auto const found = std::find(shownItems.begin(), shownItems.end(), item);
    if (found == shownItems.end())
        return;
    shownItems.erase(found);
    scrollView->GetContentView()->ChildRequestRemove(item);
}

UI_ListBox::ScDeferLayout::ScDeferLayout(UI_ListBox& owner) : list(owner)
{
    ++list.layoutDeferred;
}

UI_ListBox::ScDeferLayout::~ScDeferLayout()
{
    if (--list.layoutDeferred == 0)
        list.Relayout();
}

void UI_ListBox::Relayout()
{
    if (layoutDeferred > 0)
        return;
    RectF const port = scrollView->GetViewportRectF();
    scrollView->SetContentRectF(
        RectF(0.0f, 0.0f, port.width, float(items.size()) * GetItemHeight()));
    ShowVisibleItems();
}

void UI_ListBox::ShowVisibleItems()
{
    // Only the lines in the viewport are nodes on screen, so that a list of
    // thousands of lines costs what one screen costs.
    RectF const port = scrollView->GetViewportRectF();
    float const top = scrollView->GetScrollPosition().y;
    int const count = int(items.size());
    int const first = std::clamp(int(std::floor(top / GetItemHeight())), 0, count);
    int const last =
        std::clamp(int(std::ceil((top + port.height) / GetItemHeight())) + 1, first, count);

    std::vector<UI_ListBoxItem*> visible;
    visible.reserve(std::size_t(last - first));
    for (int i = first; i < last; ++i)
        visible.push_back(items[std::size_t(i)].get());
    UI_SubViewPtr const content = scrollView->GetContentView();
    for (UI_ListBoxItem* shown : std::vector<UI_ListBoxItem*>(shownItems))
    {
        if (std::find(visible.begin(), visible.end(), shown) == visible.end())
            Detach(shown);
    }
    for (int i = first; i < last; ++i)
    {
        UI_ListBoxItem* item = items[std::size_t(i)].get();
        item->UI_SetLocalRectF(ItemRect(i));
        if (std::find(shownItems.begin(), shownItems.end(), item) == shownItems.end())
        {
            shownItems.push_back(item);
            content->ChildPushBack(item);
        }
    }
}

void UI_ListBox::UI_SizeChanged(RectF const& rect)
{
    UI_ControlView::UI_SizeChanged(rect);
    scrollView->UI_SetLocalRectF(
        RectF(1.0f, 1.0f, std::max(0.0f, rect.width - 2.0f), std::max(0.0f, rect.height - 2.0f)));
    Relayout();
}

void UI_ListBox::UI_Draw(Drawbot* drawbot)
{
    RectF const local = UI_GetLocalRectF(false);
    drawbot->FillRect(local, GetColor(kColor_ListBoxBackground));
    drawbot->StrokeRect(RectF(0.5f, 0.5f, local.width - 1.0f, local.height - 1.0f),
                        GetColor(kColor_ControlBorder));
    UI_ControlView::UI_Draw(drawbot);
}

} // namespace zephui

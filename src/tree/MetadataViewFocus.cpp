// MetadataView: Tab and Shift+Tab travel from one editable value to the next.
// Rows are made lazily and most cannot take input, so the toolkit's own focus
// advance cannot do this; the view filters key events and walks its rows.

#include "zephmetadataui/MetadataView.h"

#include "zephmetadataui/FocusMover.h"
#include "zephmetadataui/MetadataViewCell.h"

#include "binding/PathFilters.h"
#include "contracts/Model.h"
#include "tree/TreeToolkit.h"

namespace zephmetadataui
{

namespace
{

constexpr unsigned char kShift = 2;
constexpr unsigned char kIgnoredModifier = 0x08;

// Tab alone or with Shift; the keypad bit is no modifier here.
bool IsTabEvent(KeyboardEvent const& event, bool& forward)
{
    if (!event.IsActionKeyDown() || event.GetCode() != KeyboardCode(KeyboardCode::kKeyTab))
        return false;
    unsigned char const modifiers = event.GetModKey().Without(kIgnoredModifier).Get();
    if (modifiers != 0 && modifiers != kShift)
        return false;
    forward = modifiers != kShift;
    return true;
}

} // namespace

void MetadataView::SetFocusOrder(UI_Node* previous, UI_Node* next)
{
    focusPrevious = previous;
    focusNext = next;
    delete keyboardFilter;
    keyboardFilter = nullptr;
    if (!previous && !next)
        return;
    keyboardFilter =
        new UI_NodeManager::AddAndRemoveKeyboardEventFilterNode(UI_NodeManager::Get(false), this);
}

bool MetadataView::UI_DoPreKeyboardEvent(UI_Node* node, KeyboardEvent const& event)
{
    bool forward = true;
    if (!node || !IsTabEvent(event, forward))
        return false;
    UI_Node* const entry = forward ? focusPrevious : focusNext;
    if (node == entry || node->UI_IsChildOf(this) || (entry && node->UI_IsChildOf(entry)))
        return UI_DoKeyboardEvent(node, event);
    return false;
}

bool MetadataView::UI_DoKeyboardEvent(UI_Node* node, KeyboardEvent const& event)
{
    bool forward = true;
    if (!IsTabEvent(event, forward))
        return false;
    HackAdvanceFocus(forward, node);
    return true;
}

void MetadataView::HackAdvanceFocus(bool forward, UI_Node* from)
{
    Row* current = nullptr;
    for (UI_Node* node = from; node; node = node->UI_GetParentNode())
        if (auto* const cell = dynamic_cast<MetadataViewCell*>(node))
        {
            current = FindRowThatHoldsMetadataViewCell(cell);
            break;
        }

    Row* const next = NextFocusableRow(forward, current);
    if (next == current)
    {
        if (focusMover)
            focusMover->MoveFocus(this, forward);
        else if (keyboardFilter)
        {
            UI_Node* const neighbour = forward ? focusNext : focusPrevious;
            if (neighbour)
                neighbour->UI_GainKeyboardFocus(0);
        }
        return;
    }
    if (!next)
        return;

    RowPtr const row(next);
    // Scrolling makes the row's cell through the visibility callback.
    tree->ScrollRowIntoView(row, false, 0);
    MetadataViewCell* const cell = MetadataCellForRow(next);
    if (!cell)
        return;
    if (UI_SubViewPtr const value = cell->GetChild_Value())
        value->UI_GainKeyboardFocus(0);
    else
        MoveOutToNextNodeFocusOrder(forward);
}

MetadataView::Row* MetadataView::NextFocusableRow(bool forward, Row* row) const
{
    auto const& list = tree->GetOpenedRows();
    if (list.empty())
        return row;

    auto scan = [&](auto begin, auto end, Row* start, Row* fallback) -> Row*
    {
        for (auto it = begin; it != end; ++it)
            if (IsFocusableRow(it->get()))
                return it->get();
        (void)start;
        return fallback;
    };

    if (forward)
    {
        if (!row)
            return scan(list.begin(), list.end(), nullptr, list.front().get());
        auto it = list.begin();
        while (it != list.end() && it->get() != row)
            ++it;
        if (it == list.end())
            return row;
        return scan(std::next(it), list.end(), row, row);
    }
    if (!row)
        return scan(list.rbegin(), list.rend(), nullptr, list.back().get());
    auto it = list.rbegin();
    while (it != list.rend() && it->get() != row)
        ++it;
    if (it == list.rend())
        return row;
    return scan(std::next(it), list.rend(), row, row);
}

bool MetadataView::IsFocusableRow(Row* row) const
{
    Path path;
    if (!FindPathForRow(row, path))
        return false;
    return IsFocusablePath(path) && provider &&
           provider->QueryPathStatus(path, kPathStatusWritable);
}

MetadataView::Row* MetadataView::FindRowThatHoldsMetadataViewCell(MetadataViewCell* cell) const
{
    for (RowPtr const& row : tree->GetOpenedRows())
        if (MetadataCellForRow(row.get()) == cell)
            return row.get();
    return nullptr;
}

bool MetadataView::MoveOutToNextNodeFocusOrder(bool forward)
{
    if (!keyboardFilter)
        return false;
    UI_Node* const neighbour = forward ? focusNext : focusPrevious;
    if (!neighbour)
        return false;
    return neighbour->UI_GainKeyboardFocus(0);
}

} // namespace zephmetadataui

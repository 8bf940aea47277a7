#include "zephmetadataui/ArrayControl.h"

#include "contracts/Model.h"
#include "contracts/Toolkit.h"
#include "layout/LayoutText.h"
#include "zephmetadataui/MetadataViewBuilder.h"

#include <zephui/UI_Button.h>
#include <zephui/UI_ListBox.h>
#include <zephui/UI_OutlineBox.h>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>

namespace zephmetadataui::layout
{

using zephmetadata::ViewItem;

namespace
{

constexpr float kButtonBarHeight = 30.0f;
constexpr float kMinimumLabelWidth = 50.0f;
constexpr unsigned short kItemMark = 0x25AA;    // small black square
constexpr unsigned short kNoItemsMark = 0x2014; // em dash
// Held while Insert is clicked, the new item goes in front of the selection.
constexpr unsigned char kInsertBeforeModifier = 0x10;

boost::intrusive_ptr<zephui::UI_TextButton> MakeButton(char const* key, float left)
{
    boost::intrusive_ptr<zephui::UI_TextButton> button(
        new zephui::UI_TextButton(zephcore::Localizer::Get().GetString(key)));
    button->UI_SetLocalRectF(RectF(left, 0.0f, 75.0f, 21.0f));
    button->UI_SetLayoutBinding(zephui::kBindLeftEdgeToParentRight |
                                zephui::kBindRightEdgeToParentRight);
    button->SetWantsKeyboardFocus(true);
    button->UI_Show(true);
    return button;
}

UTF16String ReadText(__XMPMeta__* meta, Path const& path)
{
    UTF8String text;
    return GetValue(meta, path, text, nullptr) ? zephcore::UTF8to16(text) : UTF16String();
}

// A simple item's text as stored; a structure's non-empty fields, nested
// structures included, joined by " / ".
UTF16String TextOfItem(__XMPMeta__* meta, Path const& path,
                       zephmetadata::TypeDefinition const* type)
{
    if (!type)
        return UTF16String();
    if (zephmetadata::IsSimpleType(*type))
        return ReadText(meta, path);
    if (!zephmetadata::IsStructType(*type))
        return UTF16String();
    UTF16String joined;
    for (auto const& field : type->fields)
    {
        Path const fieldPath = zephmetadata::CreatePathFromStructureField(path, field);
        UTF16String const text =
            zephmetadata::PrimitiveTypeOfPath(fieldPath)
                ? ReadText(meta, fieldPath)
                : TextOfItem(meta, fieldPath, zephmetadata::TypeEntryDefinition(fieldPath).get());
        if (text.empty())
            continue;
        if (!joined.empty())
            joined += zephcore::AsciiToUTF16(" / ");
        joined += text;
    }
    return joined;
}

UTF16String OnlyMark(unsigned short mark)
{
    return UTF16String(1, mark);
}

} // namespace

UTF16String ArrayControl::LineText(UTF16String const& itemText)
{
    return zephcore::ReplaceInString(OnlyMark(kItemMark) + zephcore::AsciiToUTF16("  @0"),
                                     itemText);
}

ArrayControl::ArrayControl(Value const& arrayValue, bool isReadOnly)
    : value(arrayValue), readOnly(isReadOnly)
{
    UI_SetNodeID("zephmetadataui::layout::ArrayControl");
    UI_SetLocalRectF(RectF(0.0f, 0.0f, 0.0f, kClosedHeight));
    UI_SetLayoutsChildren(true);

    label = new UI_StaticText;
    label->UI_SetLocalRectF(RectF(0.0f, 0.0f, labelWidth, kStandardRowHeight));
    label->SetAlignment(zephui::kAlignRight);
    label->UI_Show(true);
    ChildPushBack(label);

    list = new zephui::UI_ListBox(false, false, false);
    list->Init();
    float const listLeft = labelWidth + kColumnGap;
    list->UI_SetLocalRectF(RectF(listLeft, 0.0f, -listLeft, kClosedHeight));
    list->UI_SetLayoutBinding(zephui::kBindRightEdgeToParentRight);
    list->UI_Show(true);
    ChildPushBack(list);

    // Width 0 and height 0 at first: sizes taken from the far edge come out
    // negative, and the bindings add the parent's growth to them.
    editorBox = new zephui::UI_OutlineBox(RectF(0.0f, kClosedHeight - 1.0f, 0.0f, 0.0f));
    editorBox->UI_SetLayoutBinding(zephui::kBindRightEdgeToParentRight);
    editorBox->UI_SetLayoutsChildren(true);
    editorBox->UI_Show(false);
    ChildPushBack(editorBox);

    editArea = new UI_SubView(RectF(0.0f, 0.0f, 0.0f, -kButtonBarHeight));
    editArea->UI_SetLayoutBinding(zephui::kBindRightEdgeToParentRight);
    editArea->UI_SetLayoutsChildren(true);
    editArea->UI_Show(true);
    editorBox->ChildPushBack(editArea);

    UI_SubViewPtr const buttons(
        new UI_SubView(RectF(0.0f, -kButtonBarHeight, 0.0f, kButtonBarHeight)));
    buttons->UI_SetLayoutBinding(zephui::kBindTopEdgeToParentBottom |
                                 zephui::kBindRightEdgeToParentRight |
                                 zephui::kBindBottomEdgeToParentBottom);
    buttons->UI_SetLayoutsChildren(true);
    buttons->UI_Show(true);
    editorBox->ChildPushBack(buttons);

    auto callback = [this](auto member)
    {
        auto holder = boost::make_shared<boost::function<void(Message*)>>(member);
        messageCallbacks.push_back(holder);
        return holder;
    };
    if (!readOnly)
    {
        auto insert = MakeButton("$$$/zephmetadataui/ArrayControl/Array/Insert=Insert", -255.0f);
        insert->NotifyWhenChanged(callback([this](Message* message) { InsertItem(message); }));
        buttons->ChildPushBack(insert);
        auto remove = MakeButton("$$$/zephmetadataui/ArrayControl/Array/Delete=Delete", -170.0f);
        remove->NotifyWhenChanged(callback([this](Message*) { DeleteItem(); }));
        buttons->ChildPushBack(remove);
    }
    auto close = MakeButton("$$$/zephmetadataui/ArrayControl/Close=Close", -85.0f);
    close->NotifyWhenChanged(callback([this](Message*) { CloseEditor(); }));
    buttons->ChildPushBack(close);

    if (auto const entry = zephmetadata::PathEntryDefinition(value))
    {
        if (auto const elementType = zephmetadata::ElementTypeIdOf(*entry))
            itemType = zephmetadata::TypeIdDefinition(*elementType);
    }
    if (value.provider)
    {
        auto const changed = boost::make_shared<boost::function<void(__XMPMeta__*)>>(
            [this](__XMPMeta__*) { RefreshList(); });
        metadataCallbacks.push_back(changed);
        value.provider->NotifyWhenMetaDataChanged(changed);
    }
    list->SetItemSelectedCallback(callback([this](Message*) { ItemSelected(); }));
    itemChanged = callback([this](Message*) { ItemValueChanged(); });
    RefreshList();
}

ArrayControl::~ArrayControl()
{
    // Cut loose first: the removal below is told to the provider's listeners.
    for (auto const& holder : metadataCallbacks)
        holder->clear();
    for (auto const& holder : sizeChangedCallbacks)
        holder->clear();
    for (auto const& holder : messageCallbacks)
        holder->clear();
    metadataCallbacks.clear();
    sizeChangedCallbacks.clear();
    if (value.provider)
    {
        // An array whose items were all deleted is not left behind empty.
        MetaDataUpdateAccess access(value.provider);
        if (HasValue(*access, value) && zephmetadata::CountArrayItems(*access, value) == 0 &&
            DeleteValue(*access, value))
            access.AddChange(value);
    }
}

void ArrayControl::SetLabel(UTF16String const& text, UTF16String const& toolTip)
{
    if (text.empty())
        return;
    UTF16String shown = text;
    if (shown.back() != u16(':'))
        shown += u16(':');
    label->SetValue(shown);
    label->UI_SetToolTip(toolTip, kToolTipWidth);
}

void ArrayControl::UpdateHeight()
{
    RectF const rect = UI_GetLocalRectF(true);
    float height = kClosedHeight;
    if (editorBox->UI_IsShown())
        height += editorBox->UI_GetLocalRectF(false).height;
    UI_SetLocalRectF(RectF(rect.left, rect.top, rect.width, height));
}

void ArrayControl::AddSizeChangedCallback(
    boost::shared_ptr<boost::function<void()>> const& callback)
{
    if (callback)
        sizeChangedCallbacks.push_back(callback);
}

void ArrayControl::SetLabelWidth(float width)
{
    if (width == labelWidth)
        return;
    labelWidth = std::max(width, kMinimumLabelWidth);
    RectF labelRect = label->UI_GetLocalRectF(true);
    labelRect.width = labelWidth;
    label->UI_SetLocalRectF(labelRect);
    RectF listRect = list->UI_GetLocalRectF(true);
    float const right = listRect.GetRight();
    listRect.left = labelRect.left + labelWidth + kColumnGap;
    listRect.width = right - listRect.left;
    list->UI_SetLocalRectF(listRect);
}

float ArrayControl::MeasureLabelWidth(zephui::Drawbot* drawbot)
{
    return std::ceil(label->UI_GetRecommendedSize(drawbot).x);
}

UTF16String ArrayControl::ItemText(Path const& path) const
{
    // Every item of the array has the array's item type.
    auto const type = itemType ? itemType : zephmetadata::TypeEntryDefinition(path);
    MetaDataReadAccess const access(value.provider);
    return TextOfItem(*access, path, type.get());
}

int ArrayControl::FirstSelected() const
{
    std::set<int> const selected = list->GetSelectedItems();
    return selected.empty() ? -1 : *selected.begin();
}

void ArrayControl::RefreshList()
{
    if (value.schemaNamespace.empty() || value.propertyName.empty() || !value.provider)
        return;
    int const noted = FirstSelected();
    int count = 0;
    {
        MetaDataReadAccess const access(value.provider);
        count = zephmetadata::CountArrayItems(*access, value);
    }
    {
        // Thousands of lines are placed once, not once each.
        zephui::UI_ListBox::ScDeferLayout const oneLayout(*list);
        list->ClearItems();
        if (count == 0)
        {
            list->AppendItem(OnlyMark(kNoItemsMark));
            return;
        }
        for (int i = 1; i <= count; ++i)
            list->AppendItem(LineText(ItemText(zephmetadata::CreatePathFromArrayItem(value, i))));
    }
    list->GetScrollView()->ScrollIntoView(RectF());
    if (noted >= 0)
        list->SelectItem(noted < count ? noted : 0, true);
}

void ArrayControl::ItemSelected()
{
    int count = 0;
    {
        MetaDataReadAccess const access(value.provider);
        count = zephmetadata::CountArrayItems(*access, value);
    }
    int const index = FirstSelected();
    if (index < 0)
        return;
    if (count == 0)
    {
        // Selecting the placeholder line makes the array's first item.
        MetaDataUpdateAccess const access(value.provider);
        zephmetadata::AddArrayItem(*access, value, 0);
        count = 1;
    }
    if (index >= count)
        return;
    bool const wasShown = editorBox->UI_IsShown();
    bool show = true;
    if (index == editedIndex)
        show = !wasShown;
    else
    {
        ShowEditor(index);
        editedIndex = index;
    }
    if (show != wasShown)
    {
        editorBox->UI_Show(show);
        TellSizeChanged();
    }
}

void ArrayControl::ShowEditor(int index)
{
    Path const itemPath = zephmetadata::CreatePathFromArrayItem(value, index + 1);
    std::vector<boost::shared_ptr<ViewItem>> items;
    if (itemType && zephmetadata::IsSimpleType(*itemType))
        items.push_back(boost::make_shared<ViewItem>(itemPath));
    else if (itemType && zephmetadata::IsStructType(*itemType))
    {
        for (auto const& field : itemType->fields)
            items.push_back(boost::make_shared<ViewItem>(
                zephmetadata::CreatePathFromStructureField(itemPath, field)));
    }
    if (readOnly)
    {
        for (auto const& item : items)
            item->SetHint("readOnly", "true");
    }

    editArea->DeleteChildren();
    table = boost::make_shared<TableLayout>(editArea);
    MetadataViewBuilder builder(value.provider, UI_GetDrawSupplier(), value, table);
    builder.SetChangeCallback(itemChanged);
    for (auto const& item : items)
        builder.AddViewItem(item);
    builder.EndView();

    RectF box = editorBox->UI_GetLocalRectF(true);
    box.height = editArea->UI_GetLocalRectF(false).height + kButtonBarHeight;
    editorBox->UI_SetLocalRectF(box);
}

void ArrayControl::ItemValueChanged()
{
    int const index = FirstSelected();
    if (index < 0)
        return;
    zephui::UI_ListBoxItem* line = list->GetItem(index);
    if (!line)
        return;
    line->GetItemLabel()->SetValue(
        LineText(ItemText(zephmetadata::CreatePathFromArrayItem(value, index + 1))));
}

void ArrayControl::InsertItem(Message* message)
{
    auto* button = dynamic_cast<UI_ButtonChangedMessage*>(message);
    int const selected = FirstSelected();
    if (selected < 0)
    {
        {
            MetaDataUpdateAccess const access(value.provider);
            zephmetadata::AddArrayItem(*access, value, -1);
        }
        list->AppendItem(OnlyMark(kItemMark));
        list->SelectItem(list->CountItems() - 1, true);
        return;
    }
    int place = selected;
    if (!button || !button->GetModKeys().IsAnySet(kInsertBeforeModifier))
        ++place;
    {
        MetaDataUpdateAccess const access(value.provider);
        zephmetadata::AddArrayItem(*access, value, place);
    }
    list->InsertItem(place, OnlyMark(kItemMark));
    list->SelectItem(place, true);
}

void ArrayControl::DeleteItem()
{
    int const index = FirstSelected();
    if (index < 0)
        return;
    {
        MetaDataUpdateAccess access(value.provider);
        if (zephmetadata::DeleteArrayItem(*access, value, index))
            access.AddChange(value);
    }
    list->RemoveItem(index);
    editedIndex = -1;
    if (list->CountItems() == 0)
    {
        list->AppendItem(OnlyMark(kNoItemsMark));
        list->SelectItem(0, true);
    }
    else if (index == list->CountItems())
        list->SelectItem(index - 1, true);
    else
        list->SelectItem(index, true);
}

void ArrayControl::CloseEditor()
{
    if (!editorBox->UI_IsShown())
        return;
    editorBox->UI_Show(false);
    TellSizeChanged();
}

void ArrayControl::TellSizeChanged()
{
    // A copy: a callback may add or empty holders.
    auto const callbacks = sizeChangedCallbacks;
    for (auto const& callback : callbacks)
    {
        if (callback && *callback)
            (*callback)();
    }
}

} // namespace zephmetadataui::layout

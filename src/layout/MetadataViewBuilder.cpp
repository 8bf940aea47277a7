// The builder's frame and the rows that show a value. Items without a value
// are built in MetadataViewBuilderItems.cpp.
#include "zephmetadataui/MetadataViewBuilder.h"

#include "binding/ControlStatusPrivate.h"
#include "contracts/Model.h"
#include "contracts/Toolkit.h"
#include "layout/LayoutText.h"
#include "zephmetadataui/ArrayControl.h"
#include "zephmetadataui/ControlFactory.h"

#include <zephui/UI_ScrollView.h>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>

namespace zephmetadataui::layout
{

using zephmetadata::ViewItem;
using ViewItemPtr = boost::shared_ptr<ViewItem>;

MetadataViewBuilder::MetadataViewBuilder(boost::shared_ptr<MetaDataProvider> provider,
                                         SupplierInterface const* supplier)
    : provider(std::move(provider)), supplier(supplier)
{
    boost::intrusive_ptr<zephui::UI_ScrollView> const scroll(new zephui::UI_ScrollView);
    scroll->UI_SetLocalRectF(RectF(0.0f, 0.0f, kDefaultMinimumWidth, 0.0f));
    scroll->GetContentView()->UI_SetLayoutsChildren(true);
    table = boost::make_shared<TableLayout>(scroll);
    table->delegate = ScrollViewLayoutDelegate::Shared();
    table->SetMargins(0xff);
}

MetadataViewBuilder::MetadataViewBuilder(boost::shared_ptr<MetaDataProvider> provider,
                                         SupplierInterface const* supplier, Path path,
                                         TableLayoutPtr existing)
    : provider(std::move(provider)), supplier(supplier), basePath(std::move(path)),
      table(std::move(existing))
{
    RectF const rect = table->view->UI_GetLocalRectF(true);
    if (rect.width == 0.0f)
        table->view->UI_SetLocalRectF(
            RectF(rect.left, rect.top, kDefaultMinimumWidth, rect.height));
    table->SetMargins(0xff);
}

void MetadataViewBuilder::BeginView(zephmetadata::ViewDefinition& definition)
{
    hideEmptyValues = definition.hideEmptyValues;
}

bool MetadataViewBuilder::EndView()
{
    if (table->RowCount() == 0)
        return false;
    table->CalculateLabelWidths([this](LayoutItem const& item) { return MeasureLabelWidth(item); });
    table->DoLayout();
    return true;
}

bool MetadataViewBuilder::AddViewItem(ViewItemPtr const& item)
{
    return AddItemTo(item, *table);
}

void MetadataViewBuilder::SetMargins(unsigned char flags)
{
    table->SetMargins(flags);
}

void MetadataViewBuilder::SetMinimumWidth(float width)
{
    minimumWidth = std::max(width, kDefaultMinimumWidth);
}

bool MetadataViewBuilder::AddItemTo(ViewItemPtr const& item, TableLayout& target)
{
    if (!item)
        return false;
    RowItemPtr const row = BuildItem(item);
    if (!row)
        return false;
    target.AddRow(row);
    ++itemCount;
    return true;
}

RowItemPtr MetadataViewBuilder::BuildItem(ViewItemPtr const& item)
{
    Path const& path = item->GetPath();
    if (!path.schemaNamespace.empty() && !path.propertyName.empty())
        return BuildValueRow(item);
    return BuildFormatItem(item);
}

namespace
{

bool IsInlineElementTypeId(UTF8String const& id)
{
    boost::optional<PrimitiveType> primitive = zephmetadata::PrimitiveTypeIdAsPrimitiveType(id);
    if (!primitive)
    {
        if (auto const type = zephmetadata::TypeIdDefinition(id))
            primitive = type->primitiveType;
    }
    if (!primitive)
        return false;
    switch (*primitive)
    {
    case kPrimitiveInteger:
    case kPrimitiveReal:
    case kPrimitiveBoolean:
        return true;
    case kPrimitiveText:
        return id != ToUTF8("date");
    default:
        return false;
    }
}

// The path, or a value below it, is in the set.
bool IsIncluded(std::set<Path> const& paths, Path const& path)
{
    for (auto it = paths.lower_bound(path); it != paths.end(); ++it)
    {
        if (it->schemaNamespace != path.schemaNamespace ||
            it->propertyName.compare(0, path.propertyName.size(), path.propertyName) != 0)
            return false;
        if (it->propertyName.size() == path.propertyName.size() ||
            it->propertyName[path.propertyName.size()] == '/' ||
            it->propertyName[path.propertyName.size()] == '[')
            return true;
    }
    return false;
}

} // namespace

RowItemPtr MetadataViewBuilder::BuildValueRow(ViewItemPtr const& item)
{
    Path const& path = item->GetPath();
    if (includedPaths && !IsIncluded(*includedPaths, path))
        return RowItemPtr();
    auto const entry = zephmetadata::PathEntryDefinition(path);
    if (!entry)
        return RowItemPtr();
    boost::optional<PrimitiveType> const primitive = zephmetadata::PrimitiveTypeOfPath(path);
    if (!primitive)
        return BuildStructureRow(item);
    if (*primitive == kPrimitiveUnorderedArray || *primitive == kPrimitiveOrderedArray)
    {
        boost::optional<UTF8String> const elementType = zephmetadata::ElementTypeIdOf(*entry);
        if (item->format == ToUTF8("array") ||
            (elementType && !IsInlineElementTypeId(*elementType)))
            return BuildArrayRow(item);
        // Otherwise a list of simple values is edited as one text.
    }

    Value const value(path, provider);
    bool const readOnly = item->GetHint("readOnly") == ToUTF8("true");
    bool const shownReadOnly = readOnly || path.readOnly;
    if (hideEmptyValues && shownReadOnly)
    {
        MetaDataReadAccess const access(provider);
        UTF8String text;
        if (!GetValue(*access, path, text, nullptr))
            return RowItemPtr();
    }

    auto row = boost::make_shared<RowItem>();
    row->SetItem(0, MakeLabelItem(item->GetLabel(), item->GetDescription()));

    UTF8String const format = item->GetHint("format");
    if (format.empty() || !shownReadOnly)
    {
        boost::shared_ptr<Control> const control =
            ControlFactory(value, item, UI_NodePtr(), readOnly, changeCallback);
        if (control && control->view)
        {
            // The label bears the row's tool tip.
            control->view->UI_SetToolTip(UTF16String(), kToolTipWidth);
            auto const valueItem = boost::make_shared<LayoutItem>(control);
            InitialSize(*valueItem);
            row->SetItem(1, valueItem);
        }
    }
    else
    {
        UTF8String text;
        bool read = false;
        {
            MetaDataReadAccess const access(provider);
            read = GetValue(*access, path, text, nullptr);
        }
        if (read && !text.empty())
        {
            UTF16String const shown =
                zephcore::ReplaceInString(Localized(format), DisplayText(*item, text));
            row->SetItem(1, MakeTextItem(shown, true));
        }
    }

    UTF8String const hint = item->GetHint("hint");
    if (!hint.empty())
    {
        auto const note = boost::make_shared<ViewItem>("note");
        note->SetHint("type", "_hint_");
        note->hints[ToUTF8("message")] = hint;
        if (RowItemPtr const noteRow = BuildItem(note))
        {
            auto const pair = boost::make_shared<TableLayout>();
            pair->SetMargins(0);
            pair->alignment = kLabelColumnShared;
            pair->AddRow(row);
            pair->AddRow(noteRow);
            row = boost::make_shared<RowItem>();
            row->SetItem(0, boost::make_shared<LayoutItem>(pair));
        }
    }
    return row;
}

RowItemPtr MetadataViewBuilder::BuildStructureRow(ViewItemPtr const& item)
{
    if (item->format.empty())
    {
        item->format = ToUTF8("section");
        item->SetHint("type", "_struct_");
    }
    bool const readOnly = item->GetHint("readOnly") == ToUTF8("true");
    if (item->items.empty())
    {
        for (Path const& field : zephmetadata::ChildPaths(item->GetPath()))
        {
            auto const child = boost::make_shared<ViewItem>(field);
            if (readOnly)
                child->SetHint("readOnly", "true");
            item->AddItem(child);
        }
    }
    return BuildFormatItem(item);
}

RowItemPtr MetadataViewBuilder::BuildArrayRow(ViewItemPtr const& item)
{
    Path const& path = item->GetPath();
    auto const entry = zephmetadata::PathEntryDefinition(path);
    boost::optional<UTF8String> const elementType =
        entry ? zephmetadata::ElementTypeIdOf(*entry) : boost::none;
    if (!elementType || !zephmetadata::TypeIdDefinition(*elementType))
        return RowItemPtr();

    bool const writable =
        (!path.readOnly && !zephmetadata::IsXMPWritingDisabled() && provider &&
         provider->QueryPathStatus(path, kPathStatusWritable) && HasEditableType(path)) ||
        IsAllMetadataForcedWritable();
    boost::intrusive_ptr<ArrayControl> const array(
        new ArrayControl(Value(path, provider), !writable));
    array->UI_SetLocalRectF(RectF(0.0f, 0.0f, 300.0f, 300.0f));
    array->SetLabel(item->GetLabel(), item->GetDescription());
    array->UpdateHeight();

    // The editor box opening or closing changes the height of the whole form.
    boost::weak_ptr<TableLayout> const root = table;
    ArrayControl* const raw = array.get();
    array->AddSizeChangedCallback(boost::make_shared<boost::function<void()>>(
        [raw, root]
        {
            raw->UpdateHeight();
            if (TableLayoutPtr const rootTable = root.lock())
                rootTable->DoLayout();
        }));

    auto const arrayItem = boost::make_shared<LayoutItem>(UI_SubViewPtr(array));
    arrayItem->kind = 2;
    arrayItem->labelWidthChanged = [raw](float width) { raw->SetLabelWidth(width); };
    // The array editor draws its own label, aligned with the others.
    auto row = boost::make_shared<RowItem>();
    row->SetItem(0, arrayItem);
    return row;
}

LayoutItemPtr MetadataViewBuilder::MakeLabelItem(UTF16String const& text,
                                                 UTF16String const& toolTip)
{
    UTF16String shown = text;
    if (!text.empty() && text.find(u16(':')) == UTF16String::npos)
        shown = zephcore::ZString("$$$/metadataui/format/LabelWithColon=@0:", text);
    boost::intrusive_ptr<UI_StaticText> const label(new UI_StaticText(shown));
    label->SetAlignment(zephui::kAlignRight);
    label->UI_SetToolTip(toolTip, kToolTipWidth);
    return boost::make_shared<LayoutItem>(UI_SubViewPtr(label));
}

void MetadataViewBuilder::PlaceTextHeight(UI_SubView* view, RectF& rect, bool lower)
{
    auto* text = dynamic_cast<UI_StaticText*>(view);
    if (!text)
        return;
    zephui::UI_TextLayout const measured = text->GetTextLayout(rect.width);
    rect.height = std::ceil(measured.GetInitialSize().y);
    if (measured.GetIsMultiline() && lower)
        rect.top += 2.0f;
}

UTF16String MetadataViewBuilder::DisplayText(ViewItem& item, UTF8String const& raw) const
{
    if (item.choices.empty())
    {
        if (auto const entry = zephmetadata::PathEntryDefinition(item.GetPath()))
        {
            if (!entry->choices.empty())
                item.choices = entry->choices;
            else if (entry->typeId)
            {
                if (auto const type = zephmetadata::TypeIdDefinition(*entry->typeId))
                    item.choices = type->choices;
            }
        }
    }
    for (auto const& choice : item.choices)
    {
        if (choice && choice->value == raw)
            return choice->label;
    }
    return zephcore::UTF8to16(raw);
}

zephui::PointF MetadataViewBuilder::RecommendedSize(UI_Node* view) const
{
    if (!supplier || !view)
        return PointF();
    Drawbot drawbot(supplier);
    PointF const size = view->UI_GetRecommendedSize(&drawbot);
    return PointF(std::ceil(size.x), std::ceil(size.y));
}

float MetadataViewBuilder::MeasureLabelWidth(LayoutItem const& item) const
{
    if (!item.view)
        return 0.0f;
    if (item.kind == 2)
    {
        auto* array = dynamic_cast<ArrayControl*>(item.view.get());
        if (!array || !supplier)
            return 0.0f;
        Drawbot drawbot(supplier);
        return std::ceil(array->MeasureLabelWidth(&drawbot));
    }
    return RecommendedSize(item.view.get()).x;
}

void MetadataViewBuilder::InitialSize(LayoutItem& item) const
{
    PointF const recommended = RecommendedSize(item.view.get());
    float const height = std::max(item.view->UI_GetLocalRectF(false).height, recommended.y);
    if (height > 0.0f)
        item.view->UI_SetLocalRectF(RectF(0.0f, 0.0f, 0.0f, height));
    // A popup keeps its measured width instead of stretching with the row.
    if (dynamic_cast<UI_Popup*>(item.view.get()))
        item.fixedWidth = std::max(recommended.x, kMinimumPopupWidth);
}

} // namespace zephmetadataui::layout

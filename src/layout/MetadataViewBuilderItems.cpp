// The items of a view definition that have no value of their own: they
// group (sections, whole schemas), explain (notes), combine (formatters) or
// divide (separators).
#include "zephmetadataui/MetadataViewBuilder.h"

#include "contracts/Model.h"
#include "contracts/Toolkit.h"
#include "layout/LayoutText.h"

#include <zephui/UI_Divider.h>
#include <zephui/UI_OutlineBox.h>
#include <zephui/UI_SectionView.h>
#include <zephui/UI_StaticImage.h>

#include <boost/bind/bind.hpp>
#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>

namespace zephmetadataui::layout
{

using zephmetadata::ViewItem;
using ViewItemPtr = boost::shared_ptr<ViewItem>;

namespace
{

constexpr float kSectionSpace = 10.0f;
constexpr float kRuleHeight = 2.0f;
constexpr float kHeadingHeight = 21.0f;
constexpr float kHeadingWidth = 400.0f;
constexpr float kIconSize = 20.0f;
constexpr float kIconSpace = 25.0f;
constexpr char const* kNoteMessageID = "note_message";

bool Is(UTF8String const& text, char const* word)
{
    return text == ToUTF8(word);
}

LayoutItemPtr MakeRuleItem()
{
    auto rule = boost::make_shared<LayoutItem>(
        UI_SubViewPtr(new zephui::UI_Divider(RectF(0.0f, 0.0f, 0.0f, kRuleHeight))));
    rule->kind = 2;
    return rule;
}

RowItemPtr RowWith(int column, LayoutItemPtr const& item)
{
    auto row = boost::make_shared<RowItem>();
    row->SetItem(column, item);
    return row;
}

void SupplyInfoImage(ConstMessage* message)
{
    auto* supply = dynamic_cast<UI_PictureSupplyMessage*>(message);
    if (!supply)
        return;
    std::string name = "SP_Info_Sm_N";
    if (GetIconType() == 2)
        name += "_D";
    supply->SetImage(UI_NodeManager::Get()->GetImage(supply->GetDrawSupplier(), name));
}

// Closing a collapsable section collapses its table and lays the form out
// again. The root's rows hold the section's table: while the root lives, so
// does the section.
struct CollapseLink
{
    boost::weak_ptr<TableLayout> root;
    TableLayout* section = nullptr;
    zephui::UI_SectionView* view = nullptr;

    void Run() const
    {
        if (TableLayoutPtr const rootTable = root.lock())
        {
            section->collapsed = !view->GetOpened();
            rootTable->DoLayout();
        }
    }
};

// A note is at least as tall as its icon, and as tall as its wrapped text.
void PlaceNote(UI_SubView* view, RectF& rect)
{
    rect.height = view->UI_GetLocalRectF(false).height;
    view->UI_SetLocalRectF(rect);
    UI_Node* message = view->UI_ChildGetFromID(kNoteMessageID);
    auto* text = dynamic_cast<UI_SubView*>(message);
    if (!text)
        return;
    RectF own = text->UI_GetLocalRectF(true);
    MetadataViewBuilder::PlaceTextHeight(text, own, false);
    text->UI_SetLocalRectF(own);
    rect.height = std::max(kIconSize, own.height);
}

} // namespace

UTF16String Localized(UTF8String const& key)
{
    return zephcore::Localizer::Get().GetString(key);
}

LayoutItemPtr MakeTextItem(UTF16String const& text, bool lower)
{
    boost::intrusive_ptr<UI_StaticText> const view(new UI_StaticText(text));
    auto item = boost::make_shared<LayoutItem>(UI_SubViewPtr(view));
    item->placeFunction = [lower](UI_SubView* placed, RectF& rect)
    { MetadataViewBuilder::PlaceTextHeight(placed, rect, lower); };
    return item;
}

RowItemPtr MetadataViewBuilder::BuildFormatItem(ViewItemPtr const& item)
{
    UTF8String const& format = item->format;
    if (Is(format, "separator"))
        return BuildSeparator();
    if (Is(format, "section"))
        return BuildSection(item);
    if (Is(format, "note"))
        return BuildNote(item);
    if (Is(format, "formatter"))
        return BuildFormatter(item);
    if (Is(format, "schema"))
        return BuildSchema(item);
    return RowItemPtr();
}

RowItemPtr MetadataViewBuilder::BuildSeparator()
{
    // A form does not open with a rule.
    if (hideEmptyValues && itemCount == 0)
        return RowItemPtr();
    return RowWith(0, MakeRuleItem());
}

void MetadataViewBuilder::AddSectionHeading(ViewItem const& item, TableLayout& section)
{
    UTF16String const title = item.GetLabel();
    if (title.empty())
    {
        // Only a section that follows others is set off by a rule.
        if (itemCount != 0)
            section.AddItem(0, MakeRuleItem());
        return;
    }
    auto row = boost::make_shared<RowItem>();
    row->SetItem(0, boost::make_shared<LayoutItem>(UI_SubViewPtr(
                        new zephui::UI_Divider(RectF(0.0f, 0.0f, 0.0f, kRuleHeight)))));

    UI_SubViewPtr const line(new UI_SubView(RectF(0.0f, 0.0f, kHeadingWidth, kHeadingHeight)));
    line->UI_SetLayoutsChildren(true);
    line->UI_SetLayoutBinding(zephui::kBindRightEdgeToParentRight);
    boost::intrusive_ptr<UI_StaticText> const text(new UI_StaticText(title));
    text->SetFontStyleName("Bold");
    text->UI_SetToolTip(item.GetDescription(), kToolTipWidth);
    PointF const size = RecommendedSize(text.get());
    text->UI_SetLocalRectF(RectF(0.0f, 0.0f, size.x, size.y));
    text->UI_Show(true);
    line->ChildPushBack(text);
    float const ruleLeft = size.x + kSectionSpace;
    boost::intrusive_ptr<zephui::UI_Divider> const rule(
        new zephui::UI_Divider(RectF(ruleLeft, 9.0f, kHeadingWidth - ruleLeft, kRuleHeight)));
    rule->UI_SetLayoutBinding(zephui::kBindRightEdgeToParentRight);
    rule->UI_Show(true);
    line->ChildPushBack(rule);
    row->SetItem(1, boost::make_shared<LayoutItem>(line));
    section.AddRow(row);
}

RowItemPtr MetadataViewBuilder::BuildSection(ViewItemPtr const& item)
{
    UTF8String type = item->GetHint("type");
    if (type.empty())
        type = ToUTF8("header");

    TableLayoutPtr section;
    boost::intrusive_ptr<zephui::UI_SectionView> collapsable;
    if (Is(type, "simple") || Is(type, "labeled") || Is(type, "labelled"))
    {
        section = boost::make_shared<TableLayout>(UI_SubViewPtr(new zephui::UI_OutlineBox));
        section->alignment = Is(type, "simple") ? kLabelColumnGroup : kLabelColumnOwn;
    }
    else if (Is(type, "collapsable"))
    {
        collapsable = new zephui::UI_SectionView(item->GetLabel());
        collapsable->SetDisclosureTriangleWantsFocus(true);
        section = boost::make_shared<TableLayout>(collapsable);
        section->alignment = kLabelColumnGroup;
        section->delegate = SectionViewLayoutDelegate::Shared();
    }
    else if (Is(type, "header") || Is(type, "_struct_"))
    {
        section = boost::make_shared<TableLayout>();
        section->SetMargins(0);
        section->alignment = kLabelColumnShared;
    }
    else
        return RowItemPtr();

    std::size_t headingRows = 0;
    if (Is(type, "header"))
    {
        AddSectionHeading(*item, *section);
        headingRows = section->RowCount();
    }
    for (ViewItemPtr const& child : item->items)
        AddItemTo(child, *section);
    if (section->RowCount() == headingRows)
        return RowItemPtr();

    if (Is(type, "labeled") || Is(type, "labelled"))
    {
        auto row = boost::make_shared<RowItem>();
        row->SetItem(0, MakeLabelItem(item->GetLabel(), item->GetDescription()));
        row->SetItem(1, boost::make_shared<LayoutItem>(section));
        row->spaceBefore = kSectionSpace;
        return row;
    }
    if (collapsable)
    {
        auto const link = boost::make_shared<CollapseLink>();
        link->root = table;
        link->section = section.get();
        link->view = collapsable.get();
        collapsable->AddOpenedStateChangedCallback(
            boost::make_shared<boost::function<void()>>(boost::bind(&CollapseLink::Run, link)));
    }
    if (Is(type, "header"))
    {
        auto row = RowWith(0, boost::make_shared<LayoutItem>(section));
        row->spaceBefore = kSectionSpace;
        return row;
    }
    if (Is(type, "_struct_") && !Is(item->GetHint("style"), "noHeader"))
    {
        auto box = boost::make_shared<TableLayout>(UI_SubViewPtr(new zephui::UI_OutlineBox));
        box->SetMargins(0xf);
        box->alignment = kLabelColumnShared;
        boost::intrusive_ptr<UI_StaticText> const label(new UI_StaticText(item->GetLabel()));
        label->UI_SetToolTip(item->GetDescription(), kToolTipWidth);
        box->AddItem(1, boost::make_shared<LayoutItem>(UI_SubViewPtr(label)));
        box->AddTable(section);
        return RowWith(0, boost::make_shared<LayoutItem>(box));
    }
    return RowWith(0, boost::make_shared<LayoutItem>(section));
}

RowItemPtr MetadataViewBuilder::BuildNote(ViewItemPtr const& item)
{
    bool const isHint = Is(item->GetHint("type"), "_hint_");
    UTF8String const message = item->GetHint("message");
    UTF8String icon = item->GetHint("icon");
    UTF8String fontSize = item->GetHint("fontSize");
    if (fontSize.empty())
        fontSize = ToUTF8("normal");
    int column = 0, kind = 2;
    if (isHint)
    {
        icon = ToUTF8("info");
        fontSize = ToUTF8("small");
        column = 1;
        kind = 1;
    }

    RectF const frame(0.0f, 0.0f, 100.0f, kHeadingHeight);
    UI_SubViewPtr const note(new UI_SubView(frame));
    note->UI_SetLayoutsChildren(true);
    RectF textRect = frame;
    if (!icon.empty())
    {
        boost::intrusive_ptr<zephui::UI_StaticImage> const image(new zephui::UI_StaticImage);
        image->UI_SetLocalRectF(RectF(0.0f, 0.0f, kIconSize, kIconSize));
        image->SetImageName("info");
        image->SetImageSupplyFunction(
            boost::make_shared<boost::function<void(ConstMessage*)>>(&SupplyInfoImage));
        image->UI_Show(true);
        note->ChildPushBack(image);
        textRect.left += kIconSpace;
        textRect.width -= kIconSpace;
    }
    boost::intrusive_ptr<UI_StaticText> const text(new UI_StaticText);
    text->UI_SetLocalRectF(textRect);
    text->UI_SetNodeID(kNoteMessageID);
    text->UI_SetLayoutBinding(zephui::kBindRightEdgeToParentRight);
    if (!message.empty())
        text->SetValue(Localized(message));
    if (Is(fontSize, "small"))
        text->SetCustomFontSize(text->GetFontSize() - 1.0f);
    else if (Is(fontSize, "large"))
        text->SetCustomFontSize(text->GetFontSize() + 2.0f);
    text->UI_Show(true);
    note->ChildPushBack(text);

    auto noteItem = boost::make_shared<LayoutItem>(note);
    noteItem->kind = kind;
    noteItem->placeFunction = &PlaceNote;
    auto row = RowWith(column, noteItem);
    if (isHint)
    {
        // A hint stands close under its value.
        row->spaceBefore = -3.0f;
        row->spaceAfter = 3.0f;
    }
    return row;
}

namespace
{

// The path whose boolean value gates a formatter; empty when there is none.
Path FormatterGatePath(ViewItem const& item)
{
    UTF8String const uri = item.GetHint("required_path_uri");
    if (uri.empty())
        return Path();
    Path gate =
        zephmetadata::PathForSchemaNameAndPropertyName(uri, item.GetHint("required_path_name"));
    UTF8String const fieldName = item.GetHint("required_path_field");
    if (fieldName.empty())
        return gate;
    auto const type = zephmetadata::TypeEntryDefinition(gate);
    if (!type)
        return gate;
    for (auto const& field : type->fields)
    {
        if (field && field->name == fieldName)
            return zephmetadata::CreatePathFromStructureField(gate, field);
    }
    return gate;
}

} // namespace

RowItemPtr MetadataViewBuilder::BuildFormatter(ViewItemPtr const& item)
{
    UTF8String const format = item->GetHint("format");
    MetaDataReadAccess const access(provider);
    Path gate;
    bool gated = false;
    if (format.empty())
    {
        gate = FormatterGatePath(*item);
        if (!gate.schemaNamespace.empty() && !gate.propertyName.empty())
        {
            bool on = false;
            gated = !GetValue(*access, gate, on, nullptr) || !on;
        }
    }

    std::vector<UTF16String> parts;
    for (ViewItemPtr const& child : item->items)
    {
        if (!child)
            continue;
        Path const& path = child->GetPath();
        if (!zephmetadata::PathEntryDefinition(path) || !zephmetadata::PrimitiveTypeOfPath(path))
            continue;
        if (gated && path != gate)
            continue;
        UTF8String raw;
        if (!GetValue(*access, path, raw, nullptr) || raw.empty())
            continue;
        UTF16String part = DisplayText(*child, raw);
        UTF8String const childFormat = child->GetHint("format");
        if (!childFormat.empty())
            part = zephcore::ReplaceInString(Localized(childFormat), part);
        parts.push_back(part);
    }

    // With no value at all a template would show only its units and signs
    // (" m", "° ()"): the text is empty then, as a plain join of nothing is.
    UTF16String text;
    if (!parts.empty() && format.empty())
    {
        UTF8String separator = item->GetHint("separator");
        if (separator.empty())
            separator = ToUTF8("$$$/metadataui/view/separator/default=;   ");
        UTF16String const between = Localized(separator);
        for (std::size_t i = 0; i < parts.size(); ++i)
            text += (i ? between : UTF16String()) + parts[i];
    }
    else if (!parts.empty())
    {
        // Markers without a value read as nothing.
        if (parts.size() < 10)
            parts.resize(10);
        text = zephcore::ReplaceInString(Localized(format), parts);
    }

    if (hideEmptyValues && text.empty())
        return RowItemPtr();
    auto row = boost::make_shared<RowItem>();
    row->SetItem(0, MakeLabelItem(item->GetLabel(), item->GetDescription()));
    row->SetItem(1, MakeTextItem(text, true));
    return row;
}

RowItemPtr MetadataViewBuilder::BuildSchema(ViewItemPtr const& item)
{
    auto const schema = zephmetadata::NamespaceDefinition(item->GetHint("namespace"));
    if (!schema)
        return RowItemPtr();
    item->format = ToUTF8("section");
    if (!Is(item->GetHint("style"), "noHeader"))
    {
        if (item->label.empty())
            item->label = zephcore::UTF16to8(schema->schemaText3);
        if (item->description.empty())
            item->description = zephcore::UTF16to8(schema->schemaText4);
    }
    bool const readOnly = Is(item->GetHint("readOnly"), "true");
    for (auto const& property : schema->properties)
    {
        auto const child = boost::make_shared<ViewItem>(
            zephmetadata::CreatePathFromSchemaProperty(schema, property));
        if (readOnly)
            child->SetHint("readOnly", "true");
        item->AddItem(child);
    }
    return BuildItem(item);
}

} // namespace zephmetadataui::layout

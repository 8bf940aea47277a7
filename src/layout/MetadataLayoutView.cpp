#include "zephmetadataui/MetadataLayoutView.h"

#include "contracts/Model.h"
#include "contracts/Toolkit.h"
#include "zephmetadataui/MetadataViewBuilder.h"

#include <zephmetadata/ViewDefinitions.h>
#include <zephui/UI_ScrollBar.h>
#include <zephui/UI_ScrollView.h>

#include <algorithm>
#include <vector>

namespace zephmetadataui
{

namespace
{

constexpr unsigned char kAllMargins = 0xff;
constexpr float kNoDataFontSize = 14.0f;
// A form is at least this wide, less the scroll bar and the margins around it.
constexpr float kFormWidth = 500.0f;
constexpr float kFormInsets = 26.0f;
// Room kept above and below a field that Tab brings into view.
constexpr float kFocusMargin = 5.0f;

UI_SubViewPtr MakeNoDataPanel()
{
    UI_SubViewPtr const panel(new UI_SubView);
    panel->UI_SetLayoutsChildren(true);
    boost::intrusive_ptr<UI_StaticText> const text(
        new UI_StaticText(zephcore::Localizer::Get().GetString(
            "$$$/zephmetadataui/MetadataLayoutView/NoData=No Data")));
    text->SetAlignment(zephui::kAlignCenter);
    text->SetCustomFontSize(kNoDataFontSize);
    text->UI_Show(true);
    PointF const size = text->UI_GetRecommendedSize(nullptr);
    text->UI_SetLocalRectF(RectF(0.0f, 0.0f, size.x, size.y));
    text->UI_SetLayoutBinding(zephui::kBindCenterHorizontal | zephui::kBindCenterVertical);
    panel->ChildPushBack(text);
    panel->UI_SetLocalRectF(RectF(0.0f, 0.0f, size.x, size.y));
    return panel;
}

void CollectFocusNodes(UI_Node* node, std::vector<UI_Node*>& found)
{
    if (!node->UI_IsShown() || node->UI_IsOwnDisabled())
        return;
    if (node->UI_WantsKeyboardFocusFromAdvance())
        found.push_back(node);
    for (std::size_t i = 0; i < node->ChildCount(); ++i)
        CollectFocusNodes(node->ChildGet(i), found);
}

// The node that Tab (or Shift+Tab) reaches from `from` inside `root`, in the
// order of the node tree, which is the order the focus chain follows.
UI_Node* NextFocusNode(UI_Node* root, UI_Node* from, bool forward)
{
    std::vector<UI_Node*> nodes;
    for (std::size_t i = 0; i < root->ChildCount(); ++i)
        CollectFocusNodes(root->ChildGet(i), nodes);
    auto const at = std::find_if(nodes.begin(), nodes.end(),
                                 [from](UI_Node* candidate)
                                 { return candidate == from || from->UI_IsChildOf(candidate); });
    if (at == nodes.end())
        return nullptr;
    if (forward)
        return at + 1 == nodes.end() ? nullptr : *(at + 1);
    return at == nodes.begin() ? nullptr : *(at - 1);
}

} // namespace

MetadataLayoutView::MetadataLayoutView(UTF8String const& name,
                                       boost::shared_ptr<MetaDataProvider> provider)
    : provider(std::move(provider)), viewDefinition(zephmetadata::GetViewDefinitionForName(name))
{
    Initialize();
}

MetadataLayoutView::MetadataLayoutView(boost::shared_ptr<zephmetadata::ViewDefinition> definition,
                                       boost::shared_ptr<MetaDataProvider> provider)
    : provider(std::move(provider)), viewDefinition(std::move(definition))
{
    Initialize();
}

void MetadataLayoutView::Initialize()
{
    margins = kAllMargins;
    UI_SetNodeID("MetadataLayoutView");
    UI_SetLayoutsChildren(true);
    UI_SetLayoutBinding(zephui::kBindRightEdgeToParentRight |
                        zephui::kBindBottomEdgeToParentBottom);
}

void MetadataLayoutView::Layout()
{
    SupplierInterface const* supplier = UI_GetDrawSupplier();
    if (!supplier)
        return;
    table.reset();
    DeleteChildren();

    layout::MetadataViewBuilder builder(provider, supplier);
    builder.SetMinimumWidth(kFormWidth - zephui::UI_ScrollBar::GetDefaultSize() - kFormInsets);
    builder.SetMargins(margins.Get());
    builder.SetIncludedPaths(filtered ? &includedPaths : nullptr);
    zephmetadata::BuildView(viewDefinition, builder);
    table = builder.GetTable();

    UI_SubViewPtr shown = table->RowCount() > 0 ? table->view : MakeNoDataPanel();
    // The form is built at the builder's width; it is placed at this view's,
    // and its rows laid out again there so that text wraps where it shows.
    shown->UI_SetLocalRectF(UI_GetLocalRectF(false));
    shown->UI_SetLayoutBinding(zephui::kBindRightEdgeToParentRight |
                               zephui::kBindBottomEdgeToParentBottom);
    ChildPushBack(shown);
    shown->UI_Show(true);
    if (table->RowCount() > 0)
        table->DoLayout();
}

void MetadataLayoutView::Relayout()
{
    if (table && table->RowCount() > 0)
        table->DoLayout();
}

void MetadataLayoutView::Refresh()
{
    table.reset();
    DeleteChildren();
    Layout();
}

void MetadataLayoutView::SetViewDefinition(
    boost::shared_ptr<zephmetadata::ViewDefinition> definition)
{
    if (!definition)
        return;
    viewDefinition = std::move(definition);
    Refresh();
}

void MetadataLayoutView::SetViewDefinitionByName(UTF8String const& name)
{
    if (!name.empty())
        SetViewDefinition(zephmetadata::GetViewDefinitionForName(name));
}

UTF8String MetadataLayoutView::GetViewName() const
{
    return viewDefinition ? viewDefinition->name : UTF8String();
}

UTF8String MetadataLayoutView::GetDisplayName() const
{
    return viewDefinition ? zephcore::UTF16to8(viewDefinition->GetLabel()) : UTF8String();
}

bool MetadataLayoutView::UI_DoKeyboardEvent(UI_Node* node, zephui::KeyboardEvent const& event)
{
    using zephui::KeyboardCode;
    KeyboardCode const tab(KeyboardCode::kKeyTab);
    bool const forward = event.CompareShortcut(tab, 0);
    bool const isTab =
        event.IsActionKeyDown() && (forward || event.CompareShortcut(tab, zephui::kModifierShift));
    auto* scroll = table ? dynamic_cast<zephui::UI_ScrollView*>(table->view.get()) : nullptr;
    if (!isTab || !node || !scroll)
        return UI_Node::UI_DoKeyboardEvent(node, event);
    // The focus moves on after this; the field it reaches is scrolled into
    // view first, with a margin above and below, so that a long form follows
    // the user tabbing through it.
    UI_SubViewPtr const content = scroll->GetContentView();
    if (UI_Node* next = NextFocusNode(content.get(), node, forward))
    {
        zephui::ScaleMatrixF const matrix =
            UI_Node::UI_GetSelfToSpecificParentMatrix(next, content.get());
        RectF rect = matrix.Transform(next->UI_GetLocalRectF(false));
        rect.top -= kFocusMargin;
        rect.height += 2.0f * kFocusMargin;
        scroll->ScrollIntoView(rect);
    }
    return UI_Node::UI_DoKeyboardEvent(node, event);
}

void MetadataLayoutView::UI_LayoutChildren(PointF const& oldSize, PointF const& newSize)
{
    UI_SubView::UI_LayoutChildren(oldSize, newSize);
}

void MetadataLayoutView::UI_NodeChanged()
{
    UI_SubView::UI_NodeChanged();
}

void MetadataLayoutView::UI_SizeChanged(RectF const& rect)
{
    UI_SubView::UI_SizeChanged(rect);
}

} // namespace zephmetadataui

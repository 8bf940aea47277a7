// The tree of the display preferences: schemas and properties as rows of
// checkboxes. includedPaths is the truth; checkboxes exist only for rows on
// screen, so every toggle works on the set first and then refreshes the
// boxes that exist.

#include "zephmetadataui/MetadataPreferencesDialog.h"

#include "binding/PathFilters.h"
#include "preferences/PreferencesPrivate.h"

#include <boost/make_shared.hpp>
#include <zephui/UI_Checkbox.h>
#include <zephui/UI_MultiColumnTreeRow.h>
#include <zephui/UI_ScrollBar.h>

#include <boost/range/empty.hpp>

#include <algorithm>

namespace zephmetadataui
{

using preferences::Text;
using zephmetadata::ChildPaths;
using zephmetadata::DescendantLeafPaths;

namespace
{
bool IsLeaf(Path const& path)
{
    return boost::empty(ChildPaths(path));
}
} // namespace

void MetadataPreferencesDialog::PrepareTree()
{
    if (!propertiesTree)
        return;
    propertiesTree->SetSupportUserSelectableRows(false);
    propertiesTree->SetNumberOfColumns(1);
    // 430 wide, or what the tree shows beside its scroll bar if that is less,
    // so the links at the column's right end stay in view.
    float const shown =
        propertiesTree->UI_GetLocalRectF().width - zephui::UI_ScrollBar::GetDefaultSize() - 2.0f;
    propertiesTree->SetColumnWidth(0, shown > 0.0f ? std::min(430.0f, shown) : 430.0f);
    visibilityCallback = boost::make_shared<boost::function<void(Row*)>>(
        [this](Row* row) { OnRowVisibilityChanged(row); });
    propertiesTree->SetRowVisibilityChangedCallback(visibilityCallback);
    Populate();
}

void MetadataPreferencesDialog::Populate()
{
    schemaRows.clear();
    propertyRows.clear();
    if (!propertiesTree)
        return;
    zephui::UI_MultiColumnTree::ScDeferLayoutForOpenAndCloseRow const defer(propertiesTree);
    propertiesTree->RemoveAllRows(false);
    for (SchemaDefinitionPtr const& schema : schemas)
    {
        if (!schema)
            continue;
        auto const leaves = DescendantLeafPaths(schema);
        if (!boost::empty(leaves) && std::none_of(leaves.begin(), leaves.end(),
                                                  [](Path const& p) { return IsShowablePath(p); }))
            continue;
        // During a search schema rows stay open, so that the hits show.
        RowPtr const row = propertiesTree->CreateAndAppendRow(RowPtr(), !searchText.empty(), false);
        row->SetSortKey(schema->label);
        schemaRows[row] = schema;
        for (Path const& path : ChildPaths(schema))
            AddPropertyRow(path, row);
        // An empty custom schema keeps its row, for its Add Property link.
        if ((!searchText.empty() || !schema->schemaFlag1) && row->CountChildRows() == 0)
        {
            schemaRows.erase(row);
            propertiesTree->RemoveRow(row, false, false, false);
        }
    }
    propertiesTree->SortTree();
}

void MetadataPreferencesDialog::AddPropertyRow(Path const& path, RowPtr const& parent)
{
    auto const entry = zephmetadata::PathEntryDefinition(path);
    if (!entry || !parent)
        return;
    bool const leaf = IsLeaf(path);
    if (leaf && !searchText.empty() &&
        zephcore::FoldCase(entry->label).find(searchText) == UTF16String::npos)
        return;
    if (!IsShowablePath(path))
        return;
    if (!showArrays && zephmetadata::IsPathAnArray(path, false))
        return;
    RowPtr const row = propertiesTree->CreateAndAppendRow(parent, false, false);
    row->SetSortKey(entry->label);
    propertyRows[row] = path;
    for (Path const& child : ChildPaths(path))
        AddPropertyRow(child, row);
    if (!leaf && row->CountChildRows() == 0)
    {
        propertyRows.erase(row);
        propertiesTree->RemoveRow(row, false, false, false);
    }
}

void MetadataPreferencesDialog::OnRowVisibilityChanged(Row* row)
{
    if (row && propertiesTree && propertiesTree->IsRowVisible(RowPtr(row)))
        BuildCell(row);
}

void MetadataPreferencesDialog::BuildCell(Row* row)
{
    UI_SubViewPtr const cell = row->GetCellView(0);
    if (!cell)
        return;
    cell->DeleteChildren();
    RowPtr const key(row);
    auto const schemaFound = schemaRows.find(key);
    auto const pathFound = propertyRows.find(key);
    SchemaDefinitionPtr schema;
    boost::shared_ptr<zephmetadata::EntryDefinition> entry;
    if (schemaFound != schemaRows.end())
        schema = schemaFound->second;
    else if (pathFound != propertyRows.end())
        entry = zephmetadata::PathEntryDefinition(pathFound->second);
    if (!schema && !entry)
        return;

    RectF const bounds = cell->UI_GetLocalRectF();
    float const top = (bounds.height - UI_Checkbox::GetDefaultCheckSize()) / 2.0f;
    boost::intrusive_ptr<UI_Checkbox> const box(
        new UI_Checkbox(schema ? schema->label : entry->label));
    box->UI_SetToolTip(schema ? schema->description : entry->description, 400.0f);
    box->UI_SetLocalRectF(
        RectF(3.0f, top, std::max(0.0f, bounds.width - 6.0f), bounds.height - top));
    box->UI_SetLayoutBinding(zephui::kBindRightEdgeToParentRight);
    auto const clicked = boost::make_shared<boost::function<void(Message*)>>(
        [this, row, schema,
         path = pathFound != propertyRows.end() ? pathFound->second : Path()](Message*)
        {
            if (schema)
                OnSchemaToggled(row, schema);
            else
                OnPathToggled(row, path);
        });
    box->NotifyWhenChanged(clicked);
    if (schema)
        SetSchemaCheckboxState(box.get(), schema);
    else
        SetPathCheckboxState(box.get(), pathFound->second);
    box->UI_Show(true);
    cell->ChildPushBack(box);

    // The links of custom schemas: a schema takes new properties, and a
    // property the user made can be deleted.
    zephui::UI_HotTextButtonPtr link;
    if (schema && schema->schemaFlag1)
    {
        link =
            new zephui::UI_HotTextButton(Text("$$$/zephmetadataui/dialogs/MetadataSettingsDialog/"
                                              "AddPropertyButton/Title=Add Property"));
        link->NotifyWhenChanged(boost::make_shared<boost::function<void(Message*)>>(
            [this, schema](Message*) { OnAddProperty(schema); }));
    }
    else if (!schema)
    {
        Path const& path = pathFound->second;
        auto const owner = zephmetadata::NamespaceDefinition(path.schemaNamespace);
        auto const property = boost::dynamic_pointer_cast<zephmetadata::PropertyDefinition>(entry);
        if (owner && owner->schemaFlag1 && property && property->userAdded)
        {
            link = new zephui::UI_HotTextButton(
                Text("$$$/zephmetadataui/dialogs/MetadataSettingsDialog/RemovePropertyButton/"
                     "Title=Delete"));
            link->NotifyWhenChanged(boost::make_shared<boost::function<void(Message*)>>(
                [this, path](Message*) { OnDeleteProperty(path); }));
        }
    }
    if (link)
    {
        PointF const size = link->UI_GetRecommendedSize(nullptr);
        link->UI_SetLocalRectF(
            RectF(bounds.width - size.x - 3.0f, (bounds.height - size.y) / 2.0f, size.x, size.y));
        link->UI_SetLayoutBinding(zephui::kBindLeftEdgeToParentRight |
                                  zephui::kBindRightEdgeToParentRight);
        link->SetWantsKeyboardFocus(false);
        link->UI_Show(true);
        cell->ChildPushBack(link);
    }
}

UI_Checkbox* MetadataPreferencesDialog::CheckboxOf(Row* row) const
{
    UI_SubViewPtr const cell = row ? row->GetCellView(0) : UI_SubViewPtr();
    if (!cell)
        return nullptr;
    for (std::size_t i = 0; i < cell->ChildCount(); ++i)
        if (auto* const box = dynamic_cast<UI_Checkbox*>(cell->ChildGet(i)))
            return box;
    return nullptr;
}

void MetadataPreferencesDialog::UpdateRowCheckbox(Row* row)
{
    UI_Checkbox* const box = CheckboxOf(row);
    if (!box)
        return;
    RowPtr const key(row);
    auto const schema = schemaRows.find(key);
    if (schema != schemaRows.end())
    {
        SetSchemaCheckboxState(box, schema->second);
        return;
    }
    auto const path = propertyRows.find(key);
    if (path != propertyRows.end())
        SetPathCheckboxState(box, path->second);
}

void MetadataPreferencesDialog::SetPathCheckboxState(UI_Checkbox* box, Path const& path) const
{
    if (!IsLeaf(path))
    {
        preferences::SetGroupCheckboxState(
            box, preferences::CountLeaves(DescendantLeafPaths(path), includedPaths));
        return;
    }
    if (mandatoryPaths.count(path) != 0)
    {
        box->SetValue(zephui::kCheckboxOn);
        box->SetDisabled(true);
        return;
    }
    box->SetValue(includedPaths.count(path) != 0 ? zephui::kCheckboxOn : zephui::kCheckboxOff);
}

void MetadataPreferencesDialog::SetSchemaCheckboxState(UI_Checkbox* box,
                                                       SchemaDefinitionPtr const& schema) const
{
    preferences::SetGroupCheckboxState(
        box, preferences::CountLeaves(DescendantLeafPaths(schema), includedPaths));
}

void MetadataPreferencesDialog::OnPathToggled(Row* row, Path path)
{
    // The click's box lives in the row's cell: hold the row for the call.
    RowPtr const held(row);
    if (IsLeaf(path))
    {
        if (includedPaths.count(path) != 0)
            includedPaths.erase(path);
        else
            includedPaths.insert(path);
    }
    else
        preferences::ToggleGroup(DescendantLeafPaths(path), includedPaths);
    UpdateRowCheckbox(row);
    SetDescendantCheckboxes(row);
    for (Row* ancestor = row->GetParentRow(); ancestor; ancestor = ancestor->GetParentRow())
        UpdateRowCheckbox(ancestor);
    SynchronizePopup();
}

void MetadataPreferencesDialog::OnSchemaToggled(Row* row, SchemaDefinitionPtr schema)
{
    RowPtr const held(row);
    preferences::ToggleGroup(DescendantLeafPaths(schema), includedPaths);
    // Nothing switches a mandatory path off, whichever schema holds it.
    includedPaths.insert(mandatoryPaths.begin(), mandatoryPaths.end());
    UpdateRowCheckbox(row);
    SetDescendantCheckboxes(row);
    SynchronizePopup();
}

void MetadataPreferencesDialog::SetDescendantCheckboxes(Row* row)
{
    for (std::size_t i = 0; i < row->CountChildRows(); ++i)
    {
        RowPtr const child = row->GetChildRow(i);
        UpdateRowCheckbox(child.get());
        SetDescendantCheckboxes(child.get());
    }
}

void MetadataPreferencesDialog::UpdateOpenedVisibleRows()
{
    if (!propertiesTree)
        return;
    for (RowPtr const& row : propertiesTree->GetOpenedRows())
        if (propertiesTree->IsRowVisible(row))
            UpdateRowCheckbox(row.get());
}

MetadataPreferencesDialog::RowPtr
MetadataPreferencesDialog::RowOfSchema(SchemaDefinitionPtr const& schema) const
{
    for (auto const& [row, rowSchema] : schemaRows)
        if (rowSchema == schema)
            return row;
    return RowPtr();
}

} // namespace zephmetadataui

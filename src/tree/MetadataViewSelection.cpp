// MetadataView as a chooser: the checkboxes of schema and path rows, the
// three-state summary of a group, forced paths, and equivalent paths that
// move together. selectedPaths is the truth; boxes exist only for rows that
// have been on screen, so every step works on the set first.

#include "tree/MetadataViewPrivate.h"
#include "zephmetadataui/MetadataView.h"

#include "zephmetadataui/MetadataViewCell.h"

#include "binding/PathFilters.h"
#include "contracts/Model.h"
#include "tree/TreeToolkit.h"

#include <boost/range/empty.hpp>

namespace zephmetadataui
{

namespace
{

struct GroupCounts
{
    std::size_t selected = 0;
    std::size_t showable = 0;
};

GroupCounts CountGroup(zephmetadata::IteratorRange<Path> const& leaves,
                       std::set<Path> const& selected)
{
    GroupCounts counts;
    for (Path const& leaf : leaves)
    {
        if (selected.count(leaf) != 0)
            ++counts.selected;
        if (IsShowablePath(leaf))
            ++counts.showable;
    }
    return counts;
}

void SetGroupState(UI_Checkbox* box, GroupCounts const& counts)
{
    if (counts.selected == 0)
        box->SetValue(0);
    else if (counts.selected == counts.showable)
        box->SetValue(1);
    else
        box->SetValueUnknown();
}

} // namespace

void MetadataView::SetPathCheckboxState(UI_Checkbox* box, Path const& path,
                                        std::set<Path> const& forced) const
{
    if (!box)
        return;
    if (boost::empty(zephmetadata::ChildPaths(path)))
    {
        if (forced.count(path) != 0)
        {
            box->UI_SetEnabled(false);
            box->SetValue(1);
        }
        else
            box->SetValue(selectedPaths.count(path) != 0 ? 1 : 0);
        return;
    }
    SetGroupState(box, CountGroup(zephmetadata::DescendantLeafPaths(path), selectedPaths));
}

void MetadataView::SetSchemaCheckboxState(UI_Checkbox* box, SchemaPtr const& schema) const
{
    if (box && schema)
        SetGroupState(box, CountGroup(zephmetadata::DescendantLeafPaths(schema), selectedPaths));
}

bool MetadataView::ToggleGroup(zephmetadata::IteratorRange<Path> const& leaves)
{
    GroupCounts const counts = CountGroup(leaves, selectedPaths);
    bool const mixed = counts.selected > 0 && counts.selected < counts.showable;
    if (!mixed && counts.selected > 0)
    {
        for (Path const& leaf : leaves)
            selectedPaths.erase(leaf);
        return false;
    }
    for (Path const& leaf : leaves)
        if (boost::empty(zephmetadata::ChildPaths(leaf)))
            selectedPaths.insert(leaf);
    FilterShowablePaths(selectedPaths);
    return true;
}

UI_Checkbox* MetadataView::CheckboxForRow(Row* row) const
{
    MetadataViewCell* const cell = MetadataCellForRow(row);
    return cell ? dynamic_cast<UI_Checkbox*>(cell->GetChild_Label().get()) : nullptr;
}

void MetadataView::OnPathCheckbox(UI_ButtonChangedMessage* message, Row* row, Path path)
{
    // The handler may run from a box whose row a rebuild drops: hold it.
    RowPtr const held(row);
    if (selectedPaths.count(path) != 0)
        selectedPaths.erase(path);
    else
        selectedPaths.insert(path);

    auto const leaves = zephmetadata::DescendantLeafPaths(path);
    if (!boost::empty(zephmetadata::ChildPaths(path)))
        SetRecursiveCheckboxState(row, ToggleGroup(leaves));

    for (Row* ancestor = row ? row->GetParentRow() : nullptr; ancestor;
         ancestor = ancestor->GetParentRow())
        UpdateCheckboxInRow(ancestor);

    if (message)
        UpdateEquivalentCheckBoxes(row, path, boost::logic::indeterminate);
}

void MetadataView::OnSchemaCheckbox(UI_ButtonChangedMessage* /*message*/, Row* row,
                                    SchemaPtr schema)
{
    RowPtr const held(row);
    SetRecursiveCheckboxState(row, ToggleGroup(zephmetadata::DescendantLeafPaths(schema)));
    // Nothing turns a forced path off, whichever schema it belongs to.
    for (Path const& forced : forcedOnPaths)
        selectedPaths.insert(forced);
    UpdateCheckboxInRow(row);
}

void MetadataView::SetRecursiveCheckboxState(Row* row, bool on)
{
    if (!row)
        return;
    Path path;
    if (FindPathForRow(row, path))
    {
        UpdateEquivalentCheckBoxes(row, path, on);
        if (forcedOnPaths.count(path) != 0)
            return;
        if (!boost::empty(zephmetadata::ChildPaths(path)))
        {
            if (on)
                selectedPaths.insert(path);
            else
                selectedPaths.erase(path);
        }
    }
    if (UI_Checkbox* const box = CheckboxForRow(row))
        box->SetValue(on ? 1 : 0);
    for (std::size_t i = 0; i < row->CountChildRows(); ++i)
        SetRecursiveCheckboxState(row->GetChildRow(i).get(), on);
}

void MetadataView::UpdateCheckboxInRow(Row* row)
{
    UI_Checkbox* const box = CheckboxForRow(row);
    if (!box)
        return;
    RowPtr const key(row);
    auto const schema = schemaRows.find(key);
    if (schema != schemaRows.end())
    {
        SetSchemaCheckboxState(box, schema->second);
        return;
    }
    auto const entry = d->pathRows.find(row);
    if (entry == d->pathRows.end())
        return;
    Path const path = PathOfRowRef(entry->second);
    SetPathCheckboxState(box, path, forcedOnPaths);
    UpdateEquivalentCheckBoxes(row, path, boost::logic::indeterminate);
    // A partly ticked structure is itself in the set.
    if (box->IsValueUnknown() || box->GetValue() == 1)
        selectedPaths.insert(path);
    else
        selectedPaths.erase(path);
}

void MetadataView::UpdateEquivalentCheckBoxes(Row* /*row*/, Path const& path,
                                              boost::logic::tribool state)
{
    auto const found = equivalenceMap.find(path);
    if (found == equivalenceMap.end() || !found->second)
        return;
    // The group is held, not the map's entry: a member's handler may not
    // change the map, but it does change selectedPaths.
    boost::shared_ptr<std::set<Path>> const group = found->second;
    for (Path const& member : *group)
    {
        // Equivalence joins a property with its twin under another name in
        // another schema; the two tests stand apart on purpose.
        if (member.schemaNamespace == path.schemaNamespace)
            continue;
        if (member.propertyName == path.propertyName)
            continue;
        Row* const memberRow = RowForPath(member);
        if (!memberRow)
            continue;
        bool serve = true;
        if (!boost::logic::indeterminate(state))
            serve = (selectedPaths.count(member) != 0) != bool(state);
        if (!serve)
            continue;
        if (UI_Checkbox* const box = CheckboxForRow(memberRow))
            box->SetValue(box->GetValue() != 1 ? 1 : 0);
        OnPathCheckbox(nullptr, memberRow, member);
    }
}

} // namespace zephmetadataui

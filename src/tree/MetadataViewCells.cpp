// MetadataView: the contents of a row (label, value, link button), made when
// the row comes on screen, and what follows a user's edit in a row.

#include "tree/MetadataViewPrivate.h"
#include "zephmetadataui/MetadataView.h"

#include "zephmetadataui/Control.h"
#include "zephmetadataui/ControlFactory.h"
#include "zephmetadataui/InlineControlFactory.h"
#include "zephmetadataui/MetadataViewCell.h"
#include "zephmetadataui/MetadataView_LinkDelegate.h"

#include "contracts/Model.h"
#include "module/ModuleResources.h"
#include "tree/TreeToolkit.h"

#include <boost/bind/bind.hpp>
#include <boost/make_shared.hpp>
#include <boost/range/empty.hpp>

#include <algorithm>
#include <cstdio>

namespace zephmetadataui
{

using namespace boost::placeholders;

namespace
{

// The cell fills its cell view and stretches with it.
MetadataViewCell* MakeCell(UI_SubViewPtr const& cellView, UI_MultiColumnTree* tree,
                           bool usesSharedWidth)
{
    auto* cell = new MetadataViewCell(cellView, tree, usesSharedWidth);
    RectF const bounds = cellView->UI_GetLocalRectF(false);
    cell->UI_SetLocalRectF(bounds);
    cell->UI_Show(true);
    cell->UI_SetLayoutBinding(14);
    cellView->UI_SetLayoutsChildren(true);
    return cell;
}

} // namespace

void MetadataView::CreateViewForRow_Schema(RowPtr const& row, SchemaPtr const& schema)
{
    UI_SubViewPtr const cellView = row->GetCellView(0);
    if (!cellView || !schema)
        return;
    cellView->DeleteChildren();
    MetadataViewCell* const cell = MakeCell(cellView, tree.get(), displayPropertyValue);

    UI_SubViewPtr label;
    if (allowPropertySelection)
    {
        boost::intrusive_ptr<UI_Checkbox> const box(new UI_Checkbox());
        box->SetText(schema->label);
        box->NotifyWhenChanged(boost::make_shared<boost::function<void(Message*)>>(
            [this, rowRef = row.get(), schema](Message* message) {
                OnSchemaCheckbox(dynamic_cast<UI_ButtonChangedMessage*>(message), rowRef, schema);
            }));
        SetSchemaCheckboxState(box.get(), schema);
        label = box;
    }
    else
    {
        boost::intrusive_ptr<UI_StaticText> const text(new UI_StaticText());
        text->SetValue(schema->label);
        text->SetFontStyleName("Bold");
        text->SetAlignment(0);
        label = text;
    }
    label->UI_SetToolTip(schema->description, 400);
    label->UI_Show(true);
    cell->ChildPushBack(label);
    cell->SetChild_Label(label);
}

void MetadataView::CreateViewForRow_Path(RowPtr const& row, Path const& path)
{
    UI_SubViewPtr const cellView = row->GetCellView(0);
    if (!cellView)
        return;
    EntryPtr const entry = PathEntryDefinition(path);
    if (!entry)
    {
        cellView->DeleteChildren(); // the slot may hold another row's cell
        return;
    }
    if (TakeKeptCell(row, path) || RefillCell(row, path, entry))
        return;
    cellView->DeleteChildren();
    MetadataViewCell* const cell = MakeCell(cellView, tree.get(), displayPropertyValue);

    CreateViewForRow_PathLabel(row, cell, path, entry);

    if (displayPropertyValue && boost::empty(zephmetadata::ChildPaths(path)))
    {
        bool hasLink = false, linked = false, enabled = false, reservesLinkColumn = false;
        if (linkDelegate)
        {
            hasLink = linkDelegate->CanLinkPath(path);
            enabled = linkDelegate->IsLinkingEnabled();
            if (enabled)
                linked = linkDelegate->IsPathLinked(path);
            reservesLinkColumn = true;
        }
        cell->SetReservesLinkColumn(reservesLinkColumn);
        CreateViewForRow_PathValue(row, cell, path, reservesLinkColumn, entry);
        CreateViewForRow_PathLinkButton(row, cell, path, hasLink, linked, enabled, entry);
        cellView->UI_SetLayoutsChildren(true);
    }

    cell->PlaceChildren();
    if (disabledPaths.count(path) != 0)
        cell->UI_SetDisabled(true);
    UI_SubViewPtr const value = cell->GetChild_Value();
    StampCell(cell, path,
              value && !controls.empty() && controls.back()->view == value
                  ? controls.back()
                  : boost::shared_ptr<Control>());
}

std::uint64_t MetadataView::CurrentCellStamp() const
{
    return cellShape * 2 + (zephmetadata::IsAllMetadataForcedWritable() ? 1 : 0);
}

void MetadataView::StampCell(zephui::UI_Node const* cell, Path const& path,
                             boost::shared_ptr<Control> const& control)
{
    if (!provider || allowPropertySelection || linkDelegate)
        return;
    Private::CellRecord& record = d->cellRecords[cell];
    record.stamp = CurrentCellStamp();
    record.kind = CellKindOf(path);
    record.control = control;
}

// Cells of one kind differ only in what a refill sets: the label's text and
// tooltip, and the value their control is bound to. Their kind is that of
// the control the factory would make (or none), and whether they are greyed.
std::uintptr_t MetadataView::CellKindOf(Path const& path) const
{
    std::uintptr_t shape = 0;
    if (displayPropertyValue && provider)
    {
        shape = ControlShapeFor(Value(path, provider), readOnlyPaths.count(path) != 0);
        if (shape == kShapeUnknown)
            return 0;
    }
    return (shape << 2) | (disabledPaths.count(path) != 0 ? 2u : 0u) | 1u;
}

std::uintptr_t MetadataView::CellKindOfRow(Row* row) const
{
    auto const found = d->pathRows.find(row);
    return found == d->pathRows.end() ? 0 : CellKindOf(PathOfRowRef(found->second));
}

// The cell that the row's slot holds, made for a row of the same kind under
// the current mode, takes the row's label and value: no widget is made.
bool MetadataView::RefillCell(RowPtr const& row, Path const& path, EntryPtr const& entry)
{
    MetadataViewCell* const cell = MetadataCellForRow(row.get());
    if (!cell)
        return false;
    auto const found = d->cellRecords.find(cell);
    if (found == d->cellRecords.end())
        return false;
    Private::CellRecord& record = found->second;
    auto* const label = dynamic_cast<UI_StaticText*>(cell->GetChild_Label().get());
    if (!label || record.stamp != CurrentCellStamp() || record.kind == 0 ||
        record.kind != CellKindOf(path) ||
        (cell->GetChild_Value() != nullptr) != (record.control != nullptr))
        return false;
    if (record.control &&
        !RebindControl(Value(path, provider), *record.control, ValueChangedCallback(path)))
        return false;
    label->SetValue(CreateLabelText(path));
    label->UI_SetToolTip(entry->description, 400);
    cell->PlaceChildren();
    return true;
}

zephui::MessageCallback MetadataView::ValueChangedCallback(Path const& path)
{
    return boost::make_shared<boost::function<void(Message*)>>(
        [this, path](Message* message) { ControlCallBackFunction(message, path); });
}

void MetadataView::KeepCellsOfVisibleRows()
{
    d->keptCells.clear();
    std::unordered_map<zephui::UI_Node const*, Private::CellRecord> records;
    records.swap(d->cellRecords);
    std::uint64_t const current = CurrentCellStamp();
    for (RowPtr const& row : tree->GetVisibleRows())
    {
        auto const entry = d->pathRows.find(row.get());
        if (entry == d->pathRows.end())
            continue;
        MetadataViewCell* const cell = MetadataCellForRow(row.get());
        UI_SubViewPtr const cellView = row->GetCellView(0);
        if (!cell || !cellView)
            continue;
        auto const record = records.find(cell);
        if (record == records.end() || record->second.stamp != current)
            continue;
        Path const path = PathOfRowRef(entry->second);
        Private::KeptCell kept;
        kept.cell = cell;
        kept.control = record->second.control;
        if ((cell->GetChild_Value() != nullptr) != (kept.control != nullptr))
            continue;
        if (!d->keptCells.emplace(path, std::move(kept)).second)
            continue;
        cellView->ChildRequestRemove(cell);
    }
}

bool MetadataView::TakeKeptCell(RowPtr const& row, Path const& path)
{
    auto const kept = d->keptCells.find(path);
    if (kept == d->keptCells.end())
        return false;
    Private::KeptCell const taken = std::move(kept->second);
    d->keptCells.erase(kept);

    UI_SubViewPtr const cellView = row->GetCellView(0);
    cellView->DeleteChildren();
    cellView->ChildPushBack(taken.cell);
    taken.cell->UI_SetLocalRectF(cellView->UI_GetLocalRectF(false));
    cellView->UI_SetLayoutsChildren(true);
    if (taken.control)
        controls.push_back(taken.control);
    StampCell(taken.cell.get(), path, taken.control);
    auto* const cell = static_cast<MetadataViewCell*>(taken.cell.get());
    // The count of an array's entries may have changed with the packet.
    if (auto* text = dynamic_cast<UI_StaticText*>(cell->GetChild_Label().get()))
        text->SetValue(CreateLabelText(path));
    cell->PlaceChildren();
    return true;
}

void MetadataView::CreateViewForRow_PathLabel(RowPtr const& row, MetadataViewCell* cell,
                                              Path const& path, EntryPtr const& entry)
{
    UI_SubViewPtr label;
    if (allowPropertySelection)
    {
        boost::intrusive_ptr<UI_Checkbox> const box(new UI_Checkbox());
        box->SetText(entry->label);
        box->NotifyWhenChanged(boost::make_shared<boost::function<void(Message*)>>(
            [this, rowRef = row.get(), path](Message* message)
            { OnPathCheckbox(dynamic_cast<UI_ButtonChangedMessage*>(message), rowRef, path); }));
        // A new box shows no forced state: that comes with its first update.
        SetPathCheckboxState(box.get(), path, std::set<Path>());
        label = box;
    }
    else
    {
        boost::intrusive_ptr<UI_StaticText> const text(new UI_StaticText());
        text->SetValue(CreateLabelText(path));
        label = text;
    }
    cell->ChildPushBack(label);
    cell->SetChild_Label(label);
    label->UI_Show(true);
    label->UI_SetToolTip(entry->description, 400);
}

UTF16String MetadataView::CreateLabelText(Path const& path) const
{
    EntryPtr const entry = PathEntryDefinition(path);
    UTF16String text = entry ? entry->label : UTF16String();

    UTF16String const name = zephcore::UTF8to16(path.propertyName);
    std::size_t const open = name.rfind(u'[');
    if (open != UTF16String::npos && open != 0)
    {
        std::size_t const close = name.rfind(u']');
        if (close == name.size() - 1)
        {
            text.push_back(u' ');
            text.append(name, open, UTF16String::npos);
        }
    }

    // A language alternative is one localised text in one cell: no count.
    bool const languageAlternative = PrimitiveTypeOfPath(path) == kPrimitiveAlternative &&
                                     !zephmetadata::IsPathAnArray(path, false);
    if (provider && !languageAlternative && zephmetadata::IsPathAnArray(path, true))
    {
        int count = 0;
        {
            MetaDataReadAccess const access(provider);
            count = zephmetadata::CountArrayItems(*access, path);
        }
        if (count > 0)
        {
            char number[32];
            std::snprintf(number, sizeof number, "%i", count);
            text.push_back(u' ');
            text.append(zephcore::ReplaceInString(
                zephcore::Localizer::Get().GetString(
                    "$$$/zephmetadataui/MetadataView/entries=(@0 entries)"),
                std::vector<UTF16String>{zephcore::AsciiToUTF16(std::string_view(number))}));
        }
    }
    return text;
}

void MetadataView::UpdatePathLabel(Path const& path)
{
    MetadataViewCell* const cell = MetadataCellForRow(RowForPath(path));
    if (!cell)
        return;
    if (auto* text = dynamic_cast<UI_StaticText*>(cell->GetChild_Label().get()))
        text->SetValue(CreateLabelText(path));
}

void MetadataView::CreateViewForRow_PathValue(RowPtr const& /*row*/, MetadataViewCell* cell,
                                              Path const& path, bool /*reservesLinkColumn*/,
                                              EntryPtr const& /*entry*/)
{
    if (!provider)
        return;
    Value const value(path, provider);
    boost::shared_ptr<Control> const control = ControlFactory(
        value, UI_NodePtr(cell), readOnlyPaths.count(path) != 0, ValueChangedCallback(path));
    if (control && control->view)
    {
        controls.push_back(control);
        cell->SetChild_Value(control->view);
        control->view->UI_Show(true);
    }
}

void MetadataView::ControlCallBackFunction(Message* /*message*/, Path const& path)
{
    auto const group = equivalenceMap.find(path);
    if (group != equivalenceMap.end() && group->second)
    {
        for (Path const& member : *group->second)
        {
            // Only a twin under another name in another schema is served.
            if (member.schemaNamespace == path.schemaNamespace ||
                member.propertyName == path.propertyName)
                continue;
            MetadataViewCell* const cell = MetadataCellForRow(RowForPath(member));
            if (!provider || !cell || !cell->GetChild_Value())
                continue;
            auto const temporary =
                boost::make_shared<Control>(cell->GetChild_Value(), boost::function<void()>());
            try
            {
                RefreshControl(Value(member, provider), temporary,
                               readOnlyPaths.count(member) != 0);
            }
            catch (zephcore::ZephError const&)
            {
                // A twin of another kind of control refreshes itself from the
                // provider's notification; nothing is lost by passing it over.
            }
        }
    }
    if (zephmetadata::IsPathAnArray(path, true))
        UpdatePathLabel(path);
}

void MetadataView::CreateViewForRow_PathLinkButton(RowPtr const& /*row*/, MetadataViewCell* cell,
                                                   Path const& path, bool hasLink, bool linked,
                                                   bool enabled, EntryPtr const& /*entry*/)
{
    if (!hasLink)
        return;
    boost::intrusive_ptr<UI_PictureButton> const button(new UI_PictureButton());
    cell->ChildPushBack(button);
    cell->SetChild_Link(button);
    button->UI_Show(true);
    button->UI_SetEnabled(enabled);
    if (linked)
        button->SetValue(1);
    button->SetImageSupplyFunction(boost::make_shared<boost::function<void(ConstMessage*)>>(
        boost::bind(&MetadataView::GetPictureButtonImage, this, _1)));
    UI_PictureButton* const raw = button.get();
    button->NotifyWhenChanged(boost::make_shared<boost::function<void(Message*)>>(
        [this, raw, path](Message*) { PictureButtonChanged(raw, path); }));
    button->SetWantsKeyboardFocus(false);
    button->SetSpringLoaded(false);
}

void MetadataView::GetPictureButtonImage(ConstMessage* message)
{
    auto* const supply = dynamic_cast<UI_PictureSupplyMessage*>(message);
    if (!supply)
        return;
    char const* const name = supply->GetStateFlags().IsSet(1) ? "SP_Link_Sm_N_D" : "P_IconWell_N";
    supply->SetImage(LoadModuleImage(UI_GetDrawSupplier(), name));
}

void MetadataView::PictureButtonChanged(UI_PictureButton* button, Path path)
{
    if (button && linkDelegate)
        linkDelegate->SetPathLinked(path, button->GetValue() == 1);
}

void MetadataView::UpdateAllLinkButtons()
{
    if (!linkDelegate)
        return;
    for (RowPtr const& row : tree->GetOpenedRows())
    {
        if (!tree->IsRowVisible(row))
            continue;
        auto const entry = d->pathRows.find(row.get());
        if (entry == d->pathRows.end())
            continue;
        MetadataViewCell* const cell = MetadataCellForRow(row.get());
        if (!cell)
            continue;
        auto* const button = dynamic_cast<UI_PictureButton*>(cell->GetChild_Link().get());
        if (!button)
            continue;
        bool const enabled = linkDelegate->IsLinkingEnabled();
        bool const linked = enabled && linkDelegate->IsPathLinked(PathOfRowRef(entry->second));
        button->SetValue(linked ? 1 : 0);
        button->UI_SetEnabled(enabled);
    }
}

} // namespace zephmetadataui

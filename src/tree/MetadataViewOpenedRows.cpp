// MetadataView: the memory of opened rows across rebuilds and searches, and
// the making of row contents as rows come on screen.

#include "tree/MetadataViewPrivate.h"
#include "zephmetadataui/MetadataView.h"

#include "contracts/Model.h"
#include "tree/TreeToolkit.h"

namespace zephmetadataui
{

void MetadataView::SetOpenedSchemaRows(std::set<SchemaPtr> const& schemas)
{
    openedRows.openedSchemas = schemas;
    PopulateTreeValues();
}

void MetadataView::GetOpenedRows(OpenedRowData& data) const
{
    // What a search opens is not what the user chose.
    if (UserIsSearchingForRows())
        return;
    data.openedSchemas.clear();
    data.openedPaths.clear();
    for (RowPtr const& row : tree->GetOpenedRows())
    {
        if (!tree->IsRowOpen(row))
            continue;
        auto const schema = schemaRows.find(row);
        if (schema != schemaRows.end())
        {
            data.openedSchemas.insert(schema->second);
            continue;
        }
        auto const path = d->pathRows.find(row.get());
        if (path != d->pathRows.end())
            data.openedPaths.insert(PathOfRowRef(path->second));
    }
}

void MetadataView::OpenRows(OpenedRowData const& data)
{
    bool const searching = UserIsSearchingForRows();
    bool const wasOpening = openingRows;
    openingRows = true;
    // The list is live: opening a row inserts its children right behind it,
    // so they are visited in this same pass.
    auto const& list = tree->GetOpenedRows();
    for (auto it = list.begin(); it != list.end(); ++it)
    {
        // Our own reference: opening or closing the row changes the list.
        RowPtr const row = *it; // NOLINT(performance-unnecessary-copy-initialization)
        bool open = false;
        if (searching)
            open = true;
        else
        {
            auto const path = d->pathRows.find(row.get());
            if (path != d->pathRows.end())
                open = data.openedPaths.count(PathOfRowRef(path->second)) != 0;
            else
            {
                auto const schema = schemaRows.find(row);
                if (schema != schemaRows.end())
                    open = data.openedSchemas.count(schema->second) != 0;
            }
        }
        if (open)
        {
            if (!tree->IsRowOpen(row))
                tree->OpenRow(row);
        }
        else if (tree->IsRowOpen(row))
            tree->CloseRow(row);
    }
    openingRows = wasOpening;
}

void MetadataView::OnRowDisclosureChanged(Row* /*row*/, bool /*open*/)
{
    if (openingRows)
        return;
    GetOpenedRows(openedRows);
}

void MetadataView::OnRowVisibilityChanged(Row* row)
{
    if (!row)
        return;
    RowPtr const held(row);
    if (!tree->IsRowVisible(held))
        return;
    auto const schema = schemaRows.find(held);
    if (schema != schemaRows.end())
    {
        CreateViewForRow_Schema(held, schema->second);
        return;
    }
    auto const path = d->pathRows.find(row);
    if (path != d->pathRows.end())
    {
        Path const shown = PathOfRowRef(path->second);
        CreateViewForRow_Path(held, shown);
    }
    else if (UI_SubViewPtr const cellView = held->GetCellView(0))
        cellView->DeleteChildren(); // the slot may hold another row's cell
}

} // namespace zephmetadataui

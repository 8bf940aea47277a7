// MetadataView: the rapid find, the memory of opened rows, the making of row
// contents as rows come on screen, and the schemas of one object.

#include "zephmetadataui/MetadataView.h"

#include "contracts/Model.h"
#include "tree/TreeToolkit.h"

#include <boost/make_shared.hpp>

#include <zephmetadata/FileProvider.h>

namespace zephmetadataui {

namespace {

bool IsAscii(UTF16String const& text)
{
    for (unsigned short c : text)
        if (c >= 0x80)
            return false;
    return true;
}

// Folding of ASCII is lower-casing, and ASCII is its own normal form, so most
// values need no trip through the Unicode tables.
UTF16String FoldAndNormalize(UTF16String const& text)
{
    if (IsAscii(text))
    {
        UTF16String folded(text);
        for (unsigned short& c : folded)
            if (c >= 'A' && c <= 'Z')
                c = static_cast<unsigned short>(c + ('a' - 'A'));
        return folded;
    }
    return zephcore::NormalizedString(zephcore::FoldCase(text), zephcore::kNormalizationFormKC);
}

} // namespace

void MetadataView::SetRapidFindString(UTF16String const& text)
{
    UTF16String const folded = zephcore::NormalizedString(zephcore::FoldCase(text), zephcore::kNormalizationFormKC);
    if (folded == rapidFindString)
        return;
    rapidFindString = folded;
    PopulateTreeValues();
}

// For a host whose values changed without a report: read them all again.
void MetadataView::RefilterMetadataFieldsForRapidFindString()
{
    foldedValues.clear();
    PopulateTreeValues();
}

bool MetadataView::MatchesRapidFindString(UTF16String const& text) const
{
    if (text.size() < rapidFindString.size() && IsAscii(text))
        return false;
    return FoldAndNormalize(text).find(rapidFindString) != UTF16String::npos;
}

bool MetadataView::ValueMatchesRapidFindString(Path const& path)
{
    // A field named through an array (of an empty array) has no value to read.
    if (!provider || zephmetadata::IsPathOfAnyItem(path))
        return false;
    if (provider != foldedValuesProvider.lock())
    {
        ForgetFoldedValues();
        foldedValuesProvider = provider;
        // Holds a plain pointer: the view removes it before it dies.
        foldedValuesListener = boost::make_shared<boost::function<void(__XMPMeta__*)>>(
            [this](__XMPMeta__*) { foldedValues.clear(); });
        provider->NotifyWhenMetaDataChanged(foldedValuesListener);
    }
    auto known = foldedValues.find(path);
    if (known == foldedValues.end())
    {
        FoldedValue folded;
        UTF8String value;
        {
            MetaDataReadAccess const access(provider);
            folded.present = GetValue(*access, path, value, nullptr);
        }
        if (folded.present)
            folded.folded = FoldAndNormalize(zephcore::UTF8to16(value));
        known = foldedValues.emplace(path, std::move(folded)).first;
    }
    return known->second.present && known->second.folded.find(rapidFindString) != UTF16String::npos;
}

void MetadataView::ForgetFoldedValues()
{
    foldedValues.clear();
    ProviderPtr const previous = foldedValuesProvider.lock();
    if (previous && foldedValuesListener)
        previous->RemoveMetaDataChangedNotification(foldedValuesListener);
    // Emptied in place too, in case the provider still calls it.
    if (foldedValuesListener)
        foldedValuesListener->clear();
    foldedValuesListener.reset();
    foldedValuesProvider.reset();
}

bool MetadataView::MatchesRapidFindString(EntryPtr const& entry)
{
    FoldedLabel& cached = foldedLabels[entry.get()];
    if (cached.folded.empty() || cached.label != entry->label)
    {
        cached.label = entry->label;
        cached.folded = FoldAndNormalize(entry->label);
    }
    return cached.folded.find(rapidFindString) != UTF16String::npos;
}

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
        auto const path = pathRows.find(row.get());
        if (path != pathRows.end())
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
        RowPtr const row = *it;
        bool open = false;
        if (searching)
            open = true;
        else
        {
            auto const path = pathRows.find(row.get());
            if (path != pathRows.end())
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
    auto const path = pathRows.find(row);
    if (path != pathRows.end())
    {
        Path const shown = PathOfRowRef(path->second);
        CreateViewForRow_Path(held, shown);
    }
    else if (UI_SubViewPtr const cellView = held->GetCellView(0))
        cellView->DeleteChildren(); // the slot may hold another row's cell
}

void MetadataView::UpdateDynamicSchemas()
{
    for (SchemaPtr const& schema : std::vector<SchemaPtr>(dynamicSchemas))
    {
        RemoveSchemaFromPropertiesTree(schema);
        RemoveSchemaPropertiesFromIncludedPaths(schema);
    }
    dynamicSchemas.clear();
    if (!provider)
        return;

    for (SchemaPtr const& shared : provider->DynamicSchemaDefinitions())
    {
        if (!shared)
            continue;
        // A clone of fresh identity, so that rows, memo counts and the opened
        // record keep it apart from the shared definition.
        SchemaPtr const clone = boost::make_shared<SchemaDefinition>();
        clone->label = shared->label;
        clone->description = shared->description;
        clone->schemaText3 = shared->schemaText3;
        clone->schemaText4 = shared->schemaText4;
        clone->schemaNamespace = shared->schemaNamespace;
        clone->schemaPrefix = shared->schemaPrefix;
        clone->properties = shared->properties;
        clone->schemaFlag1 = shared->schemaFlag1;
        clone->schemaFlag2 = shared->schemaFlag2;

        provider->GetAllPathsForDynamicSchema(clone->schemaNamespace, clone->properties);
        if (clone->properties.empty())
            continue;

        for (Path const& leaf : zephmetadata::DescendantLeafPaths(clone))
            includedPaths.insert(leaf);
        AppendSchemaToPropertiesTree(clone, true);
        dynamicSchemas.push_back(clone);
    }
}

void MetadataView::ShowMetadataForFilePath(UTF16String const& filePath)
{
    if (filePath.empty())
        return;
    SetProvider(boost::make_shared<zephmetadata::FileProvider>(filePath));
}

} // namespace zephmetadataui

// MetadataView: construction, the stored sets, and the rebuild of the row set.

#include "zephmetadataui/MetadataView.h"
#include "tree/MetadataViewPrivate.h"

#include "zephmetadataui/Control.h"
#include "zephmetadataui/MetadataViewCell.h"

#include "binding/PathFilters.h"
#include "contracts/Model.h"
#include "tree/TreeToolkit.h"

#include <boost/bind/bind.hpp>
#include <boost/make_shared.hpp>
#include <boost/range/empty.hpp>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace zephmetadataui
{

namespace
{

// The divider of every cell of every view, in tree coordinates.
float sharedLabelWidth = 165.0f;

} // namespace

using zephmetadata::ChildPaths;
using zephmetadata::CountArrayItems;
using zephmetadata::CreatePathFromArrayItem;
using zephmetadata::DescendantLeafPaths;
using zephmetadata::IsPathAnArray;

void MetadataView::SetSharedLabelWidth(float width)
{
    sharedLabelWidth = width;
}
float MetadataView::GetSharedLabelWidth()
{
    return sharedLabelWidth;
}

MetadataView::SuspendTreeRebuild::SuspendTreeRebuild(MetadataView* view) : view(view)
{
    if (view)
        view->rebuildSuspended = true;
}

MetadataView::SuspendTreeRebuild::~SuspendTreeRebuild()
{
    if (!view)
        return;
    view->rebuildSuspended = false;
    if (view->rebuildPending)
    {
        view->PopulateTreeValues();
        view->rebuildPending = false;
    }
}

MetadataView::MetadataView(SchemaRange const& schemas, ProviderPtr const& provider)
    : tree(new UI_MultiColumnTree(1, UI_MultiColumnTree::GetDefaultRowHeight())),
      provider(provider), d(std::make_unique<Private>())
{
    SetupTreeCharacteristics();
    SetDisplaySchemas(schemas);
}

MetadataView::~MetadataView()
{
    delete keyboardFilter;
    keyboardFilter = nullptr;
    // The tree may outlive this view for a moment (a host's reference): its
    // callbacks must not reach a dead view.
    if (visibilityCallback)
        visibilityCallback->clear();
    if (disclosureCallback)
        disclosureCallback->clear();
    if (makeChildRowsCallback)
        makeChildRowsCallback->clear();
    if (cellKindCallback)
        cellKindCallback->clear();
    controls.clear();
    ForgetFoldedValues();
}

void MetadataView::SetupTreeCharacteristics()
{
    tree->Init(8);
    tree->SetSupportUserSelectableRows(false);
    tree->SetDrawGridLines(true, false);
    tree->SetIndicateFocus(false);
    tree->UI_Show(true);
    ChildPushBack(tree);

    using namespace boost::placeholders;
    visibilityCallback = boost::make_shared<boost::function<void(Row*)>>(
        boost::bind(&MetadataView::OnRowVisibilityChanged, this, _1));
    disclosureCallback = boost::make_shared<boost::function<void(Row*, bool)>>(
        boost::bind(&MetadataView::OnRowDisclosureChanged, this, _1, _2));
    tree->SetRowVisibilityChangedCallback(visibilityCallback);
    tree->SetRowDisclosureChangedCallback(disclosureCallback);
    makeChildRowsCallback = boost::make_shared<boost::function<void(Row*)>>(
        boost::bind(&MetadataView::MakeItemFieldRows, this, _1));
    tree->SetMakeChildRowsCallback(makeChildRowsCallback);
    cellKindCallback = boost::make_shared<boost::function<std::uintptr_t(Row*)>>(
        [this](Row* row) { return CellKindOfRow(row); });
    tree->SetRowCellKindCallback(cellKindCallback);
}

void MetadataView::EmptyMemoCounts()
{
    includedLeafCounts.clear();
    schemaLeafCounts.clear();
}

void MetadataView::SetDisplaySchemas(SchemaRange const& schemas)
{
    EmptyMemoCounts();
    displaySchemas.clear();
    for (SchemaPtr const& schema : schemas)
        displaySchemas.push_back(schema);
    IncludeAllPathsInCurrentSchemas();
    PopulateTreeValues();
}

void MetadataView::SetProvider(ProviderPtr const& newProvider)
{
    provider = newProvider;
    ++cellShape;
    PopulateTreeValues();
}

void MetadataView::SetIncludedPaths(std::set<Path> const& paths)
{
    EmptyMemoCounts();
    includedPaths = paths;
    FilterShowablePaths(includedPaths);
    PopulateTreeValues();
}

void MetadataView::SetAllowPropertySelection(bool allow)
{
    allowPropertySelection = allow;
    ++cellShape;
    PopulateTreeValues();
}

void MetadataView::SetLinkDelegate(boost::shared_ptr<MetadataView_LinkDelegate> const& delegate)
{
    linkDelegate = delegate;
    ++cellShape;
}

void MetadataView::IncludeAllPathsInCurrentSchemas()
{
    includedPaths.clear();
    for (SchemaPtr const& schema : displaySchemas)
        for (Path const& path : DescendantLeafPaths(schema))
            includedPaths.insert(path);
    FilterShowablePaths(includedPaths);
}

void MetadataView::EnsureSchemaIsPresent(SchemaPtr const& schema)
{
    if (std::find(displaySchemas.begin(), displaySchemas.end(), schema) == displaySchemas.end())
        displaySchemas.push_back(schema);
}

void MetadataView::AppendSchemaPropertiesToIncludedPaths(SchemaPtr const& schema)
{
    for (Path const& path : DescendantLeafPaths(schema))
        includedPaths.insert(path);
}

void MetadataView::RemoveSchemaPropertiesFromIncludedPaths(SchemaPtr const& schema)
{
    for (Path const& path : ChildPaths(schema))
        if (boost::empty(ChildPaths(path)))
            includedPaths.erase(path);
}

void MetadataView::PopulateTreeValues()
{
    if (rebuildSuspended)
    {
        rebuildPending = true;
        return;
    }

    KeepCellsOfVisibleRows();
    // Each control cuts itself loose from the provider as it dies.
    controls.clear();

    UI_ScrollViewPtr const scrollView = tree->GetScrollView();
    float const scrollY = scrollView ? scrollView->GetScrollPosition().y : 0.0f;

    {
        // One layout for the whole rebuild, so that cells are made once, for
        // the rows that end up on screen.
        UI_MultiColumnTree::ScDeferLayoutForOpenAndCloseRow const whole(tree);
        {
            UI_MultiColumnTree::ScDeferLayoutForOpenAndCloseRow const defer(tree);
            tree->RemoveAllRows(false);
            schemaRows.clear();
            d->pathRows.clear();
            d->rowPathSources.clear();
            if (displaySchemas.size() != 1)
            {
                std::vector<SchemaPtr> const schemas = displaySchemas;
                for (SchemaPtr const& schema : schemas)
                    AppendSchemaToPropertiesTree(schema, false);
            }
            else
            {
                SchemaPtr const schema = displaySchemas.front();
                for (Path const& path : ChildPaths(schema))
                    AppendPathToTree(path, RowPtr(), false);
            }
        }

        if (!disableDynamicSchema)
            UpdateDynamicSchemas();

        {
            UI_MultiColumnTree::ScDeferLayoutForOpenAndCloseRow const defer(tree);
            OpenRows(openedRows);
        }
    }

    if (scrollView)
        scrollView->OffsetScroll(0.0f, scrollY - scrollView->GetScrollPosition().y);

    // The cells no row took back die here, and their controls with them.
    d->keptCells.clear();
}

void MetadataView::AppendSchemaToPropertiesTree(SchemaPtr const& schema, bool open)
{
    if (!schema)
        return;
    std::size_t count = 0;
    auto const known = schemaLeafCounts.find(schema);
    if (known != schemaLeafCounts.end())
        count = known->second;
    else
    {
        for (Path const& path : DescendantLeafPaths(schema))
            if (includedPaths.count(path) != 0)
                ++count;
        schemaLeafCounts[schema] = count;
    }

    EnsureSchemaIsPresent(schema);
    if (count == 0)
        return;

    // The row's contents are made when it comes on screen, which must wait
    // until the row is known as a schema row.
    UI_MultiColumnTree::ScDeferLayoutForOpenAndCloseRow const deferred(tree);
    // Rows are made closed; OpenRows opens the remembered ones.
    RowPtr const row = tree->CreateAndAppendRow(RowPtr(), false, true);
    schemaRows[row] = schema;
    for (Path const& path : ChildPaths(schema))
        AppendPathToTree(path, row, false);

    if (open)
    {
        openedRows.openedSchemas.insert(schema);
        UI_MultiColumnTree::ScDeferLayoutForOpenAndCloseRow const defer(tree);
        OpenRows(openedRows);
    }
}

void MetadataView::AppendPathToTree(Path const& path, RowPtr const& parentRow, bool alwaysInclude)
{
    if (!ShouldAppendPathToTree(path, alwaysInclude))
        return;

    RowPtr const row = tree->CreateAndAppendRow(parentRow, false, true);
    AddRowPath(row.get(), path);

    // The definitions answer whether the path unfolds into item rows; only
    // then is the data asked how many items it holds.
    int count = 0;
    bool const isArray = IsPathAnArray(path, false);
    if (isArray)
    {
        MetaDataReadAccess const access(provider);
        count = CountArrayItems(*access, path);
    }

    if (isArray && count >= 1)
        AppendArrayToTree(path, row, count);
    else
        for (Path const& child : ChildPaths(path))
            AppendPathToTree(child, row, alwaysInclude);
}

void MetadataView::AppendArrayToTree(Path const& path, RowPtr const& parentRow, int count)
{
    if (AppendUniformArrayToTree(path, parentRow, count))
        return;
    for (int index = 1; index <= count; ++index)
    {
        RowPtr const row = tree->CreateAndAppendRow(parentRow, false, true);
        Path const item = CreatePathFromArrayItem(path, index);
        AddRowPath(row.get(), item);
        for (Path const& child : ChildPaths(item))
            AppendPathToTree(child, row, true);
    }
}

namespace
{

// True if a path of the set lies below an item of the array: its name
// begins with the array's name and a subscript.
bool AnyPathBelowItems(std::set<Path> const& paths, Path const& array)
{
    Path probe(array.schemaNamespace, array.propertyName);
    probe.propertyName.push_back('[');
    auto const found = paths.lower_bound(probe);
    return found != paths.end() && found->schemaNamespace == probe.schemaNamespace &&
           found->propertyName.compare(0, probe.propertyName.size(), probe.propertyName) == 0;
}

Path WithoutSubscripts(Path const& path)
{
    Path result(path);
    UTF8String& name = result.propertyName;
    if (name.find('[') == UTF8String::npos)
        return result;
    UTF8String plain;
    plain.reserve(name.size());
    int depth = 0;
    for (unsigned char c : name)
    {
        if (c == '[')
            ++depth;
        else if (c == ']')
            depth = depth > 0 ? depth - 1 : 0;
        else if (depth == 0)
            plain.push_back(c);
    }
    name.swap(plain);
    return result;
}

UTF8String Subscript(int index)
{
    char text[16];
    int const length = std::snprintf(text, sizeof text, "[%d]", index);
    return UTF8String(reinterpret_cast<unsigned char const*>(text), std::size_t(length));
}

} // namespace

// The items of one array differ only by their subscript: which of their
// fields get rows, and which of those unfold, follows from the definitions
// alone as long as no included or blacklisted path names a single item and
// no search asks for the values. Then the rows of item 1 are worked out
// once and serve every item, and each item's field rows are made only when
// the tree first needs them (the item opens or comes on screen): a speech
// track of thousands of words costs one row per word until it is looked at.
// In any other case the general walk above runs.
bool MetadataView::AppendUniformArrayToTree(Path const& path, RowPtr const& parentRow, int count)
{
    if (count < 2 || UserIsSearchingForRows() || AnyPathBelowItems(includedPaths, path) ||
        AnyPathBelowItems(BlacklistedPaths(), path))
        return false;

    Path const first = CreatePathFromArrayItem(path, 1);
    UTF8String const firstName = path.propertyName + Subscript(1);
    if (first.propertyName != firstName)
        return false;

    Private::RowPathSource array;
    array.path = first;
    array.prefix = path.propertyName;
    for (Path const& child : ChildPaths(first))
    {
        if (child.schemaNamespace != first.schemaNamespace ||
            child.propertyName.compare(0, firstName.size(), firstName) != 0)
            return false;
        if (!IsShowablePath(child))
            continue;
        bool const unfolds = IsPathAnArray(child, false);
        if (!boost::empty(ChildPaths(child)))
        {
            if (IncludedLeafCount(child) == 0)
                continue;
            // A structure's rows take the general walk; an array of
            // structures unfolds below its field row like any other array.
            if (!unfolds)
                return false;
        }
        array.suffixes.push_back(child.propertyName.substr(firstName.size()));
        array.unfolds.push_back(unfolds);
        array.fields.push_back(child);
    }
    bool const hasFields = !array.fields.empty();
    std::uint32_t const source = std::uint32_t(d->rowPathSources.size());
    d->rowPathSources.push_back(std::move(array));

    tree->ReserveChildRows(parentRow, std::size_t(count));
    d->pathRows.reserve(d->pathRows.size() + std::size_t(count));
    for (int index = 1; index <= count; ++index)
    {
        RowPtr const row = tree->CreateAndAppendRow(parentRow, false, true);
        d->pathRows.set(row.get(), RowPathRef{source, index, -1});
        if (hasFields)
            tree->DeferChildRows(row);
    }
    return true;
}

void MetadataView::MakeItemFieldRows(Row* itemRow)
{
    auto const found = d->pathRows.find(itemRow);
    if (found == d->pathRows.end() || found->second.index <= 0 || found->second.field >= 0)
        return;
    RowPathRef const item = found->second;
    RowPtr const row(itemRow);
    // By index: a nested array below adds sources, which may move them.
    std::size_t const fieldCount = d->rowPathSources[item.source].fields.size();
    tree->ReserveChildRows(row, fieldCount);
    for (std::size_t f = 0; f < fieldCount; ++f)
    {
        RowPtr const childRow = tree->CreateAndAppendRow(row, false, true);
        RowPathRef const field{item.source, item.index, int(f)};
        d->pathRows.set(childRow.get(), field);
        if (d->rowPathSources[item.source].unfolds[f])
        {
            Path const child = PathOfRowRef(field);
            int items = 0;
            {
                MetaDataReadAccess const access(provider);
                items = CountArrayItems(*access, child);
            }
            if (items >= 1)
                AppendArrayToTree(child, childRow, items);
            else
                for (Path const& grandchild : ChildPaths(child))
                    AppendPathToTree(grandchild, childRow, true);
        }
    }
}

std::size_t MetadataView::IncludedLeafCount(Path const& path)
{
    // Included paths name definitions, never single items: a structure or
    // array inside an item counts the leaves of its definition path, so the
    // markers of a track's item show when the markers' fields are included.
    Path const definition = WithoutSubscripts(path);
    auto const known = includedLeafCounts.find(definition);
    if (known != includedLeafCounts.end())
        return known->second;
    std::size_t count = 0;
    for (Path const& leaf : DescendantLeafPaths(definition))
        if (includedPaths.count(leaf) != 0)
            ++count;
    includedLeafCounts.emplace(definition, count);
    return count;
}

bool MetadataView::ShouldAppendPathToTree(Path const& path, bool alwaysInclude)
{
    if (!IsShowablePath(path))
        return false;

    auto const children = ChildPaths(path);
    bool const leaf = boost::empty(children);
    if (!leaf)
    {
        if (IncludedLeafCount(path) == 0)
            return false;
    }
    else if (!alwaysInclude && includedPaths.count(path) == 0)
        return false;

    if (rapidFindString.empty())
        return true;

    EntryPtr const entry = PathEntryDefinition(path);
    if (!entry)
        return false;

    if (leaf)
    {
        if (MatchesRapidFindString(entry))
            return true;
        return ValueMatchesRapidFindString(path);
    }

    // A structure stays only through a field that matches, whatever its own label.
    bool answer = false;
    for (Path const& child : children)
    {
        answer = ShouldAppendPathToTree(child, alwaysInclude);
        if (answer)
            break;
    }
    return answer;
}

void MetadataView::RemoveSchemaFromPropertiesTree(SchemaPtr const& schema)
{
    auto const counted = schemaLeafCounts.find(schema);
    if (counted == schemaLeafCounts.end())
        return;
    schemaLeafCounts.erase(counted);
    displaySchemas.erase(std::remove(displaySchemas.begin(), displaySchemas.end(), schema),
                         displaySchemas.end());

    auto rowEntry = schemaRows.begin();
    for (; rowEntry != schemaRows.end(); ++rowEntry)
        if (rowEntry->second == schema)
            break;
    if (rowEntry == schemaRows.end())
        return;

    RowPtr const row = rowEntry->first;
    schemaRows.erase(rowEntry);
    // The rows go with the tree's last hold on them: their entries must go
    // first, or a later row made at the same address would inherit a path.
    std::vector<Row*> stack{row.get()};
    while (!stack.empty())
    {
        Row* const next = stack.back();
        stack.pop_back();
        d->pathRows.erase(next);
        // Children not made yet have no entries; making them only to drop them is waste.
        if (next->HasDeferredChildRows())
            continue;
        for (std::size_t i = 0; i < next->CountChildRows(); ++i)
            stack.push_back(next->GetChildRow(i).get());
    }
    tree->RemoveRow(row, true, false, false);

    for (Path const& path : ChildPaths(schema))
        includedLeafCounts.erase(path);
}

void MetadataView::AddRowPath(Row const* row, Path const& path)
{
    d->pathRows.set(row, RowPathRef{std::uint32_t(d->rowPathSources.size()), 0, -1});
    Private::RowPathSource source;
    source.path = path;
    source.prefix = path.propertyName;
    d->rowPathSources.push_back(std::move(source));
}

Path MetadataView::PathOfRowRef(RowPathRef const& ref) const
{
    Private::RowPathSource const& source = d->rowPathSources[ref.source];
    if (ref.index == 0)
        return source.path;
    Path path = ref.field >= 0 ? source.fields[std::size_t(ref.field)] : source.path;
    path.propertyName = source.prefix;
    path.propertyName += Subscript(ref.index);
    if (ref.field >= 0)
        path.propertyName += source.suffixes[std::size_t(ref.field)];
    return path;
}

bool MetadataView::FindPathForRow(Row* row, Path& path) const
{
    auto const found = d->pathRows.find(row);
    if (found == d->pathRows.end())
        return false;
    path = PathOfRowRef(found->second);
    return true;
}

MetadataViewCell* MetadataView::MetadataCellForRow(Row* row) const
{
    if (!row)
        return nullptr;
    UI_SubViewPtr const cellView = row->GetCellView(0);
    if (!cellView)
        return nullptr;
    return dynamic_cast<MetadataViewCell*>(cellView->ChildGet(0));
}

MetadataView::Row* MetadataView::RowForPath(Path const& path) const
{
    for (auto const& entry : d->pathRows)
    {
        // Only rows from a source whose path begins this one's can hold it.
        Private::RowPathSource const& from = d->rowPathSources[entry.second.source];
        if (from.path.schemaNamespace != path.schemaNamespace ||
            path.propertyName.compare(0, from.prefix.size(), from.prefix) != 0)
            continue;
        if (PathOfRowRef(entry.second) == path)
            return const_cast<Row*>(entry.first);
    }
    return nullptr;
}

void MetadataView::DumpRow(Row* row, int indent) const
{
    if (!row)
        return;
    Path path;
    std::string text;
    auto const schema = schemaRows.find(RowPtr(row));
    if (schema != schemaRows.end())
        text = "schema " + zephcore::ToStdString(schema->second->schemaNamespace);
    else if (FindPathForRow(row, path))
        text = zephcore::ToStdString(path.propertyName);
    std::fprintf(stderr, "%*s%s%s\n", indent * 2, "", text.c_str(),
                 tree->IsRowOpen(RowPtr(row)) ? " (open)" : "");
    for (std::size_t i = 0; i < row->CountChildRows(); ++i)
        DumpRow(row->GetChildRow(i).get(), indent + 1);
}

void MetadataView::UI_Draw(Drawbot* drawbot)
{
    RectF const bounds = UI_GetLocalRectF(false);
    (void)bounds;
    UI_SubView::UI_Draw(drawbot);
}

void MetadataView::UI_SizeChanged(RectF const& /*rect*/)
{
    RectF const bounds = UI_GetLocalRectF(false);
    tree->SetColumnWidth(0, std::max(bounds.width - UI_ScrollBar::GetDefaultSize() - 3.0f, 1.0f));
    tree->UI_SetLocalRectF(bounds);
}

} // namespace zephmetadataui

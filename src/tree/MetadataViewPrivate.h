#pragma once
// The property tree's own tables and caches: where each row's path comes
// from, the folded texts of the find, and the cells kept through a rebuild or
// handed from row to row while scrolling. Only the view's files see them.

#include "zephmetadataui/MetadataView.h"

#include "tree/MetadataViewRowTable.h"

#include <boost/weak_ptr.hpp>

#include <cstdint>
#include <map>
#include <unordered_map>
#include <vector>

namespace zephmetadataui
{

// A row's path: a path of its own (index 0), or item `index` of a uniform
// array (field >= 0: that field of the item), put together on demand, so
// that a track of thousands of items stores no path per row.
struct MetadataView::RowPathRef
{
    std::uint32_t source = 0;
    std::int32_t index = 0;
    std::int32_t field = -1;
};

struct MetadataView::Private
{
    struct RowPathSource
    {
        Path path;                                      // the row's own, or item 1 of the array
        zephmetadata::UTF8String prefix;                // of the names of all its rows
        std::vector<Path> fields;                       // of item 1
        std::vector<zephmetadata::UTF8String> suffixes; // of the fields, after the item's name
        std::vector<bool> unfolds; // the field is an array whose items get rows
    };
    std::vector<RowPathSource> rowPathSources;
    // Keyed by the row itself: the tree holds the rows.
    MetadataViewRowTable<Row, RowPathRef> pathRows;

    // Folded and normalised labels, by definition; labels never change under
    // a definition, so a keystroke folds only the values it reads.
    struct FoldedLabel
    {
        UTF16String label;
        UTF16String folded;
    };
    std::unordered_map<zephmetadata::EntryDefinition const*, FoldedLabel> foldedLabels;
    // Folded and normalised values, by path, for the provider they were read
    // from; emptied when it reports a change, so a keystroke reads only what
    // it has not read before.
    struct FoldedValue
    {
        bool present = false;
        UTF16String folded;
    };
    std::map<Path, FoldedValue> foldedValues;
    boost::weak_ptr<zephmetadata::MetaDataProvider> foldedValuesProvider;
    zephmetadata::MetaDataProvider::ChangedListener foldedValuesListener;

    // The cells of the rows on screen, kept through a rebuild with their
    // value controls still live on the provider, so that a row that comes
    // back (as most do between two keystrokes of a find) takes its cell back
    // instead of making its controls again.
    struct KeptCell
    {
        boost::intrusive_ptr<zephui::UI_Node> cell;
        boost::shared_ptr<Control> control;
    };
    std::map<Path, KeptCell> keptCells;
    // What a cell that may be kept or handed over was made for: the view's
    // cellShape and the forced-writable switch at the time (its stamp), and
    // its kind. A rebuild keeps only cells whose stamp is current; a row that
    // comes on screen in the slot of a row of the same kind (the same kind of
    // control, greyed or not) takes that row's cell, refilled, instead of
    // making widgets anew. Cells with check boxes or link buttons answer to
    // their row and the delegate: they get no record, so are always made
    // afresh.
    struct CellRecord
    {
        std::uint64_t stamp = 0;
        std::uintptr_t kind = 0;
        boost::shared_ptr<Control> control;
    };
    std::unordered_map<zephui::UI_Node const*, CellRecord> cellRecords;
};

} // namespace zephmetadataui

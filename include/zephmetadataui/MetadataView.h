#pragma once
// MetadataView: the property list. A one-column tree of schemas, with their
// properties, structures, array items and structure fields beneath them; each
// row has a label and, where wanted, a value control and a link button. As a
// chooser of properties its labels are checkboxes. The row set is always
// rebuilt as a whole (a new provider, schemas, included paths or find text),
// and row contents are made only when a row comes on screen, so the cost of a
// rebuild is one pass over the definitions and the arrays of the data.
//
// The host makes the view; nothing else in the library does.

#include "zephmetadataui/zephmetadataui_export.h"
#include <zephmetadata/Definitions.h>
#include <zephmetadata/Path.h>
#include <zephmetadata/PathDefinitions.h>
#include <zephmetadata/Provider.h>

#include <zephui/Messages.h>
#include <zephui/UI_MultiColumnTree.h>
#include <zephui/UI_NodeManager.h>
#include <zephui/UI_SubView.h>

#include <boost/logic/tribool.hpp>
#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <vector>

namespace zephui
{
class UI_ButtonChangedMessage;
class UI_Checkbox;
class UI_PictureButton;
} // namespace zephui

namespace zephmetadataui
{

struct Control;
class FocusMover;
class MetadataViewCell;
class MetadataView_LinkDelegate;

class ZEPHMETADATAUI_EXPORT MetadataView : public zephui::UI_SubView
{
public:
    using Path = zephmetadata::Path;
    using UTF16String = zephcore::UTF16String;
    using SchemaPtr = boost::shared_ptr<zephmetadata::SchemaDefinition>;
    using SchemaRange = zephmetadata::IteratorRange<SchemaPtr>;
    using ProviderPtr = boost::shared_ptr<zephmetadata::MetaDataProvider>;
    using RowPtr = boost::intrusive_ptr<zephui::UI_MultiColumnTreeRow>;
    using EquivalenceMap = std::map<Path, boost::shared_ptr<std::set<Path>>>;

    // Which rows are open, by schema and path rather than by row: rows die at
    // each rebuild, the keys live on.
    struct OpenedRowData
    {
        std::set<SchemaPtr> openedSchemas;
        std::set<Path> openedPaths;
    };

    // Scope object: rebuilds asked for while it lives collapse into one at
    // its end.
    class SuspendTreeRebuild
    {
    public:
        explicit SuspendTreeRebuild(MetadataView* view);
        ~SuspendTreeRebuild();
        SuspendTreeRebuild(SuspendTreeRebuild const&) = delete;
        SuspendTreeRebuild& operator=(SuspendTreeRebuild const&) = delete;

    private:
        boost::intrusive_ptr<MetadataView> view;
    };

    // Shows schemas (by default the common ones) of provider (may be empty).
    explicit MetadataView(SchemaRange const& schemas = zephmetadata::CommonSchemaDefinitions(),
                          ProviderPtr const& provider = ProviderPtr());
    ~MetadataView() override;

    // Operations that end in a rebuild.
    void SetDisplaySchemas(SchemaRange const& schemas);
    void SetProvider(ProviderPtr const& provider);
    // Paths that fail the display filter are dropped.
    void SetIncludedPaths(std::set<Path> const& paths);
    void SetAllowPropertySelection(bool allow);
    // The text is folded and normalised first; an equal result does nothing.
    void SetRapidFindString(UTF16String const& text);
    // For a host whose values changed under an active search.
    void RefilterMetadataFieldsForRapidFindString();
    void SetOpenedSchemaRows(std::set<SchemaPtr> const& schemas);
    // Shows the metadata of a file; an empty path keeps the present provider.
    void ShowMetadataForFilePath(UTF16String const& filePath);

    // Operations that only store; the next rebuild shows their effect.
    void GetIncludedPaths(std::set<Path>& paths) const { paths = includedPaths; }
    void SetSelectedPaths(std::set<Path> const& paths) { selectedPaths = paths; }
    void GetSelectedPaths(std::set<Path>& paths) const { paths = selectedPaths; }
    void SetForcedOnPaths(std::set<Path> const& paths) { forcedOnPaths = paths; }
    void GetForcedOnPaths(std::set<Path>& paths) const { paths = forcedOnPaths; }
    void SetDisabledPaths(std::set<Path> const& paths)
    {
        disabledPaths = paths;
        ++cellShape;
    }
    void GetDisabledPaths(std::set<Path>& paths) const { paths = disabledPaths; }
    void SetReadOnlyPaths(std::set<Path> const& paths)
    {
        readOnlyPaths = paths;
        ++cellShape;
    }
    void GetReadOnlyPaths(std::set<Path>& paths) const { paths = readOnlyPaths; }
    void SetEquivalenceMap(EquivalenceMap const& map) { equivalenceMap = map; }
    void GetEquivalenceMap(EquivalenceMap& map) const { map = equivalenceMap; }
    bool GetAllowPropertySelection() const { return allowPropertySelection; }
    void SetDisplayPropertyValue(bool display)
    {
        displayPropertyValue = display;
        ++cellShape;
    }
    bool GetDisplayPropertyValue() const { return displayPropertyValue; }
    void SetDisableDynamicSchema(bool disable) { disableDynamicSchema = disable; }
    bool GetDisableDynamicSchema() const { return disableDynamicSchema; }
    void SetLinkDelegate(boost::shared_ptr<MetadataView_LinkDelegate> const& delegate);
    std::set<SchemaPtr> GetOpenedSchemaRows() const { return openedRows.openedSchemas; }

    // Schema rows and included paths.
    void AppendSchemaToPropertiesTree(SchemaPtr const& schema, bool open);
    void RemoveSchemaFromPropertiesTree(SchemaPtr const& schema);
    // Adds the schema at the end of the display list unless it is there.
    void EnsureSchemaIsPresent(SchemaPtr const& schema);
    void AppendSchemaPropertiesToIncludedPaths(SchemaPtr const& schema);
    // Removes the schema's own leaf properties; leaves below a structure stay.
    void RemoveSchemaPropertiesFromIncludedPaths(SchemaPtr const& schema);

    // For a host whose link state changed from outside.
    void UpdateAllLinkButtons();

    // Keyboard travel. The mover is not owned, nor are the neighbours.
    void SetFocusMover(FocusMover* mover) { focusMover = mover; }
    // With a neighbour the view filters every key event to handle Tab itself.
    void SetFocusOrder(zephui::UI_Node* previous, zephui::UI_Node* next);
    // Moves the focus to the next editable row from the row that holds from.
    void HackAdvanceFocus(bool forward, zephui::UI_Node* from);
    bool MoveOutToNextNodeFocusOrder(bool forward);

    // The divider position of all cells, in tree coordinates (default 165).
    static void SetSharedLabelWidth(float width);
    static float GetSharedLabelWidth();

    void UI_Draw(zephui::Drawbot* drawbot) override;
    void UI_SizeChanged(zephui::RectF const& rect) override;
    bool UI_DoKeyboardEvent(zephui::UI_Node* node, zephui::KeyboardEvent const& event) override;
    bool UI_DoPreKeyboardEvent(zephui::UI_Node* node, zephui::KeyboardEvent const& event) override;

private:
    using Row = zephui::UI_MultiColumnTreeRow;
    using EntryPtr = boost::shared_ptr<zephmetadata::EntryDefinition>;

    // Population.
    void SetupTreeCharacteristics();
    void PopulateTreeValues();
    void IncludeAllPathsInCurrentSchemas();
    void AppendPathToTree(Path const& path, RowPtr const& parentRow, bool alwaysInclude);
    void AppendArrayToTree(Path const& path, RowPtr const& parentRow, int count);
    bool AppendUniformArrayToTree(Path const& path, RowPtr const& parentRow, int count);
    bool ShouldAppendPathToTree(Path const& path, bool alwaysInclude);
    void CreateViewForRow_Schema(RowPtr const& row, SchemaPtr const& schema);
    bool FindPathForRow(Row* row, Path& path) const;
    MetadataViewCell* MetadataCellForRow(Row* row) const;
    void DumpRow(Row* row, int indent) const;
    void EmptyMemoCounts();
    std::size_t IncludedLeafCount(Path const& path);

    // Row cells.
    void CreateViewForRow_Path(RowPtr const& row, Path const& path);
    void CreateViewForRow_PathLabel(RowPtr const& row, MetadataViewCell* cell, Path const& path,
                                    EntryPtr const& entry);
    void CreateViewForRow_PathValue(RowPtr const& row, MetadataViewCell* cell, Path const& path,
                                    bool reservesLinkColumn, EntryPtr const& entry);
    void CreateViewForRow_PathLinkButton(RowPtr const& row, MetadataViewCell* cell,
                                         Path const& path, bool hasLink, bool linked, bool enabled,
                                         EntryPtr const& entry);
    UTF16String CreateLabelText(Path const& path) const;
    void UpdatePathLabel(Path const& path);
    void ControlCallBackFunction(zephui::Message* message, Path const& path);
    void GetPictureButtonImage(zephui::ConstMessage* message);
    void PictureButtonChanged(zephui::UI_PictureButton* button, Path path);
    Row* RowForPath(Path const& path) const;

    // Selection checkboxes.
    void OnPathCheckbox(zephui::UI_ButtonChangedMessage* message, Row* row, Path path);
    void OnSchemaCheckbox(zephui::UI_ButtonChangedMessage* message, Row* row, SchemaPtr schema);
    zephui::UI_Checkbox* CheckboxForRow(Row* row) const;
    void UpdateCheckboxInRow(Row* row);
    void SetRecursiveCheckboxState(Row* row, bool on);
    void UpdateEquivalentCheckBoxes(Row* row, Path const& path, boost::logic::tribool state);
    void SetPathCheckboxState(zephui::UI_Checkbox* box, Path const& path,
                              std::set<Path> const& forced) const;
    void SetSchemaCheckboxState(zephui::UI_Checkbox* box, SchemaPtr const& schema) const;
    // Turns all leaves below on or off by how many are on now; true for on.
    bool ToggleGroup(zephmetadata::IteratorRange<Path> const& leaves);

    // Find and opened rows.
    bool UserIsSearchingForRows() const { return !rapidFindString.empty(); }
    bool MatchesRapidFindString(EntryPtr const& entry);
    bool MatchesRapidFindString(UTF16String const& text) const;
    void GetOpenedRows(OpenedRowData& data) const;
    void OpenRows(OpenedRowData const& data);
    void SetOpenedRows(OpenedRowData const& data) { openedRows = data; }
    void OnRowDisclosureChanged(Row* row, bool open);
    void OnRowVisibilityChanged(Row* row);

    // Dynamic schemas.
    void UpdateDynamicSchemas();

    // Keyboard travel.
    bool IsFocusableRow(Row* row) const;
    Row* NextFocusableRow(bool forward, Row* row) const;
    Row* FindRowThatHoldsMetadataViewCell(MetadataViewCell* cell) const;

    UTF16String rapidFindString;
    boost::intrusive_ptr<zephui::UI_MultiColumnTree> tree;
    std::map<RowPtr, SchemaPtr> schemaRows;
    // Where a row's path comes from (see MetadataViewPrivate.h).
    struct RowPathRef;
    void AddRowPath(Row const* row, Path const& path);
    Path PathOfRowRef(RowPathRef const& ref) const;
    ProviderPtr provider;
    std::vector<boost::shared_ptr<Control>> controls;
    std::vector<SchemaPtr> displaySchemas;
    std::vector<SchemaPtr> dynamicSchemas;
    std::set<Path> includedPaths;
    std::set<Path> selectedPaths;
    std::set<Path> forcedOnPaths;
    std::set<Path> disabledPaths;
    std::set<Path> readOnlyPaths;
    EquivalenceMap equivalenceMap;
    boost::shared_ptr<MetadataView_LinkDelegate> linkDelegate;
    FocusMover* focusMover = nullptr;
    zephui::UI_Node* focusPrevious = nullptr;
    zephui::UI_Node* focusNext = nullptr;
    zephui::UI_NodeManager::AddAndRemoveKeyboardEventFilterNode* keyboardFilter = nullptr;
    OpenedRowData openedRows;
    bool allowPropertySelection = false;
    bool displayPropertyValue = true;
    bool rebuildSuspended = false;
    bool rebuildPending = false;
    bool disableDynamicSchema = false;
    std::map<Path, std::size_t> includedLeafCounts;
    std::map<SchemaPtr, std::size_t> schemaLeafCounts;

    // The tree's callbacks; emptied in place when the view dies.
    zephui::UI_MultiColumnTree::RowVisibilityChangedCallback visibilityCallback;
    zephui::UI_MultiColumnTree::RowDisclosureChangedCallback disclosureCallback;
    zephui::UI_MultiColumnTree::MakeChildRowsCallback makeChildRowsCallback;
    zephui::UI_MultiColumnTree::RowCellKindCallback cellKindCallback;
    void MakeItemFieldRows(Row* itemRow);
    // Keeps the tree's own disclosure reports out of openedRows while
    // OpenRows writes the record back into the tree.
    bool openingRows = false;
    bool ValueMatchesRapidFindString(Path const& path);
    // Counts the changes of whatever shapes a cell (provider, values shown,
    // read-only and disabled paths, check boxes, link buttons); see
    // MetadataViewPrivate.h for the cells kept and handed over with it.
    std::uint64_t cellShape = 0;
    std::uint64_t CurrentCellStamp() const;
    void StampCell(zephui::UI_Node const* cell, Path const& path,
                   boost::shared_ptr<Control> const& control);
    std::uintptr_t CellKindOf(Path const& path) const;
    std::uintptr_t CellKindOfRow(Row* row) const;
    bool RefillCell(RowPtr const& row, Path const& path, EntryPtr const& entry);
    zephui::MessageCallback ValueChangedCallback(Path const& path);
    void KeepCellsOfVisibleRows();
    bool TakeKeptCell(RowPtr const& row, Path const& path);
    void ForgetFoldedValues();

    // Tables and caches that only the view's own files use.
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace zephmetadataui

#pragma once
// The display preferences: which metadata properties a host's panel shows.
// All known schemas stand in a tree of checkboxes with a search box; named
// sets of properties can be saved in, loaded from and deleted from a folder
// the host names; and the user can make schemas and properties of their own.
//
// The dialog edits the host's set in place and keeps no copy: after Cancel
// the set holds what the user did, and schemas made stay registered and
// written. A host that wants Cancel to restore its set passes a copy.

#include "zephmetadataui/zephmetadataui_export.h"

#include <zephmetadata/Definitions.h>
#include <zephmetadata/Path.h>

#include <zepheve/UI_Eve.h>
#include <zephui/UI_Button.h>
#include <zephui/UI_MultiColumnTree.h>
#include <zephui/UI_Popup.h>
#include <zephui/UI_SearchBox.h>

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <map>
#include <set>
#include <utility>
#include <vector>

namespace zephui
{
class UI_Checkbox;
}

namespace zephmetadataui
{

using SchemaDefinitionPtr = boost::shared_ptr<zephmetadata::SchemaDefinition>;
using PropertyDefinitionPtr = boost::shared_ptr<zephmetadata::PropertyDefinition>;
using SchemaIterator = zephmetadata::IteratorRange<SchemaDefinitionPtr>::iterator;
using SchemaIteratorPair = std::pair<SchemaIterator, SchemaIterator>;
// Told of a property the user made; the host adds it to the schema.
using AddPropertyCallback = boost::function<void(SchemaDefinitionPtr, PropertyDefinitionPtr)>;
// Told of a property the user deleted; the host takes it out of the schema.
using RemovePropertyCallback =
    boost::function<void(SchemaDefinitionPtr, zephmetadata::Path const&)>;

// Shows the dialog modally; true when it closed with OK. settingsFolder may
// be empty (no saved sets); schemas is the range of schemas shown; the
// paths of mandatoryPaths are always on. Empty callbacks leave adding and
// removing properties to the dialog. modifiedSchemas receives every schema
// the user changed, for the host to write.
ZEPHMETADATAUI_EXPORT bool DoMetadataPreferencesDialog(
    std::set<zephmetadata::Path>& includedPaths, zephui::SupplierInterface const* supplier,
    zephui::UI_Node* parent, std::set<SchemaDefinitionPtr>& modifiedSchemas,
    zephcore::UTF16String const& settingsFolder, SchemaIteratorPair const& schemas,
    std::set<zephmetadata::Path> const& mandatoryPaths,
    AddPropertyCallback const& addPropertyCallback,
    RemovePropertyCallback const& removePropertyCallback, bool showArrays);

class ZEPHMETADATAUI_EXPORT MetadataPreferencesDialog : public zepheve::UI_Eve
{
public:
    using RowPtr = zephui::UI_MultiColumnTree::RowPtr;
    using Row = zephui::UI_MultiColumnTreeRow;

    MetadataPreferencesDialog(std::set<zephmetadata::Path>& includedPaths,
                              zephui::SupplierInterface const* supplier, zephui::UI_Node* parent,
                              std::set<SchemaDefinitionPtr>& modifiedSchemas,
                              zephcore::UTF16String const& settingsFolder,
                              SchemaIteratorPair const& schemas,
                              std::set<zephmetadata::Path> const& mandatoryPaths,
                              AddPropertyCallback addPropertyCallback,
                              RemovePropertyCallback removePropertyCallback, bool showArrays);
    ~MetadataPreferencesDialog() override;

    void Setup() override;

    // The folder as used, normalised; empty for none.
    zephcore::UTF16String const& GetSettingsFolder() const { return settingsFolder; }

private:
    // The tree.
    void PrepareTree();
    void Populate();
    void AddPropertyRow(zephmetadata::Path const& path, RowPtr const& parent);
    void OnRowVisibilityChanged(Row* row);
    void BuildCell(Row* row);
    zephui::UI_Checkbox* CheckboxOf(Row* row) const;
    void UpdateRowCheckbox(Row* row);
    void SetPathCheckboxState(zephui::UI_Checkbox* box, zephmetadata::Path const& path) const;
    void SetSchemaCheckboxState(zephui::UI_Checkbox* box, SchemaDefinitionPtr const& schema) const;
    void OnPathToggled(Row* row, zephmetadata::Path path);
    void OnSchemaToggled(Row* row, SchemaDefinitionPtr schema);
    void SetDescendantCheckboxes(Row* row);
    void UpdateOpenedVisibleRows();
    void OnSearchChanged();

    // Saved sets.
    void RebuildSettingsPopup();
    void SynchronizePopup();
    void OnLoadSettings();
    void OnSaveSettings();
    void OnDeleteSettings();

    // Custom schemas and properties.
    void OnNewSchema();
    void OnAddProperty(SchemaDefinitionPtr schema);
    void OnDeleteProperty(zephmetadata::Path path);
    RowPtr RowOfSchema(SchemaDefinitionPtr const& schema) const;

    std::map<zephcore::UTF16String, std::set<zephmetadata::Path>> savedSets;
    std::vector<SchemaDefinitionPtr> schemas;
    std::set<SchemaDefinitionPtr>& modifiedSchemas;
    std::set<zephmetadata::Path>& includedPaths;
    std::set<zephmetadata::Path> const& mandatoryPaths;
    zephcore::UTF16String settingsFolder;
    AddPropertyCallback addPropertyCallback;
    RemovePropertyCallback removePropertyCallback;
    bool showArrays = false;
    std::map<RowPtr, SchemaDefinitionPtr> schemaRows;
    std::map<RowPtr, zephmetadata::Path> propertyRows;
    zephcore::UTF16String searchText;
    boost::intrusive_ptr<zephui::UI_MultiColumnTree> propertiesTree;
    zephui::UI_ButtonPtr saveButton;
    zephui::UI_ButtonPtr deleteButton;
    zephui::UI_ButtonPtr newSchemaButton;
    zephui::UI_PopupPtr settingsPopup;
    zephui::UI_SearchBoxPtr searchBox;

    // The holders of the callables given to the tree and the controls.
    zephui::UI_MultiColumnTree::RowVisibilityChangedCallback visibilityCallback;
    std::vector<zephui::MessageCallback> controlCallbacks;
};

} // namespace zephmetadataui

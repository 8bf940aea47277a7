// The display preferences dialog: its construction, the setup of the
// script's controls, and the search.

#include "zephmetadataui/MetadataPreferencesDialog.h"

#include "binding/PathFilters.h"
#include "preferences/PreferencesPrivate.h"

#include <boost/make_shared.hpp>
#include <zepheve/DynamicGroup.h>
#include <zephui/UI_NodeManager.h>

namespace zephmetadataui
{

bool DoMetadataPreferencesDialog(std::set<Path>& includedPaths, SupplierInterface const* supplier,
                                 UI_Node* parent, std::set<SchemaDefinitionPtr>& modifiedSchemas,
                                 UTF16String const& settingsFolder,
                                 SchemaIteratorPair const& schemas,
                                 std::set<Path> const& mandatoryPaths,
                                 AddPropertyCallback const& addPropertyCallback,
                                 RemovePropertyCallback const& removePropertyCallback,
                                 bool showArrays)
{
    std::string const script = preferences::LayoutScript("MetadataPreferencesDialog");
    if (script.empty())
        return false;
    MetadataPreferencesDialog dialog(includedPaths, supplier, parent, modifiedSchemas,
                                     settingsFolder, schemas, mandatoryPaths, addPropertyCallback,
                                     removePropertyCallback, showArrays);
    return dialog.ParseEveScript(script) == zephui::kDialogResultOK;
}

MetadataPreferencesDialog::MetadataPreferencesDialog(
    std::set<Path>& includedPaths, SupplierInterface const* supplier, UI_Node* parent,
    std::set<SchemaDefinitionPtr>& modifiedSchemas, UTF16String const& settingsFolder,
    SchemaIteratorPair const& schemaRange, std::set<Path> const& mandatoryPaths,
    AddPropertyCallback addPropertyCallback, RemovePropertyCallback removePropertyCallback,
    bool showArrays)
    : UI_Eve("MetadataPreferencesDialog", supplier, parent),
      schemas(schemaRange.first, schemaRange.second), modifiedSchemas(modifiedSchemas),
      includedPaths(includedPaths), mandatoryPaths(mandatoryPaths),
      addPropertyCallback(std::move(addPropertyCallback)),
      removePropertyCallback(std::move(removePropertyCallback)), showArrays(showArrays)
{
    FilterShowablePaths(includedPaths);
    if (!settingsFolder.empty())
    {
        zephcore::Dir const folder(settingsFolder);
        this->settingsFolder =
            folder.IsTopLevelDir()
                ? folder.FullPath()
                : zephcore::FileUtils::BuildPathSpec(folder.Parent().FullPath(), folder.GetName());
    }
}

MetadataPreferencesDialog::~MetadataPreferencesDialog() = default;

namespace
{
template <class T> boost::intrusive_ptr<T> Find(zepheve::UI_Eve const& eve, char const* name)
{
    return boost::dynamic_pointer_cast<T>(eve.GetUINodePtr(name));
}
} // namespace

void MetadataPreferencesDialog::Setup()
{
    UI_Eve::Setup();
    if (auto const root = Find<zepheve::DynamicGroup>(*this, "rootArrangement"))
        root->InvalidateAll();

    propertiesTree = Find<zephui::UI_MultiColumnTree>(*this, "properties");
    PrepareTree();

    auto const connect =
        [this](zephui::UI_ControlView* control, void (MetadataPreferencesDialog::*action)())
    {
        if (!control)
            return;
        controlCallbacks.push_back(boost::make_shared<boost::function<void(Message*)>>(
            [this, action](Message*) { (this->*action)(); }));
        control->NotifyWhenChanged(controlCallbacks.back());
    };
    saveButton = Find<UI_Button>(*this, "save_settings_button");
    deleteButton = Find<UI_Button>(*this, "delete_settings_button");
    newSchemaButton = Find<UI_Button>(*this, "new_schema_button");
    connect(saveButton.get(), &MetadataPreferencesDialog::OnSaveSettings);
    connect(deleteButton.get(), &MetadataPreferencesDialog::OnDeleteSettings);
    connect(newSchemaButton.get(), &MetadataPreferencesDialog::OnNewSchema);

    settingsPopup = Find<UI_Popup>(*this, "previous_settings_popup");
    RebuildSettingsPopup();
    connect(settingsPopup.get(), &MetadataPreferencesDialog::OnLoadSettings);

    searchBox = Find<zephui::UI_SearchBox>(*this, "search_box");
    if (searchBox)
    {
        connect(searchBox.get(), &MetadataPreferencesDialog::OnSearchChanged);
        searchBox->NotifyWhenChangedInteractively(controlCallbacks.back());
    }

    // The dialog only grows in height: its width stays what the script made.
    if (zephui::UI_DialogPtr const view = GetView())
    {
        float const scale = zephui::UI_NodeManager::Get()->GetScaleMatrix().scaleX;
        float const width = view->UI_GetLocalRectF().width / (scale > 0.0f ? scale : 1.0f);
        view->SetMinimumSize(width, 400.0f);
        view->SetMaximumSize(width, 10000.0f);
        view->SetContentSize(width, 400.0f);
    }
}

void MetadataPreferencesDialog::OnSearchChanged()
{
    if (!searchBox)
        return;
    UTF16String const folded = zephcore::FoldCase(searchBox->GetValue());
    if (folded == searchText)
        return;
    searchText = folded;
    Populate();
}

} // namespace zephmetadataui

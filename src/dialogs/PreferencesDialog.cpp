#include "dialogs/PreferencesDialog.h"

#include "module/ModuleResources.h"

#include <zephcore/Localizer.h>

namespace zephmetadataui
{

using namespace zephui;

PreferencesDialog::PreferencesDialog(SupplierInterface const* supplier, UI_Node* parent,
                                     MetadataDialogSettings* settings)
    : UI_ArchivedDialog(supplier, ModuleResourceManager(), "MetadataDialogPreferences",
                        zephcore::Localizer::Get().GetString(
                            "$$$/zephmetadataui/dialog/preferences/title=Preferences"),
                        parent),
      settings(settings)
{
    SetButtons(GetNodeForID<UI_Button>("OKButton"), GetNodeForID<UI_Button>("CancelButton"));
    debugMode = GetNodeForID<UI_Checkbox>("DebugModeCheckbox");
    bool enabled = false;
    if (settings)
        settings->GetBool("enableDebugMode", enabled);
    debugMode->SetValue(enabled ? kCheckboxOn : kCheckboxOff);
}

void PreferencesDialog::DefaultCloseOk()
{
    if (settings)
        settings->SetBool("enableDebugMode", debugMode->GetValue() == kCheckboxOn);
    UI_ArchivedDialog::DefaultCloseOk();
}

} // namespace zephmetadataui

#pragma once
// The metadata dialog's own small preferences: whether the error log shows.

#include "zephmetadataui/MetadataDialog.h"

#include <zephui/UI_ArchivedDialog.h>
#include <zephui/UI_Checkbox.h>

namespace zephmetadataui
{

class ZEPHMETADATAUI_EXPORT PreferencesDialog : public zephui::UI_ArchivedDialog
{
public:
    PreferencesDialog(zephui::SupplierInterface const* supplier, zephui::UI_Node* parent,
                      MetadataDialogSettings* settings);
    // Stores the check box in "enableDebugMode", then closes.
    void DefaultCloseOk() override;

private:
    MetadataDialogSettings* settings;
    zephui::UI_CheckboxPtr debugMode;
};

} // namespace zephmetadataui

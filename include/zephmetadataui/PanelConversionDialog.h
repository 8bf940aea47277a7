#pragma once
// Converts the generic metadata panels of an earlier suite generation into
// the present extension format: the user picks the generation, presses
// Start and reads the converter's report. The host runs the dialog with
// RunModal and releases it; Exit closes it, and the window's place is kept
// for the next time when the application has a PrefManager.

#include "zephmetadataui/zephmetadataui_export.h"

#include <zephui/UI_ArchivedDialog.h>
#include <zephui/UI_Button.h>
#include <zephui/UI_Popup.h>
#include <zephui/UI_TextEdit.h>

#include <vector>

namespace zephmetadataui
{
namespace sharedui
{

class ZEPHMETADATAUI_EXPORT PanelConversionDialog : public zephui::UI_ArchivedDialog
{
public:
    // The library must be started: the dialog comes from its resources.
    PanelConversionDialog(zephui::SupplierInterface const* supplier, zephui::UI_Node* parent);
    ~PanelConversionDialog() override;

    void DefaultCloseOk() override;
    void DefaultCloseCancel() override;

private:
    void OnVersionChanged();
    void OnStart();
    void StorePlace();

    zephui::UI_PopupPtr versionPopup;
    zephui::UI_TextEditPtr resultText;
    zephui::UI_ButtonPtr startButton;
    std::vector<zephui::MessageCallback> callbacks;
};

using PanelConversionDialogPtr = boost::intrusive_ptr<PanelConversionDialog>;

} // namespace sharedui
} // namespace zephmetadataui

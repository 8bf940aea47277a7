#pragma once
// Asks how a template is merged into the open metadata: clear and replace,
// keep and replace, or keep and append. It remembers the last choice, also
// when cancelled.

#include "zephmetadataui/MetadataDialog.h"

#include <zephmetadata/Types.h>

#include <zephui/UI_ArchivedDialog.h>
#include <zephui/UI_RadioGroup.h>

namespace zephmetadataui
{

class ZEPHMETADATAUI_EXPORT MetadataTemplateImportOptionsDialog : public zephui::UI_ArchivedDialog
{
public:
    MetadataTemplateImportOptionsDialog(zephui::SupplierInterface const* supplier,
                                        zephui::UI_Node* parent, MetadataDialogSettings* settings);
    void DefaultCloseOk() override;
    void DefaultCloseCancel() override;
    // The choice: index 0 and 1 as they are, any other the third option.
    zephmetadata::TemplateImportOptions SelectedOption() const;
    zephui::UI_RadioGroup* GetOptionsGroup() const { return optionsGroup.get(); }

private:
    void StoreChoice();

    MetadataDialogSettings* settings;
    zephui::UI_RadioGroupPtr optionsGroup;
};

} // namespace zephmetadataui

#include "dialogs/MetadataTemplateImportOptionsDialog.h"

#include "module/ModuleResources.h"

#include <zephcore/Localizer.h>

namespace zephmetadataui
{

using namespace zephui;

MetadataTemplateImportOptionsDialog::MetadataTemplateImportOptionsDialog(
    SupplierInterface const* supplier, UI_Node* parent, MetadataDialogSettings* settings)
    : UI_ArchivedDialog(supplier, ModuleResourceManager(), "MetadataTemplateImportOptionsDialog",
                        zephcore::Localizer::Get().GetString(
                            "$$$/zephmetadataui/dialog/import/template/title=Import Options"),
                        parent),
      settings(settings)
{
    UI_SetNodeID("MetadataTemplateImportOptionsDialog");
    RectF const size = UI_GetLocalRectF(false);
    SetMinimumSize(size.width, size.height);
    Position();
    optionsGroup = GetNodeForID<UI_RadioGroup>("optionsGroupID");
    int choice = 0;
    if (settings)
        settings->GetInt("templateImportOptions", choice);
    optionsGroup->SetIndex(choice);
    SetButtons(GetNodeForID<UI_Button>("okButtonID"), GetNodeForID<UI_Button>("cancelButtonID"));
}

zephmetadata::TemplateImportOptions MetadataTemplateImportOptionsDialog::SelectedOption() const
{
    switch (optionsGroup->GetIndex())
    {
    case 0:
        return zephmetadata::kTemplateImportClearAndReplace;
    case 1:
        return zephmetadata::kTemplateImportKeepAndReplace;
    default:
        return zephmetadata::kTemplateImportKeepAndAppend;
    }
}

void MetadataTemplateImportOptionsDialog::StoreChoice()
{
    if (settings)
        settings->SetInt("templateImportOptions", optionsGroup->GetIndex());
}

void MetadataTemplateImportOptionsDialog::DefaultCloseOk()
{
    StoreChoice();
    UI_ArchivedDialog::DefaultCloseOk();
}

void MetadataTemplateImportOptionsDialog::DefaultCloseCancel()
{
    StoreChoice();
    UI_ArchivedDialog::DefaultCloseCancel();
}

} // namespace zephmetadataui

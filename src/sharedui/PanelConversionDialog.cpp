#include "zephmetadataui/PanelConversionDialog.h"

#include "contracts/Toolkit.h"
#include "module/ModuleResources.h"

#include <boost/make_shared.hpp>
#include <zephmetadata/PanelConversion.h>
#include <zephui/PrefManager.h>

namespace zephmetadataui
{
namespace sharedui
{

namespace
{

char const* const kNodeID = "MetadataPanelConversionDialog";

UI_NodePtr MakeNode(UTF16String const& className)
{
    if (className == zephcore::AsciiToUTF16("TextEditMultilineWithVerticalScrollbar"))
        return new UI_TextEdit(UI_TextEdit::kTextEditMultiLine | UI_TextEdit::kTextEditWrap |
                                   UI_TextEdit::kTextEditVerticalScrollBar,
                               0);
    return UI_NodePtr();
}

UTF16String Plain(char const* text)
{
    return zephcore::AsciiToUTF16(text);
}

} // namespace

PanelConversionDialog::PanelConversionDialog(SupplierInterface const* supplier, UI_Node* parent)
    : UI_ArchivedDialog(supplier, ModuleResourceManager(), kNodeID,
                        Plain("Generic Panel Converter"), parent, 0, &MakeNode)
{
    UI_SetNodeID(kNodeID);
    RectF const local = UI_GetLocalRectF();
    SetMinimumSize(local.width, local.height);

    if (zephui::PrefManager* const prefs = zephui::PrefManager::GetPrefManager())
    {
        RectF place = zephui::UI_GetGlobalStructureRect(this);
        prefs->GetWindowPositionAndSize(Plain(kNodeID), place);
        if (place.width <= 0.0f || place.height <= 0.0f)
        {
            place.width = 440.0f;
            place.height = 280.0f;
        }
        zephui::UI_SetGlobalStructureRect(this, place);
    }

    auto const notify = [this](UI_ControlView* control, void (PanelConversionDialog::*action)())
    {
        callbacks.push_back(boost::make_shared<boost::function<void(Message*)>>(
            [this, action](Message*) { (this->*action)(); }));
        control->NotifyWhenChanged(callbacks.back());
    };
    versionPopup = GetNodeForID<UI_Popup>("versionPopupID");
    for (char const* row : {"Select Version...", "", "R6", "R5", "R4"})
    {
        if (*row)
            versionPopup->AddItem(Plain(row));
        else
            versionPopup->AddSeparator();
    }
    versionPopup->SetValue(0);
    notify(versionPopup.get(), &PanelConversionDialog::OnVersionChanged);

    resultText = GetNodeForID<UI_TextEdit>("resultTextID");
    startButton = GetNodeForID<UI_Button>("startButtonID");
    notify(startButton.get(), &PanelConversionDialog::OnStart);
    SetOkButton(GetNodeForID<UI_Button>("exitButtonID"));
}

PanelConversionDialog::~PanelConversionDialog() = default;

void PanelConversionDialog::OnVersionChanged()
{
    startButton->SetEnabled(versionPopup->GetValue() != 0);
}

void PanelConversionDialog::OnStart()
{
    int const row = versionPopup->GetValue();
    if (row == 0)
        return;
    auto const version = row == 2   ? zephmetadata::utility::kSuiteVersionR6
                         : row == 3 ? zephmetadata::utility::kSuiteVersionR5
                                    : zephmetadata::utility::kSuiteVersionR4;
    UTF16String report;
    zephmetadata::utility::LoadAndConvertGenericPanels(version, report);
    resultText->SetValue(report);
}

void PanelConversionDialog::DefaultCloseOk()
{
    UI_ArchivedDialog::DefaultCloseOk();
    StorePlace();
}

void PanelConversionDialog::DefaultCloseCancel()
{
    UI_ArchivedDialog::DefaultCloseCancel();
    StorePlace();
}

void PanelConversionDialog::StorePlace()
{
    if (zephui::PrefManager* const prefs = zephui::PrefManager::GetPrefManager())
        prefs->SetWindowPositionAndSize(Plain(kNodeID), zephui::UI_GetGlobalStructureRect(this));
}

} // namespace sharedui
} // namespace zephmetadataui

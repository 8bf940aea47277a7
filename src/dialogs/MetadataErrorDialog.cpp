#include "dialogs/MetadataErrorDialog.h"

#include "module/ModuleResources.h"

#include <zephmetadata/ErrorLog.h>

#include <zephui/Desktop.h>
#include <zephui/PrefManager.h>
#include <zephui/Theme.h>
#include <zephui/UI_MultiColumnTreeHeaderRow.h>
#include <zephui/UI_MultiColumnTreeRow.h>

#include <zephcore/Localizer.h>

#include <boost/make_shared.hpp>

namespace zephmetadataui
{

using namespace zephui;
using zephcore::UTF16String;

namespace
{

char const kWindowID[] = "MetadataErrorDialog";

} // namespace

UTF16String const& MetadataErrorDialog::DocumentationAddress()
{
    // The XMP standard's own page.
    static UTF16String const address =
        zephcore::AsciiToUTF16("https://www.iso.org/standard/75163.html");
    return address;
}

MetadataErrorDialog::MetadataErrorDialog(SupplierInterface const* supplier, UI_Node* parent)
    : UI_ArchivedDialog(supplier, ModuleResourceManager(), "MetadataErrorDialog",
                        zephcore::Localizer::Get().GetString(
                            "$$$/zephmetadataui/dialog/error/title=Error Information"),
                        parent)
{
    UI_SetNodeID(kWindowID);
    SetMinimumSize(600, 280);
    RectF rect = UI_GetGlobalStructureRect(this);
    if (PrefManager* places = PrefManager::GetPrefManager(true))
    {
        places->GetWindowPositionAndSize(zephcore::AsciiToUTF16(kWindowID), rect);
        if (rect.width < 1 || rect.height < 1)
        {
            rect.width = 600;
            rect.height = 280;
        }
        UI_SetGlobalStructureRect(this, rect);
    }
    SetOkButton(GetNodeForID<UI_Button>("okButtonID"));

    errorList = GetNodeForID<UI_MultiColumnTree>("errorListID");
    errorList->SetNumberOfColumns(2);
    errorList->SetDrawGridLines(true, true);
    if (UI_MultiColumnTreeHeaderRow* header = errorList->GetHeaderRow())
    {
        header->GetColumnAt(0)->SetColumnName(zephcore::Localizer::Get().GetString(
            "$$$/zephmetadataui/dialog/error/list/column0=Description"));
        header->GetColumnAt(1)->SetColumnName(zephcore::Localizer::Get().GetString(
            "$$$/zephmetadataui/dialog/error/list/column1=Context"));
        header->ShowSortIndicator(false);
        header->SetAllowUserColumnMove(false);
    }
    errorList->SetAutoResizableColumns(std::vector<unsigned long>{0, 1});
    errorList->SetColumnWidth(0, 200);
    errorList->SetColumnWidth(1, 20);
    drawCell = boost::make_shared<
        boost::function<void(Drawbot*, UI_MultiColumnTreeRow*, unsigned long, RectF const&)>>(
        [this](Drawbot* drawbot, UI_MultiColumnTreeRow* row, unsigned long column,
               RectF const& cell)
        {
            errorList->DrawCellString(drawbot, row, cell, CellText(row, column),
                                      GetDefaultTextColorID(), errorList->GetCellTextFontSize(),
                                      errorList->GetCellTextLeftInset(), GetFontName(0),
                                      UTF16String(), 0, 3);
        });
    errorList->SetDrawCellOfRowCallback(drawCell);
    for (zephmetadata::ErrorInfo const& info : zephmetadata::GetErrorInfos())
        errorRows[errorList->CreateAndAppendRow(nullptr, false, false).get()] = info;
    errorList->LayoutAfterAppendRow();

    errorLink = GetNodeForID<UI_StaticText>("errorLinkID");
    errorLink->SetValue(DocumentationAddress());
    linkClicked = boost::make_shared<boost::function<void(Message*)>>(
        [](Message*) { OpenURLInDefaultBrowser(DocumentationAddress()); });
    errorLink->NotifyWhenChanged(linkClicked);
}

MetadataErrorDialog::~MetadataErrorDialog()
{
    linkClicked->clear();
    drawCell->clear();
}

UTF16String MetadataErrorDialog::CellText(UI_MultiColumnTreeRow* row, unsigned long column) const
{
    auto const found = errorRows.find(row);
    if (found == errorRows.end())
        return {};
    if (column == 0)
        return found->second.message;
    if (column == 1)
        return found->second.source;
    return {};
}

void MetadataErrorDialog::StorePlace()
{
    if (PrefManager* places = PrefManager::GetPrefManager(true))
        places->SetWindowPositionAndSize(zephcore::AsciiToUTF16(kWindowID),
                                         UI_GetGlobalStructureRect(this));
}

void MetadataErrorDialog::DefaultCloseOk()
{
    StorePlace();
    UI_ArchivedDialog::DefaultCloseOk();
}

void MetadataErrorDialog::DefaultCloseCancel()
{
    StorePlace();
    UI_ArchivedDialog::DefaultCloseCancel();
}

} // namespace zephmetadataui

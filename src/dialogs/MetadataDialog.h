#pragma once
// The paged file-information dialog behind DoMetadataDialog: pages chosen in
// a list on the left, the page on the right, an error box under the list in
// debug mode, and Preferences, the template popup, OK and Cancel below. Its
// pages edit a MetadataProviderWrapper, never the host's provider.

#include "dialogs/MetadataProviderWrapper.h"
#include "zephmetadataui/MetadataDialog.h"
#include "zephmetadataui/MetadataLayoutView.h"

#include <zephmetadata/Definitions.h>

#include <zephui/UI_ArchivedDialog.h>
#include <zephui/UI_ListBox.h>
#include <zephui/UI_OutlineBox.h>
#include <zephui/UI_Popup.h>
#include <zephui/UI_StaticImage.h>

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace zephmetadataui
{

// Restores the process-wide XMP writing switch when the dialog goes.
class ScDisableXMPWriting
{
public:
    explicit ScDisableXMPWriting(bool restoreTo) : restoreTo(restoreTo) {}
    ~ScDisableXMPWriting();
    ScDisableXMPWriting(ScDisableXMPWriting const&) = delete;
    ScDisableXMPWriting& operator=(ScDisableXMPWriting const&) = delete;

private:
    bool restoreTo;
};

class ZEPHMETADATAUI_EXPORT MetadataDialog : public zephui::UI_ArchivedDialog
{
public:
    MetadataDialog(boost::shared_ptr<MetadataProviderWrapper> provider,
                   zephui::SupplierInterface const* supplier, zephui::HWND parentWindow,
                   MetadataDialogParameters const& parameters);
    ~MetadataDialog() override;

    void DefaultCloseOk() override;
    void DefaultCloseCancel() override;

    std::vector<MetadataLayoutViewPtr> const& GetPages() const { return pageViews; }
    MetadataLayoutView* GetCurrentPage() const { return currentPage.get(); }
    zephui::UI_ListBox* GetPageList() const { return pageList.get(); }
    zephui::UI_Popup* GetTemplatePopup() const { return templatePopup.get(); }
    zephui::UI_OutlineBox* GetErrorBox() const { return errorBox.get(); }
    // The template folder: "Velmora/XMP/Metadata Templates" in the user's
    // configuration folder, made when first asked for.
    static zephcore::UTF16String TemplateFolder();

private:
    void ReadViewSettings();
    void RestoreGeometry();
    void StorePlace();
    void SaveViewState();
    std::vector<boost::shared_ptr<zephmetadata::ViewDefinition>> BuildPageDefinitions() const;
    void AddPage(boost::shared_ptr<zephmetadata::ViewDefinition> const& definition, int& row);
    void ActivatePage(MetadataLayoutViewPtr const& page);
    void PageSelected();
    void RefreshErrorBox();
    void ShowErrorLog();
    void ShowPreferences();
    // Templates.
    void ListTemplates();
    void TemplateChosen();
    void ImportTemplate();
    void ExportTemplate();
    void ApplyTemplate(zephcore::UTF16String const& path);

    boost::shared_ptr<MetadataProviderWrapper> provider;
    MetadataDialogParameters parameters;
    ScDisableXMPWriting writingGuard;
    boost::shared_ptr<boost::function<void(zephcore::UTF16String)>> errorSubscription;
    std::vector<std::string> viewOrder;
    std::string activeViewId;
    zephui::UI_ButtonPtr okButton;
    zephui::UI_ButtonPtr cancelButton;
    zephui::UI_ButtonPtr preferencesButton;
    zephui::UI_PopupPtr templatePopup;
    zephui::UI_PictureTextButtonPtr errorButton;
    boost::intrusive_ptr<zephui::UI_OutlineBox> errorBox;
    zephui::UI_ListBoxPtr pageList;
    zephui::UI_SubViewPtr pageHost;
    std::vector<MetadataLayoutViewPtr> pageViews;
    MetadataLayoutViewPtr currentPage;
    std::vector<zephcore::UTF16String> templateFileNames;
    // Holders of the callables given to controls; emptied when the dialog goes.
    std::vector<zephui::MessageCallback> messageHolders;
    std::vector<zephui::ConstMessageCallback> imageHolders;
};

} // namespace zephmetadataui

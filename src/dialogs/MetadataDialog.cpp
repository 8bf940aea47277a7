#include "dialogs/MetadataDialog.h"

#include "dialogs/MetadataErrorDialog.h"
#include "dialogs/PreferencesDialog.h"
#include "module/ModuleResources.h"
#include "zephmetadataui/RawDataView.h"

#include <zephmetadata/ErrorLog.h>
#include <zephmetadata/Switches.h>
#include <zephmetadata/ViewDefinitions.h>

#include <zephui/MonitorInfo.h>
#include <zephui/PrefManager.h>
#include <zephui/Theme.h>
#include <zephui/UI_NodeManager.h>

#include <zephcore/Localizer.h>

#include <boost/make_shared.hpp>

#include <QWidget>

#include <algorithm>

namespace zephmetadataui
{

using namespace zephui;
using zephcore::UTF16String;
using ViewDefinitionPtr = boost::shared_ptr<zephmetadata::ViewDefinition>;

namespace
{

char const kWindowID[] = "MetadataDialog";
char const kRawDataID[] = "com.velmora.xmp.view.rawdata";
char const* const kDefaultViewOrder[] = {"com.velmora.xmp.view.basic",
                                         "com.velmora.xmp.view.camera",
                                         "com.velmora.xmp.view.origin",
                                         "com.velmora.xmp.view.iptccore",
                                         "com.velmora.xmp.view.iptcextension",
                                         "com.velmora.xmp.view.gps",
                                         "com.velmora.xmp.view.audio",
                                         "com.velmora.xmp.view.video",
                                         "com.velmora.xmp.view.imagingcore",
                                         "com.velmora.xmp.view.dicom",
                                         kRawDataID};

std::string IdOf(ViewDefinitionPtr const& definition)
{
    return std::string(definition->name.begin(), definition->name.end());
}

UTF16String Text(char const* key)
{
    return zephcore::Localizer::Get().GetString(key);
}

// The dark theme's images carry "_D".
std::string Themed(std::string name)
{
    return GetIconType() == 2 ? name + "_D" : name;
}

} // namespace

ScDisableXMPWriting::~ScDisableXMPWriting()
{
    zephmetadata::DisableXMPWriting(restoreTo);
}

MetadataDialog::MetadataDialog(boost::shared_ptr<MetadataProviderWrapper> wrapper,
                               SupplierInterface const* supplier, HWND parentWindow,
                               MetadataDialogParameters const& dialogParameters)
    : UI_ArchivedDialog(supplier, ModuleResourceManager(), "MetadataDialog", dialogParameters.title,
                        parentWindow),
      provider(std::move(wrapper)), parameters(dialogParameters),
      writingGuard(zephmetadata::IsXMPWritingDisabled())
{
    bool const readOnly = (parameters.flags & kMetadataDialogReadOnly) != 0;
    // Both ways on purpose: a dialog that may edit switches writing on.
    zephmetadata::DisableXMPWriting(readOnly);
    UI_SetNodeID(kWindowID);
    auto const onMessage = [this](boost::function<void()> action)
    {
        messageHolders.push_back(
            boost::make_shared<boost::function<void(Message*)>>([action](Message*) { action(); }));
        return messageHolders.back();
    };

    okButton = GetNodeForID<UI_Button>("OKButton");
    cancelButton = GetNodeForID<UI_Button>("CancelButton");
    SetButtons(okButton, cancelButton);
    preferencesButton = GetNodeForID<UI_Button>("PreferencesButton");
    preferencesButton->NotifyWhenChanged(onMessage([this] { ShowPreferences(); }));

    templatePopup = GetNodeForID<UI_Popup>("TemplatePopup");
    templatePopup->DeleteAllItems();
    templatePopup->AddItem(
        Text("$$$/zephmetadataui/dialog/template/popup/TemplateFolder=Template Folder"));
    templatePopup->AddSeparator();
    templatePopup->AddItem(Text("$$$/zephmetadataui/dialog/template/popup/itemImport=Import..."));
    templatePopup->AddItem(Text("$$$/zephmetadataui/dialog/template/popup/itemExport=Export..."));
    templatePopup->AddSeparator();
    templatePopup->SetShouldUseCustomDrawnMenu(true);
    templatePopup->SetValue(0);
    templatePopup->SetAlwaysNotify(true);
    if (parameters.flags & kMetadataDialogNoTemplates)
    {
        templatePopup->UI_Hide();
    }
    else
    {
        templatePopup->NotifyWhenChanged(onMessage([this] { TemplateChosen(); }));
        templatePopup->SetPreShowMenuCallback([this] { ListTemplates(); });
    }
    if (readOnly)
        templatePopup->DisableItem(2);

    pageList = GetNodeForID<UI_ListBox>("PageChooserList");
    pageList->SetItemSelectedCallback(onMessage([this] { PageSelected(); }));
    pageHost = GetNodeForID<UI_SubView>("PageSubView");

    auto const supplyImage =
        [this](
            boost::function<boost::intrusive_ptr<ImageInterface>(SupplierInterface const*)> image)
    {
        imageHolders.push_back(boost::make_shared<boost::function<void(ConstMessage*)>>(
            [image](ConstMessage* message)
            {
                if (auto* ask = dynamic_cast<UI_PictureSupplyMessage*>(message))
                    ask->SetImage(image(ask->GetDrawSupplier()));
            }));
        return imageHolders.back();
    };
    UI_StaticImagePtr logo = GetNodeForID<UI_StaticImage>("logo_image");
    logo->SetImageSupplyFunction(
        supplyImage([](SupplierInterface const* s)
                    { return LoadModuleImage(s, Themed("SP_PoweredByXMP_72x33_N")); }));
    // The logo reaches above its row; a child is cut at its parent's edge
    // here, so it moves to the row's parent at the same place.
    if (UI_Node* row = logo->UI_GetParentNode(); row && row->UI_GetParentNode())
    {
        RectF const inRow = logo->UI_GetLocalRectF(true);
        RectF const rowRect = row->UI_GetLocalRectF(true);
        row->ChildRequestRemove(logo.get());
        logo->UI_SetLocalRectF(inRow.Offset(rowRect.left, rowRect.top));
        row->UI_GetParentNode()->ChildPushBack(logo);
    }
    errorBox = GetNodeForID<UI_OutlineBox>("error_box");
    errorButton = GetNodeForID<UI_PictureTextButton>("error_image");
    errorButton->SetImageAndTextAlignment(0);
    errorButton->SetImageSupplyFunction(supplyImage(
        [](SupplierInterface const* s)
        {
            return zephmetadata::HasErrors()
                       ? UI_NodeManager::Get()->GetImage(s, Themed("SP_Alert_Md_N"))
                       : boost::intrusive_ptr<ImageInterface>();
        }));
    errorButton->SetDisplayBorderNever(true);
    errorButton->SetDisplayContainerNever(true);
    errorButton->NotifyWhenChanged(onMessage([this] { ShowErrorLog(); }));

    errorSubscription = boost::make_shared<boost::function<void(UTF16String)>>(
        [this](UTF16String const&) { RefreshErrorBox(); });
    zephmetadata::NotifyOnError(errorSubscription);

    zephmetadata::LoadAllViewDefinitions();
    ReadViewSettings();
    SetMinimumSize(640, 480);
    RestoreGeometry();

    int row = 0;
    int activeRow = 0;
    for (ViewDefinitionPtr const& definition : BuildPageDefinitions())
    {
        int const before = row;
        AddPage(definition, row);
        if (row > before && IdOf(definition) == activeViewId)
            activeRow = before;
    }
    if (!pageViews.empty())
    {
        ActivatePage(pageViews[std::size_t(activeRow)]);
        pageList->SelectItem(activeRow, true, true);
    }
    RefreshErrorBox();
}

MetadataDialog::~MetadataDialog()
{
    if (errorSubscription)
        errorSubscription->clear();
    for (auto const& holder : messageHolders)
        holder->clear();
    for (auto const& holder : imageHolders)
        holder->clear();
}

UTF16String MetadataDialog::TemplateFolder()
{
    UTF16String const folder = zephcore::FileUtils::BuildPathSpec(
        zephcore::Dir::GlobalPrefDir().FullPath(),
        zephcore::AsciiToUTF16("Velmora/XMP/Metadata Templates"));
    zephcore::FileUtils::EnsureDirectoryExists(folder);
    return folder;
}

// ---- Settings and geometry -----------------------------------------------

void MetadataDialog::ReadViewSettings()
{
    MetadataDialogSettings* settings = parameters.settings;
    if (!settings)
        return;
    if (!settings->GetStringList("viewList", viewOrder) || viewOrder.empty())
        viewOrder.assign(std::begin(kDefaultViewOrder), std::end(kDefaultViewOrder));
    settings->GetString("activeView", activeViewId);
}

void MetadataDialog::RestoreGeometry()
{
    RectF rect;
    PrefManager* places = PrefManager::GetPrefManager(true);
    if (places && places->GetWindowPositionAndSize(zephcore::AsciiToUTF16(kWindowID), rect))
    {
        OS_MonitorInfo().EnsureRectIsVisible(rect);
        UI_SetGlobalStructureRect(this, rect);
    }
    else
    {
        SetContentSize(640, 680);
        Center();
    }
}

void MetadataDialog::SaveViewState()
{
    MetadataDialogSettings* settings = parameters.settings;
    if (!settings)
        return;
    // The defaults go back as read, so they become explicit after first use.
    settings->SetStringList("viewList", viewOrder);
    if (currentPage)
    {
        zephmetadata::UTF8String const name = currentPage->GetViewName();
        activeViewId.assign(name.begin(), name.end());
        settings->SetString("activeView", activeViewId);
    }
}

void MetadataDialog::StorePlace()
{
    // Read while the window still shows, where the user left it.
    if (PrefManager* places = PrefManager::GetPrefManager(true))
        places->SetWindowPositionAndSize(zephcore::AsciiToUTF16(kWindowID),
                                         UI_GetGlobalStructureRect(this));
}

void MetadataDialog::DefaultCloseOk()
{
    StorePlace();
    UI_ArchivedDialog::DefaultCloseOk();
    SaveViewState();
}

void MetadataDialog::DefaultCloseCancel()
{
    StorePlace();
    UI_ArchivedDialog::DefaultCloseCancel();
    SaveViewState();
}

// ---- Pages ---------------------------------------------------------------

std::vector<ViewDefinitionPtr> MetadataDialog::BuildPageDefinitions() const
{
    std::vector<ViewDefinitionPtr> working;
    for (ViewDefinitionPtr const& definition : zephmetadata::CommonViewDefinitions())
        working.push_back(definition);
    std::vector<ViewDefinitionPtr> ordered;
    for (std::string const& id : viewOrder)
    {
        auto const found =
            std::find_if(working.begin(), working.end(),
                         [&id](ViewDefinitionPtr const& d) { return IdOf(d) == id; });
        if (found == working.end())
            continue;
        ordered.push_back(*found);
        working.erase(found);
    }
    ordered.insert(ordered.end(), working.begin(), working.end());
    auto raw = boost::make_shared<zephmetadata::ViewDefinition>();
    raw->name = zephcore::ToUTF8(kRawDataID);
    raw->label = zephcore::ToUTF8("$$$/zephmetadataui/view/RawData_label=Raw Data");
    raw->description = zephcore::ToUTF8(
        "$$$/zephmetadataui/view/RawData_description=The source of the XMP metadata");
    raw->isRawView = true;
    ordered.push_back(raw);
    return ordered;
}

void MetadataDialog::AddPage(ViewDefinitionPtr const& definition, int& row)
{
    MetadataLayoutViewPtr page;
    UTF16String text;
    UTF16String toolTip;
    if (definition->isRawView)
    {
        if (IdOf(definition) != kRawDataID)
            return;
        page = CreateRawDataView(definition, provider, RawDataViewOptions{true, 0.0f, 0.0f});
        text = zephcore::UTF8to16(page->GetDisplayName());
        toolTip = Text("$$$/metadataui/view/rawData_description=Displays the XMP packet in raw "
                       "RDF/XML form.");
    }
    else
    {
        page = new MetadataLayoutView(definition, provider);
        page->SetMargins(5);
        text = definition->GetLabel();
        toolTip = definition->GetDescription();
    }
    pageViews.push_back(page);
    pageList->InsertItem(row, text);
    if (UI_ListBoxItem* item = pageList->GetItem(row))
        item->UI_SetToolTip(toolTip, 400);
    ++row;
}

void MetadataDialog::PageSelected()
{
    std::set<int> const selected = pageList->GetSelectedItems();
    if (selected.empty() || *selected.begin() >= int(pageViews.size()))
        return;
    ActivatePage(pageViews[std::size_t(*selected.begin())]);
}

void MetadataDialog::ActivatePage(MetadataLayoutViewPtr const& page)
{
    if (!page || page == currentPage)
        return;
    if (currentPage)
    {
        currentPage->UI_Show(false);
        pageHost->ChildRequestRemove(currentPage.get());
    }
    currentPage = page;
    page->UI_SetLocalRectF(pageHost->UI_GetLocalRectF(false));
    page->UI_SetLayoutBinding(kBindRightEdgeToParentRight | kBindBottomEdgeToParentBottom);
    pageHost->ChildPushBack(page);
    page->Layout();
    page->UI_Show(true);
}

// ---- Error box and preferences ---------------------------------------------

void MetadataDialog::RefreshErrorBox()
{
    bool debug = false;
    if (parameters.settings)
        parameters.settings->GetBool("enableDebugMode", debug);
    if (debug)
    {
        static_cast<void>(zephmetadata::GetErrorInfos());
        // No count: the placeholder is cut off rather than filled.
        UTF16String label = Text("$$$/zephmetadataui/ErrorLog/Label=Error Log (@0)");
        label = label.substr(0, label.find(zephcore::AsciiToUTF16("(@0)")));
        while (!label.empty() && (label.back() == u' ' || label.back() == u'\t'))
            label.pop_back();
        errorButton->SetText(label);
    }
    if (errorBox->UI_IsShown() == debug)
        return;
    errorBox->UI_Show(debug);
    RectF const box = errorBox->UI_GetLocalRectF(true);
    RectF list = pageList->UI_GetLocalRectF(true);
    list.height = debug ? box.top - 3 - list.top : box.top + box.height - list.top;
    pageList->UI_SetLocalRectF(list);
}

void MetadataDialog::ShowErrorLog()
{
    boost::intrusive_ptr<MetadataErrorDialog> dialog(new MetadataErrorDialog(GetSupplier(), this));
    dialog->RunModal();
}

void MetadataDialog::ShowPreferences()
{
    boost::intrusive_ptr<PreferencesDialog> dialog(
        new PreferencesDialog(GetSupplier(), this, parameters.settings));
    if (dialog->RunModal() == kDialogResultOK)
        RefreshErrorBox();
}

// ---- The call ------------------------------------------------------------

namespace
{

bool RunMetadataDialog(boost::shared_ptr<zephmetadata::MetaDataProvider> provider,
                       SupplierInterface const* supplier, HWND parent,
                       MetadataDialogParameters const& parameters)
{
    auto wrapper = boost::make_shared<MetadataProviderWrapper>(std::move(provider));
    boost::intrusive_ptr<MetadataDialog> dialog;
    try
    {
        dialog.reset(new MetadataDialog(wrapper, supplier, parent, parameters));
    }
    catch (std::exception const& error)
    {
        // A damaged or missing dialog resource: said in the log, nothing shown.
        zephmetadata::AddError(zephmetadata::kErrorDefinitionFile,
                               zephcore::ToUTF8("MetadataDialog"), zephcore::ToUTF8(error.what()));
        return false;
    }
    dialog->GetPageList()->UI_GainKeyboardFocus(kFocusReasonProgram);
    bool const committed = dialog->RunModal() == kDialogResultOK && wrapper->CommitChanges();
    dialog.reset(); // restores the writing switch, after the commit
    return committed;
}

} // namespace

bool DoMetadataDialog(boost::shared_ptr<zephmetadata::MetaDataProvider> provider, HWND parent,
                      MetadataDialogParameters const& parameters)
{
    std::unique_ptr<SupplierInterface> const supplier = NewOSSupplier();
    return RunMetadataDialog(std::move(provider), supplier.get(), parent, parameters);
}

bool DoMetadataDialog(boost::shared_ptr<zephmetadata::MetaDataProvider> provider,
                      SupplierInterface const* supplier, UI_Node* parent,
                      MetadataDialogParameters const& parameters)
{
    QWidget* widget = parent ? parent->UI_GetWidget() : nullptr;
    return RunMetadataDialog(std::move(provider), supplier, widget ? widget->window() : nullptr,
                             parameters);
}

} // namespace zephmetadataui

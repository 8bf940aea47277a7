#pragma once
// The file-information dialog: one modal call that shows a document's
// metadata in pages (one per view definition, the raw packet last), with
// templates and an error box. The pages edit a private copy; only OK hands it
// to the host's provider, in one change, and only if something was edited.

#include "zephmetadataui/zephmetadataui_export.h"

#include <zephui/UI_Dialog.h>

#include <zephcore/Strings.h>

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace zephmetadata
{
class MetaDataProvider;
}
namespace zephui
{
class SupplierInterface;
class UI_Node;
} // namespace zephui

namespace zephmetadataui
{

// Where the dialog's choices persist; the host implements it. Keys are
// "viewList", "activeView", "enableDebugMode", "templateImportOptions".
class ZEPHMETADATAUI_EXPORT MetadataDialogSettings
{
public:
    virtual ~MetadataDialogSettings() = default;
    // The out value stays as it was when the key is unknown.
    virtual void GetInt(std::string const& key, int& value) = 0;
    virtual void GetBool(std::string const& key, bool& value) = 0;
    // True when the key exists.
    virtual bool GetStringList(std::string const& key, std::vector<std::string>& value) = 0;
    virtual void GetString(std::string const& key, std::string& value) = 0;
    virtual void SetInt(std::string const& key, int value) = 0;
    virtual void SetBool(std::string const& key, bool value) = 0;
    virtual void SetStringList(std::string const& key, std::vector<std::string> const& value) = 0;
    virtual void SetString(std::string const& key, std::string const& value) = 0;
};

enum MetadataDialogFlags : std::uint8_t
{
    kMetadataDialogReadOnly = 0x01,
    kMetadataDialogNoTemplates = 0x02,
};

struct ZEPHMETADATAUI_EXPORT MetadataDialogParameters
{
    // The window title; also the name a template export offers.
    zephcore::UTF16String title;
    // Not owned; null keeps nothing and leaves the error box off.
    MetadataDialogSettings* settings = nullptr;
    // Carried for the host; the dialog never reads them.
    zephcore::UTF16String auxiliaryText1;
    zephcore::UTF16String auxiliaryText2;
    std::uint8_t flags = 0;
};

// Shows the dialog over a native window (null for none). True when the user
// pressed OK, something was edited and the host's metadata took it; false
// otherwise (a false after OK means there was nothing to write).
ZEPHMETADATAUI_EXPORT bool
DoMetadataDialog(boost::shared_ptr<zephmetadata::MetaDataProvider> provider, zephui::HWND parent,
                 MetadataDialogParameters const& parameters);
// The same, for a host inside the toolkit.
ZEPHMETADATAUI_EXPORT bool
DoMetadataDialog(boost::shared_ptr<zephmetadata::MetaDataProvider> provider,
                 zephui::SupplierInterface const* supplier, zephui::UI_Node* parent,
                 MetadataDialogParameters const& parameters);

} // namespace zephmetadataui

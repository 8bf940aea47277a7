#pragma once
// The small dialog that names a new property of a custom schema and chooses
// its kind: Integer, Real, Text or Boolean. A name must be given and must be
// new to the schema; the dialog stays open until it is.

#include "zephmetadataui/zephmetadataui_export.h"

#include <zephmetadata/Definitions.h>

#include <zepheve/UI_Eve.h>
#include <zephui/UI_Popup.h>
#include <zephui/UI_TextEdit.h>

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <vector>

namespace zephmetadataui
{

// Shows the dialog; on OK true, with the property's XML name, its name as
// typed and the index of its kind. Otherwise false, the outputs untouched.
ZEPHMETADATAUI_EXPORT bool
DoAddSchemaPropertyDialog(boost::shared_ptr<zephmetadata::SchemaDefinition> const& schema,
                          zephcore::UTF16String& xmlName, zephcore::UTF16String& propertyName,
                          int& propertyType, zephui::SupplierInterface const* supplier,
                          zephui::UI_Node* parent);

class ZEPHMETADATAUI_EXPORT AddSchemaPropertyDialog : public zepheve::UI_Eve
{
public:
    AddSchemaPropertyDialog(boost::shared_ptr<zephmetadata::SchemaDefinition> schema,
                            zephui::SupplierInterface const* supplier, zephui::UI_Node* parent);
    ~AddSchemaPropertyDialog() override;

    void Setup() override;

    bool IsAccepted() const { return accepted; }
    zephcore::UTF16String const& GetXMLName() const { return xmlName; }
    zephcore::UTF16String const& GetPropertyName() const { return propertyName; }
    std::int32_t GetPropertyTypeIndex() const { return propertyTypeIndex; }

private:
    void OnOK();
    void Refuse(char const* titleKey, zephcore::UTF16String const& message);

    zephui::UI_DialogPtr view;
    zephcore::UTF16String xmlName;
    zephcore::UTF16String propertyName;
    std::int32_t propertyTypeIndex = 0;
    bool accepted = false;
    zephui::UI_TextEditPtr nameEdit;
    zephui::UI_PopupPtr typePopup;
    boost::shared_ptr<zephmetadata::SchemaDefinition> schema;
    std::vector<zephui::MessageCallback> buttonCallbacks;
};

} // namespace zephmetadataui

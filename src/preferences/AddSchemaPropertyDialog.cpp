#include "zephmetadataui/AddSchemaPropertyDialog.h"

#include "preferences/PreferencesPrivate.h"
#include "zephmetadataui/XMLNames.h"

#include <boost/make_shared.hpp>
#include <zephui/MessageBoxes.h>

namespace zephmetadataui
{

using preferences::Text;

bool DoAddSchemaPropertyDialog(boost::shared_ptr<zephmetadata::SchemaDefinition> const& schema,
                               UTF16String& xmlName, UTF16String& propertyName, int& propertyType,
                               SupplierInterface const* supplier, UI_Node* parent)
{
    std::string const script = preferences::LayoutScript("AddSchemaPropertyDialog");
    if (script.empty() || !schema)
        return false;
    AddSchemaPropertyDialog dialog(schema, supplier, parent);
    dialog.ParseEveScript(script);
    if (!dialog.IsAccepted())
        return false;
    xmlName = dialog.GetXMLName();
    propertyName = dialog.GetPropertyName();
    propertyType = dialog.GetPropertyTypeIndex();
    return true;
}

AddSchemaPropertyDialog::AddSchemaPropertyDialog(
    boost::shared_ptr<zephmetadata::SchemaDefinition> schema, SupplierInterface const* supplier,
    UI_Node* parent)
    : UI_Eve("AddSchemaPropertyDialog", supplier, parent), schema(std::move(schema))
{
}

AddSchemaPropertyDialog::~AddSchemaPropertyDialog() = default;

void AddSchemaPropertyDialog::Setup()
{
    view = GetView();
    // OK checks the name before it closes, so it is not the dialog's own OK;
    // it still answers Enter. Cancel (and Escape) close as usual, leaving
    // nothing accepted.
    auto const ok = boost::dynamic_pointer_cast<UI_Button>(GetUINodePtr("okButton"));
    auto const cancel = boost::dynamic_pointer_cast<UI_Button>(GetUINodePtr("cancelButton"));
    if (view)
        view->SetButtons(nullptr, cancel);
    if (ok)
    {
        ok->SetDefaultAppearance(true);
        buttonCallbacks.push_back(
            boost::make_shared<boost::function<void(Message*)>>([this](Message*) { OnOK(); }));
        ok->NotifyWhenChanged(buttonCallbacks.back());
    }

    nameEdit = boost::dynamic_pointer_cast<UI_TextEdit>(GetUINodePtr("nameTextEdit"));
    if (nameEdit)
    {
        nameEdit->SetValue(
            Text("$$$/zephmetadataui/AddSchemaPropertyDlg/NewPropertyName=NewProperty"));
        nameEdit->SelectAll();
    }
    typePopup = boost::dynamic_pointer_cast<UI_Popup>(GetUINodePtr("columnTypePopup"));
    if (typePopup)
    {
        typePopup->AddItem(
            Text("$$$/zephmetadataui/AddSchemaPropertyDlg/PropertyTypeMenuItem/Integer=Integer"));
        typePopup->AddItem(
            Text("$$$/zephmetadataui/AddSchemaPropertyDlg/PropertyTypeMenuItem/Real=Real"));
        typePopup->AddItem(
            Text("$$$/zephmetadataui/AddSchemaPropertyDlg/PropertyTypeMenuItem/Text=Text"));
        typePopup->AddItem(
            Text("$$$/zephmetadataui/AddSchemaPropertyDlg/PropertyTypeMenuItem/Boolean=Boolean"));
        typePopup->SetValue(0);
    }
}

void AddSchemaPropertyDialog::Refuse(char const* titleKey, UTF16String const& message)
{
    zephui::messagebox::ShowStop(Text(titleKey), message, view.get());
    if (nameEdit)
    {
        nameEdit->SelectAll();
        nameEdit->UI_GainKeyboardFocus(zephui::kFocusReasonProgram);
    }
}

void AddSchemaPropertyDialog::OnOK()
{
    UTF16String const name = nameEdit ? nameEdit->GetValue() : UTF16String();
    if (name.empty())
    {
        Refuse("$$$/zephmetadataui/AddSchemaPropertyDlg/EmptyPropertyWindow=Missing Property Name",
               Text("$$$/zephmetadataui/AddSchemaPropertyDlg/EmptyPropertyName=The property must "
                    "have a name. Please enter a unique name"));
        return;
    }
    UTF16String const xml = GenerateXMLNameFromUnicodeString(name);
    // The name as typed is compared, not its XML form.
    UTF8String const typed = zephcore::UTF16to8(name);
    for (auto const& property : schema->properties)
    {
        if (property && property->name == typed)
        {
            Refuse("$$$/zephmetadataui/AddSchemaPropertyDlg/DuplicatePropertyWindowTitle=Duplicate "
                   "Property Name",
                   zephcore::ReplaceInString(
                       Text("$$$/zephmetadataui/AddSchemaPropertyDlg/"
                            "DuplicatePropertyNameTemplate=The name @0 is already being used in "
                            "the schema. Please re-enter a unique property name"),
                       name));
            return;
        }
    }
    propertyTypeIndex = typePopup ? typePopup->GetValue() : 0;
    xmlName = xml;
    propertyName = name;
    accepted = true;
    if (view)
        view->Close(zephui::kDialogResultOK);
}

} // namespace zephmetadataui

#pragma once
// A dialog made from a layout script. A subclass gives the script to
// ParseEveScript, which parses it, builds the dialog, calls Setup once the
// dialog exists, runs it modally and returns when it closes. Setup finds the
// script's controls by name with GetUINodePtr and connects them.
//
// A faulty script throws LayoutScriptError (line and column in its message)
// before anything is shown.

#include "zepheve/DynamicGroup.h"
#include "zepheve/LayoutScript.h"
#include "zepheve/zepheve_export.h"

#include <zephui/UI_Dialog.h>

#include <map>
#include <string>

namespace zephui
{
class SupplierInterface;
}

namespace zepheve
{

class ZEPHEVE_EXPORT UI_Eve
{
public:
    // name: the dialog's name, for messages; parent: the dialog stays over
    // this node's window (null for none).
    UI_Eve(std::string name, zephui::SupplierInterface const* supplier, zephui::UI_Node* parent);
    UI_Eve(UI_Eve const&) = delete;
    UI_Eve& operator=(UI_Eve const&) = delete;

    virtual ~UI_Eve();
    // Once the dialog exists, before it shows. The default makes the
    // script's "okButton" and "cancelButton" the dialog's OK and Cancel.
    virtual void Setup();
    // After the run, last: releases the dialog and its names.
    virtual void Destruction();
    // After the dialog closed, while its controls still exist: the place to
    // read what the user entered. The default does nothing.
    virtual void SetupPostCloseCallback();
    // The script to build from; the default is the text ParseEveScript got.
    virtual std::string GetLayoutStream() const;

    // Builds the dialog, runs it modally and releases it; its result.
    int ParseEveScript(std::string const& text);
    // Builds the dialog and calls Setup, without showing it: for hosts that
    // run it themselves, and for measuring and looking at it.
    zephui::UI_DialogPtr CreateView(std::string const& text);

    // The node the script names so ("okButton" and "cancelButton" for the OK
    // and Cancel column); null for none.
    zephui::UI_NodePtr GetUINodePtr(std::string const& name) const;
    zephui::UI_DialogPtr GetView() const { return view; }
    // The supplier given, or the view's when none was.
    zephui::SupplierInterface const* GetDrawSupplier() const;
    // The result of the last run (zephui::kDialogResultOK or ...Cancel).
    int GetResult() const { return result; }
    std::string const& GetName() const { return name; }

private:
    std::string name;
    zephui::SupplierInterface const* supplier = nullptr;
    zephui::UI_Node* parent = nullptr;
    std::string text;
    zephui::UI_DialogPtr view;
    std::map<std::string, zephui::UI_NodePtr> nodes;
    int result = zephui::kDialogResultCancel;
};

} // namespace zepheve

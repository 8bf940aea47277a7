#include "zepheve/UI_Eve.h"

#include "DialogBuilder.h"

#include "zepheve/LayoutScript.h"

#include <utility>

namespace zepheve
{

UI_Eve::UI_Eve(std::string name, zephui::SupplierInterface const* supplier, zephui::UI_Node* parent)
    : name(std::move(name)), supplier(supplier), parent(parent)
{
}

UI_Eve::~UI_Eve()
{
    if (view)
        view->UI_Show(false);
}

void UI_Eve::Setup()
{
    auto ok = boost::dynamic_pointer_cast<zephui::UI_Button>(GetUINodePtr("okButton"));
    auto cancel = boost::dynamic_pointer_cast<zephui::UI_Button>(GetUINodePtr("cancelButton"));
    if (view && (ok || cancel))
        view->SetButtons(ok, cancel);
}

void UI_Eve::Destruction()
{
    if (view)
        view->UI_Show(false);
    nodes.clear();
    view.reset();
}

void UI_Eve::SetupPostCloseCallback() {}

std::string UI_Eve::GetLayoutStream() const
{
    return text;
}

zephui::UI_DialogPtr UI_Eve::CreateView(std::string const& script)
{
    text = script;
    // Parsed and built aside, so that a faulty script leaves no dialog behind.
    BuiltDialog built = BuildDialog(ParseLayoutScript(GetLayoutStream()), parent);
    Destruction();
    view = built.dialog;
    nodes = std::move(built.nodes);
    Setup();
    return view;
}

int UI_Eve::ParseEveScript(std::string const& script)
{
    zephui::UI_DialogPtr const dialog = CreateView(script);
    dialog->Position();
    result = dialog->RunModal();
    SetupPostCloseCallback();
    Destruction();
    return result;
}

zephui::UI_NodePtr UI_Eve::GetUINodePtr(std::string const& nodeName) const
{
    auto const it = nodes.find(nodeName);
    return it != nodes.end() ? it->second : zephui::UI_NodePtr();
}

zephui::SupplierInterface const* UI_Eve::GetDrawSupplier() const
{
    if (supplier || !view)
        return supplier;
    return view->UI_GetDrawSupplier();
}

} // namespace zepheve

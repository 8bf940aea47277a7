#pragma once
// Builds the nodes of a checked layout script: the dialog, its arrangements
// and controls, laid out at their natural size, with the script's names.

#include "EveDialog.h"

#include "zepheve/LayoutScript.h"

#include <map>
#include <string>

namespace zepheve
{

struct BuiltDialog
{
    boost::intrusive_ptr<EveDialog> dialog;
    std::map<std::string, zephui::UI_NodePtr> nodes;
};

// parent: the dialog stays over this node's window (null for none).
BuiltDialog BuildDialog(LayoutScript const& script, zephui::UI_Node* parent);

} // namespace zepheve

#pragma once
// Shared ground of the form views' tests: forms over the tree's test schemas
// in a shown window, the tables behind them walked, and what they show.

#include "../tree/TreeTestSupport.h"

#include <zephmetadataui/MetadataLayoutView.h>
#include <zephmetadataui/TableLayout.h>

#include <zephmetadata/Definitions.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace layouttest
{

using treetest::Path;
using zephmetadataui::MetadataLayoutView;
using zephmetadataui::layout::RowItem;
using zephmetadataui::layout::TableLayout;
using zephmetadataui::layout::TableLayoutPtr;
using ItemPtr = boost::shared_ptr<zephmetadata::ViewItem>;
using DefinitionPtr = boost::shared_ptr<zephmetadata::ViewDefinition>;
using Hints = std::vector<std::pair<char const*, char const*>>;
using LayoutTest = treetest::TreeTest;

// A view item for a property of the alpha test schema ("contact/ta:city").
ItemPtr AlphaItem(std::string const& property, Hints const& hints = {}, char const* format = "");
// An item without a value ("section", "note", ...), with children.
ItemPtr FormatItem(char const* format, Hints const& hints = {},
                   std::vector<ItemPtr> const& children = {}, std::string const& label = {});
DefinitionPtr Definition(std::vector<ItemPtr> const& items, bool hideEmptyValues = false);

// A form in a shown window of the given size, laid out.
class Form
{
public:
    Form(DefinitionPtr const& definition,
         boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider, int width = 600,
         int height = 700);
    MetadataLayoutView* View() const { return view.get(); }
    TableLayoutPtr Table() const { return view->GetTable(); }
    QWidget* Window() const { return window->Widget(); }

private:
    boost::intrusive_ptr<MetadataLayoutView> view;
    std::unique_ptr<treetest::Window> window;
};

// Every row of the table and its nested tables, depth first.
void ForEachRow(TableLayout const& table, std::function<void(RowItem const&)> const& visit);
// The window x of every shown value column (and array list), in whole pixels.
std::vector<int> ValueColumnLefts(TableLayout const& table);
// The texts of the shown static texts and controls, in order, joined by " | ".
std::string ShownTexts(TableLayout const& table);
// The control of the row whose label reads label (with its colon).
zephui::UI_Node* ValueOfLabel(TableLayout const& table, std::string const& label);

} // namespace layouttest

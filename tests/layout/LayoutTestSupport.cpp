#include "LayoutTestSupport.h"

#include <zephmetadataui/ArrayControl.h>

#include <zephui/UI_ListBox.h>
#include <zephui/UI_StaticText.h>

#include <boost/make_shared.hpp>

#include <cmath>

namespace layouttest
{

namespace
{
void SetHints(zephmetadata::ViewItem& item, Hints const& hints)
{
    for (auto const& [name, value] : hints)
        item.SetHint(name, value);
}

bool IsShownOnScreen(zephui::UI_Node* node)
{
    return node && node->UI_IsShown() && node->UI_AreAllParentsVisible();
}

int WindowX(zephui::UI_Node* node)
{
    return int(std::lround(node->UI_GetMatrix().Transform(zephui::PointF(0.0f, 0.0f)).x));
}
} // namespace

ItemPtr AlphaItem(std::string const& property, Hints const& hints, char const* format)
{
    auto item = boost::make_shared<zephmetadata::ViewItem>(treetest::AlphaPath(property));
    SetHints(*item, hints);
    item->format = zephcore::ToUTF8(format);
    return item;
}

ItemPtr FormatItem(char const* format, Hints const& hints, std::vector<ItemPtr> const& children,
                   std::string const& label)
{
    auto item = boost::make_shared<zephmetadata::ViewItem>(format);
    SetHints(*item, hints);
    for (ItemPtr const& child : children)
        item->AddItem(child);
    item->label = zephcore::ToUTF8(label.c_str());
    return item;
}

DefinitionPtr Definition(std::vector<ItemPtr> const& items, bool hideEmptyValues)
{
    auto definition = boost::make_shared<zephmetadata::ViewDefinition>();
    definition->name = zephcore::ToUTF8("test.view");
    definition->items = items;
    definition->hideEmptyValues = hideEmptyValues;
    return definition;
}

Form::Form(DefinitionPtr const& definition,
           boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider, int width, int height)
    : view(new MetadataLayoutView(definition, provider))
{
    view->UI_SetLocalRectF(zephui::RectF(0.0f, 0.0f, float(width), float(height)));
    view->UI_Show(true);
    window = std::make_unique<treetest::Window>(view, width, height);
    view->Layout();
}

void ForEachRow(TableLayout const& table, std::function<void(RowItem const&)> const& visit)
{
    for (auto const& row : table.rows)
    {
        visit(*row);
        for (auto const& item : row->items)
            if (item && item->table)
                ForEachRow(*item->table, visit);
    }
}

std::vector<int> ValueColumnLefts(TableLayout const& table)
{
    std::vector<int> lefts;
    ForEachRow(table,
               [&lefts](RowItem const& row)
               {
                   auto const& label = row.items[0];
                   auto const& value = row.items[1];
                   if (value && !value->table && IsShownOnScreen(value->view.get()))
                       lefts.push_back(WindowX(value->view.get()));
                   auto* array =
                       label && label->kind == 2 && IsShownOnScreen(label->view.get())
                           ? dynamic_cast<zephmetadataui::layout::ArrayControl*>(label->view.get())
                           : nullptr;
                   if (array)
                       lefts.push_back(WindowX(array->GetList()));
               });
    return lefts;
}

std::string ShownTexts(TableLayout const& table)
{
    std::string texts;
    ForEachRow(table,
               [&texts](RowItem const& row)
               {
                   for (auto const& item : row.items)
                       if (item && !item->table && IsShownOnScreen(item->view.get()))
                           if (std::string const text = treetest::ControlText(item->view.get());
                               !text.empty())
                               texts += (texts.empty() ? "" : " | ") + text;
               });
    return texts;
}

zephui::UI_Node* ValueOfLabel(TableLayout const& table, std::string const& label)
{
    zephui::UI_Node* found = nullptr;
    ForEachRow(table,
               [&](RowItem const& row)
               {
                   auto const* text =
                       row.items[0] ? dynamic_cast<zephui::UI_StaticText*>(row.items[0]->view.get())
                                    : nullptr;
                   if (!found && text && zephcore::ToStdString(text->GetValue()) == label &&
                       row.items[1])
                       found = row.items[1]->view.get();
               });
    return found;
}

} // namespace layouttest

#include "zephmetadata/ViewDefinitions.h"

#include "DefinitionLoader.h"
#include "DefinitionRegistry.h"
#include "zephmetadata/CustomDefinitions.h"
#include "zephmetadata/PathDefinitions.h"

#include <zephcore/Localizer.h>

namespace zephmetadata
{

using detail::Key;
using detail::Registry;
using detail::U8;

ViewItem::ViewItem(Path const& path) : path(path) {}

ViewItem::ViewItem(UTF8String const& format) : format(format) {}

ViewItem::ViewItem(char const* format) : format(U8(format ? format : "")) {}

void ViewItem::AddItem(boost::shared_ptr<ViewItem> item)
{
    if (item)
        items.push_back(std::move(item));
}

UTF16String ViewItem::GetLabel() const
{
    if (!label.empty())
        return zephcore::Localizer::Get().GetString(label);
    if (auto const entry = PathEntryDefinition(path))
        return entry->label;
    return UTF16String();
}

UTF16String ViewItem::GetDescription() const
{
    if (!description.empty())
        return zephcore::Localizer::Get().GetString(description);
    if (auto const entry = PathEntryDefinition(path))
        return entry->description;
    return UTF16String();
}

UTF8String ViewItem::GetHint(char const* name) const
{
    auto const found = hints.find(U8(name));
    return found == hints.end() ? UTF8String() : found->second;
}

void ViewItem::SetHint(char const* name, char const* value)
{
    hints[U8(name)] = U8(value);
}

UTF16String ViewDefinition::GetLabel() const
{
    return zephcore::Localizer::Get().GetString(label);
}

UTF16String ViewDefinition::GetDescription() const
{
    return description.empty() ? UTF16String() : zephcore::Localizer::Get().GetString(description);
}

void LoadAllViewDefinitions()
{
    LoadDefinitions();
    detail::LoadViewsOfFolder(CustomDefinitionsUserDirectory());
}

IteratorRange<boost::shared_ptr<ViewDefinition>> CommonViewDefinitions()
{
    return MakeSharedRange<boost::shared_ptr<ViewDefinition>>(Registry::Get().Views());
}

boost::shared_ptr<ViewDefinition> GetViewDefinitionForName(UTF8String const& name)
{
    return Registry::Get().FindView(Key(name));
}

void BuildView(boost::shared_ptr<ViewDefinition> definition, ViewBuilderInterface& builder)
{
    if (!definition)
        definition = boost::make_shared<ViewDefinition>();
    builder.BeginView(*definition);
    // A copy: a builder may look definitions up, and loading may replace views.
    std::vector<boost::shared_ptr<ViewItem>> const items = definition->items;
    for (auto const& item : items)
        builder.AddViewItem(item);
    builder.EndView();
}

} // namespace zephmetadata

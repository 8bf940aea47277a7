#include "zephui/UI_Container.h"

#include "zephui/UI_Node.h"

#include <algorithm>

namespace zephui
{

UI_Container::UI_Container() = default;

UI_Container::~UI_Container() = default;

void UI_Container::SetThemeName(std::string const& name)
{
    themeName = name;
}

Theme const* UI_Container::GetTheme() const
{
    if (!themeName.empty())
        if (Theme const* theme = FindTheme(themeName))
            return theme;
    return GetApplicationTheme();
}

bool UI_Container::ChildRequestRemove(UI_Node* child)
{
    auto it = std::find_if(children.begin(), children.end(),
                           [child](UI_NodePtr const& c) { return c.get() == child; });
    if (it == children.end())
        return false;
    UI_NodePtr const keep = *it;
    children.erase(it);
    ChildRemoved(child);
    return true;
}

void UI_Container::ChildPushBack(boost::intrusive_ptr<UI_Node> const& child)
{
    if (!child)
        return;
    children.push_back(child);
    ChildAdded(child.get());
}

UI_Node* UI_Container::ChildGet(std::size_t index) const
{
    return index < children.size() ? children[index].get() : nullptr;
}

void UI_Container::DeleteChildren()
{
    while (!children.empty())
    {
        UI_NodePtr const last = children.back();
        if (!ChildRequestRemove(last.get()))
            children.pop_back(); // an override that refuses must not loop forever
    }
}

} // namespace zephui

#pragma once
// The ordered child list of a node, and the theme and skin set it carries.

#include "zephui/Skin.h"
#include "zephui/Theme.h"
#include "zephui/zephui_export.h"

#include <boost/intrusive_ptr.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace zephui
{

class UI_Node;

class ZEPHUI_EXPORT ThemeOwner
{
public:
    std::string const& GetThemeName() const { return themeName; }

protected:
    std::string themeName; // empty: inherit
};

class ZEPHUI_EXPORT SkinSetOwner
{
public:
    void SetSkinSet(boost::intrusive_ptr<SkinSet> const& set) { skinSet = set; }
    SkinSet const* GetOwnSkinSet() const { return skinSet.get(); }

protected:
    boost::intrusive_ptr<SkinSet> skinSet; // null: inherit
};

class ZEPHUI_EXPORT UI_Container : public ThemeOwner, public SkinSetOwner
{
public:
    virtual void SetThemeName(std::string const& name);
    // The theme that applies here (own, inherited or the application's).
    virtual Theme const* GetTheme() const;
    virtual ~UI_Container();
    // Takes the child out of this list; false if it is not a child here.
    virtual bool ChildRequestRemove(UI_Node* child);
    // Appends the child, taking it from its former parent first.
    virtual void ChildPushBack(boost::intrusive_ptr<UI_Node> const& child);
    virtual bool AllowFocusToAdvanceFromChildren() const { return true; }
    virtual void ChildAdded(UI_Node* /*child*/) {}
    virtual void ChildRemoved(UI_Node* /*child*/) {}
    virtual void ChildOrderChanged() {}
    virtual bool IsANode() const { return false; }

    // Null past the end.
    UI_Node* ChildGet(std::size_t index) const;
    std::size_t ChildCount() const { return children.size(); }
    // Removes every child; children held nowhere else die.
    void DeleteChildren();

protected:
    UI_Container();
    std::vector<boost::intrusive_ptr<UI_Node>> children;
};

} // namespace zephui

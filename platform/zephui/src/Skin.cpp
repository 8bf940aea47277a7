#include "zephui/Skin.h"

#include "zephui/Theme.h"

namespace zephui
{

ColorRGBA ListBoxSkin::GetDividerColor(ThemeProvider const* theme) const
{
    return theme ? theme->GetColor(kColor_ListBoxContentDivider)
                 : GetColor(kColor_ListBoxContentDivider);
}

void SkinSet::AddSkin(boost::intrusive_ptr<Skin> const& skin)
{
    if (skin)
        skins[skin->GetClassName()] = skin;
}

void SkinSet::AddSkin(std::string const& className, boost::intrusive_ptr<Skin> const& skin)
{
    if (skin)
        skins[className] = skin;
}

boost::intrusive_ptr<Skin> SkinSet::GetSkinWithMap(std::string const& className,
                                                   SkinMap const* map) const
{
    std::string name = className;
    if (map)
    {
        auto alias = map->find(className);
        if (alias != map->end())
            name = alias->second;
    }
    auto it = skins.find(name);
    return it != skins.end() ? it->second : nullptr;
}

namespace
{

boost::intrusive_ptr<SkinSet>& ApplicationSkinSet()
{
    static boost::intrusive_ptr<SkinSet> set = []
    {
        boost::intrusive_ptr<SkinSet> s(new SkinSet);
        s->AddSkin(boost::intrusive_ptr<Skin>(new ListBoxSkin));
        return s;
    }();
    return set;
}

} // namespace

boost::intrusive_ptr<SkinSet> GetApplicationSkinSet()
{
    return ApplicationSkinSet();
}

void SetApplicationSkinSet(boost::intrusive_ptr<SkinSet> const& skinSet)
{
    ApplicationSkinSet() = skinSet ? skinSet : boost::intrusive_ptr<SkinSet>(new SkinSet);
}

} // namespace zephui

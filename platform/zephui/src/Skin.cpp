#include "zephui/Skin.h"

#include "zephui/Drawbot.h"
#include "zephui/Theme.h"

namespace zephui
{

ColorRGBA ListBoxSkin::GetDividerColor(ThemeProvider const* theme) const
{
    return theme ? theme->GetColor(kColor_ListBoxContentDivider)
                 : GetColor(kColor_ListBoxContentDivider);
}

namespace
{

ColorRGBA ThemeColor(ThemeProvider const* theme, int id)
{
    return theme ? theme->GetColor(id) : GetColor(id);
}

} // namespace

ColorRGBA TimedTextSkin::GetScriptLineColor(ThemeProvider const* theme) const
{
    return ThemeColor(theme, kColor_TextBandB);
}

ColorRGBA TimedTextSkin::GetTextColor(ThemeProvider const* theme) const
{
    return ThemeColor(theme, kColor_Text);
}

ColorRGBA TimedTextSkin::GetBandAColor(ThemeProvider const* theme) const
{
    return ThemeColor(theme, kColor_TextBandA);
}

ColorRGBA TimedTextSkin::GetBandBColor(ThemeProvider const* theme) const
{
    return ThemeColor(theme, kColor_TextBandB);
}

ColorRGBA TimedTextSkin::GetRangeFillColor(ThemeProvider const* theme) const
{
    return ThemeColor(theme, kColor_TimeRangeFill);
}

void TimedTextSkin::DrawFrame(Drawbot* drawbot, ThemeProvider const* theme, RectF const& rect) const
{
    // Half a pixel in, so that the 1-pixel stroke covers whole pixels.
    drawbot->StrokeRect(
        RectF(rect.left + 0.5f, rect.top + 0.5f, rect.width - 1.0f, rect.height - 1.0f),
        ThemeColor(theme, kColor_PanelFrame));
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

#pragma once
// Skins: per control class drawing and colour overrides, looked up by class
// name in a skin set. The application skin set carries the list box skin.

#include "zephui/Geometry.h"
#include "zephui/zephui_export.h"

#include "zephcore/RefCounted.h"

#include <boost/intrusive_ptr.hpp>

#include <map>
#include <string>

namespace zephui
{

class Drawbot;
class ThemeProvider;

class ZEPHUI_EXPORT Skin : public zephcore::RefCountedObject
{
public:
    virtual std::string GetClassName() const = 0;
};

// The skin of "UI_ListBox".
class ZEPHUI_EXPORT ListBoxSkin : public Skin
{
public:
    std::string GetClassName() const override { return "UI_ListBox"; }
    // The colour of the lines between a list's columns.
    virtual ColorRGBA GetDividerColor(ThemeProvider const* theme) const;
};

// The skin of "UI_SplitterView": paints the bars of splitters, and of views
// that draw splitter bars of their own.
class ZEPHUI_EXPORT SplitterViewSkin : public Skin
{
public:
    std::string GetClassName() const override { return "UI_SplitterView"; }
    // Paints one bar into rect in the theme's colours; horizontal: the bar
    // lies across, so its grip runs from left to right.
    virtual void Draw(Drawbot* drawbot, ThemeProvider const* theme, RectF const& rect,
                      bool horizontal) const;
};

// The skin of the timed text views, the transcript and the script view. Both
// look it up under "StoryScriptView", so that one skin dresses them alike.
// Each operation defaults to the theme's colour (or frame).
class ZEPHUI_EXPORT TimedTextSkin : public Skin
{
public:
    std::string GetClassName() const override { return "StoryScriptView"; }
    // The background of the script view's lines.
    virtual ColorRGBA GetScriptLineColor(ThemeProvider const* theme) const;
    virtual ColorRGBA GetTextColor(ThemeProvider const* theme) const;
    // The transcript's line bands, alternating by speaker.
    virtual ColorRGBA GetBandAColor(ThemeProvider const* theme) const;
    virtual ColorRGBA GetBandBColor(ThemeProvider const* theme) const;
    // Behind a marked time range.
    virtual ColorRGBA GetRangeFillColor(ThemeProvider const* theme) const;
    // The frame around the view; rect is the view's local rectangle.
    virtual void DrawFrame(Drawbot* drawbot, ThemeProvider const* theme, RectF const& rect) const;
};

// Maps a class name to the name a skin is stored under (aliases).
using SkinMap = std::map<std::string, std::string>;

class ZEPHUI_EXPORT SkinSet : public zephcore::RefCountedObject
{
public:
    void AddSkin(boost::intrusive_ptr<Skin> const& skin);
    void AddSkin(std::string const& className, boost::intrusive_ptr<Skin> const& skin);
    // The skin for a class name (after the map's alias, if any); null if none.
    boost::intrusive_ptr<Skin> GetSkinWithMap(std::string const& className,
                                              SkinMap const* map = nullptr) const;

private:
    std::map<std::string, boost::intrusive_ptr<Skin>> skins;
};

ZEPHUI_EXPORT boost::intrusive_ptr<SkinSet> GetApplicationSkinSet();
ZEPHUI_EXPORT void SetApplicationSkinSet(boost::intrusive_ptr<SkinSet> const& skinSet);

// Reads the skin set that applies to a node: the nearest set on the way up, else the application's.
class ZEPHUI_EXPORT SkinSetClient
{
public:
    virtual ~SkinSetClient() = default;
    virtual SkinSet const* UI_GetCurrentSkinSet() const = 0;
};

} // namespace zephui

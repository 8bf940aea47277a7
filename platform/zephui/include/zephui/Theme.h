#pragma once
// Themes: a colour table by id and font sizes by text id. There is an
// application theme (light or dark) and any node may name its own theme for
// itself and its children. The colour ids and their meaning are listed in
// docs/toolkit-colors.md.

#include "zephui/Geometry.h"
#include "zephui/zephui_export.h"

#include <map>
#include <string>

namespace zephui
{

// Colour ids of the theme table (0 to 374). Ids not named here read as a
// neutral grey; see docs/toolkit-colors.md.
enum ThemeColorID : int
{
    kColor_WindowBackground = 0,
    kColor_PanelBackground = 1,
    kColor_ControlBackground = 2,
    kColor_ControlBorder = 3,
    kColor_ControlText = 4,
    kColor_DisabledText = 5,
    kColor_FocusRing = 6,
    kColor_SelectionBackground = 7,
    kColor_SelectionText = 8,
    kColor_LinkText = 9,
    kColor_EditBackground = 10,
    kColor_EditText = 11,
    kColor_EditPlaceholderText = 12,
    kColor_ButtonFace = 20,
    kColor_ButtonFaceDown = 21,
    kColor_ButtonText = 22,
    kColor_StarRatingOn = 40,
    kColor_StarRatingOff = 41,
    kColor_HotText = 42,
    kColor_ScrollBarTrack = 60,
    kColor_ScrollBarThumb = 61,
    kColor_SplitterBar = 70,
    kColor_SplitterGrip = 71,
    kColor_SectionHeaderBackground = 80,
    kColor_SectionHeaderText = 81,
    kColor_DividerLine = 90,
    kColor_OutlineBoxStroke = 91,
    kColor_TreeBackground = 100,
    kColor_TreeRowAlternate = 101,
    kColor_TreeGridLine = 102,
    kColor_TreeSelectedRow = 103,
    kColor_TreeDisclosure = 104,
    kColor_TimeRangeFill = 220, // a marked time range behind timed text
    kColor_PanelFrame = 232,    // the 1-pixel frame around text panels
    kColor_ListBoxContentDivider = 236,
    kColor_ListBoxBackground = 237,
    kColor_ListBoxSelection = 238,
    kColor_TextBandA = 277,        // line band of the first, third... speaker
    kColor_TextBandB = 279,        // line band of the other speakers; script lines
    kColor_UnknownValueText = 281, // text of a field whose value is not known
    kColor_WarningText = 282,
    kColor_Text = 305, // normal text on panels
    kColor_TextSecondary = 306,
    kColor_ToolTipBackground = 320,
    kColor_ToolTipText = 321,
    kColorCount = 375,
};

// Text ids of the font size table.
enum ThemeTextID : int
{
    kText_Main_Large = 0,
    kText_Main_Small = 1,
    kText_Title = 2
};

// What a skin needs of a theme to colour itself.
class ZEPHUI_EXPORT ThemeProvider
{
public:
    virtual ~ThemeProvider() = default;
    virtual ColorRGBA GetColor(int id) const = 0;
    virtual float GetFontSize(int textID) const = 0;
};

class ZEPHUI_EXPORT Theme : public ThemeProvider
{
public:
    Theme(std::string name, bool dark);
    std::string const& GetName() const { return name; }
    bool IsDark() const { return dark; }
    ColorRGBA GetColor(int id) const override;
    float GetFontSize(int textID) const override;
    void SetColor(int id, ColorRGBA const& color) { colors[id] = color; }
    void SetFontSize(int textID, float size) { fontSizes[textID] = size; }

private:
    std::string name;
    bool dark = false;
    std::map<int, ColorRGBA> colors;
    std::map<int, float> fontSizes;
};

// The built-in themes are "light" and "dark". Null for any other name.
ZEPHUI_EXPORT Theme const* FindTheme(std::string const& name);
ZEPHUI_EXPORT Theme const* GetApplicationTheme();
// Unknown names leave the application theme as it is and give false.
ZEPHUI_EXPORT bool SetApplicationTheme(std::string const& name);

// Reads the application theme.
ZEPHUI_EXPORT ColorRGBA GetColor(int id);
// The font family for a text id; every id names the user-interface font.
ZEPHUI_EXPORT std::string GetFontName(int textID);
ZEPHUI_EXPORT float GetFontSize(int textID);
// The colour id of plain text on a window or panel.
inline int GetDefaultTextColorID()
{
    return kColor_ControlText;
}
// 2 under a dark theme (icons named with "_D"), 1 otherwise.
ZEPHUI_EXPORT int GetIconType();

// Reads the theme that applies to a node: the nearest theme named on the way up, else the
// application theme.
class ZEPHUI_EXPORT ThemeClient
{
public:
    virtual ~ThemeClient() = default;
    ColorRGBA GetColor(int id) const { return UI_GetThemeProvider()->GetColor(id); }
    float GetFontSize(int textID) const { return UI_GetThemeProvider()->GetFontSize(textID); }
    ThemeProvider const* UI_GetThemeProvider() const;

protected:
    virtual Theme const* GetClientTheme() const = 0;
};

} // namespace zephui

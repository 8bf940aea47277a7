#include "zephui/Theme.h"

#include <QFontDatabase>
#include <QGuiApplication>

#include <memory>

namespace zephui
{

namespace
{

ColorRGBA Grey(float v, float a = 1.0f)
{
    return ColorRGBA(v, v, v, a);
}

// One row of the table: id, light colour, dark colour.
struct ColorRow
{
    int id;
    ColorRGBA light;
    ColorRGBA dark;
};

std::vector<ColorRow> const& ColorTable()
{
    static std::vector<ColorRow> const table = {
        {kColor_WindowBackground, Grey(0.94f), Grey(0.20f)},
        {kColor_PanelBackground, Grey(0.96f), Grey(0.23f)},
        {kColor_ControlBackground, Grey(1.00f), Grey(0.16f)},
        {kColor_ControlBorder, Grey(0.62f), Grey(0.38f)},
        {kColor_ControlText, Grey(0.10f), Grey(0.86f)},
        {kColor_DisabledText, Grey(0.60f), Grey(0.45f)},
        {kColor_FocusRing, ColorRGBA(0.16f, 0.52f, 0.90f), ColorRGBA(0.30f, 0.62f, 0.96f)},
        {kColor_SelectionBackground, ColorRGBA(0.27f, 0.55f, 0.90f),
         ColorRGBA(0.18f, 0.40f, 0.70f)},
        {kColor_SelectionText, Grey(1.00f), Grey(1.00f)},
        {kColor_LinkText, ColorRGBA(0.10f, 0.40f, 0.80f), ColorRGBA(0.45f, 0.70f, 1.00f)},
        {kColor_EditBackground, Grey(1.00f), Grey(0.14f)},
        {kColor_EditText, Grey(0.08f), Grey(0.90f)},
        {kColor_EditPlaceholderText, Grey(0.55f), Grey(0.50f)},
        {kColor_ButtonFace, Grey(0.90f), Grey(0.32f)},
        {kColor_ButtonFaceDown, Grey(0.78f), Grey(0.26f)},
        {kColor_ButtonText, Grey(0.10f), Grey(0.88f)},
        {kColor_StarRatingOn, ColorRGBA(0.95f, 0.70f, 0.10f), ColorRGBA(1.00f, 0.78f, 0.20f)},
        {kColor_StarRatingOff, Grey(0.70f), Grey(0.42f)},
        {kColor_HotText, ColorRGBA(0.10f, 0.40f, 0.80f), ColorRGBA(0.40f, 0.68f, 1.00f)},
        {kColor_ScrollBarTrack, Grey(0.92f), Grey(0.18f)},
        {kColor_ScrollBarThumb, Grey(0.70f), Grey(0.42f)},
        {kColor_SplitterBar, Grey(0.84f), Grey(0.16f)},
        {kColor_SplitterGrip, Grey(0.60f), Grey(0.40f)},
        {kColor_SectionHeaderBackground, Grey(0.80f), Grey(0.28f)},
        {kColor_SectionHeaderText, Grey(0.12f), ColorRGBA(0.85f, 0.85f, 0.90f)},
        {kColor_DividerLine, Grey(0.75f), Grey(0.35f)},
        {kColor_OutlineBoxStroke, Grey(0.70f), Grey(0.38f)},
        {kColor_TreeBackground, Grey(1.00f), Grey(0.19f)},
        {kColor_TreeRowAlternate, Grey(0.96f), Grey(0.21f)},
        {kColor_TreeGridLine, Grey(0.88f), Grey(0.27f)},
        {kColor_TreeSelectedRow, ColorRGBA(0.80f, 0.88f, 0.98f), ColorRGBA(0.20f, 0.32f, 0.50f)},
        {kColor_TreeDisclosure, Grey(0.40f), Grey(0.70f)},
        {kColor_TimeRangeFill, ColorRGBA(0.72f, 0.84f, 0.96f), ColorRGBA(0.22f, 0.34f, 0.48f)},
        {kColor_PanelFrame, Grey(0.66f), Grey(0.12f)},
        {kColor_ListBoxContentDivider, Grey(0.82f), Grey(0.30f)},
        {kColor_ListBoxBackground, Grey(1.00f), Grey(0.18f)},
        {kColor_ListBoxSelection, ColorRGBA(0.27f, 0.55f, 0.90f), ColorRGBA(0.18f, 0.40f, 0.70f)},
        {kColor_TextBandA, Grey(1.00f), Grey(0.19f)},
        {kColor_TextBandB, Grey(0.95f), Grey(0.23f)},
        {kColor_UnknownValueText, Grey(0.52f), Grey(0.62f)},
        {kColor_WarningText, ColorRGBA(0.80f, 0.20f, 0.10f), ColorRGBA(1.00f, 0.45f, 0.35f)},
        {kColor_Text, Grey(0.12f), Grey(0.84f)},
        {kColor_TextSecondary, Grey(0.40f), Grey(0.62f)},
        {kColor_ToolTipBackground, ColorRGBA(1.00f, 1.00f, 0.88f), Grey(0.28f)},
        {kColor_ToolTipText, Grey(0.05f), Grey(0.92f)},
    };
    return table;
}

std::unique_ptr<Theme> MakeTheme(std::string const& name, bool dark)
{
    std::unique_ptr<Theme> theme(new Theme(name, dark));
    for (ColorRow const& row : ColorTable())
        theme->SetColor(row.id, dark ? row.dark : row.light);
    // The regular size scheme.
    theme->SetFontSize(kText_Main_Small, 9.0f);
    theme->SetFontSize(kText_Main_Large, 11.0f);
    theme->SetFontSize(kText_Title, 13.0f);
    return theme;
}

struct Themes
{
    std::unique_ptr<Theme> light = MakeTheme("light", false);
    std::unique_ptr<Theme> dark = MakeTheme("dark", true);
    Theme const* application = light.get();
};

Themes& AllThemes()
{
    static Themes themes;
    return themes;
}

} // namespace

Theme::Theme(std::string themeName, bool isDark) : name(std::move(themeName)), dark(isDark) {}

ColorRGBA Theme::GetColor(int id) const
{
    auto it = colors.find(id);
    return it != colors.end() ? it->second : Grey(0.5f);
}

float Theme::GetFontSize(int textID) const
{
    auto it = fontSizes.find(textID);
    return it != fontSizes.end() ? it->second : 11.0f;
}

Theme const* FindTheme(std::string const& name)
{
    Themes& t = AllThemes();
    if (name == "light")
        return t.light.get();
    if (name == "dark")
        return t.dark.get();
    return nullptr;
}

Theme const* GetApplicationTheme()
{
    return AllThemes().application;
}

bool SetApplicationTheme(std::string const& name)
{
    Theme const* theme = FindTheme(name);
    if (!theme)
        return false;
    AllThemes().application = theme;
    return true;
}

ColorRGBA GetColor(int id)
{
    return GetApplicationTheme()->GetColor(id);
}

std::string GetFontName(int)
{
    if (QCoreApplication::instance())
        return QGuiApplication::font().family().toStdString();
    return "DejaVu Sans";
}

float GetFontSize(int textID)
{
    return GetApplicationTheme()->GetFontSize(textID);
}

int GetIconType()
{
    return GetApplicationTheme()->IsDark() ? 2 : 1;
}

ThemeProvider const* ThemeClient::UI_GetThemeProvider() const
{
    Theme const* theme = GetClientTheme();
    return theme ? theme : GetApplicationTheme();
}

} // namespace zephui

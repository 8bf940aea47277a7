#include "timedtext/TimedTextDrawing.h"

#include <algorithm>

namespace zephmetadataui::timedtext
{

namespace
{

char const* const kSkinClassName = "StoryScriptView";

TimedTextSkin const* FindSkin(UI_Node const& node)
{
    SkinSet const* skins = node.UI_GetCurrentSkinSet();
    if (!skins)
        return nullptr;
    // The set keeps the skin alive; the pointer is used within one paint.
    return dynamic_cast<TimedTextSkin const*>(skins->GetSkinWithMap(kSkinClassName).get());
}

} // namespace

ColorRGBA SearchFillColor()
{
    return ColorRGBA(0.9882f, 0.9529f, 0.1059f, 1.0f);
}

ColorRGBA HitTextColor()
{
    return ColorRGBA(0.0f, 0.0f, 0.0f, 1.0f);
}

TimedTextColors GetTimedTextColors(UI_Node const& node)
{
    ThemeProvider const* theme = node.UI_GetThemeProvider();
    if (TimedTextSkin const* skin = FindSkin(node))
        return {skin->GetScriptLineColor(theme), skin->GetTextColor(theme),
                skin->GetBandAColor(theme), skin->GetBandBColor(theme),
                skin->GetRangeFillColor(theme)};
    return {theme->GetColor(zephui::kColor_TextBandB), theme->GetColor(zephui::kColor_Text),
            theme->GetColor(zephui::kColor_TextBandA), theme->GetColor(zephui::kColor_TextBandB),
            theme->GetColor(zephui::kColor_TimeRangeFill)};
}

void DrawTimedTextFrame(Drawbot* drawbot, UI_Node const& node)
{
    RectF const local = node.UI_GetLocalRectF(false);
    ThemeProvider const* theme = node.UI_GetThemeProvider();
    if (TimedTextSkin const* skin = FindSkin(node))
    {
        skin->DrawFrame(drawbot, theme, local);
        return;
    }
    drawbot->StrokeRect(
        RectF(local.left + 0.5f, local.top + 0.5f, local.width - 1.0f, local.height - 1.0f),
        theme->GetColor(zephui::kColor_PanelFrame));
}

RectF InnerRect(RectF const& local)
{
    return RectF(local.left + kInset, local.top + kInset, local.width - 2.0f * kInset,
                 local.height - 2.0f * kInset);
}

float TextRight(RectF const& local)
{
    return local.width - 2.0f * kInset - UI_ScrollBar::GetDefaultSize();
}

RectF LineFillRect(float x, float y, float width)
{
    return RectF(x, y - kFillAboveBaseline, width, kLineHeight);
}

boost::intrusive_ptr<FontInterface> MakeTimedTextFont(SupplierInterface const* supplier)
{
    return supplier->NewFont(zephui::GetFontName(0), kFontSize, 0);
}

void SpeakerTag::Make(FontInterface const& font)
{
    zephcore::Localizer const& localizer = zephcore::Localizer::Get();
    prefix = localizer.GetString("$$$/zephmetadataui/TextTranscriptView/SpeakerPrefix=[");
    suffix = localizer.GetString("$$$/zephmetadataui/TextTranscriptView/SpeakerSuffix=]");
    prefixWidth = font.GetStringWidth(prefix);
    suffixWidth = font.GetStringWidth(suffix);
}

float SpeakerTag::Draw(Drawbot* drawbot, FontInterface const* font, UTF16String const& name,
                       float nameWidth, PointF const& at, bool hit,
                       ColorRGBA const& textColor) const
{
    if (hit)
        drawbot->FillRect(LineFillRect(at.x, at.y, Width(nameWidth)), SearchFillColor());
    ColorRGBA const color = hit ? HitTextColor() : textColor;
    float x = at.x;
    drawbot->DrawString(prefix, PointF(x, at.y), font, color);
    x += prefixWidth;
    drawbot->DrawString(name, PointF(x, at.y), font, color);
    x += nameWidth;
    drawbot->DrawString(suffix, PointF(x, at.y), font, color);
    return x + suffixWidth + kGap;
}

std::vector<TextRange> FindAll(UTF16String const& folded, UTF16String const& term)
{
    std::vector<TextRange> found;
    if (term.empty())
        return found;
    for (std::size_t at = folded.find(term); at != UTF16String::npos;
         at = folded.find(term, at + term.size()))
        found.emplace_back(at, at + term.size());
    return found;
}

void DrawTextWithHits(Drawbot* drawbot, FontInterface const* font, UTF16String const& text,
                      std::vector<TextRange> const& hits, PointF const& at,
                      ColorRGBA const& textColor)
{
    std::size_t const length = text.size();
    std::size_t position = 0;
    float x = at.x;
    auto hit = hits.begin();
    while (position < length)
    {
        bool const inHit = hit != hits.end() && hit->first <= position;
        std::size_t end = length;
        if (inHit)
            end = std::size_t(std::min<std::uint64_t>(std::max(hit->second, hit->first), length));
        else if (hit != hits.end())
            end = std::size_t(std::min<std::uint64_t>(hit->first, length));
        // A hit that ends where it starts would stall: it has nothing to show.
        if (end <= position)
        {
            ++hit;
            continue;
        }
        UTF16String const piece = text.substr(position, end - position);
        // The last piece's width is needed only by a hit's fill.
        float const width = inHit || end < length ? font->GetStringWidth(piece) : 0.0f;
        if (inHit)
        {
            drawbot->FillRect(LineFillRect(x, at.y, width), SearchFillColor());
            ++hit;
        }
        drawbot->DrawString(piece, PointF(x, at.y), font, inHit ? HitTextColor() : textColor);
        x += width;
        position = end;
    }
}

} // namespace zephmetadataui::timedtext

#pragma once
// What the transcript and the script view share on screen: the line grid and
// the font, the colours of their skin (or of the theme), the speaker tag,
// text with its search hits set off, and the frame. Both views draw through
// these, so that they look alike.
// Private to the library: exported only so that its tests can call it.

#include "timedtext/TimedTextToolkit.h"
#include "zephmetadataui/zephmetadataui_export.h"

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace zephmetadataui::timedtext
{

constexpr float kLineHeight = 16.0f;
// The inner rectangle is the local one, this far in on every side.
constexpr float kInset = 2.0f;
// The first line's baseline, below the inner rectangle's top.
constexpr float kFirstBaseline = 13.0f;
// A line's fill starts this far above its baseline and is kLineHeight tall.
constexpr float kFillAboveBaseline = 11.0f + 2.5f;
// After a speaker tag and after a transcript word.
constexpr float kGap = 4.0f;
constexpr float kFontSize = 11.0f;

// The search hit fill, and the text over it (and over a selection).
ColorRGBA SearchFillColor();
ColorRGBA HitTextColor();

// The colours that the skin of the timed text views gives, or the theme's.
struct TimedTextColors
{
    ColorRGBA scriptLine; // behind the script view's lines
    ColorRGBA text;
    ColorRGBA bandA; // the transcript's alternating speaker bands
    ColorRGBA bandB;
    ColorRGBA rangeFill;
};
// Looked up under the script view's class name in the node's skin set.
TimedTextColors GetTimedTextColors(UI_Node const& node);
// The skin's frame, or a 1-pixel stroke in the theme's panel frame colour.
void DrawTimedTextFrame(Drawbot* drawbot, UI_Node const& node);

RectF InnerRect(RectF const& local);
// The right limit of text: the local width less the insets and the scroll bar.
float TextRight(RectF const& local);
// The fill of the line whose baseline is drawn at y, from x and this wide.
RectF LineFillRect(float x, float y, float width);

ZEPHMETADATAUI_EXPORT boost::intrusive_ptr<FontInterface>
MakeTimedTextFont(SupplierInterface const* supplier);

// The brackets around a speaker's name, localised, with their widths.
struct SpeakerTag
{
    UTF16String prefix;
    UTF16String suffix;
    float prefixWidth = 0.0f;
    float suffixWidth = 0.0f;

    // Fetches the texts and measures them in font.
    void Make(FontInterface const& font);
    float Width(float nameWidth) const { return prefixWidth + nameWidth + suffixWidth; }
    // Draws "[name]" at the baseline point, on the search fill for a hit, and
    // returns the x where the text after the tag starts.
    float Draw(Drawbot* drawbot, FontInterface const* font, UTF16String const& name,
               float nameWidth, PointF const& at, bool hit, ColorRGBA const& textColor) const;
};

// A stretch of text, start and end offsets.
using TextRange = std::pair<std::uint64_t, std::uint64_t>;

// Every place of term in folded, searching on from the end of the last one,
// so they don't overlap. None for an empty term.
std::vector<TextRange> FindAll(UTF16String const& folded, UTF16String const& term);

// Draws text at the baseline point in pieces: the ranges (in order, relative
// to text, cut at its end) on the search fill in the hit colour, the rest in
// textColor. Each piece moves on by its own measured width.
void DrawTextWithHits(Drawbot* drawbot, FontInterface const* font, UTF16String const& text,
                      std::vector<TextRange> const& hits, PointF const& at,
                      ColorRGBA const& textColor);

} // namespace zephmetadataui::timedtext

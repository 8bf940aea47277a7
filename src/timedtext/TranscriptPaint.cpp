// The transcript's layout and paint. Words are placed once, when the words
// or the view's width change, and kept with the words; a paint then finds
// the first line on screen by halving and draws only the lines it shows, so
// a long interview costs no more to paint at its end than at its start.

#include "timedtext/TranscriptViewPrivate.h"

#include "module/ModuleResources.h"
#include "timedtext/TimedTextScroll.h"

#include <algorithm>

namespace zephmetadataui
{

using namespace timedtext;
using zephmediatypes::kTime_Invalid;
using zephmediatypes::kTime_Zero;

namespace
{

ColorRGBA SelectionFillColor()
{
    return ColorRGBA(0.4451f, 0.7686f, 0.9627f, 1.0f);
}

// The brackets and their widths are fetched and measured once per process,
// in the first font used.
SpeakerTag const& ProcessSpeakerTag(FontInterface const& font)
{
    static SpeakerTag const tag = [&font]
    {
        SpeakerTag made;
        made.Make(font);
        return made;
    }();
    return tag;
}

// What a paint carries from one word to the next.
struct WordPaint
{
    Drawbot* drawbot = nullptr;
    TimedTextColors colors;
    ColorRGBA currentFill;
    bool rangeOpen = false;
    float scrollTop = 0.0f;
    float right = 0.0f;
    boost::intrusive_ptr<ImageInterface> inMark;
    boost::intrusive_ptr<ImageInterface> outMark;

    ColorRGBA Band(bool alternate) const { return alternate ? colors.bandB : colors.bandA; }
    float Screen(float y) const { return y - (scrollTop + kInset); }
    void DrawInMark(float x, float y) const
    {
        if (inMark)
            drawbot->DrawImage(inMark.get(), PointF(x - 2.0f, y - kFillAboveBaseline - 4.0f));
    }
    void DrawOutMark(float x, float y) const
    {
        if (outMark)
            drawbot->DrawImage(outMark.get(), PointF(x - (outMark->GetWidth() - 2.0f),
                                                     y - kFillAboveBaseline - 4.0f));
    }
};

} // namespace

RangeCoverage TextTranscriptEditorView::Private::WordRangeCoverage(std::size_t index) const
{
    RangeCoverage result;
    if ((view.inPoint == kTime_Invalid && view.outPoint == kTime_Invalid) || index >= words.size())
        return result;
    WordInfo const& word = words[index].word;
    TickTime const wordEnd = word.startTime + word.duration;
    TickTime const in = view.inPoint != kTime_Invalid ? view.inPoint : view.subRangeStart;
    TickTime const out = view.outPoint != kTime_Invalid ? view.outPoint : view.subRangeEnd;
    bool const hasIn = in != kTime_Invalid;
    bool const hasOut = out != kTime_Invalid;
    bool overlaps = false;
    if (hasIn && hasOut)
        overlaps = word.startTime < out && in < wordEnd;
    else if (hasOut)
        overlaps = word.startTime < out;
    else if (hasIn)
        overlaps = in < wordEnd;
    if (!overlaps)
        return result;
    result.inRange = true;
    if (word.duration == kTime_Zero)
        return result;
    if (hasIn)
        result.startFraction = std::max(0.0, (in - word.startTime) / word.duration);
    if (hasOut)
        result.endFraction = std::min(1.0, (out - word.startTime) / word.duration);
    return result;
}

void TextTranscriptEditorView::Private::Layout(Drawbot* drawbot, RectF const& inner)
{
    if (!font)
    {
        font = MakeTimedTextFont(drawbot->GetSupplier());
        widths = std::make_unique<WordWidthCache>(font);
    }
    SpeakerTag const& tag = ProcessSpeakerTag(*font);
    float const right = TextRight(view.UI_GetLocalRectF(false));
    float x = inner.left;
    float y = inner.top + kFirstBaseline;
    bool alternate = false;
    UTF16String const* lastSpeaker = nullptr;
    for (LaidWord& laid : words)
    {
        laid.opensTag = false;
        UTF16String const& speaker = laid.word.speaker;
        if (lastSpeaker ? speaker != *lastSpeaker : !speaker.empty())
        {
            // From no speaker to a named one the tag stays on the line.
            if (lastSpeaker && !lastSpeaker->empty())
            {
                alternate = !alternate;
                x = inner.left;
                y += kLineHeight;
            }
            laid.opensTag = true;
            laid.tagX = x;
            laid.nameWidth = widths->Width(UTF16StringView(speaker.data(), speaker.size()));
            x += tag.Width(laid.nameWidth) + kGap;
        }
        lastSpeaker = &speaker;
        float const w =
            widths->Width(UTF16StringView(laid.word.text.data(), laid.word.text.size()));
        // A word wider than a line takes a line of its own, overflowing.
        if (x + w > right && x > inner.left)
        {
            x = inner.left;
            y += kLineHeight;
        }
        laid.x = x;
        laid.y = y;
        laid.width = w;
        laid.alternate = alternate;
        x += w + kGap;
    }
    endY = y;
    layoutValid = true;
}

void TextTranscriptEditorView::Private::DrawWords(Drawbot* drawbot)
{
    if (!speechTrack || !view.UI_IsShown())
        return;
    RectF const local = view.UI_GetLocalRectF(false);
    RectF const inner = InnerRect(local);
    if (!layoutValid || inner != layoutRect)
    {
        layoutRect = inner;
        Layout(drawbot, inner);
        scrollBar->SetExtent(UI_ScrollBar::Range(0.0f, endY - 2.0f));
        UI_ScrollBar::Range const value = scrollBar->GetValue();
        ScrollToPosition(*scrollBar, (value.first + value.second) * 0.5f);
        scrollBar->SetDisabled(!scrollBar->IsScrollable());
    }
    if (scrollTargetMarker)
    {
        std::size_t const target = IndexOf(*scrollTargetMarker);
        scrollTargetMarker.reset();
        if (target < words.size())
        {
            float const position = std::max(0.0f, words[target].y - inner.top);
            if (position > 0.0f)
                ScrollToPosition(*scrollBar, position);
        }
    }

    WordPaint paint;
    paint.drawbot = drawbot;
    paint.colors = GetTimedTextColors(view);
    paint.scrollTop = scrollBar->GetValue().first;
    paint.right = TextRight(local);
    if (view.inPoint != kTime_Invalid)
        paint.inMark = LoadModuleImage(drawbot->GetSupplier(), "P_MonitorIn_N");
    if (view.outPoint != kTime_Invalid)
        paint.outMark = LoadModuleImage(drawbot->GetSupplier(), "P_MonitorOut_N");
    float const bottom = scrollBar->GetValue().second;
    SpeakerTag const& tag = ProcessSpeakerTag(*font);
    static UTF16String const fiveLetters = zephcore::AsciiToUTF16("aaaaa");
    float const editMinimum =
        widths->Width(UTF16StringView(fiveLetters.data(), fiveLetters.size()));

    auto const first =
        std::lower_bound(words.begin(), words.end(), paint.scrollTop,
                         [](LaidWord const& laid, float top) { return laid.y < top; });
    std::size_t index = std::size_t(first - words.begin());
    if (index < words.size())
    {
        RangeCoverage const before = index > 0 ? WordRangeCoverage(index - 1) : RangeCoverage();
        paint.rangeOpen =
            before.inRange && before.endFraction >= 1.0 && WordRangeCoverage(index).inRange;
        paint.currentFill =
            paint.rangeOpen ? paint.colors.rangeFill : paint.Band(words[index].alternate);
    }
    bool editPlaced = false;
    bool const editing = wordEdit->UI_IsShown();
    for (; index < words.size() && words[index].y - kLineHeight <= bottom; ++index)
    {
        LaidWord const& laid = words[index];
        float const y = paint.Screen(laid.y);
        if (laid.opensTag)
        {
            if (laid.tagX == layoutRect.left)
                paint.currentFill = paint.Band(laid.alternate);
            drawbot->FillRect(LineFillRect(laid.tagX, y, paint.right + 2.0f), paint.currentFill);
            bool const hit =
                !view.searchTerm.empty() &&
                zephcore::FoldCase(laid.word.speaker).find(view.searchTerm) != UTF16String::npos;
            tag.Draw(drawbot, font.get(), laid.word.speaker, laid.nameWidth, PointF(laid.tagX, y),
                     hit, paint.colors.text);
        }
        float const x = laid.x;
        float const w = laid.width;
        // The line's fill first, so that the range's fill and marks lie on it.
        if (x == layoutRect.left)
            drawbot->FillRect(LineFillRect(x, y, paint.right + 2.0f), paint.currentFill);

        RangeCoverage const coverage = WordRangeCoverage(index);
        float const space = paint.right + kGap - x;
        if (!coverage.inRange)
        {
            paint.currentFill = paint.Band(laid.alternate);
            paint.rangeOpen = false;
        }
        else
        {
            bool closing = false;
            bool check = false;
            float closeX = 0.0f;
            float closeWidth = 0.0f;
            float x1 = x;
            if (coverage.startFraction == 0.0 && coverage.endFraction == 1.0)
            {
                paint.currentFill = paint.colors.rangeFill;
                drawbot->FillRect(LineFillRect(x, y, space), paint.currentFill);
                if (!paint.rangeOpen)
                    paint.DrawInMark(x, y);
                paint.rangeOpen = true;
                check = true;
            }
            else
            {
                if (coverage.startFraction > 0.0)
                {
                    float const into = w * float(coverage.startFraction);
                    paint.currentFill = paint.colors.rangeFill;
                    x1 = x + into;
                    drawbot->FillRect(LineFillRect(x1, y, space - into), paint.currentFill);
                    paint.DrawInMark(x1, y);
                    paint.rangeOpen = true;
                }
                if (coverage.endFraction < 1.0)
                {
                    // Measured from x1, as the range's end fraction counts
                    // from the word's start: both points in one word close
                    // further right than the out point lies.
                    closing = true;
                    closeX = x1 + w * float(coverage.endFraction);
                    closeWidth = space - w * float(coverage.endFraction);
                }
                else
                    check = paint.rangeOpen;
            }
            if (check && !WordRangeCoverage(index + 1).inRange)
            {
                closing = true;
                closeX = x1 + w;
                closeWidth = space - w;
            }
            if (closing)
            {
                paint.currentFill = paint.Band(laid.alternate);
                drawbot->FillRect(
                    RectF(closeX, y - 1.0f - kFillAboveBaseline, closeWidth, kLineHeight + 2.0f),
                    paint.currentFill);
                paint.DrawOutMark(closeX, y - 1.0f);
                paint.rangeOpen = false;
            }
        }

        bool const selected = HasSelection() && laid.marker == selectedMarker;
        float const rowKey = laid.y - paint.scrollTop;
        bool const visible = laid.y >= paint.scrollTop;
        if (selected && editing)
        {
            if (visible)
            {
                wordEdit->UI_SetLocalRectF(RectF(x - 3.0f, rowKey - 11.0f - 2.0f - 1.0f,
                                                 std::max(editMinimum, w + 7.5f), kLineHeight));
                wordHitMap[rowKey][x + w] = laid.marker;
                editPlaced = true;
            }
            continue;
        }
        if (!visible)
            continue;
        wordHitMap[rowKey][x + w] = laid.marker;
        float drawnTo = x + w;
        if (selected)
        {
            drawbot->FillRect(LineFillRect(x, y, w), SelectionFillColor());
            drawbot->DrawString(laid.word.text, PointF(x, y), font.get(), HitTextColor());
            drawnTo = x;
        }
        else
            DrawTextWithHits(drawbot, font.get(), laid.word.text,
                             FindAll(laid.folded, view.searchTerm), PointF(x, y),
                             paint.colors.text);
        WordInfo const& word = laid.word;
        bool const offersAlternative = (!word.primary.empty() && word.primary != word.text) ||
                                       (!word.secondary.empty() && word.secondary != word.text);
        // The drawing position has passed the text of a word drawn in
        // pieces: its mark starts at its right end.
        if (word.probability > 0 && offersAlternative)
            zephui::utils::DrawLineRect(drawbot, RectF(drawnTo, y, w, 1.0f), paint.colors.text);
    }
    if (editing && !editPlaced)
        wordEdit->UI_Show(false);
}

MarkerIterator TextTranscriptEditorView::Private::HitTest(PointF const& local) const
{
    auto const row = wordHitMap.lower_bound(local.y);
    if (row == wordHitMap.end())
        return End();
    auto const column = row->second.lower_bound(local.x);
    if (column == row->second.end())
        return End();
    return column->second;
}

} // namespace zephmetadataui

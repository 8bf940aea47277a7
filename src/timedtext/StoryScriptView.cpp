#include "zephmetadataui/StoryScriptView.h"

#include "timedtext/MetadataListening.h"
#include "timedtext/ScriptDocument.h"
#include "timedtext/TimedTextDrawing.h"
#include "timedtext/TimedTextScroll.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>

namespace zephmetadataui
{

using namespace timedtext;

struct StoryScriptView::Private
{
    // Made at the first layout and kept for the life of the view.
    boost::intrusive_ptr<FontInterface> scriptFont;
    std::unique_ptr<WordWidthCache> widths;
    SpeakerTag tag;

    std::vector<ScriptDialog> scriptDialogs;
    // The row of each record's first line, and last the number of all rows:
    // a record takes a row for its tag even without a speech.
    std::vector<std::size_t> firstRows;
    bool linesValid = false;
    // The view's width the lines were cut for.
    float linesWidth = -1.0f;
    // Counts the search terms; a record's hits are valid while its
    // hitsSearch equals it. Hits are found for the records a paint shows.
    std::uint64_t search = 1;
};

namespace
{

// What the drawing of one record needs of the paint.
struct PaintContext
{
    Drawbot* drawbot = nullptr;
    FontInterface const* font = nullptr;
    SpeakerTag const* tag = nullptr;
    TimedTextColors colors;
    float left = 0.0f;
    // Where the baseline of row 0 is drawn: rows follow kLineHeight apart.
    float rowZeroBaseline = 0.0f;
    float rowWidth = 0.0f;
    // The rows on screen, end excluded.
    std::size_t firstRow = 0;
    std::size_t endRow = 0;
};

// A line of a speech with the hits that start on it set off; a hit that
// began on an earlier line does not go on here.
void DrawDialogLine(PaintContext const& paint, UTF16String const& line, std::uint64_t lineOffset,
                    PointF const& at, ScriptDialog const& record)
{
    std::vector<TextRange> pieces;
    auto hit = std::lower_bound(record.hits.begin(), record.hits.end(), lineOffset,
                                [](TextRange const& range, std::uint64_t offset)
                                { return range.first < offset; });
    for (; hit != record.hits.end() && hit->first < lineOffset + line.size(); ++hit)
        pieces.emplace_back(hit->first - lineOffset, hit->second - lineOffset);
    DrawTextWithHits(paint.drawbot, paint.font, line, pieces, at, paint.colors.text);
}

void DrawRecord(PaintContext const& paint, ScriptDialog const& record, std::size_t recordRow)
{
    std::size_t const rows = std::max<std::size_t>(1, record.lines.size());
    std::uint64_t lineOffset = 0;
    for (std::size_t k = 0; k < rows && recordRow + k < paint.endRow; ++k)
    {
        UTF16String const* line = k < record.lines.size() ? &record.lines[k] : nullptr;
        if (recordRow + k >= paint.firstRow)
        {
            float const y = paint.rowZeroBaseline + kLineHeight * float(recordRow + k);
            paint.drawbot->FillRect(LineFillRect(paint.left, y, paint.rowWidth),
                                    paint.colors.scriptLine);
            float x = paint.left;
            if (k == 0)
                x = paint.tag->Draw(paint.drawbot, paint.font, record.character,
                                    record.characterWidth, PointF(x, y), record.characterHit,
                                    paint.colors.text);
            if (line)
                DrawDialogLine(paint, *line, lineOffset, PointF(x, y), record);
        }
        if (line)
            lineOffset += line->size();
    }
}

} // namespace

StoryScriptView::StoryScriptView() : StoryScriptView(ProviderPtr()) {}

StoryScriptView::StoryScriptView(ProviderPtr const& newProvider) : d(std::make_unique<Private>())
{
    UI_SetNodeID("StoryScriptView");
    scrollBar = new UI_ScrollBar(UI_ScrollBar::kScrollBarVertical);
    scrollBar->UI_Show(true);
    ChildPushBack(scrollBar);
    // Holds a plain pointer: the view empties it when it dies.
    scrollBarChangedCallback =
        boost::make_shared<boost::function<void(Message*)>>([this](Message*) { UI_Invalidate(); });
    scrollBar->NotifyWhenChanged(scrollBarChangedCallback);
    scrollBar->NotifyWhenChangedInteractively(scrollBarChangedCallback);
    ResetMetadataProvider(newProvider);
}

StoryScriptView::~StoryScriptView()
{
    if (metaDataChangedCallback)
        metaDataChangedCallback->clear();
    scrollBarChangedCallback->clear();
}

void StoryScriptView::ResetMetadataProvider(ProviderPtr const& newProvider)
{
    FollowProvider(provider, newProvider, metaDataChangedCallback,
                   [this](__XMPMeta__* meta) { OnMetaDataChanged(meta); });
}

void StoryScriptView::OnMetaDataChanged(__XMPMeta__* meta)
{
    // Whatever changed, the script is read again.
    if (meta)
        LoadScript(meta, d->scriptDialogs);
    else
        d->scriptDialogs.clear();
    d->linesValid = false;
    UI_Invalidate();
    layoutRect = RectF();
    scrollBar->SetExtent(UI_ScrollBar::Range(0.0f, 0.0f));
}

bool StoryScriptView::HasStoryData() const
{
    return !d->scriptDialogs.empty();
}

void StoryScriptView::SetCurrentSearchTerm(UTF16String const& term)
{
    UTF16String folded = zephcore::FoldCase(term);
    if (folded == searchTerm)
        return;
    searchTerm = std::move(folded);
    ++d->search;
    UI_Invalidate();
}

void StoryScriptView::UI_SizeChanged(RectF const& rect)
{
    PlaceScrollBar(*scrollBar, rect);
    UI_SubView::UI_SizeChanged(rect);
    // Only the width moves line breaks; a new height only changes the extent.
    if (rect.width != d->linesWidth)
        d->linesValid = false;
    UI_Invalidate();
}

bool StoryScriptView::UI_DoMouseEvent(UI_Node* node, MouseEvent const& event)
{
    if (ScrollByWheel(*scrollBar, event))
        return true;
    return UI_SubView::UI_DoMouseEvent(node, event);
}

void StoryScriptView::UI_Draw(Drawbot* drawbot)
{
    RectF const local = UI_GetLocalRectF(false);
    drawbot->PushClip(local);
    UI_SubView::UI_Draw(drawbot);
    DrawDialogs(drawbot);
    // Again, so that the scroll bar lies on top.
    UI_SubView::UI_Draw(drawbot);
    drawbot->PopClip();
    DrawTimedTextFrame(drawbot, *this);
}

void StoryScriptView::Layout(SupplierInterface const* supplier)
{
    if (!d->scriptFont)
    {
        d->scriptFont = MakeTimedTextFont(supplier);
        d->widths = std::make_unique<WordWidthCache>(d->scriptFont);
    }
    if (d->tag.prefix.empty())
        d->tag.Make(*d->scriptFont);

    RectF const local = UI_GetLocalRectF(false);
    float const full = TextRight(local);
    d->firstRows.clear();
    std::size_t rows = 0;
    for (ScriptDialog& record : d->scriptDialogs)
    {
        d->firstRows.push_back(rows);
        if (!record.dialog.empty())
        {
            if (record.characterWidth == 0.0f)
                record.characterWidth = d->widths->Width(record.character);
            // The tag stands on the first line.
            float const tag = d->tag.Width(record.characterWidth) + kGap;
            BreakIntoLines(*d->widths, record.dialog, full - tag, full, record.lines);
        }
        rows += std::max<std::size_t>(1, record.lines.size());
    }
    d->firstRows.push_back(rows);
    d->linesValid = true;
    d->linesWidth = local.width;
}

void StoryScriptView::UpdateScrollExtent()
{
    std::size_t const rows = d->firstRows.empty() ? 0 : d->firstRows.back();
    float const end = layoutRect.top + kFirstBaseline + kLineHeight * float(rows);
    scrollBar->SetExtent(UI_ScrollBar::Range(0.0f, end - 2.0f));
    UI_ScrollBar::Range const value = scrollBar->GetValue();
    if (ScrollToPosition(*scrollBar, (value.first + value.second) * 0.5f))
        scrollBar->UI_Invalidate();
    scrollBar->SetDisabled(!scrollBar->IsScrollable());
}

void StoryScriptView::DrawDialogs(Drawbot* drawbot)
{
    if (!d->linesValid)
        Layout(drawbot->GetSupplier());
    RectF const local = UI_GetLocalRectF(false);
    RectF const inner = InnerRect(local);
    // The extent is known before painting, since every line is laid out:
    // the rows are drawn at the scroll position that the extent leaves.
    if (inner != layoutRect)
    {
        layoutRect = inner;
        UpdateScrollExtent();
    }
    if (d->scriptDialogs.empty())
        return;

    PaintContext paint;
    paint.drawbot = drawbot;
    paint.font = d->scriptFont.get();
    paint.tag = &d->tag;
    paint.colors = GetTimedTextColors(*this);
    paint.left = inner.left;
    paint.rowWidth = TextRight(local) + 2.0f;
    paint.rowZeroBaseline = inner.top + kFirstBaseline - (scrollBar->GetValue().first + kInset);
    // A row shows if its fill, from kFillAboveBaseline above its baseline to
    // the rest of kLineHeight below, meets the view; a row more at either
    // end costs little and is clipped.
    float const above = std::floor((-paint.rowZeroBaseline) / kLineHeight) - 1.0f;
    float const below =
        std::ceil((local.height + kFillAboveBaseline - paint.rowZeroBaseline) / kLineHeight) + 1.0f;
    paint.firstRow = std::size_t(std::max(0.0f, above));
    paint.endRow = std::size_t(std::max(0.0f, below));

    auto const after =
        std::upper_bound(d->firstRows.begin(), d->firstRows.end() - 1, paint.firstRow);
    std::size_t index = std::size_t(after - d->firstRows.begin());
    index = index > 0 ? index - 1 : 0;
    for (; index < d->scriptDialogs.size() && d->firstRows[index] < paint.endRow; ++index)
    {
        ScriptDialog& record = d->scriptDialogs[index];
        if (record.hitsSearch != d->search)
            FindHits(record, searchTerm, d->search);
        DrawRecord(paint, record, d->firstRows[index]);
    }
}

} // namespace zephmetadataui

#pragma once
// The vertical scroll bar of the timed text views: where it sits, how a view
// scrolls a document position into sight, and the mouse wheel.

#include "timedtext/TimedTextToolkit.h"

namespace zephmetadataui::timedtext
{

// Places the bar along the right edge of a view whose local rectangle is rect.
void PlaceScrollBar(UI_ScrollBar& bar, RectF const& rect);

// Brings the document position into view: a position already shown leaves
// the view where it is, any other comes to the middle. True if the bar's
// value changed.
bool ScrollToPosition(UI_ScrollBar& bar, float position);

// A vertical wheel turn scrolls an enabled bar by lines: towards the end for
// a delta of 1 or more, else towards the start, by the delta's size. True if
// the event was such a turn, which the view then takes.
bool ScrollByWheel(UI_ScrollBar& bar, MouseEvent const& event);

} // namespace zephmetadataui::timedtext

#pragma once
// The script view's records and the work on them that needs no widget:
// reading the XMP Script dialogue, joining a speaker's speeches, finding
// search hits, and cutting a speech into lines.
// Private to the library: exported only so that its tests can call it.

#include "timedtext/TimedTextDrawing.h"
#include "timedtext/WordWidthCache.h"
#include "zephmetadataui/zephmetadataui_export.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zephmetadataui::timedtext
{

// One paragraph of the script: a speaker and what they say.
struct ScriptDialog
{
    // Search hits in dialog, in the folded text's offsets.
    std::vector<TextRange> hits;
    UTF16String character;
    UTF16String dialog;
    // Width of character; 0 until measured.
    float characterWidth = 0.0f;
    // The speech cut into lines; a continuation line starts with the blank it
    // was cut at.
    std::vector<UTF16String> lines;

    // Caches of the search, beside the record's own fields: the folded texts,
    // made on first use, and the search the hits were found for.
    UTF16String foldedCharacter;
    UTF16String foldedDialog;
    bool folded = false;
    std::uint64_t hitsSearch = 0;
    bool characterHit = false;
};

// Adds a speech. Nothing for an empty speaker with an empty speech; a speech
// by the speaker of the last record joins it after one blank.
ZEPHMETADATAUI_EXPORT void AddDialog(std::vector<ScriptDialog>& dialogs,
                                     UTF16String const& character, UTF16String const& dialog);

// Replaces dialogs by the items of the XMP Script "dialogSequence" of meta,
// in order. An item that is no structure ends the load; what was read before
// it stays.
ZEPHMETADATAUI_EXPORT void LoadScript(__XMPMeta__* meta, std::vector<ScriptDialog>& dialogs);

// Finds a folded term in the record's speech and speaker's name, and notes
// the search (a number that changes with the term) the hits belong to.
ZEPHMETADATAUI_EXPORT void FindHits(ScriptDialog& record, UTF16String const& term,
                                    std::uint64_t search);

// Cuts text into lines: the first with the room firstRoom, every further one
// with room. A line ends before the last blank at which the text before it
// still fits; a text without a blank is cut between characters; a line has at
// least one character. When the first word of a line is too wide and a blank
// follows it, the line is a single character. One pass over the text, from
// the cached widths of its words.
ZEPHMETADATAUI_EXPORT void BreakIntoLines(WordWidthCache& widths, UTF16String const& text,
                                          float firstRoom, float room,
                                          std::vector<UTF16String>& lines);

} // namespace zephmetadataui::timedtext

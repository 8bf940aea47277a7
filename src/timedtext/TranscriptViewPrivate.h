#pragma once
// The inside of TextTranscriptEditorView, shared by its sources: the track
// and its words, the selection, the child controls and the layout cache.

#include "zephmetadataui/TextTranscriptEditorView.h"

#include "timedtext/TimedTextDrawing.h"
#include "timedtext/WordWidthCache.h"

#include <zephtemporalxmp/XMPDocOpsTemporal.h>

#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace zephmetadataui
{

using MarkerIterator = zephtemporalxmp::XMPTrack::MarkerListIterator;

// A word of the track with its place on the page. Read from the markers
// whenever the list changes; the places are valid while layoutValid holds.
struct LaidWord
{
    MarkerIterator marker;
    WordInfo word;
    UTF16String folded;
    // The document baseline and the left end of the text.
    float y = 0.0f;
    float x = 0.0f;
    float width = 0.0f;
    bool alternate = false;
    // The word opens a speaker tag, drawn at tagX on its line.
    bool opensTag = false;
    float tagX = 0.0f;
    float nameWidth = 0.0f;
};

// How much of a word lies in the marked range.
struct RangeCoverage
{
    bool inRange = false;
    double startFraction = 0.0;
    double endFraction = 1.0;
};

struct TextTranscriptEditorView::Private
{
    explicit Private(TextTranscriptEditorView& view) : view(view) {}

    TextTranscriptEditorView& view;
    zephui::UI_ScrollBarPtr scrollBar;
    zephui::UI_TextEditPtr wordEdit;
    zephui::MessageCallback scrollBarChangedCallback;
    zephui::MessageCallback wordEditChangedCallback;
    std::unique_ptr<zephui::UI_NodeManager::AddAndRemoveMouseEventFilterNode> mouseFilter;
    std::vector<SelectedWordListener> selectedWordListeners;

    std::shared_ptr<zephtemporalxmp::XMPDocOpsTemporal> docOps;
    zephtemporalxmp::XMPTrack* speechTrack = nullptr;
    MarkerIterator selectedMarker;
    std::optional<WordInfo> selectedWord;
    std::optional<MarkerIterator> scrollTargetMarker;
    // Row key (line top on screen), column key (right end of the word).
    std::map<float, std::map<float, MarkerIterator>> wordHitMap;
    zephui::RectF layoutRect;
    std::string documentID;
    std::string instanceID;
    __XMPMeta__* lastMetaData = nullptr;

    std::vector<LaidWord> words;
    bool layoutValid = false;
    // The baseline after the last line: where the next word would go.
    float endY = 0.0f;
    boost::intrusive_ptr<zephui::FontInterface> font;
    std::unique_ptr<timedtext::WordWidthCache> widths;
    bool dragging = false;

    MarkerIterator End() const { return speechTrack->MarkerListIteratorEnd(); }
    MarkerIterator Begin() const { return speechTrack->MarkerListIteratorBegin(); }
    bool HasSelection() const { return speechTrack && selectedMarker != End(); }

    // Reading and writing.
    void FindSpeechTrack();
    void ReadWords();
    // Index of a marker in words; words.size() for the end.
    std::size_t IndexOf(MarkerIterator marker) const;

    // Selection and editing.
    bool SelectWord(MarkerIterator marker, bool notify);
    void RefreshSelectedWord(bool notify);
    void PushWordToEditor(bool notify);
    void BeginEditing();
    void ChangeSelectedWordText(UTF16String const& newText);
    void CommitSelectedWord();
    void DeleteSelectedWord();
    void InsertWord(bool after);
    void MergeInto(MarkerIterator keep, MarkerIterator other);
    void MergeWithNext();
    void MergeWithPrevious();
    void CopyAll() const;
    void DoContextMenu(zephui::PointF const& local);

    // Search over the words' folded texts.
    bool Matches(MarkerIterator marker) const;
    MarkerIterator FindNext() const;
    MarkerIterator FindPrevious() const;

    // Layout and paint (TranscriptPaint.cpp).
    RangeCoverage WordRangeCoverage(std::size_t index) const;
    void Layout(zephui::Drawbot* drawbot, zephui::RectF const& inner);
    void DrawWords(zephui::Drawbot* drawbot);
    MarkerIterator HitTest(zephui::PointF const& local) const;
};

} // namespace zephmetadataui

#pragma once
// TextTranscriptEditorView: the speech transcript that a file's XMP holds,
// one timed word after another, grouped by speaker and wrapped like running
// text. Every word is one marker of the "Speech" track of xmpDM:Tracks; the
// user selects a word, edits it in place, inserts, deletes and merges words,
// and every change goes straight back into the provider's metadata.
//
// The host drives the view with the playback time (SelectWordAtTimecode), in
// and out points and a sub-range, and hears of the selected word through the
// listeners it registers. The view reloads its words only when someone else
// changed the tracks; its own saves keep the selection.
//
// The host makes the view; nothing else in the library does.

#include "zephmetadataui/WordInfo.h"
#include "zephmetadataui/zephmetadataui_export.h"

#include <zephmetadata/Provider.h>
#include <zephui/Events.h>
#include <zephui/Geometry.h>
#include <zephui/UI_SubView.h>

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <memory>

namespace zephmetadataui
{

class ZEPHMETADATAUI_EXPORT TextTranscriptEditorView : public zephui::UI_SubView
{
public:
    using ProviderPtr = boost::shared_ptr<zephmetadata::MetaDataProvider>;
    using UTF16String = zephcore::UTF16String;
    using TickTime = zephmediatypes::TickTime;
    // Called with the selected word, valid during the call, or null.
    using SelectedWordListener = boost::shared_ptr<boost::function<void(WordInfo const*)>>;

    explicit TextTranscriptEditorView(ProviderPtr const& provider);
    ~TextTranscriptEditorView() override;

    // Follows this provider from now on and shows its speech track. The same
    // provider again does nothing.
    void ResetTranscriptProvider(ProviderPtr const& provider);

    TickTime GetInPoint() const { return inPoint; }
    TickTime GetOutPoint() const { return outPoint; }
    // Repaint only when the point moves.
    void SetInPoint(TickTime time);
    void SetOutPoint(TickTime time);
    // Bound the marked range where an in or out point is missing. They do not
    // repaint: the next paint shows them.
    void SetSubRangeStart(TickTime const& time) { subRangeStart = time; }
    void SetSubRangeEnd(TickTime const& time) { subRangeEnd = time; }

    // Moves the selection as Tab does: by search hits while a term is set,
    // else word by word. True if a word was reached.
    bool AdvanceFocus(bool backward, bool wordByWord);
    // Selects the word that plays at time: the selected word while it covers
    // the time, else the last word that starts at or before it (the first
    // word before the first); nothing past the last word's start.
    void SelectWordAtTimecode(TickTime time, bool notify);
    // The copy of the selected word that editing works on; null for none.
    WordInfo const* SelectedWord() const;
    // The limits within which a host may move the selected word's times.
    TickTime SelectedWordMinStartTime() const;
    TickTime SelectedWordMaxStartTime() const;
    TickTime SelectedWordMinDuration() const;
    TickTime SelectedWordMaxDuration() const;
    // Appends a listener; empty the shared function to withdraw it.
    void NotifyOnSelectedWordChanged(SelectedWordListener const& listener);

    // Sets off the words that hold the term in any case, scrolls to the
    // first and clears the selection.
    void SetCurrentSearchTerm(UTF16String const& term);
    // The term as it is matched: case-folded.
    UTF16String const& CurrentSearchTerm() const { return searchTerm; }
    bool HasNextSearchOccurrence() const;
    bool HasPreviousSearchOccurrence() const;
    bool SelectNextSearchOccurrence();
    bool SelectPreviousSearchOccurrence();

    void UI_Draw(zephui::Drawbot* drawbot) override;
    // A right press on a word opens the word menu, also over the edit.
    bool UI_DoPreMouseEvent(zephui::UI_Node* node, zephui::MouseEvent const& event) override;
    bool UI_DoMouseEvent(zephui::UI_Node* node, zephui::MouseEvent const& event) override;
    bool UI_DoKeyboardEvent(zephui::UI_Node* node, zephui::KeyboardEvent const& event) override;
    bool UI_WantsKeyboardFocus() const override { return true; }
    bool UI_GainKeyboardFocus(int reason) override;
    void UI_SizeChanged(zephui::RectF const& rect) override;
    void UI_FocusChanged(bool hasFocus) override;

private:
    struct Private;

    void OnMetaDataChanged(__XMPMeta__* meta);
    void CommitTrackChanges();

    ProviderPtr provider;
    zephmetadata::MetaDataProvider::ChangedListener metaDataChangedCallback;
    UTF16String searchTerm;
    TickTime inPoint = zephmediatypes::kTime_Invalid;
    TickTime outPoint = zephmediatypes::kTime_Invalid;
    TickTime subRangeStart = zephmediatypes::kTime_Invalid;
    TickTime subRangeEnd = zephmediatypes::kTime_Invalid;
    // The track, the words, the selection, the child controls and the caches.
    std::unique_ptr<Private> d;
};

using TextTranscriptEditorViewPtr = boost::intrusive_ptr<TextTranscriptEditorView>;

} // namespace zephmetadataui

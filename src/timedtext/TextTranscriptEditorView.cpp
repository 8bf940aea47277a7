#include "zephmetadataui/TextTranscriptEditorView.h"

#include "timedtext/MetadataListening.h"
#include "timedtext/TimedTextScroll.h"
#include "timedtext/TranscriptViewPrivate.h"
#include "timedtext/WordMarkers.h"

#include <zephui/OSMenu.h>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <iterator>

namespace zephmetadataui
{

using namespace timedtext;
using zephmediatypes::kTime_Invalid;
using zephmediatypes::kTime_Max;
using zephmediatypes::kTime_Zero;
using zephui::KeyboardCode;
using zephui::KeyboardEvent;

namespace
{

Path const& TracksPath()
{
    static Path const path(StandardSchemaNamespace(zephmetadata::kStandardSchemaXMPDynamicMedia),
                           zephcore::ToUTF8("xmpDM:Tracks"));
    return path;
}

std::string ReadMediaManagement(__XMPMeta__* meta, char const* name)
{
    static std::string const prefix = "xmpMM:";
    Path const path(StandardSchemaNamespace(zephmetadata::kStandardSchemaXMPMediaManagement),
                    zephcore::ToUTF8(prefix + name));
    zephcore::UTF8String value;
    if (!meta || !GetValue(meta, path, value, nullptr))
        return std::string();
    return zephcore::ToStdString(value);
}

} // namespace

TextTranscriptEditorView::TextTranscriptEditorView(ProviderPtr const& newProvider)
    : d(std::make_unique<Private>(*this))
{
    UI_SetNodeID("TextTranscriptEditorView");
    d->scrollBar = new UI_ScrollBar(UI_ScrollBar::kScrollBarVertical);
    d->scrollBar->UI_Show(true);
    ChildPushBack(d->scrollBar);
    d->wordEdit =
        new UI_TextEdit(UI_TextEdit::kTextEditStandard | UI_TextEdit::kTextEditNoFrame, 0);
    d->wordEdit->UI_SetLocalRectF(RectF(0.0f, 0.0f, 1.0f, 1.0f));
    d->wordEdit->UI_Show(false);
    ChildPushBack(d->wordEdit);
    // Both hold a plain pointer: the view empties them when it dies.
    d->scrollBarChangedCallback =
        boost::make_shared<boost::function<void(Message*)>>([this](Message*) { UI_Invalidate(); });
    d->scrollBar->NotifyWhenChanged(d->scrollBarChangedCallback);
    d->scrollBar->NotifyWhenChangedInteractively(d->scrollBarChangedCallback);
    d->wordEditChangedCallback = boost::make_shared<boost::function<void(Message*)>>(
        [this](Message*)
        {
            if (d->selectedWord)
                d->ChangeSelectedWordText(d->wordEdit->GetValue());
        });
    d->wordEdit->NotifyWhenChanged(d->wordEditChangedCallback);
    // Right presses over the edit come here first, for the word menu.
    d->mouseFilter = std::make_unique<UI_NodeManager::AddAndRemoveMouseEventFilterNode>(
        UI_NodeManager::Get(), this);
    ResetTranscriptProvider(newProvider);
}

TextTranscriptEditorView::~TextTranscriptEditorView()
{
    if (metaDataChangedCallback)
        metaDataChangedCallback->clear();
    d->scrollBarChangedCallback->clear();
    d->wordEditChangedCallback->clear();
    d->mouseFilter.reset();
}

// ---- Loading and saving ---------------------------------------------------

void TextTranscriptEditorView::ResetTranscriptProvider(ProviderPtr const& newProvider)
{
    FollowProvider(provider, newProvider, metaDataChangedCallback,
                   [this](__XMPMeta__* meta) { OnMetaDataChanged(meta); });
}

void TextTranscriptEditorView::OnMetaDataChanged(__XMPMeta__* meta)
{
    std::string const oldDocument = d->documentID;
    d->documentID = ReadMediaManagement(meta, "DocumentID");
    if (d->documentID.empty() || d->documentID != oldDocument)
    {
        d->instanceID.clear();
        d->lastMetaData = nullptr;
    }
    // The operations opened on this same tree answer from its history as a
    // fresh opening would; only a reload needs one.
    if (!d->instanceID.empty() && d->docOps && meta && meta == d->lastMetaData &&
        !d->docOps->HasPartChanged(d->instanceID.c_str(), zephtemporalxmp::kTracksPartName))
        return;

    std::shared_ptr<zephtemporalxmp::XMPDocOpsTemporal> ops;
    {
        MetaDataReadAccess const access(provider);
        if (*access)
        {
            zephtemporalxmp::TXMPMeta shared(*access);
            ops = std::make_shared<zephtemporalxmp::XMPDocOpsTemporal>();
            ops->OpenXMP(&shared, "", 0);
        }
    }
    if (d->speechTrack && d->wordEdit->UI_IsShown())
        d->wordEdit->UI_Show(false);
    d->docOps = ops;
    d->FindSpeechTrack();
    d->lastMetaData = meta;
    d->instanceID = ReadMediaManagement(meta, "InstanceID");
    if (d->speechTrack)
    {
        d->selectedMarker = d->End();
        d->scrollTargetMarker.reset();
        d->wordHitMap.clear();
    }
    d->ReadWords();
    UTF16String term;
    term.swap(searchTerm);
    SetCurrentSearchTerm(term);
    d->layoutRect = RectF();
    d->scrollBar->SetExtent(UI_ScrollBar::Range(0.0f, 0.0f));
    d->RefreshSelectedWord(true);
}

void TextTranscriptEditorView::Private::FindSpeechTrack()
{
    speechTrack = nullptr;
    if (!docOps)
        return;
    std::string type;
    for (auto track = docOps->TrackListIteratorBegin(); track != docOps->TrackListIteratorEnd();
         ++track)
    {
        track->GetTrackType(&type);
        if (type == "Speech")
        {
            speechTrack = &*track;
            return;
        }
    }
}

void TextTranscriptEditorView::Private::ReadWords()
{
    words.clear();
    wordHitMap.clear();
    layoutValid = false;
    if (!speechTrack)
        return;
    for (auto marker = Begin(); marker != End(); ++marker)
    {
        LaidWord laid;
        laid.marker = marker;
        laid.word = MarkerToWord(marker->second);
        laid.folded = zephcore::FoldCase(laid.word.text);
        words.push_back(std::move(laid));
    }
}

std::size_t TextTranscriptEditorView::Private::IndexOf(MarkerIterator marker) const
{
    if (!speechTrack || marker == End())
        return words.size();
    // Words are in list order, which is start time order.
    auto at = std::lower_bound(words.begin(), words.end(), marker->first,
                               [](LaidWord const& laid, TickTime time)
                               { return laid.marker->first < time; });
    for (; at != words.end() && at->marker->first == marker->first; ++at)
        if (at->marker == marker)
            return std::size_t(at - words.begin());
    return words.size();
}

void TextTranscriptEditorView::CommitTrackChanges()
{
    if (d->docOps)
    {
        MetaDataUpdateAccess access(provider);
        if (*access)
        {
            d->docOps->TrackListChanged();
            d->docOps->PrepareForSave(nullptr, 0);
            access.AddChange(TracksPath());
            // Known before the access ends and tells the listeners, this view
            // among them: its own save then counts as no change.
            d->instanceID = ReadMediaManagement(*access, "InstanceID");
            d->lastMetaData = *access;
        }
    }
    d->ReadWords();
    UI_Invalidate();
}

// ---- In and out points -----------------------------------------------------

void TextTranscriptEditorView::SetInPoint(TickTime time)
{
    if (time == inPoint)
        return;
    inPoint = time;
    UI_Invalidate();
}

void TextTranscriptEditorView::SetOutPoint(TickTime time)
{
    if (time == outPoint)
        return;
    outPoint = time;
    UI_Invalidate();
}

// ---- Selection ---------------------------------------------------------------

bool TextTranscriptEditorView::Private::SelectWord(MarkerIterator marker, bool notify)
{
    if (!speechTrack || marker == selectedMarker)
        return false;
    // Leaving a word saves what was typed into it.
    if (HasSelection() && selectedWord)
        ChangeSelectedWordText(wordEdit->GetValue());
    selectedMarker = marker;
    RefreshSelectedWord(notify);
    return true;
}

void TextTranscriptEditorView::Private::RefreshSelectedWord(bool notify)
{
    if (HasSelection())
        selectedWord = MarkerToWord(selectedMarker->second);
    else
        selectedWord.reset();
    if (selectedWord)
        scrollTargetMarker = selectedMarker;
    view.UI_Invalidate();
    PushWordToEditor(notify);
}

void TextTranscriptEditorView::Private::PushWordToEditor(bool notify)
{
    if (selectedWord)
    {
        wordEdit->SetValue(selectedWord->text);
        if (wordEdit->UI_IsShown())
            wordEdit->SetSelection(0, 0);
        else
            wordEdit->SelectAll();
    }
    if (!notify)
        return;
    // A listener may register another while the list is walked.
    std::vector<SelectedWordListener> const listeners = selectedWordListeners;
    for (SelectedWordListener const& listener : listeners)
        if (listener && *listener)
            (*listener)(selectedWord ? &*selectedWord : nullptr);
}

void TextTranscriptEditorView::Private::BeginEditing()
{
    wordEdit->UI_Show(true);
    wordEdit->UI_GainKeyboardFocus(zephui::kFocusReasonProgram);
    wordEdit->SetSelection(0, 0);
    view.UI_Invalidate();
}

void TextTranscriptEditorView::NotifyOnSelectedWordChanged(SelectedWordListener const& listener)
{
    auto& listeners = d->selectedWordListeners;
    listeners.erase(std::remove_if(listeners.begin(), listeners.end(),
                                   [](SelectedWordListener const& l) { return !l || !*l; }),
                    listeners.end());
    listeners.push_back(listener);
}

WordInfo const* TextTranscriptEditorView::SelectedWord() const
{
    return d->selectedWord ? &*d->selectedWord : nullptr;
}

void TextTranscriptEditorView::SelectWordAtTimecode(TickTime time, bool notify)
{
    if (!d->speechTrack)
        return;
    if (d->HasSelection())
    {
        auto const& word = d->selectedMarker->second;
        if (!(time < word.startTime) && !(time > word.startTime + word.duration))
            return;
    }
    MarkerIterator target = d->speechTrack->MarkerListLowerBound(time);
    if (target != d->End() && target->first != time && target != d->Begin())
        target = std::prev(target);
    if (d->SelectWord(target, notify))
        UI_UpdateNow(-1);
}

TextTranscriptEditorView::TickTime TextTranscriptEditorView::SelectedWordMinStartTime() const
{
    if (!d->HasSelection())
        return kTime_Invalid;
    if (d->selectedMarker == d->Begin())
        return kTime_Zero;
    auto const& previous = std::prev(d->selectedMarker)->second;
    return previous.startTime + previous.duration;
}

TextTranscriptEditorView::TickTime TextTranscriptEditorView::SelectedWordMaxStartTime() const
{
    if (!d->HasSelection())
        return kTime_Invalid;
    auto const next = std::next(d->selectedMarker);
    if (next == d->End())
        return kTime_Max;
    auto const& word = d->selectedMarker->second;
    return word.startTime + (next->second.startTime - (word.startTime + word.duration));
}

TextTranscriptEditorView::TickTime TextTranscriptEditorView::SelectedWordMinDuration() const
{
    return kTime_Zero;
}

TextTranscriptEditorView::TickTime TextTranscriptEditorView::SelectedWordMaxDuration() const
{
    if (!d->HasSelection())
        return kTime_Invalid;
    auto const next = std::next(d->selectedMarker);
    if (next == d->End())
        return kTime_Max;
    return next->second.startTime - d->selectedMarker->second.startTime;
}

bool TextTranscriptEditorView::AdvanceFocus(bool backward, bool wordByWord)
{
    if (!d->speechTrack)
        return false;
    if (!searchTerm.empty() && !wordByWord)
    {
        if (backward ? SelectPreviousSearchOccurrence() : SelectNextSearchOccurrence())
        {
            d->wordEdit->UI_Show(false);
            return true;
        }
        d->SelectWord(d->End(), true);
        return false;
    }
    if (backward)
    {
        if (!d->HasSelection() || d->selectedMarker == d->Begin())
        {
            d->SelectWord(d->End(), true);
            return false;
        }
        d->SelectWord(std::prev(d->selectedMarker), true);
    }
    else
    {
        if (!d->HasSelection())
            return false;
        // Past the last word this clears the selection; the next Tab leaves.
        d->SelectWord(std::next(d->selectedMarker), true);
    }
    d->wordEdit->UI_Show(false);
    return true;
}

// ---- Search ----------------------------------------------------------------

bool TextTranscriptEditorView::Private::Matches(MarkerIterator marker) const
{
    std::size_t const index = IndexOf(marker);
    return index < words.size() && words[index].folded.find(view.searchTerm) != UTF16String::npos;
}

MarkerIterator TextTranscriptEditorView::Private::FindNext() const
{
    if (view.searchTerm.empty() || !HasSelection())
        return End();
    for (std::size_t i = IndexOf(selectedMarker) + 1; i < words.size(); ++i)
        if (words[i].folded.find(view.searchTerm) != UTF16String::npos)
            return words[i].marker;
    return End();
}

MarkerIterator TextTranscriptEditorView::Private::FindPrevious() const
{
    if (view.searchTerm.empty())
        return End();
    std::size_t const from = HasSelection() ? IndexOf(selectedMarker) : words.size();
    for (std::size_t i = from; i-- > 0;)
        if (words[i].folded.find(view.searchTerm) != UTF16String::npos)
            return words[i].marker;
    // With the first word selected, the first word itself is the answer.
    if (from == 0 && HasSelection() && Matches(selectedMarker))
        return selectedMarker;
    return End();
}

void TextTranscriptEditorView::SetCurrentSearchTerm(UTF16String const& term)
{
    UTF16String folded = zephcore::FoldCase(term);
    if (folded == searchTerm)
        return;
    searchTerm = std::move(folded);
    if (!d->speechTrack)
        return;
    for (LaidWord const& laid : d->words)
    {
        if (laid.folded.find(searchTerm) != UTF16String::npos)
        {
            d->scrollTargetMarker = laid.marker;
            break;
        }
    }
    d->SelectWord(d->End(), true);
    UI_Invalidate();
}

bool TextTranscriptEditorView::HasNextSearchOccurrence() const
{
    return d->speechTrack && d->FindNext() != d->End();
}

bool TextTranscriptEditorView::HasPreviousSearchOccurrence() const
{
    return d->speechTrack && d->FindPrevious() != d->End();
}

bool TextTranscriptEditorView::SelectNextSearchOccurrence()
{
    if (!d->speechTrack)
        return false;
    MarkerIterator const answer = d->FindNext();
    d->SelectWord(answer, true);
    return answer != d->End();
}

bool TextTranscriptEditorView::SelectPreviousSearchOccurrence()
{
    if (!d->speechTrack)
        return false;
    MarkerIterator const answer = d->FindPrevious();
    d->SelectWord(answer, true);
    return answer != d->End();
}

// ---- Input -------------------------------------------------------------------

bool TextTranscriptEditorView::UI_GainKeyboardFocus(int reason)
{
    if (reason != zephui::kFocusReasonAdvance)
        return UI_SubView::UI_GainKeyboardFocus(reason);
    if (!d->speechTrack)
        return false;
    if (!d->HasSelection())
    {
        MarkerIterator first = d->Begin();
        if (!searchTerm.empty())
        {
            first = d->End();
            for (LaidWord const& laid : d->words)
                if (laid.folded.find(searchTerm) != UTF16String::npos)
                {
                    first = laid.marker;
                    break;
                }
        }
        d->SelectWord(first, true);
        if (first == d->End())
            return false;
    }
    d->BeginEditing();
    return true;
}

bool TextTranscriptEditorView::UI_DoKeyboardEvent(UI_Node* node, KeyboardEvent const& event)
{
    if (!d->speechTrack)
        return UI_Node::UI_DoKeyboardEvent(node, event);
    unsigned char const mods = event.GetModKey().Get();
    if (event.CompareCode(KeyboardCode(KeyboardCode::kKeyTab)))
    {
        if (event.GetAction() != KeyboardEvent::kKeyDown)
            return true;
        if (AdvanceFocus((mods & zephui::kModifierShift) != 0,
                         (mods & zephui::kModifierControl) != 0))
            return true;
        return UI_SubView::UI_DoKeyboardEvent(node, event);
    }
    if (d->HasSelection() && (event.CompareShortcut(KeyboardCode(KeyboardCode::kKeyEnter), 0) ||
                              event.CompareShortcut(KeyboardCode(KeyboardCode::kKeyReturn), 0)))
    {
        if (event.IsActionKeyDown())
            d->BeginEditing();
        return true;
    }
    // The arrows move the selection word by word while the view itself, not
    // the edit, has the focus.
    bool const left = event.CompareShortcut(KeyboardCode(KeyboardCode::kKeyLeft), 0);
    bool const right = event.CompareShortcut(KeyboardCode(KeyboardCode::kKeyRight), 0);
    if (node == this && (left || right))
    {
        if (event.IsActionKeyDown())
        {
            if (!d->HasSelection() && right && !d->words.empty())
                d->SelectWord(d->Begin(), true);
            else if (left && d->HasSelection() && d->selectedMarker != d->Begin())
                d->SelectWord(std::prev(d->selectedMarker), true);
            else if (right && d->HasSelection() && std::next(d->selectedMarker) != d->End())
                d->SelectWord(std::next(d->selectedMarker), true);
        }
        return true;
    }
    return UI_SubView::UI_DoKeyboardEvent(node, event);
}

bool TextTranscriptEditorView::UI_DoPreMouseEvent(UI_Node* node, MouseEvent const& event)
{
    if (!d->speechTrack || !event.IsAction(MouseEvent::kActionPress) ||
        !event.IsButton(MouseEvent::kButtonRight) || (node != this && !node->UI_IsChildOf(this)))
        return UI_SubView::UI_DoPreMouseEvent(node, event);
    PointF const local = UI_GlobalToLocalF(event.GetGlobalPosition());
    MarkerIterator const hit = d->HitTest(local);
    if (hit == d->End())
        return UI_SubView::UI_DoPreMouseEvent(node, event);
    // The menu runs a loop of its own, in which the host may drop the view.
    UI_NodePtr const keep(this);
    d->SelectWord(hit, true);
    d->DoContextMenu(local);
    return true;
}

bool TextTranscriptEditorView::UI_DoMouseEvent(UI_Node* node, MouseEvent const& event)
{
    if (d->speechTrack && node == this && event.IsButton(MouseEvent::kButtonLeft))
    {
        if (event.IsAction(MouseEvent::kActionPress))
        {
            MarkerIterator const hit = d->HitTest(event.GetPosition());
            bool const changed = d->SelectWord(hit, true);
            if (hit != d->End() && !changed)
            {
                d->BeginEditing();
                return true;
            }
            if (hit != d->End() && event.IsLeftButtonDoubleClick() && d->wordEdit->UI_IsShown())
            {
                d->BeginEditing();
                return true;
            }
            UI_GainKeyboardFocus(zephui::kFocusReasonMouse);
            d->wordEdit->UI_Show(false);
            d->dragging = true;
            return true;
        }
        // A drag carries the selection along the words under the pointer.
        if (event.IsAction(MouseEvent::kActionDrag) && d->dragging)
        {
            MarkerIterator const hit = d->HitTest(event.GetPosition());
            if (hit != d->End())
                d->SelectWord(hit, true);
            return true;
        }
    }
    if (event.IsAction(MouseEvent::kActionRelease))
        d->dragging = false;
    if (ScrollByWheel(*d->scrollBar, event))
        return true;
    return UI_Node::UI_DoMouseEvent(node, event);
}

void TextTranscriptEditorView::UI_SizeChanged(RectF const& rect)
{
    PlaceScrollBar(*d->scrollBar, rect);
    UI_SubView::UI_SizeChanged(rect);
    UI_Invalidate();
}

void TextTranscriptEditorView::UI_FocusChanged(bool hasFocus)
{
    UI_Invalidate();
    UI_SubView::UI_FocusChanged(hasFocus);
}

void TextTranscriptEditorView::UI_Draw(Drawbot* drawbot)
{
    d->wordHitMap.clear();
    if (!d->wordEdit->UI_HasKeyboardFocus())
        d->wordEdit->UI_Show(false);
    RectF const local = UI_GetLocalRectF(false);
    drawbot->PushClip(local);
    d->DrawWords(drawbot);
    UI_SubView::UI_Draw(drawbot);
    drawbot->PopClip();
    DrawTimedTextFrame(drawbot, *this);
}

} // namespace zephmetadataui

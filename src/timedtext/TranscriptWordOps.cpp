// What the user does to the words of the transcript: edit a word's text,
// choose an alternative, insert, delete and merge words, copy them all. Each
// change assigns over markers of the list and ends in one commit.

#include "timedtext/TranscriptViewPrivate.h"
#include "timedtext/WordMarkers.h"

#include <zephui/OSMenu.h>

#include <iterator>

namespace zephmetadataui
{

using namespace timedtext;

namespace
{

enum MenuCommand
{
    kCommandPrimary = 1,
    kCommandSecondary = 2,
    kCommandInsertBefore = 3,
    kCommandInsertAfter = 4,
    kCommandDelete = 5,
    kCommandMergeWithNext = 6,
    kCommandMergeWithPrevious = 7,
    kCommandCut = 8,
    kCommandCopy = 9,
    kCommandPaste = 10,
    kCommandCopyAll = 11,
};

struct MenuTexts
{
    UTF16String insertBefore;
    UTF16String insertAfter;
    UTF16String deleteWord;
    UTF16String mergeWithNext;
    UTF16String mergeWithPrevious;
    UTF16String cut;
    UTF16String copy;
    UTF16String paste;
    UTF16String copyAll;
};

// Fetched once per process, at the first menu.
MenuTexts const& Texts()
{
    static MenuTexts const texts = []
    {
        zephcore::Localizer const& l = zephcore::Localizer::Get();
        return MenuTexts{
            l.GetString(
                "$$$/zephmetadataui/TextTranscriptView/InsertWordBefore=Insert Word Before"),
            l.GetString("$$$/zephmetadataui/TextTranscriptView/InsertWordAfter=Insert Word After"),
            l.GetString("$$$/zephmetadataui/TextTranscriptView/DeleteWord=Delete Word"),
            l.GetString(
                "$$$/zephmetadataui/TextTranscriptView/MergeWithNextWord=Merge With Next Word"),
            l.GetString("$$$/zephmetadataui/TextTranscriptView/"
                        "MergeWithPreviousWord=Merge With Previous Word"),
            l.GetString("$$$/zephmetadataui/TextTranscriptView/Cut=Cut"),
            l.GetString("$$$/zephmetadataui/TextTranscriptView/Copy=Copy"),
            l.GetString("$$$/zephmetadataui/TextTranscriptView/Paste=Paste"),
            l.GetString("$$$/zephmetadataui/TextTranscriptView/CopyAll=Copy All")};
    }();
    return texts;
}

UTF16String const& EmptyWordText()
{
    static UTF16String const text = zephcore::Localizer::Get().GetString(
        "$$$/zephmetadataui/TextTranscriptView/EmptyWord=(User String)");
    return text;
}

} // namespace

void TextTranscriptEditorView::Private::ChangeSelectedWordText(UTF16String const& newText)
{
    if (!selectedWord || newText == selectedWord->text)
        return;
    // An emptied word is a deleted word.
    if (newText.empty())
    {
        DeleteSelectedWord();
        return;
    }
    selectedWord->text = newText;
    CommitSelectedWord();
}

void TextTranscriptEditorView::Private::CommitSelectedWord()
{
    // Whatever went through here, a user wrote the word.
    if (selectedWord)
        selectedWord->probability = -1;
    if (HasSelection() && selectedWord)
        selectedMarker->second = WordToMarker(*selectedWord);
    view.CommitTrackChanges();
    PushWordToEditor(true);
}

void TextTranscriptEditorView::Private::DeleteSelectedWord()
{
    if (!HasSelection())
        return;
    if (scrollTargetMarker == selectedMarker)
        scrollTargetMarker.reset();
    speechTrack->RemoveMarker(selectedMarker);
    selectedMarker = End();
    view.CommitTrackChanges();
    RefreshSelectedWord(true);
}

void TextTranscriptEditorView::Private::InsertWord(bool after)
{
    if (!HasSelection() || !selectedWord)
        return;
    WordInfo word;
    word.text = EmptyWordText();
    word.probability = -1;
    word.speaker = selectedWord->speaker;
    if (after)
    {
        // The new word fills the gap after the selected one.
        word.startTime = selectedWord->startTime + selectedWord->duration;
        word.duration = view.SelectedWordMaxDuration() - selectedWord->duration;
        speechTrack->AddMarker(std::next(selectedMarker), WordToMarker(word));
        SelectWord(std::next(selectedMarker), false);
    }
    else
    {
        word.startTime = view.SelectedWordMinStartTime();
        word.duration = selectedWord->startTime - word.startTime;
        speechTrack->AddMarker(selectedMarker, WordToMarker(word));
        SelectWord(std::prev(selectedMarker), false);
    }
    CommitSelectedWord();
    BeginEditing();
    wordEdit->SelectAll();
}

void TextTranscriptEditorView::Private::MergeInto(MarkerIterator keep, MarkerIterator other)
{
    // The kept word takes the other's text and reaches to its end; its
    // alternatives no longer fit it.
    WordInfo const otherWord = MarkerToWord(other->second);
    if (scrollTargetMarker == other)
        scrollTargetMarker.reset();
    speechTrack->RemoveMarker(other);
    selectedMarker = End();
    SelectWord(keep, false);
    selectedWord->primary.clear();
    selectedWord->secondary.clear();
    selectedWord->text += otherWord.text;
    selectedWord->duration = otherWord.startTime + otherWord.duration - selectedWord->startTime;
    CommitSelectedWord();
}

void TextTranscriptEditorView::Private::MergeWithNext()
{
    if (!HasSelection() || std::next(selectedMarker) == End())
        return;
    MarkerIterator const keep = selectedMarker;
    MarkerIterator const other = std::next(keep);
    // Selecting the other word first saves what was typed into this one.
    SelectWord(other, false);
    MergeInto(keep, other);
}

void TextTranscriptEditorView::Private::MergeWithPrevious()
{
    if (!HasSelection() || selectedMarker == Begin())
        return;
    MarkerIterator const keep = std::prev(selectedMarker);
    // Text typed into the word that goes is dropped with it.
    MergeInto(keep, selectedMarker);
}

void TextTranscriptEditorView::Private::CopyAll() const
{
    UTF16String all;
    UTF16String lastSpeaker;
    bool firstBlock = true;
    for (std::size_t i = 0; i < words.size(); ++i)
    {
        WordInfo const& word = words[i].word;
        if (word.speaker != lastSpeaker)
        {
            if (!firstBlock)
                all += zephcore::AsciiToUTF16("\n");
            firstBlock = false;
            lastSpeaker = word.speaker;
            all += zephcore::AsciiToUTF16("[") + word.speaker + zephcore::AsciiToUTF16("] ");
        }
        all += word.text;
        if (i + 1 < words.size())
            all += zephcore::AsciiToUTF16(" ");
    }
    zephui::NewClipboardSendData(all);
}

void TextTranscriptEditorView::Private::DoContextMenu(PointF const& local)
{
    if (!HasSelection() || !selectedWord)
        return;
    MenuTexts const& texts = Texts();
    std::unique_ptr<zephui::OSMenu> menu = zephui::CreateOSMenu();
    WordInfo const word = *selectedWord;
    bool const offersPrimary = !word.primary.empty() && word.primary != word.text;
    bool const offersSecondary = !word.secondary.empty() && word.secondary != word.text;
    if (offersPrimary)
        menu->AddItem(word.primary, kCommandPrimary);
    if (offersSecondary)
        menu->AddItem(word.secondary, kCommandSecondary);
    if (offersPrimary || offersSecondary)
        menu->AddSeparator();
    menu->AddItem(texts.insertBefore, kCommandInsertBefore);
    menu->AddItem(texts.insertAfter, kCommandInsertAfter);
    menu->AddItem(texts.deleteWord, kCommandDelete);
    menu->AddItem(texts.mergeWithNext, kCommandMergeWithNext);
    menu->AddItem(texts.mergeWithPrevious, kCommandMergeWithPrevious);
    menu->AddSeparator();
    menu->AddItem(texts.cut, kCommandCut);
    menu->AddItem(texts.copy, kCommandCopy);
    menu->AddItem(texts.paste, kCommandPaste);
    menu->AddSeparator();
    menu->AddItem(texts.copyAll, kCommandCopyAll);
    bool const first = selectedMarker == Begin();
    bool const last = std::next(selectedMarker) == End();
    menu->EnableItem(kCommandInsertBefore, !first);
    menu->EnableItem(kCommandMergeWithPrevious, !first);
    menu->EnableItem(kCommandInsertAfter, !last);
    menu->EnableItem(kCommandMergeWithNext, !last);
    bool const editing = wordEdit->UI_IsShown();
    menu->EnableItem(kCommandCut, editing && wordEdit->CanCut());
    menu->EnableItem(kCommandCopy, wordEdit->CanCopy());
    menu->EnableItem(kCommandPaste, editing && wordEdit->CanPaste());
    menu->EnableItem(kCommandCopyAll, !words.empty());

    int const chosen = view.UI_DoContextMenu(menu.get(), local);
    // The menu's loop may have reloaded the words.
    if (!HasSelection())
        return;
    switch (chosen)
    {
    case kCommandPrimary:
        ChangeSelectedWordText(word.primary);
        break;
    case kCommandSecondary:
        ChangeSelectedWordText(word.secondary);
        break;
    case kCommandInsertBefore:
        InsertWord(false);
        break;
    case kCommandInsertAfter:
        InsertWord(true);
        break;
    case kCommandDelete:
        DeleteSelectedWord();
        break;
    case kCommandMergeWithNext:
        MergeWithNext();
        break;
    case kCommandMergeWithPrevious:
        MergeWithPrevious();
        break;
    case kCommandCut:
        wordEdit->Cut();
        break;
    case kCommandCopy:
        wordEdit->Copy();
        break;
    case kCommandPaste:
        wordEdit->Paste();
        break;
    case kCommandCopyAll:
        CopyAll();
        break;
    default:
        break;
    }
}

} // namespace zephmetadataui

#pragma once
// StoryScriptView: the dialogue of a story script that a file's XMP holds
// (the XMP Script "dialogSequence"), read-only. Each speech stands under its
// speaker's tag, word-wrapped; a search sets off its matches. The view has
// no selection, takes no keyboard focus and has no time line. It follows
// its provider: every change of the metadata reloads the script.
//
// The speeches are cut into lines once and kept until the view's width
// changes; a paint draws only the lines on screen, so a long script stays
// cheap to scroll.
//
// The host makes the view; nothing else in the library does.

#include "zephmetadataui/zephmetadataui_export.h"

#include <zephmetadata/Provider.h>
#include <zephui/Geometry.h>
#include <zephui/Messages.h>
#include <zephui/UI_ScrollBar.h>
#include <zephui/UI_SubView.h>

#include <boost/shared_ptr.hpp>

#include <memory>

namespace zephmetadataui
{

class ZEPHMETADATAUI_EXPORT StoryScriptView : public zephui::UI_SubView
{
public:
    using ProviderPtr = boost::shared_ptr<zephmetadata::MetaDataProvider>;
    using UTF16String = zephcore::UTF16String;

    // Shows nothing until a provider is given.
    StoryScriptView();
    explicit StoryScriptView(ProviderPtr const& provider);
    ~StoryScriptView() override;

    // Follows this provider from now on and shows its script. The same
    // provider again does nothing; an empty one empties the view.
    void ResetMetadataProvider(ProviderPtr const& provider);
    // Whether there is any speech to show.
    bool HasStoryData() const;
    // Sets off every place of the term in the speeches, and the tag of every
    // speaker whose name holds it, in any case. An empty term sets off
    // nothing. The view does not scroll.
    void SetCurrentSearchTerm(UTF16String const& term);
    // The term as it is matched: case-folded.
    UTF16String const& CurrentSearchTerm() const { return searchTerm; }

    void UI_Draw(zephui::Drawbot* drawbot) override;
    // The mouse wheel scrolls.
    bool UI_DoMouseEvent(zephui::UI_Node* node, zephui::MouseEvent const& event) override;
    bool UI_WantsKeyboardFocus() const override { return false; }
    void UI_SizeChanged(zephui::RectF const& rect) override;

private:
    struct Private;

    void OnMetaDataChanged(__XMPMeta__* meta);
    void Layout(zephui::SupplierInterface const* supplier);
    void UpdateScrollExtent();
    void DrawDialogs(zephui::Drawbot* drawbot);

    zephui::UI_ScrollBarPtr scrollBar;
    ProviderPtr provider;
    zephmetadata::MetaDataProvider::ChangedListener metaDataChangedCallback;
    zephui::MessageCallback scrollBarChangedCallback;
    // The inner rectangle of the last paint; zero until then.
    zephui::RectF layoutRect;
    UTF16String searchTerm;
    // The records, the font and the tag, and the caches of layout and search.
    std::unique_ptr<Private> d;
};

using StoryScriptViewPtr = boost::intrusive_ptr<StoryScriptView>;

} // namespace zephmetadataui

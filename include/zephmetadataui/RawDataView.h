#pragma once
// The XMP of a provider as serialised RDF/XML in a text box, with a search
// box above it that finds every occurrence of a text (F3 steps to the next,
// Shift+F3 to the previous). It only shows: nothing typed in the box reaches
// the metadata. It follows the provider's changes.

#include "zephmetadataui/MetadataLayoutView.h"
#include "zephmetadataui/zephmetadataui_export.h"

#include <zephui/UI_SearchBox.h>
#include <zephui/UI_TextEdit.h>

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <utility>
#include <vector>

namespace zephmetadataui
{

struct ZEPHMETADATAUI_EXPORT RawDataViewOptions
{
    bool showLabel = true;     // a bold "Raw Data" left of the search box
    float topOffset = 0.0f;    // distance of the first row from the top
    float bottomOffset = 0.0f; // room left under the text box
};

class ZEPHMETADATAUI_EXPORT RawDataView : public MetadataLayoutView
{
public:
    RawDataView(boost::shared_ptr<zephmetadata::ViewDefinition> definition,
                boost::shared_ptr<zephmetadata::MetaDataProvider> provider,
                RawDataViewOptions options);
    ~RawDataView() override;

    // Builds the view on the first call at a real size; reads the model again
    // on every later one.
    void Layout() override;
    void Refresh() override { Layout(); }
    bool UI_DoMouseEvent(zephui::UI_Node* node, zephui::MouseEvent const& event) override;
    bool UI_DoKeyboardEvent(zephui::UI_Node* node, zephui::KeyboardEvent const& event) override;

    zephui::UI_TextEdit* GetTextBox() const { return textBox.get(); }
    zephui::UI_SearchBox* GetSearchBox() const { return searchBox.get(); }
    // The ranges the last search found, and the one selected.
    std::vector<std::pair<int, int>> const& GetMatches() const { return matches; }
    int GetCurrentMatch() const { return currentMatch; }

private:
    void Build();
    void Populate();
    void Search(zephcore::UTF16String const& query, bool force);
    void Step(bool forward);
    void SelectMatch();

    boost::shared_ptr<zephmetadata::MetaDataProvider> provider;
    boost::intrusive_ptr<zephui::UI_TextEdit> textBox;
    boost::intrusive_ptr<zephui::UI_SearchBox> searchBox;
    RawDataViewOptions options;
    bool needsBuild = true;
    zephcore::UTF16String lastQuery;
    zephcore::UTF16String loweredText;
    bool loweredTextStale = true;
    int currentMatch = 0;
    std::vector<std::pair<int, int>> matches;
    boost::shared_ptr<boost::function<void(__XMPMeta__*)>> changeSubscription;
    zephui::MessageCallback searchChanged;
    zephui::MessageCallback textTyped;
};

// A raw data page for a host's own panels. The definition's id becomes
// "com.velmora.xmp.view.rawdata"; its label names the page.
ZEPHMETADATAUI_EXPORT boost::intrusive_ptr<MetadataLayoutView>
CreateRawDataView(boost::shared_ptr<zephmetadata::ViewDefinition> definition,
                  boost::shared_ptr<zephmetadata::MetaDataProvider> provider,
                  RawDataViewOptions options);

} // namespace zephmetadataui

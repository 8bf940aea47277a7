#pragma once
// Three MetadataSectionView panels stacked one over the other, with a
// splitter bar between each two. The user opens and closes panels by their
// headers and drags the bars. A closed panel keeps only its header; the open
// ones share the rest of the height by two fractions, the first and second
// percentages (the third panel's share is what they leave of 1). When a
// panel closes, its share goes to the panels still open.
//
// The host makes the view with its three contents, places it, and keeps the
// state across runs itself: GetSplitterPercentage and GetSectionView(i)->
// GetOpened() to save, SetSplitterPercentage and SetOpened to restore.

#include "zephmetadataui/MetadataSectionView.h"
#include "zephmetadataui/zephmetadataui_export.h"

#include <zephcore/Strings.h>
#include <zephui/Drawbot.h>
#include <zephui/UI_SubView.h>

#include <boost/function.hpp>
#include <boost/intrusive_ptr.hpp>
#include <boost/shared_ptr.hpp>

#include <array>

namespace zephmetadataui
{

class TriSectionSplitterViewCapture;

class ZEPHMETADATAUI_EXPORT TriSectionSplitterView : public zephui::UI_SubView
{
public:
    using SectionFactory = MetadataSectionView* (*)();
    // Called with the index of the panel that opened or closed.
    using SectionViewChangedFxn = boost::shared_ptr<boost::function<void(int)>>;
    // Called with true for the first bar, false for the second, after every
    // change of the percentages: by a drag, its cancel, or SetSplitterPercentage.
    using SplitterChangedFxn = boost::shared_ptr<boost::function<void(bool)>>;

    // c0, c1, c2 go into the panels' content views, top to bottom, keeping
    // their own shown state; each fills its panel's content. factory makes
    // the three panels (null: open panels without a title).
    TriSectionSplitterView(zephui::UI_SubViewPtr const& c0, zephui::UI_SubViewPtr const& c1,
                           zephui::UI_SubViewPtr const& c2, SectionFactory factory = nullptr);
    ~TriSectionSplitterView() override;

    // 0, 1 or 2; null for any other index.
    MetadataSectionViewPtr GetSectionView(int index) const;
    float GetSplitterPercentage(bool first) const;
    // Any value is taken as it is; lays out and tells the splitter function.
    void SetSplitterPercentage(bool first, float value);
    // The index must be 0, 1 or 2.
    void SetSectionImages(int index, boost::intrusive_ptr<zephui::ImageInterface> first,
                          boost::intrusive_ptr<zephui::ImageInterface> second);
    void SetSectionPrimaryText(int index, zephcore::UTF16String const& text);
    void SetSectionSecondaryText(int index, zephcore::UTF16String const& text);
    // The caller keeps the holders.
    void SetSectionViewChangedFxn(SectionViewChangedFxn const& fxn);
    void SetSplitterChangedFxn(SplitterChangedFxn const& fxn);

    void UI_Draw(zephui::Drawbot* drawbot) override;
    bool UI_DoMouseEvent(zephui::UI_Node* node, zephui::MouseEvent const& event) override;
    bool UI_DoCursor(zephui::UI_Node* node, zephui::PointF const& point,
                     zephui::Flags<unsigned long> flags) override;
    void UI_SizeChanged(zephui::RectF const& rect) override;

private:
    friend class TriSectionSplitterViewCapture;

    bool IsOpen(int index) const;
    // The share of the height that the open panels hold together.
    float OpenFraction() const;
    // The height that the percentages divide.
    float Available() const;
    float SectionHeight(int index) const;
    float SectionTop(int index) const;
    // The bar under panel 0 or 1.
    zephui::RectF SplitterRect(int index) const;
    void Relayout(bool first);
    void OnSectionChanged(MetadataSectionViewPtr const& section);

    std::array<MetadataSectionViewPtr, 3> sections;
    float firstPercentage = 0.33333334f;
    float secondPercentage = 0.33333334f;
    SectionViewChangedFxn sectionViewChangedFxn;
    SplitterChangedFxn splitterChangedFxn;
    // The function the panels call; emptied when this view dies.
    MetadataSectionView::SectionViewChangedFxn sectionChanged;
};

using TriSectionSplitterViewPtr = boost::intrusive_ptr<TriSectionSplitterView>;

} // namespace zephmetadataui

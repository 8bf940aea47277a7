#pragma once
// A collapsible panel with a header of its own: a bold primary text, then a
// plain secondary text behind a separator, and one small image at the right
// edge. The first child of its content view always fills the content view.
// One listener hears of every change of the opened state.

#include "zephmetadataui/zephmetadataui_export.h"

#include <zephcore/Strings.h>
#include <zephui/Drawbot.h>
#include <zephui/UI_SectionView.h>

#include <boost/function.hpp>
#include <boost/intrusive_ptr.hpp>
#include <boost/shared_ptr.hpp>

namespace zephmetadataui
{

class MetadataSectionView;
using MetadataSectionViewPtr = boost::intrusive_ptr<MetadataSectionView>;

class ZEPHMETADATAUI_EXPORT MetadataSectionView : public zephui::UI_SectionView
{
public:
    using SectionViewChangedFxn = boost::shared_ptr<boost::function<void(MetadataSectionViewPtr)>>;

    // label: the base's own title; the splitter leaves it empty and shows the
    // primary text instead.
    explicit MetadataSectionView(zephcore::UTF16String const& label = {}, bool opened = true);

    // first shows under a dark theme (icon type 2), second otherwise; one
    // alone shows under every theme. Shown at the next paint: no repaint.
    void SetImages(boost::intrusive_ptr<zephui::ImageInterface> first,
                   boost::intrusive_ptr<zephui::ImageInterface> second);
    void SetPrimaryText(zephcore::UTF16String const& text);
    void SetSecondaryText(zephcore::UTF16String const& text);
    // Called with this view after each change of the opened state, once the
    // base has done its work. The caller keeps the holder.
    void SetSectionViewChangedFxn(SectionViewChangedFxn const& fxn);

    void UI_Draw(zephui::Drawbot* drawbot) override;
    void UI_SizeChanged(zephui::RectF const& rect) override;

protected:
    void DoSetOpened(bool open) override;
    void NotifySectionViewChanged();

private:
    boost::intrusive_ptr<zephui::ImageInterface> firstImage;
    boost::intrusive_ptr<zephui::ImageInterface> secondImage;
    zephcore::UTF16String primaryText;
    zephcore::UTF16String secondaryText;
    SectionViewChangedFxn sectionViewChangedFxn;
};

} // namespace zephmetadataui

#pragma once
// A collapsible section: a header strip with a disclosure triangle and a
// title, over a content view that is shown while the section is open. A click
// on the header (or Space and Enter, when the header takes the focus) opens
// or closes it; DoSetOpened does the work and tells the callbacks. The
// section does not resize itself: its owner asks GetSizeFromContentSize.

#include "zephui/UI_ControlView.h"
#include "zephui/zephui_export.h"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <vector>

namespace zephui
{

class ZEPHUI_EXPORT UI_SectionView : public UI_ControlView
{
public:
    static constexpr float kDefaultHeaderHeight = 20.0f;

    explicit UI_SectionView(zephcore::UTF16String const& title = {}, bool opened = true);

    UI_SubViewPtr GetContentView() const { return contentView; }
    bool GetOpened() const { return opened; }
    // Opens or closes; does nothing if the state is already so.
    void SetOpened(bool open);
    void SetHeaderHeight(float height);
    float GetHeaderHeight() const { return headerHeight; }
    void SetTitle(zephcore::UTF16String const& text);
    zephcore::UTF16String const& GetTitle() const { return title; }
    // The section's size for a content of this size: the header, and the
    // content below it while open.
    PointF GetSizeFromContentSize(PointF const& contentSize) const;
    void SetDisclosureTriangleWantsFocus(bool wants) { SetWantsKeyboardFocus(wants); }
    // Called after every change of the opened state.
    void AddOpenedStateChangedCallback(boost::shared_ptr<boost::function<void()>> const& callback);
    void AddOpenedStateChangedCallback(boost::function<void()> const& callback);

    void UI_Draw(Drawbot* drawbot) override;
    void UI_SizeChanged(RectF const& rect) override;
    bool UI_DoMouseEvent(UI_Node* node, MouseEvent const& event) override;
    bool UI_DoKeyboardEvent(UI_Node* node, KeyboardEvent const& event) override;
    bool UI_InvalidateOnKeyboardFocusChange() const override { return true; }

protected:
    // Sets the state, shows or hides the content, and tells the callbacks.
    virtual void DoSetOpened(bool open);

private:
    void PlaceContent();

    zephcore::UTF16String title;
    bool opened = true;
    float headerHeight = kDefaultHeaderHeight;
    UI_SubViewPtr contentView;
    std::vector<boost::shared_ptr<boost::function<void()>>> openedChanged;
};

using UI_SectionViewPtr = boost::intrusive_ptr<UI_SectionView>;

} // namespace zephui

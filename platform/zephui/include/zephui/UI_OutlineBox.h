#pragma once
// A box drawn as a 1-pixel outline around its children, with an optional
// title set into the top edge.

#include "zephui/UI_SubView.h"
#include "zephui/zephui_export.h"

namespace zephui
{

class ZEPHUI_EXPORT UI_OutlineBox : public UI_SubView
{
public:
    UI_OutlineBox() = default;
    explicit UI_OutlineBox(RectF const& rect) : UI_SubView(rect) {}
    void SetTitle(zephcore::UTF16String const& text);
    zephcore::UTF16String const& GetTitle() const { return title; }
    // Where children go clear of the outline and title.
    RectF GetContentRectF() const;
    void UI_Draw(Drawbot* drawbot) override;

private:
    zephcore::UTF16String title;
};

using UI_OutlineBoxPtr = boost::intrusive_ptr<UI_OutlineBox>;

} // namespace zephui

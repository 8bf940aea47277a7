#pragma once
// A thin rule: horizontal when wider than tall, else vertical; it draws a
// 1-pixel line in the divider colour along its middle.

#include "zephui/UI_SubView.h"
#include "zephui/zephui_export.h"

namespace zephui
{

class ZEPHUI_EXPORT UI_Divider : public UI_SubView
{
public:
    UI_Divider() = default;
    explicit UI_Divider(RectF const& rect) : UI_SubView(rect) {}
    bool IsHorizontal() const;
    void UI_Draw(Drawbot* drawbot) override;
};

using UI_DividerPtr = boost::intrusive_ptr<UI_Divider>;

} // namespace zephui

#pragma once
// A node with its own rectangle and child layout: the base of every view.

#include "zephui/UI_Node.h"
#include "zephui/zephui_export.h"

namespace zephui
{

class ZEPHUI_EXPORT UI_SubView : public UI_Node
{
public:
    UI_SubView() = default;
    explicit UI_SubView(RectF const& rect) { UI_SetLocalRectF(rect); }
    bool UI_IsSubView() const override { return true; }
};

using UI_SubViewPtr = boost::intrusive_ptr<UI_SubView>;

} // namespace zephui

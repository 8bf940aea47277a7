#include "zephui/UI_SplitterView.h"

#include "zephui/Drawbot.h"
#include "zephui/InputCapture.h"
#include "zephui/ResourceManager.h"
#include "zephui/Skin.h"
#include "zephui/Theme.h"
#include "zephui/UI_NodeManager.h"

#include <algorithm>
#include <cmath>

namespace zephui
{

namespace
{

class SplitterCapture : public InputCapture
{
public:
    SplitterCapture(UI_SplitterView* view, MouseEvent const& event)
        : InputCapture(view, event), view(view), startSplit(view->GetSplitPosition()),
          grabOffset((view->IsSideBySide() ? event.GetPosition().x : event.GetPosition().y) -
                     startSplit)
    {
    }

    bool DoMouseEvent(MouseEvent const& event) override
    {
        if (event.IsAction(MouseEvent::kActionDrag) || event.IsAction(MouseEvent::kActionRelease))
        {
            float const along =
                view->IsSideBySide() ? event.GetPosition().x : event.GetPosition().y;
            view->DragTo(along - grabOffset, event.IsAction(MouseEvent::kActionRelease));
        }
        return true;
    }
    bool DoCursor(PointF const&) override
    {
        if (UI_NodeManager* manager = UI_NodeManager::Get())
            manager->DisplayCursor(HasBeenCancelled()     ? kCursorArrow
                                   : view->IsSideBySide() ? kCursorResizeHorizontal
                                                          : kCursorResizeVertical);
        return true;
    }
    void CaptureEnded() override
    {
        if (HasBeenCancelled())
            view->DragTo(startSplit, true);
    }

private:
    UI_SplitterView* view;
    float startSplit;
    float grabOffset;
};

} // namespace

UI_SplitterView::UI_SplitterView(bool sideways) : sideBySide(sideways) {}

void UI_SplitterView::SetViews(UI_SubViewPtr const& first, UI_SubViewPtr const& second)
{
    if (firstView)
        ChildRequestRemove(firstView.get());
    if (secondView)
        ChildRequestRemove(secondView.get());
    firstView = first;
    secondView = second;
    for (UI_SubViewPtr const& view : {first, second})
        if (view)
        {
            view->UI_Show(true);
            ChildPushBack(view);
        }
    Place();
}

float UI_SplitterView::Clamp(float position) const
{
    RectF const local = UI_GetLocalRectF(false);
    float const length = sideBySide ? local.width : local.height;
    float const most = std::max(minimumPane, length - kBarThickness - minimumPane);
    return std::clamp(position, std::min(minimumPane, most), most);
}

void UI_SplitterView::SetSplitPosition(float position)
{
    split = position;
    Place();
}

RectF UI_SplitterView::GetBarRect() const
{
    RectF const local = UI_GetLocalRectF(false);
    float const at = Clamp(split);
    return sideBySide ? RectF(at, 0.0f, kBarThickness, local.height)
                      : RectF(0.0f, at, local.width, kBarThickness);
}

void UI_SplitterView::Place()
{
    RectF const local = UI_GetLocalRectF(false);
    RectF const bar = GetBarRect();
    if (firstView)
        firstView->UI_SetLocalRectF(sideBySide ? RectF(0.0f, 0.0f, bar.left, local.height)
                                               : RectF(0.0f, 0.0f, local.width, bar.top));
    if (secondView)
        secondView->UI_SetLocalRectF(
            sideBySide ? RectF(bar.GetRight(), 0.0f, std::max(0.0f, local.width - bar.GetRight()),
                               local.height)
                       : RectF(0.0f, bar.GetBottom(), local.width,
                               std::max(0.0f, local.height - bar.GetBottom())));
    UI_Invalidate();
}

void UI_SplitterView::DragTo(float position, bool)
{
    float const next = Clamp(position);
    if (next == Clamp(split))
        return;
    split = next;
    Place();
    if (splitChanged)
        splitChanged(split);
}

namespace
{

void DrawBar(Drawbot* drawbot, RectF const& rect, bool across, ColorRGBA const& bar,
             ColorRGBA const& grip)
{
    drawbot->FillRect(rect, bar);
    float const cx = rect.left + rect.width / 2.0f, cy = rect.top + rect.height / 2.0f;
    for (int i = -1; i <= 1; ++i)
    {
        float const offset = float(i) * 4.0f;
        drawbot->FillRect(across ? RectF(cx + offset - 1.0f, cy - 1.0f, 2.0f, 2.0f)
                                 : RectF(cx - 1.0f, cy + offset - 1.0f, 2.0f, 2.0f),
                          grip);
    }
}

} // namespace

void UI_SplitterView::Draw(RectF const& rect, Drawbot* drawbot)
{
    DrawBar(drawbot, rect, rect.width >= rect.height, zephui::GetColor(kColor_SplitterBar),
            zephui::GetColor(kColor_SplitterGrip));
}

void SplitterViewSkin::Draw(Drawbot* drawbot, ThemeProvider const* theme, RectF const& rect,
                            bool horizontal) const
{
    if (!theme)
        theme = GetApplicationTheme();
    DrawBar(drawbot, rect, horizontal, theme->GetColor(kColor_SplitterBar),
            theme->GetColor(kColor_SplitterGrip));
}

void UI_SplitterView::UI_Draw(Drawbot* drawbot)
{
    RectF const bar = GetBarRect();
    SkinSet const* skins = UI_GetCurrentSkinSet();
    auto const skin = skins ? boost::dynamic_pointer_cast<SplitterViewSkin>(
                                  skins->GetSkinWithMap("UI_SplitterView"))
                            : nullptr;
    if (skin)
        skin->Draw(drawbot, UI_GetThemeProvider(), bar, bar.width >= bar.height);
    else
        Draw(bar, drawbot);
    UI_SubView::UI_Draw(drawbot);
}

bool UI_SplitterView::UI_DoCursor(UI_Node* node, PointF const& point, Flags<unsigned long>)
{
    if (node != this || !GetBarRect().Contains(point))
        return false;
    UI_NodeManager::Get()->DisplayCursor(sideBySide ? kCursorResizeHorizontal
                                                    : kCursorResizeVertical);
    return true;
}

bool UI_SplitterView::UI_DoMouseEvent(UI_Node* node, MouseEvent const& event)
{
    if (node != this || !event.IsAction(MouseEvent::kActionPress) ||
        event.GetButton() != MouseEvent::kButtonLeft || !GetBarRect().Contains(event.GetPosition()))
        return false;
    UI_NodeManager::Get()->BeginInputCapture(
        boost::intrusive_ptr<InputCapture>(new SplitterCapture(this, event)));
    return true;
}

void UI_SplitterView::UI_SizeChanged(RectF const& rect)
{
    UI_SubView::UI_SizeChanged(rect);
    Place();
}

} // namespace zephui

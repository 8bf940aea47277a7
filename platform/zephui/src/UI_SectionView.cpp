#include "zephui/UI_SectionView.h"

#include "ControlSupport.h"
#include "zephui/Drawbot.h"
#include "zephui/NodeWidget.h"
#include "zephui/QtDrawing.h"

#include "zephcore/QtStrings.h"

#include <QPainter>

#include <boost/make_shared.hpp>

namespace zephui
{

UI_SectionView::UI_SectionView(zephcore::UTF16String const& text, bool open)
    : title(text), opened(open), contentView(new UI_SubView)
{
    SetWantsKeyboardFocus(false);
    contentView->UI_SetLayoutsChildren(true);
    contentView->UI_Show(opened);
    ChildPushBack(contentView);
    PlaceContent();
}

void UI_SectionView::SetOpened(bool open)
{
    if (open != opened)
        DoSetOpened(open);
}

void UI_SectionView::DoSetOpened(bool open)
{
    opened = open;
    contentView->UI_Show(opened);
    UI_Invalidate();
    auto const callbacks = openedChanged; // a callback may add another
    for (auto const& callback : callbacks)
        if (callback && *callback)
            (*callback)();
}

void UI_SectionView::SetHeaderHeight(float height)
{
    headerHeight = std::max(0.0f, height);
    PlaceContent();
    UI_Invalidate();
}

void UI_SectionView::SetTitle(zephcore::UTF16String const& text)
{
    title = text;
    UI_Invalidate();
}

PointF UI_SectionView::GetSizeFromContentSize(PointF const& contentSize) const
{
    return PointF(contentSize.x, headerHeight + (opened ? std::max(0.0f, contentSize.y) : 0.0f));
}

void UI_SectionView::AddOpenedStateChangedCallback(
    boost::shared_ptr<boost::function<void()>> const& callback)
{
    if (callback)
        openedChanged.push_back(callback);
}

void UI_SectionView::AddOpenedStateChangedCallback(boost::function<void()> const& callback)
{
    AddOpenedStateChangedCallback(boost::make_shared<boost::function<void()>>(callback));
}

void UI_SectionView::PlaceContent()
{
    RectF const local = UI_GetLocalRectF(false);
    contentView->UI_SetLocalRectF(
        RectF(0.0f, headerHeight, local.width, std::max(0.0f, local.height - headerHeight)));
}

void UI_SectionView::UI_SizeChanged(RectF const& rect)
{
    UI_ControlView::UI_SizeChanged(rect);
    PlaceContent();
}

void UI_SectionView::UI_Draw(Drawbot* drawbot)
{
    RectF const local = UI_GetLocalRectF(false);
    RectF const header(0.0f, 0.0f, local.width, headerHeight);
    drawbot->FillRect(header, GetColor(kColor_SectionHeaderBackground));
    utils::DrawDisclosureTriangle(drawbot, PointF(11.0f, headerHeight / 2.0f), opened,
                                  GetColor(kColor_SectionHeaderText));
    QPainter* const painter = drawbot->GetPainter();
    if (painter)
    {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (!title.empty())
        {
            painter->setFont(ControlFont(0.0f, true));
            painter->setPen(ToQColor(GetColor(kColor_SectionHeaderText)));
            painter->drawText(QRectF(24.0, 0.0, std::max(0.0f, local.width - 28.0f), headerHeight),
                              Qt::AlignLeft | Qt::AlignVCenter, zephcore::ToQString(title));
        }
        if (UI_HasKeyboardFocus(false))
        {
            painter->setPen(QPen(ToQColor(GetColor(kColor_FocusRing)), 1.0, Qt::DotLine));
            painter->drawRect(QRectF(3.5, 2.5, 15.0, headerHeight - 5.0));
        }
        painter->restore();
    }
    UI_ControlView::UI_Draw(drawbot);
}

bool UI_SectionView::UI_DoMouseEvent(UI_Node* node, MouseEvent const& event)
{
    if (node != this || !event.IsAction(MouseEvent::kActionPress) ||
        event.GetButton() != MouseEvent::kButtonLeft || event.GetPosition().y >= headerHeight)
        return false;
    NodeEventScope scope(this);
    DoSetOpened(!opened);
    return true;
}

bool UI_SectionView::UI_DoKeyboardEvent(UI_Node* node, KeyboardEvent const& event)
{
    if (node != this || !event.IsActionKeyDown())
        return false;
    if (!event.CompareCode(KeyboardCode(KeyboardCode::kKeySpace)) &&
        !event.CompareCode(KeyboardCode(KeyboardCode::kKeyReturn)) &&
        !event.CompareCode(KeyboardCode(KeyboardCode::kKeyEnter)))
        return false;
    NodeEventScope scope(this);
    DoSetOpened(!opened);
    return true;
}

} // namespace zephui

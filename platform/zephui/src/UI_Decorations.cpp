// The drawn-only views: UI_Divider and UI_OutlineBox.

#include "zephui/UI_Divider.h"
#include "zephui/UI_OutlineBox.h"

#include "ControlSupport.h"
#include "zephui/Drawbot.h"
#include "zephui/QtDrawing.h"

#include "zephcore/QtStrings.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace zephui
{

bool UI_Divider::IsHorizontal() const
{
    RectF const local = UI_GetLocalRectF(false);
    return local.width >= local.height;
}

void UI_Divider::UI_Draw(Drawbot* drawbot)
{
    RectF const local = UI_GetLocalRectF(false);
    ColorRGBA const color = GetColor(kColor_DividerLine);
    if (IsHorizontal())
        utils::DrawLineRect(drawbot,
                            RectF(0.0f, std::floor(local.height / 2.0f), local.width, 1.0f), color);
    else
        utils::DrawLineRect(drawbot,
                            RectF(std::floor(local.width / 2.0f), 0.0f, 1.0f, local.height), color);
}

void UI_OutlineBox::SetTitle(zephcore::UTF16String const& text)
{
    title = text;
    UI_Invalidate();
}

RectF UI_OutlineBox::GetContentRectF() const
{
    RectF const local = UI_GetLocalRectF(false);
    float const top = title.empty() ? 6.0f : 18.0f;
    return RectF(6.0f, top, std::max(0.0f, local.width - 12.0f),
                 std::max(0.0f, local.height - top - 6.0f));
}

void UI_OutlineBox::UI_Draw(Drawbot* drawbot)
{
    RectF const local = UI_GetLocalRectF(false);
    float const top = title.empty() ? 0.5f : 8.5f;
    QPainter* const painter = drawbot->GetPainter();
    if (painter)
    {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QPen(ToQColor(GetColor(kColor_OutlineBoxStroke)), 1.0));
        painter->drawRoundedRect(QRectF(0.5, top, local.width - 1.0, local.height - top - 0.5), 3.0,
                                 3.0);
        if (!title.empty())
        {
            QFont const font = ControlFont(0.0f, true);
            QFontMetricsF const metrics(font);
            QString const text = zephcore::ToQString(title);
            QRectF const band(8.0, 0.0, metrics.horizontalAdvance(text) + 8.0, metrics.height());
            painter->fillRect(band, ToQColor(GetColor(kColor_PanelBackground)));
            painter->setFont(font);
            painter->setPen(ToQColor(GetColor(kColor_ControlText)));
            painter->drawText(band, Qt::AlignCenter, text);
        }
        painter->restore();
    }
    UI_SubView::UI_Draw(drawbot);
}

} // namespace zephui

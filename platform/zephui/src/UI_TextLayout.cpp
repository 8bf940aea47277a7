#include "zephui/UI_TextLayout.h"

#include "zephui/QtDrawing.h"
#include "zephui/Theme.h"

#include "zephcore/QtStrings.h"

#include <QGuiApplication>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace zephui
{

UI_TextLayout::UI_TextLayout(zephcore::UTF16String const& text, FontInterface const* font,
                             float width)
{
    auto const* qtFont = dynamic_cast<QtFont const*>(font);
    QFont const qfont = qtFont ? qtFont->GetQFont() : QGuiApplication::font();
    QString const all = zephcore::ToQString(text);
    QFontMetricsF const metrics(qfont);
    float widest = 0.0f;
    float height = 0.0f;
    // Each paragraph is laid out on its own, as an explicit line break ends a line.
    for (QString const& paragraph : all.split(QLatin1Char('\n')))
    {
        QTextLayout layout(paragraph, qfont);
        QTextOption option;
        option.setWrapMode(width > 0.0f ? QTextOption::WrapAtWordBoundaryOrAnywhere
                                        : QTextOption::NoWrap);
        layout.setTextOption(option);
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine())
        {
            line.setLineWidth(width > 0.0f ? qreal(width) : 1e9);
            widest = std::max(widest, float(line.naturalTextWidth()));
            height += float(metrics.height());
            ++lineCount;
        }
        layout.endLayout();
    }
    size = PointF(std::ceil(widest), std::ceil(height));
}

} // namespace zephui

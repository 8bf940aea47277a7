#include "ToolTipText.h"

#include <QFontMetricsF>
#include <QStringList>
#include <QToolTip>

namespace zephui {

QStringList WrapToolTipLines(QString const& text, float width)
{
    QFontMetricsF const fm(QToolTip::font());
    QStringList lines;
    for (QString const& paragraph : text.split(QLatin1Char('\n')))
    {
        QString line;
        for (QString word : paragraph.split(QLatin1Char(' ')))
        {
            QString candidate = line.isEmpty() ? word : line + QLatin1Char(' ') + word;
            if (fm.horizontalAdvance(candidate) <= width)
            {
                line = candidate;
                continue;
            }
            if (!line.isEmpty())
            {
                lines << line;
                line.clear();
            }
            // A word wider than the width is broken between letters.
            while (fm.horizontalAdvance(word) > width && word.size() > 1)
            {
                int n = 1;
                while (n < word.size() && fm.horizontalAdvance(word.left(n + 1)) <= width)
                    ++n;
                lines << word.left(n);
                word = word.mid(n);
            }
            line = word;
        }
        lines << line;
    }
    return lines;
}

QString FormatToolTip(QString const& text, float width)
{
    if (text.isEmpty() || width <= 0.0f)
        return text;
    QStringList escaped;
    for (QString const& line : WrapToolTipLines(text, width))
        escaped << line.toHtmlEscaped();
    return QStringLiteral("<p style='white-space:pre'>") + escaped.join(QStringLiteral("<br/>")) + QStringLiteral("</p>");
}

} // namespace zephui

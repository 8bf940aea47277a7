#include "ToolTipText.h"

#include <QFontMetricsF>
#include <QHash>
#include <QStringList>
#include <QToolTip>

namespace zephui
{

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
    // Rows of a long list carry the same few descriptions, and measuring
    // the words is what costs: remember what was wrapped, for one font.
    static QHash<QString, QString> wrapped;
    static QFont wrappedFont;
    QFont const font = QToolTip::font();
    if (font != wrappedFont || wrapped.size() > 4096)
    {
        wrapped.clear();
        wrappedFont = font;
    }
    QString const key = QString::number(double(width)) + QLatin1Char('\n') + text;
    auto const known = wrapped.constFind(key);
    if (known != wrapped.constEnd())
        return *known;
    QStringList escaped;
    for (QString const& line : WrapToolTipLines(text, width))
        escaped << line.toHtmlEscaped();
    QString const result = QStringLiteral("<p style='white-space:pre'>") +
                           escaped.join(QStringLiteral("<br/>")) + QStringLiteral("</p>");
    wrapped.insert(key, result);
    return result;
}

} // namespace zephui

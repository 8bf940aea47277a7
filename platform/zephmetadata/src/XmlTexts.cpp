#include "XmlTexts.h"

namespace zephmetadata
{
namespace detail
{
namespace
{

QString Q(UTF8String const& text)
{
    return QString::fromUtf8(reinterpret_cast<char const*>(text.data()),
                             static_cast<qsizetype>(text.size()));
}

UTF8String U8(QStringView text)
{
    QByteArray const bytes = text.toUtf8();
    return UTF8String(reinterpret_cast<unsigned char const*>(bytes.constData()),
                      static_cast<std::size_t>(bytes.size()));
}

} // namespace

bool XmlCanCarry(UTF8String const& text)
{
    QString const decoded = Q(text);
    if (decoded.toUtf8() !=
        QByteArray(reinterpret_cast<char const*>(text.data()), qsizetype(text.size())))
        return false;
    for (QChar c : decoded)
    {
        ushort const u = c.unicode();
        if ((u < 0x20 && u != 0x09 && u != 0x0A && u != 0x0D) || u == 0xFFFE || u == 0xFFFF)
            return false;
    }
    // Line ends in attributes are normalised by readers.
    return !decoded.contains(QLatin1Char('\r')) && !decoded.contains(QLatin1Char('\n')) &&
           !decoded.contains(QLatin1Char('\t'));
}

void WriteText(QXmlStreamWriter& writer, char const* name, UTF8String const& text)
{
    if (XmlCanCarry(text))
    {
        writer.writeAttribute(QLatin1String(name), Q(text));
        return;
    }
    QByteArray const bytes(reinterpret_cast<char const*>(text.data()), qsizetype(text.size()));
    writer.writeAttribute(QLatin1String(name) + QLatin1String("Hex"),
                          QString::fromLatin1(bytes.toHex()));
}

bool ReadText(QXmlStreamAttributes const& attributes, char const* name, UTF8String& text)
{
    QString const hexName = QLatin1String(name) + QLatin1String("Hex");
    if (attributes.hasAttribute(hexName))
    {
        QByteArray const hex = attributes.value(hexName).toLatin1();
        QByteArray const bytes = QByteArray::fromHex(hex);
        if (bytes.toHex() != hex.toLower())
            return false;
        text.assign(reinterpret_cast<unsigned char const*>(bytes.constData()),
                    std::size_t(bytes.size()));
        return true;
    }
    if (!attributes.hasAttribute(QLatin1String(name)))
    {
        text.clear();
        return false;
    }
    text = U8(attributes.value(QLatin1String(name)));
    return true;
}

} // namespace detail
} // namespace zephmetadata

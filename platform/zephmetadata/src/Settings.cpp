#include "zephmetadata/Settings.h"

#include <zephcore/Files.h>

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace zephmetadata
{
namespace
{

constexpr char const* kRoot = "xmpViewSettings";
constexpr char const* kEntry = "path";

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

// XML cannot carry every string a path may hold (control characters, bytes
// that are not UTF-8): such a text goes as the hex of its bytes, in an
// attribute of its own, so that reading gives back exactly what was written.
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

// The text of the attribute or of its hex form; false when neither is there
// or the hex is damaged.
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

} // namespace

void IncludedLeafPathsAsXMLString(std::set<Path> const& paths, UTF8String& xml)
{
    QByteArray bytes;
    QXmlStreamWriter writer(&bytes);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeStartElement(kRoot);
    writer.writeAttribute("version", "1");
    for (Path const& path : paths)
    {
        writer.writeEmptyElement(kEntry);
        WriteText(writer, "namespace", path.schemaNamespace);
        WriteText(writer, "property", path.propertyName);
        if (path.readOnly)
            writer.writeAttribute("readOnly", "true");
        if (!path.pathExtra1.empty())
            WriteText(writer, "extra1", path.pathExtra1);
        if (!path.pathExtra2.empty())
            WriteText(writer, "extra2", path.pathExtra2);
    }
    writer.writeEndElement();
    writer.writeEndDocument();
    xml.assign(reinterpret_cast<unsigned char const*>(bytes.constData()),
               static_cast<std::size_t>(bytes.size()));
}

bool ReadIncludedLeafPathsFromXMLString(std::set<Path>& paths, std::string const& xml)
{
    QXmlStreamReader reader(
        QByteArray::fromRawData(xml.data(), static_cast<qsizetype>(xml.size())));
    if (!reader.readNextStartElement() || reader.name() != QLatin1String(kRoot))
        return false;
    std::set<Path> read;
    while (reader.readNextStartElement())
    {
        if (reader.name() != QLatin1String(kEntry))
            return false;
        QXmlStreamAttributes const attributes = reader.attributes();
        Path path;
        if (!ReadText(attributes, "namespace", path.schemaNamespace) ||
            !ReadText(attributes, "property", path.propertyName))
            return false;
        if (path.schemaNamespace.empty() || path.propertyName.empty())
            return false;
        path.readOnly = attributes.value("readOnly") == QLatin1String("true");
        if (!ReadText(attributes, "extra1", path.pathExtra1) &&
            attributes.hasAttribute("extra1Hex"))
            return false;
        if (!ReadText(attributes, "extra2", path.pathExtra2) &&
            attributes.hasAttribute("extra2Hex"))
            return false;
        read.insert(std::move(path));
        reader.skipCurrentElement();
    }
    // Anything after the root, or broken XML anywhere, refuses the file.
    while (!reader.atEnd())
        reader.readNext();
    if (reader.hasError())
        return false;
    paths = std::move(read);
    return true;
}

bool ReadIncludedLeafPathsAsXMLFile(std::set<Path>& paths, UTF16String const& filePath)
{
    std::string xml;
    if (filePath.empty() || !zephcore::FileUtils::ReadFileToString(filePath, xml))
        return false;
    return ReadIncludedLeafPathsFromXMLString(paths, xml);
}

} // namespace zephmetadata

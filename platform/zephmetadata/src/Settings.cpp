#include "zephmetadata/Settings.h"

#include "XmlTexts.h"

#include <zephcore/Files.h>

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace zephmetadata
{
namespace
{

constexpr char const* kRoot = "xmpViewSettings";
constexpr char const* kEntry = "path";

using detail::ReadText;
using detail::WriteText;

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

#include "zephmetadata/Settings.h"

#include <zephcore/Files.h>

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace zephmetadata {
namespace {

constexpr char const* kRoot = "xmpViewSettings";
constexpr char const* kEntry = "path";

QString Q(UTF8String const& text) {
    return QString::fromUtf8(reinterpret_cast<char const*>(text.data()),
                             static_cast<qsizetype>(text.size()));
}

UTF8String U8(QStringView text) {
    QByteArray const bytes = text.toUtf8();
    return UTF8String(reinterpret_cast<unsigned char const*>(bytes.constData()),
                      static_cast<std::size_t>(bytes.size()));
}

} // namespace

void IncludedLeafPathsAsXMLString(std::set<Path> const& paths, UTF8String& xml) {
    QByteArray bytes;
    QXmlStreamWriter writer(&bytes);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeStartElement(kRoot);
    writer.writeAttribute("version", "1");
    for (Path const& path : paths) {
        writer.writeEmptyElement(kEntry);
        writer.writeAttribute("namespace", Q(path.schemaNamespace));
        writer.writeAttribute("property", Q(path.propertyName));
        if (path.readOnly)
            writer.writeAttribute("readOnly", "true");
        if (!path.pathExtra1.empty())
            writer.writeAttribute("extra1", Q(path.pathExtra1));
        if (!path.pathExtra2.empty())
            writer.writeAttribute("extra2", Q(path.pathExtra2));
    }
    writer.writeEndElement();
    writer.writeEndDocument();
    xml.assign(reinterpret_cast<unsigned char const*>(bytes.constData()),
               static_cast<std::size_t>(bytes.size()));
}

bool ReadIncludedLeafPathsFromXMLString(std::set<Path>& paths, std::string const& xml) {
    QXmlStreamReader reader(QByteArray::fromRawData(xml.data(), static_cast<qsizetype>(xml.size())));
    if (!reader.readNextStartElement() || reader.name() != QLatin1String(kRoot))
        return false;
    std::set<Path> read;
    while (reader.readNextStartElement()) {
        if (reader.name() != QLatin1String(kEntry))
            return false;
        QXmlStreamAttributes const attributes = reader.attributes();
        if (!attributes.hasAttribute("namespace") || !attributes.hasAttribute("property"))
            return false;
        Path path(U8(attributes.value("namespace")), U8(attributes.value("property")));
        if (path.schemaNamespace.empty() || path.propertyName.empty())
            return false;
        path.readOnly = attributes.value("readOnly") == QLatin1String("true");
        path.pathExtra1 = U8(attributes.value("extra1"));
        path.pathExtra2 = U8(attributes.value("extra2"));
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

bool ReadIncludedLeafPathsAsXMLFile(std::set<Path>& paths, UTF16String const& filePath) {
    std::string xml;
    if (filePath.empty() || !zephcore::FileUtils::ReadFileToString(filePath, xml))
        return false;
    return ReadIncludedLeafPathsFromXMLString(paths, xml);
}

} // namespace zephmetadata

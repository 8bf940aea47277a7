#include "PacketCheck.h"

#include <QXmlStreamReader>

#include <exempi/xmp.h>
#include <exempi/xmperrors.h>

namespace zephmetadata
{
namespace packetcheck
{
namespace
{

constexpr char kRdf[] = "http://www.w3.org/1999/02/22-rdf-syntax-ns#";
constexpr char kMeta[] = "adobe:ns:meta/";

std::string ParserReason(int code)
{
    switch (code)
    {
    case XMPErr_BadXML:
        return "it is not well-formed XML";
    case XMPErr_BadRDF:
        return "its RDF is not valid";
    case XMPErr_BadXMP:
        return "it is not valid XMP";
    case XMPErr_BadUnicode:
        return "its text is not valid Unicode";
    default:
        return "the XMP parser refused it (error " + std::to_string(code) + ")";
    }
}

// What an XML reader finds wrong with a packet that exempi parsed into
// nothing; empty when the packet really says nothing.
std::string WhyEmpty(char const* data, std::size_t size)
{
    QXmlStreamReader reader(QByteArray::fromRawData(data, qsizetype(size)));
    int rdfElements = 0, openRdf = 0;
    bool stray = false, properties = false;
    while (!reader.atEnd())
    {
        switch (reader.readNext())
        {
        case QXmlStreamReader::StartElement:
        {
            bool const isRdf = reader.namespaceUri() == QLatin1String(kRdf);
            if (isRdf && reader.name() == QLatin1String("RDF"))
            {
                ++rdfElements;
                ++openRdf;
            }
            else if (openRdf == 0)
            {
                stray = stray || reader.namespaceUri() != QLatin1String(kMeta);
            }
            else if (!isRdf || reader.name() != QLatin1String("Description"))
            {
                properties = true;
            }
            else
            {
                for (QXmlStreamAttribute const& attribute : reader.attributes())
                    properties = properties || (attribute.namespaceUri() != QLatin1String(kRdf) &&
                                                attribute.name() != QLatin1String("about"));
            }
            break;
        }
        case QXmlStreamReader::EndElement:
            if (reader.namespaceUri() == QLatin1String(kRdf) &&
                reader.name() == QLatin1String("RDF"))
                --openRdf;
            break;
        case QXmlStreamReader::Characters:
            if (!reader.isWhitespace())
                (openRdf == 0 ? stray : properties) = true;
            break;
        default:
            break;
        }
    }
    if (reader.hasError())
        return "it is not well-formed XML: " + reader.errorString().toStdString() + " (line " +
               std::to_string(reader.lineNumber()) + ")";
    if (rdfElements > 1)
        return "it holds more than one rdf:RDF element";
    if (stray)
        return "it holds content outside its RDF, or no RDF the XMP parser knows";
    if (properties)
        return "the XMP parser could read none of its properties";
    return std::string();
}

} // namespace

xmp::MetaPtr ParseChecked(char const* data, std::size_t size, std::string& damage)
{
    xmp::MetaPtr meta = xmp::NewMeta();
    if (!meta || size == 0)
        return meta;
    if (!data || !xmp_parse(meta.get(), data, size))
    {
        int const code = xmp_get_error();
        std::string const detail = WhyEmpty(data, size);
        // The XML reader says where the XML breaks; exempi only that it does.
        bool const xmlDetail =
            code == XMPErr_BadXML && detail.rfind("it is not well-formed", 0) == 0;
        damage = xmlDetail ? detail : ParserReason(code);
        return xmp::MetaPtr();
    }
    if (xmp::TopLevelProperties(meta.get()).empty())
    {
        damage = WhyEmpty(data, size);
        if (!damage.empty())
            return xmp::MetaPtr();
    }
    return meta;
}

} // namespace packetcheck
} // namespace zephmetadata

#pragma once
// Packets the benchmarks make on the fly.

#include <cstddef>
#include <string>

namespace zephbench
{

// A whole packet around rdf:Description content with these namespace declarations.
inline std::string Wrap(std::string const& namespaces, std::string const& body)
{
    return "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>"
           "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
           "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"><rdf:Description "
           "rdf:about=\"\"" +
           namespaces + ">" + body +
           "</rdf:Description></rdf:RDF></x:xmpmeta><?xpacket end=\"w\"?>";
}

// A speech transcript: one track whose markers are timed words.
inline std::string MarkersPacket(int count)
{
    std::string body =
        "<xmpDM:Tracks><rdf:Bag><rdf:li rdf:parseType=\"Resource\">"
        "<xmpDM:trackName>Speech</xmpDM:trackName><xmpDM:trackType>Speech</xmpDM:trackType>"
        "<xmpDM:frameRate>f254016000000</xmpDM:frameRate><xmpDM:markers><rdf:Seq>";
    body.reserve(static_cast<std::size_t>(count) * 260);
    for (int i = 0; i < count; ++i)
    {
        body += "<rdf:li rdf:parseType=\"Resource\"><xmpDM:startTime>" +
                std::to_string(i * 90000000LL) +
                "</xmpDM:startTime><xmpDM:duration>80000000</xmpDM:duration><xmpDM:name>word" +
                std::to_string(i) + "</xmpDM:name><xmpDM:speaker>Speaker " + std::to_string(i % 3) +
                "</xmpDM:speaker><xmpDM:probability>0.9</xmpDM:probability></rdf:li>";
    }
    body += "</rdf:Seq></xmpDM:markers></rdf:li></rdf:Bag></xmpDM:Tracks>";
    return Wrap(" xmlns:xmpDM=\"http://ns.adobe.com/xmp/1.0/DynamicMedia/\"", body);
}

} // namespace zephbench

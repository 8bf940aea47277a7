#include "ModelTestSupport.h"

#include "zephmetadata/Model.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace modeltest
{
namespace
{

// Starts the model once for the whole test program.
class ModelEnvironment : public ::testing::Environment
{
public:
    void SetUp() override { zephmetadata::Initialize(); }
    void TearDown() override { zephmetadata::Terminate(); }
};

::testing::Environment* const environment =
    ::testing::AddGlobalTestEnvironment(new ModelEnvironment);

} // namespace

std::string Packet(std::string const& description)
{
    return "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>"
           "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">"
           "<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
           "<rdf:Description rdf:about=\"\""
           " xmlns:dc=\"http://purl.org/dc/elements/1.1/\""
           " xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\""
           " xmlns:xmpMM=\"http://ns.adobe.com/xap/1.0/mm/\""
           " xmlns:stRef=\"http://ns.adobe.com/xap/1.0/sType/ResourceRef#\""
           " xmlns:stEvt=\"http://ns.adobe.com/xap/1.0/sType/ResourceEvent#\""
           " xmlns:xmpDM=\"http://ns.adobe.com/xmp/1.0/DynamicMedia/\""
           " xmlns:exif=\"http://ns.adobe.com/exif/1.0/\""
           " xmlns:photoshop=\"http://ns.adobe.com/photoshop/1.0/\">" +
           description + "</rdf:Description></rdf:RDF></x:xmpmeta><?xpacket end=\"w\"?>";
}

zephmetadata::xmp::MetaPtr Parse(std::string const& packet)
{
    zephmetadata::xmp::MetaPtr meta = zephmetadata::xmp::ParseMeta(packet.data(), packet.size());
    EXPECT_TRUE(meta) << "packet did not parse";
    return meta;
}

std::string EveryKindPacket()
{
    return Packet(
        "<xmp:Rating>3</xmp:Rating>"
        "<xmp:CreateDate>2024-05-01T10:30:00+02:00</xmp:CreateDate>"
        "<exif:FNumber>28/10</exif:FNumber>"
        "<xmpDM:good>True</xmpDM:good>"
        "<photoshop:Headline>Storm; over the bay</photoshop:Headline>"
        "<dc:title><rdf:Alt><rdf:li xml:lang=\"x-default\">Harbour</rdf:li>"
        "<rdf:li xml:lang=\"de\">Hafen</rdf:li><rdf:li xml:lang=\"fr\">Port</rdf:li>"
        "</rdf:Alt></dc:title>"
        "<dc:subject><rdf:Bag><rdf:li>sea</rdf:li><rdf:li>a;b</rdf:li>"
        "<rdf:li>back\\slash</rdf:li></rdf:Bag></dc:subject>"
        "<dc:creator><rdf:Seq><rdf:li>Ann</rdf:li><rdf:li>Bo</rdf:li></rdf:Seq></dc:creator>"
        "<xmpMM:DerivedFrom rdf:parseType=\"Resource\"><stRef:documentID>doc-1</stRef:documentID>"
        "<stRef:instanceID>inst-1</stRef:instanceID></xmpMM:DerivedFrom>"
        "<xmpMM:History><rdf:Seq>"
        "<rdf:li rdf:parseType=\"Resource\"><stEvt:action>created</stEvt:action></rdf:li>"
        "<rdf:li rdf:parseType=\"Resource\"><stEvt:action>saved</stEvt:action></rdf:li>"
        "<rdf:li rdf:parseType=\"Resource\"><stEvt:action>converted</stEvt:action></rdf:li>"
        "</rdf:Seq></xmpMM:History>");
}

std::string Serialized(__XMPMeta__* meta)
{
    std::string text;
    zephmetadata::xmp::SerializeToBuffer(meta, text, zephmetadata::xmp::kSerializeNoWrapper);
    return text;
}

std::string ReadFile(std::string const& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

bool WriteFile(std::string const& path, std::string const& bytes)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return static_cast<bool>(out);
}

std::string DataFile(char const* name)
{
    return std::string(ZEPH_SOURCE_DIR) + "/tests/data/metadata/" + name;
}

} // namespace modeltest

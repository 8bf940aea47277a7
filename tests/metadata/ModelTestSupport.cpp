#include "ModelTestSupport.h"

#include "zephmetadata/Access.h"
#include "zephmetadata/ErrorLog.h"
#include "zephmetadata/FileProvider.h"
#include "zephmetadata/Model.h"
#include "zephmetadata/PathDefinitions.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include <unistd.h>

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
           R"(<x:xmpmeta xmlns:x="adobe:ns:meta/">
<rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#"><rdf:Description rdf:about=""
 xmlns:dc="http://purl.org/dc/elements/1.1/" xmlns:xmp="http://ns.adobe.com/xap/1.0/"
 xmlns:xmpMM="http://ns.adobe.com/xap/1.0/mm/" xmlns:stRef="http://ns.adobe.com/xap/1.0/sType/ResourceRef#"
 xmlns:stEvt="http://ns.adobe.com/xap/1.0/sType/ResourceEvent#" xmlns:exif="http://ns.adobe.com/exif/1.0/"
 xmlns:xmpDM="http://ns.adobe.com/xmp/1.0/DynamicMedia/" xmlns:photoshop="http://ns.adobe.com/photoshop/1.0/">)" +
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
        R"(<xmp:Rating>3</xmp:Rating><xmp:CreateDate>2024-05-01T10:30:00+02:00</xmp:CreateDate>
<exif:FNumber>28/10</exif:FNumber><xmpDM:good>True</xmpDM:good>
<photoshop:Headline>Storm; over the bay</photoshop:Headline>
<dc:title><rdf:Alt><rdf:li xml:lang="x-default">Harbour</rdf:li><rdf:li xml:lang="de">Hafen</rdf:li>
<rdf:li xml:lang="fr">Port</rdf:li></rdf:Alt></dc:title>
<dc:subject><rdf:Bag><rdf:li>sea</rdf:li><rdf:li>a;b</rdf:li><rdf:li>back\slash</rdf:li></rdf:Bag></dc:subject>
<dc:creator><rdf:Seq><rdf:li>Ann</rdf:li><rdf:li>Bo</rdf:li></rdf:Seq></dc:creator>
<xmpMM:DerivedFrom rdf:parseType="Resource"><stRef:documentID>doc-1</stRef:documentID>
<stRef:instanceID>inst-1</stRef:instanceID></xmpMM:DerivedFrom>
<xmpMM:History><rdf:Seq><rdf:li rdf:parseType="Resource"><stEvt:action>created</stEvt:action></rdf:li>
<rdf:li rdf:parseType="Resource"><stEvt:action>saved</stEvt:action></rdf:li>
<rdf:li rdf:parseType="Resource"><stEvt:action>converted</stEvt:action></rdf:li></rdf:Seq></xmpMM:History>)");
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
    return std::string(std::istreambuf_iterator<char>(in), {});
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

std::string Text(__XMPMeta__* meta, zephmetadata::Path const& path,
                 zephmetadata::GetValueResult* result)
{
    zephmetadata::UTF8String value;
    zephmetadata::GetValue(meta, path, value, result);
    return S(value);
}

std::string LabelPacket(std::string const& label)
{
    return Packet("<xmp:Label>" + label + "</xmp:Label>");
}

std::uint32_t OptionsOf(__XMPMeta__* meta, char const* ns, std::string const& path)
{
    std::uint32_t options = 0;
    zephmetadata::xmp::NodeOptionsOf(meta, ns, path.c_str(), options);
    return options;
}

std::uint32_t FormOf(__XMPMeta__* meta, char const* ns, std::string const& path)
{
    return OptionsOf(meta, ns, path) & zephmetadata::xmp::kOptionArrayFormMask;
}

std::string Read(ProviderPtr const& provider, zephmetadata::Path const& path,
                 zephmetadata::GetValueResult* result)
{
    return Text(*zephmetadata::MetaDataReadAccess(provider), path, result);
}

bool Write(ProviderPtr const& provider, zephmetadata::Path const& path, std::string const& text)
{
    zephmetadata::MetaDataUpdateAccess access(provider);
    bool const changed = zephmetadata::SetValue(*access, path, U8(text));
    if (changed)
        access.AddChange(path);
    return changed;
}

std::string Label(ProviderPtr const& provider)
{
    return Read(provider, P(kXMP, "Label"));
}

void SetLabel(ProviderPtr const& provider, std::string const& label)
{
    Write(provider, P(kXMP, "Label"), label);
}

std::string LabelOf(std::string const& path)
{
    return Label(Open(path));
}

boost::shared_ptr<zephmetadata::FileProvider> Open(std::string const& path, char const* label)
{
    auto provider = boost::make_shared<zephmetadata::FileProvider>(U16(path));
    if (label)
        SetLabel(provider, label);
    return provider;
}

std::string JpegWithPacket(std::string const& packet)
{
    std::string const jpeg = ReadFile(DataFile("tiny.jpg"));
    std::string const payload = std::string("http://ns.adobe.com/xap/1.0/", 29) + packet;
    std::size_t const length = payload.size() + 2;
    return jpeg.substr(0, 2) + "\xFF\xE1" + char(length >> 8) + char(length & 0xFF) + payload +
           jpeg.substr(2);
}

std::string const
    kWebP("RIFF\x1a\0\0\0WEBPVP8L\x0d\0\0\0\x2f\0\0\0\x10\x07\x10\x11\x11\x88\x88\xfe\x07\0", 34);

TempFolder::TempFolder()
{
    static int counter = 0;
    path = std::filesystem::temp_directory_path() /
           ("zeph-model-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
    std::filesystem::remove_all(path);
    std::filesystem::create_directories(path);
}

TempFolder::~TempFolder()
{
    std::error_code error;
    // A test that stopped half-way may have left the folder read-only.
    std::filesystem::permissions(path, std::filesystem::perms::owner_all,
                                 std::filesystem::perm_options::add, error);
    std::filesystem::remove_all(path, error);
}

std::vector<std::string> TempFolder::Names() const
{
    std::vector<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator(path))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string ErrorLogText()
{
    std::string text;
    for (zephmetadata::ErrorInfo const& info : zephmetadata::GetErrorInfos())
        text += S(info.source) + ": " + S(info.message) + "\n";
    return text;
}

void DefinitionTest::SetUp()
{
    std::filesystem::create_directories(folder / "config");
    ::setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), 1);
    zephmetadata::UnloadDefinitions();
    zephmetadata::ClearErrors();
}

void DefinitionTest::TearDown()
{
    // Later tests in this process find the built-in definitions loaded, as
    // the test environment left them.
    zephmetadata::UnloadDefinitions();
    zephmetadata::LoadDefinitions();
    zephmetadata::ClearErrors();
}

std::filesystem::path DefinitionTest::WriteFile(std::string const& name, std::string const& text)
{
    std::filesystem::path const path = folder / name;
    std::filesystem::create_directories(path.parent_path());
    modeltest::WriteFile(path.string(), text);
    return path;
}

void LoadedDefinitionTest::SetUp()
{
    DefinitionTest::SetUp();
    zephmetadata::LoadDefinitions();
    ASSERT_FALSE(zephmetadata::HasErrors()) << ErrorLogText();
}

} // namespace modeltest

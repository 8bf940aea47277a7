// Packets nested deeper than the model's bound are refused wherever the
// model reads them, with an error-log entry; packets within it read whole.

#include "zephmetadata/Access.h"
#include "zephmetadata/ErrorLog.h"
#include "zephmetadata/FileProvider.h"
#include "zephmetadata/Values.h"

#include "ModelTestSupport.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <QTemporaryDir>

#include <functional>

using namespace zephmetadata;
using namespace modeltest;
using xmp::kMaxPacketNesting;

namespace
{

constexpr char const* kPrivate = "http://example.com/nesting/";

// A packet and the path of its deepest value ("bottom").
struct Nested
{
    std::string packet;
    std::string leaf;
};

// x:xmpmeta, rdf:RDF, rdf:Description, n:top, `levels` n:s, n:leaf.
Nested Structures(int depth)
{
    int const levels = depth - 5;
    std::string open, close, leaf = "top";
    for (int i = 0; i < levels; ++i)
    {
        open += "<n:s rdf:parseType=\"Resource\">";
        close += "</n:s>";
        leaf += "/n:s";
    }
    return {Packet("<n:top xmlns:n=\"" + std::string(kPrivate) + "\" rdf:parseType=\"Resource\">" +
                   open + "<n:leaf>bottom</n:leaf>" + close + "</n:top>"),
            leaf + "/n:leaf"};
}

// x:xmpmeta, rdf:RDF, rdf:Description, n:list, then rdf:Bag and rdf:li a level.
Nested Arrays(int depth)
{
    int const levels = (depth - 4) / 2;
    std::string open, close, leaf = "list";
    for (int i = 0; i < levels; ++i)
    {
        open += "<rdf:Bag><rdf:li>";
        close += "</rdf:li></rdf:Bag>";
        leaf += "[1]";
    }
    return {Packet("<n:list xmlns:n=\"" + std::string(kPrivate) + "\">" + open + "bottom" + close +
                   "</n:list>"),
            leaf};
}

using ProviderPtr = boost::shared_ptr<MetaDataProvider>;

struct Source
{
    char const* name;
    std::function<ProviderPtr(std::string const& packet, QTemporaryDir const& dir)> read;
};

ProviderPtr ThroughFile(std::string const& path, std::string const& bytes)
{
    EXPECT_TRUE(WriteFile(path, bytes));
    return boost::make_shared<FileProvider>(zephcore::UTF8to16(zephcore::ToUTF8(path)));
}

Source const kSources[] = {
    {"PacketText",
     [](std::string const& packet, QTemporaryDir const&) -> ProviderPtr
     { return BufferProviderImpl::Create(packet); }},
    {"SidecarOrTemplate", [](std::string const& packet, QTemporaryDir const& dir)
     { return ThroughFile(dir.filePath("template.xmp").toStdString(), packet); }},
    {"Jpeg", [](std::string const& packet, QTemporaryDir const& dir)
     { return ThroughFile(dir.filePath("photo.jpg").toStdString(), JpegWithPacket(packet)); }},
};

void PrintTo(Source const& source, std::ostream* out)
{
    *out << source.name;
}

class PacketNestingTest : public ::testing::TestWithParam<Source>
{
};

TEST_P(PacketNestingTest, PacketAtTheBoundReadsDownToItsDeepestValue)
{
    for (Nested const& nested : {Structures(kMaxPacketNesting), Arrays(kMaxPacketNesting)})
    {
        ClearErrors();
        QTemporaryDir dir;
        ProviderPtr const provider = GetParam().read(nested.packet, dir);
        MetaDataReadAccess access(provider);
        ASSERT_NE(*access, nullptr) << nested.leaf;
        UTF8String value;
        EXPECT_TRUE(GetValue(*access, P(kPrivate, nested.leaf), value, nullptr)) << nested.leaf;
        EXPECT_EQ(S(value), "bottom");
        EXPECT_FALSE(HasErrors());
    }
}

TEST_P(PacketNestingTest, DeeperPacketIsRefusedWithAnErrorEntry)
{
    for (Nested const& nested :
         {Structures(kMaxPacketNesting + 1), Arrays(kMaxPacketNesting + 2), Structures(20000)})
    {
        ClearErrors();
        QTemporaryDir dir;
        ProviderPtr const provider = GetParam().read(nested.packet, dir);
        EXPECT_EQ(*MetaDataReadAccess(provider), nullptr) << nested.leaf.size();
        std::vector<ErrorInfo> const errors = GetErrorInfos();
        ASSERT_EQ(errors.size(), 1u);
        EXPECT_EQ(errors[0].code, kErrorMetadataRead);
        EXPECT_NE(zephcore::ToStdString(errors[0].message).find("nests deeper"), std::string::npos);
    }
    ClearErrors();
}

INSTANTIATE_TEST_SUITE_P(Readers, PacketNestingTest, ::testing::ValuesIn(kSources),
                         [](auto const& info) { return std::string(info.param.name); });

// The packet's code units widened: UTF-16 or UTF-32, either byte order.
std::string Widened(std::string const& text, int width, bool bigEndian)
{
    std::string wide;
    for (char c : text)
    {
        std::string unit(width, '\0');
        unit[bigEndian ? width - 1 : 0] = c;
        wide += unit;
    }
    return wide;
}

TEST(PacketNestingScanTest, CountsElementsInEveryEncodingAndOnlyElements)
{
    std::string const deep = Structures(kMaxPacketNesting + 1).packet;
    std::string const bound = Structures(kMaxPacketNesting).packet;
    struct Encoding
    {
        int width;
        bool bigEndian;
    };
    for (Encoding const encoding : {Encoding{1, false}, Encoding{2, false}, Encoding{2, true},
                                    Encoding{4, false}, Encoding{4, true}})
    {
        std::string const tooDeep = Widened(deep, encoding.width, encoding.bigEndian);
        std::string const within = Widened(bound, encoding.width, encoding.bigEndian);
        EXPECT_TRUE(xmp::NestsTooDeep(tooDeep.data(), tooDeep.size())) << encoding.width;
        EXPECT_FALSE(xmp::NestsTooDeep(within.data(), within.size())) << encoding.width;
    }
    // Markup that opens no element: comments, character data, instructions,
    // '>' in attribute values, empty elements.
    std::string many;
    for (int i = 0; i < 3 * kMaxPacketNesting; ++i)
        many += "<!-- <a> --><?pi <b> ?><n:e n:a=\"x>y\"/><n:f><![CDATA[<c>]]></n:f>";
    std::string const flat = Packet("<n:p xmlns:n=\"" + std::string(kPrivate) +
                                    "\" rdf:parseType=\"Resource\">" + many + "</n:p>");
    EXPECT_FALSE(xmp::NestsTooDeep(flat.data(), flat.size()));
}

} // namespace

// Packets nested deeper than the model's bound are refused wherever the
// model reads them, with an error-log entry; packets within it read whole.

#include "zephmetadata/Access.h"
#include "zephmetadata/ErrorLog.h"
#include "zephmetadata/FileProvider.h"
#include "zephmetadata/Values.h"

#include "ModelTestSupport.h"

#include <gtest/gtest.h>

#include <functional>

using namespace zephmetadata;
using namespace modeltest;
using xmp::kMaxPacketNesting;

namespace
{

constexpr char const* kPrivate = "http://example.com/nesting/";

// A packet `depth` elements deep, and the path of its deepest value
// ("bottom"): x:xmpmeta, rdf:RDF, rdf:Description, n:top, then n:s levels
// and n:leaf; or for arrays, rdf:Bag and rdf:li a level below n:top.
std::pair<std::string, std::string> Nested(int depth, bool arrays = false)
{
    std::string open, close, leaf = "top";
    for (int i = 0; i < (arrays ? (depth - 4) / 2 : depth - 5); ++i)
    {
        open += arrays ? "<rdf:Bag><rdf:li>" : "<n:s rdf:parseType=\"Resource\">";
        close += arrays ? "</rdf:li></rdf:Bag>" : "</n:s>";
        leaf += arrays ? "[1]" : "/n:s";
    }
    std::string const bottom = arrays ? "bottom" : "<n:leaf>bottom</n:leaf>";
    return {Packet("<n:top xmlns:n=\"" + std::string(kPrivate) + "\"" +
                   (arrays ? "" : " rdf:parseType=\"Resource\"") + ">" + open + bottom + close +
                   "</n:top>"),
            arrays ? leaf : leaf + "/n:leaf"};
}

struct Source
{
    char const* name;
    std::function<ProviderPtr(std::string const& packet, TempFolder const& dir)> read;
};

Source const kSources[] = {
    {"PacketText",
     [](std::string const& packet, TempFolder const&) -> ProviderPtr
     { return BufferProviderImpl::Create(packet); }},
    {"SidecarOrTemplate",
     [](std::string const& packet, TempFolder const& dir) -> ProviderPtr {
         return WriteFile(dir.File("template.xmp"), packet) ? Open(dir.File("template.xmp"))
                                                            : nullptr;
     }},
    {"Jpeg",
     [](std::string const& packet, TempFolder const& dir) -> ProviderPtr
     {
         return WriteFile(dir.File("photo.jpg"), JpegWithPacket(packet))
                    ? Open(dir.File("photo.jpg"))
                    : nullptr;
     }},
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
    for (bool const arrays : {false, true})
    {
        ClearErrors();
        TempFolder dir;
        auto const [packet, leaf] = Nested(kMaxPacketNesting, arrays);
        EXPECT_EQ(Read(GetParam().read(packet, dir), P(kPrivate, leaf)), "bottom") << leaf;
        EXPECT_FALSE(HasErrors());
    }
}

TEST_P(PacketNestingTest, DeeperPacketIsRefusedWithAnErrorEntry)
{
    for (auto const& [packet, leaf] :
         {Nested(kMaxPacketNesting + 1), Nested(kMaxPacketNesting + 2, true), Nested(20000)})
    {
        ClearErrors();
        TempFolder dir;
        EXPECT_EQ(*MetaDataReadAccess(GetParam().read(packet, dir)), nullptr) << leaf.size();
        std::vector<ErrorInfo> const errors = GetErrorInfos();
        ASSERT_EQ(errors.size(), 1u);
        EXPECT_EQ(errors[0].code, kErrorMetadataRead);
        EXPECT_NE(zephcore::ToStdString(errors[0].message).find("nests deeper"), std::string::npos);
    }
    ClearErrors();
}

INSTANTIATE_TEST_SUITE_P(Readers, PacketNestingTest, ::testing::ValuesIn(kSources),
                         [](auto const& info) { return std::string(info.param.name); });

TEST(PacketNestingScanTest, CountsElementsInEveryEncodingAndOnlyElements)
{
    // The packet's code units widened: UTF-16 or UTF-32, either byte order.
    auto const widened = [](std::string const& text, int width, bool bigEndian)
    {
        std::string wide;
        for (char c : text)
        {
            std::string unit(width, '\0');
            unit[bigEndian ? width - 1 : 0] = c;
            wide += unit;
        }
        return wide;
    };
    for (auto const& [width, bigEndian] :
         {std::pair(1, false), std::pair(2, false), std::pair(2, true), std::pair(4, false),
          std::pair(4, true)})
    {
        std::string const deep = widened(Nested(kMaxPacketNesting + 1).first, width, bigEndian);
        std::string const bound = widened(Nested(kMaxPacketNesting).first, width, bigEndian);
        EXPECT_TRUE(xmp::NestsTooDeep(deep.data(), deep.size())) << width;
        EXPECT_FALSE(xmp::NestsTooDeep(bound.data(), bound.size())) << width;
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

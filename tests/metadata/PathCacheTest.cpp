// What the model keeps about paths stays bounded however many distinct
// names the packets it reads bring, and lives as long as its owners.

#include "zephmetadata/PathDefinitions.h"
#include "zephmetadata/Provider.h"

#include "ModelTestSupport.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

using namespace zephmetadata;
using namespace modeltest;

namespace
{

// A namespace of its own with ten properties (one a structure), and a
// property of a published schema with a name of its own.
std::string PacketWithNamesOf(int n)
{
    std::string const ns = "http://example.com/packet" + std::to_string(n) + "/";
    std::string body = "<p" + std::to_string(n) + ":Info xmlns:p" + std::to_string(n) + "=\"" + ns +
                       "\" rdf:parseType=\"Resource\"><p" + std::to_string(n) + ":Field>f</p" +
                       std::to_string(n) + ":Field></p" + std::to_string(n) + ":Info>";
    for (int i = 0; i < 9; ++i)
    {
        std::string const name = "p" + std::to_string(n) + ":Name" + std::to_string(i);
        body += "<" + name + " xmlns:p" + std::to_string(n) + "=\"" + ns + "\">v</" + name + ">";
    }
    body += "<dc:Unknown" + std::to_string(n) + ">u</dc:Unknown" + std::to_string(n) + ">";
    return Packet(body);
}

// What a property tree holds while it shows a provider: its clones of the
// dynamic schemas, with the properties listed from the tree.
struct Shown
{
    boost::shared_ptr<TypicalProviderImpl> provider;
    std::vector<boost::shared_ptr<SchemaDefinition>> schemas;
    std::vector<Path> leaves;
};

// Walks the packet's paths as a property tree does.
Shown Show(std::string const& packet, int n)
{
    Shown shown;
    shown.provider = BufferProviderImpl::Create(packet);
    shown.provider->ListUnknownSchemasAsDynamic();
    for (auto const& shared : shown.provider->DynamicSchemaDefinitions())
    {
        auto clone = boost::make_shared<SchemaDefinition>(*shared);
        shown.provider->GetAllPathsForDynamicSchema(clone->schemaNamespace, clone->properties);
        for (Path const& path : ChildPaths(clone))
        {
            shown.leaves.push_back(path);
            EXPECT_TRUE(PathEntryDefinition(path)) << S(path.propertyName);
            for (Path const& leaf : DescendantLeafPaths(path))
                PathEntryDefinition(leaf);
        }
        shown.schemas.push_back(clone);
    }
    Path const unknown = P(kDC, "Unknown" + std::to_string(n));
    EXPECT_FALSE(PathEntryDefinition(unknown));
    for (Path const& leaf : DescendantLeafPaths(unknown))
        PathEntryDefinition(leaf);
    ChildPaths(unknown);
    return shown;
}

TEST(PathCacheTest, DistinctNamesOfManyPacketsLeaveABoundedNumberOfEntries)
{
    // GIVEN the published schemas' paths walked once
    for (auto const& schema : CommonSchemaDefinitions())
        DescendantLeafPaths(schema);
    for (int n = 0; n < 20; ++n)
        Show(PacketWithNamesOf(n), n);
    std::size_t const settled = CachedPathEntryCount();
    // WHEN 1,000 packets with names of their own are shown and let go
    for (int n = 20; n < 1020; ++n)
        Show(PacketWithNamesOf(n), n);
    // THEN what is kept did not grow with them (10,000 names were met)
    EXPECT_LE(CachedPathEntryCount(), settled + 200);
}

TEST(PathCacheTest, ShownDynamicPathsStayResolvableWhileOthersComeAndGo)
{
    Shown const held = Show(PacketWithNamesOf(5000), 5000);
    ASSERT_EQ(held.leaves.size(), 10u);
    for (int n = 5001; n < 5400; ++n)
        Show(PacketWithNamesOf(n), n);
    for (Path const& path : held.leaves)
        EXPECT_TRUE(PathEntryDefinition(path)) << S(path.propertyName);
}

} // namespace

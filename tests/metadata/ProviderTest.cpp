#include "zephmetadata/Provider.h"

#include "ModelTestSupport.h"
#include "zephmetadata/Access.h"
#include "zephmetadata/Definitions.h"
#include "zephmetadata/ErrorLog.h"
#include "zephmetadata/MultiObjectProvider.h"
#include "zephmetadata/PathDefinitions.h"
#include "zephmetadata/Values.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QThread>

#include <boost/make_shared.hpp>

#include <thread>

using namespace zephmetadata;
using namespace modeltest;

namespace
{

using Listener = boost::function<void(__XMPMeta__*)>;
using Holder = boost::shared_ptr<Listener>;

// A provider that records what reached WriteChanges.
class RecordingProvider : public TypicalProviderImpl
{
public:
    std::vector<std::string> written;

protected:
    void DoWriteChanges(std::vector<Path> const& paths) override
    {
        for (Path const& path : paths)
            written.push_back(S(path.propertyName));
    }
};

} // namespace

TEST(AccessTest, ChangesReachWriteChangesInOrderThenListenersAndNoChangeWakesNobody)
{
    auto provider = boost::make_shared<RecordingProvider>();
    std::vector<std::string> events;
    Holder listener = boost::make_shared<Listener>(
        [&](__XMPMeta__* meta)
        {
            events.push_back("told:" + std::to_string(provider->written.size()));
            EXPECT_NE(meta, nullptr);
        });
    provider->NotifyWhenMetaDataChanged(listener);
    {
        MetaDataUpdateAccess access(provider);
        SetValue(*access, P(kXMP, "Label"), U8("Red"));
        access.AddChange(P(kXMP, "Label"));
        access.AddChange(P(kDC, "title"));
        EXPECT_TRUE(events.empty()); // nothing before the access ends
    }
    EXPECT_EQ(provider->written, (std::vector<std::string>{"Label", "title"}));
    EXPECT_EQ(events, (std::vector<std::string>{"told:2"}));
    MetaDataUpdateAccess{provider}; // an access without a change
    EXPECT_EQ(events.size(), 1u);
}

TEST(ListenerTest, EmptiedOrRemovedDuringNotificationIsSkippedAndAddedHearsTheNextOne)
{
    auto provider = boost::make_shared<TypicalProviderImpl>();
    std::vector<std::string> calls;
    Holder first, second, third, late;
    first = boost::make_shared<Listener>(
        [&](__XMPMeta__*)
        {
            calls.push_back("first");
            *second = Listener();                               // empties a later one in place
            provider->RemoveMetaDataChangedNotification(third); // removes another
            provider->RemoveMetaDataChangedNotification(first); // and itself
            provider->NotifyWhenMetaDataChanged(late);          // adds one
        });
    second = boost::make_shared<Listener>([&](__XMPMeta__*) { calls.push_back("second"); });
    third = boost::make_shared<Listener>([&](__XMPMeta__*) { calls.push_back("third"); });
    late = boost::make_shared<Listener>([&](__XMPMeta__*) { calls.push_back("late"); });
    for (Holder const& holder : {first, second, third})
        provider->NotifyWhenMetaDataChanged(holder);
    Write(provider, P(kXMP, "Label"), "a");
    EXPECT_EQ(calls, (std::vector<std::string>{"first"}));
    Write(provider, P(kXMP, "Label"), "b");
    EXPECT_EQ(calls, (std::vector<std::string>{"first", "late"}));
    *late = Listener();
}

TEST(ListenerTest, ListenerDroppingTheLastProviderPointerIsSafe)
{
    auto provider = boost::make_shared<TypicalProviderImpl>();
    boost::shared_ptr<MetaDataProvider> held = provider;
    Holder listener = boost::make_shared<Listener>([&](__XMPMeta__*) { held.reset(); });
    provider->NotifyWhenMetaDataChanged(listener);
    provider.reset();
    Write(held, P(kXMP, "Label"), "a"); // the access keeps the provider alive
    EXPECT_FALSE(held);
}

TEST(BufferProviderTest, BadPacketGivesNoMetadataAndAnErrorEntry)
{
    ClearErrors();
    auto provider = BufferProviderImpl::Create("<x:xmpmeta><rdf:RDF><unclosed></x:xmpmeta>");
    EXPECT_EQ(*MetaDataReadAccess(provider), nullptr);
    EXPECT_FALSE(provider->QueryPathStatus(P(kDC, "title"), kPathStatusWritable));
    EXPECT_TRUE(HasErrors());
    ClearErrors();
    EXPECT_TRUE(BufferProviderImpl::Create("")->IsValid()); // an empty buffer is an empty tree
    EXPECT_FALSE(HasErrors());
}

TEST(MultiObjectProviderTest, ArrayEditsReachEveryMember)
{
    auto a = BufferProviderImpl::Create(
        Packet("<dc:subject><rdf:Bag><rdf:li>sea</rdf:li></rdf:Bag></dc:subject>"));
    auto b = BufferProviderImpl::Create(
        Packet("<dc:subject><rdf:Bag><rdf:li>sky</rdf:li></rdf:Bag></dc:subject>"));
    auto multi = boost::make_shared<MultiObjectProvider>(std::vector<ProviderPtr>{a, b, nullptr});
    EXPECT_EQ(multi->Members().size(), 2u); // an empty pointer is no member
    {
        MetaDataUpdateAccess access(multi);
        ASSERT_TRUE(AddArrayItem(*access, P(kDC, "subject"), 0));
        EXPECT_TRUE(SetValue(*access, P(kDC, "subject[1]"), U8("wind")));
        access.AddChange(P(kDC, "subject"));
    }
    EXPECT_EQ(Read(a, P(kDC, "subject")) + " & " + Read(b, P(kDC, "subject")),
              "wind; sea & wind; sky");
    EXPECT_EQ(Read(multi, P(kDC, "subject[1]")), "wind");
    EXPECT_TRUE(DeleteValue(*MetaDataUpdateAccess(multi), P(kDC, "subject")));
    EXPECT_FALSE(HasValue(*MetaDataReadAccess(a), P(kDC, "subject")) ||
                 HasValue(*MetaDataReadAccess(b), P(kDC, "subject")));
    EXPECT_TRUE(multi->QueryPathStatus(P(kDC, "subject"), kPathStatusWritable));
    b->SetReadOnly(true);
    EXPECT_FALSE(multi->QueryPathStatus(P(kDC, "subject"), kPathStatusWritable));
}

// What the model keeps about paths stays bounded however many distinct
// names the packets it reads bring, and lives as long as its owners.

namespace
{

// A namespace of its own with ten properties (a structure, a list and eight
// texts), and a property of a published schema with a name of its own.
std::string PacketWithNamesOf(int n)
{
    std::string const p = "p" + std::to_string(n), unknown = "dc:Unknown" + std::to_string(n),
                      ns = " xmlns:" + p + "=\"http://example.com/packet" + std::to_string(n) +
                           "/\"";
    std::string body = "<" + p + ":Info" + ns + " rdf:parseType=\"Resource\"><" + p + ":Field>f</" +
                       p + ":Field></" + p + ":Info><" + p + ":List" + ns +
                       "><rdf:Seq><rdf:li>v</rdf:li></rdf:Seq></" + p + ":List><" + unknown +
                       ">u</" + unknown + ">";
    for (int i = 0; i < 8; ++i)
    {
        std::string const name = p + ":Name" + std::to_string(i);
        body += "<" + name + ns + ">v</" + name + ">";
    }
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
Shown Show(int n)
{
    Shown shown;
    shown.provider = BufferProviderImpl::Create(PacketWithNamesOf(n));
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
        Show(n);
    std::size_t const settled = CachedPathEntryCount();
    // WHEN 1,000 packets with names of their own are shown and let go
    for (int n = 20; n < 1020; ++n)
        Show(n);
    // THEN what is kept did not grow with them (10,000 names were met)
    EXPECT_LE(CachedPathEntryCount(), settled + 200);
}

TEST(PathCacheTest, UnknownNamespacesBecomeDynamicSchemasWhosePathsStayWhileOthersComeAndGo)
{
    EXPECT_TRUE(boost::empty(BufferProviderImpl::Create(PacketWithNamesOf(1))
                                 ->DynamicSchemaDefinitions())); // until asked for
    Shown const held = Show(5000);
    ASSERT_EQ(held.schemas.size(), 1u); // dc has a definition, the packet's namespace none
    EXPECT_EQ(S(held.schemas[0]->schemaPrefix), "p5000");
    // Structures have no kind, lists of simple values are lists of text.
    auto const& properties = held.schemas[0]->properties;
    ASSERT_EQ(held.leaves.size(), 10u);
    EXPECT_TRUE(!properties[0]->primitiveType &&
                *properties[1]->primitiveType == kPrimitiveOrderedArray &&
                *properties[2]->primitiveType == kPrimitiveText);
    for (int n = 5001; n < 5400; ++n)
        Show(n);
    for (Path const& path : held.leaves)
        EXPECT_TRUE(PathEntryDefinition(path)) << S(path.propertyName);
}

} // namespace

// The error log: entries kept whole and in order from any thread, and
// listeners told on the application thread.

using ErrorListener = boost::function<void(UTF16String)>;

TEST(ErrorLogTest, KeepsEveryEntryAddedFromSeveralThreads)
{
    ClearErrors();
    constexpr int kThreads = 4, kEach = 20000;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back(
            [t]
            {
                for (int i = 0; i < kEach; ++i)
                    AddError(kErrorMetadataWrite, U8(std::to_string(t)), U8(std::to_string(i)));
            });
    for (std::thread& thread : threads)
        thread.join();
    std::vector<ErrorInfo> const infos = GetErrorInfos();
    ASSERT_EQ(infos.size(), std::size_t(kThreads * kEach));
    // Each thread's entries whole and in its order.
    std::vector<int> next(kThreads, 0);
    for (ErrorInfo const& info : infos)
        ASSERT_EQ(S(info.message), std::to_string(next[std::stoul(S(info.source))]++));
    ClearErrors();
}

TEST(ErrorLogTest, ListenersHearEntriesOfWorkersOnTheApplicationThreadUntilEmptied)
{
    ClearErrors();
    int argc = 1;
    char name[] = "zephmetadata_tests";
    char* argv[] = {name, nullptr};
    QCoreApplication app(argc, argv);
    std::vector<std::pair<std::string, QThread*>> heard;
    auto listener = boost::make_shared<ErrorListener>(
        [&](UTF16String text) { heard.emplace_back(S(text), QThread::currentThread()); });
    NotifyOnError(listener);
    std::thread worker([] { AddError(kErrorMetadataWrite, U8("c.jpg"), U8("read-only")); });
    worker.join();
    // In the log at once; the listener waits for the application's events.
    EXPECT_EQ(GetErrorInfos().size(), 1u);
    EXPECT_TRUE(heard.empty());
    QCoreApplication::sendPostedEvents();
    AddError(kErrorDefinitionFile, U8("dc.xml"), U8("unknown type \xC3\xA9"));
    *listener = ErrorListener(); // leave by emptying in place
    AddError(kErrorMetadataWrite, U8("e.jpg"), U8("unheard"));
    ASSERT_EQ(heard.size(), 2u);
    EXPECT_EQ(heard[0].first + " " + heard[1].first, "read-only unknown type \xC3\xA9");
    EXPECT_TRUE(heard[0].second == app.thread() && heard[1].second == app.thread());
    EXPECT_EQ(GetErrorInfos().size(), 3u);
    ClearErrors();
    EXPECT_FALSE(HasErrors());
}

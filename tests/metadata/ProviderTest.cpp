#include "zephmetadata/Provider.h"
#include "zephmetadata/Access.h"
#include "zephmetadata/Definitions.h"
#include "zephmetadata/ErrorLog.h"
#include "zephmetadata/MultiObjectProvider.h"
#include "zephmetadata/Switches.h"
#include "zephmetadata/Values.h"

#include "ModelTestSupport.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

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
    using TypicalProviderImpl::TypicalProviderImpl;
    std::vector<std::string> written;

protected:
    void DoWriteChanges(std::vector<Path> const& paths) override
    {
        for (Path const& path : paths)
            written.push_back(S(path.propertyName));
    }
};

boost::shared_ptr<BufferProviderImpl> EveryKind()
{
    return BufferProviderImpl::Create(EveryKindPacket());
}

boost::shared_ptr<MultiObjectProvider> Multi(std::vector<ProviderPtr> const& members)
{
    return boost::make_shared<MultiObjectProvider>(members);
}

} // namespace

TEST(AccessTest, EmptyProviderGivesANullHandle)
{
    boost::shared_ptr<MetaDataProvider> none;
    MetaDataReadAccess read(none);
    EXPECT_EQ(*read, nullptr);
    MetaDataUpdateAccess update(none);
    EXPECT_EQ(*update, nullptr);
    update.AddChange(P(kDC, "title")); // nothing to tell, and no crash at the end
    EXPECT_EQ(CountArrayItems(*read, P(kDC, "subject")), 0);
}

TEST(AccessTest, ChangesReachWriteChangesInOrderThenListeners)
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
}

TEST(AccessTest, AnUnchangedWriteWakesNobody)
{
    auto provider = EveryKind();
    int told = 0;
    Holder listener = boost::make_shared<Listener>([&](__XMPMeta__*) { ++told; });
    provider->NotifyWhenMetaDataChanged(listener);
    EXPECT_FALSE(Write(provider, P(kXMP, "Rating"), "3"));
    EXPECT_EQ(told, 0);
    EXPECT_TRUE(Write(provider, P(kXMP, "Rating"), "5"));
    EXPECT_EQ(told, 1);
    EXPECT_EQ(Read(provider, P(kXMP, "Rating")), "5");
}

TEST(ListenerTest, EmptiedHolderIsSkippedAndRemovalDuringNotificationIsSafe)
{
    auto provider = boost::make_shared<TypicalProviderImpl>();
    std::vector<std::string> calls;
    Holder first, second, third;
    first = boost::make_shared<Listener>(
        [&](__XMPMeta__*)
        {
            calls.push_back("first");
            *second = Listener();                               // empties a later one in place
            provider->RemoveMetaDataChangedNotification(third); // removes another
            provider->RemoveMetaDataChangedNotification(first); // and itself
        });
    second = boost::make_shared<Listener>([&](__XMPMeta__*) { calls.push_back("second"); });
    third = boost::make_shared<Listener>([&](__XMPMeta__*) { calls.push_back("third"); });
    provider->NotifyWhenMetaDataChanged(first);
    provider->NotifyWhenMetaDataChanged(second);
    provider->NotifyWhenMetaDataChanged(third);
    Write(provider, P(kXMP, "Label"), "a");
    EXPECT_EQ(calls, (std::vector<std::string>{"first"}));
    Write(provider, P(kXMP, "Label"), "b");
    EXPECT_EQ(calls, (std::vector<std::string>{"first"}));
}

TEST(ListenerTest, ListenerAddedDuringNotificationHearsTheNextOne)
{
    auto provider = boost::make_shared<TypicalProviderImpl>();
    int late = 0;
    Holder lateListener = boost::make_shared<Listener>([&](__XMPMeta__*) { ++late; });
    Holder adder = boost::make_shared<Listener>(
        [&](__XMPMeta__*) { provider->NotifyWhenMetaDataChanged(lateListener); });
    provider->NotifyWhenMetaDataChanged(adder);
    Write(provider, P(kXMP, "Label"), "a");
    EXPECT_EQ(late, 0);
    *adder = Listener();
    Write(provider, P(kXMP, "Label"), "b");
    EXPECT_EQ(late, 1);
}

TEST(ListenerTest, ListenerDroppingTheLastProviderPointerIsSafe)
{
    auto provider = boost::make_shared<TypicalProviderImpl>();
    boost::shared_ptr<MetaDataProvider> held = provider;
    int told = 0;
    Holder listener = boost::make_shared<Listener>(
        [&](__XMPMeta__*)
        {
            ++told;
            held.reset();
        });
    provider->NotifyWhenMetaDataChanged(listener);
    provider.reset();
    Write(held, P(kXMP, "Label"), "a"); // the access keeps the provider alive
    EXPECT_EQ(told, 1);
    EXPECT_FALSE(held);
}

TEST(ProviderTest, StatusFollowsTheWritingSwitch)
{
    auto provider = EveryKind();
    Path const path = P(kXMP, "Rating");
    EXPECT_TRUE(provider->QueryPathStatus(path, kPathStatusApplicable));
    EXPECT_TRUE(provider->QueryPathStatus(path, kPathStatusWritable));
    int switched = 0;
    auto listener = boost::make_shared<boost::function<void()>>([&] { ++switched; });
    NotifyWhenXMPWritingChanged(listener);
    DisableXMPWriting(true);
    DisableXMPWriting(true); // no change, no call
    EXPECT_TRUE(IsXMPWritingDisabled());
    EXPECT_FALSE(provider->QueryPathStatus(path, kPathStatusWritable));
    DisableXMPWriting(false);
    EXPECT_EQ(switched, 2);
    *listener = boost::function<void()>();
    provider->SetReadOnly(true);
    EXPECT_FALSE(provider->QueryPathStatus(path, kPathStatusWritable));
    EXPECT_TRUE(provider->IsUsable());
}

TEST(BufferProviderTest, BadPacketGivesNoMetadataAndAnErrorEntry)
{
    ClearErrors();
    auto provider = BufferProviderImpl::Create("<x:xmpmeta><rdf:RDF><unclosed></x:xmpmeta>");
    EXPECT_FALSE(provider->IsValid());
    MetaDataReadAccess access(provider);
    EXPECT_EQ(*access, nullptr);
    EXPECT_FALSE(provider->QueryPathStatus(P(kDC, "title"), kPathStatusWritable));
    EXPECT_TRUE(HasErrors());
    ClearErrors();
    auto empty = BufferProviderImpl::Create("");
    EXPECT_TRUE(empty->IsValid()); // an empty buffer is an empty tree
    EXPECT_FALSE(HasErrors());
}

TEST(BufferProviderTest, PacketRoundTripLosesNothing)
{
    auto provider = EveryKind();
    std::string const packet = provider->SerializedPacket();
    auto again = BufferProviderImpl::Create(packet);
    MetaDataReadAccess a(provider), b(again);
    EXPECT_EQ(Serialized(*a), Serialized(*b));
    EXPECT_EQ(Read(again, P(kDC, "subject")), "sea; a\\;b; back\\\\slash");
    EXPECT_EQ(Read(again, P(kMM, "History[3]/stEvt:action")), "converted");
    EXPECT_NE(provider->DebugSerializedXMP().find("Harbour"), std::string::npos);
}

TEST(MultiObjectProviderTest, AgreeingValuesReadAndDifferingOnesAreMultiple)
{
    auto multi = Multi(
        {BufferProviderImpl::Create(Packet("<xmp:Rating>3</xmp:Rating><xmp:Label>Red</xmp:Label>")),
         BufferProviderImpl::Create(
             Packet("<xmp:Rating>3</xmp:Rating><xmp:Label>Blue</xmp:Label>"))});
    GetValueResult result = kGetValueAbsent;
    EXPECT_EQ(Read(multi, P(kXMP, "Rating"), &result), "3");
    EXPECT_EQ(result, kGetValueRead);
    EXPECT_EQ(Read(multi, P(kXMP, "Label"), &result), "");
    EXPECT_EQ(result, kGetValueMultiple);
    Read(multi, P(kXMP, "Nickname"), &result);
    EXPECT_EQ(result, kGetValueAbsent);
}

TEST(MultiObjectProviderTest, WritesGoToEveryMemberAndWakeTheirListeners)
{
    auto a = BufferProviderImpl::Create(LabelPacket("Red"));
    auto b = BufferProviderImpl::Create(LabelPacket("Blue"));
    auto multi = Multi({a, b});
    int memberTold = 0, multiTold = 0;
    Holder onMember = boost::make_shared<Listener>([&](__XMPMeta__*) { ++memberTold; });
    Holder onMulti = boost::make_shared<Listener>([&](__XMPMeta__*) { ++multiTold; });
    a->NotifyWhenMetaDataChanged(onMember);
    multi->NotifyWhenMetaDataChanged(onMulti);
    EXPECT_TRUE(Write(multi, P(kXMP, "Label"), "Green"));
    EXPECT_EQ(Read(a, P(kXMP, "Label")), "Green");
    EXPECT_EQ(Read(b, P(kXMP, "Label")), "Green");
    EXPECT_EQ(Read(multi, P(kXMP, "Label")), "Green");
    EXPECT_EQ(memberTold, 1);
    EXPECT_EQ(multiTold, 1);
    // A member changed on its own shows through, and the group is told.
    EXPECT_TRUE(Write(b, P(kXMP, "Label"), "Grey"));
    GetValueResult result = kGetValueRead;
    Read(multi, P(kXMP, "Label"), &result);
    EXPECT_EQ(result, kGetValueMultiple);
    EXPECT_EQ(multiTold, 2);
}

TEST(DynamicSchemaTest, UnknownNamespacesBecomeDynamicSchemasWithTheirProperties)
{
    char const* own = "http://example.com/ns/cellar/1.0/";
    auto provider = BufferProviderImpl::Create(Packet(
        "<xmp:Label>Red</xmp:Label>"
        "<cellar:vintage xmlns:cellar=\"http://example.com/ns/cellar/1.0/\">1998</cellar:vintage>"
        "<cellar:grapes "
        "xmlns:cellar=\"http://example.com/ns/cellar/1.0/\"><rdf:Seq><rdf:li>Merlot</rdf:li>"
        "</rdf:Seq></cellar:grapes>"));
    EXPECT_EQ(provider->DynamicSchemaDefinitions().begin(),
              provider->DynamicSchemaDefinitions().end());
    provider->ListUnknownSchemasAsDynamic();
    std::vector<boost::shared_ptr<SchemaDefinition>> schemas;
    for (auto const& schema : provider->DynamicSchemaDefinitions())
        schemas.push_back(schema);
    ASSERT_EQ(schemas.size(), 1u); // xmp has a definition, the cellar does not
    EXPECT_EQ(S(schemas[0]->schemaNamespace), own);
    EXPECT_EQ(S(schemas[0]->schemaPrefix), "cellar");
    std::vector<boost::shared_ptr<PropertyDefinition>> properties;
    provider->GetAllPathsForDynamicSchema(schemas[0]->schemaNamespace, properties);
    ASSERT_EQ(properties.size(), 2u);
    EXPECT_EQ(S(properties[0]->name), "vintage");
    EXPECT_TRUE(properties[0]->primitiveType == kPrimitiveText);
    EXPECT_EQ(S(properties[1]->name), "grapes");
    EXPECT_TRUE(properties[1]->primitiveType == kPrimitiveOrderedArray);
    properties.clear();
    provider->GetAllPathsForDynamicSchema(U8(kXMP), properties);
    EXPECT_TRUE(properties.empty());
}

TEST(MultiObjectProviderTest, ArrayEditsReachEveryMember)
{
    auto a = BufferProviderImpl::Create(
        Packet("<dc:subject><rdf:Bag><rdf:li>sea</rdf:li></rdf:Bag></dc:subject>"));
    auto b = BufferProviderImpl::Create(
        Packet("<dc:subject><rdf:Bag><rdf:li>sky</rdf:li></rdf:Bag></dc:subject>"));
    auto multi = Multi({a, b, nullptr});
    EXPECT_EQ(multi->Members().size(), 2u); // an empty pointer is no member
    {
        MetaDataUpdateAccess access(multi);
        ASSERT_TRUE(AddArrayItem(*access, P(kDC, "subject"), 0));
        EXPECT_TRUE(SetValue(*access, P(kDC, "subject[1]"), U8("wind")));
        access.AddChange(P(kDC, "subject"));
    }
    EXPECT_EQ(Read(a, P(kDC, "subject")), "wind; sea");
    EXPECT_EQ(Read(b, P(kDC, "subject")), "wind; sky");
    GetValueResult result = kGetValueRead;
    EXPECT_EQ(Read(multi, P(kDC, "subject"), &result), "");
    EXPECT_EQ(result, kGetValueMultiple);
    EXPECT_EQ(Read(multi, P(kDC, "subject[1]"), &result), "wind");
    EXPECT_EQ(result, kGetValueRead);
    {
        MetaDataUpdateAccess access(multi);
        EXPECT_TRUE(DeleteValue(*access, P(kDC, "subject")));
    }
    EXPECT_FALSE(HasValue(*MetaDataReadAccess(a), P(kDC, "subject")));
    EXPECT_FALSE(HasValue(*MetaDataReadAccess(b), P(kDC, "subject")));
    EXPECT_TRUE(multi->QueryPathStatus(P(kDC, "subject"), kPathStatusWritable));
    b->SetReadOnly(true);
    EXPECT_FALSE(multi->QueryPathStatus(P(kDC, "subject"), kPathStatusWritable));
}

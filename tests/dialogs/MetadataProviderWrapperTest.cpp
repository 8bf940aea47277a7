// The dialog's buffer: edits stay in its copy until the commit, which hands
// the whole copy to the host in one change.

#include "../tree/TreeTestSupport.h"

#include "dialogs/MetadataProviderWrapper.h"

#include <zephmetadata/Access.h>
#include <zephmetadata/MultiObjectProvider.h>
#include <zephmetadata/Values.h>
#include <zephmetadata/XmpMeta.h>

#include <boost/make_shared.hpp>

namespace
{

using namespace treetest;
using zephmetadataui::MetadataProviderWrapper;

std::string PacketOf(boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider)
{
    zephmetadata::MetaDataReadAccess const access(provider);
    std::string text;
    zephmetadata::xmp::SerializeToBuffer(*access, text);
    return text;
}

class MetadataProviderWrapperTest : public TreeTest
{
protected:
    void SetUp() override
    {
        TreeTest::SetUp();
        host = MakeProvider(RichAlphaBody());
        listener = boost::make_shared<boost::function<void(__XMPMeta__*)>>([this](__XMPMeta__*)
                                                                           { ++hostChanges; });
        host->NotifyWhenMetaDataChanged(listener);
        before = PacketOf(host);
        wrapper = boost::make_shared<MetadataProviderWrapper>(host);
    }

    boost::shared_ptr<zephmetadata::BufferProviderImpl> host;
    boost::shared_ptr<MetadataProviderWrapper> wrapper;
    zephmetadata::MetaDataProvider::ChangedListener listener;
    std::string before;
    int hostChanges = 0;
};

TEST_F(MetadataProviderWrapperTest, EditsStayInTheCopyUntilTheCommitHandsOverTheWhole)
{
    EXPECT_FALSE(wrapper->CommitChanges()) << "nothing edited: nothing to write";
    EXPECT_EQ(hostChanges, 0);

    WriteValue(wrapper, AlphaPath("title"), "Harbour at dusk", true);
    WriteValue(wrapper, AlphaPath("contact/ta:city"), "Uig", true);
    EXPECT_TRUE(wrapper->IsModified());
    EXPECT_EQ(PacketOf(host), before);
    EXPECT_EQ(hostChanges, 0);

    std::string const edited = PacketOf(wrapper);
    EXPECT_TRUE(wrapper->CommitChanges());
    EXPECT_EQ(hostChanges, 1);
    EXPECT_EQ(PacketOf(host), edited);
    EXPECT_NE(PacketOf(host).find("Harbour at dusk"), std::string::npos);
    EXPECT_NE(PacketOf(host).find("light"), std::string::npos) << "untouched values stay";
}

TEST_F(MetadataProviderWrapperTest, StatusIsTheHostsAndAHostWithoutMetadataTakesNothing)
{
    Path const title = AlphaPath("title");
    EXPECT_TRUE(wrapper->QueryPathStatus(title, zephmetadata::kPathStatusWritable));
    host->SetReadOnly(true);
    EXPECT_FALSE(wrapper->QueryPathStatus(title, zephmetadata::kPathStatusWritable));

    auto empty = zephmetadata::BufferProviderImpl::Create("not a packet");
    auto emptyWrapper = boost::make_shared<MetadataProviderWrapper>(empty);
    zephmetadata::MetaDataReadAccess const access(emptyWrapper);
    EXPECT_EQ(*access, nullptr);
    EXPECT_FALSE(emptyWrapper->CommitChanges());
}

TEST_F(MetadataProviderWrapperTest, SeveralFilesShowMultipleValuesAndEachTakesItsOwnCopy)
{
    auto second = MakeProvider("<ta:title>Another title</ta:title><ta:count>3</ta:count>");
    std::string const secondBefore = PacketOf(second);
    auto several = boost::make_shared<zephmetadata::MultiObjectProvider>(
        std::vector<boost::shared_ptr<zephmetadata::MetaDataProvider>>{host, second});
    auto both = boost::make_shared<MetadataProviderWrapper>(several);

    auto const read = [&](Path const& path)
    {
        zephmetadata::MetaDataReadAccess const access(both);
        zephmetadata::UTF8String value;
        zephmetadata::GetValueResult result{};
        zephmetadata::GetValue(*access, path, value, &result);
        return result;
    };
    EXPECT_EQ(read(AlphaPath("title")), zephmetadata::kGetValueMultiple);
    WriteValue(both, AlphaPath("title"), "One title", true);
    EXPECT_NE(read(AlphaPath("title")), zephmetadata::kGetValueMultiple);
    EXPECT_EQ(PacketOf(host), before);
    EXPECT_EQ(PacketOf(second), secondBefore);

    EXPECT_TRUE(both->CommitChanges());
    for (auto const& file : {boost::shared_ptr<zephmetadata::MetaDataProvider>(host),
                             boost::shared_ptr<zephmetadata::MetaDataProvider>(second)})
        EXPECT_NE(PacketOf(file).find("One title"), std::string::npos);
    EXPECT_NE(PacketOf(second).find("ta:count=\"3\""), std::string::npos)
        << "the rest of each file stays";
    EXPECT_NE(PacketOf(host).find("Portree"), std::string::npos);
}

} // namespace

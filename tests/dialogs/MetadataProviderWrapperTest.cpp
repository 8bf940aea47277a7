// The dialog's buffer: edits stay in its copy until the commit, which hands
// the whole copy to the host in one change.

#include "../tree/TreeTestSupport.h"

#include "dialogs/MetadataProviderWrapper.h"

#include <zephmetadata/Access.h>
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

} // namespace

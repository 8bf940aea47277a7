// The dialog's buffer over several files: edits stay in its copy until the
// commit, which hands each file the edit and keeps the rest of each. (One
// file through the dialog: MetadataDialogTest.)

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
using ProviderPtr = boost::shared_ptr<zephmetadata::MetaDataProvider>;
using MetadataProviderWrapperTest = TreeTest;

std::string PacketOf(ProviderPtr const& provider)
{
    zephmetadata::MetaDataReadAccess const access(provider);
    std::string text;
    zephmetadata::xmp::SerializeToBuffer(*access, text);
    return text;
}

TEST_F(MetadataProviderWrapperTest, StatusIsTheHostsAndAHostWithoutMetadataTakesNothing)
{
    auto const host = MakeProvider(RichAlphaBody());
    auto const wrapper = boost::make_shared<MetadataProviderWrapper>(host);
    EXPECT_TRUE(wrapper->QueryPathStatus(AlphaPath("title"), zephmetadata::kPathStatusWritable));
    host->SetReadOnly(true);
    EXPECT_FALSE(wrapper->QueryPathStatus(AlphaPath("title"), zephmetadata::kPathStatusWritable));

    auto empty = zephmetadata::BufferProviderImpl::Create("not a packet");
    auto emptyWrapper = boost::make_shared<MetadataProviderWrapper>(empty);
    EXPECT_EQ(*zephmetadata::MetaDataReadAccess(emptyWrapper), nullptr);
    EXPECT_FALSE(emptyWrapper->CommitChanges());
}

TEST_F(MetadataProviderWrapperTest, SeveralFilesShowMultipleValuesAndEachTakesItsOwnCopy)
{
    std::vector<ProviderPtr> const files{
        MakeProvider(RichAlphaBody()),
        MakeProvider("<ta:title>Another title</ta:title><ta:count>3</ta:count>")};
    std::vector<std::string> const before{PacketOf(files[0]), PacketOf(files[1])};
    int hostChanges = 0;
    auto listener = boost::make_shared<boost::function<void(__XMPMeta__*)>>([&](__XMPMeta__*)
                                                                            { ++hostChanges; });
    for (ProviderPtr const& file : files)
        file->NotifyWhenMetaDataChanged(listener);
    auto both = boost::make_shared<MetadataProviderWrapper>(
        boost::make_shared<zephmetadata::MultiObjectProvider>(files));
    auto const titleIsMultiple = [&]
    {
        zephmetadata::UTF8String value;
        zephmetadata::GetValueResult result{};
        zephmetadata::GetValue(*zephmetadata::MetaDataReadAccess(both), AlphaPath("title"), value,
                               &result);
        return result == zephmetadata::kGetValueMultiple;
    };
    EXPECT_TRUE(titleIsMultiple());
    EXPECT_FALSE(both->CommitChanges()) << "nothing edited: nothing to write";

    WriteValue(both, AlphaPath("title"), "One title", true);
    EXPECT_FALSE(titleIsMultiple());
    EXPECT_EQ((std::vector<std::string>{PacketOf(files[0]), PacketOf(files[1])}), before);
    EXPECT_EQ(hostChanges, 0);

    EXPECT_TRUE(both->CommitChanges());
    EXPECT_EQ(hostChanges, 2) << "one change for each file";
    for (ProviderPtr const& file : files)
        EXPECT_NE(PacketOf(file).find("One title"), std::string::npos);
    EXPECT_NE(PacketOf(files[1]).find("ta:count=\"3\""), std::string::npos)
        << "the rest of each file stays";
    EXPECT_NE(PacketOf(files[0]).find("Portree"), std::string::npos);
    listener->clear();
}

} // namespace

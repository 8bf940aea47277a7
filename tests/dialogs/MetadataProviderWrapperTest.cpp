// The dialog's buffer: path status is the host's, and a host without metadata
// takes nothing. Several files through the dialog: the browser's File Info test.

#include "../tree/TreeTestSupport.h"

#include "dialogs/MetadataProviderWrapper.h"

#include <zephmetadata/Access.h>
#include <zephmetadata/Values.h>

#include <boost/make_shared.hpp>

namespace
{

using namespace treetest;
using zephmetadataui::MetadataProviderWrapper;
using MetadataProviderWrapperTest = TreeTest;

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

} // namespace

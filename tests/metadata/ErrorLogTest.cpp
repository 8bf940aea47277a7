#include "zephmetadata/ErrorLog.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

using namespace zephmetadata;

namespace
{
UTF8String U8(char const* text)
{
    return zephcore::ToUTF8(text);
}
} // namespace

TEST(ErrorLogTest, KeepsEntriesInOrderAndClears)
{
    ClearErrors();
    EXPECT_FALSE(HasErrors());
    AddError(kErrorDefinitionFile, U8("dc.xml"), U8("bad root"));
    AddError(kErrorDefinitionEntry, U8("exif.xml"), U8("unknown type \xC3\xA9"));
    ASSERT_TRUE(HasErrors());
    std::vector<ErrorInfo> const infos = GetErrorInfos();
    ASSERT_EQ(infos.size(), 2u);
    EXPECT_EQ(infos[0].code, kErrorDefinitionFile);
    EXPECT_EQ(zephcore::ToStdString(infos[0].source), "dc.xml");
    EXPECT_EQ(zephcore::ToStdString(infos[1].message), "unknown type \xC3\xA9");
    ClearErrors();
    EXPECT_FALSE(HasErrors());
    EXPECT_TRUE(GetErrorInfos().empty());
}

TEST(ErrorLogTest, ListenersHearNewEntriesUntilEmptied)
{
    ClearErrors();
    std::vector<std::string> heard;
    auto listener = boost::make_shared<boost::function<void(UTF16String)>>(
        [&](UTF16String text) { heard.push_back(zephcore::ToStdString(text)); });
    NotifyOnError(listener);
    AddError(kErrorMetadataRead, U8("a.jpg"), U8("unreadable"));
    *listener = boost::function<void(UTF16String)>(); // leave by emptying in place
    AddError(kErrorMetadataRead, U8("b.jpg"), U8("also unreadable"));
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_EQ(heard[0], "unreadable");
    EXPECT_EQ(GetErrorInfos().size(), 2u);
    ClearErrors();
}

#include "zephmetadata/ErrorLog.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QThread>

#include <boost/make_shared.hpp>

#include <thread>

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

TEST(ErrorLogTest, KeepsEveryEntryAddedFromSeveralThreads)
{
    ClearErrors();
    constexpr int kThreads = 4;
    constexpr int kEach = 20000;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back(
            [t]
            {
                for (int i = 0; i < kEach; ++i)
                    AddError(kErrorMetadataWrite, U8(std::to_string(t).c_str()),
                             U8(std::to_string(i).c_str()));
            });
    for (std::thread& thread : threads)
        thread.join();
    std::vector<ErrorInfo> const infos = GetErrorInfos();
    ASSERT_EQ(infos.size(), std::size_t(kThreads * kEach));
    // Each thread's entries whole and in its order.
    std::vector<int> next(kThreads, 0);
    for (ErrorInfo const& info : infos)
    {
        int const t = std::stoi(zephcore::ToStdString(info.source));
        ASSERT_EQ(zephcore::ToStdString(info.message), std::to_string(next[std::size_t(t)]));
        ++next[std::size_t(t)];
    }
    ClearErrors();
}

TEST(ErrorLogTest, ListenersHearEntriesOfWorkersOnTheApplicationThread)
{
    ClearErrors();
    int argc = 1;
    char name[] = "zephmetadata_tests";
    char* argv[] = {name, nullptr};
    QCoreApplication app(argc, argv);
    std::vector<std::pair<std::string, QThread*>> heard;
    auto listener = boost::make_shared<boost::function<void(UTF16String)>>(
        [&](UTF16String text)
        { heard.emplace_back(zephcore::ToStdString(text), QThread::currentThread()); });
    NotifyOnError(listener);
    std::thread worker([] { AddError(kErrorMetadataWrite, U8("c.jpg"), U8("read-only")); });
    worker.join();
    // In the log at once; the listener waits for the application's events.
    EXPECT_EQ(GetErrorInfos().size(), 1u);
    EXPECT_TRUE(heard.empty());
    QCoreApplication::sendPostedEvents();
    AddError(kErrorMetadataWrite, U8("d.jpg"), U8("on the application thread"));
    ASSERT_EQ(heard.size(), 2u);
    EXPECT_EQ(heard[0].first, "read-only");
    EXPECT_EQ(heard[0].second, app.thread());
    EXPECT_EQ(heard[1].second, app.thread());
    *listener = boost::function<void(UTF16String)>();
    ClearErrors();
}

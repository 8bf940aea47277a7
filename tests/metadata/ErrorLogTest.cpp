#include "zephmetadata/ErrorLog.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QThread>

#include <boost/make_shared.hpp>

#include <thread>

using namespace zephmetadata;

namespace
{

UTF8String U8(std::string const& text)
{
    return zephcore::ToUTF8(text);
}

std::string S(UTF16String const& text)
{
    return zephcore::ToStdString(text);
}

using Listener = boost::function<void(UTF16String)>;

} // namespace

TEST(ErrorLogTest, KeepsEntriesInOrderTellsListenersUntilEmptiedAndClears)
{
    ClearErrors();
    std::vector<std::string> heard;
    auto listener =
        boost::make_shared<Listener>([&](UTF16String text) { heard.push_back(S(text)); });
    NotifyOnError(listener);
    AddError(kErrorDefinitionFile, U8("dc.xml"), U8("bad root"));
    *listener = Listener(); // leave by emptying in place
    AddError(kErrorDefinitionEntry, U8("exif.xml"), U8("unknown type \xC3\xA9"));
    EXPECT_EQ(heard, std::vector<std::string>{"bad root"});
    std::vector<ErrorInfo> const infos = GetErrorInfos();
    ASSERT_EQ(infos.size(), 2u);
    EXPECT_EQ(infos[0].code, kErrorDefinitionFile);
    EXPECT_EQ(S(infos[0].source), "dc.xml");
    EXPECT_EQ(S(infos[1].message), "unknown type \xC3\xA9");
    ClearErrors();
    EXPECT_FALSE(HasErrors());
}

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

TEST(ErrorLogTest, ListenersHearEntriesOfWorkersOnTheApplicationThread)
{
    ClearErrors();
    int argc = 1;
    char name[] = "zephmetadata_tests";
    char* argv[] = {name, nullptr};
    QCoreApplication app(argc, argv);
    std::vector<std::pair<std::string, QThread*>> heard;
    auto listener = boost::make_shared<Listener>(
        [&](UTF16String text) { heard.emplace_back(S(text), QThread::currentThread()); });
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
    *listener = Listener();
    ClearErrors();
}

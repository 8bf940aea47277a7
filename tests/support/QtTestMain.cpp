// Test main for suites that need widgets: one QApplication on the offscreen
// platform, and a listener that flushes deferred deletes after each test and
// reports top-level widgets a test left behind.

#include <QApplication>
#include <QCoreApplication>
#include <QEvent>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

namespace
{

class FlushAndCheckListener : public testing::EmptyTestEventListener
{
    void OnTestEnd(testing::TestInfo const& info) override
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
        int leftOver = 0;
        for (QWidget* widget : QApplication::topLevelWidgets())
        {
            if (widget->isVisible())
            {
                ++leftOver;
                widget->close();
            }
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (leftOver > 0)
            ADD_FAILURE() << info.name() << " left " << leftOver
                          << " visible top-level widget(s) open";
    }
};

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM",
            qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
    QApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new FlushAndCheckListener);
    return RUN_ALL_TESTS();
}

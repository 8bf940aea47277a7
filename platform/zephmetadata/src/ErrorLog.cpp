#include "zephmetadata/ErrorLog.h"

#include "zephmetadata/ListenerList.h"

#include <QCoreApplication>
#include <QThread>

#include <mutex>

namespace zephmetadata
{
namespace
{

struct ErrorLogState
{
    // Files are read and saved on worker threads too.
    std::mutex entriesMutex;
    std::vector<ErrorInfo> entries;
    // Held while listeners run: one may register another.
    std::recursive_mutex listenersMutex;
    ListenerList<void(UTF16String)> listeners;
};

ErrorLogState& State()
{
    static ErrorLogState state;
    return state;
}

void NotifyListeners(UTF16String const& message)
{
    std::lock_guard<std::recursive_mutex> const lock(State().listenersMutex);
    State().listeners.Notify(message);
}

} // namespace

std::vector<ErrorInfo> GetErrorInfos()
{
    std::lock_guard<std::mutex> const lock(State().entriesMutex);
    return State().entries;
}

bool HasErrors()
{
    std::lock_guard<std::mutex> const lock(State().entriesMutex);
    return !State().entries.empty();
}

void NotifyOnError(boost::shared_ptr<boost::function<void(UTF16String)>> const& listener)
{
    std::lock_guard<std::recursive_mutex> const lock(State().listenersMutex);
    State().listeners.Add(listener);
}

void AddError(std::int32_t code, UTF16String const& source, UTF16String const& message)
{
    ErrorInfo info;
    info.code = code;
    info.source = source;
    info.message = message;
    {
        std::lock_guard<std::mutex> const lock(State().entriesMutex);
        State().entries.push_back(std::move(info));
    }
    // Listeners are windows: an entry added on a worker reaches them on the
    // application's thread.
    QCoreApplication* const app = QCoreApplication::instance();
    if (app && QThread::currentThread() != app->thread())
        QMetaObject::invokeMethod(
            app, [message] { NotifyListeners(message); }, Qt::QueuedConnection);
    else
        NotifyListeners(message);
}

void AddError(std::int32_t code, UTF8String const& source, UTF8String const& message)
{
    AddError(code, zephcore::UTF8to16(source), zephcore::UTF8to16(message));
}

void ClearErrors()
{
    std::lock_guard<std::mutex> const lock(State().entriesMutex);
    State().entries.clear();
}

} // namespace zephmetadata

#include "zephmetadata/ErrorLog.h"

#include "zephmetadata/ListenerList.h"

namespace zephmetadata
{
namespace
{

struct ErrorLogState
{
    std::vector<ErrorInfo> entries;
    ListenerList<void(UTF16String)> listeners;
};

ErrorLogState& State()
{
    static ErrorLogState state;
    return state;
}

} // namespace

std::vector<ErrorInfo> GetErrorInfos()
{
    return State().entries;
}

bool HasErrors()
{
    return !State().entries.empty();
}

void NotifyOnError(boost::shared_ptr<boost::function<void(UTF16String)>> const& listener)
{
    State().listeners.Add(listener);
}

void AddError(std::int32_t code, UTF16String const& source, UTF16String const& message)
{
    ErrorInfo info;
    info.code = code;
    info.source = source;
    info.message = message;
    State().entries.push_back(std::move(info));
    State().listeners.Notify(message);
}

void AddError(std::int32_t code, UTF8String const& source, UTF8String const& message)
{
    AddError(code, zephcore::UTF8to16(source), zephcore::UTF8to16(message));
}

void ClearErrors()
{
    State().entries.clear();
}

} // namespace zephmetadata

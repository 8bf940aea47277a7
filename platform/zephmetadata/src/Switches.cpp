#include "zephmetadata/Switches.h"

#include "zephmetadata/ListenerList.h"

namespace zephmetadata
{
namespace
{

struct SwitchState
{
    bool writingDisabled = false;
    bool forcedWritable = false;
    ListenerList<void()> writingListeners;
};

SwitchState& State()
{
    static SwitchState state;
    return state;
}

} // namespace

void DisableXMPWriting(bool disable)
{
    if (State().writingDisabled == disable)
        return;
    State().writingDisabled = disable;
    State().writingListeners.Notify();
}

bool IsXMPWritingDisabled()
{
    return State().writingDisabled;
}

void NotifyWhenXMPWritingChanged(boost::shared_ptr<boost::function<void()>> const& listener)
{
    State().writingListeners.Add(listener);
}

bool IsAllMetadataForcedWritable()
{
    return State().forcedWritable;
}

void SetAllMetadataForcedWritable(bool forced)
{
    State().forcedWritable = forced;
}

} // namespace zephmetadata

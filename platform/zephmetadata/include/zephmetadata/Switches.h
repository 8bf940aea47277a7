#pragma once
// Process-wide switches of the model.

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

namespace zephmetadata
{

// While set, no provider answers writable and hosts must not save metadata.
void DisableXMPWriting(bool disable);
bool IsXMPWritingDisabled();
// Listeners hear every change of the state (not a set to the same state).
void NotifyWhenXMPWritingChanged(boost::shared_ptr<boost::function<void()>> const& listener);

// When set, every value is to be treated as writable by the views. Off by
// default; a host turns it on (a debugging or administration mode).
bool IsAllMetadataForcedWritable();
void SetAllMetadataForcedWritable(bool forced);

} // namespace zephmetadata

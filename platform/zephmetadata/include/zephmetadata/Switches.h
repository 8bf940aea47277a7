#pragma once
// Process-wide switches of the model.

#include "zephmetadata/zephmetadata_export.h"
#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

namespace zephmetadata
{

// While set, no provider answers writable and hosts must not save metadata.
ZEPHMETADATA_EXPORT void DisableXMPWriting(bool disable);
ZEPHMETADATA_EXPORT bool IsXMPWritingDisabled();
// Listeners hear every change of the state (not a set to the same state).
ZEPHMETADATA_EXPORT void
NotifyWhenXMPWritingChanged(boost::shared_ptr<boost::function<void()>> const& listener);

// When set, every value is to be treated as writable by the views. Off by
// default; a host turns it on (a debugging or administration mode).
ZEPHMETADATA_EXPORT bool IsAllMetadataForcedWritable();
ZEPHMETADATA_EXPORT void SetAllMetadataForcedWritable(bool forced);

} // namespace zephmetadata

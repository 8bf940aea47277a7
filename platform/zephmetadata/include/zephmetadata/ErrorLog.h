#pragma once
// The model's error log: problems met while loading definitions or reading
// files, kept for the host's error dialog. Listeners hear each new entry.

#include "zephmetadata/Types.h"
#include "zephmetadata/zephmetadata_export.h"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <vector>

namespace zephmetadata
{

// Error codes of the log.
enum ErrorCode
{
    kErrorDefinitionFile = 1,  // a definition file could not be read or parsed
    kErrorDefinitionEntry = 2, // one entry of a definition file was refused
    kErrorMetadataRead = 10,   // a media file or packet could not be read
    kErrorMetadataWrite = 11,  // metadata could not be saved
};

ZEPHMETADATA_EXPORT std::vector<ErrorInfo> GetErrorInfos();
ZEPHMETADATA_EXPORT bool HasErrors();
// The listener gets the message text of each entry added after it registered.
// A listener emptied in place is skipped. Entries may be added on any thread;
// while a QCoreApplication exists, listeners hear on its thread (an entry
// added on another thread reaches them once that thread's events run).
ZEPHMETADATA_EXPORT void
NotifyOnError(boost::shared_ptr<boost::function<void(UTF16String)>> const& listener);

ZEPHMETADATA_EXPORT void AddError(std::int32_t code, UTF16String const& source,
                                  UTF16String const& message);
// UTF-8 convenience for the loaders.
ZEPHMETADATA_EXPORT void AddError(std::int32_t code, UTF8String const& source,
                                  UTF8String const& message);
// Empties the log (a host's "clear" button, tests). Listeners stay.
ZEPHMETADATA_EXPORT void ClearErrors();

} // namespace zephmetadata

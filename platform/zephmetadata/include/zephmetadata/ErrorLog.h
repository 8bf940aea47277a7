#pragma once
// The model's error log: problems met while loading definitions or reading
// files, kept for the host's error dialog. Listeners hear each new entry.

#include "zephmetadata/Types.h"

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

std::vector<ErrorInfo> GetErrorInfos();
bool HasErrors();
// The listener gets the message text of each entry added after it registered.
// A listener emptied in place is skipped.
void NotifyOnError(boost::shared_ptr<boost::function<void(UTF16String)>> const& listener);

void AddError(std::int32_t code, UTF16String const& source, UTF16String const& message);
// UTF-8 convenience for the loaders.
void AddError(std::int32_t code, UTF8String const& source, UTF8String const& message);
// Empties the log (a host's "clear" button, tests). Listeners stay.
void ClearErrors();

} // namespace zephmetadata

#pragma once
// Merging a metadata template into open metadata.

#include "zephmetadata/Types.h"
#include "zephmetadata/zephmetadata_export.h"

namespace zephmetadata
{

// Merges source into destination by the option:
// - kTemplateImportClearAndReplace: destination ends up with the template's
//   properties only;
// - kTemplateImportKeepAndReplace: the template's properties are added, and
//   replace matching ones whole;
// - kTemplateImportKeepAndAppend: the template's properties are added; into
//   matching lists the template's missing items are appended, into matching
//   structures its missing fields are added, and matching simple values keep
//   the destination's text.
// The identity and history of the document (xmpMM:DocumentID, InstanceID,
// OriginalDocumentID, History, DerivedFrom and the other media-management
// bookkeeping, xmp:MetadataDate) belong to the destination: never cleared,
// never taken from a template. Returns whether destination changed; false
// for a null handle.
ZEPHMETADATA_EXPORT bool ApplyTemplate(__XMPMeta__* destination, __XMPMeta__* source,
                                       TemplateImportOptions options);

} // namespace zephmetadata

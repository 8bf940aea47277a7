#pragma once
// Saved sets of displayed properties. The file is UTF-8 XML:
//
//   <?xml version="1.0" encoding="UTF-8"?>
//   <xmpViewSettings version="1">
//     <path namespace="http://purl.org/dc/elements/1.1/" property="title"/>
//     <path namespace="..." property="..." readOnly="true" extra1="..." extra2="..."/>
//   </xmpViewSettings>
//
// One "path" element per Path, in set order; readOnly and the extras only
// when set. Reading back gives an equal set.

#include "zephmetadata/Path.h"
#include "zephmetadata/zephmetadata_export.h"

#include <set>

namespace zephmetadata
{

ZEPHMETADATA_EXPORT void IncludedLeafPathsAsXMLString(std::set<Path> const& paths, UTF8String& xml);
// Replaces the contents of paths with the file's. False, with paths
// untouched, when the file is missing, unreadable or not such a file.
ZEPHMETADATA_EXPORT bool ReadIncludedLeafPathsAsXMLFile(std::set<Path>& paths,
                                                        UTF16String const& filePath);
// The same from text in memory.
ZEPHMETADATA_EXPORT bool ReadIncludedLeafPathsFromXMLString(std::set<Path>& paths,
                                                            std::string const& xml);

} // namespace zephmetadata

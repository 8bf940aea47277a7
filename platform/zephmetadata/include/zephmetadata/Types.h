#pragma once
// The model's enumerations, its error record, the XMP handle type and the
// iterator range every enumerating function returns.

#include "zephmetadata/zephmetadata_export.h"
#include <zephcore/Strings.h>

#include <boost/range/any_range.hpp>

#include <cstddef>
#include <cstdint>

// exempi's handle of one parsed metadata tree is `struct _Xmp*` (XmpPtr); the
// model speaks of it as __XMPMeta__*, so both names denote one type.
struct _Xmp;
typedef struct _Xmp __XMPMeta__;

namespace zephmetadata
{

using zephcore::UTF16String;
using zephcore::UTF8String;

// Kind of a leaf. Values 0..5 pick a control of their own; 6..8 are the list
// kinds, each with an element type (ElementTypeIdOf), edited as one text
// unless the view builder gives 6 and 7 the array editor; 9 and above have no
// control (structures). Dates, URLs and the like are kPrimitiveText with a
// type id ("date", "url", "uri"), which is what the controls look at.
// The list kinds map one to one onto the XMP array forms, so a writer that
// must create a missing array can take its form from here; a language
// alternative is kPrimitiveAlternative with the type id "langAlt".
enum PrimitiveType
{
    kPrimitiveInteger = 0,
    kPrimitiveReal = 1,
    kPrimitiveText = 2,
    kPrimitiveBoolean = 3,
    kPrimitiveOpenChoice = 4,
    kPrimitiveClosedChoice = 5,
    kPrimitiveUnorderedArray = 6, // rdf:Bag
    kPrimitiveOrderedArray = 7,   // rdf:Seq
    kPrimitiveAlternative = 8,    // rdf:Alt, and language alternatives
    kPrimitiveStructure = 9,      // never returned by PrimitiveTypeOfPath: a structure has none
};

// The question put to MetaDataProvider::QueryPathStatus.
enum PathStatus
{
    kPathStatusApplicable = 0, // show the path even without a value?
    kPathStatusWritable = 1,   // may the path be written now?
};

// Out-word of GetValue. Everything above kGetValueAbsent is a reason why no
// value came back; callers treat those alike.
enum GetValueResult
{
    kGetValueRead = 0,
    kGetValueMultiple = 1, // several objects behind the provider, and they differ
    kGetValueAbsent = 2,
    kGetValueNoMetadata = 3, // null handle
    kGetValueNotSimple = 4,  // a structure, or an array not edited as one text
    kGetValueBadFormat = 5,  // present but not convertible to the asked type
};

// The published schemas. StandardSchemaNamespace turns one into its URI.
enum StandardSchema
{
    kStandardSchemaDublinCore = 0,
    kStandardSchemaXMPBasic = 1,
    kStandardSchemaXMPRights = 2,
    kStandardSchemaXMPMediaManagement = 3,
    kStandardSchemaXMPDynamicMedia = 4,
    kStandardSchemaXMPScript = 5,
    kStandardSchemaPhotoshop = 6,
    kStandardSchemaIPTCCore = 7,
    kStandardSchemaIPTCExtension = 8,
    kStandardSchemaEXIF = 9, // with the GPS properties
    kStandardSchemaTIFF = 10,
    kStandardSchemaCameraRaw = 11,
    kStandardSchemaEXIFAux = 12,
    kStandardSchemaEXIFEX = 13, // EXIF 2.3 additions
    kStandardSchemaDICOM = 14,
    kStandardSchemaPLUS = 15,
    kStandardSchemaXMPBasicJobTicket = 16,
    kStandardSchemaXMPPagedText = 17,
    kStandardSchemaCount
};

// How ApplyTemplate merges a template into existing metadata.
enum TemplateImportOptions
{
    // Every existing property goes; the template's are added.
    kTemplateImportClearAndReplace = 0,
    // Existing properties stay; the template's overwrite matching ones.
    kTemplateImportKeepAndReplace = 1,
    // Existing properties stay; the template's missing list items and
    // structure fields are added to matching ones, matching simple values
    // keep their text.
    kTemplateImportKeepAndAppend = 2,
};

// One entry of the model's error log.
struct ZEPHMETADATA_EXPORT ErrorInfo
{
    std::int32_t code = 0;
    UTF16String source;
    UTF16String message;
};

// A pair of bidirectional, type-erased iterators. Dereferencing yields a
// reference, so that the standard algorithms see bidirectional iterators
// (with a by-value reference they would count as input iterators, and
// std::prev would run forever). Values made on the fly are kept alive by the
// iterators themselves (MakeSharedRange in PathDefinitions.h).
template <class T>
using IteratorRange =
    boost::any_range<T, boost::bidirectional_traversal_tag, T const&, std::ptrdiff_t>;

} // namespace zephmetadata

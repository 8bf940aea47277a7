#pragma once
// The metadata model as the library sees it. Everything of the library
// reaches zephmetadata through here; the names below are brought into the
// library's namespace so that code reads as the model's own.

#include "contracts/Core.h"

#include <zephmetadata/Access.h>
#include <zephmetadata/Definitions.h>
#include <zephmetadata/Model.h>
#include <zephmetadata/Path.h>
#include <zephmetadata/PathDefinitions.h>
#include <zephmetadata/Provider.h>
#include <zephmetadata/Switches.h>
#include <zephmetadata/Types.h>
#include <zephmetadata/Values.h>
#include <zephmetadata/XMPDateTime.h>

namespace zephmetadataui
{

// Paths, values and the enumerations.
using zephmetadata::GetValueResult;
using zephmetadata::IteratorRange;
using zephmetadata::kGetValueAbsent;
using zephmetadata::kGetValueMultiple;
using zephmetadata::kGetValueRead;
using zephmetadata::kPathStatusApplicable;
using zephmetadata::kPathStatusWritable;
using zephmetadata::kPrimitiveAlternative;
using zephmetadata::kPrimitiveBoolean;
using zephmetadata::kPrimitiveClosedChoice;
using zephmetadata::kPrimitiveInteger;
using zephmetadata::kPrimitiveOpenChoice;
using zephmetadata::kPrimitiveOrderedArray;
using zephmetadata::kPrimitiveReal;
using zephmetadata::kPrimitiveStructure;
using zephmetadata::kPrimitiveText;
using zephmetadata::kPrimitiveUnorderedArray;
using zephmetadata::Path;
using zephmetadata::PathStatus;
using zephmetadata::PrimitiveType;
using zephmetadata::StandardSchema;
using zephmetadata::Value;

// Providers and the scope objects around them.
using zephmetadata::BufferProviderImpl;
using zephmetadata::MetaDataProvider;
using zephmetadata::MetaDataReadAccess;
using zephmetadata::MetaDataUpdateAccess;
using zephmetadata::TypicalProviderImpl;

// Values.
using zephmetadata::DeleteValue;
using zephmetadata::GetValue;
using zephmetadata::HasValue;
using zephmetadata::SetMinimalFloatValue;
using zephmetadata::SetValue;

// Definitions.
using zephmetadata::ChildPaths;
using zephmetadata::ChoiceDefinition;
using zephmetadata::ChoiceList;
using zephmetadata::EntryDefinition;
using zephmetadata::FieldDefinition;
using zephmetadata::IsPathOfAnyItem;
using zephmetadata::PathEntryDefinition;
using zephmetadata::PathForSchemaNameAndPropertyName;
using zephmetadata::PrimitiveTypeAsPrimitiveTypeId;
using zephmetadata::PrimitiveTypeIdAsPrimitiveType;
using zephmetadata::PrimitiveTypeIsArray;
using zephmetadata::PrimitiveTypeOfPath;
using zephmetadata::PropertyDefinition;
using zephmetadata::SchemaDefinition;
using zephmetadata::StandardSchemaNamespace;
using zephmetadata::TypeDefinition;
using zephmetadata::TypeEntryDefinition;
using zephmetadata::TypeIdDefinition;
using zephmetadata::ViewDefinition;
using zephmetadata::ViewItem;

// Process-wide switches.
using zephmetadata::IsAllMetadataForcedWritable;
using zephmetadata::NotifyWhenXMPWritingChanged;

// Dates.
using zephmetadata::ConvertFromDate;
using zephmetadata::XMP_DateTime;

} // namespace zephmetadataui

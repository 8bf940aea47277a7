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

namespace zephmetadataui {

// Paths, values and the enumerations.
using zephmetadata::Path;
using zephmetadata::Value;
using zephmetadata::PrimitiveType;
using zephmetadata::kPrimitiveInteger;
using zephmetadata::kPrimitiveReal;
using zephmetadata::kPrimitiveText;
using zephmetadata::kPrimitiveBoolean;
using zephmetadata::kPrimitiveOpenChoice;
using zephmetadata::kPrimitiveClosedChoice;
using zephmetadata::kPrimitiveUnorderedArray;
using zephmetadata::kPrimitiveOrderedArray;
using zephmetadata::kPrimitiveAlternative;
using zephmetadata::kPrimitiveStructure;
using zephmetadata::PathStatus;
using zephmetadata::kPathStatusApplicable;
using zephmetadata::kPathStatusWritable;
using zephmetadata::GetValueResult;
using zephmetadata::kGetValueRead;
using zephmetadata::kGetValueMultiple;
using zephmetadata::kGetValueAbsent;
using zephmetadata::StandardSchema;
using zephmetadata::IteratorRange;

// Providers and the scope objects around them.
using zephmetadata::MetaDataProvider;
using zephmetadata::TypicalProviderImpl;
using zephmetadata::BufferProviderImpl;
using zephmetadata::MetaDataReadAccess;
using zephmetadata::MetaDataUpdateAccess;

// Values.
using zephmetadata::GetValue;
using zephmetadata::SetValue;
using zephmetadata::DeleteValue;
using zephmetadata::HasValue;
using zephmetadata::SetMinimalFloatValue;

// Definitions.
using zephmetadata::ChoiceDefinition;
using zephmetadata::ChoiceList;
using zephmetadata::EntryDefinition;
using zephmetadata::PropertyDefinition;
using zephmetadata::FieldDefinition;
using zephmetadata::TypeDefinition;
using zephmetadata::SchemaDefinition;
using zephmetadata::ViewItem;
using zephmetadata::ViewDefinition;
using zephmetadata::PathEntryDefinition;
using zephmetadata::ChildPaths;
using zephmetadata::IsPathOfAnyItem;
using zephmetadata::TypeEntryDefinition;
using zephmetadata::TypeIdDefinition;
using zephmetadata::PrimitiveTypeOfPath;
using zephmetadata::PrimitiveTypeIdAsPrimitiveType;
using zephmetadata::PrimitiveTypeAsPrimitiveTypeId;
using zephmetadata::PrimitiveTypeIsArray;
using zephmetadata::StandardSchemaNamespace;
using zephmetadata::PathForSchemaNameAndPropertyName;

// Process-wide switches.
using zephmetadata::IsAllMetadataForcedWritable;
using zephmetadata::NotifyWhenXMPWritingChanged;

// Dates.
using zephmetadata::XMP_DateTime;
using zephmetadata::ConvertFromDate;

} // namespace zephmetadataui

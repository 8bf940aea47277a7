#pragma once
// The status rules and display text of bound controls, as the rest of the
// library uses them.
// Private to the library: exported only so that its tests can call it.

#include "contracts/Model.h"
#include "zephmetadataui/Control.h"
#include "zephmetadataui/zephmetadataui_export.h"

#include <boost/any.hpp>
#include <boost/optional.hpp>

#include <string>

namespace zephmetadataui
{

// The verdict on a value alone, before a view's display parameter counts.
enum PathEditability
{
    kPathWritable = 0,
    kPathFlaggedReadOnly = 1,
    kPathNotWritable = 2,
    kPathTypeNotEditable = 3,
    kPathNoMetadata = 4,
};

ZEPHMETADATAUI_EXPORT PathEditability QueryPathEditability(Value const& value);
// A definition with a type id other than "rational".
ZEPHMETADATAUI_EXPORT bool HasEditableType(Path const& path);
// True when the provider exists and holds metadata.
ZEPHMETADATAUI_EXPORT bool IsProviderUsable(Value const& value);

// Controls made for a metadata view carry their display parameter in their
// node id: "metadata_view", with "read_only" for read-only presentation.
ZEPHMETADATAUI_EXPORT boost::optional<ControlDisplayParameter>
DisplayParameterFromNodeID(std::string const& nodeID);

// The choice list kept in a control's user data; null if the data holds
// anything else.
ZEPHMETADATAUI_EXPORT ChoiceList const* ChoicesFromUserData(boost::any const& userData);
// The label of the first choice whose value is raw, else raw itself.
ZEPHMETADATAUI_EXPORT UTF16String DisplayTextForChoices(ChoiceList const& choices,
                                                        UTF8String const& raw);
// Raw through the choices of the entry or of its type; empty for no entry or
// no raw value.
ZEPHMETADATAUI_EXPORT UTF16String
DisplayTextForValue(boost::shared_ptr<EntryDefinition> const& entry, UTF8String const& raw);

} // namespace zephmetadataui

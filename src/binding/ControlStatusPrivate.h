#pragma once
// The status rules and display text of bound controls, as the rest of the
// library uses them.

#include "contracts/Model.h"
#include "zephmetadataui/Control.h"

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

PathEditability QueryPathEditability(Value const& value);
// A definition with a type id other than "rational".
bool HasEditableType(Path const& path);
// True when the provider exists and holds metadata.
bool IsProviderUsable(Value const& value);

// Controls made for a metadata view carry their display parameter in their
// node id: "metadata_view", with "read_only" for read-only presentation.
boost::optional<ControlDisplayParameter> DisplayParameterFromNodeID(std::string const& nodeID);

// The choice list kept in a control's user data; null if the data holds
// anything else.
ChoiceList const* ChoicesFromUserData(boost::any const& userData);
// The label of the first choice whose value is raw, else raw itself.
UTF16String DisplayTextForChoices(ChoiceList const& choices, UTF8String const& raw);
// Raw through the choices of the entry or of its type; empty for no entry or
// no raw value.
UTF16String DisplayTextForValue(boost::shared_ptr<EntryDefinition> const& entry,
                                UTF8String const& raw);

} // namespace zephmetadataui

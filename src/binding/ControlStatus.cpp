#include "binding/ControlStatusPrivate.h"

#include "binding/BindingText.h"

namespace zephmetadataui
{

bool HasEditableType(Path const& path)
{
    boost::shared_ptr<EntryDefinition> const entry = PathEntryDefinition(path);
    return entry && entry->typeId && !TextIs(*entry->typeId, "rational");
}

bool IsProviderUsable(Value const& value)
{
    if (!value.provider)
        return false;
    MetaDataReadAccess access(value.provider);
    return *access != nullptr;
}

PathEditability QueryPathEditability(Value const& value)
{
    if (!IsProviderUsable(value))
        return kPathNoMetadata;
    if (value.readOnly)
        return kPathFlaggedReadOnly;
    if (!value.provider->QueryPathStatus(value, kPathStatusWritable))
        return kPathNotWritable;
    return HasEditableType(value) ? kPathWritable : kPathTypeNotEditable;
}

ControlStatus QueryControlStatus(Value const& value,
                                 boost::optional<ControlDisplayParameter> parameter)
{
    PathEditability const editability = QueryPathEditability(value);
    if (IsAllMetadataForcedWritable())
        return kControlStatusEditable;

    switch (editability)
    {
    case kPathWritable:
        return parameter && parameter->read_only ? kControlStatusReadOnly : kControlStatusEditable;
    case kPathFlaggedReadOnly:
    case kPathNotWritable:
        // A view that makes a statement keeps its text fields active.
        return parameter ? kControlStatusReadOnly : kControlStatusDisabled;
    case kPathTypeNotEditable:
    case kPathNoMetadata:
        break;
    }
    return kControlStatusDisabled;
}

bool QueryVisibilityStatus(Value const& value, GetValueResult result)
{
    if (result == kGetValueRead || result == kGetValueMultiple)
        return true;
    if (!IsProviderUsable(value))
        return false;
    return value.provider->QueryPathStatus(value, kPathStatusApplicable);
}

boost::optional<ControlDisplayParameter> DisplayParameterFromNodeID(std::string const& nodeID)
{
    if (nodeID.find("metadata_view") == std::string::npos)
        return boost::none;
    ControlDisplayParameter parameter;
    parameter.read_only = nodeID.find("read_only") != std::string::npos;
    return parameter;
}

ChoiceList const* ChoicesFromUserData(boost::any const& userData)
{
    return boost::any_cast<ChoiceList const>(&userData);
}

UTF16String DisplayTextForChoices(ChoiceList const& choices, UTF8String const& raw)
{
    for (boost::shared_ptr<ChoiceDefinition> const& choice : choices)
        if (choice && choice->value == raw)
            return choice->label;
    return zephcore::UTF8to16(raw);
}

UTF16String DisplayTextForValue(boost::shared_ptr<EntryDefinition> const& entry,
                                UTF8String const& raw)
{
    if (!entry || raw.empty())
        return UTF16String();

    boost::shared_ptr<TypeDefinition> type;
    if (entry->typeId)
        type = TypeIdDefinition(*entry->typeId);
    if (!type && entry->primitiveType)
        type = TypeIdDefinition(PrimitiveTypeAsPrimitiveTypeId(*entry->primitiveType));

    if (!entry->choices.empty())
        return DisplayTextForChoices(entry->choices, raw);
    if (type)
        return DisplayTextForChoices(type->choices, raw);
    return DisplayTextForChoices(ChoiceList(), raw);
}

} // namespace zephmetadataui

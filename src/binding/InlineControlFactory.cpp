#include "zephmetadataui/InlineControlFactory.h"

#include "binding/BindingPrivate.h"
#include "binding/ControlFactoryPrivate.h"
#include "zephmetadataui/ControlFactory.h"

namespace zephmetadataui
{

namespace
{

// A checked cast from the record's view; a mismatch is the caller's error.
template <class T> boost::intrusive_ptr<T> ViewAs(Control const& control)
{
    boost::intrusive_ptr<T> const view = boost::dynamic_pointer_cast<T>(control.view);
    if (!view)
        zephcore::ThrowError(
            1, "$$$/zephcore/utility/Error/InvalidTypeConversion=Invalid type conversion.", 105, 21,
            true);
    return view;
}

} // namespace

boost::shared_ptr<Control> InlineControlFactory(Value const& value,
                                                boost::intrusive_ptr<UI_Node> parent)
{
    return ControlFactory(value, boost::shared_ptr<ViewItem>(), parent, false, MessageCallback());
}

void RefreshControl(Value const& value, boost::shared_ptr<Control> const& control, bool displayOnly)
{
    boost::shared_ptr<EntryDefinition> const entry = PathEntryDefinition(value);
    boost::optional<PrimitiveType> const primitive = PrimitiveTypeOfPath(value);
    if (!entry || !primitive || !control)
        return;
    // A creator's controls are unknown here.
    if (IsControlCreatorRegistered())
        return;

    bool const editing = !displayOnly && !value.readOnly && HasEditableType(value);
    if (!editing && *primitive != kPrimitiveBoolean && !IsAllMetadataForcedWritable())
    {
        UpdateControl(value, ViewAs<UI_StaticText>(*control));
        return;
    }

    switch (*primitive)
    {
    case kPrimitiveInteger:
    case kPrimitiveReal:
        UpdateControl(value, ViewAs<UI_HotTextNumber>(*control));
        break;
    case kPrimitiveText:
    case kPrimitiveUnorderedArray:
    case kPrimitiveOrderedArray:
    case kPrimitiveAlternative:
        // A date edit passes as the text edit it derives from.
        UpdateControl(value, ViewAs<UI_TextEdit>(*control));
        break;
    case kPrimitiveBoolean:
        UpdateControl(value, ViewAs<UI_Checkbox>(*control));
        break;
    case kPrimitiveOpenChoice:
    case kPrimitiveClosedChoice:
        UpdateControl(value, ViewAs<UI_Popup>(*control));
        break;
    default:
        break;
    }
}

} // namespace zephmetadataui

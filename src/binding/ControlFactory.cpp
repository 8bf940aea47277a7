#include "zephmetadataui/ControlFactory.h"

#include "binding/BindingPrivate.h"
#include "binding/BindingText.h"
#include "binding/ControlFactoryPrivate.h"
#include "zephmetadataui/UI_DateTextEdit.h"

#include <boost/bind/bind.hpp>
#include <boost/make_shared.hpp>
#include <boost/range/empty.hpp>

#include <cstdlib>

namespace zephmetadataui
{

namespace
{

// Flags words of text controls: a plain single-line edit, a multi-line one.
unsigned long const kSingleLineTextFlags = 16;
unsigned long const kMultiLineTextFlags = 21;
float const kLineHeight = 19.0f;

using MetadataChangedCallback = boost::shared_ptr<boost::function<void(__XMPMeta__*)>>;
using WritingChangedCallback = boost::shared_ptr<boost::function<void()>>;

// The callables of one bound control. Each copies what it holds before the
// call: Disconnect may empty the very callable that is running.
template <class T> struct UpdateValueCall
{
    Value value;
    boost::intrusive_ptr<T> control;
    void operator()(Message*) const
    {
        Value const keptValue(value);
        boost::intrusive_ptr<T> const keptControl(control);
        UpdateValue(keptValue, keptControl);
    }
};

template <class T> struct UpdateControlCall
{
    Value value;
    boost::intrusive_ptr<T> control;
    void operator()() const
    {
        Value const keptValue(value);
        boost::intrusive_ptr<T> const keptControl(control);
        UpdateControl(keptValue, keptControl);
    }
    void operator()(__XMPMeta__*) const { (*this)(); }
};

// Shows the control, puts it under the parent, registers its callables with
// the control, the provider and the model, and returns the record that undoes
// all of it.
template <class T>
boost::shared_ptr<Control> Wire(boost::intrusive_ptr<T> const& control, Value const& value,
                                MessageCallback const& callback,
                                boost::intrusive_ptr<UI_Node> const& parent, bool updateNow)
{
    control->UI_Show(true);
    if (parent)
        parent->ChildPushBack(control);

    MessageCallback const changed =
        boost::make_shared<boost::function<void(Message*)>>(UpdateValueCall<T>{value, control});
    MetadataChangedCallback const metadataChanged =
        boost::make_shared<boost::function<void(__XMPMeta__*)>>(
            UpdateControlCall<T>{value, control});
    WritingChangedCallback const xmpWritingChanged =
        boost::make_shared<boost::function<void()>>(UpdateControlCall<T>{value, control});

    control->NotifyWhenChanged(changed);
    // The caller's callback comes second: it sees the value already written.
    if (callback)
        control->NotifyWhenChanged(callback);
    if (value.provider)
        value.provider->NotifyWhenMetaDataChanged(metadataChanged);
    NotifyWhenXMPWritingChanged(xmpWritingChanged);

    if (updateNow)
        UpdateControl(value, control);

    return boost::make_shared<Control>(
        control, boost::bind(&Disconnect, changed, metadataChanged, xmpWritingChanged, callback));
}

void SetHeight(UI_Node& node, float height)
{
    node.UI_SetLocalRectF(RectF(0.0f, 0.0f, 0.0f, height));
}

float StarHeight(ViewItem const& item)
{
    UTF8String const size = item.GetHint("size");
    if (TextIs(size, "medium"))
        return 25.0f;
    if (TextIs(size, "large"))
        return 31.0f;
    return kLineHeight;
}

// A decimal number, 0 when missing or not a number.
long HintNumber(ViewItem const& item, char const* name)
{
    std::string const text = zephcore::ToStdString(item.GetHint(name));
    return std::strtol(text.c_str(), nullptr, 10);
}

void MakePopupEditable(UI_Popup& popup)
{
    popup.SetPopupType(1);
    popup.SetEditTextFlags(kSingleLineTextFlags);
    popup.SetEmptyStringsAllowed(true);
}

void FillPopup(UI_Popup& popup, ChoiceList const& choices)
{
    std::vector<UTF16String> labels;
    labels.reserve(choices.size());
    for (boost::shared_ptr<ChoiceDefinition> const& choice : choices)
        labels.push_back(choice ? choice->label : UTF16String());
    popup.SetItems(labels);
    // What UpdateControl and UpdateValue look up.
    popup.SetUserData(boost::any(ChoiceList(choices)));
}

ChoiceList EffectiveChoices(ViewItem const& item)
{
    if (!item.choices.empty())
        return item.choices;
    boost::shared_ptr<EntryDefinition> const entry = PathEntryDefinition(item.GetPath());
    if (!entry)
        return ChoiceList();
    if (!entry->choices.empty())
        return entry->choices;
    if (entry->typeId)
        if (boost::shared_ptr<TypeDefinition> const type = TypeIdDefinition(*entry->typeId))
            return type->choices;
    return ChoiceList();
}

void SetupNumber(UI_HotTextNumber& number, EntryDefinition const& entry,
                 boost::shared_ptr<TypeDefinition> const& type)
{
    number.SetAllowEmptyNumberField(true);
    number.SetUnknownStateText(number.GetUnknownStateText());
    number.SetEditTextFlags(kSingleLineTextFlags);
    if (entry.minValue)
        number.SetMinValue(*entry.minValue);
    else if (type && type->minValue)
        number.SetMinValue(*type->minValue);
    if (entry.maxValue)
        number.SetMaxValue(*entry.maxValue);
    else if (type && type->maxValue)
        number.SetMaxValue(*type->maxValue);
}

boost::shared_ptr<Control> MakeStaticText(Value const& value, ChoiceList const& choices,
                                          boost::intrusive_ptr<UI_Node> const& parent)
{
    boost::intrusive_ptr<UI_StaticText> const text(new UI_StaticText());
    boost::shared_ptr<Control> const control = Wire(text, value, MessageCallback(), parent, false);
    if (!choices.empty())
        text->SetUserData(boost::any(ChoiceList(choices)));
    UpdateControl(value, text);
    return control;
}

boost::shared_ptr<Control> MakePopup(Value const& value, ChoiceList const& choices, bool editable,
                                     MessageCallback const& callback,
                                     boost::intrusive_ptr<UI_Node> const& parent)
{
    boost::intrusive_ptr<UI_Popup> const popup(new UI_Popup(0, 0));
    // Filled before it goes on screen: its list is then made once.
    if (editable)
        MakePopupEditable(*popup);
    FillPopup(*popup, choices);
    boost::shared_ptr<Control> const control = Wire(popup, value, callback, parent, false);
    UpdateControl(value, popup);
    return control;
}

boost::shared_ptr<Control> MakeEditorByTypeId(Value const& value, EntryDefinition const& entry,
                                              ViewItem const& item, bool viewItemGiven,
                                              bool readOnly, MessageCallback const& callback,
                                              boost::intrusive_ptr<UI_Node> const& parent)
{
    if (TextIs(entry.typeId, "url"))
    {
        boost::intrusive_ptr<UI_URLEdit> const edit(new UI_URLEdit(kSingleLineTextFlags));
        return Wire(edit, value, callback, parent, true);
    }
    if (TextIs(entry.typeId, "rating"))
    {
        boost::intrusive_ptr<UI_StarRating> const stars(new UI_StarRating());
        boost::shared_ptr<Control> const control = Wire(stars, value, callback, parent, true);
        SetHeight(*stars, StarHeight(item));
        return control;
    }
    if (TextIs(entry.typeId, "date"))
    {
        boost::intrusive_ptr<UI_DateTextEdit> const date(
            new UI_DateTextEdit(kSingleLineTextFlags, 0));
        boost::shared_ptr<Control> const control = Wire(date, value, callback, parent, false);
        if (viewItemGiven)
            date->UI_SetNodeID("metadata_view");
        if (readOnly)
        {
            date->SetReadOnlyMode(true);
            date->UI_SetNodeID(date->UI_GetNodeID() + ", read_only");
        }
        UpdateControl(value, date);
        return control;
    }
    return boost::shared_ptr<Control>();
}

boost::shared_ptr<Control> MakeEditorByPrimitive(Value const& value, PrimitiveType primitive,
                                                 EntryDefinition const& entry, ViewItem const& item,
                                                 ChoiceList const& choices, bool viewItemGiven,
                                                 bool readOnly, MessageCallback const& callback,
                                                 boost::intrusive_ptr<UI_Node> const& parent)
{
    boost::shared_ptr<TypeDefinition> const type =
        entry.typeId ? TypeIdDefinition(*entry.typeId) : boost::shared_ptr<TypeDefinition>();

    switch (primitive)
    {
    case kPrimitiveInteger:
    {
        boost::intrusive_ptr<UI_HotTextNumber> const number(new UI_HotTextNumber());
        boost::shared_ptr<Control> const control = Wire(number, value, callback, parent, true);
        number->SetInPlaceEditDecimalPlaces(0);
        SetupNumber(*number, entry, type);
        return control;
    }
    case kPrimitiveReal:
    {
        boost::intrusive_ptr<UI_HotTextNumber> const number(new UI_HotTextNumber());
        boost::shared_ptr<Control> const control = Wire(number, value, callback, parent, true);
        number->SetIncrement(0.01);
        number->SetDecimalPlaces(2);
        SetupNumber(*number, entry, type);
        return control;
    }
    case kPrimitiveBoolean:
    {
        boost::intrusive_ptr<UI_Checkbox> const checkbox(new UI_Checkbox());
        boost::shared_ptr<Control> const control = Wire(checkbox, value, callback, parent, true);
        SetHeight(*checkbox, UI_Checkbox::GetDefaultCheckSize());
        return control;
    }
    case kPrimitiveOpenChoice:
        return MakePopup(value, choices, true, callback, parent);
    case kPrimitiveClosedChoice:
        return MakePopup(value, choices, false, callback, parent);
    case kPrimitiveText:
    case kPrimitiveUnorderedArray:
    case kPrimitiveOrderedArray:
    case kPrimitiveAlternative:
    {
        long const lines = HintNumber(item, "multiLines");
        boost::intrusive_ptr<UI_TextEdit> const edit(
            new UI_TextEdit(lines > 1 ? kMultiLineTextFlags : kSingleLineTextFlags, 0));
        boost::shared_ptr<Control> const control = Wire(edit, value, callback, parent, false);
        if (lines > 1)
            SetHeight(*edit, static_cast<float>(lines) * kLineHeight);
        if (viewItemGiven)
            edit->UI_SetNodeID("metadata_view");
        if (readOnly)
        {
            edit->SetReadOnlyMode(true);
            edit->UI_SetNodeID(edit->UI_GetNodeID() + ", read_only");
        }
        UpdateControl(value, edit);
        return control;
    }
    default:
        return boost::shared_ptr<Control>();
    }
}

// A popup shows the choices of the value's definition.
void PrepareForRebind(UI_Popup& popup, Value const& value)
{
    ChoiceList const choices = EffectiveChoices(ViewItem(static_cast<Path const&>(value)));
    ChoiceList const* const shown = boost::any_cast<ChoiceList>(&popup.GetUserData());
    if (!shown || *shown != choices)
        FillPopup(popup, choices);
}
// A text field forgets what it showed before: its undo history, and the
// date field's last good date, which a bad entry would bring back.
void PrepareForRebind(UI_TextEdit& edit, Value const&)
{
    edit.SetValue(UTF16String());
}
void PrepareForRebind(UI_DateTextEdit& date, Value const&)
{
    date.SetValue(UTF16String());
}
void PrepareForRebind(UI_Node&, Value const&) {}

template <class T> bool Rebind(Value const& value, Control& record, MessageCallback const& callback)
{
    auto* const typed = dynamic_cast<T*>(record.view.get());
    if (!typed)
        return false;
    PrepareForRebind(*typed, value);
    if (record.disconnect)
        record.disconnect();
    boost::shared_ptr<Control> const fresh =
        Wire(boost::intrusive_ptr<T>(typed), value, callback, nullptr, true);
    record.disconnect = fresh->disconnect;
    fresh->disconnect.clear();
    return true;
}

} // namespace

std::uintptr_t ControlShapeFor(Value const& value, bool displayOnly)
{
    if (IsControlCreatorRegistered())
        return kShapeUnknown;
    boost::shared_ptr<EntryDefinition> const entry = PathEntryDefinition(value);
    boost::optional<PrimitiveType> const primitive = PrimitiveTypeOfPath(value);
    if (!entry || !primitive || !boost::empty(ChildPaths(value)) || IsPathOfAnyItem(value))
        return 0;
    // Shapes that depend on the definition carry its address, whose low bits
    // are free; the others are small numbers no address takes.
    auto const ofEntry = [&](std::uintptr_t tag)
    { return reinterpret_cast<std::uintptr_t>(entry.get()) | tag; };
    ChoiceList const choices = EffectiveChoices(ViewItem(static_cast<Path const&>(value)));
    bool const editing = (!displayOnly && !value.readOnly && HasEditableType(value)) ||
                         IsAllMetadataForcedWritable() ||
                         (*primitive == kPrimitiveBoolean && choices.empty());
    if (!editing)
        return choices.empty() ? 8 : ofEntry(1);
    if (TextIs(entry->typeId, "url"))
        return 16;
    if (TextIs(entry->typeId, "rating"))
        return 24;
    if (TextIs(entry->typeId, "date"))
        return 32;
    switch (*primitive)
    {
    case kPrimitiveInteger:
        return ofEntry(2);
    case kPrimitiveReal:
        return ofEntry(3);
    case kPrimitiveBoolean:
        return 40;
    case kPrimitiveOpenChoice:
        return 56; // a rebind puts the definition's choices in
    case kPrimitiveClosedChoice:
        return 64;
    case kPrimitiveText:
    case kPrimitiveUnorderedArray:
    case kPrimitiveOrderedArray:
    case kPrimitiveAlternative:
        return 48;
    default:
        return 0;
    }
}

bool RebindControl(Value const& value, Control& control, MessageCallback const& changeCallback)
{
    boost::shared_ptr<EntryDefinition> const entry = PathEntryDefinition(value);
    if (!control.view || !entry || IsControlCreatorRegistered())
        return false;
    control.view->UI_SetToolTip(entry->description, 400.0f);
    // Most derived kinds first; a text that only shows takes no edits.
    return Rebind<UI_DateTextEdit>(value, control, changeCallback) ||
           Rebind<UI_URLEdit>(value, control, changeCallback) ||
           Rebind<UI_TextEdit>(value, control, changeCallback) ||
           Rebind<UI_HotTextNumber>(value, control, changeCallback) ||
           Rebind<UI_StarRating>(value, control, changeCallback) ||
           Rebind<UI_Checkbox>(value, control, changeCallback) ||
           Rebind<UI_Popup>(value, control, changeCallback) ||
           Rebind<UI_StaticText>(value, control, MessageCallback());
}

boost::shared_ptr<Control> ControlFactory(Value const& value, boost::intrusive_ptr<UI_Node> parent,
                                          bool displayOnly, MessageCallback const& changeCallback)
{
    return ControlFactory(value, boost::shared_ptr<ViewItem>(), parent, displayOnly,
                          changeCallback);
}

boost::shared_ptr<Control> ControlFactory(Value const& value, boost::shared_ptr<ViewItem> viewItem,
                                          boost::intrusive_ptr<UI_Node> parent, bool displayOnly,
                                          MessageCallback const& changeCallback)
{
    boost::shared_ptr<EntryDefinition> const entry = PathEntryDefinition(value);
    boost::optional<PrimitiveType> const primitive = PrimitiveTypeOfPath(value);
    if (!entry || !primitive)
        return boost::shared_ptr<Control>();
    // An array of structures, or a field named through one, holds no single
    // value: a text bound to it would replace or delete every item at once.
    if (!boost::empty(ChildPaths(value)) || IsPathOfAnyItem(value))
        return boost::shared_ptr<Control>();

    bool const viewItemGiven = viewItem != nullptr;
    if (!viewItemGiven)
        viewItem = boost::make_shared<ViewItem>(static_cast<Path const&>(value));

    boost::shared_ptr<Control> result;
    if (IsControlCreatorRegistered())
    {
        // A copy: the creator may register another while it runs.
        ControlCreator const creator = // NOLINT(performance-unnecessary-copy-initialization)
            RegisteredControlCreatorSlot();
        result = creator(value, viewItem, parent);
    }

    if (viewItemGiven && !viewItem->format.empty())
    {
        if (TextIs(viewItem->format, "dropdown") && !viewItem->choices.empty())
        {
            bool const open = TextIs(viewItem->GetHint("openChoice"), "true");
            result = MakePopup(value, viewItem->choices, open, changeCallback, parent);
        }
        else if (TextIs(viewItem->format, "rating") && *primitive == kPrimitiveReal)
        {
            boost::intrusive_ptr<UI_StarRating> const stars(new UI_StarRating());
            boost::shared_ptr<Control> const control =
                Wire(stars, value, changeCallback, parent, false);
            SetHeight(*stars, StarHeight(*viewItem));
            UpdateControl(value, stars);
            result = control;
        }
    }

    bool const readOnly = TextIs(viewItem->GetHint("readOnly"), "true");

    if (!result)
    {
        ChoiceList const choices = EffectiveChoices(*viewItem);
        bool const editing =
            (!displayOnly && !readOnly && !value.readOnly && HasEditableType(value)) ||
            IsAllMetadataForcedWritable() || (*primitive == kPrimitiveBoolean && choices.empty()) ||
            (readOnly && *primitive == kPrimitiveText) ||
            (readOnly && PrimitiveTypeIsArray(*primitive));
        if (!editing)
        {
            result = MakeStaticText(value, choices, parent);
        }
        else
        {
            result = MakeEditorByTypeId(value, *entry, *viewItem, viewItemGiven, readOnly,
                                        changeCallback, parent);
            if (!result)
                result = MakeEditorByPrimitive(value, *primitive, *entry, *viewItem, choices,
                                               viewItemGiven, readOnly, changeCallback, parent);
        }
    }

    if (result && result->view)
        result->view->UI_SetToolTip(entry->description, 400.0f);
    return result;
}

} // namespace zephmetadataui

#include "zephmetadataui/RawDataView.h"

#include <zephmetadata/Access.h>
#include <zephmetadata/Provider.h>
#include <zephmetadata/XmpMeta.h>

#include <zephui/UI_StaticText.h>

#include <zephcore/Localizer.h>
#include <zephcore/Strings.h>

#include <boost/make_shared.hpp>

#include <cstring>

namespace zephmetadataui
{

using namespace zephui;
using zephcore::UTF16String;

namespace
{

char const kRawDataLabel[] = "$$$/zephmetadataui/view/RawData_label=Raw Data";
char const kRawDataViewID[] = "com.velmora.xmp.view.rawdata";
// Multi-line, frameless, wrapped, a scroll bar, a monospaced font.
unsigned long const kRawTextFlags = 215;

template <class Node>
boost::intrusive_ptr<Node> AddChild(UI_Node* parent, boost::intrusive_ptr<Node> const& node,
                                    RectF const& rect, unsigned char binding)
{
    node->UI_SetLocalRectF(rect);
    node->UI_SetLayoutBinding(binding);
    node->UI_Show(true);
    parent->ChildPushBack(node);
    return node;
}

} // namespace

RawDataView::RawDataView(boost::shared_ptr<zephmetadata::ViewDefinition> definition,
                         boost::shared_ptr<zephmetadata::MetaDataProvider> provider,
                         RawDataViewOptions options)
    : MetadataLayoutView(std::move(definition), provider), provider(provider), options(options)
{
    UI_SetNodeID("RawDataView");
    changeSubscription = boost::make_shared<boost::function<void(__XMPMeta__*)>>(
        [this](__XMPMeta__*) { Populate(); });
    if (provider)
        provider->NotifyWhenMetaDataChanged(changeSubscription);
}

RawDataView::~RawDataView()
{
    if (provider)
        provider->RemoveMetaDataChangedNotification(changeSubscription);
    for (auto* holder : {&searchChanged, &textTyped})
        if (*holder)
            (*holder)->clear();
}

void RawDataView::Layout()
{
    RectF const r = UI_GetLocalRectF(false);
    if (needsBuild && r.width > 0 && r.height > 0)
        Build();
    else
        Populate();
}

void RawDataView::Build()
{
    needsBuild = false;
    RectF const r = UI_GetLocalRectF(false);
    float top = options.topOffset;
    if (options.showLabel)
    {
        boost::intrusive_ptr<UI_StaticText> label(new UI_StaticText);
        label->SetFontStyleName("Bold");
        label->SetValue(zephcore::Localizer::Get().GetString(kRawDataLabel));
        label->UI_SetToolTip(zephcore::Localizer::Get().GetString(kRawDataLabel), 400);
        AddChild(this, label, RectF(10, top, 120, 19), 0);
    }
    searchBox = AddChild(this, boost::intrusive_ptr<UI_SearchBox>(new UI_SearchBox(false, false)),
                         RectF(r.left + 130, top, r.width - 140, 19), kBindRightEdgeToParentRight);
    searchChanged = boost::make_shared<boost::function<void(Message*)>>(
        [this](Message*) { Search(searchBox->GetValue(), false); });
    searchBox->NotifyWhenChanged(searchChanged);
    searchBox->NotifyWhenChangedInteractively(searchChanged);
    top += 25;

    textBox.reset(new UI_TextEdit(kRawTextFlags, 0));
    textBox->UI_SetLocalRectF(
        RectF(r.left + 10, r.top + top, r.width - 20, r.height - top - options.bottomOffset));
    textBox->UI_SetLayoutBinding(kBindRightEdgeToParentRight | kBindBottomEdgeToParentBottom);
    textBox->UI_Show(true);
    // Typing goes nowhere: the caret goes back to the start.
    textTyped = boost::make_shared<boost::function<void(Message*)>>(
        [this](Message*) { textBox->SetSelection(0, 0); });
    textBox->NotifyWhenChangedInteractively(textTyped);
    Populate();
    ChildPushBack(textBox);
}

void RawDataView::Populate()
{
    zephmetadata::MetaDataReadAccess const access(provider);
    if (!*access || !textBox)
        return;
    std::string packet;
    zephmetadata::xmp::SerializeToBuffer(*access, packet,
                                         zephmetadata::xmp::kSerializeReadableNoWrapper);
    packet.resize(std::strlen(packet.c_str()));
    textBox->SetValue(zephcore::UTF8to16(packet));
    loweredTextStale = true;
    Search(searchBox ? searchBox->GetValue() : UTF16String(), true);
}

void RawDataView::Search(UTF16String const& query, bool force)
{
    if (query == lastQuery && !force)
        return;
    UTF16String const lowered = zephcore::LowerCase(query);
    if (loweredText.empty() || loweredTextStale)
    {
        loweredText = textBox ? zephcore::LowerCase(textBox->GetValue()) : UTF16String();
        loweredTextStale = false;
    }
    matches.clear();
    if (!lowered.empty())
        for (std::size_t at = loweredText.find(lowered); at != UTF16String::npos;
             at = loweredText.find(lowered, at + lowered.size()))
            matches.emplace_back(int(at), int(at + lowered.size()));
    lastQuery = query;
    currentMatch = 0;
    if (!textBox)
        return;
    if (!matches.empty())
    {
        SelectMatch();
    }
    else
    {
        loweredText.clear();
        loweredTextStale = true;
        textBox->SetSelection(0, 0);
        textBox->ScrollToBegin();
    }
}

void RawDataView::SelectMatch()
{
    textBox->SetSelection(matches[std::size_t(currentMatch)]);
    textBox->ScrollToSelection();
}

void RawDataView::Step(bool forward)
{
    if (matches.empty() || !textBox)
        return;
    int const count = int(matches.size());
    currentMatch = forward ? (currentMatch + 1) % count : (currentMatch + count - 1) % count;
    SelectMatch();
}

bool RawDataView::UI_DoKeyboardEvent(UI_Node* node, KeyboardEvent const& event)
{
    if (event.IsActionKeyDown() && event.CompareCode(KeyboardCode(KeyboardCode::kKeyF3)))
    {
        unsigned char const modifiers = event.GetModKey().Get();
        if (modifiers == 0 || modifiers == kModifierShift)
        {
            Step(modifiers == 0);
            return true;
        }
    }
    return MetadataLayoutView::UI_DoKeyboardEvent(node, event);
}

bool RawDataView::UI_DoMouseEvent(UI_Node* node, MouseEvent const& event)
{
    if (event.GetAction() == PointerEvent::kActionWheel && event.GetMouseWheelDelta() != 0.0f &&
        textBox)
    {
        textBox->ScrollTo(event.GetMouseWheelDelta() >= 1.0f);
        return true;
    }
    return MetadataLayoutView::UI_DoMouseEvent(node, event);
}

boost::intrusive_ptr<MetadataLayoutView>
CreateRawDataView(boost::shared_ptr<zephmetadata::ViewDefinition> definition,
                  boost::shared_ptr<zephmetadata::MetaDataProvider> provider,
                  RawDataViewOptions options)
{
    boost::intrusive_ptr<MetadataLayoutView> view(
        new RawDataView(definition, std::move(provider), options));
    if (definition)
        definition->name = zephcore::ToUTF8(kRawDataViewID);
    return view;
}

} // namespace zephmetadataui

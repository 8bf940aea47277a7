#include "ArchiveNodeBuilder.h"

#include "zephui/DrawbotImageResourceCache.h"
#include "zephui/UI_Button.h"
#include "zephui/UI_Checkbox.h"
#include "zephui/UI_Divider.h"
#include "zephui/UI_LayoutView.h"
#include "zephui/UI_ListBox.h"
#include "zephui/UI_MultiColumnTree.h"
#include "zephui/UI_OutlineBox.h"
#include "zephui/UI_Popup.h"
#include "zephui/UI_RadioGroup.h"
#include "zephui/UI_StaticImage.h"
#include "zephui/UI_StaticText.h"
#include "zephui/UI_TextEdit.h"
#include "zephui/UI_TextEdit_MS.h"

#include "zephcore/Localizer.h"

#include <boost/make_shared.hpp>

#include <functional>
#include <map>
#include <optional>
#include <set>

namespace zephui::archive
{

namespace
{

constexpr int kMaxNodeDepth = 32;

std::string Narrow(zephcore::UTF16String const& text)
{
    zephcore::UTF8String const utf8 = zephcore::UTF16to8(text);
    return std::string(utf8.begin(), utf8.end());
}

// One table of the archive read key by key: each key is taken once, and a
// key that nobody took is an error, so a misspelt key never passes unseen.
class Table
{
public:
    Table(PropValue const& value, std::string what) : value(value), what(std::move(what))
    {
        if (value.kind != PropValue::kList)
            Fail(this->what + " is no <prop.list>", value);
    }

    PropValue const* Take(char const* key)
    {
        taken.insert(key);
        return value.Find(key);
    }
    PropValue const& Require(char const* key)
    {
        PropValue const* found = Take(key);
        if (!found)
            Fail(what + " has no '" + key + "'", value);
        return *found;
    }
    PropValue const* Take(char const* key, PropValue::Kind kind)
    {
        PropValue const* found = Take(key);
        if (found && found->kind != kind)
            Fail(what + ": '" + key + "' is no " + KindName(kind), *found);
        return found;
    }
    std::optional<bool> Bool(char const* key)
    {
        PropValue const* found = Take(key, PropValue::kBool);
        return found ? std::optional<bool>(found->flag) : std::nullopt;
    }
    std::optional<double> Number(char const* key)
    {
        PropValue const* found = Take(key);
        if (found && !found->IsNumber())
            Fail(what + ": '" + key + "' is no number", *found);
        return found ? std::optional<double>(found->AsNumber()) : std::nullopt;
    }
    // Narrow or wide text, as wide text.
    std::optional<zephcore::UTF16String> Text(char const* key)
    {
        PropValue const* found = Take(key);
        if (!found)
            return std::nullopt;
        if (found->kind == PropValue::kUString)
            return found->wide;
        if (found->kind == PropValue::kString)
            return zephcore::UTF8to16(found->text);
        Fail(what + ": '" + key + "' is no text", *found);
    }
    std::optional<std::string> NarrowText(char const* key)
    {
        std::optional<zephcore::UTF16String> const text = Text(key);
        return text ? std::optional<std::string>(Narrow(*text)) : std::nullopt;
    }
    // Keys of the form that have no effect on this platform.
    void Pass(std::initializer_list<char const*> keys) { taken.insert(keys.begin(), keys.end()); }
    void CheckAllTaken() const
    {
        for (PropPair const& pair : value.pairs)
            if (taken.count(pair.key) == 0)
                Fail(what + " has the unknown key '" + pair.key + "'", pair.value);
    }
    PropValue const& Value() const { return value; }
    std::string const& What() const { return what; }
    void SetWhat(std::string text) { what = std::move(text); }

private:
    PropValue const& value;
    std::string what;
    std::set<std::string> taken;
};

// A structured value's ".aptype" tag: optional, but the right one if present.
void CheckTag(Table& table, unsigned tag)
{
    if (PropValue const* found = table.Take(".aptype", PropValue::kUnsigned))
        if (found->integer != tag)
            Fail(table.What() + " has the wrong .aptype", *found);
}

RectF ReadRect(PropValue const& value, std::string const& what)
{
    Table table(value, what);
    CheckTag(table, 1);
    auto edge = [&](char const* key)
    {
        table.Require(key);
        return float(*table.Number(key));
    };
    float const left = edge("left");
    float const top = edge("top");
    float const width = edge("width");
    float const height = edge("height");
    table.CheckAllTaken();
    return RectF(left, top, width, height);
}

// The chosen index of an enumerated choice, within [0, count); with names,
// the name of the choice picks it.
int ReadChoice(PropValue const& value, std::string const& what, int count)
{
    Table table(value, what);
    CheckTag(table, 2);
    PropValue const& selected = table.Require("selected");
    if (selected.kind != PropValue::kSigned && selected.kind != PropValue::kUnsigned)
        Fail(what + ": 'selected' is no integer", selected);
    if (PropValue const* items = table.Take("items", PropValue::kArray))
        if (items->itemKind != PropValue::kString && items->itemKind != PropValue::kUString)
            Fail(what + ": 'items' is no array of texts", *items);
    table.CheckAllTaken();
    if (selected.integer < 0 || selected.integer >= count)
        Fail(what + ": choice " + std::to_string(selected.integer) + " is out of range", selected);
    return int(selected.integer);
}

// A binding mask, or the same bits as boolean keys.
Flags<unsigned char> ReadConstraints(PropValue const& value, std::string const& what)
{
    Table table(value, what);
    CheckTag(table, 4);
    Flags<unsigned char> binding;
    if (PropValue const* mask = table.Take("constraints", PropValue::kUnsigned))
    {
        if (mask->integer > 0x0f)
            Fail(what + ": unknown bits in the constraint mask", *mask);
        binding = Flags<unsigned char>(static_cast<unsigned char>(mask->integer));
    }
    static std::pair<char const*, unsigned char> const kBits[] = {
        {"BindLeftEdgeToParentRight", kBindLeftEdgeToParentRight},
        {"BindTopEdgeToParentBottom", kBindTopEdgeToParentBottom},
        {"BindRightEdgeToParentRight", kBindRightEdgeToParentRight},
        {"BindBottomEdgeToParentBottom", kBindBottomEdgeToParentBottom},
        {"CenterHorizontal", kBindCenterHorizontal},
        {"CenterVertical", kBindCenterVertical},
    };
    for (auto const& [key, bit] : kBits)
        if (std::optional<bool> const on = table.Bool(key))
            binding.Set(bit, *on);
    table.CheckAllTaken();
    return binding;
}

std::vector<zephcore::UTF16String> ReadTexts(PropValue const& value, std::string const& what)
{
    if (value.kind != PropValue::kArray || value.itemKind != PropValue::kUString)
        Fail(what + " is no array of <ustring>", value);
    std::vector<zephcore::UTF16String> texts;
    for (PropValue const& item : value.items)
        texts.push_back(item.wide);
    return texts;
}

// A supply function that reads the named image from the archive's resources.
ConstMessageCallback ImageSupply(BuildContext const& context, std::string const& name)
{
    ResourceManager const* resources = context.resources;
    std::shared_ptr<DrawbotImageResourceCache> const images = context.images;
    return boost::make_shared<boost::function<void(ConstMessage*)>>(
        [resources, images, name](ConstMessage* message)
        {
            auto* supply = dynamic_cast<UI_PictureSupplyMessage*>(message);
            if (supply && images)
                supply->SetImage(images->GetImage(resources, supply->GetDrawSupplier(), name,
                                                  kImageFileTypePNG,
                                                  zephcore::ImmutableString::sNullString));
        });
}

// What a node's sections leave to do once all of them are read.
struct Pending
{
    std::vector<PropValue const*> childTables;
    std::optional<bool> layoutChildren;
    std::optional<int> truncation;
    std::optional<bool> multiLine;
};

using SectionReader = std::function<void(UI_Node*, Table&, Pending&, BuildContext const&)>;

template <class T> T* As(UI_Node* node)
{
    return dynamic_cast<T*>(node);
}

void TakeChildren(Table& table, Pending& pending)
{
    if (PropValue const* children = table.Take("children", PropValue::kList))
        pending.childTables.push_back(children);
}

std::map<std::string, SectionReader> const& SectionReaders()
{
    static std::map<std::string, SectionReader> const readers = {
        {"UI_Node",
         [](UI_Node* node, Table& t, Pending&, BuildContext const&)
         {
             if (auto id = t.NarrowText("id"))
                 node->UI_SetNodeID(*id);
             if (PropValue const* bounds = t.Take("bounds"))
                 node->UI_SetLocalRectF(ReadRect(*bounds, "bounds"));
             if (auto tip = t.Text("tooltip"); tip && !tip->empty())
                 node->UI_SetToolTip(ShownText(*tip));
             if (auto visible = t.Bool("visible"))
                 node->UI_Show(*visible);
         }},
        {"UI_SubView",
         [](UI_Node* node, Table& t, Pending& pending, BuildContext const&)
         {
             // A plain subview places its children by their bindings only;
             // stacking children is the layout view's work.
             t.Pass({"AutoLayout", "AutoLayout_Horizontal", "AutoLayout_MaintainMargins",
                     "AutoLayout_ScaleChildren"});
             if (PropValue const* constraints = t.Take("Constraints"))
                 node->UI_SetLayoutBinding(ReadConstraints(*constraints, "Constraints"));
             pending.layoutChildren = t.Bool("LayoutChildren");
             TakeChildren(t, pending);
         }},
        {"UI_LayoutView",
         [](UI_Node* node, Table& t, Pending& pending, BuildContext const&)
         {
             auto* view = As<UI_LayoutView>(node);
             TakeChildren(t, pending);
             std::optional<int> mode;
             if (PropValue const* choice = t.Take("layoutMode"))
                 mode = ReadChoice(*choice, "layoutMode", 2);
             auto const enabled = t.Bool("layoutEnabled");
             auto const margins = t.Bool("maintainMargins");
             auto const scale = t.Bool("scaleChildren");
             if (!view)
                 return;
             if (mode)
                 view->SetLayoutMode(UI_LayoutView::LayoutMode(*mode));
             view->SetMaintainMargins(margins.value_or(false));
             view->SetScaleChildren(scale.value_or(false));
             view->SetLayoutEnabled(enabled.value_or(false));
         }},
        {"UI_ControlView",
         [](UI_Node* node, Table& t, Pending&, BuildContext const&)
         {
             auto* control = As<UI_ControlView>(node);
             auto const down = t.Bool("downState");
             auto const enabled = t.Bool("enabled");
             auto const noFocusRing = t.Bool("suppressFocusDrawing");
             auto const focus = t.Bool("wantsFocus");
             if (!control)
                 return;
             if (down)
                 control->SetDownState(*down);
             if (enabled)
                 control->SetEnabled(*enabled);
             if (noFocusRing)
                 control->SetSuppressFocusDrawing(*noFocusRing);
             if (focus)
                 control->SetWantsKeyboardFocus(*focus);
         }},
        {"UI_InteractiveControlView", [](UI_Node*, Table&, Pending&, BuildContext const&) {}},
        {"UI_Button",
         [](UI_Node* node, Table& t, Pending&, BuildContext const&)
         {
             auto* button = As<UI_Button>(node);
             // Qt draws the button's face, and a click reports on release.
             t.Pass({"contentOffsetX", "contentOffsetY", "cornerRadius", "downOffsetX",
                     "downOffsetY", "strokeSize1", "strokeSize2", "notificationOnMouseDown"});
             auto const focusOnClick = t.Bool("changeFocusOnClick");
             auto const isDefault = t.Bool("defaultAppearance");
             auto const spring = t.Bool("springLoaded");
             if (!button)
                 return;
             if (focusOnClick)
                 button->SetChangeFocusOnClick(*focusOnClick);
             if (isDefault)
                 button->SetDefaultAppearance(*isDefault);
             if (spring)
                 button->SetSpringLoaded(*spring);
         }},
        {"UI_TextButton",
         [](UI_Node* node, Table& t, Pending&, BuildContext const&)
         {
             // Qt centres a push button's text.
             t.Pass({"textIndent"});
             if (PropValue const* alignment = t.Take("textAlignment"))
                 ReadChoice(*alignment, "textAlignment", 3);
             if (auto text = t.Text("text"); text && As<UI_TextButton>(node))
                 As<UI_TextButton>(node)->SetText(ShownText(*text));
         }},
        {"UI_PictureTextButton",
         [](UI_Node* node, Table& t, Pending&, BuildContext const& context)
         {
             auto* button = As<UI_PictureTextButton>(node);
             // The picture is drawn at its own size, beside the text.
             t.Pass({"pictureScaleX", "pictureScaleY", "pictureVerticalOffset", "spacing",
                     "textIndent"});
             std::optional<int> relationship;
             if (PropValue const* choice = t.Take("relationship"))
                 relationship = ReadChoice(*choice, "relationship", 3);
             auto const image = t.NarrowText("imageName");
             auto const text = t.Text("text");
             if (!button)
                 return;
             if (relationship)
                 button->SetImageAndTextAlignment(*relationship);
             if (image && !image->empty())
                 button->SetImageSupplyFunction(ImageSupply(context, *image));
             if (text)
                 button->SetText(ShownText(*text));
         }},
        {"UI_Popup",
         [](UI_Node* node, Table& t, Pending&, BuildContext const&)
         {
             auto* popup = As<UI_Popup>(node);
             // The menu draws its own dividers in the theme's font.
             t.Pass({"drawDivider", "fontSize"});
             auto const always = t.Bool("alwaysNotify");
             std::optional<int> type;
             if (PropValue const* choice = t.Take("popupType"))
                 type = ReadChoice(*choice, "popupType", 2);
             std::vector<zephcore::UTF16String> items;
             if (PropValue const* list = t.Take("popupItems"))
                 items = ReadTexts(*list, "popupItems");
             if (!popup)
                 return;
             if (always)
                 popup->SetAlwaysNotify(*always);
             if (type)
                 popup->SetPopupType(*type);
             for (zephcore::UTF16String& item : items)
                 item = item.empty() ? zephcore::AsciiToUTF16("-") : ShownText(item);
             if (!items.empty())
                 popup->SetItems(items);
         }},
        {"UI_Checkbox",
         [](UI_Node* node, Table& t, Pending&, BuildContext const&)
         {
             auto* box = As<UI_Checkbox>(node);
             // The box and its label take the theme's sizes.
             t.Pass({"checkSize", "fontSize"});
             auto const checked = t.Bool("checked");
             auto const text = t.Text("text");
             if (box && checked)
                 box->SetValue(*checked);
             if (box && text)
                 box->SetText(ShownText(*text));
         }},
        {"UI_RadioButton",
         [](UI_Node* node, Table& t, Pending&, BuildContext const&)
         {
             t.Pass({"fontSize"}); // the theme's font
             if (auto text = t.Text("text"); text && As<UI_RadioButton>(node))
                 As<UI_RadioButton>(node)->SetText(ShownText(*text));
         }},
        {"UI_RadioGroup", [](UI_Node*, Table& t, Pending& pending, BuildContext const&)
         { TakeChildren(t, pending); }},
        {"UI_OutlineBox",
         [](UI_Node*, Table& t, Pending& pending, BuildContext const&)
         {
             t.Pass({"cornerRadius"}); // the outline is square
             TakeChildren(t, pending);
         }},
        {"UI_StaticText",
         [](UI_Node* node, Table& t, Pending& pending, BuildContext const&)
         {
             auto* label = As<UI_StaticText>(node);
             std::optional<int> alignment;
             if (PropValue const* choice = t.Take("alignment"))
                 alignment = ReadChoice(*choice, "alignment", 3);
             if (PropValue const* choice = t.Take("textTruncation"))
                 pending.truncation = ReadChoice(*choice, "textTruncation", 4);
             pending.multiLine = t.Bool("multiLine");
             auto const size = t.Number("fontSize");
             auto const text = t.Text("text");
             if (!label)
                 return;
             if (alignment)
                 label->SetAlignment(*alignment);
             if (size)
                 label->SetCustomFontSize(float(*size));
             if (text)
                 label->SetValue(ShownText(*text));
         }},
        {"UI_StaticImage",
         [](UI_Node* node, Table& t, Pending&, BuildContext const& context)
         {
             auto const image = t.NarrowText("imageName");
             if (auto* view = As<UI_StaticImage>(node); view && image && !image->empty())
             {
                 view->SetImageName(*image);
                 view->SetImageSupplyFunction(ImageSupply(context, *image));
             }
         }},
        {"UI_TextEdit",
         [](UI_Node* node, Table& t, Pending&, BuildContext const&)
         {
             if (auto text = t.Text("text"); text && As<UI_TextEdit>(node))
                 As<UI_TextEdit>(node)->SetValue(ShownText(*text));
         }},
        // The tree takes the focus through its rows.
        {"UI_MultiColumnTree",
         [](UI_Node*, Table& t, Pending&, BuildContext const&) { t.Pass({"wantsFocus"}); }},
        {"UI_ListBox", [](UI_Node*, Table&, Pending&, BuildContext const&) {}},
        {"UI_Divider", [](UI_Node*, Table&, Pending&, BuildContext const&) {}},
        {"UI_TextEdit_MS", [](UI_Node*, Table&, Pending&, BuildContext const&) {}},
    };
    return readers;
}

std::map<std::string, std::function<UI_NodePtr()>> const& Classes()
{
    static std::map<std::string, std::function<UI_NodePtr()>> const classes = {
        {"zephui::controls::UI_SubView", [] { return UI_NodePtr(new UI_SubView); }},
        {"zephui::controls::UI_LayoutView", [] { return UI_NodePtr(new UI_LayoutView); }},
        {"zephui::controls::UI_Button", [] { return UI_NodePtr(new UI_Button); }},
        {"zephui::controls::UI_TextButton", [] { return UI_NodePtr(new UI_TextButton); }},
        {"zephui::controls::UI_PictureTextButton",
         [] { return UI_NodePtr(new UI_PictureTextButton); }},
        {"zephui::controls::UI_Popup", [] { return UI_NodePtr(new UI_Popup); }},
        {"zephui::controls::UI_Checkbox", [] { return UI_NodePtr(new UI_Checkbox); }},
        {"zephui::controls::UI_RadioButton", [] { return UI_NodePtr(new UI_RadioButton); }},
        {"zephui::controls::UI_RadioGroup", [] { return UI_NodePtr(new UI_RadioGroup); }},
        {"zephui::controls::UI_OutlineBox", [] { return UI_NodePtr(new UI_OutlineBox); }},
        {"zephui::controls::UI_StaticText", [] { return UI_NodePtr(new UI_StaticText); }},
        {"zephui::controls::UI_StaticImage", [] { return UI_NodePtr(new UI_StaticImage); }},
        {"zephui::controls::UI_TextEdit", [] { return UI_NodePtr(new UI_TextEdit); }},
        {"zephui::controls::UI_TextEdit_MS", [] { return UI_NodePtr(new UI_TextEdit_MS); }},
        {"zephui::controls::UI_ListBox", [] { return UI_NodePtr(new UI_ListBox); }},
        {"zephui::controls::UI_Divider", [] { return UI_NodePtr(new UI_Divider); }},
        {"zephui::controls::UI_MultiColumnTree",
         []
         {
             boost::intrusive_ptr<UI_MultiColumnTree> tree(
                 new UI_MultiColumnTree(1, UI_MultiColumnTree::GetDefaultRowHeight()));
             tree->Init(UI_MultiColumnTree::kTreeFlagFrame);
             return UI_NodePtr(tree);
         }},
    };
    return classes;
}

// The tables of a numbered list ("count" and "<prefix>0", "<prefix>1", ...),
// in the order of their numbers.
std::vector<PropValue const*> Numbered(PropValue const& value, std::string const& what,
                                       std::string const& prefix)
{
    Table table(value, what);
    PropValue const& count = table.Require("count");
    if (count.kind != PropValue::kUnsigned || count.integer > std::int64_t(value.pairs.size()))
        Fail(what + ": 'count' does not match its entries", count);
    std::vector<PropValue const*> entries;
    for (std::int64_t i = 0; i < count.integer; ++i)
    {
        std::string const key = prefix + std::to_string(i);
        entries.push_back(&table.Require(key.c_str()));
    }
    table.CheckAllTaken();
    return entries;
}

UI_NodePtr BuildNode(PropValue const& value, BuildContext const& context, int depth)
{
    if (depth > kMaxNodeDepth)
        Fail("nodes nested too deeply", value);
    Table table(value, "a node");
    PropValue const& adapter = table.Require("adapter");
    if (adapter.kind != PropValue::kUString)
        Fail("a node's 'adapter' is no <ustring>", adapter);
    auto const make = Classes().find(Narrow(adapter.wide));
    if (make == Classes().end())
        Fail("unknown class '" + Narrow(adapter.wide) + "'", adapter);
    UI_NodePtr node;
    if (PropValue const* name = table.Take("className", PropValue::kUString);
        name && context.creator)
        node = context.creator(name->wide);
    if (!node)
        node = make->second();
    node->UI_Show(true);

    Pending pending;
    for (PropValue const* section : Numbered(table.Require("sections"), "sections", "section-"))
    {
        Table keys(*section, "a section");
        auto const name = keys.NarrowText("sectionName");
        if (!name)
            Fail("a section has no 'sectionName'", *section);
        auto const reader = SectionReaders().find(*name);
        if (reader == SectionReaders().end())
            Fail("unknown section '" + *name + "'", *section);
        keys.SetWhat("the section " + *name);
        reader->second(node.get(), keys, pending, context);
        keys.CheckAllTaken();
    }
    table.CheckAllTaken();

    if (auto* label = As<UI_StaticText>(node.get()))
    {
        if (pending.truncation)
            label->SetTextTruncation(*pending.truncation);
        // Several lines wrap at the width rather than being cut.
        if (pending.multiLine.value_or(false))
            label->SetTextTruncation(kTruncationNone);
    }
    bool const hasChildren = !pending.childTables.empty();
    for (PropValue const* children : pending.childTables)
        for (PropValue const* child : Numbered(*children, "children", "child-"))
            node->ChildPushBack(BuildNode(*child, context, depth + 1));
    // A container moves its children by their bindings unless told not to.
    if (pending.layoutChildren.value_or(hasChildren))
        node->UI_SetLayoutsChildren(true);
    return node;
}

} // namespace

zephcore::UTF16String ShownText(zephcore::UTF16String const& text)
{
    static zephcore::UTF16String const prefix = zephcore::AsciiToUTF16("($$$/");
    if (text.size() > prefix.size() && text.compare(0, prefix.size(), prefix) == 0 &&
        text.back() == u')')
        return zephcore::Localizer::Get().GetString(
            zephcore::UTF16to8(text.substr(1, text.size() - 2)));
    return text;
}

UI_NodePtr BuildArchive(PropValue const& top, BuildContext const& context)
{
    Table table(top, "the top table");
    PropValue const& marker = table.Require("UINodeArchive");
    if (marker.kind != PropValue::kUnsigned || marker.integer != 1)
        Fail("'UINodeArchive' is not the unsigned 1", marker);
    UI_NodePtr root = BuildNode(table.Require("root"), context, 0);
    table.CheckAllTaken();
    return root;
}

} // namespace zephui::archive

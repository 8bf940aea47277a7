#include "DialogBuilder.h"

#include "zepheve/DynamicGroup.h"

#include <zephui/UI_Button.h>
#include <zephui/UI_MultiColumnTree.h>
#include <zephui/UI_Popup.h>
#include <zephui/UI_SearchBox.h>
#include <zephui/UI_StaticText.h>
#include <zephui/UI_TextEdit.h>

#include <zephcore/Localizer.h>

#include <QWidget>

#include <algorithm>

namespace zepheve
{

namespace
{

using zephui::UI_NodePtr;

zephcore::UTF16String Localise(std::string const& text)
{
    if (text.rfind("$$$/", 0) == 0)
        return zephcore::Localizer::Get().GetString(zephcore::ToUTF8(text));
    return zephcore::UTF8to16(text);
}

Qt::Orientations GrowthOf(ScriptElement const& element)
{
    Qt::Orientations grow;
    if (ScriptValue const* bind = element.Find("bind"))
        for (std::string const& word : bind->Words())
            grow |= word == "right" ? Qt::Horizontal : Qt::Vertical;
    return grow;
}

Qt::Alignment AlignmentOf(ScriptValue const& value)
{
    Qt::Alignment alignment;
    for (std::string const& word : value.Words())
    {
        if (word == "left")
            alignment |= Qt::AlignLeft;
        else if (word == "center")
            alignment |= Qt::AlignHCenter;
        else if (word == "right")
            alignment |= Qt::AlignRight;
        else if (word == "top")
            alignment |= Qt::AlignTop;
        else if (word == "middle")
            alignment |= Qt::AlignVCenter;
        else if (word == "bottom")
            alignment |= Qt::AlignBottom;
    }
    return alignment;
}

void ApplyMinimumSize(zephui::UI_Node* node, ScriptElement const& element)
{
    QWidget* widget = node->UI_GetWidget();
    if (!widget)
        return;
    QSize minimum = widget->minimumSize();
    if (ScriptValue const* size = element.Find("min_size"))
    {
        std::vector<float> const n = size->Numbers();
        minimum = QSize(int(n[0]), int(n[1]));
    }
    minimum.setWidth(int(element.NumberOr("min_width", float(minimum.width()))));
    minimum.setHeight(int(element.NumberOr("min_height", float(minimum.height()))));
    widget->setMinimumSize(minimum);
}

// What an element became: the node to place, and its label, if any.
struct Built
{
    UI_NodePtr node;
    boost::intrusive_ptr<zephui::UI_StaticText> label;
};

class Builder
{
public:
    explicit Builder(BuiltDialog& out) : out(out) {}

    Built Build(ScriptElement const& element)
    {
        std::string const& w = element.widget;
        if (w == "zeph_arrangement")
            return {BuildArrangement(element), nullptr};
        if (w == "zeph_ok_cancel_column")
            return {BuildOkCancelColumn(element), nullptr};
        UI_NodePtr control;
        if (w == "zeph_search_box")
            control = new zephui::UI_SearchBox;
        else if (w == "zeph_multi_column_tree")
            control = BuildTree(element);
        else if (w == "zeph_popup")
            control = new zephui::UI_Popup;
        else if (w == "zeph_button")
            control = new zephui::UI_TextButton(Localise(element.TextOr("title", "")));
        else
            control = new zephui::UI_TextEdit;
        Name(control, element.name);
        ApplyMinimumSize(control.get(), element);
        control->UI_Show(true);
        if (element.BoolOr("focus", false) && !focus)
            focus = control;
        if (ScriptValue const* label = element.Find("label"))
            return Labelled(control, Localise(label->text), GrowthOf(element));
        return {control, nullptr};
    }

    // Gives the focus at start to the control the script marks.
    void PlaceFocus()
    {
        if (focus)
            focus->UI_GainKeyboardFocus(zephui::kFocusReasonProgram);
    }

private:
    void Name(UI_NodePtr const& node, std::string const& name)
    {
        if (name.empty())
            return;
        node->UI_SetNodeID(name);
        out.nodes[name] = node;
    }

    UI_NodePtr BuildArrangement(ScriptElement const& element)
    {
        bool const row = element.TextOr("placement", "column") == "row";
        DynamicGroupPtr group(
            new DynamicGroup(row ? DynamicGroup::kPlaceRow : DynamicGroup::kPlaceColumn));
        Name(group, element.name);
        std::vector<float> spacing{6.0f};
        if (ScriptValue const* v = element.Find("spacing"))
            spacing = v->Numbers();
        group->SetSpacing(spacing.front(), spacing.back());
        std::vector<float> margin{0.0f};
        if (ScriptValue const* v = element.Find("margin"))
            margin = v->Numbers();
        float const all = margin.front();
        bool const four = margin.size() == 4;
        group->SetMargins(element.NumberOr("margin_left", four ? margin[0] : all),
                          element.NumberOr("margin_top", four ? margin[1] : all),
                          element.NumberOr("margin_right", four ? margin[2] : all),
                          element.NumberOr("margin_bottom", four ? margin[3] : all));
        if (ScriptValue const* align = element.Find("align"))
            group->SetAlignment(AlignmentOf(*align));
        ApplyMinimumSize(group.get(), element);
        group->UI_Show(true);

        std::vector<boost::intrusive_ptr<zephui::UI_StaticText>> labels;
        for (ScriptElement const& child : element.children)
        {
            Built built = Build(child);
            group->AddChild(built.node, GrowthOf(child));
            if (built.label)
                labels.push_back(built.label);
        }
        if (!row)
            EqualiseLabelWidths(labels);
        return group;
    }

    // Labels of fields one above the other take one width, so the fields line up.
    static void
    EqualiseLabelWidths(std::vector<boost::intrusive_ptr<zephui::UI_StaticText>> const& labels)
    {
        int width = 0;
        for (auto const& label : labels)
            if (QWidget const* widget = label->UI_GetWidget())
                width = std::max(width, widget->sizeHint().width());
        for (auto const& label : labels)
            if (QWidget* widget = label->UI_GetWidget())
                widget->setMinimumWidth(width);
    }

    Built Labelled(UI_NodePtr const& control, zephcore::UTF16String const& text,
                   Qt::Orientations grow)
    {
        DynamicGroupPtr row(new DynamicGroup(DynamicGroup::kPlaceRow));
        row->SetSpacing(6.0f, 6.0f);
        row->SetAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        row->UI_Show(true);
        boost::intrusive_ptr<zephui::UI_StaticText> label(new zephui::UI_StaticText(text));
        label->SetAlignment(zephui::kAlignRight);
        label->UI_Show(true);
        row->AddChild(label);
        row->AddChild(control, grow);
        return {row, label};
    }

    UI_NodePtr BuildTree(ScriptElement const& element)
    {
        boost::intrusive_ptr<zephui::UI_MultiColumnTree> tree(
            new zephui::UI_MultiColumnTree(1, 0.0f));
        tree->Init(zephui::UI_MultiColumnTree::kTreeFlagFrame);
        // Rows of checkboxes are ticked, not selected.
        tree->SetSupportUserSelectableRows(!element.BoolOr("checkboxes", false));
        return tree;
    }

    UI_NodePtr BuildOkCancelColumn(ScriptElement const& element)
    {
        DynamicGroupPtr column(new DynamicGroup(DynamicGroup::kPlaceColumn));
        column->SetSpacing(6.0f, 6.0f);
        column->UI_Show(true);
        char const* const keys[][2] = {
            {"okButton", "$$$/zepheve/OkCancelColumn/OK=OK"},
            {"cancelButton", "$$$/zepheve/OkCancelColumn/Cancel=Cancel"}};
        std::vector<UI_NodePtr> buttons;
        int width = 0;
        for (auto const& key : keys)
        {
            UI_NodePtr button(new zephui::UI_TextButton(Localise(key[1])));
            Name(button, key[0]);
            ApplyMinimumSize(button.get(), element);
            button->UI_Show(true);
            if (QWidget const* widget = button->UI_GetWidget())
                width =
                    std::max(width, widget->sizeHint().expandedTo(widget->minimumSize()).width());
            buttons.push_back(button);
        }
        // Both as wide as the wider one; by their minimum, as growing would
        // make the column grow too.
        for (UI_NodePtr const& button : buttons)
        {
            if (QWidget* widget = button->UI_GetWidget())
                widget->setMinimumWidth(width);
            column->AddChild(button);
        }
        return column;
    }

    BuiltDialog& out;
    UI_NodePtr focus;
};

} // namespace

BuiltDialog BuildDialog(LayoutScript const& script, zephui::UI_Node* parent)
{
    ScriptElement const& d = script.dialog;
    BuiltDialog out;
    out.dialog = new EveDialog(Localise(d.TextOr("name", script.layoutName)), parent);
    EveDialog& dialog = *out.dialog;
    dialog.UI_SetNodeID(d.TextOr("identifier", script.layoutName));
    dialog.UI_GetWidget();
    dialog.SetSpacing(d.NumberOr("spacing", 10.0f));
    std::vector<float> margin{10.0f};
    if (ScriptValue const* v = d.Find("margin"))
        margin = v->Numbers();
    if (margin.size() == 4)
        dialog.SetMargins(margin[0], margin[1], margin[2], margin[3]);
    else
        dialog.SetMargins(margin[0], margin[0], margin[0], margin[0]);

    Builder builder(out);
    bool const resizeChildren = d.BoolOr("resize_children", false);
    for (ScriptElement const& child : d.children)
        dialog.AddChild(builder.Build(child).node,
                        resizeChildren ? Qt::Horizontal | Qt::Vertical : GrowthOf(child));

    zephui::PointF const natural = dialog.GetNaturalSize();
    dialog.SetContentSize(natural.x, natural.y);
    if (d.BoolOr("resizable", false))
    {
        zephui::PointF const least = dialog.GetMinimumContentSize();
        dialog.SetMinimumSize(least.x, least.y);
    }
    else
    {
        dialog.SetMinimumSize(natural.x, natural.y);
        dialog.SetMaximumSize(natural.x, natural.y);
    }
    dialog.LayOut();
    builder.PlaceFocus();
    return out;
}

} // namespace zepheve

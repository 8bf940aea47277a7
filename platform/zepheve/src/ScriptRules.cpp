#include "ScriptRules.h"

#include <algorithm>
#include <cstring>

namespace zepheve
{

namespace
{

enum class ValueRule
{
    kNumber,  // 0 to 100000
    kBool,    // true or false
    kText,    // a quoted text
    kName,    // a quoted text or a word
    kSize,    // [width, height]
    kSpacing, // a number, or [horizontal, vertical]
    kMargin,  // a number, or [left, top, right, bottom]
    kPlacement,
    kAlign,
    kBind,
    kScroll,
};

struct AttributeRule
{
    char const* name;
    ValueRule rule;
};

AttributeRule const kAttributes[] = {
    {"identifier", ValueRule::kName},     {"name", ValueRule::kText},
    {"title", ValueRule::kText},          {"label", ValueRule::kText},
    {"spacing", ValueRule::kSpacing},     {"margin", ValueRule::kMargin},
    {"margin_left", ValueRule::kNumber},  {"margin_top", ValueRule::kNumber},
    {"margin_right", ValueRule::kNumber}, {"margin_bottom", ValueRule::kNumber},
    {"resizable", ValueRule::kBool},      {"resize_children", ValueRule::kBool},
    {"placement", ValueRule::kPlacement}, {"align", ValueRule::kAlign},
    {"bind", ValueRule::kBind},           {"min_width", ValueRule::kNumber},
    {"min_height", ValueRule::kNumber},   {"min_size", ValueRule::kSize},
    {"focus", ValueRule::kBool},          {"checkboxes", ValueRule::kBool},
    {"scroll", ValueRule::kScroll},
};

struct WidgetRule
{
    char const* widget;
    bool holdsWidgets;
    bool named; // may carry a name
    std::vector<char const*> attributes;
};

#define ZEPH_EVE_PLACED "bind", "min_width", "min_height", "min_size"

WidgetRule const kWidgets[] = {
    {"zeph_dialog",
     true,
     false,
     {"identifier", "name", "spacing", "margin", "resizable", "resize_children"}},
    {"zeph_arrangement",
     true,
     true,
     {"placement", "spacing", "margin", "margin_left", "margin_top", "margin_right",
      "margin_bottom", "align", ZEPH_EVE_PLACED}},
    {"zeph_search_box", false, true, {"focus", ZEPH_EVE_PLACED}},
    {"zeph_multi_column_tree", false, true, {"checkboxes", "scroll", "focus", ZEPH_EVE_PLACED}},
    {"zeph_popup", false, true, {"label", "focus", ZEPH_EVE_PLACED}},
    {"zeph_button", false, true, {"title", "focus", ZEPH_EVE_PLACED}},
    {"zeph_text_edit", false, true, {"label", "focus", ZEPH_EVE_PLACED}},
    {"zeph_ok_cancel_column", false, false, {ZEPH_EVE_PLACED}},
};

#undef ZEPH_EVE_PLACED

bool Is(std::string const& a, char const* b)
{
    return std::strcmp(a.c_str(), b) == 0;
}

[[noreturn]] void Fail(ScriptPosition at, std::string const& reason)
{
    throw LayoutScriptError(at, reason);
}

void CheckNumber(ScriptValue const& value, std::string const& attribute)
{
    if (value.kind != ScriptValue::kNumber)
        Fail(value.at, "'" + attribute + "' needs a number");
    if (value.number < 0.0 || value.number > 100000.0)
        Fail(value.at, "'" + attribute + "' needs a number from 0 to 100000");
}

void CheckNumbers(ScriptValue const& value, std::string const& attribute,
                  std::vector<std::size_t> const& counts, char const* form)
{
    if (value.kind == ScriptValue::kList)
    {
        if (std::find(counts.begin(), counts.end(), value.items.size()) == counts.end())
            Fail(value.at, "'" + attribute + "' needs " + form);
        for (ScriptValue const& item : value.items)
            CheckNumber(item, attribute);
        return;
    }
    if (std::find(counts.begin(), counts.end(), 1) == counts.end())
        Fail(value.at, "'" + attribute + "' needs " + form);
    CheckNumber(value, attribute);
}

// A word of `allowed`, or a list of them; `groups` says which words exclude
// each other (one per group).
void CheckWords(ScriptValue const& value, std::string const& attribute,
                std::vector<std::vector<char const*>> const& groups, bool list)
{
    std::vector<ScriptValue> const single{value};
    std::vector<ScriptValue> const& items = value.kind == ScriptValue::kList ? value.items : single;
    if (value.kind == ScriptValue::kList && (!list || items.empty()))
        Fail(value.at, "'" + attribute + "' needs " + (list ? "at least one word" : "one word"));
    std::vector<int> used(groups.size(), 0);
    for (ScriptValue const& item : items)
    {
        std::string allowed;
        int group = -1;
        for (std::size_t g = 0; g < groups.size(); ++g)
            for (char const* word : groups[g])
            {
                allowed += allowed.empty() ? word : std::string(", ") + word;
                if (item.kind == ScriptValue::kWord && Is(item.text, word))
                    group = int(g);
            }
        if (group < 0)
        {
            std::string reason = "'" + attribute + "' takes ";
            reason += allowed;
            Fail(item.at, reason);
        }
        if (++used[std::size_t(group)] > 1)
            Fail(item.at, "'" + attribute + "' says '" + item.text + "' after another word " +
                              "of the same direction");
    }
}

void CheckValue(ScriptAttribute const& attribute, ValueRule rule)
{
    ScriptValue const& v = attribute.value;
    std::string const& n = attribute.name;
    switch (rule)
    {
    case ValueRule::kNumber:
        CheckNumber(v, n);
        return;
    case ValueRule::kBool:
        if (v.kind != ScriptValue::kWord || !(Is(v.text, "true") || Is(v.text, "false")))
            Fail(v.at, "'" + n + "' needs true or false");
        return;
    case ValueRule::kText:
        if (v.kind != ScriptValue::kText)
            Fail(v.at, "'" + n + "' needs a quoted text");
        return;
    case ValueRule::kName:
        if (v.kind != ScriptValue::kText && v.kind != ScriptValue::kWord)
            Fail(v.at, "'" + n + "' needs a word or a quoted text");
        return;
    case ValueRule::kSize:
        CheckNumbers(v, n, {2}, "[width, height]");
        return;
    case ValueRule::kSpacing:
        CheckNumbers(v, n, {1, 2}, "a number or [horizontal, vertical]");
        return;
    case ValueRule::kMargin:
        CheckNumbers(v, n, {1, 4}, "a number or [left, top, right, bottom]");
        return;
    case ValueRule::kPlacement:
        CheckWords(v, n, {{"row", "column"}}, false);
        return;
    case ValueRule::kAlign:
        CheckWords(v, n, {{"left", "center", "right"}, {"top", "middle", "bottom"}}, true);
        return;
    case ValueRule::kBind:
        CheckWords(v, n, {{"right"}, {"bottom"}}, true);
        return;
    case ValueRule::kScroll:
        CheckWords(v, n, {{"vertical"}}, false);
        return;
    }
}

WidgetRule const* FindWidget(std::string const& widget)
{
    for (WidgetRule const& rule : kWidgets)
        if (Is(widget, rule.widget))
            return &rule;
    return nullptr;
}

} // namespace

void CheckWidget(std::string const& widget, ScriptPosition at, bool isRoot)
{
    if (!FindWidget(widget))
        Fail(at, "unknown widget '" + widget + "'");
    bool const isDialog = Is(widget, "zeph_dialog");
    if (isRoot && !isDialog)
        Fail(at, "a layout holds one zeph_dialog, not " + widget);
    if (!isRoot && isDialog)
        Fail(at, "zeph_dialog can only be the outermost widget");
}

void CheckName(std::string const& widget, ScriptPosition at)
{
    if (!FindWidget(widget)->named)
        Fail(at, widget + " takes no name");
}

void CheckAttribute(std::string const& widget, ScriptAttribute const& attribute)
{
    WidgetRule const* rule = FindWidget(widget);
    if (std::none_of(rule->attributes.begin(), rule->attributes.end(),
                     [&](char const* name) { return Is(attribute.name, name); }))
        Fail(attribute.at, "unknown attribute '" + attribute.name + "' for " + widget);
    for (AttributeRule const& a : kAttributes)
        if (Is(attribute.name, a.name))
            CheckValue(attribute, a.rule);
}

void CheckChild(std::string const& widget, ScriptPosition at)
{
    if (!FindWidget(widget)->holdsWidgets)
        Fail(at, widget + " holds no widgets");
}

std::vector<std::string> ImpliedNames(ScriptElement const& element)
{
    if (Is(element.widget, "zeph_ok_cancel_column"))
        return {"okButton", "cancelButton"};
    return {};
}

} // namespace zepheve

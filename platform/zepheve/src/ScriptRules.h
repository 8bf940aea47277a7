#pragma once
// What a layout script may say: the widgets, which attributes each takes,
// and the kind of value each attribute needs. The parser checks every element
// against these rules, so the builder can trust what it reads.

#include "zepheve/LayoutScript.h"

namespace zepheve
{

// Each throws LayoutScriptError when the script breaks a rule, as soon as
// the parser has read the part concerned, so the first fault in the text is
// the one reported.
// A known widget, and zeph_dialog only as the outermost one.
void CheckWidget(std::string const& widget, ScriptPosition at, bool isRoot);
// A name only on widgets that take one.
void CheckName(std::string const& widget, ScriptPosition at);
// An attribute the widget takes, with a value of the right kind.
void CheckAttribute(std::string const& widget, ScriptAttribute const& attribute);
// Children only in widgets that hold some.
void CheckChild(std::string const& widget, ScriptPosition at);

// The names that a widget brings without being named in the script.
std::vector<std::string> ImpliedNames(ScriptElement const& element);

// The deepest nesting of elements a script may have.
constexpr int kMaximumDepth = 64;

} // namespace zepheve

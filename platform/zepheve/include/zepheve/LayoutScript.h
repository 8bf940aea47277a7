#pragma once
// Layout scripts: the text form of a dialog, parsed into a tree of elements.
// The grammar, the widgets and their attributes are in docs/layout-scripts.md.
// ParseLayoutScript checks syntax and meaning (known widgets, known
// attributes, values of the right kind, unique names) and throws a
// LayoutScriptError that names the line and column of the first fault.

#include "zepheve/zepheve_export.h"

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zepheve
{

// 1-based; columns count characters, not bytes.
struct ScriptPosition
{
    int line = 1;
    int column = 1;
};

class ZEPHEVE_EXPORT LayoutScriptError : public std::runtime_error
{
public:
    LayoutScriptError(ScriptPosition at, std::string const& reason);
    int GetLine() const { return at.line; }
    int GetColumn() const { return at.column; }
    // The message without its position.
    std::string const& GetReason() const { return reason; }

private:
    ScriptPosition at;
    std::string reason;
};

// A value: a number, a quoted text, a bare word, or a bracketed list of these.
struct ZEPHEVE_EXPORT ScriptValue
{
    enum Kind
    {
        kNumber,
        kText,
        kWord,
        kList
    };
    Kind kind = kNumber;
    double number = 0.0;
    std::string text; // text and word
    std::vector<ScriptValue> items;
    ScriptPosition at;

    // The value as numbers: one for a number, each item's for a list of numbers.
    std::vector<float> Numbers() const;
    // The value as words: one for a word, each item's for a list of words.
    std::vector<std::string> Words() const;
};

struct ZEPHEVE_EXPORT ScriptAttribute
{
    std::string name;
    ScriptValue value;
    ScriptPosition at;
};

struct ZEPHEVE_EXPORT ScriptElement
{
    std::string widget;
    std::string name; // empty for an unnamed element
    ScriptPosition at;
    std::vector<ScriptAttribute> attributes;
    std::vector<ScriptElement> children;

    // Null when the element doesn't set it.
    ScriptValue const* Find(std::string_view attribute) const;
    float NumberOr(std::string_view attribute, float fallback) const;
    bool BoolOr(std::string_view attribute, bool fallback) const;
    std::string TextOr(std::string_view attribute, std::string const& fallback) const;
};

struct ZEPHEVE_EXPORT LayoutScript
{
    std::string layoutName;
    ScriptElement dialog;
};

// Parses and checks a whole script. Text after a zero byte is ignored, so a
// resource loaded with a terminating zero parses as it is.
ZEPHEVE_EXPORT LayoutScript ParseLayoutScript(std::string_view text);

} // namespace zepheve

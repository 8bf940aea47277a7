#include "zepheve/LayoutScript.h"

#include "ScriptLexer.h"
#include "ScriptRules.h"

#include <map>
#include <utility>

namespace zepheve
{

namespace
{

std::string Where(ScriptPosition at)
{
    return "line " + std::to_string(at.line) + ", column " + std::to_string(at.column);
}

// script    = "layout" word element
// element   = word [ word | text ] "{" { attribute | element } "}"
// attribute = word ":" value [ ";" ]
// value     = scalar | "[" [ scalar { "," scalar } ] "]"
class Parser
{
public:
    explicit Parser(std::string_view text) : lexer(text) { Read(); }

    LayoutScript Parse()
    {
        LayoutScript script;
        if (token.kind != Token::kWord || token.text != "layout")
            Fail("a script starts with 'layout' and its name, not " + token.Describe());
        Read();
        if (token.kind != Token::kWord)
            Fail("'layout' needs a name, not " + token.Describe());
        script.layoutName = token.text;
        Read();
        if (token.kind != Token::kWord)
            Fail("expected the zeph_dialog, not " + token.Describe());
        Token const widget = token;
        Read();
        script.dialog = ParseElement(widget, 0);
        if (token.kind != Token::kEnd)
            Fail("nothing may follow the dialog, but " + token.Describe() + " does");
        return script;
    }

private:
    void Read() { token = lexer.Next(); }

    [[noreturn]] void Fail(std::string const& reason) const
    {
        throw LayoutScriptError(token.at, reason);
    }

    void Expect(char mark, char const* what)
    {
        if (!token.IsMark(mark))
            Fail(std::string("expected ") + what + ", not " + token.Describe());
        Read();
    }

    // The element whose widget word was just read.
    ScriptElement ParseElement(Token const& widget, int depth)
    {
        ScriptElement element;
        element.widget = widget.text;
        element.at = widget.at;
        if (depth >= kMaximumDepth)
            throw LayoutScriptError(widget.at, "widgets are nested too deeply");
        CheckWidget(element.widget, element.at, depth == 0);
        if (token.kind == Token::kWord || token.kind == Token::kText)
        {
            CheckName(element.widget, token.at);
            if (token.text.empty())
                Fail("a name can't be empty");
            element.name = token.text;
            Read();
        }
        CheckNames(element);
        if (!token.IsMark('{'))
            Fail("expected '{' after " + element.widget + ", not " + token.Describe());
        Token const open = token;
        Read();
        while (!token.IsMark('}'))
        {
            if (token.kind == Token::kEnd)
                throw LayoutScriptError(open.at, "this '{' is never closed");
            if (token.kind != Token::kWord)
                Fail("expected an attribute, a widget or '}', not " + token.Describe());
            Token const word = token;
            Read();
            if (token.IsMark(':'))
            {
                Read();
                ScriptAttribute attribute{word.text, ParseValue(), word.at};
                if (element.Find(attribute.name))
                    throw LayoutScriptError(word.at, "'" + word.text + "' is given twice");
                CheckAttribute(element.widget, attribute);
                element.attributes.push_back(std::move(attribute));
                if (token.IsMark(';'))
                    Read();
            }
            else
            {
                CheckChild(element.widget, word.at);
                element.children.push_back(ParseElement(word, depth + 1));
            }
        }
        Read();
        return element;
    }

    ScriptValue ParseValue()
    {
        if (token.IsMark('['))
        {
            ScriptValue list;
            list.kind = ScriptValue::kList;
            list.at = token.at;
            Read();
            while (!token.IsMark(']'))
            {
                if (!list.items.empty())
                    Expect(',', "',' or ']'");
                list.items.push_back(ParseScalar());
                if (list.items.size() > 16)
                    Fail("a list holds at most 16 values");
            }
            Read();
            return list;
        }
        return ParseScalar();
    }

    ScriptValue ParseScalar()
    {
        ScriptValue value;
        value.at = token.at;
        switch (token.kind)
        {
        case Token::kNumber:
            value.kind = ScriptValue::kNumber;
            value.number = token.number;
            break;
        case Token::kText:
            value.kind = ScriptValue::kText;
            value.text = token.text;
            break;
        case Token::kWord:
            value.kind = ScriptValue::kWord;
            value.text = token.text;
            break;
        default:
            Fail("expected a value, not " + token.Describe());
        }
        Read();
        return value;
    }

    void CheckNames(ScriptElement const& element)
    {
        std::vector<std::string> names = ImpliedNames(element);
        if (!element.name.empty())
            names.push_back(element.name);
        for (std::string const& name : names)
        {
            auto const [it, added] = namesSeen.emplace(name, element.at);
            if (!added)
                throw LayoutScriptError(element.at, "the name '" + name + "' is already used at " +
                                                        Where(it->second));
        }
    }

    ScriptLexer lexer;
    Token token;
    std::map<std::string, ScriptPosition> namesSeen;
};

} // namespace

LayoutScriptError::LayoutScriptError(ScriptPosition at, std::string const& reason)
    : std::runtime_error(Where(at) + ": " + reason), at(at), reason(reason)
{
}

std::vector<float> ScriptValue::Numbers() const
{
    std::vector<float> numbers;
    if (kind == kNumber)
        numbers.push_back(float(number));
    for (ScriptValue const& item : items)
        if (item.kind == kNumber)
            numbers.push_back(float(item.number));
    return numbers;
}

std::vector<std::string> ScriptValue::Words() const
{
    std::vector<std::string> words;
    if (kind == kWord)
        words.push_back(text);
    for (ScriptValue const& item : items)
        if (item.kind == kWord)
            words.push_back(item.text);
    return words;
}

ScriptValue const* ScriptElement::Find(std::string_view attribute) const
{
    for (ScriptAttribute const& a : attributes)
        if (a.name == attribute)
            return &a.value;
    return nullptr;
}

float ScriptElement::NumberOr(std::string_view attribute, float fallback) const
{
    ScriptValue const* v = Find(attribute);
    return v && v->kind == ScriptValue::kNumber ? float(v->number) : fallback;
}

bool ScriptElement::BoolOr(std::string_view attribute, bool fallback) const
{
    ScriptValue const* v = Find(attribute);
    return v && v->kind == ScriptValue::kWord ? v->text == "true" : fallback;
}

std::string ScriptElement::TextOr(std::string_view attribute, std::string const& fallback) const
{
    ScriptValue const* v = Find(attribute);
    return v && (v->kind == ScriptValue::kText || v->kind == ScriptValue::kWord) ? v->text
                                                                                 : fallback;
}

LayoutScript ParseLayoutScript(std::string_view text)
{
    return Parser(text).Parse();
}

} // namespace zepheve

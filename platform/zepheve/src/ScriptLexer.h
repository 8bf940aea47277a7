#pragma once
// Tokens of a layout script: words, quoted texts, numbers and the marks
// { } [ ] : , ; — with "#" comments to the end of the line.

#include "zepheve/LayoutScript.h"

#include <string>
#include <string_view>

namespace zepheve
{

struct Token
{
    enum Kind
    {
        kEnd,
        kWord,
        kText,
        kNumber,
        kMark
    };
    Kind kind = kEnd;
    std::string text; // the word, the unescaped text, the number's digits or the mark
    double number = 0.0;
    ScriptPosition at;

    bool IsMark(char mark) const { return kind == kMark && text.size() == 1 && text[0] == mark; }
    // How the token reads in a message.
    std::string Describe() const;
};

class ScriptLexer
{
public:
    explicit ScriptLexer(std::string_view text);
    // The next token; throws LayoutScriptError on a character that starts none.
    Token Next();

private:
    char Peek(std::size_t ahead = 0) const;
    void Advance();
    void SkipSpaceAndComments();
    Token ReadText();
    Token ReadNumber();

    std::string_view text;
    std::size_t offset = 0;
    ScriptPosition at;
};

} // namespace zepheve

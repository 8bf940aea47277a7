#include "ScriptLexer.h"

namespace zepheve
{

namespace
{

bool IsWordStart(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool IsWordPart(char c)
{
    return IsWordStart(c) || (c >= '0' && c <= '9');
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

} // namespace

std::string Token::Describe() const
{
    switch (kind)
    {
    case kEnd:
        return "the end of the script";
    case kWord:
        return "'" + text + "'";
    case kText:
        return "a text";
    case kNumber:
        return "the number " + text;
    case kMark:
        break;
    }
    return "'" + text + "'";
}

ScriptLexer::ScriptLexer(std::string_view all) : text(all.substr(0, all.find('\0'))) {}

char ScriptLexer::Peek(std::size_t ahead) const
{
    return offset + ahead < text.size() ? text[offset + ahead] : '\0';
}

void ScriptLexer::Advance()
{
    char const c = text[offset++];
    if (c == '\n')
    {
        ++at.line;
        at.column = 1;
    }
    else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80)
    {
        // UTF-8 continuation bytes belong to the character before them.
        ++at.column;
    }
}

void ScriptLexer::SkipSpaceAndComments()
{
    while (offset < text.size())
    {
        char const c = Peek();
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n')
            Advance();
        else if (c == '#')
            while (offset < text.size() && Peek() != '\n')
                Advance();
        else
            return;
    }
}

Token ScriptLexer::Next()
{
    SkipSpaceAndComments();
    Token token;
    token.at = at;
    if (offset >= text.size())
        return token;
    char const c = Peek();
    if (IsWordStart(c))
    {
        token.kind = Token::kWord;
        while (IsWordPart(Peek()))
        {
            token.text += Peek();
            Advance();
        }
        return token;
    }
    if (c == '"')
        return ReadText();
    if (IsDigit(c) || (c == '-' && IsDigit(Peek(1))))
        return ReadNumber();
    if (c == '{' || c == '}' || c == '[' || c == ']' || c == ':' || c == ',' || c == ';')
    {
        token.kind = Token::kMark;
        token.text = std::string(1, c);
        Advance();
        return token;
    }
    if (static_cast<unsigned char>(c) < 0x20 || static_cast<unsigned char>(c) >= 0x7F)
        throw LayoutScriptError(at, "unexpected character with code " +
                                        std::to_string(static_cast<unsigned char>(c)));
    throw LayoutScriptError(at, std::string("unexpected character '") + c + "'");
}

Token ScriptLexer::ReadText()
{
    Token token;
    token.kind = Token::kText;
    token.at = at;
    Advance(); // the opening quote
    while (true)
    {
        if (offset >= text.size() || Peek() == '\n')
            throw LayoutScriptError(token.at, "text without its closing quote");
        char const c = Peek();
        if (c == '"')
        {
            Advance();
            return token;
        }
        if (c == '\\')
        {
            ScriptPosition const escapeAt = at;
            Advance();
            char const e = Peek();
            if (e == '"' || e == '\\')
                token.text += e;
            else if (e == 'n')
                token.text += '\n';
            else
                throw LayoutScriptError(escapeAt,
                                        "unknown escape in a text (use \\\", \\\\ or \\n)");
            Advance();
            continue;
        }
        token.text += c;
        Advance();
    }
}

Token ScriptLexer::ReadNumber()
{
    Token token;
    token.kind = Token::kNumber;
    token.at = at;
    if (Peek() == '-')
    {
        token.text += '-';
        Advance();
    }
    while (IsDigit(Peek()))
    {
        token.text += Peek();
        Advance();
    }
    if (Peek() == '.' && IsDigit(Peek(1)))
    {
        token.text += '.';
        Advance();
        while (IsDigit(Peek()))
        {
            token.text += Peek();
            Advance();
        }
    }
    if (IsWordStart(Peek()))
        throw LayoutScriptError(token.at,
                                "a number runs into a word: '" + token.text + Peek() + "'");
    if (token.text.size() > 12)
        throw LayoutScriptError(token.at, "number too long: " + token.text);
    // By hand: the C library's conversion follows the user's locale.
    double value = 0.0, scale = 1.0;
    bool fraction = false;
    for (char const d : token.text)
    {
        if (d == '.')
            fraction = true;
        else if (IsDigit(d))
        {
            if (fraction)
                value += (scale /= 10.0) * (d - '0');
            else
                value = value * 10.0 + (d - '0');
        }
    }
    token.number = token.text[0] == '-' ? -value : value;
    return token;
}

} // namespace zepheve

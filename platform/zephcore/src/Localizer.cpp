#include "zephcore/Localizer.h"

#include "zephcore/Files.h"

#include <sstream>

namespace zephcore
{

namespace
{

// "$$$/a/b=default" -> name "$$$/a/b", fallback "default".
void SplitKey(std::string_view key, std::string_view& name, std::string_view& fallback,
              bool& hasDefault)
{
    auto const equals = key.find('=');
    hasDefault = equals != std::string_view::npos;
    name = key.substr(0, equals);
    fallback = hasDefault ? key.substr(equals + 1) : std::string_view();
}

std::string Unescape(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        if (text[i] == '\\' && i + 1 < text.size())
        {
            char const next = text[++i];
            out.push_back(next == 'n' ? '\n' : next == 't' ? '\t' : next);
        }
        else
        {
            out.push_back(text[i]);
        }
    }
    return out;
}

// Characters that a text names as "#{name}", by their HTML entity names,
// so that key files stay plain ASCII where a sign is awkward to type.
struct NamedCharacter
{
    char const* name;
    unsigned short code;
};
NamedCharacter const kNamedCharacters[] = {
    {"plusmn", 0x00B1}, {"copy", 0x00A9},   {"reg", 0x00AE},   {"trade", 0x2122}, {"deg", 0x00B0},
    {"times", 0x00D7},  {"middot", 0x00B7}, {"nbsp", 0x00A0},  {"ndash", 0x2013}, {"mdash", 0x2014},
    {"hellip", 0x2026}, {"lsquo", 0x2018},  {"rsquo", 0x2019}, {"ldquo", 0x201C}, {"rdquo", 0x201D},
    {"laquo", 0x00AB},  {"raquo", 0x00BB},  {"bull", 0x2022},  {"micro", 0x00B5}, {"para", 0x00B6},
    {"sect", 0x00A7},   {"amp", '&'},       {"num", '#'},
};

// Replaces each known "#{name}" by its character; an unknown name, or a
// marker without its closing brace, stays as it stands.
UTF16String ExpandNamedCharacters(UTF16String text)
{
    std::size_t at = 0;
    while ((at = text.find(u'#', at)) != UTF16String::npos)
    {
        std::size_t const close = text.find(u'}', at);
        if (at + 1 >= text.size() || text[at + 1] != u'{' || close == UTF16String::npos ||
            close - at > 10)
        {
            ++at;
            continue;
        }
        std::string name;
        for (std::size_t i = at + 2; i < close; ++i)
            name.push_back(text[i] < 0x80 ? char(text[i]) : '?');
        unsigned short code = 0;
        for (NamedCharacter const& named : kNamedCharacters)
            if (name == named.name)
                code = named.code;
        if (code == 0)
        {
            ++at;
            continue;
        }
        text.replace(at, close - at + 1, 1, code);
        ++at;
    }
    return text;
}

} // namespace

Localizer& Localizer::Get()
{
    static Localizer instance;
    return instance;
}

UTF16String Localizer::GetString(UTF8String const& key) const
{
    return GetString(ToStdString(key).c_str());
}

UTF16String Localizer::GetString(char const* key) const
{
    if (!key)
        return UTF16String();
    std::string_view name, fallback;
    bool hasDefault = false;
    SplitKey(key, name, fallback, hasDefault);
    if (!translations.empty())
    {
        auto const found = translations.find(std::string(name));
        if (found != translations.end())
            return ExpandNamedCharacters(found->second);
    }
    return ExpandNamedCharacters(UTF8to16(hasDefault ? fallback : std::string_view(key)));
}

bool Localizer::LoadTranslationFile(UTF16String const& path, std::vector<std::string>* problems)
{
    std::string text;
    if (!FileUtils::ReadFileToString(path, text))
    {
        if (problems)
            problems->push_back("cannot read " + ToStdString(path));
        return false;
    }
    LoadTranslations(text, problems);
    return true;
}

void Localizer::LoadTranslations(std::string const& text, std::vector<std::string>* problems)
{
    std::istringstream lines(text);
    std::string line;
    int number = 0;
    while (std::getline(lines, line))
    {
        ++number;
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (number == 1 && line.rfind("\xEF\xBB\xBF", 0) == 0)
            line.erase(0, 3);
        if (line.empty() || line[0] == '#')
            continue;
        auto const equals = line.find('=');
        if (equals == std::string::npos || line.compare(0, 4, "$$$/") != 0)
        {
            if (problems)
                problems->push_back("line " + std::to_string(number) +
                                    ": not a \"$$$/name=text\" entry");
            continue;
        }
        translations[line.substr(0, equals)] =
            UTF8to16(Unescape(std::string_view(line).substr(equals + 1)));
    }
}

void Localizer::Clear()
{
    translations.clear();
}

UTF16String ReplaceInString(UTF16String const& text, std::vector<UTF16String> const& args)
{
    UTF16String out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        if (text[i] == '@' && i + 1 < text.size() && text[i + 1] >= '0' && text[i + 1] <= '9')
        {
            std::size_t const index = text[i + 1] - '0';
            if (index < args.size())
            {
                out += args[index];
                ++i;
                continue;
            }
        }
        out.push_back(text[i]);
    }
    return out;
}

} // namespace zephcore

#pragma once
// Localised text. A key has the form "$$$/group/name=default text"; the part
// behind the first "=" is the text when no translation is loaded.
//
// Translation files are UTF-8 text, one entry a line:
//     $$$/zephmetadataui/ArrayControl/Close=Schließen
// The part before the first "=" is the key's name (the key without its
// default); the rest, with "\n", "\t" and "\\" unescaped, is the translation.
// Blank lines and lines starting with "#" are skipped. A line without "=" or
// whose name does not start with "$$$/" is reported and skipped.
//
// Defaults and translations may name a character as "#{name}", with the
// HTML entity name: "#{plusmn}HH:MM" reads "±HH:MM". GetString expands the
// names it knows (signs, quotes, dashes, spaces: see Localizer.cpp) and
// leaves any other "#{...}" as it stands.

#include "zephcore/Strings.h"
#include "zephcore/zephcore_export.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace zephcore
{

class ZEPHCORE_EXPORT Localizer
{
public:
    static Localizer& Get();

    // The translation of the key, or its default. A key without "=" and
    // without translation is returned as it stands.
    UTF16String GetString(UTF8String const& key) const;
    UTF16String GetString(char const* key) const;

    // Adds the entries of a translation file to those loaded. Returns false
    // when the file cannot be read; bad lines go to `problems` (one text per
    // line, with its number) and the rest still loads.
    bool LoadTranslationFile(UTF16String const& path, std::vector<std::string>* problems = nullptr);
    // Same, from text already in memory.
    void LoadTranslations(std::string const& text, std::vector<std::string>* problems = nullptr);
    void Clear();

private:
    std::unordered_map<std::string, UTF16String> translations;
};

// Fills "@0" to "@9" with the arguments in order. A marker without an
// argument stays as it is; a marker may appear more than once.
ZEPHCORE_EXPORT UTF16String ReplaceInString(UTF16String const& text,
                                            std::vector<UTF16String> const& args);

template <class... Args> UTF16String ReplaceInString(UTF16String const& text, Args const&... args)
{
    return ReplaceInString(text, std::vector<UTF16String>{UTF16String(args)...});
}

// Looks up the key and fills its markers.
template <class... Args> UTF16String ZString(char const* key, Args const&... args)
{
    return ReplaceInString(Localizer::Get().GetString(key),
                           std::vector<UTF16String>{UTF16String(args)...});
}

} // namespace zephcore

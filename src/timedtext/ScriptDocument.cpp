#include "timedtext/ScriptDocument.h"

#include <string>

namespace zephmetadataui::timedtext
{

namespace
{

std::string NamespaceOf(zephmetadata::StandardSchema schema)
{
    return zephcore::ToStdString(StandardSchemaNamespace(schema));
}

// A field of the item as text; a missing field reads empty.
UTF16String ReadField(__XMPMeta__* meta, std::string const& schemaNamespace,
                      std::string const& item, char const* field)
{
    std::string const path = xmp::ComposeStructFieldPath(item, schemaNamespace.c_str(), field);
    UTF8String value;
    if (!GetValue(meta, Path(zephcore::ToUTF8(schemaNamespace), zephcore::ToUTF8(path)), value,
                  nullptr))
        return UTF16String();
    return zephcore::UTF8to16(value);
}

} // namespace

void AddDialog(std::vector<ScriptDialog>& dialogs, UTF16String const& character,
               UTF16String const& dialog)
{
    if (character.empty() && dialog.empty())
        return;
    if (!dialogs.empty() && dialogs.back().character == character)
    {
        ScriptDialog& last = dialogs.back();
        last.dialog.push_back(' ');
        last.dialog += dialog;
        last.hits.clear();
        last.lines.clear();
        last.folded = false;
        last.hitsSearch = 0;
        return;
    }
    ScriptDialog& added = dialogs.emplace_back();
    added.character = character;
    added.dialog = dialog;
}

void LoadScript(__XMPMeta__* meta, std::vector<ScriptDialog>& dialogs)
{
    dialogs.clear();
    // The paths below are composed with these prefixes.
    xmp::EnsureNamespace(NamespaceOf(zephmetadata::kStandardSchemaXMPDynamicMedia).c_str(),
                         "xmpDM");
    xmp::EnsureNamespace(NamespaceOf(zephmetadata::kStandardSchemaDublinCore).c_str(), "dc");
    std::string const script = NamespaceOf(zephmetadata::kStandardSchemaXMPScript);
    std::string const prefix = xmp::EnsureNamespace(script.c_str(), "xmpScript");
    if (!meta || prefix.empty())
        return;
    std::string const sequence = prefix + ":dialogSequence";
    int const count = xmp::CountArrayItems(meta, script.c_str(), sequence.c_str());
    for (int index = 1; index <= count; ++index)
    {
        std::string const item = xmp::ComposeArrayItemPath(sequence, index);
        // The toolkit refuses to read a field of an item that is no
        // structure, which ends the load there.
        std::uint32_t options = 0;
        if (!xmp::NodeOptionsOf(meta, script.c_str(), item.c_str(), options) ||
            !xmp::IsStruct(options))
            return;
        UTF16String const character = ReadField(meta, script, item, "character");
        UTF16String const dialog = ReadField(meta, script, item, "dialog");
        AddDialog(dialogs, character, dialog);
    }
}

void FindHits(ScriptDialog& record, UTF16String const& term, std::uint64_t search)
{
    record.hitsSearch = search;
    record.hits.clear();
    record.characterHit = false;
    if (term.empty())
        return;
    if (!record.folded)
    {
        record.foldedCharacter = zephcore::FoldCase(record.character);
        record.foldedDialog = zephcore::FoldCase(record.dialog);
        record.folded = true;
    }
    record.characterHit = record.foldedCharacter.find(term) != UTF16String::npos;
    record.hits = FindAll(record.foldedDialog, term);
}

} // namespace zephmetadataui::timedtext

#pragma once
// Reads definition files (the format is described in docs/definition-format.md)
// into the registry. Files are read first and resolved together, so a type
// may be used in one file and declared in another. Each problem goes to the
// error log with its file and line; the entry concerned is left out and the
// rest loads.

#include "zephmetadata/Definitions.h"

#include <QByteArray>

#include <memory>

namespace zephmetadata
{
namespace detail
{

class DefinitionLoader
{
public:
    enum Content
    {
        kEverything,
        kViewsOnly
    };

    explicit DefinitionLoader(Content content = kEverything);
    ~DefinitionLoader();

    // Reads one file's text. False (with a log entry) when it is not
    // well-formed or not a definitions file; nothing of it is kept then.
    bool AddFileContent(QByteArray const& data, UTF16String const& source);
    bool AddFile(UTF16String const& path);
    // Resolves and registers everything read so far.
    void Finish();

private:
    struct State;
    std::unique_ptr<State> state;
};

// The text of a localiser key: a text that already is a key stays as it is,
// any other becomes "$$$/<scope>=<text>".
UTF8String MakeLocalizerKey(std::string const& scope, UTF8String const& text);
// A key component made of letters, digits and "_" only.
std::string KeyComponent(std::string const& text);

// Loads the view definitions of the files in a folder (the user's custom views).
void LoadViewsOfFolder(UTF16String const& folder);

} // namespace detail
} // namespace zephmetadata

#pragma once
// The reading half of the definition loader: one file's text into entries
// that still refer to each other by id and prefix. DefinitionLoader resolves
// them once every file is read.

#include "zephmetadata/Definitions.h"

#include <QByteArray>

#include <string>
#include <vector>

namespace zephmetadata
{
namespace detail
{

// Deepest nesting of view items, and longest chain of derived types: a file
// may be hostile, and both are walked recursively.
constexpr int kMaxNesting = 64;

// Where an entry came from, for the error log.
struct Origin
{
    UTF16String source;
    qint64 line = 0;
};

struct PendingEntry
{
    boost::shared_ptr<PropertyDefinition> entry;
    Origin origin;
};

struct PendingType
{
    boost::shared_ptr<TypeDefinition> type;
    std::string base;                      // for derived simple types
    boost::optional<PrimitiveType> stated; // primitive="..."
    bool isStruct = false;
    std::string structNamespace;
    std::string structPrefix;
    std::vector<PendingEntry> fields;
    Origin origin;
};

struct PendingSchema
{
    boost::shared_ptr<SchemaDefinition> schema;
    std::vector<PendingEntry> properties;
    int order = 1000;
    UTF8String labelKey;
    UTF8String descriptionKey;
    Origin origin;
};

// A view item whose path is still written as "prefix:name/...".
struct PendingItemPath
{
    boost::shared_ptr<ViewItem> item;
    std::string property;
    std::string schemaNamespace;
    Origin origin;
};

struct PendingView
{
    boost::shared_ptr<ViewDefinition> view;
    std::vector<PendingItemPath> paths;
    Origin origin;
};

struct FileContent
{
    std::vector<PendingType> types;
    std::vector<PendingSchema> schemas;
    std::vector<PendingView> views;
};

// Reads one file. False, with a log entry, when it is not well-formed or not
// a definitions file; `content` is then to be dropped. With viewsOnly only
// the views are read.
bool ReadDefinitionFile(QByteArray const& data, UTF16String const& source, bool viewsOnly,
                        FileContent& content);

} // namespace detail
} // namespace zephmetadata

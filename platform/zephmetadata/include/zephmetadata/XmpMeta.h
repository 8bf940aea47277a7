#pragma once
// A thin C++ layer over exempi's C API: owning handles, and the tree
// operations the C API lacks (item count, insert at a place, remove all,
// append all, clone, serialise, reading a subtree in one pass). Paths here
// are exempi's: a namespace URI plus an XMP path ("Tracks[2]/xmpDM:name").
// Nothing here throws; failure is a null handle, false or 0.

#include "zephmetadata/Types.h"
#include "zephmetadata/zephmetadata_export.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct _XmpString;
struct _XmpIterator;

namespace zephmetadata
{
namespace xmp
{

// Option bits of a node, as exempi reports them (XMP_PROP_*).
enum NodeOptions : std::uint32_t
{
    kOptionIsURI = 0x00000002u,
    kOptionHasQualifiers = 0x00000010u,
    kOptionIsQualifier = 0x00000020u,
    kOptionHasLang = 0x00000040u,
    kOptionIsStruct = 0x00000100u,
    kOptionIsArray = 0x00000200u,
    kOptionArrayOrdered = 0x00000400u,
    kOptionArrayAlt = 0x00000800u,
    kOptionArrayAltText = 0x00001000u,
    kOptionSchemaNode = 0x80000000u,
    kOptionCompositeMask = 0x00001F00u,
    kOptionArrayFormMask = 0x00001E00u,
};

// Array forms to create arrays with.
constexpr std::uint32_t kArrayBag = kOptionIsArray;
constexpr std::uint32_t kArraySeq = kOptionIsArray | kOptionArrayOrdered;
constexpr std::uint32_t kArrayAlt = kOptionIsArray | kOptionArrayOrdered | kOptionArrayAlt;
constexpr std::uint32_t kArrayAltText = kArrayAlt | kOptionArrayAltText;

inline bool IsArray(std::uint32_t options)
{
    return (options & kOptionIsArray) != 0;
}
inline bool IsStruct(std::uint32_t options)
{
    return (options & kOptionIsStruct) != 0;
}
inline bool IsAltText(std::uint32_t options)
{
    return (options & kOptionArrayAltText) != 0;
}
inline bool IsSimple(std::uint32_t options)
{
    return (options & kOptionCompositeMask) == 0;
}

struct ZEPHMETADATA_EXPORT MetaDeleter
{
    void operator()(__XMPMeta__* meta) const;
};
// An owned metadata tree.
using MetaPtr = std::unique_ptr<__XMPMeta__, MetaDeleter>;

// An exempi string, owned.
class ZEPHMETADATA_EXPORT XmpString
{
public:
    XmpString();
    ~XmpString();
    XmpString(XmpString const&) = delete;
    XmpString& operator=(XmpString const&) = delete;

    _XmpString* Get() const { return handle; }
    char const* CStr() const;
    std::size_t Length() const;
    std::string Str() const { return std::string(CStr(), Length()); }

private:
    _XmpString* handle;
};

// One node met by an iterator.
struct ZEPHMETADATA_EXPORT Node
{
    std::string schemaNamespace;
    std::string path; // full XMP path; empty for a schema node
    std::string value;
    std::uint32_t options = 0;
};

// Walks a tree or a subtree in document order, the subtree's root first.
class ZEPHMETADATA_EXPORT Iterator
{
public:
    // Whole tree (schema and path empty), one schema (path empty), or one
    // property and everything below it.
    Iterator(__XMPMeta__* meta, char const* schemaNamespace, char const* path,
             std::uint32_t iterOptions = 0);
    ~Iterator();
    Iterator(Iterator const&) = delete;
    Iterator& operator=(Iterator const&) = delete;

    // False at the end. The node's strings are reused from call to call.
    bool Next(Node& node);
    // Do not descend below the node last returned.
    void SkipSubtree();
    void SkipSiblings();

    enum : std::uint32_t
    {
        kJustChildren = 0x0100u,
        kJustLeafNodes = 0x0200u,
        kJustLeafName = 0x0400u,
        kOmitQualifiers = 0x1000u,
    };

private:
    _XmpIterator* handle = nullptr;
    XmpString schema, path, value;
};

// Starts exempi once per process use; counted, so nested users are fine.
ZEPHMETADATA_EXPORT bool InitToolkit();
ZEPHMETADATA_EXPORT void TerminateToolkit();

ZEPHMETADATA_EXPORT MetaPtr NewMeta();

// Deepest nesting of elements a packet may have. The deepest structure of
// the published schemas (a track's markers' cue-point parameters) sits about
// 16 elements down, wrapper included; 100 leaves private schemas room for
// several times that. Every node's path repeats its ancestors' names, so the
// toolkit's reads and merges cost depth times size, and its parser recurses
// per level: without a bound a small packet costs gigabytes or the stack.
constexpr int kMaxPacketNesting = 100;

// Whether the packet's elements nest deeper than kMaxPacketNesting: one pass
// over its text (UTF-8, -16 or -32), made before the parser sees it.
ZEPHMETADATA_EXPORT bool NestsTooDeep(char const* data, std::size_t size);

enum class ParseFailure
{
    kNone,
    kMalformed, // not an XMP packet
    kTooDeep,   // nests deeper than kMaxPacketNesting
};
// Null when the packet does not parse or nests too deep; failure says which.
// An empty buffer gives an empty tree.
ZEPHMETADATA_EXPORT MetaPtr ParseMeta(char const* data, std::size_t size,
                                      ParseFailure* failure = nullptr);
ZEPHMETADATA_EXPORT MetaPtr Clone(__XMPMeta__* meta);
// Replaces everything in destination by a copy of source, keeping the handle.
ZEPHMETADATA_EXPORT bool CopyTree(__XMPMeta__* source, __XMPMeta__* destination);

enum SerializeForm
{
    kSerializeCompact = 0,          // packet wrapper, compact RDF
    kSerializeReadable = 1,         // packet wrapper, one element per line
    kSerializeNoWrapper = 2,        // compact RDF without the xpacket wrapper (".xmp" sidecars)
    kSerializeReadableNoWrapper = 3 // one element per line, without the wrapper (for reading)
};
ZEPHMETADATA_EXPORT bool SerializeToBuffer(__XMPMeta__* meta, std::string& buffer,
                                           SerializeForm form = kSerializeCompact);

// "Tracks" + 3 -> "Tracks[3]" (1-based).
ZEPHMETADATA_EXPORT std::string ComposeArrayItemPath(std::string const& arrayPath, int index);
// "Tracks[1]" + field namespace + "name" -> "Tracks[1]/xmpDM:name". Registers
// nothing: empty when the field's namespace has no prefix.
ZEPHMETADATA_EXPORT std::string ComposeStructFieldPath(std::string const& structPath,
                                                       char const* fieldNamespace,
                                                       char const* fieldName);

// The prefix registered for a namespace; empty if none.
ZEPHMETADATA_EXPORT std::string NamespacePrefix(char const* schemaNamespace);
// The namespace registered for a prefix; empty if none.
ZEPHMETADATA_EXPORT std::string NamespaceOfPrefix(char const* prefix);
// Makes sure the namespace is known, registering it with the suggested prefix
// (or a generated one) if it is not. Returns the registered prefix.
ZEPHMETADATA_EXPORT std::string EnsureNamespace(char const* schemaNamespace,
                                                char const* suggestedPrefix = nullptr);

// Reads a node's options; false if it does not exist.
ZEPHMETADATA_EXPORT bool NodeOptionsOf(__XMPMeta__* meta, char const* schemaNamespace,
                                       char const* path, std::uint32_t& options);

// Items of the array at path: a handful of look-ups however long the array;
// 0 when absent or no array.
ZEPHMETADATA_EXPORT int CountArrayItems(__XMPMeta__* meta, char const* schemaNamespace,
                                        char const* path);

// Inserts an item before the 1-based index (count + 1 appends). A structure
// item starts without fields. The array is created with arrayForm if absent.
ZEPHMETADATA_EXPORT bool InsertArrayItem(__XMPMeta__* meta, char const* schemaNamespace,
                                         char const* arrayPath, int index, std::string const& value,
                                         bool structItem, std::uint32_t arrayForm);

// Every top-level property of every schema.
ZEPHMETADATA_EXPORT void RemoveProperties(__XMPMeta__* meta);

enum AppendMode
{
    kAppendAddMissing = 0,      // only properties the destination lacks
    kAppendReplaceExisting = 1, // a source property replaces the destination's whole
    kAppendMergeArrays = 2,     // like replace, but arrays get the missing items appended
};
// Copies source's top-level properties into destination. Returns whether
// destination changed.
ZEPHMETADATA_EXPORT bool AppendProperties(__XMPMeta__* source, __XMPMeta__* destination,
                                          AppendMode mode);

// Copies one property (with everything below it) from source to destination
// under the same namespace and path, replacing what was there.
ZEPHMETADATA_EXPORT bool CopyProperty(__XMPMeta__* source, __XMPMeta__* destination,
                                      char const* schemaNamespace, char const* path);

// The node at path and all nodes below it, in one iterator pass. Qualifiers
// are included (paths with "/?"). Empty if the node does not exist.
ZEPHMETADATA_EXPORT std::vector<Node> ReadSubtree(__XMPMeta__* meta, char const* schemaNamespace,
                                                  char const* path);

// The top-level (namespace, property path) pairs of a tree.
ZEPHMETADATA_EXPORT std::vector<std::pair<std::string, std::string>>
TopLevelProperties(__XMPMeta__* meta);

} // namespace xmp
} // namespace zephmetadata

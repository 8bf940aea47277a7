#include "zephmetadata/XmpMeta.h"

#include <exempi/xmp.h>

#include <cstring>
#include <set>

namespace zephmetadata
{
namespace xmp
{

namespace
{

int toolkitUsers = 0;

// exempi turns "" into "no value" only for composite nodes; a null value
// pointer crashes it, so every composite node is written with "".
constexpr char const* kNoValue = "";

bool Has(__XMPMeta__* meta, char const* ns, std::string const& path)
{
    return xmp_has_property(meta, ns, path.c_str());
}

// The part of a node path below prefix ("" for the node itself).
std::string RelativePath(std::string const& path, std::size_t prefixLength)
{
    return path.size() > prefixLength ? path.substr(prefixLength) : std::string();
}

// Bits that make two nodes differ for a reader: form, qualifier, language, URI.
constexpr std::uint32_t kSignificantOptions =
    kOptionCompositeMask | kOptionIsQualifier | kOptionHasLang | kOptionIsURI;

// A subtree flattened to text, with paths relative to its root, to compare
// two subtrees (two array items, a property before and after).
std::string Signature(std::vector<Node> const& nodes, std::size_t prefixLength)
{
    std::string text;
    for (Node const& node : nodes)
    {
        text += RelativePath(node.path, prefixLength);
        text += '\x01';
        text += node.value;
        text += '\x01';
        text += std::to_string(node.options & kSignificantOptions);
        text += '\x02';
    }
    return text;
}

// Whether two subtrees read below the same path are equal for a reader; one
// pass over both, without building their signatures.
bool SameSubtree(std::vector<Node> const& a, std::vector<Node> const& b)
{
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
    {
        if ((a[i].options & kSignificantOptions) != (b[i].options & kSignificantOptions) ||
            a[i].path != b[i].path || a[i].value != b[i].value)
            return false;
    }
    return true;
}

// Writes nodes read from one tree into another, their paths moved from
// below fromPrefix to below toPrefix. Nodes arrive parents first, so each
// composite exists before its children are written.
bool WriteNodes(__XMPMeta__* meta, char const* ns, std::vector<Node> const& nodes,
                std::string const& fromPrefix, std::string const& toPrefix)
{
    bool ok = true;
    for (Node const& node : nodes)
    {
        if (node.options & kOptionSchemaNode)
            continue;
        std::string const path = toPrefix + RelativePath(node.path, fromPrefix.size());
        bool written;
        if (node.options & kOptionIsQualifier)
        {
            written = xmp_set_property(meta, ns, path.c_str(), node.value.c_str(), 0);
        }
        else if (IsArray(node.options))
        {
            written = xmp_set_property(meta, ns, path.c_str(), kNoValue,
                                       node.options & kOptionArrayFormMask);
        }
        else if (IsStruct(node.options))
        {
            written = xmp_set_property(meta, ns, path.c_str(), kNoValue, kOptionIsStruct);
        }
        else
        {
            written = xmp_set_property(meta, ns, path.c_str(), node.value.c_str(),
                                       node.options & kOptionIsURI);
        }
        ok = ok && written;
    }
    return ok;
}

// Direct children of a composite node, qualifiers left out.
std::vector<Node> Children(__XMPMeta__* meta, char const* ns, char const* path)
{
    std::vector<Node> children;
    Iterator iterator(meta, ns, path, Iterator::kJustChildren | Iterator::kOmitQualifiers);
    Node node;
    while (iterator.Next(node))
        children.push_back(node);
    return children;
}

bool MergeNode(__XMPMeta__* source, __XMPMeta__* destination, char const* ns,
               std::string const& path);

// Appends the source array's items that the destination array lacks.
bool MergeArrays(__XMPMeta__* source, __XMPMeta__* destination, char const* ns,
                 std::string const& path, std::uint32_t options)
{
    bool changed = false;
    if (IsAltText(options))
    {
        // One item per language: add the languages the destination lacks.
        int const count = CountArrayItems(source, ns, path.c_str());
        for (int i = 1; i <= count; ++i)
        {
            std::string const item = ComposeArrayItemPath(path, i);
            XmpString lang, value;
            if (!xmp_get_property(source, ns, (item + "/?xml:lang").c_str(), lang.Get(), nullptr))
                continue;
            xmp_get_property(source, ns, item.c_str(), value.Get(), nullptr);
            XmpString actual;
            if (xmp_get_localized_text(destination, ns, path.c_str(), nullptr, lang.CStr(),
                                       actual.Get(), nullptr, nullptr) &&
                std::strcmp(actual.CStr(), lang.CStr()) == 0)
                continue;
            changed |= xmp_set_localized_text(destination, ns, path.c_str(), nullptr, lang.CStr(),
                                              value.CStr(), 0);
        }
        return changed;
    }
    std::size_t const prefix = path.size();
    std::vector<Node> const sourceNodes = ReadSubtree(source, ns, path.c_str());
    std::vector<Node> const destinationNodes = ReadSubtree(destination, ns, path.c_str());
    // Split each flattened array into its items' signatures.
    auto itemsOf = [prefix](std::vector<Node> const& nodes)
    {
        std::vector<std::pair<std::string, std::vector<Node>>> items;
        for (std::size_t i = 1; i < nodes.size(); ++i)
        {
            Node const& node = nodes[i];
            // Qualifiers of the array itself are no items.
            if (node.path.size() <= prefix || node.path[prefix] != '[')
                continue;
            std::size_t const close = node.path.find(']', prefix);
            std::string const itemPath = node.path.substr(0, close + 1);
            if (items.empty() || items.back().first != itemPath)
                items.emplace_back(itemPath, std::vector<Node>());
            items.back().second.push_back(node);
        }
        return items;
    };
    std::set<std::string> present;
    for (auto const& item : itemsOf(destinationNodes))
        present.insert(Signature(item.second, item.first.size()));
    int count = CountArrayItems(destination, ns, path.c_str());
    for (auto const& item : itemsOf(sourceNodes))
    {
        if (!present.insert(Signature(item.second, item.first.size())).second)
            continue;
        std::string const target = ComposeArrayItemPath(path, ++count);
        WriteNodes(destination, ns, item.second, item.first, target);
        changed = true;
    }
    return changed;
}

// Keeps what the destination has, adds what it lacks: missing properties and
// fields whole, missing array items appended.
bool MergeNode(__XMPMeta__* source, __XMPMeta__* destination, char const* ns,
               std::string const& path)
{
    std::uint32_t sourceOptions = 0, destinationOptions = 0;
    if (!NodeOptionsOf(source, ns, path.c_str(), sourceOptions))
        return false;
    if (!NodeOptionsOf(destination, ns, path.c_str(), destinationOptions))
        return CopyProperty(source, destination, ns, path.c_str());
    if ((sourceOptions & kOptionCompositeMask) != (destinationOptions & kOptionCompositeMask))
        return false; // different forms cannot be merged; the destination's stays
    if (IsStruct(sourceOptions))
    {
        bool changed = false;
        for (Node const& child : Children(source, ns, path.c_str()))
            changed |= MergeNode(source, destination, ns, child.path);
        return changed;
    }
    if (IsArray(sourceOptions))
        return MergeArrays(source, destination, ns, path, sourceOptions);
    return false;
}

} // namespace

void MetaDeleter::operator()(__XMPMeta__* meta) const
{
    if (meta)
        xmp_free(meta);
}

XmpString::XmpString() : handle(xmp_string_new()) {}
XmpString::~XmpString()
{
    xmp_string_free(handle);
}
char const* XmpString::CStr() const
{
    char const* text = xmp_string_cstr(handle);
    return text ? text : "";
}
std::size_t XmpString::Length() const
{
    return xmp_string_len(handle);
}

Iterator::Iterator(__XMPMeta__* meta, char const* schemaNamespace, char const* path,
                   std::uint32_t iterOptions)
{
    if (meta)
        handle =
            xmp_iterator_new(meta, schemaNamespace, path, static_cast<XmpIterOptions>(iterOptions));
}

Iterator::~Iterator()
{
    if (handle)
        xmp_iterator_free(handle);
}

bool Iterator::Next(Node& node)
{
    if (!handle)
        return false;
    std::uint32_t options = 0;
    if (!xmp_iterator_next(handle, schema.Get(), path.Get(), value.Get(), &options))
        return false;
    node.schemaNamespace.assign(schema.CStr(), schema.Length());
    node.path.assign(path.CStr(), path.Length());
    node.value.assign(value.CStr(), value.Length());
    node.options = options;
    return true;
}

void Iterator::SkipSubtree()
{
    if (handle)
        xmp_iterator_skip(handle, XMP_ITER_SKIPSUBTREE);
}

void Iterator::SkipSiblings()
{
    if (handle)
        xmp_iterator_skip(handle, XMP_ITER_SKIPSIBLINGS);
}

bool InitToolkit()
{
    if (toolkitUsers++ > 0)
        return true;
    return xmp_init();
}

void TerminateToolkit()
{
    if (toolkitUsers == 0)
        return;
    if (--toolkitUsers == 0)
        xmp_terminate();
}

MetaPtr NewMeta()
{
    return MetaPtr(xmp_new_empty());
}

MetaPtr ParseMeta(char const* data, std::size_t size, ParseFailure* failure)
{
    ParseFailure unused;
    ParseFailure& why = failure ? *failure : unused;
    why = ParseFailure::kNone;
    MetaPtr meta(xmp_new_empty());
    if (!meta || size == 0)
        return meta;
    if (NestsTooDeep(data, size))
    {
        why = ParseFailure::kTooDeep;
        return MetaPtr();
    }
    if (!data || !xmp_parse(meta.get(), data, size))
    {
        why = ParseFailure::kMalformed;
        return MetaPtr();
    }
    return meta;
}

MetaPtr Clone(__XMPMeta__* meta)
{
    if (!meta)
        return MetaPtr();
    // xmp_copy shares the tree behind a new handle (the toolkit's handles are
    // counted references), so a real copy goes through the serialised form.
    MetaPtr copy = NewMeta();
    if (!copy || !CopyTree(meta, copy.get()))
        return MetaPtr();
    return copy;
}

bool CopyTree(__XMPMeta__* source, __XMPMeta__* destination)
{
    if (!source || !destination)
        return false;
    if (source == destination)
        return true;
    // The element form keeps the order of properties; the compact form would
    // put simple ones first.
    XmpString text;
    if (!xmp_serialize(source, text.Get(),
                       XMP_SERIAL_OMITPACKETWRAPPER | XMP_SERIAL_OMITALLFORMATTING, 0))
        return false;
    std::string const packet = text.Str();
    // Parsing into a tree replaces what it held.
    return xmp_parse(destination, packet.data(), packet.size());
}

bool SerializeToBuffer(__XMPMeta__* meta, std::string& buffer, SerializeForm form)
{
    buffer.clear();
    if (!meta)
        return false;
    std::uint32_t options = 0;
    switch (form)
    {
    case kSerializeCompact:
        options = XMP_SERIAL_USECOMPACTFORMAT;
        break;
    case kSerializeReadable:
        options = 0;
        break;
    case kSerializeNoWrapper:
        options = XMP_SERIAL_USECOMPACTFORMAT | XMP_SERIAL_OMITPACKETWRAPPER;
        break;
    case kSerializeReadableNoWrapper:
        options = XMP_SERIAL_OMITPACKETWRAPPER;
        break;
    }
    XmpString text;
    if (!xmp_serialize(meta, text.Get(), options, 0))
        return false;
    buffer.assign(text.CStr(), text.Length());
    return true;
}

std::string ComposeArrayItemPath(std::string const& arrayPath, int index)
{
    std::string path;
    path.reserve(arrayPath.size() + 8);
    path += arrayPath;
    path += '[';
    path += std::to_string(index);
    path += ']';
    return path;
}

std::string ComposeStructFieldPath(std::string const& structPath, char const* fieldNamespace,
                                   char const* fieldName)
{
    std::string const prefix = NamespacePrefix(fieldNamespace);
    if (prefix.empty() || !fieldName)
        return std::string();
    std::string path = structPath;
    path += '/';
    path += prefix;
    path += ':';
    path += fieldName;
    return path;
}

std::string NamespacePrefix(char const* schemaNamespace)
{
    if (!schemaNamespace || !*schemaNamespace)
        return std::string();
    XmpString prefix;
    if (!xmp_namespace_prefix(schemaNamespace, prefix.Get()))
        return std::string();
    std::string text = prefix.Str();
    if (!text.empty() && text.back() == ':')
        text.pop_back();
    return text;
}

std::string NamespaceOfPrefix(char const* prefix)
{
    if (!prefix || !*prefix)
        return std::string();
    XmpString uri;
    if (!xmp_prefix_namespace_uri(prefix, uri.Get()))
        return std::string();
    return uri.Str();
}

std::string EnsureNamespace(char const* schemaNamespace, char const* suggestedPrefix)
{
    std::string prefix = NamespacePrefix(schemaNamespace);
    if (!prefix.empty() || !schemaNamespace || !*schemaNamespace)
        return prefix;
    XmpString registered;
    char const* suggestion = suggestedPrefix && *suggestedPrefix ? suggestedPrefix : "ns";
    if (!xmp_register_namespace(schemaNamespace, suggestion, registered.Get()))
        return std::string();
    prefix = registered.Str();
    if (!prefix.empty() && prefix.back() == ':')
        prefix.pop_back();
    return prefix;
}

bool NodeOptionsOf(__XMPMeta__* meta, char const* schemaNamespace, char const* path,
                   std::uint32_t& options)
{
    options = 0;
    if (!meta || !schemaNamespace || !path || !*path)
        return false;
    // No value is asked for: the tree is walked by counts and options, and
    // a string per question made a rebuild of a long track allocate for each.
    return xmp_get_property(meta, schemaNamespace, path, nullptr, &options);
}

int CountArrayItems(__XMPMeta__* meta, char const* schemaNamespace, char const* path)
{
    std::uint32_t options = 0;
    if (!NodeOptionsOf(meta, schemaNamespace, path, options) || !IsArray(options))
        return 0;
    std::string const arrayPath(path);
    if (!Has(meta, schemaNamespace, ComposeArrayItemPath(arrayPath, 1)))
        return 0;
    // Item look-up by index is direct, so gallop to a missing index and
    // bisect: about 2 log2(n) look-ups instead of a walk over n items.
    int present = 1;
    int missing = 2;
    while (Has(meta, schemaNamespace, ComposeArrayItemPath(arrayPath, missing)))
    {
        present = missing;
        if (missing > (1 << 29))
            return missing;
        missing *= 2;
    }
    while (missing - present > 1)
    {
        int const middle = present + (missing - present) / 2;
        if (Has(meta, schemaNamespace, ComposeArrayItemPath(arrayPath, middle)))
            present = middle;
        else
            missing = middle;
    }
    return present;
}

bool InsertArrayItem(__XMPMeta__* meta, char const* schemaNamespace, char const* arrayPath,
                     int index, std::string const& value, bool structItem, std::uint32_t arrayForm)
{
    if (!meta || !schemaNamespace || !arrayPath || !*arrayPath)
        return false;
    std::uint32_t options = 0;
    if (!NodeOptionsOf(meta, schemaNamespace, arrayPath, options))
    {
        if (!xmp_set_property(meta, schemaNamespace, arrayPath, kNoValue,
                              (arrayForm ? arrayForm : kArraySeq) & kOptionArrayFormMask))
            return false;
    }
    else if (!IsArray(options))
    {
        return false;
    }
    int const count = CountArrayItems(meta, schemaNamespace, arrayPath);
    if (index < 1 || index > count + 1)
        return false;
    std::string const item = ComposeArrayItemPath(arrayPath, index);
    if (index == count + 1)
    {
        // An index one past the end appends.
        return structItem ? xmp_set_property(meta, schemaNamespace, item.c_str(), kNoValue,
                                             kOptionIsStruct)
                          : xmp_set_property(meta, schemaNamespace, item.c_str(), value.c_str(), 0);
    }
    // exempi inserts only simple items; a structure item is inserted empty
    // and then turned into a structure.
    if (!xmp_set_array_item(meta, schemaNamespace, arrayPath, index,
                            structItem ? kNoValue : value.c_str(), XMP_PROP_ARRAY_INSERT_BEFORE))
        return false;
    if (structItem &&
        !xmp_set_property(meta, schemaNamespace, item.c_str(), kNoValue, kOptionIsStruct))
    {
        xmp_delete_property(meta, schemaNamespace, item.c_str());
        return false;
    }
    return true;
}

std::vector<std::pair<std::string, std::string>> TopLevelProperties(__XMPMeta__* meta)
{
    std::vector<std::pair<std::string, std::string>> properties;
    Iterator iterator(meta, nullptr, nullptr);
    Node node;
    while (iterator.Next(node))
    {
        if (node.options & kOptionSchemaNode)
            continue;
        properties.emplace_back(node.schemaNamespace, node.path);
        iterator.SkipSubtree();
    }
    return properties;
}

void RemoveProperties(__XMPMeta__* meta)
{
    if (!meta)
        return;
    for (auto const& property : TopLevelProperties(meta))
        xmp_delete_property(meta, property.first.c_str(), property.second.c_str());
}

bool CopyProperty(__XMPMeta__* source, __XMPMeta__* destination, char const* schemaNamespace,
                  char const* path)
{
    if (!source || !destination)
        return false;
    std::vector<Node> const nodes = ReadSubtree(source, schemaNamespace, path);
    if (nodes.empty())
        return false;
    std::string const root(path);
    if (xmp_has_property(destination, schemaNamespace, path))
    {
        std::vector<Node> const existing = ReadSubtree(destination, schemaNamespace, path);
        if (SameSubtree(existing, nodes))
            return false;
        xmp_delete_property(destination, schemaNamespace, path);
    }
    WriteNodes(destination, schemaNamespace, nodes, root, root);
    return true;
}

bool AppendProperties(__XMPMeta__* source, __XMPMeta__* destination, AppendMode mode)
{
    if (!source || !destination || source == destination)
        return false;
    bool changed = false;
    for (auto const& property : TopLevelProperties(source))
    {
        char const* ns = property.first.c_str();
        char const* path = property.second.c_str();
        switch (mode)
        {
        case kAppendAddMissing:
            if (!xmp_has_property(destination, ns, path))
                changed |= CopyProperty(source, destination, ns, path);
            break;
        case kAppendReplaceExisting:
            changed |= CopyProperty(source, destination, ns, path);
            break;
        case kAppendMergeArrays:
            changed |= MergeNode(source, destination, ns, property.second);
            break;
        }
    }
    return changed;
}

std::vector<Node> ReadSubtree(__XMPMeta__* meta, char const* schemaNamespace, char const* path)
{
    std::vector<Node> nodes;
    if (!meta || !schemaNamespace || !path || !*path)
        return nodes;
    Iterator iterator(meta, schemaNamespace, path);
    Node node;
    while (iterator.Next(node))
        nodes.push_back(node);
    return nodes;
}

} // namespace xmp
} // namespace zephmetadata

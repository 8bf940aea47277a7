#include "binding/PathFilters.h"

#include "binding/BindingText.h"
#include "binding/ControlStatusPrivate.h"
#include "zephmetadataui/ControlFactory.h"

#include <boost/range/empty.hpp>

namespace zephmetadataui
{

namespace
{

// Grows only while the library is loaded; no start cycle clears it.
std::set<Path>& Blacklist()
{
    static std::set<Path> paths;
    return paths;
}

bool IsRawToneCurve(Path const& path)
{
    // Made once: the namespace lookup is not free.
    static UTF8String const toneCurve = Text8("ToneCurve");
    static UTF8String const cameraRaw = StandardSchemaNamespace(StandardSchema(11));
    return path.propertyName == toneCurve && path.schemaNamespace == cameraRaw;
}

} // namespace

void BlacklistPath(Path const& path)
{
    Blacklist().insert(path);
}

std::set<Path> const& BlacklistedPaths()
{
    return Blacklist();
}

bool IsSimpleElementTypeId(UTF8String const& typeId)
{
    boost::optional<PrimitiveType> const primitive = PrimitiveTypeIdAsPrimitiveType(typeId);
    if (primitive && *primitive >= kPrimitiveInteger && *primitive <= kPrimitiveBoolean)
        return true;
    if (TextIs(typeId, "date"))
        return false;
    boost::shared_ptr<TypeDefinition> const type = TypeIdDefinition(typeId);
    return type && type->primitiveType && *type->primitiveType < kPrimitiveOpenChoice;
}

bool IsShowablePath(Path const& path)
{
    if (Blacklist().count(path) != 0)
        return false;
    if (IsRawToneCurve(path))
        return false;

    boost::optional<PrimitiveType> const primitive = PrimitiveTypeOfPath(path);
    if (!primitive || (*primitive != kPrimitiveOpenChoice && *primitive != kPrimitiveClosedChoice &&
                       *primitive != kPrimitiveAlternative))
        return true;

    // Choices and alternatives are shown only over a simple element type.
    boost::shared_ptr<EntryDefinition> const entry = PathEntryDefinition(path);
    if (!entry)
        return false;
    boost::optional<UTF8String> elementTypeId = entry->elementTypeId;
    if (!elementTypeId && entry->typeId)
        if (boost::shared_ptr<TypeDefinition> const type = TypeIdDefinition(*entry->typeId))
            elementTypeId = type->elementTypeId;
    return elementTypeId && IsSimpleElementTypeId(*elementTypeId);
}

bool IsFocusablePath(Path const& path)
{
    if (path.readOnly)
        return false;
    boost::optional<PrimitiveType> const primitive = PrimitiveTypeOfPath(path);
    if (!primitive)
        return false;
    if (*primitive < kPrimitiveText || *primitive > kPrimitiveAlternative)
    {
        // Numbers take the keyboard only as stars.
        boost::shared_ptr<TypeDefinition> const type = TypeEntryDefinition(path);
        if (!type || !TextIs(type->name, "rating"))
            return false;
    }
    if (!HasEditableType(path))
        return false;
    // Arrays of structures and fields named through them have no control.
    if (!boost::empty(ChildPaths(path)) || IsPathOfAnyItem(path))
        return false;
    boost::shared_ptr<EntryDefinition> const entry = PathEntryDefinition(path);
    return !(entry && entry->typeId && TextContains(*entry->typeId, "harborline private"));
}

void FilterShowablePaths(std::set<Path>& paths)
{
    for (auto it = paths.begin(); it != paths.end();)
        it = IsShowablePath(*it) ? std::next(it) : paths.erase(it);
}

void FilterShowablePaths(std::vector<Path>& paths)
{
    for (auto it = paths.begin(); it != paths.end();)
        it = IsShowablePath(*it) ? std::next(it) : paths.erase(it);
}

} // namespace zephmetadataui

#pragma once
// What form a property takes when it is first written: simple, or which kind
// of array, and whether its items are structures. Existing nodes speak for
// themselves; this answers for absent ones.

#include "zephmetadata/Path.h"

#include <cstdint>
#include <string>

namespace zephmetadata
{
namespace detail
{

struct PropertyForm
{
    std::uint32_t arrayForm = 0; // 0: simple; else xmp::kArrayBag/Seq/Alt/AltText
    bool itemsAreStructures = false;
    bool isStructure = false;
};

// By the path's definition when the definitions know it, else by the
// published schemas' well-known list properties.
PropertyForm FormOfAbsentProperty(std::string const& schemaNamespace,
                                  std::string const& propertyName);

// The prefix to register an unknown namespace with, from its schema
// definition when there is one; empty otherwise.
std::string SuggestedPrefix(std::string const& schemaNamespace);

} // namespace detail
} // namespace zephmetadata

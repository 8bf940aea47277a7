#pragma once
// Nodes from an archive's value tree: the classes an archive may name, and
// what each section's keys do to a node. Keys without a visible effect on
// this platform are accepted and passed over; an unknown class, section or
// key, or a value of the wrong kind, throws ArchiveError.

#include "PropMapArchive.h"

#include "zephui/UI_ArchivedDialog.h"

#include <memory>

namespace zephui
{

class DrawbotImageResourceCache;

namespace archive
{

struct BuildContext
{
    ResourceManager const* resources = nullptr;
    ArchivedNodeCreator creator;
    // Shared with the image supply functions of picture nodes, which may
    // outlive the dialog in a caller's hands.
    std::shared_ptr<DrawbotImageResourceCache> images;
};

// The root node of an archive's top table, built with all its children.
UI_NodePtr BuildArchive(PropValue const& top, BuildContext const& context);

// Localises a text in parentheses that begins with "$$$/"; any other text
// is returned as it stands.
zephcore::UTF16String ShownText(zephcore::UTF16String const& text);

} // namespace archive

} // namespace zephui

#include "zephui/UI_ArchivedDialog.h"

#include "ArchiveNodeBuilder.h"
#include "PropMapArchive.h"

#include "zephui/DrawbotImageResourceCache.h"
#include "zephui/ResourceManager.h"

namespace zephui
{

namespace
{

std::string Describe(std::string const& archive, std::string const& reason, long line, long column)
{
    std::string text = "archive '" + archive + "'";
    if (line > 0)
        text += " line " + std::to_string(line) + ", column " + std::to_string(column);
    return text + ": " + reason;
}

} // namespace

ArchiveError::ArchiveError(std::string const& archive, std::string const& reason, long line,
                           long column)
    : std::runtime_error(Describe(archive, reason, line, column)), archive(archive), reason(reason),
      line(line), column(column)
{
}

UI_ArchivedDialog::UI_ArchivedDialog(SupplierInterface const* supplier,
                                     ResourceManager const* resources,
                                     std::string const& archiveName,
                                     zephcore::UTF16String const& title, HWND parentWindow,
                                     Flags<unsigned long> flags, ArchivedNodeCreator const& creator)
    : UI_Dialog(title, parentWindow), supplier(supplier), resources(resources),
      archiveName(archiveName)
{
    Load(flags, creator);
}

UI_ArchivedDialog::UI_ArchivedDialog(SupplierInterface const* supplier,
                                     ResourceManager const* resources,
                                     std::string const& archiveName,
                                     zephcore::UTF16String const& title, UI_Node* parentNode,
                                     Flags<unsigned long> flags, ArchivedNodeCreator const& creator)
    : UI_Dialog(title, parentNode), supplier(supplier), resources(resources),
      archiveName(archiveName)
{
    Load(flags, creator);
}

UI_ArchivedDialog::~UI_ArchivedDialog() = default;

void UI_ArchivedDialog::Load(Flags<unsigned long> flags, ArchivedNodeCreator const& creator)
{
    std::vector<std::uint8_t> data;
    if (!resources || !resources->GetBinary("XML", archiveName, data))
        throw ArchiveError(archiveName, "there is no XML resource of that name", 0, 0);
    // The whole tree is read and built before anything joins the window, so
    // a damaged archive leaves no half-made dialog behind.
    UI_NodePtr root;
    try
    {
        archive::BuildContext context;
        context.resources = resources;
        context.creator = creator;
        context.images = std::make_shared<DrawbotImageResourceCache>();
        root = archive::BuildArchive(archive::ReadPropMap(data), context);
    }
    catch (ArchiveError const& error)
    {
        throw ArchiveError(archiveName, error.GetReason(), error.GetLine(), error.GetColumn());
    }
    RectF const size = root->UI_GetLocalRectF(false);
    root->UI_SetLocalRectF(size);
    SetContentSize(size.width, size.height);
    if (flags.IsAnySet(kArchivedDialogFixedSize))
    {
        SetMinimumSize(size.width, size.height);
        SetMaximumSize(size.width, size.height);
    }
    ChildPushBack(root);
}

UI_NodePtr UI_ArchivedDialog::GetNodeForID(std::string const& id) const
{
    // Nodes below the dialog only: a counted pointer to the dialog itself,
    // taken in a subclass's constructor, would delete it when let go.
    UI_NodePtr const node(UI_ChildGetFromID(id));
    if (!node)
        ThrowConversionError();
    return node;
}

void UI_ArchivedDialog::ThrowConversionError()
{
    zephcore::ThrowError(
        zephcore::kErrorLevelError,
        "$$$/zephcore/utility/Error/InvalidTypeConversion=Invalid type conversion.");
}

} // namespace zephui

#pragma once
// A dialog whose controls come from an archive: a "prop.map" XML resource of
// type "XML" that names each node's class, id, rectangle, binding, texts and
// flags. The archive's root node becomes the dialog's content at 0, 0, and the
// dialog's content area takes the root's size. The dialog's code then finds
// its controls by id with GetNodeForID.
//
// Texts in parentheses that begin with "$$$/" ("($$$/zephui/dialogs/OK=OK)")
// go through the localiser; any other text is shown as it stands.
//
// A damaged archive (bad XML, an unknown element, class, section or key, a
// pair without exactly one value, a bad number) or a missing resource throws
// ArchiveError from the constructor, before the dialog has a window.

#include "zephui/UI_Dialog.h"
#include "zephui/zephui_export.h"

#include "zephcore/Error.h"

#include <boost/function.hpp>
#include <boost/intrusive_ptr.hpp>

#include <stdexcept>
#include <string>

namespace zephui
{

class ResourceManager;
class SupplierInterface;

// Why an archive could not be read, and where: line and column are 1-based,
// and 0 when the fault has no place in the text (a missing resource).
class ZEPHUI_EXPORT ArchiveError : public std::runtime_error
{
public:
    ArchiveError(std::string const& archive, std::string const& reason, long line, long column);
    std::string const& GetArchive() const { return archive; }
    std::string const& GetReason() const { return reason; }
    long GetLine() const { return line; }
    long GetColumn() const { return column; }

private:
    std::string archive;
    std::string reason;
    long line = 0;
    long column = 0;
};

// Makes the node for an archived node's "className"; null leaves the node to
// the archive's own class.
using ArchivedNodeCreator = boost::function<UI_NodePtr(zephcore::UTF16String const& className)>;

// Flags of the UI_ArchivedDialog constructor.
enum ArchivedDialogFlags : unsigned long
{
    // The dialog keeps the archive's size: the user can't resize it.
    kArchivedDialogFixedSize = 0x01,
};

class ZEPHUI_EXPORT UI_ArchivedDialog : public UI_Dialog
{
public:
    // resources: where the archive and its images are read; it must outlive
    // the dialog's nodes. Pass HWND(nullptr) for a dialog without a parent.
    UI_ArchivedDialog(SupplierInterface const* supplier, ResourceManager const* resources,
                      std::string const& archiveName, zephcore::UTF16String const& title,
                      HWND parentWindow, Flags<unsigned long> flags = 0,
                      ArchivedNodeCreator const& creator = ArchivedNodeCreator());
    UI_ArchivedDialog(SupplierInterface const* supplier, ResourceManager const* resources,
                      std::string const& archiveName, zephcore::UTF16String const& title,
                      UI_Node* parentNode, Flags<unsigned long> flags = 0,
                      ArchivedNodeCreator const& creator = ArchivedNodeCreator());
    ~UI_ArchivedDialog() override;

    // The first node with this id below the dialog, depth first. An unknown
    // id throws the toolkit's conversion error.
    UI_NodePtr GetNodeForID(std::string const& id) const;
    // The same, cast; a node of another class throws the conversion error.
    template <class T> boost::intrusive_ptr<T> GetNodeForID(std::string const& id) const
    {
        boost::intrusive_ptr<T> node = boost::dynamic_pointer_cast<T>(GetNodeForID(id));
        if (!node)
            ThrowConversionError();
        return node;
    }

    SupplierInterface const* GetSupplier() const { return supplier; }
    ResourceManager const* GetResourceManager() const { return resources; }
    std::string const& GetArchiveName() const { return archiveName; }

    // The error of a failed GetNodeForID.
    [[noreturn]] static void ThrowConversionError();

private:
    void Load(Flags<unsigned long> flags, ArchivedNodeCreator const& creator);

    SupplierInterface const* supplier = nullptr;
    ResourceManager const* resources = nullptr;
    std::string archiveName;
};

using UI_ArchivedDialogPtr = boost::intrusive_ptr<UI_ArchivedDialog>;

} // namespace zephui

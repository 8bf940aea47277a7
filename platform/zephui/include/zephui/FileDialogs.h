#pragma once
// Choosing folders and files. Each dialog is made, set up, run with
// RunModal and then read: GetResponse() is kResponseOK when the user chose.
// The dialogs are the toolkit's own (not the desktop's), so they look the
// same everywhere and tests can drive them (ModalDriver::ChooseFile).

#include "zephui/zephui_export.h"

#include "zephcore/Files.h"
#include "zephcore/Strings.h"

#include <memory>
#include <vector>

class QFileDialog;

namespace zephui
{

class UI_Node;

// One entry of a file dialog's type list. The label is shown ("XMP Files
// (*.xmp)"; a localiser key is looked up); extension is what it lets
// through, without the dot ("xmp"; "*" for every file); a save dialog adds
// defaultExtension to a name typed without one.
struct ZEPHUI_EXPORT FileDialogFilterInfo
{
    zephcore::UTF16String label;
    zephcore::UTF16String extension;
    zephcore::UTF16String defaultExtension;
};

// Bits of a file dialog's flags.
enum FileDialogFlags : unsigned long
{
    kFileDialogAllowMultiple = 0x1,      // an open dialog takes several files
    kFileDialogConfirmOverwrite = 0x2,   // a save dialog asks before replacing a file
    kFileDialogPathMustExist = 0x4,      // the chosen file's folder (and an opened file) exist
    kFileDialogAddDefaultExtension = 0x8 // a name typed without extension gets the filter's
};

class ZEPHUI_EXPORT OS_NavigationDialog
{
public:
    enum Response
    {
        kResponseCancel = 0,
        kResponseOK = 1
    };

    // A dialog that chooses a folder.
    explicit OS_NavigationDialog(UI_Node* parent = nullptr);
    virtual ~OS_NavigationDialog();
    OS_NavigationDialog(OS_NavigationDialog const&) = delete;
    OS_NavigationDialog& operator=(OS_NavigationDialog const&) = delete;

    // The folder shown first; one that does not exist is ignored.
    void SetDefaultDirectory(zephcore::UTF16String const& folder);
    void SetWindowTitle(zephcore::UTF16String const& title);
    int RunModal();
    int GetResponse() const { return response; }
    // The folder chosen (for a file dialog, the folder of the first file).
    zephcore::Dir GetDirectory() const;

protected:
    QFileDialog& Dialog() const { return *dialog; }
    std::vector<zephcore::UTF16String> const& Chosen() const { return chosen; }

private:
    std::unique_ptr<QFileDialog> dialog;
    std::vector<zephcore::UTF16String> chosen;
    int response = kResponseCancel;
};

class ZEPHUI_EXPORT OS_FileDialog : public OS_NavigationDialog
{
public:
    // The first file chosen; an empty file without a choice.
    zephcore::File GetFile() const;
    std::vector<zephcore::File> GetFiles() const;
    // The name offered first in the name field.
    void SetDefaultFileName(zephcore::UTF16String const& name);

protected:
    OS_FileDialog(UI_Node* parent, std::vector<FileDialogFilterInfo> const& filters,
                  int initialFilter, unsigned long flags, bool save);

private:
    std::vector<FileDialogFilterInfo> filters;
};

class ZEPHUI_EXPORT OS_FileOpenDialog : public OS_FileDialog
{
public:
    OS_FileOpenDialog(UI_Node* parent, std::vector<FileDialogFilterInfo> const& filters,
                      int initialFilter = 0, unsigned long flags = kFileDialogPathMustExist)
        : OS_FileDialog(parent, filters, initialFilter, flags, false)
    {
    }
};

class ZEPHUI_EXPORT OS_FileSaveAsDialog : public OS_FileDialog
{
public:
    OS_FileSaveAsDialog(UI_Node* parent, std::vector<FileDialogFilterInfo> const& filters,
                        int initialFilter = 0,
                        unsigned long flags = kFileDialogConfirmOverwrite |
                                              kFileDialogPathMustExist |
                                              kFileDialogAddDefaultExtension)
        : OS_FileDialog(parent, filters, initialFilter, flags, true)
    {
    }
};

} // namespace zephui

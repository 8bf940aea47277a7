#include "zephui/FileDialogs.h"

#include "WindowParent.h"

#include "zephcore/QtStrings.h"

#include <QDir>
#include <QFileDialog>

namespace zephui
{

namespace
{

// Qt reads a filter's patterns from its last parentheses: those the label
// shows are replaced by the extension's own, so "*" lets every file through
// (a label's "*.*" would miss names without a dot).
QString QtFilter(FileDialogFilterInfo const& filter)
{
    QString label = LocalText(filter.label).trimmed();
    if (label.endsWith(QLatin1Char(')')))
    {
        int const open = label.lastIndexOf(QLatin1Char('('));
        if (open >= 0)
            label = label.left(open).trimmed();
    }
    QString const extension = zephcore::ToQString(filter.extension);
    QString const pattern = extension.isEmpty() || extension == QLatin1String("*")
                                ? QStringLiteral("*")
                                : QStringLiteral("*.") + extension;
    return label + QStringLiteral(" (") + pattern + QLatin1Char(')');
}

} // namespace

// ---- OS_NavigationDialog -------------------------------------------------

OS_NavigationDialog::OS_NavigationDialog(UI_Node* parent)
    : dialog(std::make_unique<QFileDialog>(ParentWindowOf(parent)))
{
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
}

OS_NavigationDialog::~OS_NavigationDialog() = default;

void OS_NavigationDialog::SetDefaultDirectory(zephcore::UTF16String const& folder)
{
    QString const path = zephcore::ToQString(zephcore::NormalizePath(folder));
    if (QDir(path).exists())
        dialog->setDirectory(path);
}

void OS_NavigationDialog::SetWindowTitle(zephcore::UTF16String const& title)
{
    dialog->setWindowTitle(LocalText(title));
}

int OS_NavigationDialog::RunModal()
{
    chosen.clear();
    response = dialog->exec() == QDialog::Accepted ? kResponseOK : kResponseCancel;
    if (response == kResponseOK)
        for (QString const& path : dialog->selectedFiles())
            chosen.push_back(zephcore::ToUTF16(path));
    if (chosen.empty())
        response = kResponseCancel;
    return response;
}

zephcore::Dir OS_NavigationDialog::GetDirectory() const
{
    if (chosen.empty())
        return {};
    if (dialog->fileMode() == QFileDialog::Directory)
        return zephcore::Dir(chosen.front());
    return zephcore::File(chosen.front()).GetParent();
}

// ---- File dialogs --------------------------------------------------------

OS_FileDialog::OS_FileDialog(UI_Node* parent, std::vector<FileDialogFilterInfo> const& filters,
                             int initialFilter, unsigned long flags, bool save)
    : OS_NavigationDialog(parent), filters(filters)
{
    QFileDialog& d = Dialog();
    d.setOption(QFileDialog::ShowDirsOnly, false);
    if (save)
    {
        d.setAcceptMode(QFileDialog::AcceptSave);
        d.setFileMode(QFileDialog::AnyFile);
        d.setOption(QFileDialog::DontConfirmOverwrite, !(flags & kFileDialogConfirmOverwrite));
    }
    else
    {
        d.setAcceptMode(QFileDialog::AcceptOpen);
        bool const existing = flags & kFileDialogPathMustExist;
        d.setFileMode((flags & kFileDialogAllowMultiple) ? QFileDialog::ExistingFiles
                      : existing                         ? QFileDialog::ExistingFile
                                                         : QFileDialog::AnyFile);
    }
    QStringList names;
    for (FileDialogFilterInfo const& filter : filters)
        names.push_back(QtFilter(filter));
    d.setNameFilters(names);
    if (initialFilter >= 0 && initialFilter < names.size())
        d.selectNameFilter(names[initialFilter]);
    if (save && (flags & kFileDialogAddDefaultExtension))
    {
        auto const suffixFor = [this, names](QString const& name)
        {
            int const index = int(names.indexOf(name));
            return index < 0
                       ? QString()
                       : zephcore::ToQString(this->filters[std::size_t(index)].defaultExtension);
        };
        d.setDefaultSuffix(suffixFor(d.selectedNameFilter()));
        QObject::connect(&d, &QFileDialog::filterSelected, &d,
                         [&d, suffixFor](QString const& name)
                         { d.setDefaultSuffix(suffixFor(name)); });
    }
}

zephcore::File OS_FileDialog::GetFile() const
{
    return Chosen().empty() ? zephcore::File() : zephcore::File(Chosen().front());
}

std::vector<zephcore::File> OS_FileDialog::GetFiles() const
{
    std::vector<zephcore::File> files;
    for (zephcore::UTF16String const& path : Chosen())
        files.emplace_back(path);
    return files;
}

void OS_FileDialog::SetDefaultFileName(zephcore::UTF16String const& name)
{
    Dialog().selectFile(zephcore::ToQString(name));
}

} // namespace zephui

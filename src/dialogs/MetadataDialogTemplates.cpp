// The template popup of the metadata dialog: open the template folder,
// import a template file, export the open metadata as one, or apply one of
// the folder's templates. Applying merges into the dialog's copy, so Cancel
// still undoes it.

#include "dialogs/MetadataDialog.h"
#include "dialogs/MetadataTemplateImportOptionsDialog.h"

#include <zephmetadata/Access.h>
#include <zephmetadata/Templates.h>
#include <zephmetadata/XmpMeta.h>

#include <zephui/Desktop.h>
#include <zephui/FileDialogs.h>

#include <zephcore/Files.h>
#include <zephcore/Localizer.h>

#include <cstring>

namespace zephmetadataui
{

using namespace zephui;
using zephcore::UTF16String;

namespace
{

int const kFirstTemplateRow = 5;

// Gives read access to a template's packet.
class TemplateMetadataProvider : public zephmetadata::BufferProviderImpl
{
public:
    TemplateMetadataProvider(unsigned char const* buffer, unsigned long long size)
        : zephmetadata::BufferProviderImpl(buffer, size)
    {
    }
};

UTF16String Text(char const* key)
{
    return zephcore::Localizer::Get().GetString(key);
}

// The last "." stands four from the end and "xmp" follows, in any case.
bool IsTemplateName(UTF16String const& name)
{
    std::size_t const dot = name.rfind(u'.');
    if (dot == UTF16String::npos || dot + 4 != name.size())
        return false;
    for (std::size_t i = 0; i < 3; ++i)
    {
        char16_t c = name[dot + 1 + i];
        if (c >= u'A' && c <= u'Z')
            c = char16_t(c - u'A' + u'a');
        if (c != u"xmp"[i])
            return false;
    }
    return true;
}

std::vector<FileDialogFilterInfo> TemplateFilters(bool save)
{
    UTF16String const xmp = zephcore::AsciiToUTF16("xmp");
    return {{Text("$$$/zephmetadataui/template/dialog/filter/xmpFiles=XMP Files (*.xmp)"), xmp,
             save ? xmp : UTF16String()},
            {Text("$$$/zephmetadataui/template/dialog/filter/allFiles=All Files (*.*)"),
             zephcore::AsciiToUTF16("*"), UTF16String()}};
}

} // namespace

void MetadataDialog::ListTemplates()
{
    for (int row = templatePopup->CountItems() - 1; row >= kFirstTemplateRow; --row)
        templatePopup->RemoveItem(row);
    templateFileNames.clear();
    UTF16String const folder = TemplateFolder();
    if (zephcore::Dir(folder).Exists())
        for (UTF16String const& path : zephcore::FileUtils::ContainedFiles(folder))
        {
            UTF16String const name = zephcore::FileUtils::GetPathFileName(path);
            if (IsTemplateName(name))
                templateFileNames.push_back(name);
        }
    if (templateFileNames.empty())
    {
        templatePopup->AddItem(
            Text("$$$/zephmetadataui/dialog/template/popup/NoTemplatesFound=No Templates Found"));
        templatePopup->DisableItem(kFirstTemplateRow);
        return;
    }
    bool const readOnly = (parameters.flags & kMetadataDialogReadOnly) != 0;
    for (UTF16String const& name : templateFileNames)
    {
        templatePopup->AddItem(name.substr(0, name.size() - 4));
        if (readOnly)
            templatePopup->DisableItem(templatePopup->CountItems() - 1);
    }
}

void MetadataDialog::TemplateChosen()
{
    int const value = templatePopup->GetValue();
    if (value == 0)
    {
        ShellExecuteW(GetDesktopWindow(), zephcore::AsciiToUTF16("explore"), TemplateFolder(), {},
                      {}, 1);
    }
    else if (value == 2)
    {
        ImportTemplate();
    }
    else if (value == 3)
    {
        ExportTemplate();
    }
    else if (value >= kFirstTemplateRow &&
             std::size_t(value - kFirstTemplateRow) < templateFileNames.size())
    {
        ApplyTemplate(TemplateFolder() + zephcore::AsciiToUTF16("\\") +
                      templateFileNames[std::size_t(value - kFirstTemplateRow)]);
    }
}

void MetadataDialog::ImportTemplate()
{
    OS_FileOpenDialog dialog(this, TemplateFilters(false), 0, 4);
    UTF16String const folder = TemplateFolder();
    if (zephcore::Dir(folder).Exists())
        dialog.SetDefaultDirectory(folder);
    dialog.SetWindowTitle(Text("$$$/zephmetadataui/template/import/dialog/title=Import Template"));
    dialog.RunModal();
    if (dialog.GetResponse() == OS_NavigationDialog::kResponseOK)
        ApplyTemplate(dialog.GetFile().FullPath());
}

void MetadataDialog::ExportTemplate()
{
    OS_FileSaveAsDialog dialog(this, TemplateFilters(true), 0, 14);
    UTF16String const folder = TemplateFolder();
    if (zephcore::Dir(folder).Exists())
        dialog.SetDefaultDirectory(folder);
    dialog.SetWindowTitle(Text("$$$/zephmetadataui/template/export/dialog/title=Export Template"));
    dialog.SetDefaultFileName(parameters.title.substr(0, parameters.title.find(u'.')));
    dialog.RunModal();
    if (dialog.GetResponse() != OS_NavigationDialog::kResponseOK)
        return;
    zephmetadata::MetaDataReadAccess const access(provider);
    if (!*access)
        return;
    std::string packet;
    zephmetadata::xmp::SerializeToBuffer(*access, packet, zephmetadata::xmp::kSerializeReadable);
    packet.resize(std::strlen(packet.c_str()));
    zephcore::FileUtils::SimpleWriteStringToFile(dialog.GetFile().FullPath(), packet);
}

void MetadataDialog::ApplyTemplate(UTF16String const& path)
{
    if (!zephcore::FileUtils::FileExists(path))
        return;
    std::unique_ptr<zephcore::IPlatformByteStream> stream = zephcore::OpenReadStream(path);
    if (!stream)
        return;
    zephmetadata::TemplateImportOptions option;
    {
        boost::intrusive_ptr<MetadataTemplateImportOptionsDialog> options(
            new MetadataTemplateImportOptionsDialog(GetSupplier(), this, parameters.settings));
        if (options->RunModal() != kDialogResultOK)
            return;
        option = options->SelectedOption();
    }
    std::vector<unsigned char> buffer(std::size_t(stream->Length()) + 1, 0);
    stream->ReadBlock(buffer.data(), buffer.size() - 1);
    auto const source = boost::shared_ptr<TemplateMetadataProvider>(
        new TemplateMetadataProvider(buffer.data(), buffer.size()));
    {
        zephmetadata::MetaDataReadAccess const templateAccess(source);
        MetadataProviderWrapper::ApplyTemplate(provider, *templateAccess, option);
    }
    if (currentPage)
        currentPage->Refresh();
}

} // namespace zephmetadataui

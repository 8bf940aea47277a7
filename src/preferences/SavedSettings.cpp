// Named sets of shown properties, one file each in the settings folder, and
// the popup that lists them. The model writes and reads the files' XML;
// their names, folder and life belong here. Nothing read or written is
// reported: a file the model refuses is not listed, and a file that could
// not be written is missing from the list that follows.

#include "zephmetadataui/MetadataPreferencesDialog.h"

#include "preferences/PreferencesPrivate.h"

#include <zephmetadata/Settings.h>
#include <zephui/MessageBoxes.h>

#include <algorithm>
#include <vector>

namespace zephmetadataui
{

using preferences::StripSavedSettingsSuffix;
using preferences::Text;
using zephcore::FileUtils::BuildPathSpec;

namespace
{
UTF16String FileNameFor(UTF16String const& name)
{
    return name + zephcore::AsciiToUTF16(".xmp_view_settings.xml");
}
} // namespace

void MetadataPreferencesDialog::RebuildSettingsPopup()
{
    if (!settingsPopup)
        return;
    settingsPopup->DeleteAllItems();
    if (settingsFolder.empty())
    {
        settingsPopup->SetDisabled(true);
        if (saveButton)
            saveButton->SetDisabled(true);
        return;
    }
    std::vector<UTF16String> const files = zephcore::FileUtils::ContainedFiles(settingsFolder);
    settingsPopup->AddItem(
        Text("$$$/zephmetadataui/dialogs/MetadataSettingsDialog/MenuItem/Custom=(Custom)"));
    settingsPopup->DisableItem(0);
    settingsPopup->AddSeparator();
    savedSets.clear();
    for (UTF16String const& file : files)
    {
        UTF16String const name = zephcore::File(file).GetName();
        if (!preferences::HasSavedSettingsSuffix(name))
            continue;
        std::set<Path> paths;
        if (!zephmetadata::ReadIncludedLeafPathsAsXMLFile(paths, file))
            continue;
        savedSets[name] = std::move(paths);
        settingsPopup->AddItem(StripSavedSettingsSuffix(name));
    }
    settingsPopup->SetDisabled(files.empty());
    SynchronizePopup();
}

void MetadataPreferencesDialog::SynchronizePopup()
{
    if (!settingsPopup)
        return;
    for (auto const& [name, paths] : savedSets)
    {
        if (paths.size() == includedPaths.size() &&
            std::equal(paths.begin(), paths.end(), includedPaths.begin()))
        {
            settingsPopup->SetValueString(StripSavedSettingsSuffix(name));
            return;
        }
    }
    settingsPopup->SetValue(0);
    if (deleteButton)
        deleteButton->SetDisabled(true);
}

void MetadataPreferencesDialog::OnLoadSettings()
{
    auto const found = savedSets.find(FileNameFor(settingsPopup->GetValueString()));
    if (found != savedSets.end())
        includedPaths = found->second;
    UpdateOpenedVisibleRows();
    if (deleteButton)
        deleteButton->SetEnabled(true);
}

void MetadataPreferencesDialog::OnSaveSettings()
{
    UTF16String name;
    if (!zephui::SimpleInputBox(
            Text("$$$/zephmetadataui/dialogs/MetadataSettingsGetNameDialog/Title=Save Settings"),
            Text("$$$/zephmetadataui/dialogs/MetadataSettingsGetNameDialog/InputLabel=Name:"), name,
            {}, {}, GetView().get()))
        return;

    // Missing folders are made from the outermost in.
    std::vector<zephcore::Dir> missing;
    for (zephcore::Dir folder(settingsFolder); !folder.Exists() && !folder.IsTopLevelDir();
         folder = folder.Parent())
        missing.push_back(folder);
    for (auto it = missing.rbegin(); it != missing.rend(); ++it)
        it->Create();

    UTF8String xml;
    zephmetadata::IncludedLeafPathsAsXMLString(includedPaths, xml);
    zephcore::FileUtils::SimpleWriteStringToFile(FileNameFor(BuildPathSpec(settingsFolder, name)),
                                                 std::string(xml.begin(), xml.end()));
    RebuildSettingsPopup();
    // Only a set that is now listed is chosen: after a failed write the
    // popup goes on saying "(Custom)".
    if (savedSets.count(FileNameFor(name)) != 0)
    {
        settingsPopup->SetValueString(name);
        if (deleteButton)
            deleteButton->SetEnabled(true);
    }
}

void MetadataPreferencesDialog::OnDeleteSettings()
{
    UTF16String const name = settingsPopup ? settingsPopup->GetValueString() : UTF16String();
    UTF16String const message = zephcore::ReplaceInString(
        Text("$$$/zephmetadataui/dialogs/MetadataSettingsDeleteConfirmationDialog/Message=Are you "
             "sure you want to delete the setting '@0'?"),
        name);
    if (zephui::SimpleConfirmationBox(
            Text("$$$/zephmetadataui/dialogs/MetadataSettingsDeleteConfirmationDialog/"
                 "Title=Delete Settings"),
            message,
            Text("$$$/zephmetadataui/dialogs/MetadataSettingsDeleteConfirmationDialog/"
                 "confirmButtonText=&Delete"),
            GetView().get()))
        zephcore::FileUtils::RemoveFile(FileNameFor(BuildPathSpec(settingsFolder, name)));
    RebuildSettingsPopup();
}

} // namespace zephmetadataui

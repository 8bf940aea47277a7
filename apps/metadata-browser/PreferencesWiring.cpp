#include "PreferencesWiring.h"

#include <zephmetadata/CustomDefinitions.h>
#include <zephmetadata/PanelConversion.h>
#include <zephmetadata/PathDefinitions.h>
#include <zephmetadata/Settings.h>
#include <zephmetadataui/MetadataPreferencesDialog.h>
#include <zephmetadataui/MetadataView.h>
#include <zephmetadataui/PanelConversionDialog.h>
#include <zephui/FileDialogs.h>

#include <zephcore/QtStrings.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

namespace browser
{

namespace
{

QString Tr(char const* text)
{
    return QCoreApplication::translate("browser::PreferencesWiring", text);
}

QString BrowserConfigFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/zephmetadataui/metadata-browser");
}

// The conversion looks in the chosen folder only while its dialog is open.
class ChosenPanelsFolder
{
public:
    explicit ChosenPanelsFolder(zephcore::UTF16String const& folder)
    {
        zephmetadata::utility::SetGenericPanelsDirectory(folder);
    }
    ~ChosenPanelsFolder() { zephmetadata::utility::SetGenericPanelsDirectory({}); }
    ChosenPanelsFolder(ChosenPanelsFolder const&) = delete;
    ChosenPanelsFolder& operator=(ChosenPanelsFolder const&) = delete;
};

} // namespace

PreferencesWiring::PreferencesWiring(zephmetadataui::MetadataView* tree, WarningSink warn)
    : tree(tree), warn(std::move(warn))
{
}

PreferencesWiring::~PreferencesWiring() = default;

QString PreferencesWiring::ShownSetFile()
{
    return BrowserConfigFolder() + QStringLiteral("/shown-properties.xml");
}

QString PreferencesWiring::SavedSetsFolder()
{
    return BrowserConfigFolder() + QStringLiteral("/Saved Sets");
}

void PreferencesWiring::Restore()
{
    if (!QFileInfo::exists(ShownSetFile()))
        return;
    std::set<zephmetadata::Path> paths;
    if (zephmetadata::ReadIncludedLeafPathsAsXMLFile(paths, zephcore::ToUTF16(ShownSetFile())))
    {
        ShowInTree(paths);
        if (showInForms)
            showInForms(paths);
    }
    else
        warn(Tr("The properties to show could not be read from %1; all are shown.")
                 .arg(ShownSetFile()));
}

bool PreferencesWiring::EditPreferences()
{
    std::set<zephmetadata::Path> before;
    tree->GetIncludedPaths(before);
    std::set<zephmetadata::Path> chosen = before;
    std::set<zephmetadataui::SchemaDefinitionPtr> modified;
    auto const schemas = zephmetadata::CommonSchemaDefinitions();
    bool const ok = zephmetadataui::DoMetadataPreferencesDialog(
        chosen, nullptr, tree.get(), modified, zephcore::ToUTF16(SavedSetsFolder()),
        {schemas.begin(), schemas.end()}, {}, {}, {}, false);
    // Schemas made or changed stay so after Cancel as well: their files follow.
    for (zephmetadataui::SchemaDefinitionPtr const& schema : modified)
        zephmetadata::RewriteSchemaFile(schema);
    ShowInTree(ok ? chosen : before);
    if (ok && showInForms)
        showInForms(chosen);
    if (ok)
        Keep(chosen);
    return ok;
}

void PreferencesWiring::ShowInTree(std::set<zephmetadata::Path> const& paths)
{
    zephmetadataui::MetadataView::SuspendTreeRebuild const oneRebuild(tree.get());
    tree->SetDisplaySchemas(zephmetadata::CommonSchemaDefinitions());
    tree->SetIncludedPaths(paths);
}

void PreferencesWiring::Keep(std::set<zephmetadata::Path> const& paths)
{
    zephmetadata::UTF8String xml;
    zephmetadata::IncludedLeafPathsAsXMLString(paths, xml);
    QSaveFile file(ShownSetFile());
    bool const written = QDir().mkpath(BrowserConfigFolder()) && file.open(QIODevice::WriteOnly) &&
                         file.write(reinterpret_cast<char const*>(xml.data()),
                                    qint64(xml.size())) == qint64(xml.size()) &&
                         file.commit();
    if (!written)
        warn(Tr("The properties to show could not be kept for the next start: %1")
                 .arg(file.errorString()));
}

void PreferencesWiring::ConvertPanels()
{
    zephui::OS_NavigationDialog chooser(tree.get());
    chooser.SetWindowTitle(zephcore::ToUTF16(Tr("Choose the Folder of Generic Panels")));
    chooser.SetDefaultDirectory(
        zephmetadata::utility::GenericPanelsDirectory(zephmetadata::utility::kSuiteVersionR6));
    if (chooser.RunModal() != zephui::OS_NavigationDialog::kResponseOK)
        return;
    ChosenPanelsFolder const chosen(chooser.GetDirectory().FullPath());
    zephmetadataui::sharedui::PanelConversionDialogPtr const dialog(
        new zephmetadataui::sharedui::PanelConversionDialog(nullptr, tree.get()));
    dialog->RunModal();
}

} // namespace browser

// Renders the file-information dialog to PNGs, for a person to look at:
//     tools/screenshots/zeph-metadata-dialog OUTPUT_FOLDER [MEDIA_FILE]
// Every page of the file (by default the IPTC reference image of the shared
// corpus, else the sample photo), the raw packet with a search hit, the
// template import options and the error log.

#include "dialogs/MetadataDialog.h"

#include <zephmetadataui/Module.h>
#include <zephmetadataui/RawDataView.h>

#include <zephmetadata/ErrorLog.h>
#include <zephmetadata/FileProvider.h>

#include <zephui/ModalDriver.h>
#include <zephui/NodeWidget.h>
#include <zephui/PrefManager.h>

#include <zephcore/QtStrings.h>

#include "ScreenshotSetup.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <boost/make_shared.hpp>

#include <cstdio>
#include <map>

using zephmetadataui::MetadataDialog;
using zephui::ModalDriver;

namespace
{

// A host's settings kept in memory, with the error log switched on.
class Settings : public zephmetadataui::MetadataDialogSettings
{
public:
    void GetInt(std::string const&, int&) override {}
    void GetBool(std::string const& key, bool& value) override
    {
        if (key == "enableDebugMode")
            value = true;
    }
    bool GetStringList(std::string const&, std::vector<std::string>&) override { return false; }
    void GetString(std::string const&, std::string&) override {}
    void SetInt(std::string const&, int) override {}
    void SetBool(std::string const&, bool) override {}
    void SetStringList(std::string const&, std::vector<std::string> const&) override {}
    void SetString(std::string const&, std::string const&) override {}
};

MetadataDialog* DialogOf(QWidget* window)
{
    return dynamic_cast<MetadataDialog*>(zephui::NodeForWidget(window));
}

} // namespace

int main(int argc, char** argv)
{
    screenshots::UseOffscreenUnlessTold();
    QApplication app(argc, argv);
    std::optional<QDir> const output = screenshots::OutputFolder(argc, argv, " [MEDIA_FILE]");
    if (!output)
        return 2;
    QDir const& out = *output;
    QString media =
        argc > 2 ? QString::fromLocal8Bit(argv[2])
                 : QStringLiteral(ZEPH_SOURCE_DIR "/../shared/corpus/"
                                                  "frameright-IPTC-PhotometadataRef-Std2021.1.jpg");
    if (!QFile::exists(media))
        media = QStringLiteral(ZEPH_SOURCE_DIR "/samples/harbour-first-light.jpg");

    QTemporaryDir config;
    qputenv("XDG_CONFIG_HOME", config.path().toUtf8());
    zephui::PrefManager::SetSettingsFile(zephcore::ToUTF16(config.filePath("places.ini")));
    zephmetadataui::Initialize();
    zephmetadata::AddError(
        zephmetadata::kErrorDefinitionEntry, zephcore::ToUTF16(QStringLiteral("custom.xml")),
        zephcore::ToUTF16(QStringLiteral("A property has no type; it is shown as text.")));
    zephmetadata::AddError(
        zephmetadata::kErrorMetadataRead, zephcore::ToUTF16(QStringLiteral("scan-0042.tif")),
        zephcore::ToUTF16(QStringLiteral("The file's XMP packet is damaged and was not read.")));
    // A copy, so that nothing can reach the file itself.
    QString const copy = config.filePath(QFileInfo(media).fileName());
    QFile::copy(media, copy);
    QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
    auto provider = boost::make_shared<zephmetadata::FileProvider>(zephcore::ToUTF16(copy));
    QFile::copy(copy, zephcore::ToQString(MetadataDialog::TemplateFolder()) + "/Harbour set.xmp");

    int saved = 0;
    auto const shoot = [&](QWidget* window, QString const& name)
    { saved += window->grab().save(out.filePath(name + ".png")) ? 1 : 0; };
    ModalDriver driver;
    driver
        .Then(
            [&](QWidget* window)
            {
                MetadataDialog* dialog = DialogOf(window);
                window->resize(760, 640);
                auto const& pages = dialog->GetPages();
                for (std::size_t row = 0; row < pages.size(); ++row)
                {
                    zephui::ClickWidget(dialog->GetPageList()->GetItem(int(row))->UI_GetWidget());
                    QApplication::processEvents();
                    auto const name = pages[row]->GetViewName();
                    QString id = QString::fromStdString(std::string(name.begin(), name.end()));
                    shoot(window, "page-" + id.section('.', -1));
                }
                auto* raw = dynamic_cast<zephmetadataui::RawDataView*>(dialog->GetCurrentPage());
                if (raw)
                {
                    raw->GetSearchBox()->SetValue(
                        zephcore::ToUTF16(QStringLiteral("Iptc4xmpCore:Location")));
                    raw->GetSearchBox()->SendValueChangedMessage();
                    shoot(window, "page-rawdata-search");
                }
                dialog->GetTemplatePopup()->BeforeShowMenu();
                dialog->GetTemplatePopup()->ChooseItem(5);
                ModalDriver::PressNode("error_image")(window);
                ModalDriver::PressNode("CancelButton")(window);
            })
        .Then(
            [&](QWidget* window)
            {
                shoot(window, "template-options");
                ModalDriver::PressNode("cancelButtonID")(window);
            })
        .Then(
            [&](QWidget* window)
            {
                shoot(window, "error-log");
                ModalDriver::PressNode("okButtonID")(window);
            });
    Settings settings;
    zephmetadataui::MetadataDialogParameters parameters;
    parameters.title = zephcore::ToUTF16(QFileInfo(media).fileName());
    parameters.settings = &settings;
    zephmetadataui::DoMetadataDialog(provider, nullptr, parameters);
    zephmetadataui::Terminate();
    std::printf("%d pictures in %s\n", saved, qPrintable(out.path()));
    return saved > 0 && driver.Unexpected() == 0 ? 0 : 1;
}

// Pictures of the browser's batch save: its progress over the window, and
// the list of files it could not save. Usage: metadata-browser-batch OUTPUT_FOLDER

#include "BatchWork.h"
#include "BrowserWindow.h"
#include "ThumbnailCache.h"

#include <zephmetadata/Access.h>
#include <zephmetadata/Values.h>
#include <zephmetadataui/Module.h>
#include <zephui/ModalDriver.h>

#include "ScreenshotSetup.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPainter>
#include <QProgressDialog>
#include <QTemporaryDir>

#include <cstdio>

namespace
{

// The window with the dialog over its middle, as a user sees them.
bool SaveOver(QWidget* window, QWidget* dialog, QString const& path)
{
    QPixmap picture = window->grab();
    QPixmap const front = dialog->grab();
    QPainter painter(&picture);
    painter.fillRect(picture.rect(), QColor(0, 0, 0, 40));
    painter.drawPixmap((picture.width() - front.width()) / 2,
                       (picture.height() - front.height()) / 3, front);
    painter.end();
    return picture.save(path);
}

} // namespace

int main(int argc, char** argv)
{
    screenshots::UseOffscreenUnlessTold();
    QApplication app(argc, argv);
    std::optional<QDir> const output = screenshots::OutputFolder(argc, argv);
    if (!output)
        return 2;
    QDir const& out = *output;
    QTemporaryDir folder;
    zephmetadataui::Initialize();
    bool ok = true;
    {
        QStringList paths;
        for (char const* name : {"harbour-dawn.jpg", "harbour-quay.jpg", "harbour-nets.jpg",
                                 "harbour-boats.jpg", "harbour-gulls.jpg", "harbour-tide.jpg"})
        {
            paths << folder.filePath(name);
            QFile::copy(QStringLiteral(ZEPH_SOURCE_DIR "/samples/harbour-first-light.jpg"),
                        paths.back());
            QFile::setPermissions(paths.back(), QFile::ReadOwner | QFile::WriteOwner);
        }
        browser::BrowserWindow window;
        window.SetCloseQuestion([] { return QMessageBox::Discard; });
        window.resize(1100, 700);
        window.show();
        window.Open(paths);
        window.Loader().WaitForAll();
        zephmetadata::Path const headline(zephcore::ToUTF8("http://ns.adobe.com/photoshop/1.0/"),
                                          zephcore::ToUTF8("Headline"));
        for (int row = 0; row < window.DocumentCount(); ++row)
        {
            zephmetadata::MetaDataUpdateAccess access(window.DocumentAt(row)->Provider());
            zephmetadata::SetValue(*access, headline, zephcore::ToUTF8("Harbour at first light"));
            access.AddChange(headline);
        }
        QFile::setPermissions(paths[2], QFile::ReadOwner);
        window.Batch().SetProgressListener(
            [&](int done, int)
            {
                if (done == 3)
                    ok = SaveOver(&window, window.Batch().Progress(),
                                  out.filePath("browser-batch-progress.png")) &&
                         ok;
            });
        zephui::ModalDriver driver;
        driver.Then([](QWidget*) {})
            .Then(
                [&](QWidget* dialog)
                {
                    // The saved files' pictures are made again: painting asks for them.
                    window.grab();
                    window.Thumbnails().WaitForAll();
                    QCoreApplication::processEvents();
                    ok = SaveOver(&window, dialog, out.filePath("browser-batch-not-saved.png")) &&
                         ok;
                    zephui::ModalDriver::PressButton("Close")(dialog);
                });
        window.Batch().SaveAll();
        ok = ok && driver.Pending() == 0;
    }
    zephmetadataui::Terminate();
    std::printf("%s\n", ok ? "written" : "failed");
    return ok ? 0 : 1;
}

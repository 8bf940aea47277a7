// The metadata browser: opens media files and folders and shows and edits
// their XMP metadata with the zephmetadataui views.
//
//     metadata-browser [FILE|FOLDER]...
//     metadata-browser --screenshot DIR [FILE|FOLDER]...   (renders, then exits)

#include "BrowserWindow.h"
#include "PreferencesWiring.h"
#include "ThumbnailCache.h"

#include <zephmetadataui/Module.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QLineEdit>
#include <QSettings>
#include <QTimer>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName("metadata-browser");
    QApplication::setOrganizationName("zephmetadataui");

    QCommandLineParser parser;
    parser.setApplicationDescription("Show and edit the XMP metadata of media files.");
    parser.addHelpOption();
    QCommandLineOption screenshot(
        "screenshot", "Render the window and its panels to PNG files in DIR, then exit.", "DIR");
    parser.addOption(screenshot);
    QCommandLineOption find("find",
                            "With --screenshot: also a picture of the list narrowed to the "
                            "files whose metadata holds TEXT.",
                            "TEXT");
    parser.addOption(find);
    parser.addPositionalArgument("paths", "Files or folders to open.", "[FILE|FOLDER...]");
    parser.process(app);

    zephmetadataui::Initialize();
    int result = 0;
    {
        browser::BrowserWindow window;
        QSettings settings;
        // Pictures show the panels as they come, whatever a user left.
        if (!parser.isSet(screenshot))
        {
            window.RestoreLayoutSettings(settings);
            window.Preferences().Restore();
        }
        window.Open(parser.positionalArguments());
        if (parser.isSet(screenshot))
        {
            window.Loader().WaitForAll();
            // The richest sample is the photo: show it when it is there.
            int shown = 0;
            for (int row = 0; row < window.DocumentCount(); ++row)
            {
                if (window.DocumentAt(row)->Path().endsWith(".jpg", Qt::CaseInsensitive))
                {
                    shown = row;
                    break;
                }
            }
            window.SelectFiles({shown});
            // The rows on screen ask for their pictures as they paint.
            window.grab();
            window.Thumbnails().WaitForAll();
            QString const folder = parser.value(screenshot);
            result = window.SaveScreenshots(folder) ? 0 : 1;
            if (parser.isSet(find))
            {
                window.FileFindBox()->setText(parser.value(find));
                window.SelectFiles({window.FileRowOf(0)});
                if (!window.grab().save(QDir(folder).filePath("browser-find.png")))
                    result = 1;
            }
            std::printf("%s %s\n",
                        result == 0 ? "Screenshots written to" : "Could not write screenshots to",
                        qPrintable(folder));
        }
        else
        {
            window.show();
            result = app.exec();
            window.SaveLayoutSettings(settings);
        }
    }
    zephmetadataui::Terminate();
    return result;
}

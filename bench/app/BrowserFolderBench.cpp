// Opening folders of 20,000 and 100,000 small files in the metadata browser:
// time until the list fills its first screen, time until every file is
// listed, and the process's peak memory, beside a command-line reader's time
// over the same folder when one is on the path. Each measurement runs in a
// fresh process, so peaks do not mix.
//
//     bench_browser_folder            (makes the folders, runs, prints figures)

#include "BrowserWindow.h"
#include "GeneratedFolder.h"
#include "ProcessFigures.h"

#include <zephmetadataui/Module.h>

#include <QAbstractItemModel>
#include <QApplication>
#include <QEventLoop>
#include <QHeaderView>
#include <QStandardPaths>
#include <QTableView>
#include <QTemporaryDir>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace
{

using benchsupport::Clock;
using benchsupport::Milliseconds;
using benchsupport::PeakKilobytes;

int RunBrowser(int argc, char** argv, char const* folder, int expected)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    zephmetadataui::Initialize();
    int result = 1;
    {
        browser::BrowserWindow window;
        window.resize(1280, 900);
        // As the application does: reading starts, the window shows, and
        // the event loop runs while the files stream in.
        auto const start = Clock::now();
        window.Open({QString::fromLocal8Bit(folder)});
        window.show();
        QTableView* list = window.FileList();
        int const screenful =
            list->viewport()->height() / list->verticalHeader()->defaultSectionSize();
        double firstScreen = -1;
        QEventLoop loop;
        auto const onProgress = [&]
        {
            if (firstScreen < 0 && list->model()->rowCount() >= screenful)
            {
                window.grab(); // the first screen painted, tree and all
                firstScreen = Milliseconds(start);
            }
        };
        QObject::connect(&window.Loader(), &browser::FileLoader::Progress, &loop, onProgress);
        QObject::connect(&window.Loader(), &browser::FileLoader::AllLoaded, &loop,
                         &QEventLoop::quit);
        if (window.Loader().IsBusy())
            loop.exec();
        onProgress();
        double const total = Milliseconds(start);
        if (window.DocumentCount() == expected && firstScreen >= 0)
            result = 0;
        std::printf("%.1f %.1f %ld\n", firstScreen, total, PeakKilobytes());
    }
    zephmetadataui::Terminate();
    return result;
}

struct Figures
{
    double firstScreen = 0;
    double total = 0;
    long kilobytes = 0;
};

Figures RunChild(std::string const& self, std::string const& folder, int files)
{
    std::string const command = "'" + self + "' --child '" + folder + "' " + std::to_string(files);
    FILE* pipe = popen(command.c_str(), "r");
    Figures figures;
    if (!pipe ||
        std::fscanf(pipe, "%lf %lf %ld", &figures.firstScreen, &figures.total,
                    &figures.kilobytes) != 3 ||
        pclose(pipe) != 0)
    {
        std::fprintf(stderr, "browser run over %d files failed\n", files);
        std::exit(1);
    }
    return figures;
}

// The command-line reader listing every file's XMP; negative when absent.
double ReaderMilliseconds(std::string const& folder)
{
    QString const reader = QStandardPaths::findExecutable("exiftool");
    if (reader.isEmpty())
        return -1;
    std::string const command =
        "'" + reader.toStdString() + "' -q -q -m -j -XMP:All '" + folder + "' > /dev/null";
    auto const start = Clock::now();
    if (std::system(command.c_str()) != 0)
        return -1;
    return Milliseconds(start);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 4 && std::string(argv[1]) == "--child")
        return RunBrowser(argc, argv, argv[2], std::atoi(argv[3]));

    bool const withReader = !(argc == 2 && std::string(argv[1]) == "--no-reader");
    std::string const self = QFile::decodeName(argv[0]).toStdString();
    for (int files : {20000, 100000})
    {
        QTemporaryDir folder;
        if (!zephbench::GenerateSidecars(folder.path(), files))
            return 1;
        std::string const path = folder.path().toStdString();
        Figures const browser = RunChild(self, path, files);
        std::printf("%d small files (sidecars of about 1.3 KB):\n", files);
        std::printf("  first screen listed  %8.1f ms   (budget under 1000 ms)  %s\n",
                    browser.firstScreen, browser.firstScreen < 1000 ? "ok" : "OVER");
        std::printf("  every file listed    %8.1f ms\n", browser.total);
        std::printf("  peak memory          %8.1f MB   (budget under 500 MB)  %s\n",
                    browser.kilobytes / 1024.0, browser.kilobytes < 500 * 1024 ? "ok" : "OVER");
        if (!withReader)
            continue;
        double const reader = ReaderMilliseconds(path);
        if (reader < 0)
            std::printf("  command-line reader: exiftool is not on the path\n");
        else
            std::printf("  exiftool, every file's XMP  %8.1f ms (%.1f x the browser's total)\n",
                        reader, reader / browser.total);
        std::fflush(stdout);
    }
    return 0;
}

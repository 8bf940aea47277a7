// Opening a file with a 10,000-word speech track in the metadata browser:
// time from the start of reading to the first painted tree, and the
// process's peak memory, each beside exempi alone parsing the same packet.
// Each measurement runs in a fresh process, so peaks do not mix.
//
//     bench_browser_open            (makes the file, runs both, prints figures)

#include "BrowserWindow.h"
#include "ProcessFigures.h"

#include <zephmetadataui/Module.h>

#include <exempi/xmp.h>

#include <QApplication>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace
{

using benchsupport::Clock;
using benchsupport::Milliseconds;
using benchsupport::PeakKilobytes;

int RunExempi(char const* path)
{
    xmp_init();
    auto const start = Clock::now();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 1;
    QByteArray const packet = file.readAll();
    XmpPtr xmp = xmp_new(packet.constData(), std::size_t(packet.size()));
    double const ms = Milliseconds(start);
    std::printf("%.1f %ld\n", ms, PeakKilobytes());
    xmp_free(xmp);
    return xmp ? 0 : 1;
}

int RunBrowser(int argc, char** argv, char const* path)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    zephmetadataui::Initialize();
    int result = 1;
    {
        browser::BrowserWindow window;
        window.resize(1100, 720);
        // As the application does: reading starts, the window shows, and the
        // event loop runs while the reader thread parses; the first file to
        // arrive is shown at once.
        auto const start = Clock::now();
        window.Open({QString::fromLocal8Bit(path)});
        window.show();
        QEventLoop loop;
        QObject::connect(&window.Loader(), &browser::FileLoader::AllLoaded, &loop,
                         &QEventLoop::quit);
        if (window.Loader().IsBusy())
            loop.exec();
        double const shown = Milliseconds(start);
        long const shownPeak = PeakKilobytes();
        QImage const painted = window.grab().toImage();
        double const ms = Milliseconds(start);
        // The parts, for whoever works on the figures.
        std::fprintf(stderr,
                     "  read and tree built %.1f ms (peak %.1f MB), painted after %.1f ms more\n",
                     shown, shownPeak / 1024.0, ms - shown);
        if (!painted.isNull() && window.DocumentCount() == 1 && window.DocumentAt(0)->Provider())
            result = 0;
        std::printf("%.1f %ld\n", ms, PeakKilobytes());
    }
    zephmetadataui::Terminate();
    return result;
}

struct Figures
{
    double ms = 0;
    long kilobytes = 0;
};

// Runs one child measurement; exits on failure.
Figures RunChild(std::string const& self, char const* mode, std::string const& file)
{
    std::string const command = "'" + self + "' --child " + mode + " '" + file + "'";
    FILE* pipe = popen(command.c_str(), "r");
    Figures figures;
    if (!pipe || std::fscanf(pipe, "%lf %ld", &figures.ms, &figures.kilobytes) != 2)
    {
        std::fprintf(stderr, "%s run failed\n", mode);
        std::exit(1);
    }
    pclose(pipe);
    return figures;
}

// Runs both modes five times, taking turns so that a machine that slows
// down or speeds up meanwhile weighs on both alike; medians of each.
std::pair<Figures, Figures> Measure(std::string const& self, std::string const& file)
{
    constexpr int kRuns = 5;
    std::vector<double> times[2];
    std::vector<long> peaks[2];
    char const* const modes[2] = {"exempi", "browser"};
    for (int run = 0; run < kRuns; ++run)
    {
        for (int mode = 0; mode < 2; ++mode)
        {
            Figures const figures = RunChild(self, modes[mode], file);
            times[mode].push_back(figures.ms);
            peaks[mode].push_back(figures.kilobytes);
        }
    }
    Figures medians[2];
    for (int mode = 0; mode < 2; ++mode)
    {
        std::sort(times[mode].begin(), times[mode].end());
        std::sort(peaks[mode].begin(), peaks[mode].end());
        medians[mode] = {times[mode][kRuns / 2], peaks[mode][kRuns / 2]};
    }
    return {medians[0], medians[1]};
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 4 && std::string(argv[1]) == "--child")
        return std::string(argv[2]) == "exempi" ? RunExempi(argv[3])
                                                : RunBrowser(argc, argv, argv[3]);

    QTemporaryDir folder;
    std::string const file = folder.filePath("speech-10000.xmp").toStdString();
    std::string const make =
        std::string("'") + ZEPH_MAKE_SAMPLES + "' --speech-markers 10000 '" + file + "'";
    if (std::system(make.c_str()) != 0)
        return 1;
    std::printf("10,000-word speech track, %lld bytes\n",
                static_cast<long long>(QFile(file.c_str()).size()));

    std::string const self = QFile::decodeName(argv[0]).toStdString();
    auto const [exempi, browser] = Measure(self, file);
    double const timeRatio = browser.ms / exempi.ms;
    double const memoryRatio = double(browser.kilobytes) / double(exempi.kilobytes);
    std::printf("exempi alone:  parse %8.1f ms   peak %8.1f MB\n", exempi.ms,
                exempi.kilobytes / 1024.0);
    std::printf("browser:       first painted tree %8.1f ms   peak %8.1f MB\n", browser.ms,
                browser.kilobytes / 1024.0);
    std::printf("time   %.2f x exempi (budget at most 1.50)  %s\n", timeRatio,
                timeRatio <= 1.5 ? "ok" : "OVER");
    std::printf("memory %.2f x exempi (budget at most 1.30)  %s\n", memoryRatio,
                memoryRatio <= 1.3 ? "ok" : "OVER");
    return 0;
}

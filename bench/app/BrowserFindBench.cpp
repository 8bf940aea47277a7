// Find across files in the metadata browser: one keystroke in the file
// list's find box over a folder of 10,000 small files, as the user types a
// word and takes it back letter by letter.
//
//     bench_browser_find

#include "BrowserWindow.h"
#include "GeneratedFolder.h"
#include "QtBenchMain.h"

#include <QAbstractItemModel>
#include <QLineEdit>
#include <QTableView>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

namespace
{

constexpr int kFiles = 10000;

struct OpenFolder
{
    QTemporaryDir folder;
    browser::BrowserWindow window;

    OpenFolder()
    {
        if (!zephbench::GenerateSidecars(folder.path(), kFiles))
            std::abort();
        window.resize(1280, 900);
        window.Open({folder.path()});
        window.Loader().WaitForAll();
        if (window.DocumentCount() != kFiles)
            std::abort();
    }
};

OpenFolder& Folder()
{
    static OpenFolder* open = new OpenFolder;
    return *open;
}

void BM_FindKeystroke(benchmark::State& state)
{
    OpenFolder& open = Folder();
    // Typed and taken back: wide matches, narrow ones, and none at all.
    QStringList typed;
    QString const word = QStringLiteral("lighthouse keeper zz");
    for (int n = 1; n <= word.size(); ++n)
        typed << word.left(n);
    for (int n = word.size() - 1; n >= 0; --n)
        typed << word.left(n);
    QLineEdit* box = open.window.FileFindBox();
    std::size_t next = 0;
    long long shown = 0;
    for (auto _ : state)
    {
        box->setText(typed[int(next++ % std::size_t(typed.size()))]);
        shown += open.window.FileList()->model()->rowCount();
    }
    box->clear();
    benchmark::DoNotOptimize(shown);
    state.counters["files"] = kFiles;
}
BENCHMARK(BM_FindKeystroke)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    return zephbench::RunWidgetBenchmarks(
        argc, argv,
        [](zephbench::RecordingReporter const& reporter)
        {
            double const ms = reporter.Get("BM_FindKeystroke") / 1e6;
            if (ms < 0)
                return;
            std::printf(
                "find across 10,000 files: %.2f ms per keystroke (budget under 100 ms)  %s\n", ms,
                ms < 100.0 ? "ok" : "OVER");
        });
}

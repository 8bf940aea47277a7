// A layout-script dialog of 100 controls (ten columns of labelled fields,
// popups and buttons): parsing the script alone, and parsing it and building
// the laid-out dialog without showing it. Figures are printed beside their
// budget at the end.

#include "RecordingReporter.h"

#include <zepheve/UI_Eve.h>

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QCoreApplication>

#include <cstdio>
#include <string>

namespace
{

constexpr int kColumns = 10;
constexpr int kControlsPerColumn = 10;

std::string HundredControlScript()
{
    std::string s = "layout Hundred\nzeph_dialog {\n  name: \"Hundred\"\n  resizable: true\n"
                    "  zeph_arrangement {\n    placement: row\n    spacing: 6\n";
    for (int c = 0; c < kColumns; ++c)
    {
        s += "    zeph_arrangement column" + std::to_string(c) + " {\n      spacing: 6\n";
        for (int i = 0; i < kControlsPerColumn; ++i)
        {
            std::string const name = "c" + std::to_string(c) + "_" + std::to_string(i);
            switch (i % 3)
            {
            case 0:
                s += "      zeph_text_edit " + name + " { label: \"Field " + name +
                     ":\"; min_width: 120 }\n";
                break;
            case 1:
                s += "      zeph_popup " + name + " { label: \"Kind:\"; min_width: 120 }\n";
                break;
            default:
                s += "      zeph_button " + name + " { title: \"Button " + name +
                     "\"; bind: right }\n";
            }
        }
        s += "    }\n";
    }
    return s + "  }\n}\n";
}

std::string const& Script()
{
    static std::string const script = HundredControlScript();
    return script;
}

void BM_Parse(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(zepheve::ParseLayoutScript(Script()));
}

void BM_ParseAndBuild(benchmark::State& state)
{
    for (auto _ : state)
    {
        zepheve::UI_Eve eve("Hundred", nullptr, nullptr);
        benchmark::DoNotOptimize(eve.CreateView(Script()));
        state.PauseTiming();
        eve.Destruction();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        state.ResumeTiming();
    }
}

BENCHMARK(BM_Parse)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ParseAndBuild)->Unit(benchmark::kMillisecond);

void PrintBudgets(zephbench::RecordingReporter const& reporter)
{
    double const parse = reporter.Get("BM_Parse") / 1e6;
    double const build = reporter.Get("BM_ParseAndBuild") / 1e6;
    std::printf("\nLayout script of %d controls (ms of CPU time) and budgets:\n",
                kColumns * kControlsPerColumn);
    std::printf("  parse only        %8.3f ms\n", parse);
    std::printf("  parse and build   %8.3f ms   budget < 20 ms: %s\n", build,
                build >= 0.0 && build < 20.0 ? "met" : "MISSED");
}

} // namespace

int main(int argc, char** argv)
{
    if (qgetenv("QT_QPA_PLATFORM").isEmpty())
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    return zephbench::RunAndPrintBudgets(argc, argv, PrintBudgets);
}

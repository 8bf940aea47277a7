#pragma once
// The main of a benchmark program over widgets: Qt on the offscreen platform
// unless another is asked for, the library started, the benchmarks run and
// their figures printed beside their budgets.

#include "RecordingReporter.h"

#include <zephmetadataui/Module.h>

#include <QApplication>

namespace zephbench
{

inline int RunWidgetBenchmarks(int argc, char** argv,
                               std::function<void(RecordingReporter const&)> const& printBudgets)
{
    if (qgetenv("QT_QPA_PLATFORM").isEmpty())
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    zephmetadataui::Initialize();
    int const result = RunAndPrintBudgets(argc, argv, printBudgets);
    zephmetadataui::Terminate();
    return result;
}

} // namespace zephbench

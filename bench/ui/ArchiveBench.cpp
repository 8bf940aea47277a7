// A dialog built from an archive of 100 controls: read, nodes made with
// their sections' values, and laid into the dialog.
//
// Budget: under 20 ms for the whole dialog.

#include "ArchiveText.h"
#include "RecordingReporter.h"

#include "zephui/ResourceManager.h"
#include "zephui/UI_ArchivedDialog.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <cstdio>

using namespace zephui;
using namespace archivetext;

namespace
{

constexpr int kControls = 100;

// The archive, whatever name is asked for.
class OneArchive : public ResourceManager
{
public:
    explicit OneArchive(std::string const& text) : data(text.begin(), text.end()) {}
    bool GetBinary(std::string const& /*type*/, std::string const& /*name*/,
                   std::vector<std::uint8_t>& out) const override
    {
        out = data;
        return true;
    }
    bool HasBinary(std::string const& /*type*/, std::string const& /*name*/) const override
    {
        return true;
    }
    void GetResourceDataNames(std::string const& /*type*/,
                              std::vector<std::string>& names) const override
    {
        names.clear();
    }

private:
    std::vector<std::uint8_t> data;
};

// A form of labels, fields, check boxes, popups and buttons, in rows of five.
std::string FormArchive()
{
    Node root;
    root.cls = "UI_SubView";
    root.id = "root";
    root.width = 600;
    root.height = 24.0 * kControls / 5 + 40;
    root.mask = 12;
    char const* const classes[] = {"UI_StaticText", "UI_TextEdit", "UI_Checkbox", "UI_Popup",
                                   "UI_TextButton"};
    for (int i = 0; i < kControls; ++i)
    {
        Node control;
        control.cls = classes[i % 5];
        control.id = "control" + std::to_string(i);
        control.left = 10 + 115 * (i % 5);
        control.top = 10 + 24 * (i / 5);
        control.width = 110;
        control.height = 21;
        control.mask = i % 5 == 4 ? 5 : 0;
        std::string const text = "($$$/bench/archive/Text" + std::to_string(i) + "=Text)";
        if (control.cls == "UI_Popup")
            control.sections = {
                Section("UI_Popup", {Pair("popupItems", UTexts({"One", "", "Two"}))})};
        else if (control.cls != "UI_TextEdit")
            control.sections = {Section(control.cls, {Pair("text", UText(text))})};
        root.children.push_back(control);
    }
    return Document(root);
}

void BM_BuildDialog(benchmark::State& state)
{
    OneArchive const resources(FormArchive());
    for (auto _ : state)
    {
        UI_ArchivedDialogPtr dialog(new UI_ArchivedDialog(
            nullptr, &resources, "form", zephcore::AsciiToUTF16("Form"), HWND(nullptr)));
        benchmark::DoNotOptimize(dialog.get());
        // Taking the dialog down is not part of the figure.
        state.PauseTiming();
        dialog.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_BuildDialog)->Unit(benchmark::kMillisecond);

void PrintBudgets(zephbench::RecordingReporter const& reporter)
{
    double const ms = reporter.Get("BM_BuildDialog") / 1e6;
    std::printf("\nArchived dialog of %d controls: %.2f ms   budget < 20 ms: %s\n", kControls, ms,
                ms >= 0.0 && ms < 20.0 ? "met" : "MISSED");
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM",
            qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
    QApplication app(argc, argv);
    return zephbench::RunAndPrintBudgets(argc, argv, PrintBudgets);
}

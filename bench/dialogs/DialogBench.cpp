// The metadata dialog on a transcript of 10,000 timed words: opening it with
// every page built and laid out, and the commit of OK, beside a parse of the
// same packet.

#include "Packets.h"
#include "QtBenchMain.h"

#include "dialogs/MetadataDialog.h"

#include <zephmetadata/Access.h>
#include <zephmetadata/Provider.h>
#include <zephmetadata/XmpMeta.h>

#include <zephui/Drawbot.h>

#include <benchmark/benchmark.h>

#include <boost/make_shared.hpp>

#include <cstdio>

namespace
{

using zephbench::RecordingReporter;
using zephmetadataui::MetadataDialog;
using zephmetadataui::MetadataProviderWrapper;

constexpr int kMarkers = 10000;

std::string const& Packet()
{
    static std::string const packet = zephbench::MarkersPacket(kMarkers);
    return packet;
}

// The dialog as it opens: the copy made, every page built, the first shown.
boost::intrusive_ptr<MetadataDialog> Open(boost::shared_ptr<MetadataProviderWrapper> const& wrapper,
                                          zephui::SupplierInterface const* supplier)
{
    zephmetadataui::MetadataDialogParameters parameters;
    return boost::intrusive_ptr<MetadataDialog>(
        new MetadataDialog(wrapper, supplier, nullptr, parameters));
}

void BM_OpenDialog(benchmark::State& state)
{
    auto const host = zephmetadata::BufferProviderImpl::Create(Packet());
    auto const supplier = zephui::NewOSSupplier();
    for (auto _ : state)
    {
        auto wrapper = boost::make_shared<MetadataProviderWrapper>(host);
        auto dialog = Open(wrapper, supplier.get());
        benchmark::DoNotOptimize(dialog.get());
    }
}

// Every other page shown once, as a user going through them all would.
void BM_ShowEveryPage(benchmark::State& state)
{
    auto const host = zephmetadata::BufferProviderImpl::Create(Packet());
    auto const supplier = zephui::NewOSSupplier();
    for (auto _ : state)
    {
        state.PauseTiming();
        auto wrapper = boost::make_shared<MetadataProviderWrapper>(host);
        auto dialog = Open(wrapper, supplier.get());
        state.ResumeTiming();
        for (auto const& page : dialog->GetPages())
        {
            page->UI_SetLocalRectF(zephui::RectF(0, 0, 384, 327));
            page->Layout();
        }
        benchmark::DoNotOptimize(dialog.get());
    }
}

void BM_CommitOk(benchmark::State& state)
{
    auto const host = zephmetadata::BufferProviderImpl::Create(Packet());
    for (auto _ : state)
    {
        state.PauseTiming();
        auto wrapper = boost::make_shared<MetadataProviderWrapper>(host);
        {
            zephmetadata::MetaDataUpdateAccess access(wrapper);
            access.AddChange(zephmetadata::Path());
        }
        state.ResumeTiming();
        benchmark::DoNotOptimize(wrapper->CommitChanges());
    }
}

void BM_ParsePacket(benchmark::State& state)
{
    for (auto _ : state)
    {
        auto meta = zephmetadata::xmp::ParseMeta(Packet().data(), Packet().size());
        benchmark::DoNotOptimize(meta.get());
    }
}

void Line(char const* what, double ms, std::string const& budget)
{
    std::printf("  %-48s %9.2f ms   budget %s\n", what, ms, budget.c_str());
}

void PrintBudgets(RecordingReporter const& r)
{
    double const parse = r.Get("BM_ParsePacket") / 1e6;
    std::printf("\nFigures beside their budgets (processor time), %d markers\n", kMarkers);
    Line("open the dialog: every page built, one shown", r.Get("BM_OpenDialog") / 1e6, "< 300 ms");
    Line("then show every page once, raw packet included", r.Get("BM_ShowEveryPage") / 1e6,
         "(no budget)");
    char half[64];
    std::snprintf(half, sizeof half, "< %.2f ms (half a parse)", parse / 2);
    Line("OK: hand the copy to the host", r.Get("BM_CommitOk") / 1e6, half);
    Line("parse of the packet", parse, "(reference)");
}

} // namespace

BENCHMARK(BM_OpenDialog)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ShowEveryPage)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CommitOk)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ParsePacket)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    return zephbench::RunWidgetBenchmarks(argc, argv, PrintBudgets);
}

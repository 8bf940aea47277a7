// Applying a template, and copying and comparing subtrees, on packets that
// grow in size (structures side by side) and in depth (structures inside
// structures, up to the nesting the model accepts). Each figure is printed
// beside its budget at the end.

#include "zephmetadata/Model.h"
#include "zephmetadata/Templates.h"
#include "zephmetadata/XmpMeta.h"

#include "RecordingReporter.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>

using namespace zephmetadata;

namespace
{

std::string Wrap(std::string const& body)
{
    return "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
           "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"><rdf:Description "
           "rdf:about=\"\" xmlns:n=\"http://example.com/bench/\">" +
           body + "</rdf:Description></rdf:RDF></x:xmpmeta>";
}

// A structure `levels` deep ending in a leaf holding `text`.
std::string Chain(int levels, std::string const& text)
{
    std::string open, close;
    for (int i = 0; i < levels; ++i)
    {
        open += "<n:s rdf:parseType=\"Resource\">";
        close += "</n:s>";
    }
    return open + "<n:leaf>" + text + "</n:leaf>" + close;
}

// `items` list items, each a structure 8 levels deep; `tag` makes them differ.
xmp::MetaPtr Wide(int items, std::string const& tag)
{
    std::string body = "<n:list><rdf:Bag>";
    for (int i = 0; i < items; ++i)
        body +=
            "<rdf:li rdf:parseType=\"Resource\">" + Chain(8, tag + std::to_string(i)) + "</rdf:li>";
    body += "</rdf:Bag></n:list>";
    std::string const packet = Wrap(body);
    return xmp::ParseMeta(packet.data(), packet.size());
}

// One property holding a structure `levels` deep.
xmp::MetaPtr Deep(int levels, std::string const& text)
{
    std::string const packet =
        Wrap("<n:top rdf:parseType=\"Resource\">" + Chain(levels, text) + "</n:top>");
    return xmp::ParseMeta(packet.data(), packet.size());
}

// The template of "t" items applied by `option` to a fresh copy of a
// destination of "d" items; the copy is not timed.
void ApplyWide(benchmark::State& state, TemplateImportOptions option)
{
    xmp::MetaPtr const source = Wide(int(state.range(0)), "t");
    xmp::MetaPtr const original = Wide(int(state.range(0)), "d");
    for (auto _ : state)
    {
        state.PauseTiming();
        xmp::MetaPtr destination = xmp::Clone(original.get());
        state.ResumeTiming();
        benchmark::DoNotOptimize(ApplyTemplate(destination.get(), source.get(), option));
    }
}

// Merge: the destination's items differ from the template's, so all are appended.
void BM_MergeWide(benchmark::State& state)
{
    ApplyWide(state, kTemplateImportKeepAndAppend);
    state.SetItemsProcessed(state.iterations() * state.range(0) * 10);
}

// Replace: each property compared with the destination's and written anew.
void BM_ReplaceWide(benchmark::State& state)
{
    ApplyWide(state, kTemplateImportKeepAndReplace);
}

// Equal trees: the comparison alone, nothing written.
void BM_CompareWide(benchmark::State& state)
{
    xmp::MetaPtr const source = Wide(int(state.range(0)), "t");
    xmp::MetaPtr destination = Wide(int(state.range(0)), "t");
    for (auto _ : state)
        benchmark::DoNotOptimize(
            ApplyTemplate(destination.get(), source.get(), kTemplateImportKeepAndReplace));
}

void BM_MergeDeep(benchmark::State& state)
{
    xmp::MetaPtr const source = Deep(int(state.range(0)), "t");
    xmp::MetaPtr const original = Deep(int(state.range(0)), "d");
    for (auto _ : state)
    {
        state.PauseTiming();
        xmp::MetaPtr destination = xmp::Clone(original.get());
        state.ResumeTiming();
        benchmark::DoNotOptimize(
            ApplyTemplate(destination.get(), source.get(), kTemplateImportKeepAndReplace));
    }
}

BENCHMARK(BM_MergeWide)->Arg(500)->Arg(2000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReplaceWide)->Arg(500)->Arg(2000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CompareWide)->Arg(500)->Arg(2000)->Unit(benchmark::kMillisecond);
// 4 + 1 + levels elements deep: 95 levels is the deepest packet accepted.
BENCHMARK(BM_MergeDeep)->Arg(24)->Arg(95)->Unit(benchmark::kMicrosecond);

using zephbench::RecordingReporter;

void Line(char const* what, double figure, char const* unit, char const* budget, bool within)
{
    if (!(figure > 0.0))
        return; // not run (filtered out)
    std::printf("  %-58s %10.3f %-3s  budget %-24s %s\n", what, figure, unit, budget,
                within ? "ok" : "OVER");
}

void PrintBudgets(RecordingReporter const& r)
{
    std::printf("\nFigures beside their budgets\n");
    for (char const* name : {"BM_MergeWide", "BM_ReplaceWide", "BM_CompareWide"})
    {
        double const ratio = r.Get(std::string(name) + "/2000") / r.Get(std::string(name) + "/500");
        std::string const what = std::string(name + 3) + ", 2,000 / 500 items";
        Line(what.c_str(), ratio, "x", "linear: 4 x (< 5 x)", ratio < 5.0);
    }
    double const deep = r.Get("BM_MergeDeep/95");
    Line("MergeDeep, deepest packet accepted", deep / 1e6, "ms", "< 5 ms", deep < 5e6);
    // Every node's path names its ancestors: depth times nodes is the floor.
    double const ratio = deep / r.Get("BM_MergeDeep/24");
    Line("MergeDeep, 95 / 24 levels", ratio, "x", "path length x nodes (< 20 x)", ratio < 20.0);
}

} // namespace

int main(int argc, char** argv)
{
    Initialize();
    int const result = zephbench::RunAndPrintBudgets(argc, argv, PrintBudgets);
    Terminate();
    return result;
}

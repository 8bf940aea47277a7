// The property tree on big metadata, with the common schemas displayed:
// (a) a packet of 2,000 properties, (b) a packet whose speech track holds
// 10,000 markers. Each figure is printed beside its budget at the end.

#include <zephmetadataui/MetadataView.h>
#include <zephmetadataui/Module.h>

#include <zephmetadata/Access.h>
#include <zephmetadata/PathDefinitions.h>
#include <zephmetadata/Provider.h>
#include <zephmetadata/Values.h>

#include <zephui/NodeHostWidget.h>
#include <zephui/UI_ScrollView.h>

#include <benchmark/benchmark.h>

#include <boost/make_shared.hpp>

#include <QApplication>
#include <QPixmap>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

using zephmetadata::Path;
using zephmetadataui::MetadataView;
using Clock = std::chrono::steady_clock;

namespace
{

zephcore::UTF16String U16(char const* text)
{
    return zephcore::AsciiToUTF16(text);
}
zephmetadata::UTF8String U8(std::string const& text)
{
    return zephmetadata::UTF8String(text.begin(), text.end());
}

// Samples of one measured operation, in milliseconds.
std::map<std::string, std::vector<double>> samples;

double Median(std::vector<double> values)
{
    if (values.empty())
        return 0.0;
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}
double Worst(std::vector<double> const& values)
{
    return values.empty() ? 0.0 : *std::max_element(values.begin(), values.end());
}

template <class F> void Timed(benchmark::State& state, std::string const& name, F&& work)
{
    for (auto _ : state)
    {
        auto const start = Clock::now();
        work();
        double const ms = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        samples[name].push_back(ms);
        state.SetIterationTime(ms / 1000.0);
    }
}

std::string Text(zephmetadata::PrimitiveType type, int n)
{
    switch (type)
    {
    case zephmetadata::kPrimitiveInteger:
        return std::to_string(n);
    case zephmetadata::kPrimitiveReal:
        return std::to_string(n) + ".5";
    case zephmetadata::kPrimitiveBoolean:
        return n % 2 ? "True" : "False";
    default:
        return "Sample value " + std::to_string(n) + " of the harbour at first light";
    }
}

// (a) Every simple leaf of the common schemas gets a value, and the history
// of the media-management schema grows until 2,000 values are set.
boost::shared_ptr<zephmetadata::MetaDataProvider> MakeProviderA()
{
    auto provider = boost::make_shared<zephmetadata::TypicalProviderImpl>();
    int written = 0;
    {
        zephmetadata::MetaDataUpdateAccess access(provider);
        for (auto const& schema : zephmetadata::CommonSchemaDefinitions())
            for (Path const& leaf : zephmetadata::DescendantLeafPaths(schema))
            {
                auto const type = zephmetadata::PrimitiveTypeOfPath(leaf);
                if (!type || zephmetadata::IsPathAnArray(leaf, false))
                    continue;
                if (zephmetadata::SetValue(*access, leaf, U8(Text(*type, written))))
                    ++written;
            }
        Path const history(U8("http://ns.adobe.com/xap/1.0/mm/"), U8("xmpMM:History"));
        for (int item = 1; written < 2000 && item < 2000; ++item)
        {
            if (!zephmetadata::AddArrayItem(*access, history, -1))
                break;
            for (Path const& field :
                 zephmetadata::ChildPaths(zephmetadata::CreatePathFromArrayItem(history, item)))
            {
                auto const type = zephmetadata::PrimitiveTypeOfPath(field);
                if (type && written < 2000 &&
                    zephmetadata::SetValue(*access, field, U8(Text(*type, written))))
                    ++written;
            }
        }
        access.AddChange(history);
    }
    std::printf("packet (a): %d properties set\n", written);
    return provider;
}

// (b) A speech track of 10,000 timed words, as a sidecar packet.
std::string PacketB(int markers)
{
    std::string packet =
        "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
        "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
        "<rdf:Description rdf:about=\"\" xmlns:xmpDM=\"http://ns.adobe.com/xmp/1.0/DynamicMedia/\""
        " xmlns:dc=\"http://purl.org/dc/elements/1.1/\">"
        "<dc:title><rdf:Alt><rdf:li xml:lang=\"x-default\">Keeper "
        "interview</rdf:li></rdf:Alt></dc:title>"
        "<xmpDM:Tracks><rdf:Bag><rdf:li "
        "rdf:parseType=\"Resource\"><xmpDM:trackName>Speech</xmpDM:trackName>"
        "<xmpDM:trackType>Speech</xmpDM:trackType><xmpDM:frameRate>f1000</"
        "xmpDM:frameRate><xmpDM:markers><rdf:Seq>";
    static char const* const words[] = {"the",   "lamp",   "was", "lit",  "every",
                                        "night", "before", "the", "storm"};
    for (int i = 0; i < markers; ++i)
    {
        packet += "<rdf:li rdf:parseType=\"Resource\"><xmpDM:startTime>" + std::to_string(i * 400) +
                  "</xmpDM:startTime><xmpDM:duration>350</xmpDM:duration><xmpDM:name>" +
                  words[i % 9] + "</xmpDM:name><xmpDM:speaker>Speaker " +
                  std::to_string(i % 3 + 1) + "</xmpDM:speaker><xmpDM:probability>" +
                  std::to_string(60 + i % 40) +
                  "</xmpDM:probability><xmpDM:type>Speech</xmpDM:type></rdf:li>";
    }
    packet += "</rdf:Seq></xmpDM:markers></rdf:li></rdf:Bag></xmpDM:Tracks></rdf:Description></"
              "rdf:RDF></x:xmpmeta>";
    return packet;
}

struct Fixture
{
    boost::shared_ptr<zephmetadata::MetaDataProvider> provider;
    boost::intrusive_ptr<MetadataView> view;
    std::unique_ptr<zephui::NodeHostWidget> host;
};
std::map<char, Fixture> fixtures;
std::string packetBText;

Fixture& Get(char which)
{
    Fixture& f = fixtures[which];
    if (f.view)
        return f;
    if (which == 'a')
        f.provider = MakeProviderA();
    else
        f.provider = zephmetadata::BufferProviderImpl::Create(packetBText);
    f.view = new MetadataView(zephmetadata::CommonSchemaDefinitions(), f.provider);
    f.host = std::make_unique<zephui::NodeHostWidget>(f.view);
    f.host->resize(500, 800);
    f.host->show();
    QApplication::processEvents();
    return f;
}

zephui::UI_MultiColumnTree* TreeOf(MetadataView* view)
{
    return dynamic_cast<zephui::UI_MultiColumnTree*>(view->ChildGet(0));
}

void BM_ExempiParseB(benchmark::State& state)
{
    Timed(state, "parse (b)",
          [] { benchmark::DoNotOptimize(zephmetadata::BufferProviderImpl::Create(packetBText)); });
}

void Rebuild(benchmark::State& state, char which)
{
    Fixture& f = Get(which);
    Timed(state, std::string("rebuild (") + which + ")",
          [&] { f.view->RefilterMetadataFieldsForRapidFindString(); });
}

void Find(benchmark::State& state, char which)
{
    Fixture& f = Get(which);
    // Alternate between two strings so that each keystroke rebuilds.
    bool flip = false;
    f.view->SetRapidFindString(U16("ligh"));
    Timed(state, std::string("find keystroke (") + which + ")",
          [&]
          {
              flip = !flip;
              f.view->SetRapidFindString(U16(flip ? "light" : "ligh"));
          });
    f.view->SetRapidFindString(zephcore::UTF16String());
}

void FirstPaint(benchmark::State& state, char which)
{
    Fixture& f = Get(which);
    // The paint of a freshly rebuilt tree: the rebuild itself is not counted.
    for (auto _ : state)
    {
        state.PauseTiming();
        f.view->RefilterMetadataFieldsForRapidFindString();
        state.ResumeTiming();
        auto const start = Clock::now();
        benchmark::DoNotOptimize(f.host->grab());
        double const ms = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        samples[std::string("first paint (") + which + ")"].push_back(ms);
        state.SetIterationTime(ms / 1000.0);
    }
}

void OpenEverything(MetadataView* view)
{
    auto* tree = TreeOf(view);
    zephui::UI_MultiColumnTree::ScDeferLayoutForOpenAndCloseRow const defer(tree);
    auto const& list = tree->GetOpenedRows();
    for (auto it = list.begin(); it != list.end(); ++it)
        if ((*it)->CountChildRows() > 0 && !tree->IsRowOpen(*it))
            tree->OpenRow(*it);
}

void ScrollPage(benchmark::State& state, char which)
{
    Fixture& f = Get(which);
    f.view->RefilterMetadataFieldsForRapidFindString();
    OpenEverything(f.view.get());
    auto scroll = TreeOf(f.view.get())->GetScrollView();
    float const page = scroll->GetViewportRectF().height;
    bool down = false;
    Timed(state, std::string("scroll page (") + which + ")",
          [&]
          {
              down = !down;
              scroll->OffsetScroll(0.0f, down ? page : -page);
              f.host->repaint();
          });
}

void OpenAll(benchmark::State& state, char which)
{
    Fixture& f = Get(which);
    for (auto _ : state)
    {
        state.PauseTiming();
        f.view->RefilterMetadataFieldsForRapidFindString();
        state.ResumeTiming();
        auto const start = Clock::now();
        OpenEverything(f.view.get());
        double const ms = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        samples[std::string("open all (") + which + ")"].push_back(ms);
        state.SetIterationTime(ms / 1000.0);
    }
    state.counters["rows"] = double(TreeOf(f.view.get())->GetOpenedRows().size());
}

void Report()
{
    auto m = [](char const* name) { return Median(samples[name]); };
    std::printf("\n%-28s %12s %12s   %s\n", "figure", "median ms", "worst ms", "budget");
    auto line = [&](char const* name, std::string const& budget) {
        std::printf("%-28s %12.2f %12.2f   %s\n", name, m(name), Worst(samples[name]),
                    budget.c_str());
    };
    line("find keystroke (a)", "median < 8 ms, worst < 16 ms");
    line("find keystroke (b)", "(no budget)");
    line("rebuild (a)", "(no budget)");
    char budget[128];
    std::snprintf(budget, sizeof budget, "< half of parse (b) = %.2f ms", m("parse (b)") / 2);
    line("rebuild (b)", budget);
    line("parse (b)", "exempi parse of packet (b)");
    for (char const* kind : {"first paint", "scroll page", "open all"})
    {
        std::string const a = std::string(kind) + " (a)", b = std::string(kind) + " (b)";
        line(a.c_str(), "");
        std::snprintf(budget, sizeof budget, "ratio (b)/(a) = %.2f%s",
                      m(b.c_str()) / std::max(m(a.c_str()), 1e-6),
                      std::string(kind) == "open all"      ? " (grows with rows)"
                      : std::string(kind) == "scroll page" ? " (budget: about 1); median < 4 ms"
                                                           : " (budget: about 1)");
        line(b.c_str(), budget);
    }
}

} // namespace

BENCHMARK(BM_ExempiParseB)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK_CAPTURE(Rebuild, a, 'a')->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(20);
BENCHMARK_CAPTURE(Rebuild, b, 'b')->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK_CAPTURE(Find, a, 'a')->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(60);
BENCHMARK_CAPTURE(Find, b, 'b')->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK_CAPTURE(FirstPaint, a, 'a')
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(20);
BENCHMARK_CAPTURE(FirstPaint, b, 'b')
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(10);
BENCHMARK_CAPTURE(ScrollPage, a, 'a')
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(40);
BENCHMARK_CAPTURE(ScrollPage, b, 'b')
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(40);
BENCHMARK_CAPTURE(OpenAll, a, 'a')->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK_CAPTURE(OpenAll, b, 'b')->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM",
            qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
    QApplication app(argc, argv);
    zephmetadataui::Initialize();
    packetBText = PacketB(10000);
    std::printf("packet (b): %zu bytes, 10000 markers\n", packetBText.size());
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    Report();
    fixtures.clear();
    zephmetadataui::Terminate();
    return 0;
}

// The script view on a long script: a generated dialogue of 5,000 speeches
// (about 150,000 words, eight speakers). Measured: loading it from the
// packet, the first layout of a new view, a layout again after the width
// changed, a paint at the top and at the bottom, and a search keystroke
// (the term changes, the view paints). Each figure is printed beside its
// budget at the end.

#include "QtBenchMain.h"
#include "RecordingReporter.h"
#include "TimedTextBench.h"

#include <zephmetadataui/Module.h>
#include <zephmetadataui/StoryScriptView.h>

#include <zephmetadata/Provider.h>
#include <zephui/UI_ScrollBar.h>

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QWidget>

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

using zephbench::RecordingReporter;
using zephmetadataui::StoryScriptView;
using zephui::UI_ScrollBar;

namespace
{

constexpr int kSpeeches = 5000;
constexpr int kWidth = zephbench::kViewWidth;
constexpr int kHeight = zephbench::kViewHeight;

char const* const kSpeakers[] = {"ELIN",    "TOMAS", "MAREK",         "ÅSA",
                                 "SKIPPER", "RADIO", "HARBOURMASTER", "ANNA"};

char const* const kWords[] = {
    "the",       "a",       "and",        "of",       "to",      "in",     "we",        "you",
    "I",         "it",      "is",         "was",      "not",     "that",   "on",        "at",
    "lamp",      "light",   "keeper",     "tower",    "stairs",  "night",  "storm",     "wind",
    "rain",      "sea",     "boat",       "ferry",    "engine",  "reef",   "rocks",     "harbour",
    "bell",      "rope",    "oil",        "wick",     "glass",   "lens",   "clockwork", "gallery",
    "north",     "south",   "green",      "white",    "slow",    "cold",   "soup",      "bread",
    "winter",    "October", "father",     "mother",   "brother", "radio",  "signal",    "position",
    "starboard", "port",    "listen",     "hear",     "see",     "turn",   "ring",      "bring",
    "keep",      "come",    "go",         "wait",     "again",   "always", "never",     "still",
    "there.",    "here.",   "now.",       "tonight.", "Tomas,",  "Elin,",  "quickly,",  "please,",
    "somebody",  "nobody",  "everything", "nothing",  "before",  "after",  "because",   "while",
    "hundred",   "twelve",  "steps",      "hands",    "frozen",  "brass",  "shelf",     "window"};

// A fixed sequence, so that every run measures the same script.
struct Random
{
    std::uint32_t seed = 20260612;
    std::uint32_t Next(std::uint32_t below)
    {
        seed = seed * 1664525u + 1013904223u;
        return (seed >> 8) % below;
    }
};

std::string ScriptPacket()
{
    Random random;
    std::string packet = "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
                         "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
                         "<rdf:Description rdf:about=\"\" "
                         "xmlns:xmpScript=\"http://ns.adobe.com/xmp/1.0/Script/\">"
                         "<xmpScript:dialogSequence><rdf:Seq>";
    std::uint32_t const wordCount = sizeof(kWords) / sizeof(kWords[0]);
    std::uint32_t const speakerCount = sizeof(kSpeakers) / sizeof(kSpeakers[0]);
    std::uint32_t speaker = 0;
    for (int i = 0; i < kSpeeches; ++i)
    {
        // Now and then a speaker goes on over two items, which join.
        if (random.Next(10) != 0)
            speaker = (speaker + 1 + random.Next(speakerCount - 1)) % speakerCount;
        std::string speech;
        std::uint32_t const words = 5 + random.Next(55);
        for (std::uint32_t w = 0; w < words; ++w)
            speech += std::string(w > 0 ? " " : "") + kWords[random.Next(wordCount)];
        packet += "<rdf:li rdf:parseType=\"Resource\"><xmpScript:character>" +
                  std::string(kSpeakers[speaker]) + "</xmpScript:character><xmpScript:dialog>" +
                  speech + ".</xmpScript:dialog></rdf:li>";
    }
    return packet + "</rdf:Seq></xmpScript:dialogSequence></rdf:Description></rdf:RDF></x:xmpmeta>";
}

boost::shared_ptr<zephmetadata::MetaDataProvider> Provider()
{
    static auto const provider = zephmetadata::BufferProviderImpl::Create(ScriptPacket());
    return provider;
}

boost::intrusive_ptr<StoryScriptView> NewView(int width = kWidth)
{
    return zephbench::NewView<StoryScriptView>(Provider(), width);
}

void BM_Load(benchmark::State& state)
{
    auto const view = NewView();
    for (auto _ : state)
    {
        view->ResetMetadataProvider(nullptr);
        view->ResetMetadataProvider(Provider());
    }
}

void BM_FirstLayout(benchmark::State& state)
{
    QImage image = zephbench::Canvas();
    for (auto _ : state)
    {
        state.PauseTiming();
        auto view = NewView();
        state.ResumeTiming();
        zephbench::Paint(*view, image);
        state.PauseTiming();
        view.reset();
        state.ResumeTiming();
    }
    auto const view = NewView();
    zephbench::Paint(*view, image);
    state.counters["rows"] = double((zephbench::BarOf(*view).GetExtent().second - 13.0f) / 16.0f);
}

void BM_LayoutAfterWidthChange(benchmark::State& state)
{
    QImage image = zephbench::Canvas();
    auto const view = NewView();
    zephbench::Paint(*view, image);
    bool narrow = false;
    for (auto _ : state)
    {
        narrow = !narrow;
        view->UI_SetLocalRectF(
            zephui::RectF(0.0f, 0.0f, float(narrow ? kWidth - 40 : kWidth), float(kHeight)));
        zephbench::Paint(*view, image);
    }
}

void BM_Paint(benchmark::State& state)
{
    bool const atBottom = state.range(0) != 0;
    QImage image = zephbench::Canvas();
    auto const view = NewView();
    zephbench::Paint(*view, image);
    UI_ScrollBar& bar = zephbench::BarOf(*view);
    if (atBottom)
        bar.SetValue(UI_ScrollBar::Range(bar.GetExtent().second - bar.GetValueRange(),
                                         bar.GetExtent().second));
    for (auto _ : state)
        zephbench::Paint(*view, image);
    state.counters["top"] = double(bar.GetValue().first);
}

void BM_SearchKeystroke(benchmark::State& state)
{
    QImage image = zephbench::Canvas();
    auto const view = NewView();
    zephbench::Paint(*view, image);
    bool longer = false;
    for (auto _ : state)
    {
        // Typing a letter and taking it back, in turn.
        longer = !longer;
        view->SetCurrentSearchTerm(zephcore::AsciiToUTF16(longer ? "lamp" : "lam"));
        zephbench::Paint(*view, image);
    }
}

void Line(char const* what, double ms, char const* budget)
{
    std::printf("  %-44s %9.2f ms   budget %s\n", what, ms, budget);
}

void PrintBudgets(RecordingReporter const& r)
{
    double const top = r.Get("BM_Paint/0") / 1e6;
    double const bottom = r.Get("BM_Paint/1") / 1e6;
    std::printf("\nFigures beside their budgets (processor time per operation), %d speeches\n",
                kSpeeches);
    Line("load the script (read every speech)", r.Get("BM_Load") / 1e6, "(no budget)");
    Line("first layout and paint of a new view", r.Get("BM_FirstLayout") / 1e6, "(no budget)");
    Line("layout and paint after a width change", r.Get("BM_LayoutAfterWidthChange") / 1e6,
         "(no budget)");
    Line("paint at the top", top, "< 4 ms");
    Line("paint at the bottom", bottom, "< 4 ms");
    std::printf("  %-44s %9.2f      budget <= 1.5\n", "ratio of bottom to top paint",
                top > 0.0 ? bottom / top : 0.0);
    Line("search keystroke (term set, view painted)", r.Get("BM_SearchKeystroke") / 1e6, "< 16 ms");
}

} // namespace

BENCHMARK(BM_Load)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FirstLayout)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LayoutAfterWidthChange)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Paint)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SearchKeystroke)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    return zephbench::RunWidgetBenchmarks(argc, argv, PrintBudgets);
}

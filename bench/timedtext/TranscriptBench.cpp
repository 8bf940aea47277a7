// The transcript editor on an hour-long interview: a generated speech track
// of 10,000 words by four speakers. Measured: loading the track from the
// provider, the first layout and paint of a new view, a paint scrolled to
// the bottom, selecting the word at a time (as playback does), and an edit
// of a word committed back into the metadata. Each figure is printed beside
// its budget at the end.

#include "QtBenchMain.h"
#include "RecordingReporter.h"
#include "TimedTextBench.h"

#include <zephmetadataui/Module.h>
#include <zephmetadataui/TextTranscriptEditorView.h>

#include <zephmetadata/Provider.h>
#include <zephui/UI_ScrollBar.h>
#include <zephui/UI_TextEdit.h>

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QWidget>

#include <cstdint>
#include <cstdio>
#include <string>

using zephbench::RecordingReporter;
using zephmediatypes::TickTime;
using zephmetadataui::TextTranscriptEditorView;
using zephui::UI_ScrollBar;

namespace
{

constexpr int kWords = 10000;

char const* const kSpeakers[] = {"INTERVIEWER", "ELIN", "TOMAS", "\xC3\x85SA"};
char const* const kVocabulary[] = {
    "the",   "a",      "and",    "of",      "to",     "in",      "we",     "you",
    "I",     "it",     "is",     "was",     "not",    "that",    "on",     "at",
    "lamp",  "light",  "keeper", "tower",   "stairs", "night",   "storm",  "wind",
    "rain",  "sea",    "boat",   "ferry",   "engine", "reef",    "rocks",  "harbour",
    "bell",  "rope",   "oil",    "wick",    "glass",  "lens",    "winter", "October",
    "radio", "signal", "listen", "because", "always", "never",   "still",  "there",
    "hands", "frozen", "brass",  "shelf",   "window", "quickly", "nobody", "everything"};

struct Random
{
    std::uint32_t seed = 20260612;
    std::uint32_t Next(std::uint32_t below)
    {
        seed = seed * 1664525u + 1013904223u;
        return (seed >> 8) % below;
    }
};

// Words at 25 frames a second, a third of a second each with a short gap:
// about an hour of speech.
std::string InterviewPacket()
{
    Random random;
    std::string markers;
    std::uint32_t const vocabulary = sizeof(kVocabulary) / sizeof(kVocabulary[0]);
    std::uint32_t speaker = 0;
    for (int i = 0, frame = 0; i < kWords; ++i, frame += 9)
    {
        if (random.Next(40) == 0)
            speaker = (speaker + 1 + random.Next(3)) % 4;
        markers += "<rdf:li rdf:parseType=\"Resource\"><xmpDM:startTime>" + std::to_string(frame) +
                   "</xmpDM:startTime><xmpDM:duration>8</xmpDM:duration>"
                   "<xmpDM:name>" +
                   kVocabulary[random.Next(vocabulary)] + "</xmpDM:name><xmpDM:speaker>" +
                   kSpeakers[speaker] + "</xmpDM:speaker><xmpDM:probability>" +
                   std::to_string(50 + random.Next(50)) + "</xmpDM:probability></rdf:li>";
    }
    return "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
           "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
           "<rdf:Description rdf:about=\"\" "
           "xmlns:xmpDM=\"http://ns.adobe.com/xmp/1.0/DynamicMedia/\" "
           "xmlns:xmpMM=\"http://ns.adobe.com/xap/1.0/mm/\">"
           "<xmpMM:DocumentID>xmp.did:bench</xmpMM:DocumentID>"
           "<xmpMM:InstanceID>xmp.iid:bench</xmpMM:InstanceID>"
           "<xmpDM:Tracks><rdf:Bag><rdf:li rdf:parseType=\"Resource\">"
           "<xmpDM:trackName>Interview</xmpDM:trackName><xmpDM:trackType>Speech</xmpDM:trackType>"
           "<xmpDM:frameRate>f25</xmpDM:frameRate><xmpDM:markers><rdf:Seq>" +
           markers +
           "</rdf:Seq></xmpDM:markers></rdf:li></rdf:Bag></xmpDM:Tracks>"
           "</rdf:Description></rdf:RDF></x:xmpmeta>";
}

boost::shared_ptr<zephmetadata::MetaDataProvider> Provider()
{
    static auto const provider = zephmetadata::BufferProviderImpl::Create(InterviewPacket());
    return provider;
}

TickTime Frame(int frame)
{
    return TickTime::FromFrames(frame, 25);
}

boost::intrusive_ptr<TextTranscriptEditorView> NewView()
{
    return zephbench::NewView<TextTranscriptEditorView>(Provider());
}

void BM_Load(benchmark::State& state)
{
    auto const view = NewView();
    for (auto _ : state)
    {
        view->ResetTranscriptProvider(nullptr);
        view->ResetTranscriptProvider(Provider());
    }
}

void BM_FirstPaint(benchmark::State& state)
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

// Playback jumps about the interview; the view is in no window, so the
// selection is measured without the paint that follows it on screen.
void BM_SelectByTime(benchmark::State& state)
{
    auto const view = NewView();
    QImage image = zephbench::Canvas();
    zephbench::Paint(*view, image);
    int frame = 0;
    for (auto _ : state)
    {
        frame = (frame + 9 * 37) % (9 * kWords);
        view->SelectWordAtTimecode(Frame(frame), true);
    }
}

void BM_CommitEdit(benchmark::State& state)
{
    auto const view = NewView();
    QImage image = zephbench::Canvas();
    zephbench::Paint(*view, image);
    view->SelectWordAtTimecode(Frame(9 * 5000), false);
    auto& edit = dynamic_cast<zephui::UI_TextEdit&>(*view->ChildGet(1));
    bool other = false;
    for (auto _ : state)
    {
        other = !other;
        // What Enter in the edit does: the text is committed and written.
        edit.SetValue(zephcore::AsciiToUTF16(other ? "lighthouse" : "lamp"));
        view->AdvanceFocus(false, true);
        state.PauseTiming();
        view->AdvanceFocus(true, true);
        state.ResumeTiming();
    }
}

void Line(char const* what, double ms, char const* budget)
{
    std::printf("  %-44s %9.3f ms   budget %s\n", what, ms, budget);
}

void PrintBudgets(RecordingReporter const& r)
{
    std::printf("\nFigures beside their budgets (processor time per operation), %d words\n",
                kWords);
    Line("load the track (read every word)", r.Get("BM_Load") / 1e6, "(no budget)");
    Line("first layout and paint of a new view", r.Get("BM_FirstPaint") / 1e6, "(no budget)");
    Line("paint at the top", r.Get("BM_Paint/0") / 1e6, "< 4 ms");
    Line("paint at the bottom", r.Get("BM_Paint/1") / 1e6, "< 4 ms");
    Line("select the word at a time", r.Get("BM_SelectByTime") / 1e6, "< 1 ms");
    Line("commit an edited word", r.Get("BM_CommitEdit") / 1e6, "< 100 ms");
}

} // namespace

BENCHMARK(BM_Load)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FirstPaint)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Paint)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SelectByTime)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_CommitEdit)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    return zephbench::RunWidgetBenchmarks(argc, argv, PrintBudgets);
}

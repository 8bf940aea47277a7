// The speech track of a long recording: 10,000 word markers with every
// field a recogniser writes. (a) the packet parsed by exempi alone, the
// baseline; (b) OpenXMP on the parsed tree; (c) a lookup by time; (d) one
// word changed and PrepareForSave, as the transcript commits an edit; (e) the
// same save when the whole track must be written again. Each figure is
// printed beside its budget at the end.

#include "RecordingReporter.h"

#include <zephtemporalxmp/XMPDocOpsTemporal.h>

#include <benchmark/benchmark.h>

#include <exempi/xmp.h>

#include <cstdio>
#include <memory>
#include <string>

using zephbench::RecordingReporter;
using zephmediatypes::TickTime;
using zephtemporalxmp::TXMPMeta;
using zephtemporalxmp::XMPDocOpsTemporal;
using zephtemporalxmp::XMPTemporalMetadataInfo;
using zephtemporalxmp::XMPTrack;

namespace
{

constexpr int kMarkers = 10000;

struct MetaDeleter
{
    void operator()(XmpPtr meta) const { xmp_free(meta); }
};
using MetaPtr = std::unique_ptr<_Xmp, MetaDeleter>;

std::string const& SpeechPacket()
{
    static std::string packet;
    if (!packet.empty())
        return packet;
    packet =
        "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
        "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">\n"
        "<rdf:Description rdf:about=\"\" xmlns:xmpDM=\"http://ns.adobe.com/xmp/1.0/DynamicMedia/\""
        " xmlns:xmpMM=\"http://ns.adobe.com/xap/1.0/mm/\">\n"
        "<xmpMM:InstanceID>xmp.iid:bench</xmpMM:InstanceID>\n"
        "<xmpDM:Tracks><rdf:Bag><rdf:li rdf:parseType=\"Resource\">\n"
        "<xmpDM:trackName>Transcript</xmpDM:trackName><xmpDM:trackType>Speech</xmpDM:trackType>"
        "<xmpDM:frameRate>f254016000000</xmpDM:frameRate>\n<xmpDM:markers><rdf:Seq>\n";
    std::int64_t const word = TickTime::kTicksPerSecond * 2 / 5;
    for (int i = 0; i < kMarkers; ++i)
    {
        std::string const n = std::to_string(i);
        packet += "  <rdf:li rdf:parseType=\"Resource\">\n"
                  "   <xmpDM:startTime>" +
                  std::to_string(word * i) +
                  "</xmpDM:startTime>\n"
                  "   <xmpDM:duration>" +
                  std::to_string(word - 1000) +
                  "</xmpDM:duration>\n"
                  "   <xmpDM:name>word" +
                  n +
                  "</xmpDM:name>\n"
                  "   <xmpDM:type>Speech</xmpDM:type>\n"
                  "   <xmpDM:speaker>Speaker " +
                  std::to_string(i / 200 % 3) +
                  "</xmpDM:speaker>\n"
                  "   <xmpDM:probability>" +
                  std::to_string(50 + i % 50) +
                  "</xmpDM:probability>\n"
                  "   <xmpDM:cuePointParams><rdf:Seq>\n"
                  "    <rdf:li rdf:parseType=\"Resource\"><xmpDM:key>primary</xmpDM:key>"
                  "<xmpDM:value>ward" +
                  n +
                  "</xmpDM:value></rdf:li>\n"
                  "    <rdf:li rdf:parseType=\"Resource\"><xmpDM:key>secondary</xmpDM:key>"
                  "<xmpDM:value>wood" +
                  n +
                  "</xmpDM:value></rdf:li>\n"
                  "   </rdf:Seq></xmpDM:cuePointParams>\n"
                  "  </rdf:li>\n";
    }
    packet += "</rdf:Seq></xmpDM:markers></rdf:li></rdf:Bag></xmpDM:Tracks>\n"
              "</rdf:Description></rdf:RDF></x:xmpmeta>";
    return packet;
}

MetaPtr Parse()
{
    std::string const& packet = SpeechPacket();
    MetaPtr meta(xmp_new_empty());
    if (!xmp_parse(meta.get(), packet.data(), packet.size()))
        std::abort();
    return meta;
}

XMPTrack& SpeechTrack(XMPDocOpsTemporal& ops)
{
    return *ops.TrackListIteratorBegin();
}

void BM_ExempiParse(benchmark::State& state)
{
    state.counters["bytes"] = double(SpeechPacket().size());
    for (auto _ : state)
        benchmark::DoNotOptimize(Parse());
}

void BM_OpenXMP(benchmark::State& state)
{
    MetaPtr const meta = Parse();
    TXMPMeta shared(meta.get());
    for (auto _ : state)
    {
        XMPDocOpsTemporal ops;
        ops.OpenXMP(&shared, "", 0);
        benchmark::DoNotOptimize(SpeechTrack(ops).MarkerListIteratorBegin());
    }
}

void BM_LookupByTime(benchmark::State& state)
{
    MetaPtr const meta = Parse();
    TXMPMeta shared(meta.get());
    XMPDocOpsTemporal ops;
    ops.OpenXMP(&shared, "", 0);
    XMPTrack& track = SpeechTrack(ops);
    std::int64_t const span = TickTime::kTicksPerSecond * 2 / 5 * kMarkers;
    std::int64_t at = 0;
    for (auto _ : state)
    {
        at = (at + span / 7919 * 13) % span;
        benchmark::DoNotOptimize(track.MarkerListLowerBound(TickTime(at)));
    }
}

// One word changed, as the transcript's commit does; with wholeTrack the
// tree's instance moved on first, which makes the save write the whole track.
void Save(benchmark::State& state, bool wholeTrack)
{
    MetaPtr const meta = Parse();
    TXMPMeta shared(meta.get());
    XMPDocOpsTemporal ops;
    ops.OpenXMP(&shared, "", 0);
    XMPTrack& track = SpeechTrack(ops);
    int round = 0;
    for (auto _ : state)
    {
        state.PauseTiming();
        if (wholeTrack)
            xmp_set_property(meta.get(), "http://ns.adobe.com/xap/1.0/mm/", "InstanceID",
                             ("xmp.iid:other" + std::to_string(round)).c_str(), 0);
        auto marker = track.MarkerListIteratorBegin();
        std::advance(marker, (round * 7919) % kMarkers);
        std::string const text = "edit" + std::to_string(round++);
        marker->second = XMPTemporalMetadataInfo(
            text.c_str(), "", marker->second.startTime, marker->second.duration, "Speech", "", "",
            "", {{"primary", text}}, "Speaker 1", "-1", nullptr, nullptr);
        state.ResumeTiming();
        ops.TrackListChanged();
        if (!ops.PrepareForSave(nullptr, 0))
            state.SkipWithError("nothing saved");
    }
}

void BM_PrepareForSave(benchmark::State& state)
{
    Save(state, false);
}

void BM_PrepareForSaveWholeTrack(benchmark::State& state)
{
    Save(state, true);
}

void Line(char const* what, double value, char const* unit, char const* budget)
{
    std::printf("  %-52s %10.3f %s   budget %s\n", what, value, unit, budget);
}

void PrintBudgets(RecordingReporter const& r)
{
    double const parse = r.Get("BM_ExempiParse") / 1e6;
    double const open = r.Get("BM_OpenXMP") / 1e6;
    std::printf("\nFigures beside their budgets (processor time per operation, %d markers, "
                "%.1f MB packet)\n",
                kMarkers, double(SpeechPacket().size()) / 1e6);
    Line("exempi parse of the packet (baseline)", parse, "ms", "(none)");
    Line("OpenXMP", open, "ms", "< 2 x parse");
    std::printf("  %-52s %10.2f x     budget < 2\n", "OpenXMP / parse", open / parse);
    Line("lookup by time", r.Get("BM_LookupByTime") / 1e3, "us", "< 10 us");
    Line("one word changed, PrepareForSave", r.Get("BM_PrepareForSave") / 1e6, "ms", "< 100 ms");
    Line("the same, whole track written again", r.Get("BM_PrepareForSaveWholeTrack") / 1e6, "ms",
         "(none)");
}

} // namespace

BENCHMARK(BM_ExempiParse)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OpenXMP)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LookupByTime)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PrepareForSave)->Unit(benchmark::kMillisecond)->Iterations(50);
BENCHMARK(BM_PrepareForSaveWholeTrack)->Unit(benchmark::kMillisecond)->Iterations(10);

int main(int argc, char** argv)
{
    xmp_init();
    int const result = zephbench::RunAndPrintBudgets(argc, argv, PrintBudgets);
    xmp_terminate();
    return result;
}

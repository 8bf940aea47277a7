// The metadata model on large packets: a 2,000-property packet over 15
// schemas, and transcripts of 5,000 and 20,000 markers in one xmpDM:Tracks
// item. Each figure is printed beside its budget at the end.

#include "zephmetadata/Access.h"
#include "zephmetadata/Model.h"
#include "zephmetadata/Provider.h"
#include "zephmetadata/Values.h"
#include "zephmetadata/XmpMeta.h"

#include "Packets.h"
#include "RecordingReporter.h"

#include <benchmark/benchmark.h>
#include <exempi/xmp.h>

#include <boost/make_shared.hpp>

#include <cstdio>
#include <cstring>
#include <map>
#include <string>

using namespace zephmetadata;

namespace
{

using zephbench::MarkersPacket;
using zephbench::Wrap;

char const* const kDM = "http://ns.adobe.com/xmp/1.0/DynamicMedia/";

UTF8String U8(std::string const& text)
{
    return zephcore::ToUTF8(text);
}

struct Schema
{
    char const* prefix;
    char const* uri;
};

Schema const kSchemas[15] = {
    {"dc", "http://purl.org/dc/elements/1.1/"},
    {"xmp", "http://ns.adobe.com/xap/1.0/"},
    {"xmpRights", "http://ns.adobe.com/xap/1.0/rights/"},
    {"xmpMM", "http://ns.adobe.com/xap/1.0/mm/"},
    {"xmpDM", "http://ns.adobe.com/xmp/1.0/DynamicMedia/"},
    {"photoshop", "http://ns.adobe.com/photoshop/1.0/"},
    {"Iptc4xmpCore", "http://iptc.org/std/Iptc4xmpCore/1.0/xmlns/"},
    {"Iptc4xmpExt", "http://iptc.org/std/Iptc4xmpExt/2008-02-29/"},
    {"exif", "http://ns.adobe.com/exif/1.0/"},
    {"tiff", "http://ns.adobe.com/tiff/1.0/"},
    {"aux", "http://ns.adobe.com/exif/1.0/aux/"},
    {"crs", "http://ns.adobe.com/camera-raw-settings/1.0/"},
    {"plus", "http://ns.useplus.org/ldf/xmp/1.0/"},
    {"exifEX", "http://cipa.jp/exif/1.0/"},
    {"xmpScript", "http://ns.adobe.com/xmp/1.0/Script/"},
};

// 2,000 properties spread over 15 schemas: mostly text, every tenth a list.
std::string PropertiesPacket()
{
    std::string namespaces, body;
    for (Schema const& schema : kSchemas)
        namespaces += std::string(" xmlns:") + schema.prefix + "=\"" + schema.uri + "\"";
    for (int i = 0; i < 2000; ++i)
    {
        Schema const& schema = kSchemas[i % 15];
        std::string const name = std::string(schema.prefix) + ":BenchProperty" + std::to_string(i);
        if (i % 10 == 0)
            body += "<" + name + "><rdf:Bag><rdf:li>alpha</rdf:li><rdf:li>beta " +
                    std::to_string(i) + "</rdf:li></rdf:Bag></" + name + ">";
        else
            body += "<" + name + ">value of property " + std::to_string(i) + "</" + name + ">";
    }
    return Wrap(namespaces, body);
}

// Packets are made once; arguments pick one: 0 = properties, n = n markers.
std::string const& PacketFor(int kind)
{
    static std::map<int, std::string> packets;
    auto found = packets.find(kind);
    if (found == packets.end())
        found = packets.emplace(kind, kind == 0 ? PropertiesPacket() : MarkersPacket(kind)).first;
    return found->second;
}

xmp::MetaPtr TreeFor(int kind)
{
    std::string const& packet = PacketFor(kind);
    return xmp::ParseMeta(packet.data(), packet.size());
}

std::string MarkersPath()
{
    return "Tracks[1]/xmpDM:markers";
}

// A leaf at the far end of the tree.
Path OneLeaf(int kind)
{
    if (kind == 0)
        return Path(U8(kSchemas[1999 % 15].uri), U8("BenchProperty1999"));
    return Path(U8(kDM), U8(MarkersPath() + "[" + std::to_string(kind) + "]/xmpDM:name"));
}

void BM_ParseLoad(benchmark::State& state)
{
    std::string const& packet = PacketFor(static_cast<int>(state.range(0)));
    for (auto _ : state)
    {
        auto provider = BufferProviderImpl::Create(packet);
        benchmark::DoNotOptimize(provider.get());
    }
}

void BM_CountArrayItems(benchmark::State& state)
{
    xmp::MetaPtr meta = TreeFor(static_cast<int>(state.range(0)));
    Path const markers(U8(kDM), U8(MarkersPath()));
    for (auto _ : state)
        benchmark::DoNotOptimize(CountArrayItems(meta.get(), markers));
}

// What a transcript view does: every field of every marker, by path, the
// paths composed as it goes.
void BM_ReadAllItemFields(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    xmp::MetaPtr meta = TreeFor(count);
    static char const* const fields[] = {"/xmpDM:startTime", "/xmpDM:duration", "/xmpDM:name",
                                         "/xmpDM:speaker", "/xmpDM:probability"};
    UTF8String const markers = U8(MarkersPath());
    Path path(U8(kDM), UTF8String());
    UTF8String item;
    UTF8String value;
    for (auto _ : state)
    {
        for (int i = 1; i <= count; ++i)
        {
            item = markers;
            item += '[';
            for (char c : std::to_string(i))
                item += static_cast<unsigned char>(c);
            item += ']';
            for (char const* field : fields)
            {
                path.propertyName = item;
                path.propertyName.append(reinterpret_cast<unsigned char const*>(field),
                                         std::strlen(field));
                GetValue(meta.get(), path, value, nullptr);
            }
        }
        benchmark::DoNotOptimize(value);
    }
}

// The toolkit's own floor for the same reads: exempi called directly.
void BM_ReadAllItemFieldsToolkit(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    xmp::MetaPtr meta = TreeFor(count);
    static char const* const fields[] = {"startTime", "duration", "name", "speaker", "probability"};
    std::vector<std::string> paths;
    for (int i = 1; i <= count; ++i)
        for (char const* field : fields)
            paths.push_back(MarkersPath() + "[" + std::to_string(i) + "]/xmpDM:" + field);
    xmp::XmpString value;
    for (auto _ : state)
        for (std::string const& path : paths)
            benchmark::DoNotOptimize(
                xmp_get_property(meta.get(), kDM, path.c_str(), value.Get(), nullptr));
}

// The same in one iterator pass over the markers.
void BM_ReadSubtree(benchmark::State& state)
{
    xmp::MetaPtr meta = TreeFor(static_cast<int>(state.range(0)));
    for (auto _ : state)
    {
        auto nodes = xmp::ReadSubtree(meta.get(), kDM, MarkersPath().c_str());
        benchmark::DoNotOptimize(nodes.data());
    }
}

void BM_GetValueOneLeaf(benchmark::State& state)
{
    int const kind = static_cast<int>(state.range(0));
    xmp::MetaPtr meta = TreeFor(kind);
    Path const leaf = OneLeaf(kind);
    UTF8String value;
    for (auto _ : state)
    {
        GetValue(meta.get(), leaf, value, nullptr);
        benchmark::DoNotOptimize(value);
    }
}

// One edit as a control makes it: update access, SetValue, AddChange, and
// the provider's notification to a listener.
void BM_SetValueWithNotification(benchmark::State& state)
{
    int const kind = static_cast<int>(state.range(0));
    auto provider = BufferProviderImpl::Create(PacketFor(kind));
    boost::shared_ptr<MetaDataProvider> const shared = provider;
    int told = 0;
    auto listener =
        boost::make_shared<boost::function<void(__XMPMeta__*)>>([&](__XMPMeta__*) { ++told; });
    provider->NotifyWhenMetaDataChanged(listener);
    Path const leaf = OneLeaf(kind);
    UTF8String const values[2] = {U8("first"), U8("second")};
    int turn = 0;
    for (auto _ : state)
    {
        MetaDataUpdateAccess access(shared);
        if (SetValue(*access, leaf, values[turn ^= 1]))
            access.AddChange(leaf);
    }
    benchmark::DoNotOptimize(told);
}

void BM_Clone(benchmark::State& state)
{
    xmp::MetaPtr meta = TreeFor(static_cast<int>(state.range(0)));
    for (auto _ : state)
    {
        xmp::MetaPtr copy = xmp::Clone(meta.get());
        benchmark::DoNotOptimize(copy.get());
    }
}

// The metadata dialog's commit: empty the host's tree, append the clone's.
void BM_RemoveAllAppendAll(benchmark::State& state)
{
    xmp::MetaPtr source = TreeFor(static_cast<int>(state.range(0)));
    xmp::MetaPtr destination = xmp::NewMeta();
    for (auto _ : state)
    {
        xmp::RemoveProperties(destination.get());
        xmp::AppendProperties(source.get(), destination.get(), xmp::kAppendReplaceExisting);
    }
}

// The same commit in one step: the clone's packet parsed into the host's tree.
void BM_CopyTree(benchmark::State& state)
{
    xmp::MetaPtr source = TreeFor(static_cast<int>(state.range(0)));
    xmp::MetaPtr destination = xmp::NewMeta();
    for (auto _ : state)
        xmp::CopyTree(source.get(), destination.get());
}

void BM_Serialize(benchmark::State& state)
{
    xmp::MetaPtr meta = TreeFor(static_cast<int>(state.range(0)));
    std::string packet;
    for (auto _ : state)
    {
        xmp::SerializeToBuffer(meta.get(), packet);
        benchmark::DoNotOptimize(packet.data());
    }
}

#define WHOLE_TREE(fn)                                                                             \
    BENCHMARK(fn)->Arg(0)->Arg(5000)->Arg(20000)->Unit(benchmark::kMillisecond)->MinTime(0.3)
#define SINGLE_VALUE(fn)                                                                           \
    BENCHMARK(fn)->Arg(0)->Arg(5000)->Arg(20000)->Unit(benchmark::kMicrosecond)->MinTime(0.2)

WHOLE_TREE(BM_ParseLoad);
SINGLE_VALUE(BM_CountArrayItems)->ArgNames({"markers"});
WHOLE_TREE(BM_ReadAllItemFields);
BENCHMARK(BM_ReadAllItemFieldsToolkit)->Arg(20000)->Unit(benchmark::kMillisecond)->MinTime(0.3);
WHOLE_TREE(BM_ReadSubtree);
SINGLE_VALUE(BM_GetValueOneLeaf);
SINGLE_VALUE(BM_SetValueWithNotification);
WHOLE_TREE(BM_Clone);
WHOLE_TREE(BM_RemoveAllAppendAll);
WHOLE_TREE(BM_CopyTree);
WHOLE_TREE(BM_Serialize);

using zephbench::RecordingReporter;

void Line(char const* what, double figure, char const* unit, char const* budget, bool within)
{
    std::printf("  %-58s %10.3f %-3s  budget %-24s %s\n", what, figure, unit, budget,
                within ? "ok" : "OVER");
}

void PrintBudgets(RecordingReporter const& r)
{
    auto t = [&r](char const* name, char const* arg)
    { return r.Get(std::string(name) + "/" + arg); };
    std::printf("\nFigures beside their budgets\n");
    double const parse = t("BM_ParseLoad", "20000");
    double const count = t("BM_CountArrayItems", "markers:20000");
    double const fields = t("BM_ReadAllItemFields", "20000");
    Line("CountArrayItems, 20,000 markers, share of one parse", 100.0 * count / parse, "%", "< 1 %",
         count < parse * 0.01);
    Line("read every marker's fields by path, share of one parse", 100.0 * fields / parse, "%",
         "< 50 %", fields < parse * 0.5);
    double const floor = t("BM_ReadAllItemFieldsToolkit", "20000");
    Line("the same reads by exempi alone, share of one parse", 100.0 * floor / parse, "%",
         "(reported)", true);
    double const subtree = t("BM_ReadSubtree", "20000");
    Line("read every marker's fields in one pass, share of one parse", 100.0 * subtree / parse, "%",
         "(reported)", true);
    for (char const* name : {"BM_ParseLoad", "BM_ReadAllItemFields", "BM_ReadSubtree", "BM_Clone",
                             "BM_RemoveAllAppendAll", "BM_CopyTree", "BM_Serialize"})
    {
        double const ratio = t(name, "20000") / t(name, "5000");
        std::string const what = std::string(name + 3) + ", 20,000 / 5,000 markers";
        Line(what.c_str(), ratio, "x", "linear: 4 x (< 5 x)", ratio < 5.0);
    }
    for (char const* name : {"BM_GetValueOneLeaf", "BM_SetValueWithNotification"})
    {
        double const small = t(name, "0");
        double const large = t(name, "20000");
        std::string const what = std::string(name + 3) + ", 2,000 properties";
        Line(what.c_str(), small / 1000.0, "us", "flat, < 20 us", small < 20000.0);
        std::string const what2 = std::string(name + 3) + ", 20,000 markers / 2,000 properties";
        Line(what2.c_str(), large / small, "x", "does not grow (< 3 x)", large < small * 3.0);
    }
    double const count5 = t("BM_CountArrayItems", "markers:5000");
    Line("CountArrayItems, 20,000 / 5,000 markers", count / count5, "x", "does not grow (< 3 x)",
         count < count5 * 3.0);
}

} // namespace

int main(int argc, char** argv)
{
    Initialize();
    int const result = zephbench::RunAndPrintBudgets(argc, argv, PrintBudgets);
    Terminate();
    return result;
}

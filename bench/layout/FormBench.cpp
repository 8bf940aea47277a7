// Form views on real and big metadata: (a) each standard page built and laid
// out on the IPTC reference image (a sample photo when the shared corpus is
// absent), and laid out again after a change of width; (b) the array editor
// on an array of 5,000 items: built, an item selected, an item inserted.
// Each figure is printed beside its budget at the end.

#include "QtBenchMain.h"
#include "RecordingReporter.h"

#include <zephmetadataui/ArrayControl.h>
#include <zephmetadataui/MetadataLayoutView.h>
#include <zephmetadataui/Module.h>

#include <zephmetadata/FileProvider.h>
#include <zephmetadata/Provider.h>
#include <zephmetadata/ViewDefinitions.h>
#include <zephui/NodeHostWidget.h>
#include <zephui/UI_ListBox.h>

#include <benchmark/benchmark.h>

#include <boost/make_shared.hpp>

#include <QApplication>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

using zephbench::RecordingReporter;
using zephmetadataui::MetadataLayoutView;
using zephmetadataui::layout::ArrayControl;

namespace
{

constexpr int kArrayItems = 5000;

zephmetadata::UTF8String U8(std::string const& text)
{
    return zephmetadata::UTF8String(text.begin(), text.end());
}

std::string ReferenceImage()
{
    char const* const corpus = std::getenv("ZEPH_CORPUS_DIR");
    std::filesystem::path const image =
        std::filesystem::path(corpus ? corpus : ZEPH_SOURCE_DIR "/../shared/corpus") /
        "frameright-IPTC-PhotometadataRef-Std2021.1.jpg";
    if (std::filesystem::exists(image))
        return image.string();
    return ZEPH_SOURCE_DIR "/samples/harbour-first-light.jpg";
}

boost::shared_ptr<zephmetadata::MetaDataProvider> ReferenceProvider()
{
    static boost::shared_ptr<zephmetadata::MetaDataProvider> provider;
    if (!provider)
    {
        std::string const path = ReferenceImage();
        std::printf("pages on %s\n", path.c_str());
        provider = boost::make_shared<zephmetadata::FileProvider>(
            zephcore::UTF8to16(zephcore::ToUTF8(path)));
    }
    return provider;
}

std::vector<boost::shared_ptr<zephmetadata::ViewDefinition>> Pages()
{
    zephmetadata::LoadAllViewDefinitions();
    std::vector<boost::shared_ptr<zephmetadata::ViewDefinition>> pages;
    for (auto const& definition : zephmetadata::CommonViewDefinitions())
        pages.push_back(definition);
    return pages;
}

std::string PageName(zephmetadata::ViewDefinition const& page)
{
    std::string const name(page.name.begin(), page.name.end());
    return name.substr(name.rfind('.') + 1);
}

// A form in a shown window, as the browser hosts it.
struct Hosted
{
    Hosted(boost::shared_ptr<zephmetadata::ViewDefinition> const& page,
           boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider)
        : view(new MetadataLayoutView(page, provider)), host(view)
    {
        host.resize(640, 900);
        host.show();
        QApplication::processEvents();
    }
    boost::intrusive_ptr<MetadataLayoutView> view;
    zephui::NodeHostWidget host;
};

void BM_BuildPage(benchmark::State& state)
{
    auto const page = Pages().at(std::size_t(state.range(0)));
    state.SetLabel(PageName(*page));
    Hosted form(page, ReferenceProvider());
    for (auto _ : state)
        form.view->Layout();
}

void BM_RelayoutAfterWidthChange(benchmark::State& state)
{
    auto const page = Pages().at(std::size_t(state.range(0)));
    state.SetLabel(PageName(*page));
    Hosted form(page, ReferenceProvider());
    form.view->Layout();
    bool narrow = false;
    for (auto _ : state)
    {
        narrow = !narrow;
        form.host.resize(narrow ? 480 : 640, 900);
        form.view->Relayout();
    }
}

// A packet whose subject list holds kArrayItems words, shown by the array
// editor.
boost::shared_ptr<zephmetadata::ViewDefinition> ArrayPage()
{
    auto item = boost::make_shared<zephmetadata::ViewItem>(
        zephmetadata::Path(U8("http://purl.org/dc/elements/1.1/"), U8("subject")));
    item->format = U8("array");
    auto page = boost::make_shared<zephmetadata::ViewDefinition>();
    page->name = U8("bench.array");
    page->items.push_back(item);
    return page;
}

boost::shared_ptr<zephmetadata::MetaDataProvider> ArrayProvider()
{
    std::string packet = "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
                         "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
                         "<rdf:Description rdf:about=\"\" "
                         "xmlns:dc=\"http://purl.org/dc/elements/1.1/\"><dc:subject><rdf:Bag>";
    for (int i = 0; i < kArrayItems; ++i)
        packet += "<rdf:li>keyword " + std::to_string(i) + "</rdf:li>";
    packet += "</rdf:Bag></dc:subject></rdf:Description></rdf:RDF></x:xmpmeta>";
    return zephmetadata::BufferProviderImpl::Create(packet);
}

ArrayControl* ArrayOf(MetadataLayoutView& view)
{
    return dynamic_cast<ArrayControl*>(view.GetTable()->rows.at(0)->items.at(0)->view.get());
}

void BM_ArrayBuild(benchmark::State& state)
{
    Hosted form(ArrayPage(), ArrayProvider());
    for (auto _ : state)
        form.view->Layout();
    state.counters["lines"] = double(ArrayOf(*form.view)->GetList()->CountItems());
}

void BM_ArraySelect(benchmark::State& state)
{
    Hosted form(ArrayPage(), ArrayProvider());
    form.view->Layout();
    ArrayControl* array = ArrayOf(*form.view);
    int index = 0;
    for (auto _ : state)
    {
        // A new line each time: the same one would only close the box.
        index = (index + 997) % kArrayItems;
        array->GetList()->SelectItem(index, true);
        array->ItemSelected();
    }
}

void BM_ArrayInsert(benchmark::State& state)
{
    Hosted form(ArrayPage(), ArrayProvider());
    form.view->Layout();
    ArrayControl* array = ArrayOf(*form.view);
    array->GetList()->SelectItem(kArrayItems / 2, true);
    for (auto _ : state)
        array->InsertItem(nullptr);
    state.counters["lines"] = double(array->GetList()->CountItems());
}

void Line(char const* what, double ms, char const* budget)
{
    std::printf("  %-44s %9.2f ms   budget %s\n", what, ms, budget);
}

void PrintBudgets(RecordingReporter const& r)
{
    std::printf("\nFigures beside their budgets (processor time per operation)\n");
    auto const pages = Pages();
    for (std::size_t i = 0; i < pages.size(); ++i)
    {
        std::string const build = "build page " + PageName(*pages[i]);
        std::string const relayout = "re-layout page " + PageName(*pages[i]);
        Line(build.c_str(), r.Get("BM_BuildPage/" + std::to_string(i)) / 1e6, "< 30 ms");
        Line(relayout.c_str(), r.Get("BM_RelayoutAfterWidthChange/" + std::to_string(i)) / 1e6,
             "< 4 ms");
    }
    Line("array of 5,000 items: build", r.Get("BM_ArrayBuild") / 1e6, "< 50 ms");
    Line("array of 5,000 items: select an item", r.Get("BM_ArraySelect") / 1e6, "(no budget)");
    Line("array of 5,000 items: insert an item", r.Get("BM_ArrayInsert") / 1e6, "< 10 ms");
}

} // namespace

BENCHMARK(BM_BuildPage)->DenseRange(0, 9)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RelayoutAfterWidthChange)->DenseRange(0, 9)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ArrayBuild)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ArraySelect)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ArrayInsert)->Unit(benchmark::kMillisecond)->Iterations(50);

int main(int argc, char** argv)
{
    return zephbench::RunWidgetBenchmarks(argc, argv, PrintBudgets);
}

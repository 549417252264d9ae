// What a changed listing costs by its parts, each on one core.

#include "library/library_content.h"
#include "net/json_structure.h"
#include "net/wire_decoding.h"

#include <QJsonDocument>
#include <QtGlobal>

#include <benchmark/benchmark.h>

namespace {

using namespace quiv;

// A listing as a TV sends it: `count` videos and nothing else.
QByteArray listing(qint64 count, qint64 changed = -1) {
    const QByteArray stem = "A Film With A Name Of Usual Length (2021) ";
    QByteArray files;
    QByteArray videos;
    for (qint64 index = 0; index < count; ++index) {
        const QByteArray base = stem + QByteArray::number(index);
        const QByteArray time = QByteArray::number(1'700'000'000'000 + index * 1000);
        const QByteArray size = QByteArray::number(index == changed ? 1 : 4'000'000'000 + index);
        const QByteArray common =
            R"({"name":")" + base + R"(.mkv","sizeBytes":)" + size + R"(,"lastModifiedMs":)" + time;
        const QByteArray comma = index == 0 ? "" : ",";
        files += comma + common + R"(,"kind":"VIDEO"})";
        videos += comma + common + R"(,"displayName":")" + base +
                  R"(","subtitleCount":0,"storageLocation":"INTERNAL"})";
    }
    return R"({"files":[)" + files + R"(],"videos":[)" + videos + "]}";
}

void countStructure(benchmark::State& state) {
    const QByteArray json = listing(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(structureOf(json));
}

// The peer of the others: what Qt's parser alone takes.
void parse(benchmark::State& state) {
    const QByteArray json = listing(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(QJsonDocument::fromJson(json));
}

void decodeListing(benchmark::State& state) {
    const QByteArray json = listing(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(decode<FilesResponse>(json));
}

void group(benchmark::State& state) {
    const QByteArray json = listing(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto response = decode<FilesResponse>(json);
        state.ResumeTiming();
        benchmark::DoNotOptimize(libraryContent(std::move(response)));
    }
}

void search(benchmark::State& state) {
    const auto content = libraryContent(decode<FilesResponse>(listing(state.range(0))));
    for (auto _ : state)
        benchmark::DoNotOptimize(filteredRows(content.groupedFiles, QStringLiteral("length 99")));
}

} // namespace

int main(int argc, char** argv) {
    bool isNumber = false;
    const int rows = qEnvironmentVariableIntValue("QUIV_BENCH_ROWS", &isNumber);
    const auto add = [&](const char* name, void (*function)(benchmark::State&)) {
        benchmark::RegisterBenchmark(name, function)
            ->Arg(isNumber ? rows : 100'000)
            ->Unit(benchmark::kMillisecond);
    };
    add("countStructure", countStructure);
    add("parse", parse);
    add("decodeListing", decodeListing);
    add("group", group);
    add("search", search);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

// Measures NyFotoListRegistry with a list of 100,000 photos: what an unchanged list and a change of ten cost, in time and in bytes handed
// to the file system, against writing the whole list. Prints the ratios behind Google Benchmark's table.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTemporaryDir>

#include <NyFotoList.h>
#include <NyFotoListRegistry.h>

using namespace Qt::Literals::StringLiterals;

namespace
{

constexpr int PhotoCount = 100'000;
constexpr int FolderCount = 1'000;
constexpr int ChangeCount = 10;

qint64 writtenBytes()
{
    QFile file(u"/proc/self/io"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("wchar: "))
            return line.mid(7).toLongLong();
    }
    return 0;
}

NyFoto photo(int number)
{
    return NyFoto(
        QFileInfo(u"/home/anna/Bilder/2024/%1 Ausflug/IMG_%2.jpg"_s.arg(number % FolderCount).arg(number, 6, 10, QLatin1Char('0'))));
}

NyFotoList photos(int from = 0)
{
    NyFotoList list;
    list.reserve(PhotoCount);
    for (int i = 0; i < PhotoCount; ++i)
        list.append(photo(from + i));
    return list;
}

/** Ten photos of the list are others, spread over all of it. */
NyFotoList withChange(const NyFotoList &list, int round)
{
    NyFotoList changed;
    changed.reserve(list.size());
    for (qsizetype i = 0; i < list.size(); ++i) {
        if (i % (PhotoCount / ChangeCount) == 4321)
            changed.append(photo(1'000'000 + round * ChangeCount + int(i * ChangeCount / PhotoCount)));
        else
            changed.append(list[i]);
    }
    return changed;
}

struct Result
{
    std::vector<double> seconds;
    std::vector<double> bytes;
};

std::map<std::string, Result> results;

double median(std::vector<double> values)
{
    if (values.empty())
        return 0.0;
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/** A round of a benchmark: only @p work is timed. */
template <class Work>
void measure(benchmark::State &state, const char *name, Work work)
{
    Result &result = results[name];
    const qint64 bytesBefore = writtenBytes();
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    result.seconds.push_back(elapsed.count());
    result.bytes.push_back(double(writtenBytes() - bytesBefore));
    state.SetIterationTime(elapsed.count());
}

void writeAll(benchmark::State &state)
{
    const QTemporaryDir folder;
    NyFotoListRegistry registry(folder.filePath(u"photolists.sqlite"_s));
    const NyFotoList lists[] = {photos(), photos(2 * PhotoCount)};
    registry.add(u"list"_s, lists[1]);
    int round = 0;
    for ([[maybe_unused]] auto _ : state)
        measure(state, "all", [&] { registry.add(u"list"_s, lists[round++ % 2]); });
}

void unchanged(benchmark::State &state)
{
    const QTemporaryDir folder;
    NyFotoListRegistry registry(folder.filePath(u"photolists.sqlite"_s));
    const NyFotoList list = photos();
    registry.add(u"list"_s, list);
    for ([[maybe_unused]] auto _ : state) {
        measure(state, "unchanged", [&] {
            registry.clearEntry(u"list"_s);
            registry.add(u"list"_s, list);
        });
    }
}

/** The first time that a process stores the list, it has to read what is there. */
void unchangedInNewProcess(benchmark::State &state)
{
    const QTemporaryDir folder;
    const NyFotoList list = photos();
    NyFotoListRegistry keeper(folder.filePath(u"photolists.sqlite"_s));
    keeper.add(u"list"_s, list);
    for ([[maybe_unused]] auto _ : state) {
        NyFotoListRegistry registry(folder.filePath(u"photolists.sqlite"_s));
        registry.getFotosForBookProposal();
        measure(state, "unchanged, first time", [&] {
            registry.clearEntry(u"list"_s);
            registry.add(u"list"_s, list);
        });
    }
}

void changeOfTen(benchmark::State &state)
{
    const QTemporaryDir folder;
    NyFotoListRegistry registry(folder.filePath(u"photolists.sqlite"_s));
    const NyFotoList base = photos();
    registry.add(u"list"_s, base);
    int round = 0;
    for ([[maybe_unused]] auto _ : state) {
        const NyFotoList next = withChange(base, ++round);
        measure(state, "ten", [&] {
            registry.clearEntry(u"list"_s);
            registry.add(u"list"_s, next);
        });
    }
}

void read(benchmark::State &state)
{
    const QTemporaryDir folder;
    NyFotoListRegistry registry(folder.filePath(u"photolists.sqlite"_s));
    registry.add(u"list"_s, photos());
    for ([[maybe_unused]] auto _ : state) {
        measure(state, "read", [&] {
            if (registry.fotoList(u"list"_s).size() != PhotoCount)
                state.SkipWithError("the list is not complete");
        });
    }
}

BENCHMARK(writeAll)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(9);
BENCHMARK(unchanged)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(30);
BENCHMARK(unchangedInNewProcess)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(9);
BENCHMARK(changeOfTen)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(30);
BENCHMARK(read)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(9);

void printRatios()
{
    const Result &all = results["all"];
    const double allSeconds = median(all.seconds);
    const double allBytes = median(all.bytes);
    std::printf("\n%-24s %10s %12s %10s %10s\n", "100,000 photos, medians", "ms", "bytes", "time", "bytes");
    for (const auto &[name, result] : results) {
        const double seconds = median(result.seconds);
        const double bytes = median(result.bytes);
        std::printf("%-24s %10.2f %12.0f %10.4f %10.4f\n", name.c_str(), seconds * 1000.0, bytes,
            allSeconds > 0 ? seconds / allSeconds : 0.0, allBytes > 0 ? bytes / allBytes : 0.0);
    }
    std::printf("Limits: unchanged 0 bytes; ten at most 0.1 in both.\n");
}

}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    printRatios();
    return 0;
}

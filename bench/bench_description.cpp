// How long the analysis of a description takes, beside what it takes to judge and parse the same text.
//
// bench_description [--benchmark_...] [DIRECTORY]
//
// DIRECTORY, else the environment variable PROJECT_DESCRIPTIONS_DIR, else the one configured, holds the
// descriptions, *.xml.
#include <QDir>
#include <QFile>

#include <benchmark/benchmark.h>

#include <cstdio>

#include <description/featurelist.h>

namespace {

/// A description with what its analysis finds.
struct Analysed
{
    QDomDocument document;
    ElementMap elements;
    InvalidatorLists invalidators;
    ElementMap features;
    FeatureList list{&document, &elements, &invalidators, &features};
};

QString Text(const QString &strPath)
{
    QFile file(strPath);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void Parse(benchmark::State &state, const QString &strPath)
{
    const QString strText = Text(strPath);
    Analysed analysed;
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(analysed.list.Parse(strText));
        state.PauseTiming(); // without freeing the tree
        analysed.document.clear();
        state.ResumeTiming();
    }
}

void Analyse(benchmark::State &state, const QString &strPath)
{
    Analysed analysed;
    if (!analysed.list.Parse(Text(strPath)))
        return state.SkipWithError("cannot be parsed");
    while (state.KeepRunning()) {
        analysed.list.Analyse();
        benchmark::DoNotOptimize(analysed.features.size());
    }
}

QDir Folder(int argc, char **argv)
{
    if (argc > 1)
        return QDir(QString::fromLocal8Bit(argv[1]));
    return QDir(qEnvironmentVariable("PROJECT_DESCRIPTIONS_DIR", QStringLiteral(PROJECT_DESCRIPTIONS_DIR)));
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    const QDir folder = Folder(argc, argv);
    const QFileInfoList files = folder.entryInfoList({QStringLiteral("*.xml")});
    if (files.isEmpty()) {
        std::fprintf(stderr, "No descriptions (*.xml) in %s; name a directory that has some.\n",
                     qUtf8Printable(folder.path()));
        return 1;
    }
    for (const QFileInfo &file : files) {
        const std::string strName = file.completeBaseName().toStdString();
        const QString strPath = file.filePath();
        benchmark::RegisterBenchmark(("parse/" + strName).c_str(), [strPath](benchmark::State &state) {
            Parse(state, strPath);
        })->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("analyse/" + strName).c_str(), [strPath](benchmark::State &state) {
            Analyse(state, strPath);
        })->Unit(benchmark::kMillisecond);
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

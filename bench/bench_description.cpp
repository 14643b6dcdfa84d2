// How long the analysis of a description takes, beside what the DOM takes to parse the same text.
//
// bench_description [--benchmark_...] [DIRECTORY]
//
// DIRECTORY, else the environment variable PROJECT_DESCRIPTIONS_DIR, else the one configured, holds the
// descriptions, *.xml.
#include <QDir>
#include <QDomDocument>
#include <QFile>

#include <benchmark/benchmark.h>

#include <cstdio>

#include <worker/qoperatethread.h>

namespace {

/// The steps of the analysis that follow the parsing.
class Analysis : public QOperateThread
{
public:
    void Run(QDomElement root)
    {
        m_mapDomElement.clear();
        m_mapFeatureInvalidator.clear();
        m_mapFeatureXml.clear();
        GenerateDomElementMap(root);
        GenerateFeaturesInvalidatorMap(root);
        for (const QString &strName : GetFeatureInvalidatorList(QStringLiteral("UserSetLoad"))) {
            QDomElement element;
            if (GetDomElementNode(strName, element))
                m_mapFeatureXml.insert(strName, element);
        }
        benchmark::DoNotOptimize(m_mapFeatureXml.size());
    }
};

QString Text(const QString &strPath)
{
    QFile file(strPath);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void Parse(benchmark::State &state, const QString &strPath)
{
    const QString strText = Text(strPath);
    while (state.KeepRunning()) {
        QDomDocument document;
        benchmark::DoNotOptimize(document.setContent(strText));
        state.PauseTiming(); // without freeing the tree
        document.clear();
        state.ResumeTiming();
    }
}

void Analyse(benchmark::State &state, const QString &strPath)
{
    QDomDocument document;
    if (!document.setContent(Text(strPath)))
        return state.SkipWithError("not well-formed");
    Analysis analysis;
    while (state.KeepRunning())
        analysis.Run(document.documentElement());
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

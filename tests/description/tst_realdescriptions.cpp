#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include "naivewalk.h"
#include "scriptedsdk.h"
#include "workerundertest.h"

/// The whole analysis over descriptions that cameras of several makers publish.
class tst_RealDescriptions : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { ScriptedSdk::Reset(); }
    void GenerateFeatureXmlMap_RealDescription_SelectsTheListedFeatures_data() { Rows(); }
    void GenerateFeatureXmlMap_RealDescription_SelectsTheListedFeatures();
    void GenerateFeaturesInvalidatorMap_RealDescription_EqualsPlainRecursion_data() { Rows(); }
    void GenerateFeaturesInvalidatorMap_RealDescription_EqualsPlainRecursion();
    void FeatureXmlExport_RealDescription_WritesTheExpectedFeatures_data() { Rows(); }
    void FeatureXmlExport_RealDescription_WritesTheExpectedFeatures();

private:
    using InvalidatorMap = QMap<QString, QList<QString>>;
    static void CollectNaively(const QDomElement &element, NaiveWalk *pWalk, InvalidatorMap *pMap);
    static QDir Folder() { return QDir(QStringLiteral(PROJECT_DESCRIPTIONS_DIR)); }
    static void Rows();
    static QByteArray Bytes(const QString &strFile);
    static QStringList Lines(const QString &strFile);
};

void tst_RealDescriptions::initTestCase()
{
    if (Folder().entryList({QStringLiteral("*.xml")}).isEmpty())
        QSKIP("No descriptions in " PROJECT_DESCRIPTIONS_DIR "; set PROJECT_DESCRIPTIONS_DIR");
}

void tst_RealDescriptions::Rows()
{
    QTest::addColumn<QString>("name");
    for (const QFileInfo &file : Folder().entryInfoList({QStringLiteral("*.xml")}))
        QTest::newRow(qUtf8Printable(file.completeBaseName())) << file.completeBaseName();
}

QByteArray tst_RealDescriptions::Bytes(const QString &strFile)
{
    QFile file(Folder().filePath(strFile));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList tst_RealDescriptions::Lines(const QString &strFile)
{
    return QString::fromUtf8(Bytes(strFile)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void tst_RealDescriptions::GenerateFeatureXmlMap_RealDescription_SelectsTheListedFeatures()
{
    QFETCH(QString, name);
    ScriptedSdk::SetDescription(Bytes(name + QStringLiteral(".xml")));
    WorkerUnderTest worker;
    QVERIFY(worker.OpenDevice());

    worker.GenerateFeatureXmlMap();

    QStringList selected;
    for (const QDomElement &feature : qAsConst(worker.m_mapFeatureXml))
        selected.append(feature.tagName() + QLatin1Char(' ') + feature.attribute(QStringLiteral("Name")));
    QVERIFY(!worker.m_mapDomElement.isEmpty());
    QCOMPARE(selected, Lines(name + QStringLiteral(".selected")));
}

void tst_RealDescriptions::CollectNaively(const QDomElement &element, NaiveWalk *pWalk, InvalidatorMap *pMap)
{
    static const QStringList tags = {"Enumeration", "Integer", "IntReg", "Boolean", "Float"};
    const QList<QString> listed =
        tags.contains(element.tagName()) ? pWalk->OfFeature(element) : QStringList();
    if (!listed.isEmpty())
        pMap->insert(element.attribute(QStringLiteral("Name")), listed);
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        CollectNaively(child, pWalk, pMap);
}

void tst_RealDescriptions::GenerateFeaturesInvalidatorMap_RealDescription_EqualsPlainRecursion()
{
    QFETCH(QString, name);
    ScriptedSdk::SetDescription(Bytes(name + QStringLiteral(".xml")));
    WorkerUnderTest worker;
    QVERIFY(worker.OpenDevice());

    worker.GenerateFeatureXmlMap();

    NaiveWalk walk(worker.m_mapDomElement);
    InvalidatorMap expected;
    CollectNaively(worker.m_domDocument.documentElement(), &walk, &expected);
    QCOMPARE(worker.m_mapFeatureInvalidator, expected);
}

void tst_RealDescriptions::FeatureXmlExport_RealDescription_WritesTheExpectedFeatures()
{
    QFETCH(QString, name);
    const QTemporaryDir directory;
    ScriptedSdk::SetDescription(Bytes(name + QStringLiteral(".xml")));
    ScriptedSdk::AnswerEverything();
    WorkerUnderTest worker;
    worker.SetExportThreadInfo(CameraRecord(KX_CC_TRANSPORT_GIGE, "M", "S"), directory.path());

    worker.run();

    QFile file(directory.filePath(QStringLiteral("M_S.kfb")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QDomDocument document;
    QVERIFY(document.setContent(&file));
    QStringList exported;
    const QDomNodeList features = document.elementsByTagName(QStringLiteral("Feature"));
    for (int i = 0; i < features.size(); ++i) {
        exported.append(features.at(i).firstChildElement(QStringLiteral("Type")).text() + QLatin1Char(' ') +
                        features.at(i).firstChildElement(QStringLiteral("Name")).text());
    }
    const QStringList expected = Lines(name + QStringLiteral(".expected"));
    QCOMPARE(exported, expected);
    QCOMPARE(ScriptedSdk::FeatureCalls().size(), expected.size()); // one call per feature, no more
}

QTEST_GUILESS_MAIN(tst_RealDescriptions)
#include "tst_realdescriptions.moc"

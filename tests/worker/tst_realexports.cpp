#include <QDomDocument>
#include <QTemporaryDir>
#include <QtTest>

#include "description/realdescriptions.h"
#include "scriptedsdk.h"
#include "workerundertest.h"

/// Exports of cameras with the descriptions that cameras of several makers publish.
class tst_RealExports : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { ScriptedSdk::Reset(); }
    void FeatureXmlExport_RealDescription_WritesTheExpectedFeatures_data();
    void FeatureXmlExport_RealDescription_WritesTheExpectedFeatures();
};

void tst_RealExports::initTestCase()
{
    if (RealDescriptions::Names().isEmpty())
        QSKIP("No descriptions in " PROJECT_DESCRIPTIONS_DIR "; set PROJECT_DESCRIPTIONS_DIR");
}

void tst_RealExports::FeatureXmlExport_RealDescription_WritesTheExpectedFeatures_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &strName : RealDescriptions::Names())
        QTest::newRow(qUtf8Printable(strName)) << strName;
}

void tst_RealExports::FeatureXmlExport_RealDescription_WritesTheExpectedFeatures()
{
    QFETCH(QString, name);
    const QTemporaryDir directory;
    ScriptedSdk::SetDescription(RealDescriptions::Bytes(name + QStringLiteral(".xml")));
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
    const QStringList expected = RealDescriptions::Lines(name + QStringLiteral(".expected"));
    QCOMPARE(exported, expected);
    QCOMPARE(ScriptedSdk::FeatureCalls().size(), expected.size()); // one call per feature, no more
}

QTEST_GUILESS_MAIN(tst_RealExports)
#include "tst_realexports.moc"

#include <QLocale>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QtTest>

#include <clocale>
#include <cstdlib>

#include "scriptedsdk.h"
#include "workerundertest.h"

/// Files are the same whatever the locale of the process, and Qt's own, may be.
class tst_FeatureXmlLocale : public QObject
{
    Q_OBJECT

private slots:
    void init() { ScriptedSdk::Reset(); }
    void cleanup();
    void Export_Locale_WritesTheSameBytes_data() { Locales(); }
    void Export_Locale_WritesTheSameBytes();
    void Import_Locale_SetsTheSameValues_data() { Locales(); }
    void Import_Locale_SetsTheSameValues();
    void Export_DefaultCodecIsLatin1_WritesUtf8();

private:
    static void Locales();
    bool UseLocale(const QString &strLocale);

    QTemporaryDir m_directory;
};

void tst_FeatureXmlLocale::Locales()
{
    QTest::addColumn<QString>("locale");
    QTest::newRow("decimal comma") << "de_DE";
    QTest::newRow("dotless i") << "tr_TR";
}

/// Sets the locale of the C library and of Qt. Builds it when the machine has only its source.
bool tst_FeatureXmlLocale::UseLocale(const QString &strLocale)
{
    const QByteArray name = strLocale.toLatin1() + ".UTF-8";
    if (!std::setlocale(LC_ALL, name.constData())) {
        QProcess::execute("localedef", {"-i", strLocale, "-f", "UTF-8", m_directory.filePath(name)});
        qputenv("LOCPATH", QFile::encodeName(m_directory.path()));
        if (!std::setlocale(LC_ALL, name.constData()))
            return false;
    }
    QLocale::setDefault(QLocale(strLocale));
    return true;
}

void tst_FeatureXmlLocale::cleanup()
{
    qunsetenv("LOCPATH");
    std::setlocale(LC_ALL, "C.UTF-8");
    QLocale::setDefault(QLocale::c());
    QTextCodec::setCodecForLocale(nullptr);
}

void tst_FeatureXmlLocale::Export_Locale_WritesTheSameBytes()
{
    QFETCH(QString, locale);
    if (!UseLocale(locale))
        QSKIP("The locale is not installed and cannot be built; Debian package locales");
    ScriptedSdk::SetDescription(
        "<R><Register Name='Reg'><pInvalidator>UserSetLoad</pInvalidator></Register>"
        "<Float Name='F'><Streamable>YES</Streamable><pValue>Reg</pValue></Float>"
        "<Integer Name='I'><Streamable>yes</Streamable><pValue>Reg</pValue></Integer></R>");
    ScriptedSdk::SetFloat("F", 1234567.25F);
    ScriptedSdk::SetUnsigned("I", 1234567);
    WorkerUnderTest worker;
    worker.SetExportThreadInfo(CameraRecord(KX_CC_TRANSPORT_GIGE, "M", "S"), m_directory.path());

    worker.run();

    QFile file(m_directory.filePath("M_S.kfb"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    QVERIFY2(text.contains("<Value>1234567.250000</Value>"), text.constData());
    QVERIFY2(text.contains("<Value>1234567</Value>"), text.constData());
}

void tst_FeatureXmlLocale::Import_Locale_SetsTheSameValues()
{
    QFETCH(QString, locale);
    if (!UseLocale(locale))
        QSKIP("The locale is not installed and cannot be built; Debian package locales");
    QFile file(m_directory.filePath("import.kfb"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<F><M>M</M><R><Name>F</Name><Type>Float</Type><Value>0.500000</Value>"
               "<Streamable>yes</Streamable></R><R><Name>I</Name><Type>Integer</Type><Value>1234567</Value>"
               "<Streamable>YES</Streamable></R></F>");
    file.close();
    WorkerUnderTest worker;
    worker.SetImportThreadInfo(CameraRecord(KX_CC_TRANSPORT_GIGE, "M", "S"), file.fileName());

    worker.run();

    QCOMPARE(ScriptedSdk::FeatureCalls().mid(0, 2),
             QStringList({"KX_CC_SetFloatValue(F, 0.5)", "KX_CC_SetIntValue(I, 1234567)"}));
}

void tst_FeatureXmlLocale::Export_DefaultCodecIsLatin1_WritesUtf8()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
    ScriptedSdk::SetDescription("<R/>");
    WorkerUnderTest worker;
    worker.SetExportThreadInfo(CameraRecord(KX_CC_TRANSPORT_GIGE, "\xE4", "S"), m_directory.path());
    worker.run();
    const QStringList files = QDir(m_directory.path()).entryList({"*_S.kfb"}, QDir::Files);
    QVERIFY(!files.isEmpty());
    QByteArray all;
    for (const QString &strFile : files) {
        QFile file(m_directory.filePath(strFile));
        QVERIFY(file.open(QIODevice::ReadOnly));
        all += file.readAll();
    }
    QVERIFY2(all.contains("<DeviceModelName>\xC3\xA4</DeviceModelName>"), all.constData());
}

QTEST_GUILESS_MAIN(tst_FeatureXmlLocale)
#include "tst_featurexmllocale.moc"

#include <QDomDocument>
#include <QtTest>

#include "faultbatch.h"

// Values that no healthy camera has, in exports, imports, and on the way from one to the other.
class tst_Faults_Values : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void Export_OddValue_OnlyItsRecordDiffers_data();
    void Export_OddValue_OnlyItsRecordDiffers();
    void Import_IntoCameraWithOddValue_SetsEverything_data();
    void Import_IntoCameraWithOddValue_SetsEverything();
    void Import_FileWithOddValue_SetsEverythingElse_data();
    void Import_FileWithOddValue_SetsEverythingElse();
    void Import_ExportedExtremes_SetTheSameRegisters();

private:
    QString Import(const QByteArray &fault, const QByteArray &file, FaultBatch::Outcome *pAfter);

    FaultBatch m_batch{"127.50.10."};
};

namespace {

const char kFaultyFile[] = "SimCam-150_SIM0002.kfb";

QByteArray WithoutRecord(QByteArray file, const QByteArray &feature)
{
    const int begin = file.lastIndexOf("<Feature>", file.indexOf("<Name>" + feature + "</Name>"));
    const int end = file.indexOf("</Feature>\r\n", begin) + 12;
    return begin < 0 ? file : file.remove(begin, end - begin);
}

/// Whether it can be read back: well-formed, and nothing but UTF-8.
bool IsReadable(const QByteArray &file)
{
    QDomDocument document;
    return IsWhole(file) && document.setContent(file) && QString::fromUtf8(file).toUtf8() == file;
}

} // namespace

void tst_Faults_Values::initTestCase()
{
    if (!CameraFarm::IsInstalled())
        QSKIP("kx-camera-farm is not built");
    QCOMPARE(m_batch.Prepare(), QString());
}

void tst_Faults_Values::Export_OddValue_OnlyItsRecordDiffers_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QByteArray>("text"); // in the file; null: no record, empty: as if there were no fault
    const auto row = [](const char *name, const char *value, const QByteArray &text) {
        QTest::newRow(name) << QByteArray(value) << text;
    };
    const QByteArray none;
    const QByteArray same("");
    row("enumeration without the entry", "ExposureMode=77", "77");
    row("enumeration -1", "AcquisitionMode=-1", "4294967295");
    row("enumeration 2^31", "PixelFormat=0x80000000", "2147483648");
    row("boolean neither on nor off", "BlackLevelClampingEnable=7", "0");
    row("integer below its minimum", "Width=0", "0");
    row("integer above its maximum", "Width=4294967295", "4294967295");
    row("integer of 32 bits, -1", "EncoderPositionOffset=-1", "4294967295");
    row("integer of 32 bits, -2^31", "EncoderPositionOffset=-2147483648", "2147483648");
    row("integer of 32 bits, 2^31-1", "EncoderPositionOffset=2147483647", "2147483647");
    row("integer of 32 bits, 2^31", "ActionDeviceKey=2147483648", "2147483648");
    row("integer of 32 bits, 2^32-1", "ActionDeviceKey=4294967295", "4294967295");
    row("integer of 64 bits, 2^32-1", "LineFaultMask=4294967295", "4294967295");
    row("integer of 64 bits, 2^32", "LineFaultMask=4294967296", none);
    row("integer of 64 bits, 2^63-1", "LineFaultMask=9223372036854775807", none);
    row("integer of 64 bits, 2^63", "LineFaultMask=9223372036854775808", none);
    row("integer of 64 bits, 2^64-2^31", "LineFaultMask=0xFFFFFFFF80000000", none);
    row("integer of 64 bits, 2^64-1", "CounterDuration=0xFFFFFFFFFFFFFFFF", none);
    row("float of 32 bits, no number", "Hue=nan", none);
    row("float of 32 bits, infinity", "ExposureTime=inf", none);
    row("float of 32 bits, the greatest", "Hue=3.4028234e38",
        "340282346638528859811704183484516925440.000000");
    row("float of 32 bits, the least", "Hue=-3.4028234e38",
        "-340282346638528859811704183484516925440.000000");
    row("float of 32 bits, denormal", "ExposureTime=1e-45", "0.000000");
    row("float of 64 bits, no number", "TriggerDelay=nan", none);
    row("float of 64 bits, negative infinity", "TriggerDelay=-inf", none);
    row("float of 64 bits, beyond 32", "TriggerDelay=1e300", none);
    row("float of 64 bits, denormal", "TriggerDelay=1e-310", same);
    row("text without an end", "DeviceNote=0123456789abcdef0123456789abcdef", same);
    row("text that is no UTF-8", "DeviceNote=\\xff\\xc3\\x28", same);
    row("text that would be XML", "DeviceNote=</Value>\\x00", same);
}

void tst_Faults_Values::Export_OddValue_OnlyItsRecordDiffers()
{
    QFETCH(QByteArray, value);
    QFETCH(QByteArray, text);
    const QByteArray feature = value.left(value.indexOf('='));
    QCOMPARE(m_batch.StartFarm(), QString());
    QCOMPARE(m_batch.SetFault("value " + value), QString());

    const FaultBatch::Outcome outcome = m_batch.Export();

    QCOMPARE(outcome.run.exitCode, 0);
    QCOMPARE(outcome.run.Camera(m_batch.Faulty()).value("message").toString(), QString());
    QByteArray expected = m_batch.Reference();
    if (text.isNull())
        expected = WithoutRecord(expected, feature);
    else if (!text.isEmpty())
        expected = WithValue(expected, feature, text);
    QCOMPARE(expected != m_batch.Reference(), text.isNull() || !text.isEmpty());
    QCOMPARE(outcome.files.value(kFaultyFile), expected);
    QVERIFY(IsReadable(expected));
    QCOMPARE(m_batch.CheckNeighbours(outcome), QString());
    QCOMPARE(m_batch.CheckLeftovers(outcome), QString());
    QCOMPARE(m_batch.CheckFreeAgain(), QString());
}

// Imports with the fault in the second camera, which ends afterwards; then exports all three.
QString tst_Faults_Values::Import(const QByteArray &fault, const QByteArray &file,
                                  FaultBatch::Outcome *pAfter)
{
    QString error = m_batch.StartFarm();
    if (error.isEmpty() && !fault.isEmpty())
        error = m_batch.SetFault(fault);
    if (!error.isEmpty())
        return error;
    const FaultBatch::Outcome import = m_batch.Import(file);
    if (import.run.exitCode != 0)
        return QString::fromUtf8(import.run.out + import.run.err);
    error = m_batch.CheckLeftovers(import);
    if (error.isEmpty())
        error = m_batch.CheckFreeAgain();
    if (!error.isEmpty())
        return error;
    *pAfter = m_batch.Export();
    return pAfter->run.exitCode == 0 && pAfter->files.size() == 3 ? QString()
                                                                  : QString::fromUtf8(pAfter->run.out);
}

void tst_Faults_Values::Import_IntoCameraWithOddValue_SetsEverything_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("enumeration without the entry") << QByteArray("ExposureMode=77");
    QTest::newRow("mode that locks others") << QByteArray("ExposureAuto=-1");
    QTest::newRow("boolean neither on nor off") << QByteArray("BlackLevelClampingEnable=7");
    QTest::newRow("integer that limits another") << QByteArray("Width=4294967295");
    QTest::newRow("integer of 64 bits") << QByteArray("LineFaultMask=-1");
    QTest::newRow("float that is no number") << QByteArray("ExposureTime=nan");
    QTest::newRow("float that limits another") << QByteArray("AutoGainMin=inf");
    QTest::newRow("selector beyond its registers") << QByteArray("GainSelector=9");
}

void tst_Faults_Values::Import_IntoCameraWithOddValue_SetsEverything()
{
    QFETCH(QByteArray, value);
    const QByteArray file = WithValue(m_batch.Reference(), "Height", "200");
    FaultBatch::Outcome after;
    QCOMPARE(Import("value " + value, file, &after), QString());
    for (const QByteArray &content : after.files)
        QCOMPARE(content, file);
}

void tst_Faults_Values::Import_FileWithOddValue_SetsEverythingElse_data()
{
    QTest::addColumn<QByteArray>("feature");
    QTest::addColumn<QByteArray>("text");
    const auto row = [](const char *name, const char *feature, const char *text) {
        QTest::newRow(name) << QByteArray(feature) << QByteArray(text);
    };
    row("enumeration without the entry", "ExposureMode", "77");
    row("enumeration -1", "AcquisitionMode", "4294967295");
    row("integer below its minimum", "Width", "0");
    row("integer above its maximum", "Width", "4294967295");
    row("integer between two steps", "Width", "642");
    row("negative integer below its minimum", "BlackLevelOffset", "2147483648");
    row("float no number", "Hue", "nan");
    row("float infinite", "Hue", "inf");
    row("float beyond its limit", "Hue", "340282346638528859811704183484516925440.000000");
}

void tst_Faults_Values::Import_FileWithOddValue_SetsEverythingElse()
{
    QFETCH(QByteArray, feature);
    QFETCH(QByteArray, text);
    const QByteArray changed =
        WithValue(WithValue(m_batch.Reference(), "Height", "200"), "Sharpness", "4294967291"); // -5
    const QByteArray file = WithValue(changed, feature, text);
    QVERIFY(file != changed);
    FaultBatch::Outcome after;
    QCOMPARE(Import(QByteArray(), file, &after), QString());
    for (const QByteArray &content : after.files)
        QCOMPARE(content, changed);
}

void tst_Faults_Values::Import_ExportedExtremes_SetTheSameRegisters()
{
    const QMap<QByteArray, QByteArray> extremes{{"ActionDeviceKey", "4294967295"},
                                                {"BlackLevelOffset", "-512"},
                                                {"CounterDuration", "4294967295"},
                                                {"EncoderPositionOffset", "-2147483648"},
                                                {"LineCurrentOffset", "-1"},
                                                {"LineFaultMask", "2147483648"},
                                                {"Sharpness", "-50"},
                                                {"UserOutputValueAll", "2147483648"}};
    QByteArray value = "value";
    QByteArray expected = m_batch.Reference();
    for (auto it = extremes.begin(); it != extremes.end(); ++it) {
        value += ' ' + it.key() + '=' + it.value();
        expected =
            WithValue(expected, it.key(), QByteArray::number(static_cast<quint32>(it.value().toLongLong())));
    }
    QCOMPARE(m_batch.StartFarm(), QString());
    QCOMPARE(m_batch.SetFault(value), QString());
    const QByteArray file = m_batch.Export().files.value(kFaultyFile);
    QCOMPARE(file, expected);

    FaultBatch::Outcome after;
    QCOMPARE(Import(QByteArray(), file, &after), QString());

    // A text in the file stands for one content of a register only, so equal files are equal registers.
    for (const QByteArray &content : after.files)
        QCOMPARE(content, expected);
}

QTEST_GUILESS_MAIN(tst_Faults_Values)
#include "tst_faults_values.moc"

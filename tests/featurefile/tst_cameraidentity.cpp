#include <QtTest>

#include <featurefile/cameraidentity.h>

#include "camerarecord.h"

using CameraIdentity::Reading;

class tst_CameraIdentity : public QObject
{
    Q_OBJECT

private slots:
    void FileNameParts_Transport_GivesItsFields_data();
    void FileNameParts_Transport_GivesItsFields();
    void FileNameParts_FullField_EndsAtItsWidth_data();
    void FileNameParts_FullField_EndsAtItsWidth();
    void FileNameParts_Utf8_IsDecoded();
    void FilePath_PercentInDirectoryAndNames_IsKept();
    void ModelNameInFile_Utf8_IsTakenAsLatin1();
    void ModelNameInFile_FullField_EndsAtItsWidth();
    void ModelNameInFile_UnknownTransport_IsEmpty();
};

void tst_CameraIdentity::FileNameParts_Transport_GivesItsFields_data()
{
    QTest::addColumn<quint32>("type");
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("named");
    QTest::newRow("network") << 1U << "/d/M_S.kfb" << true;
    QTest::newRow("USB") << 4U << "/d/M_S.kfb" << true;
    QTest::newRow("port") << 8U << "/d/M_S.kfb" << true;
    for (const quint32 nType : {0U, 2U, 3U, 5U, 9U, 16U, 0xFFFFFFFFU})
        QTest::addRow("unknown %u", nType) << nType << "/d/_.kfb" << false;
}

void tst_CameraIdentity::FileNameParts_Transport_GivesItsFields()
{
    QFETCH(quint32, type);
    QFETCH(QString, path);
    QFETCH(bool, named);
    const _STRUCT_DEVICE_INFO_ info = CameraRecord(type, "M", "S");

    for (const Reading reading : {Reading::FieldWidth, Reading::Terminated})
        QCOMPARE(CameraIdentity::FilePath("/d", CameraIdentity::FileNameParts(info, reading)), path);
    QCOMPARE(CameraIdentity::HasModelName(info), named);
}

void tst_CameraIdentity::FileNameParts_FullField_EndsAtItsWidth_data()
{
    QTest::addColumn<quint32>("type");
    QTest::addColumn<int>("modelWidth");
    QTest::addColumn<int>("serialWidth");
    QTest::newRow("network") << 1U << 32 << 16;
    QTest::newRow("USB") << 4U << 64 << 64;
    QTest::newRow("port") << 8U << 64 << 64;
}

void tst_CameraIdentity::FileNameParts_FullField_EndsAtItsWidth()
{
    QFETCH(quint32, type);
    QFETCH(int, modelWidth);
    QFETCH(int, serialWidth);
    const QByteArray model(modelWidth, 'm');
    const QByteArray serial(serialWidth, 's');
    const _STRUCT_DEVICE_INFO_ info = CameraRecord(type, model.constData(), serial.constData());

    for (const Reading reading : {Reading::FieldWidth, Reading::Terminated}) {
        const CameraIdentity::Names names = CameraIdentity::FileNameParts(info, reading);
        QCOMPARE(names.strModel, QString::fromLatin1(model));
        QCOMPARE(names.strSerial, QString::fromLatin1(serial));
    }
}

void tst_CameraIdentity::FileNameParts_Utf8_IsDecoded()
{
    const _STRUCT_DEVICE_INFO_ info = CameraRecord(KX_CC_TRANSPORT_GIGE, "K\xC3\xA4mera", "1");
    QCOMPARE(CameraIdentity::FileNameParts(info, Reading::FieldWidth).strModel, QString::fromUtf8("Kämera"));
}

void tst_CameraIdentity::FilePath_PercentInDirectoryAndNames_IsKept()
{
    QCOMPARE(CameraIdentity::FilePath("/100%1/%2", {"M%2", "%1S"}), QString("/100%1/%2/M%2_%1S.kfb"));
}

void tst_CameraIdentity::ModelNameInFile_Utf8_IsTakenAsLatin1()
{
    const _STRUCT_DEVICE_INFO_ info = CameraRecord(KX_CC_TRANSPORT_USB, "K\xC3\xA4mera", "1");
    QCOMPARE(CameraIdentity::ModelNameInFile(info), QString::fromLatin1("K\xC3\xA4mera"));
}

void tst_CameraIdentity::ModelNameInFile_FullField_EndsAtItsWidth()
{
    const QByteArray model(32, 'm');
    const _STRUCT_DEVICE_INFO_ info = CameraRecord(KX_CC_TRANSPORT_GIGE, model.constData(), "1");
    QCOMPARE(CameraIdentity::ModelNameInFile(info), QString::fromLatin1(model));
}

void tst_CameraIdentity::ModelNameInFile_UnknownTransport_IsEmpty()
{
    QCOMPARE(CameraIdentity::ModelNameInFile(CameraRecord(2, "M", "S")), QString());
}

QTEST_GUILESS_MAIN(tst_CameraIdentity)
#include "tst_cameraidentity.moc"

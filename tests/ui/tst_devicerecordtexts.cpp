#include <QtTest>

#include <scripteddevices.h>
#include <ui/devicerecordtexts.h>

class tst_DeviceRecordTexts : public QObject
{
    Q_OBJECT

private slots:
    void Texts_NetworkCamera_WithMacAddress();
    void Texts_UsbCamera_WithoutMacAddressAndPort();
    void Texts_PortCamera_HasAPortAndNoUserName();
    void Texts_UnknownType_AreEmpty();
    void Texts_FieldFilled_EndAtItsWidth();
    void Texts_DefaultRecord_AreEmptyButTheMacAddress();
    void AccessState_Value_data();
    void AccessState_Value();
    void IconPath_State_NamesItsImage();

private:
    static _STRUCT_DEVICE_INFO_ Record(const KX_CC_DEVICE_INFO &stInfo);
};

_STRUCT_DEVICE_INFO_ tst_DeviceRecordTexts::Record(const KX_CC_DEVICE_INFO &stInfo)
{
    _STRUCT_DEVICE_INFO_ record;
    record.nDeviceType = stInfo.nTransportType;
    record.stDevInfo = stInfo;
    return record;
}

void tst_DeviceRecordTexts::Texts_NetworkCamera_WithMacAddress()
{
    const DeviceTexts texts = TextsOfDevice(Record(NetworkCamera(7)));
    QCOMPARE(texts.strModel, QString("ABC-1000"));
    QCOMPARE(texts.strUserName, QString("User 7"));
    QCOMPARE(texts.strSerial, QString("SN0007"));
    QCOMPARE(texts.strMacAddress, QString("00:11:1C:F0:00:07"));
    QCOMPARE(texts.strPortID, QString());
}

void tst_DeviceRecordTexts::Texts_UsbCamera_WithoutMacAddressAndPort()
{
    const DeviceTexts texts = TextsOfDevice(Record(UsbCamera(7)));
    QCOMPARE(texts.strModel, QString("USB-2000"));
    QCOMPARE(texts.strUserName, QString("Cam 7"));
    QCOMPARE(texts.strSerial, QString("US0007"));
    QCOMPARE(texts.strMacAddress, QString());
    QCOMPARE(texts.strPortID, QString());
}

void tst_DeviceRecordTexts::Texts_PortCamera_HasAPortAndNoUserName()
{
    const DeviceTexts texts = TextsOfDevice(Record(PortCamera(7)));
    QCOMPARE(texts.strModel, QString("PORT-3000"));
    QCOMPARE(texts.strUserName, QString());
    QCOMPARE(texts.strSerial, QString("PS0007"));
    QCOMPARE(texts.strPortID, QString("COM7"));
    QCOMPARE(texts.strMacAddress, QString());
}

void tst_DeviceRecordTexts::Texts_UnknownType_AreEmpty()
{
    _STRUCT_DEVICE_INFO_ record = Record(NetworkCamera(7));
    record.nDeviceType = 2;
    const DeviceTexts texts = TextsOfDevice(record);
    QCOMPARE(texts.strModel + texts.strUserName + texts.strSerial + texts.strMacAddress, QString());
}

void tst_DeviceRecordTexts::Texts_FieldFilled_EndAtItsWidth()
{
    KX_CC_DEVICE_INFO stInfo = NetworkCamera(7);
    KX_CC_GIGE_INFO &stGigE = stInfo.SpecialInfo.stGigEInfo;
    SetText(stGigE.chModelName, 32, QByteArray(32, 'M'));
    SetText(stGigE.chUserDefinedName, 16, QByteArray("\xC3\xA4", 2).repeated(8)); // ä
    SetText(stGigE.chSerialNumber, 16, QByteArray(16, 'S'));
    const DeviceTexts texts = TextsOfDevice(Record(stInfo));
    QCOMPARE(texts.strModel, QString(32, 'M'));
    QCOMPARE(texts.strUserName, QString(8, QChar(0xE4)));
    QCOMPARE(texts.strSerial, QString(16, 'S'));
}

void tst_DeviceRecordTexts::Texts_DefaultRecord_AreEmptyButTheMacAddress()
{
    const DeviceTexts texts = TextsOfDevice(_STRUCT_DEVICE_INFO_());
    QCOMPARE(texts.strModel + texts.strUserName + texts.strSerial, QString());
    QCOMPARE(texts.strMacAddress, QString("00:00:00:00:00:00"));
}

void tst_DeviceRecordTexts::AccessState_Value_data()
{
    QTest::addColumn<quint32>("nValue");
    QTest::addColumn<int>("nState");
    const QSet<quint32> setFree{1, 8, 13, 18};
    const QSet<quint32> setInUse{2, 4, 9, 14};
    for (quint32 nValue : QVector<quint32>{0,  1,  2,  3,  4,  5,  6,  7,  8,  9,          10,        11,
                                           12, 13, 14, 15, 16, 17, 18, 19, 20, 0x7FFFFFFF, 0xFFFFFFFF}) {
        const int nState = setFree.contains(nValue) ? 1 : setInUse.contains(nValue) ? 3 : 2;
        QTest::addRow("%u", nValue) << nValue << nState;
    }
}

void tst_DeviceRecordTexts::AccessState_Value()
{
    QFETCH(quint32, nValue);
    QTEST(int(AccessStateOf(nValue)), "nState");
}

void tst_DeviceRecordTexts::IconPath_State_NamesItsImage()
{
    QCOMPARE(AccessIconPath(AccessFree), QString(":/Lumo/State/use.png"));
    QCOMPARE(AccessIconPath(AccessInUse), QString(":/Lumo/State/notuse.png"));
    QCOMPARE(AccessIconPath(AccessUnreachable), QString(":/Lumo/State/notreach.png"));
}

QTEST_APPLESS_MAIN(tst_DeviceRecordTexts)
#include "tst_devicerecordtexts.moc"

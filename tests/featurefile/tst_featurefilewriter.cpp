#include <QtTest>

#include <limits>

#include <featurefile/featurefilewriter.h>

class tst_FeatureFileWriter : public QObject
{
    Q_OBJECT

private slots:
    void Finish_Empty_GivesFrameWithCrLf();
    void Finish_ModelAndFeatures_GivesEveryLine();
    void AppendFeature_Markup_IsNotEscaped();
    void AppendFeature_PlaceHoldersInNames_AreFilledOneAfterTheOther();
    void UnsignedText_Value_IsDecimal();
    void BooleanText_Value_IsOneOrZero();
    void FloatText_Value_HasSixDecimals_data();
    void FloatText_Value_HasSixDecimals();
};

void tst_FeatureFileWriter::Finish_Empty_GivesFrameWithCrLf()
{
    QCOMPARE(FeatureFileWriter().Finish(),
             QString("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<Features>\r\n</Features>"));
}

void tst_FeatureFileWriter::Finish_ModelAndFeatures_GivesEveryLine()
{
    FeatureFileWriter writer;
    writer.AppendModelName("ABC-1000");
    writer.AppendFeature("ExposureTime", "Float", "5000.000000");
    writer.AppendFeature("TriggerMode", "Enumeration", "1");
    QCOMPARE(
        writer.Finish(),
        QStringList({"<?xml version=\"1.0\" encoding=\"UTF-8\"?>", "<Features>",
                     "<DeviceModelName>ABC-1000</DeviceModelName>", "<Feature>", "<Name>ExposureTime</Name>",
                     "<Type>Float</Type>", "<Value>5000.000000</Value>", "<Streamable>Yes</Streamable>",
                     "</Feature>", "<Feature>", "<Name>TriggerMode</Name>", "<Type>Enumeration</Type>",
                     "<Value>1</Value>", "<Streamable>Yes</Streamable>", "</Feature>", "</Features>"})
            .join("\r\n"));
}

void tst_FeatureFileWriter::AppendFeature_Markup_IsNotEscaped()
{
    FeatureFileWriter writer;
    writer.AppendModelName("A&B<C>");
    writer.AppendFeature("N<", "T&", "\"V\"");
    const QString strText = writer.Finish();
    QVERIFY(strText.contains("<DeviceModelName>A&B<C></DeviceModelName>"));
    QVERIFY(strText.contains("<Name>N<</Name>\r\n<Type>T&</Type>\r\n<Value>\"V\"</Value>"));
}

void tst_FeatureFileWriter::AppendFeature_PlaceHoldersInNames_AreFilledOneAfterTheOther()
{
    FeatureFileWriter writer;
    writer.AppendFeature("A%2", "T", "V");
    QVERIFY(writer.Finish().contains("<Name>AT</Name>\r\n<Type>T</Type>\r\n<Value>V</Value>"));
}

void tst_FeatureFileWriter::UnsignedText_Value_IsDecimal()
{
    QCOMPARE(FeatureFileWriter::UnsignedText(0), QString("0"));
    QCOMPARE(FeatureFileWriter::UnsignedText(1234567), QString("1234567"));
    QCOMPARE(FeatureFileWriter::UnsignedText(static_cast<quint32>(-1)), QString("4294967295"));
}

void tst_FeatureFileWriter::BooleanText_Value_IsOneOrZero()
{
    QCOMPARE(FeatureFileWriter::BooleanText(true), QString("1"));
    QCOMPARE(FeatureFileWriter::BooleanText(false), QString("0"));
}

void tst_FeatureFileWriter::FloatText_Value_HasSixDecimals_data()
{
    QTest::addColumn<float>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("half") << 0.5F << "0.500000";
    QTest::newRow("ten thousand") << 10000.0F << "10000.000000";
    QTest::newRow("29.97 in single precision") << 29.97F << "29.969999";
    QTest::newRow("negative") << -1.25F << "-1.250000";
    QTest::newRow("below the last decimal") << 1e-9F << "0.000000";
    QTest::newRow("largest") << std::numeric_limits<float>::max()
                             << "340282346638528859811704183484516925440.000000";
}

void tst_FeatureFileWriter::FloatText_Value_HasSixDecimals()
{
    QFETCH(float, value);
    QFETCH(QString, text);
    QCOMPARE(FeatureFileWriter::FloatText(value), text);
}

QTEST_GUILESS_MAIN(tst_FeatureFileWriter)
#include "tst_featurefilewriter.moc"

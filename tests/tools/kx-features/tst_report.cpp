#include <QtTest>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "report.h"
#include "testcameras.h"

class tst_Report : public QObject
{
    Q_OBJECT

private slots:
    void Table_NoCamera_IsTheHeading();
    void Table_Cameras_StandInColumns();
    void ResultLine_Ok_NamesCameraAndFile();
    void ResultLine_Failed_NamesTheReasonInOneLine();
    void ResultLine_FailedCameraInUse_SaysSo();
    void ResultLine_NotDone_IsInterrupted();
    void MissingLine_NamesWhatIsMissing();
    void Progress_CountsDoneAndFailed();
    void ListJson_Camera_HasAllFields();
    void ListJson_NoCamera_IsAnEmptyArray();
    void BatchJson_Results_AreAdded();
    void BatchJson_Missing_FollowsAsFailed();
};

static CameraResult Ok(const QString &file)
{
    return {true, true, QString(), file};
}

static CameraResult Failed(const QString &message)
{
    return {true, false, message, QString("f.kfb")};
}

static QJsonArray ArrayOf(const QByteArray &text)
{
    return QJsonDocument::fromJson(text).array();
}

void tst_Report::Table_NoCamera_IsTheHeading()
{
    QCOMPARE(Report::Table({}), QString("MODEL  SERIAL  USER NAME  ADDRESS  TRANSPORT  ACCESS\n"));
}

void tst_Report::Table_Cameras_StandInColumns()
{
    const QStringList lines =
        Report::Table({NetworkCamera("LongModelName", "A", 0x7F000A01),
                       NetworkCamera("M", "SERIAL-0001", 0x7F000A02, KX_CC_ACCESS_IN_USE)})
            .split('\n');
    QCOMPARE(lines.at(1), QString("LongModelName  A            -          127.0.10.1  gige       free"));
    QCOMPARE(lines.at(2), QString("M              SERIAL-0001  -          127.0.10.2  gige       in use"));
}

void tst_Report::ResultLine_Ok_NamesCameraAndFile()
{
    QCOMPARE(Report::ResultLine(NetworkCamera("M", "S", 0x7F000A01), Ok("out/M_S.kfb")),
             QString("ok      M S 127.0.10.1  out/M_S.kfb"));
}

void tst_Report::ResultLine_Failed_NamesTheReasonInOneLine()
{
    QCOMPARE(Report::ResultLine(NetworkCamera("M", "S", 0x7F000A01), Failed("No.\r\nReally.")),
             QString("failed  M S 127.0.10.1  No. Really."));
}

void tst_Report::ResultLine_FailedCameraInUse_SaysSo()
{
    QCOMPARE(Report::ResultLine(NetworkCamera("M", "S", 0x7F000A01, KX_CC_ACCESS_IN_USE), Failed("No.")),
             QString("failed  M S 127.0.10.1  No. (camera is in use)"));
}

void tst_Report::ResultLine_NotDone_IsInterrupted()
{
    QCOMPARE(Report::ResultLine(NetworkCamera("M", "S", 0x7F000A01), CameraResult()),
             QString("failed  M S 127.0.10.1  interrupted"));
}

void tst_Report::MissingLine_NamesWhatIsMissing()
{
    QCOMPARE(Report::MissingLine("serial number 7"), QString("failed  serial number 7  not found"));
}

void tst_Report::Progress_CountsDoneAndFailed()
{
    QCOMPARE(Report::Progress(12, 64, 1), QString("12 of 64 done, 1 failed"));
}

void tst_Report::ListJson_Camera_HasAllFields()
{
    const QJsonObject camera =
        ArrayOf(Report::ListJson({NetworkCamera("M", "S", 0x7F000A01)})).at(0).toObject();
    QCOMPARE(camera.keys(), QStringList({"access", "address", "model", "serial", "transport", "userName"}));
    QCOMPARE(camera.value("model").toString(), QString("M"));
    QCOMPARE(camera.value("serial").toString(), QString("S"));
    QCOMPARE(camera.value("address").toString(), QString("127.0.10.1"));
    QCOMPARE(camera.value("transport").toString(), QString("gige"));
    QCOMPARE(camera.value("access").toString(), QString("free"));
}

void tst_Report::ListJson_NoCamera_IsAnEmptyArray()
{
    QVERIFY(QJsonDocument::fromJson(Report::ListJson({})).isArray());
    QVERIFY(ArrayOf(Report::ListJson({})).isEmpty());
}

void tst_Report::BatchJson_Results_AreAdded()
{
    const QVector<Camera> cameras = {NetworkCamera("M", "A", 1), NetworkCamera("M", "B", 2),
                                     NetworkCamera("M", "C", 3)};
    const QJsonArray array =
        ArrayOf(Report::BatchJson(cameras, {Ok("o/M_A.kfb"), Failed("No."), CameraResult()}, {}));
    QCOMPARE(array.size(), 3);
    QCOMPARE(array.at(0)["result"].toString(), QString("ok"));
    QCOMPARE(array.at(0)["message"].toString(), QString());
    QCOMPARE(array.at(0)["file"].toString(), QString("o/M_A.kfb"));
    QCOMPARE(array.at(0)["serial"].toString(), QString("A"));
    QCOMPARE(array.at(1)["result"].toString(), QString("failed"));
    QCOMPARE(array.at(1)["message"].toString(), QString("No."));
    QCOMPARE(array.at(2)["result"].toString(), QString("failed"));
    QCOMPARE(array.at(2)["message"].toString(), QString("interrupted"));
}

void tst_Report::BatchJson_Missing_FollowsAsFailed()
{
    const QJsonArray array = ArrayOf(Report::BatchJson({}, {}, {"serial number 7"}));
    QCOMPARE(array.at(0)["result"].toString(), QString("failed"));
    QCOMPARE(array.at(0)["message"].toString(), QString("serial number 7 not found"));
}

QTEST_GUILESS_MAIN(tst_Report)
#include "tst_report.moc"

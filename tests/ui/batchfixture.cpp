#include "batchfixture.h"

#include <QDir>
#include <QFile>
#include <QtTest>

QString BatchFixture::WriteFile(const QString &strName, const QByteArray &model) const
{
    QFile file(Dir() + '/' + strName);
    if (!file.open(QIODevice::WriteOnly))
        return {};
    file.write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<Features>\r\n<DeviceModelName>" + model +
               "</DeviceModelName>\r\n<Feature>\r\n<Name>Width</Name>\r\n<Type>Integer</Type>\r\n"
               "<Value>640</Value>\r\n<Streamable>Yes</Streamable>\r\n</Feature>\r\n</Features>");
    return file.fileName();
}

QMap<QString, QByteArray> BatchFixture::TakeFiles() const
{
    QMap<QString, QByteArray> mapFiles;
    for (const QString &strName : QDir(Dir()).entryList({"*.kfb"}, QDir::Files)) {
        QFile file(Dir() + '/' + strName);
        if (file.open(QIODevice::ReadOnly))
            mapFiles.insert(strName, file.readAll());
        file.remove();
    }
    return mapFiles;
}

void BatchFixture::TickAll()
{
    ClickHeader(0);
    QVERIFY(Button("ImportBtn")->isEnabled());
}

void BatchFixture::Run(const QString &strButton, const QString &strPath)
{
    if (IsResultPage())
        ClickButton("BackBtn");
    ModalHands hands;
    CloseMessage(ChooseFile(hands, strPath), strButton);
    ClickButton(strButton);
    QTRY_VERIFY(hands.AllDone());
}

ModalHands &ChooseFile(ModalHands &hands, const QString &strPath)
{
    return hands.Then("QFileDialog", [strPath](QWidget *pDialog) { ModalHands::Choose(pDialog, strPath); });
}

ModalHands &CloseMessage(ModalHands &hands, const QString &strButton)
{
    return hands.Then(strButton == "ImportBtn" ? "MessageBox" : "SaveDoneHintDlg",
                      [](QWidget *pBox) { pBox->close(); });
}

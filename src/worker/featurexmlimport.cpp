#include "qoperatethread.h"

#include <QByteArray>

#include <KxCameraControl/kxcameracontrol.h>

#include "featurefile/cameraidentity.h"
#include "featurefile/featurefilereader.h"

namespace {

const char *const kFunction = "void QOperateThread::FeatureXmlImport()";

/// Sets one value. What the camera refuses is not reported: an import sets what it can. A text that is no
/// number counts as 0; the conversions are those of the C locale.
void SetValue(void *hDevice, const FeatureFile::Record &record)
{
    if (record.strName.isEmpty() || record.strType.isEmpty() || record.strValue.isEmpty())
        return;
    const QByteArray name = record.strName.toLatin1();
    if (record.strType == QLatin1String("Boolean"))
        KX_CC_SetBoolValue(hDevice, name.constData(), record.strValue.toInt() > 0);
    else if (record.strType == QLatin1String("Integer") || record.strType == QLatin1String("IntReg"))
        KX_CC_SetIntValue(hDevice, name.constData(), record.strValue.toUInt());
    else if (record.strType == QLatin1String("Enumeration"))
        KX_CC_SetEnumValue(hDevice, name.constData(), record.strValue.toUInt());
    else if (record.strType == QLatin1String("Float"))
        KX_CC_SetFloatValue(hDevice, name.constData(), record.strValue.toFloat());
}

} // namespace

void QOperateThread::FeatureXmlImport()
{
    // The camera is opened first, so that when both are missing its failure is the one reported.
    if (!OpenDevice()) {
        Fail(kFunction, QStringLiteral("OpenDevice failed."),
             tr("Failed to import features.Failed to open device."));
        return ReleaseThread();
    }
    QString strText = FeatureFile::ReadText(m_strFilePath);
    if (strText.isEmpty()) {
        Fail(kFunction, QStringLiteral("Open xml failed."),
             tr("Failed to import features.Failed to open xml."));
        return ReleaseThread();
    }
    QDomDocument document;
    if (!FeatureFile::Parse(strText, &document)) {
        Fail(kFunction, QStringLiteral("Load xml failed."),
             tr("Failed to import features.Failed to load xml."));
        return ReleaseThread();
    }
    strText.clear(); // the document has it all; many cameras may be at this point
    const QDomElement model = FeatureFile::ModelElement(document);
    if (model.isNull())
        return ReleaseThread(); // a file without records is no failure
    if (CameraIdentity::HasModelName(m_stDeviceInfo) &&
        model.text() != CameraIdentity::ModelNameInFile(m_stDeviceInfo)) {
        Fail(kFunction, QStringLiteral("Failed to import features. Camera models mismatch."),
             tr("Failed to import features. Camera models mismatch."));
        return ReleaseThread();
    }

    // Switches and modes first, because they decide which numbers are writable and in which limits; the
    // numbers twice, because they limit each other.
    using FeatureFile::Pass;
    for (const Pass pass : {Pass::Booleans, Pass::Enumerations, Pass::Numbers, Pass::NumbersAgain}) {
        FeatureFile::WalkRecords(model, pass, FeatureFile::ReadRecord,
                                 [this](const FeatureFile::Record &record) { SetValue(m_hDevice, record); });
    }
    ReleaseThread();
}

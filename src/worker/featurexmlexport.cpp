#include "qoperatethread.h"

#include <QByteArray>

#include <KxCameraControl/kxcameracontrol.h>

#include "description/directtext.h"
#include "featurefile/cameraidentity.h"
#include "featurefile/featurefileoutput.h"
#include "featurefile/featurefilewriter.h"

namespace {

bool IsExported(const QDomElement &feature, const QString &strName)
{
    // Both choose a user set rather than being stored in one: written back they would load it.
    if (strName == QLatin1String("UserSetDefault") || strName == QLatin1String("UserSetSelector"))
        return false;
    const QDomNodeList listStreamable = feature.elementsByTagName(QStringLiteral("Streamable"));
    return !listStreamable.isEmpty() &&
           DirectText(listStreamable.at(0).toElement()).compare(QLatin1String("Yes"), Qt::CaseInsensitive) ==
               0;
}

/// Reads one value with one SDK call. False when the camera refuses it.
bool ReadValue(void *hDevice, const QString &strType, const QString &strName, QString *pValue)
{
    const QByteArray name = strName.toLatin1();
    int nResult = KX_CC_OK;
    if (strType == QLatin1String("Boolean")) {
        bool bValue = false;
        nResult = KX_CC_GetBoolValue(hDevice, name.constData(), &bValue);
        *pValue = FeatureFileWriter::BooleanText(bValue);
    } else if (strType == QLatin1String("Integer") || strType == QLatin1String("IntReg")) {
        KX_CC_INT_VALUE stValue = {};
        nResult = KX_CC_GetIntValue(hDevice, name.constData(), &stValue);
        *pValue = FeatureFileWriter::UnsignedText(stValue.nCurValue);
    } else if (strType == QLatin1String("Enumeration")) {
        KX_CC_ENUM_VALUE stValue = {};
        nResult = KX_CC_GetEnumValue(hDevice, name.constData(), &stValue);
        *pValue = FeatureFileWriter::UnsignedText(stValue.nCurValue);
    } else if (strType == QLatin1String("Float")) {
        KX_CC_FLOAT_VALUE stValue = {};
        nResult = KX_CC_GetFloatValue(hDevice, name.constData(), &stValue);
        *pValue = FeatureFileWriter::FloatText(stValue.fCurValue);
    }
    return nResult == KX_CC_OK;
}

void AppendFeatures(void *hDevice, const QMap<QString, QDomElement> &mapFeature, FeatureFileWriter *pWriter)
{
    for (const QDomElement &feature : mapFeature) {
        const QString strType = feature.tagName();
        const QString strName = feature.attribute(QStringLiteral("Name"));
        QString strValue;
        if (IsExported(feature, strName) && ReadValue(hDevice, strType, strName, &strValue))
            pWriter->AppendFeature(strName, strType, strValue);
    }
}

} // namespace

void QOperateThread::FeatureXmlExport()
{
    m_bFileWritten = false;
    const auto names = CameraIdentity::FileNameParts(m_stDeviceInfo, CameraIdentity::Reading::FieldWidth);
    if (!OpenDevice()) {
        emit SigThreadInfo(m_stDeviceInfo.nDeviceID, tr("Failed to export features.Failed to open device."),
                           true);
        return ReleaseThread();
    }
    GenerateFeatureXmlMap();

    FeatureFileWriter writer;
    if (CameraIdentity::HasModelName(m_stDeviceInfo))
        writer.AppendModelName(CameraIdentity::ModelNameInFile(m_stDeviceInfo));
    AppendFeatures(m_hDevice, m_mapFeatureXml, &writer);

    // A disk that is full is no failure here: only a file that cannot be opened is one.
    if (!FeatureFileOutput::Write(CameraIdentity::FilePath(m_strFilePath, names), writer.Finish(),
                                  &m_bFileWritten)) {
        emit SigThreadInfo(m_stDeviceInfo.nDeviceID, tr("Failed to export features.Failed to open File."),
                           true);
    }
    ReleaseThread();
}

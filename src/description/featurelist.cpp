// The features that a user set of the camera stores, from the camera's own description.
#include "worker/qoperatethread.h"

#include <cstdlib>
#include <cstring>
#include <memory>

#include <KxCameraControl/kxcameracontrol.h>

#include "featureselector.h"
#include "worker/workerlog.h"
#include "xml/xmlguard.h"

namespace {

const char *const kFunction = "void QOperateThread::GenerateFeatureXmlMap()";

/// Holds every description seen so far, so that one fetch is enough.
constexpr unsigned int kFirstBufferSize = 0x300000;

/// A longer text cannot be a QString.
constexpr std::size_t kLongestText = 0x3FFFFFFF;

struct Free
{
    void operator()(char *pBuffer) const { std::free(pBuffer); }
};
using Buffer = std::unique_ptr<char, Free>;

QString TextIn(const Buffer &buffer, std::size_t nSize)
{
    if (!buffer)
        return QString();
    const std::size_t nLength = strnlen(buffer.get(), nSize);
    return nLength > kLongestText ? QString() : QString::fromUtf8(buffer.get(), static_cast<int>(nLength));
}

} // namespace

bool QOperateThread::IsFeatureInQList(const QString &strName, const QList<QString> &list)
{
    return list.contains(strName);
}

QList<QString> QOperateThread::GetFeatureInvalidatorList(const QString &strName)
{
    QList<QString> listFeature;
    for (auto it = m_mapFeatureInvalidator.constBegin(); it != m_mapFeatureInvalidator.constEnd(); ++it) {
        if (IsFeatureInQList(strName, it.value()))
            listFeature.append(it.key());
    }
    return listFeature; // each once, as the keys of a map are
}

char *QOperateThread::AllocateDescriptionBuffer(unsigned int nSize)
{
    // calloc() takes a large block from the system, which fills in pages as they are touched. A camera
    // that fails the fetch asks for 4 GiB here and uses one page of it.
    return static_cast<char *>(std::calloc(nSize, 1));
}

/// The description's text; empty when there is none. The results of the fetches are not looked at, the size
/// decides: a fetch that failed leaves it at its start value, which asks for the largest buffer.
QString QOperateThread::FetchDescription(bool *pBufferRefused)
{
    Buffer buffer(AllocateDescriptionBuffer(kFirstBufferSize));
    *pBufferRefused = !buffer;
    if (*pBufferRefused)
        return QString();
    unsigned int nSize = 0xFFFFFFFF;
    KX_XML_GetGenICamXML(m_hDevice, reinterpret_cast<unsigned char *>(buffer.get()), kFirstBufferSize,
                         &nSize);
    if (nSize < kFirstBufferSize)
        return TextIn(buffer, kFirstBufferSize);

    const unsigned int nLargerSize = nSize;
    buffer.reset();
    buffer.reset(AllocateDescriptionBuffer(nLargerSize));
    if (buffer) {
        KX_XML_GetGenICamXML(m_hDevice, reinterpret_cast<unsigned char *>(buffer.get()), nLargerSize, &nSize);
    }
    return TextIn(buffer, nLargerSize);
}

void QOperateThread::GenerateFeatureXmlMap()
{
    bool bBufferRefused = false;
    const QString strText = FetchDescription(&bBufferRefused);
    if (bBufferRefused) {
        LogWorkerFailure(kFunction, QStringLiteral("CAMEAR_CREAT_BUF_FAILED"));
        ReleaseThread(); // the export goes on all the same, and ends a second time
        return;
    }
    if (!IsXmlSafeToParse(strText) || !m_domDocument.setContent(strText)) {
        LogWorkerFailure(kFunction, QStringLiteral("Load xml failed."));
        return;
    }
    m_mapDomElement.clear();
    m_mapFeatureInvalidator.clear();
    m_mapFeatureXml.clear();

    QDomElement root = m_domDocument.documentElement();
    GenerateDomElementMap(root);
    GenerateFeaturesInvalidatorMap(root);
    const QList<QString> listFeature = GetFeatureInvalidatorList(QLatin1String(kUserSetCommand));
    for (const QString &strName : listFeature) {
        QDomElement element;
        if (GetDomElementNode(strName, element))
            m_mapFeatureXml.insert(strName, element);
    }
}

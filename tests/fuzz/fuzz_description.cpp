// A camera's description on its way through the worker: fetch, guard, document, index, invalidators,
// selection.
#include <QSet>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include <KxCameraControl/kxcameracontrol.h>
#include <description/directtext.h>
#include <description/featurelist.h>
#include <description/pointergraph.h>
#include <featurefile/featurefilereader.h>
#include <worker/qoperatethread.h>
#include <xml/xmlguard.h>

#include "check.h"
#include "description/referencewalk.h"
#include "domdepth.h"

namespace {

constexpr std::size_t kLongestInput = 16 << 10;
/// Most steps of one walk and, for the time they take, of all reference walks.
constexpr int kShortWalk = 2000;
constexpr int kReferenceSteps = 100000;
/// More than both attempts of the graph at one walk can take in an input of this length.
constexpr int kMostStepsPerWalk = 20000;

QByteArray theDescription;

class FuzzedWorker : public QOperateThread
{
public:
    using QOperateThread::GenerateFeatureXmlMap;
    using QOperateThread::m_domDocument;
    using QOperateThread::m_mapDomElement;
    using QOperateThread::m_mapFeatureInvalidator;
    using QOperateThread::m_mapFeatureXml;

protected:
    /// Just large enough, so that the sanitizer sees what is read behind the text.
    char *AllocateDescriptionBuffer(unsigned int nSize) override
    {
        const auto nText = static_cast<std::size_t>(theDescription.size());
        return static_cast<char *>(std::calloc(std::min<std::size_t>(nSize, nText + 1), 1));
    }
};

bool IsValueFeature(const QDomElement &element)
{
    static const QSet<QString> tags = {QStringLiteral("Enumeration"), QStringLiteral("Integer"),
                                       QStringLiteral("IntReg"), QStringLiteral("Boolean"),
                                       QStringLiteral("Float")};
    return tags.contains(element.tagName());
}

QVector<QDomElement> ValueFeaturesBelow(const QDomElement &element)
{
    QVector<QDomElement> features;
    if (IsValueFeature(element))
        features.append(element);
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        features += ValueFeaturesBelow(child);
    return features;
}

int WalksOf(const QDomElement &feature)
{
    int nWalks = 0;
    for (QDomElement child = feature.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        nWalks += ReferenceWalk::IsFollowedByFeature(child) ? 1 : 0;
    return nWalks;
}

QSet<QString> NamesOf(const QDomElement &feature, ReferenceWalk *pWalk)
{
    QSet<QString> names;
    for (QDomElement child = feature.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        if (child.tagName() == QLatin1String("pVariable"))
            names.insert(DirectText(child));
        if (ReferenceWalk::IsFollowedByFeature(child))
            pWalk->AddNames(DirectText(child), &names);
    }
    return names;
}

void CheckIndex(const FuzzedWorker &worker)
{
    for (auto it = worker.m_mapDomElement.constBegin(); it != worker.m_mapDomElement.constEnd(); ++it) {
        FUZZ_CHECK(!it.key().isEmpty() && it.value().attribute(QStringLiteral("Name")) == it.key());
        for (QDomElement e = it.value(); !e.parentNode().isDocument(); e = e.parentNode().toElement())
            FUZZ_CHECK(e.tagName() != QLatin1String("EnumEntry"));
    }
}

/// The last feature of a name that lists anything is the one that counts.
QMap<QString, QDomElement> FeaturesWithNames(const QVector<QDomElement> &features, ReferenceWalk *pWalk)
{
    QMap<QString, QDomElement> counting;
    for (const QDomElement &feature : features) {
        if (!NamesOf(feature, pWalk).isEmpty())
            counting.insert(feature.attribute(QStringLiteral("Name")), feature);
    }
    return counting;
}

void CheckInvalidators(const FuzzedWorker &worker)
{
    const QVector<QDomElement> features = ValueFeaturesBelow(worker.m_domDocument.documentElement());
    int nWalks = 0;
    for (const QDomElement &feature : features)
        nWalks += WalksOf(feature);
    const bool bInBudget = nWalks < PointerGraph::kWalkBudget / kMostStepsPerWalk;
    ReferenceWalk walk(worker.m_mapDomElement);
    walk.AllowSteps(kReferenceSteps);
    const QMap<QString, QDomElement> counting = FeaturesWithNames(features, &walk);
    if (!walk.HasStepsLeft() || features.size() > 200)
        return;
    if (bInBudget)
        FUZZ_CHECK(worker.m_mapFeatureInvalidator.keys() == counting.keys());
    for (auto it = counting.constBegin(); it != counting.constEnd(); ++it) {
        const QStringList listed = worker.m_mapFeatureInvalidator.value(it.key());
        const QSet<QString> names = NamesOf(it.value(), &walk);
        const QString strCommand = QLatin1String(kUserSetCommand);
        FUZZ_CHECK(listed.contains(strCommand) == names.contains(strCommand));
        FUZZ_CHECK(worker.m_mapFeatureXml.contains(it.key()) ==
                   (names.contains(strCommand) && worker.m_mapDomElement.contains(it.key())));
        if (!bInBudget)
            continue;
        FUZZ_CHECK(QSet<QString>(listed.begin(), listed.end()) == names);
        QStringList everyPath;
        if (walk.ListFeature(it.value(), kShortWalk, &everyPath))
            FUZZ_CHECK(listed == everyPath);
    }
}

void CheckSelection(const FuzzedWorker &worker)
{
    for (auto it = worker.m_mapFeatureXml.constBegin(); it != worker.m_mapFeatureXml.constEnd(); ++it) {
        FUZZ_CHECK(worker.m_mapFeatureInvalidator.value(it.key()).contains(QLatin1String(kUserSetCommand)));
        FUZZ_CHECK(worker.m_mapDomElement.value(it.key()) == it.value());
    }
}

} // namespace

/// Stands in for the camera SDK's function of this name.
int KX_XML_GetGenICamXML(void * /*hDevice*/, unsigned char *pBuffer, unsigned int /*nBufferSize*/,
                         unsigned int *pnSize)
{
    *pnSize = static_cast<unsigned int>(theDescription.size()) + 1;
    std::memcpy(pBuffer, theDescription.constData(), static_cast<std::size_t>(theDescription.size()));
    return KX_CC_OK;
}

extern "C" int LLVMFuzzerInitialize(int * /*pArgc*/, char *** /*pArgv*/)
{
    // Every damaged description is reported.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *pData, std::size_t nSize)
{
    if (nSize > kLongestInput)
        return 0;
    theDescription = QByteArray(reinterpret_cast<const char *>(pData), static_cast<int>(nSize));
    FuzzedWorker worker;
    worker.GenerateFeatureXmlMap();
    const QDomElement root = worker.m_domDocument.documentElement();
    QDomDocument document;
    if (!FeatureFile::Parse(FeatureFile::DecodeText(theDescription), &document)) {
        FUZZ_CHECK(worker.m_mapDomElement.isEmpty() && worker.m_mapFeatureInvalidator.isEmpty());
        FUZZ_CHECK(worker.m_mapFeatureXml.isEmpty());
        return 0;
    }
    FUZZ_CHECK(DepthOf(root) <= kMaxXmlDepth);
    FUZZ_CHECK(worker.m_domDocument.doctype().name().isEmpty());
    CheckIndex(worker);
    CheckInvalidators(worker);
    CheckSelection(worker);
    return 0;
}

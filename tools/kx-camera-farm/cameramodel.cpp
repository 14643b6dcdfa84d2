#include "cameramodel.h"

#include "descriptionfile.h"

#include <QFile>
#include <QXmlStreamReader>

namespace KxFarm {

namespace {

/// Reads model and vendor off the root element, and whether the rest is well-formed.
bool ReadRoot(CameraModel *pModel, QString *pError)
{
    QXmlStreamReader reader(pModel->xml);
    if (reader.readNextStartElement()) {
        if (reader.name() != QLatin1String("RegisterDescription"))
            reader.raiseError(QStringLiteral("the root element is not RegisterDescription"));
        pModel->model = reader.attributes().value(QLatin1String("ModelName")).toUtf8();
        pModel->vendor = reader.attributes().value(QLatin1String("VendorName")).toUtf8();
    }
    while (!reader.atEnd())
        reader.readNext();
    if (!reader.hasError())
        return true;
    *pError = QStringLiteral("the description cannot be used: line %1: %2")
                  .arg(reader.lineNumber())
                  .arg(reader.errorString());
    return false;
}

constexpr std::uint32_t DESCRIPTION_ADDRESS = 0xF0000000; // far from the registers of any camera we know

std::shared_ptr<const PublishedDescription> Publish(const QByteArray &content, const QByteArray &name)
{
    auto pDescription = std::make_shared<PublishedDescription>();
    pDescription->content = content;
    pDescription->address = DESCRIPTION_ADDRESS;
    pDescription->url = "Local:" + name + ';' + QByteArray::number(DESCRIPTION_ADDRESS, 16) + ';' +
                        QByteArray::number(content.size(), 16);
    return pDescription;
}

QByteArray WithSuffix(const QByteArray &fileName, const char *suffix)
{
    const int dot = fileName.lastIndexOf('.');
    return (dot > 0 ? fileName.left(dot) : fileName) + suffix;
}

std::shared_ptr<CameraModel> MakeModel(const QByteArray &content, const QByteArray &fileName, bool zipped,
                                       QString *pError)
{
    auto pModel = std::make_shared<CameraModel>();
    const bool archive = LooksLikeZip(content);
    pModel->xml = archive ? FirstFileOfZip(content, pError) : content;
    if (pModel->xml.isNull() || !ReadRoot(pModel.get(), pError))
        return nullptr;
    if (archive)
        pModel->pDescription = Publish(content, WithSuffix(fileName, ".zip"));
    else if (zipped)
        pModel->pDescription =
            Publish(ZipOf(WithSuffix(fileName, ".xml"), content), WithSuffix(fileName, ".zip"));
    else
        pModel->pDescription = Publish(content, WithSuffix(fileName, ".xml"));
    return pModel;
}

} // namespace

std::shared_ptr<const CameraModel> MakeCameraModel(const QByteArray &content, const QByteArray &fileName,
                                                   bool zipped, QString *pError)
{
    std::shared_ptr<CameraModel> pModel = MakeModel(content, fileName, zipped, pError);
    if (pModel)
        pModel->pRegisters = std::make_shared<RegisterMemory>();
    return pModel;
}

} // namespace KxFarm

static void InitResources()
{
    Q_INIT_RESOURCE(builtin);
}

namespace KxFarm {

std::shared_ptr<const CameraModel> MakeBuiltinModel(QString *pError)
{
    InitResources();
    QFile file(QStringLiteral(":/kx-camera-farm/builtin.xml"));
    if (!file.open(QIODevice::ReadOnly)) {
        *pError = QStringLiteral("the built-in description is missing");
        return nullptr;
    }
    return MakeCameraModel(file.readAll(), "SimCam-150.xml", true, pError);
}

} // namespace KxFarm

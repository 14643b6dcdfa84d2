#include "device/cameramodel.h"

#include "device/bootstrap.h"
#include "device/descriptionfile.h"
#include "genicam/initialvalues.h"

#include <QFile>

namespace KxFarm {

namespace {

constexpr std::uint32_t kDescriptionAddress = 0xF0000000; // far from the registers of any camera we know

std::shared_ptr<const PublishedDescription> Publish(const QByteArray &content, const QByteArray &name)
{
    auto pDescription = std::make_shared<PublishedDescription>();
    pDescription->content = content;
    pDescription->address = kDescriptionAddress;
    pDescription->url = "Local:" + name + ';' + QByteArray::number(kDescriptionAddress, 16) + ';' +
                        QByteArray::number(content.size(), 16);
    return pDescription;
}

QByteArray WithSuffix(const QByteArray &fileName, const char *suffix)
{
    const int dot = fileName.lastIndexOf('.');
    return (dot > 0 ? fileName.left(dot) : fileName) + suffix;
}

std::shared_ptr<CameraModel> MakeModel(const QByteArray &content, const QByteArray &fileName, bool zipped,
                                       bool foreign, QString *pError)
{
    auto pModel = std::make_shared<CameraModel>();
    const bool archive = LooksLikeZip(content);
    pModel->xml = archive ? FirstFileOfZip(content, pError) : content;
    if (pModel->xml.isNull() || !pModel->nodes.Parse(pModel->xml, pError))
        return nullptr;
    pModel->vendor = pModel->nodes.VendorName();
    pModel->model = pModel->nodes.ModelName();
    if (archive)
        pModel->pDescription = Publish(content, WithSuffix(fileName, ".zip"));
    else if (zipped)
        pModel->pDescription =
            Publish(ZipOf(WithSuffix(fileName, ".xml"), content), WithSuffix(fileName, ".zip"));
    else
        pModel->pDescription = Publish(content, WithSuffix(fileName, ".xml"));
    // What conditions and limits find in the bootstrap registers counts, so they are there first.
    auto pRegisters = std::make_shared<RegisterMemory>();
    FillBootstrap(pRegisters.get(), CameraIdentity(), 0x7F000A01);
    FillInitialValues(pModel->nodes, pRegisters.get(), foreign);
    pModel->pRegisters = pRegisters;
    pModel->pFeatures = std::make_shared<FeatureIndex>(pModel->nodes, *pRegisters);
    return pModel;
}

} // namespace

std::shared_ptr<const CameraModel> MakeCameraModel(const QByteArray &content, const QByteArray &fileName,
                                                   bool zipped, QString *pError)
{
    return MakeModel(content, fileName, zipped, true, pError);
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
    const auto pModel = MakeModel(file.readAll(), "SimCam-150.xml", true, false, pError);
    if (!pModel)
        return nullptr;
    pModel->strict = true;
    pModel->registersFirst = 0x10000;
    pModel->registersEnd = 0x20000;
    pModel->userSetFirst = 0x10000;
    pModel->userSetEnd = 0x18000;
    return pModel;
}

} // namespace KxFarm

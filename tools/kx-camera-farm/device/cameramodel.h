#ifndef KXCAMERAFARM_CAMERAMODEL_H
#define KXCAMERAFARM_CAMERAMODEL_H

#include "device/firmware.h"
#include "genicam/nodemap.h"
#include "wire/registermemory.h"

#include <QByteArray>
#include <memory>

namespace KxFarm {

/// The description as a camera offers it: bytes in its memory and the URL that points there.
struct PublishedDescription
{
    QByteArray url;     ///< first URL, without the terminating NUL
    QByteArray content; ///< bytes readable from `address` on; behind them zeros up to a whole word
    std::uint32_t address = 0;
};

/// What all cameras of one model share: description and registers after power-up. Never changes.
struct CameraModel
{
    QByteArray vendor;
    QByteArray model;
    QByteArray xml; ///< the description as text
    NodeMap nodes;  ///< and as nodes
    std::shared_ptr<const PublishedDescription> pDescription;
    std::shared_ptr<const RegisterMemory> pRegisters;
    std::shared_ptr<const FeatureIndex> pFeatures;
    /// Whether the registers are all known: then other addresses, values out of limits and writes to what is
    /// locked are refused. A description given by the user may compute its addresses, so there every address
    /// is memory.
    bool strict = false;
    std::uint64_t registersFirst = 0; ///< manufacturer registers lie in [registersFirst, registersEnd)
    std::uint64_t registersEnd = std::uint64_t{1} << 32U;
    std::uint64_t userSetFirst = 0xA000; ///< those in [userSetFirst, userSetEnd) belong to user sets
    std::uint64_t userSetEnd = std::uint64_t{1} << 32U;
};

/// Makes the model of a description: `content` is an XML text or a zip archive holding one, `fileName` is
/// the name it is published under (without directory), `zipped` whether an XML text goes out packed.
/// Null, with one line in *pError, when it is neither.
std::shared_ptr<const CameraModel> MakeCameraModel(const QByteArray &content, const QByteArray &fileName,
                                                   bool zipped, QString *pError);

/// The model every camera is when no description is given.
std::shared_ptr<const CameraModel> MakeBuiltinModel(QString *pError);

} // namespace KxFarm

#endif

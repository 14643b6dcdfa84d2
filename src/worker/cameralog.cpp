#include "cameralog.h"

#include <QMessageLogger>
#include <QString>

#include <cstdio>

#include <KxCameraControl/kxlog.h>

namespace {

void WriteToLog(unsigned int nLevel, const QString &strLine)
{
    const QMessageLogger logger(nullptr, 0, nullptr, "camera");
    switch (nLevel) {
    case KX_CC_LOG_DEBUG:
        logger.debug("%s", qUtf8Printable(strLine));
        return;
    case KX_CC_LOG_INFO:
        logger.info("%s", qUtf8Printable(strLine));
        return;
    case KX_CC_LOG_ERROR:
        logger.critical("%s", qUtf8Printable(strLine));
        return;
    default:
        logger.warning("%s", qUtf8Printable(strLine));
    }
}

// Called by the SDK in the threads of the workers.
void TakeMessage(unsigned int nLevel, const char *szCamera, const char *szText, void *pAlsoOnStderr)
{
    QString strLine = QString::fromUtf8(szText);
    if (*szCamera != '\0')
        strLine.prepend(QString::fromUtf8(szCamera) + QStringLiteral(": "));
    WriteToLog(nLevel, strLine);
    // One call, so that the lines of several cameras do not mix.
    if (pAlsoOnStderr != nullptr)
        fprintf(stderr, "%s\n", qUtf8Printable(strLine));
}

} // namespace

void FeedCameraLog(bool bAlsoOnStderr)
{
    static char cYes = 0;
    KX_CC_SetLogCallback(KX_CC_LOG_INFO, TakeMessage, bAlsoOnStderr ? &cYes : nullptr);
}

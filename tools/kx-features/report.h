#ifndef KXFEATURES_REPORT_H
#define KXFEATURES_REPORT_H

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include "batch.h"
#include "camera.h"

/// What the program prints. Pure: texts in, texts out.
namespace Report {

/// The list as a table with a heading; texts are for people, columns are padded.
QString Table(const QVector<Camera> &cameras);

/// One line about a camera that ended, without a line end: "ok      MODEL SERIAL ADDRESS  FILE", or
/// "failed  MODEL SERIAL ADDRESS  REASON".
QString ResultLine(const Camera &camera, const CameraResult &result);

/// The same for something that was named but not found.
QString MissingLine(const QString &what);

/// "12 of 64 done, 1 failed".
QString Progress(int done, int total, int failed);

/// JSON array, UTF-8, with a line end: an object per camera with model, serial, userName, address,
/// transport and access.
QByteArray ListJson(const QVector<Camera> &cameras);

/// The same with result, message and file added; what was not found follows as objects with these three
/// alone, file being empty. A camera that is not done counts as failed with the message "interrupted".
QByteArray BatchJson(const QVector<Camera> &cameras, const QVector<CameraResult> &results,
                     const QStringList &missing);

} // namespace Report

#endif

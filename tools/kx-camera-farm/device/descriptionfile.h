#ifndef KXCAMERAFARM_DESCRIPTIONFILE_H
#define KXCAMERAFARM_DESCRIPTIONFILE_H

#include <QByteArray>
#include <QString>

namespace KxFarm {

/// A zip archive that holds `content` as its one file `name`. Empty when libzip fails.
QByteArray ZipOf(const QByteArray &name, const QByteArray &content);

QByteArray ZipOfTwo(const QByteArray &firstName, const QByteArray &first, const QByteArray &secondName,
                    const QByteArray &second);

/// The first file in the zip archive `archive`. Null and one line in *pError when there is none.
QByteArray FirstFileOfZip(const QByteArray &archive, QString *pError);

bool LooksLikeZip(const QByteArray &content);

} // namespace KxFarm

#endif

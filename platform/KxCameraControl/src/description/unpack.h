#ifndef KXCAMERACONTROL_DESCRIPTION_UNPACK_H
#define KXCAMERACONTROL_DESCRIPTION_UNPACK_H

#include <string>

namespace kxcc {

/// The first file of a zip archive; empty when the archive is damaged or the file has more than kMaxText
/// bytes, whatever its directory claims.
std::string UnpackFirstFile(const std::string &strArchive);

} // namespace kxcc

#endif

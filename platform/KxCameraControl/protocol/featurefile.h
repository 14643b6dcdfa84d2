#ifndef KXCAMERACONTROL_PROTOCOL_FEATUREFILE_H
#define KXCAMERACONTROL_PROTOCOL_FEATUREFILE_H

/**
 * @file
 * The text form of the GenApi persistence: what KX_CC_FeatureSave() writes and KX_CC_FeatureLoad() reads.
 * Pure functions.
 */

#include <optional>
#include <string>
#include <vector>

namespace kxcc {

/// One line "Name<TAB>Value". The order of lines matters: a selector stands before what it selects.
struct FeatureLine
{
    std::string strName;
    std::string strValue;
};

std::string WriteFeatureFile(const std::vector<std::string> &comments, const std::vector<FeatureLine> &lines);

/// Nothing when the first line is not the marker, or any line has no name or no tab.
std::optional<std::vector<FeatureLine>> ReadFeatureFile(const std::string &strText);

} // namespace kxcc

#endif

#ifndef KXCAMERACONTROL_FEATURES_FEATUREFILE_H
#define KXCAMERACONTROL_FEATURES_FEATUREFILE_H

/**
 * @file
 * The text form of the GenApi persistence: what KX_CC_FeatureSave() writes and KX_CC_FeatureLoad() reads.
 * Pure functions.
 */

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kxcc {

/// One line "Name<TAB>Value". The order of lines matters: a selector stands before what it selects.
///
/// Newer files (GenApi 3.4) have each value's selectors in its own line, for the feature they belong to:
/// "Name<TAB>{Selector=Value[<TAB>Selector2=Value2]}<TAB>Value".
struct FeatureLine
{
    std::string strName;
    std::string strValue;
    std::vector<std::pair<std::string, std::string>>
        selection; ///< selectors and their values, to be set first
};

/// Lines without a selection of their own. An empty value becomes a comment: other readers of such files
/// refuse the whole file for it.
std::string WriteFeatureFile(const std::vector<std::string> &comments, const std::vector<FeatureLine> &lines);

/// Both forms of lines. Nothing when the first line is not the marker, or any line has no name or no tab.
std::optional<std::vector<FeatureLine>> ReadFeatureFile(const std::string &strText);

} // namespace kxcc

#endif

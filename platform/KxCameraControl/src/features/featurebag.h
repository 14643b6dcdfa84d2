#ifndef KXCAMERACONTROL_FEATURES_FEATUREBAG_H
#define KXCAMERACONTROL_FEATURES_FEATUREBAG_H

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "features/featureaccess.h"
#include "features/featurefile.h"

namespace kxcc {

/// Reads all of a camera's settings into lines, and sets them from lines.
///
/// A setting is a feature that the description marks as streamable and that can be read and written. What
/// a selector selects is there once for every entry of the selector: the selector's line, then the values.
class FeatureBag
{
public:
    /// @param alive  called after each feature; returns KX_CC_OK, or the code that ends the work
    FeatureBag(ArvGc *pGenICam, FeatureAccess &access, std::function<int()> alive);

    /// @return KX_CC_OK or the code with which the camera was lost; a feature that cannot be read is
    ///         left out.
    int Save(std::vector<FeatureLine> &lines);
    /// A value whose selector cannot be set is not set either: it would land in another selection.
    /// Selectors that only lines of their own selection name have their own values afterwards.
    /// @return KX_CC_OK, KX_CC_E_FILE_PARTIAL, or the code with which the camera was lost
    int Load(const std::vector<FeatureLine> &lines);

private:
    using Names = std::vector<std::string>;
    struct Group
    {
        Names selectors;
        Names features;
    };

    void FindSettings();
    std::vector<Group> Groups() const;
    Names SelectorsOf(const std::string &strFeature) const;
    Names ChoicesOf(const std::string &strSelector);
    int SaveGroup(const Group &group, std::size_t nLevel, std::vector<FeatureLine> &lines);
    int SaveFeatures(const Names &features, std::vector<FeatureLine> &lines);
    int Restore(const std::vector<FeatureLine> &selectors, std::vector<FeatureLine> &lines);
    int LoadRefused(const std::vector<FeatureLine> &lines, std::vector<bool> &refused);
    int SetLine(const FeatureLine &line);
    bool IsWronglySelected(const std::string &strFeature,
                           const std::set<std::string> &refusedSelectors) const;
    std::vector<FeatureLine> SelectionsAfter(const std::vector<FeatureLine> &lines);

    ArvGc *const m_pGenICam;
    FeatureAccess &m_access;
    const std::function<int()> m_alive;
    Names m_settings;                                       ///< in the order of the description
    std::vector<std::pair<std::string, Names>> m_selectors; ///< selector, and what it selects
};

} // namespace kxcc

#endif

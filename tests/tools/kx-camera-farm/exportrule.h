#ifndef TESTS_EXPORTRULE_H
#define TESTS_EXPORTRULE_H

#include "genicam/nodemap.h"

#include <QList>

/// The features of a description that an export writes, in the order of their names: streamable values that
/// loading a user set invalidates. A second implementation of the rule, on the simulator's own node map.
QList<QByteArray> ExportedFeatures(const KxFarm::NodeMap &map);

#endif

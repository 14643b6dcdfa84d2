#ifndef DESCRIPTION_FEATURESELECTOR_H
#define DESCRIPTION_FEATURESELECTOR_H

#include <QLatin1String>

/// The command that reloads a user set. What it invalidates is what a user set stores.
constexpr QLatin1String kUserSetCommand("UserSetLoad");

#endif

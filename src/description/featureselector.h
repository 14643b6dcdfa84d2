#ifndef DESCRIPTION_FEATURESELECTOR_H
#define DESCRIPTION_FEATURESELECTOR_H

/// The command that reloads a user set. What it invalidates is what a user set stores.
constexpr char kUserSetCommand[] = "UserSetLoad";

#endif

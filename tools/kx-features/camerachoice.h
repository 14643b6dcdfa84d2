#ifndef KXFEATURES_CAMERACHOICE_H
#define KXFEATURES_CAMERACHOICE_H

#include <QStringList>

/// Which cameras a command works on: all of them, or every camera that one of the lists names.
struct CameraChoice
{
    bool bAll = false;
    QStringList serials;
    QStringList models;
    QStringList addresses; ///< IPv4, dotted

    bool IsEmpty() const { return !bAll && serials.isEmpty() && models.isEmpty() && addresses.isEmpty(); }

    /// Cameras that are named by address alone can be asked directly, without a search.
    bool IsByAddressOnly() const
    {
        return !bAll && serials.isEmpty() && models.isEmpty() && !addresses.isEmpty();
    }
};

#endif

#include "lumointerface.h"

QString LumoInterface::getOpenFileName(QWidget *parent, const QString &caption, const QString &dir,
                                       const QString &filter, QString *selectedFilter,
                                       QFileDialog::Options options)
{
    return QFileDialog::getOpenFileName(parent, caption, dir, filter, selectedFilter, options);
}

#ifndef TESTS_UI_BATCHFIXTURE_H
#define TESTS_UI_BATCHFIXTURE_H

#include "windowfixture.h"

/// The window, and what a person does to have a batch in it.
class BatchFixture : public WindowFixture
{
public:
    using WindowFixture::WindowFixture;

    /// Writes a feature file for cameras of a model; its path.
    QString WriteFile(const QString &strName, const QByteArray &model) const;
    /// The feature files in Dir(), by name; they are gone afterwards.
    QMap<QString, QByteArray> TakeFiles() const;
    /// Ticks all cameras by the header's check box.
    void TickAll();
    /// Presses the button for a batch that at least one camera ends well; closes what it shows.
    void Run(const QString &strButton, const QString &strPath);
};

/// Chooses a file or a folder in the next file dialog.
ModalHands &ChooseFile(ModalHands &hands, const QString &strPath);
/// Closes the message that ends a batch: the button's name says which.
ModalHands &CloseMessage(ModalHands &hands, const QString &strButton);

#endif

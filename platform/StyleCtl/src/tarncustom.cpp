#include "tarncustom.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <atomic>

namespace {

std::atomic<TarnCustom::Language> g_eLanguage{TarnCustom::English};

// lupdate reads the context from here; the texts are those of Qt's own dialog, which has no translation of
// its own in an installation without Qt's catalogues.
QString Translated(const char *text)
{
    return QCoreApplication::translate("TarnCustom", text);
}

void SetTexts(QFileDialog *pDialog)
{
    pDialog->setLabelText(QFileDialog::LookIn, Translated(QT_TRANSLATE_NOOP("TarnCustom", "Look in:")));
    pDialog->setLabelText(QFileDialog::FileName, Translated(QT_TRANSLATE_NOOP("TarnCustom", "Folder:")));
    pDialog->setLabelText(QFileDialog::FileType,
                          Translated(QT_TRANSLATE_NOOP("TarnCustom", "Files of type:")));
    pDialog->setLabelText(QFileDialog::Accept, Translated(QT_TRANSLATE_NOOP("TarnCustom", "Choose")));
    pDialog->setLabelText(QFileDialog::Reject, Translated(QT_TRANSLATE_NOOP("TarnCustom", "Cancel")));
}

} // namespace

void TarnCustom::setLanguage(Language eLanguage)
{
    g_eLanguage = eLanguage;
}

TarnCustom::Language TarnCustom::language()
{
    return g_eLanguage;
}

QString TarnCustom::getExistingDirectory(QWidget *pParent, const QString &caption, const QString &dir,
                                         QFileDialog::Options options)
{
    const QFileInfo given(dir);
    const QString start = given.isDir() ? dir : given.isFile() ? given.absolutePath() : QDir::currentPath();
    QFileDialog dialog(pParent, caption, start);
    dialog.setObjectName(QStringLiteral("ExistingDirectoryDlg"));
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOptions(options);
    dialog.resize(760, 480);
    SetTexts(&dialog);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return dialog.selectedFiles().value(0);
}

#include "languageversion.h"

#include <QCoreApplication>
#include <QTranslator>

#include <StyleCtl/tarncustom.h>
#include <ToolBase/lumointerface.h>

namespace {

// They live as long as the program: Qt keeps only pointers to installed translators.
QTranslator m_translator;         // this tool
QTranslator m_translatorStyleCtl; // the widget library
QTranslator m_translatorToolBase; // the shared services

bool LoadAndInstall(QTranslator &translator, const QString &strFile)
{
    if (!translator.load(strFile, LumoInterface::readonlyCfgPath(), QString(), QString()))
        return false;
    QCoreApplication::installTranslator(&translator);
    return true;
}

// Each is in use as soon as it is loaded, so a file that is missing costs only its own texts and those of
// the files after it.
bool SetChinese()
{
    TarnCustom::setLanguage(TarnCustom::Chinese);
    return LoadAndInstall(m_translator, QStringLiteral("./Translation/Import_Export_Features_zh_CN.qm")) &&
           LoadAndInstall(m_translatorStyleCtl, QStringLiteral("./Translation/StyleCtl_zh_CN.qm")) &&
           LoadAndInstall(m_translatorToolBase, QStringLiteral("./Translation/ToolBase_zh_CN.qm"));
}

bool SetEnglish()
{
    TarnCustom::setLanguage(TarnCustom::English);
    for (QTranslator *pTranslator : {&m_translator, &m_translatorStyleCtl, &m_translatorToolBase})
        QCoreApplication::removeTranslator(pTranslator);
    return true;
}

} // namespace

bool SetLanguageVersion(const QString &strLanguage)
{
    if (strLanguage == QLatin1String("CH"))
        return SetChinese();
    if (strLanguage == QLatin1String("ENG"))
        return SetEnglish();
    return true;
}

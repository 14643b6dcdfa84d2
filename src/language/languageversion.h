#ifndef LANGUAGE_LANGUAGEVERSION_H
#define LANGUAGE_LANGUAGEVERSION_H

#include <QString>

/// Shows all texts in another language: those of this tool, of the widget library and of the shared
/// services. GUI thread only; every widget is told by a QEvent::LanguageChange.
///
/// @param strLanguage  "CH" (Chinese) or "ENG" (English, the language of the texts in the code), exactly;
///                     any other code changes nothing
/// @return false when a translation file cannot be loaded; those before it are in use then. The order is
///         this tool, the widget library, the shared services.
bool SetLanguageVersion(const QString &strLanguage);

#endif

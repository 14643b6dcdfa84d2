#ifndef TESTS_UI_MARKER_H
#define TESTS_UI_MARKER_H

#include <QTranslator>

/// Marks every text of the window's context, so that one that is not re-applied shows.
class Marker : public QTranslator
{
public:
    QString translate(const char *pContext, const char *pText, const char *, int) const override
    {
        return qstrcmp(pContext, "MainWidget") == 0 ? QStringLiteral("#") + pText : QString();
    }
    bool isEmpty() const override { return false; }
};

#endif

#pragma once

#include <QString>
#include <QStringList>

// What the language switches of the command line select.
struct Language
{
    QString applicationFile; // translation file beside the program, without a suffix
    QString toolkitFile;     // the toolkit's own texts
    QString splashText;      // always German: it is shown before any translation is installed
};

// The switches "--deutsch", "--english", "--francais" and "--français" in this order of precedence, in any
// case and at any position; with none of them the files are named after systemLocale (language_COUNTRY).
Language chooseLanguage(const QStringList &arguments, const QString &systemLocale);

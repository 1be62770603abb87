#include "shell/Language.h"

#include <QCoreApplication>

Language chooseLanguage(const QStringList &arguments, const QString &systemLocale)
{
    const auto has = [&](const QString &option) {
        for (const QString &argument : arguments)
            if (argument.normalized(QString::NormalizationForm_C).compare(option, Qt::CaseInsensitive) == 0)
                return true;
        return false;
    };
    if (has("--deutsch"))
        return {"de", "qt_de",
                //: Shown before the translations are there: always in German.
                QCoreApplication::translate("main", "Installiere Sprachunterstützung (deutsch) ...")};
    if (has("--english"))
        return {"en", "qt_en",
                //: Shown before the translations are there: always in German.
                QCoreApplication::translate("main", "Installiere Sprachunterstützung (englisch) ...")};
    if (has("--francais") || has("--français"))
        return {"fr", "qt_fr",
                //: Shown before the translations are there: always in German.
                QCoreApplication::translate("main", "Installiere Sprachunterstützung (französisch) ...")};
    return {systemLocale, "qt_" + systemLocale,
            //: Shown before the translations are there: always in German.
            QCoreApplication::translate("main", "Installiere Sprachunterstützung (Landessprache) ...")};
}

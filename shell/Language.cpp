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
                QCoreApplication::translate("main", "Installiere Sprachunterstützung (deutsch) ...")};
    if (has("--english"))
        return {"en", "qt_en",
                QCoreApplication::translate("main", "Installiere Sprachunterstützung (englisch) ...")};
    if (has("--francais") || has("--français"))
        return {"fr", "qt_fr",
                QCoreApplication::translate("main", "Installiere Sprachunterstützung (französisch) ...")};
    return {systemLocale, "qt_" + systemLocale,
            QCoreApplication::translate("main", "Installiere Sprachunterstützung (Landessprache) ...")};
}

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
    const auto text = [](const char *source) { return QCoreApplication::translate("main", source); };

    if (has("--deutsch"))
        return {"de", "qt_de", text("Installiere Sprachunterstützung (deutsch) ...")};
    if (has("--english"))
        return {"en", "qt_en", text("Installiere Sprachunterstützung (englisch) ...")};
    if (has("--francais") || has("--français"))
        return {"fr", "qt_fr", text("Installiere Sprachunterstützung (französisch) ...")};
    return {systemLocale, "qt_" + systemLocale, text("Installiere Sprachunterstützung (Landessprache) ...")};
}

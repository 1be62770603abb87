#pragma once

#include <QCoreApplication>
#include <QFile>
#include <QStringList>
#include <QTranslator>

// Asked last: notes every text that no translation was found for.
class MissingTexts : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *source, const char *, int) const override
    {
        const QString text = QString("%1: %2").arg(context, source);
        if (!missing.contains(text))
            missing << text;
        return {};
    }
    mutable QStringList missing;
};

// The program's texts and the toolkit's in a language ("de", "en", "fr"), from the files beside the program,
// installed as the program does for the life of this object.
class LoadedLanguage
{
public:
    explicit LoadedLanguage(const QString &language)
    {
        loaded = application.load(language, TEVORA_PROGRAM_FOLDER);
        // The toolkit's English file is empty: its texts are English.
        toolkitLoaded = toolkit.load("qt_" + language, TEVORA_PROGRAM_FOLDER) || language == "en";
        QCoreApplication::installTranslator(&missing);
        QCoreApplication::installTranslator(&toolkit);
        QCoreApplication::installTranslator(&application);
    }
    ~LoadedLanguage()
    {
        QCoreApplication::removeTranslator(&application);
        QCoreApplication::removeTranslator(&toolkit);
        QCoreApplication::removeTranslator(&missing);
    }
    LoadedLanguage(const LoadedLanguage &) = delete;
    LoadedLanguage &operator=(const LoadedLanguage &) = delete;

    bool isLoaded() const { return loaded && toolkitLoaded; }

    // Texts that were asked for since the start and are in neither file.
    QStringList missingTexts() const { return missing.missing; }

private:
    MissingTexts missing;
    QTranslator toolkit;
    QTranslator application;
    bool loaded = false;
    bool toolkitLoaded = false;
};

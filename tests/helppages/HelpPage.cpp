#include "tests/helppages/HelpPage.h"

#include <QFile>
#include <QRegularExpression>
#include <QXmlStreamReader>

namespace {

const QStringList inlineElements{"b", "img", "code"};

// Keys as they are written on the keyboards of the languages; the rest is the same everywhere.
const QMap<QString, QString> keyWords{
    {"Umschalt", "Shift"},
    {"Maj", "Shift"},
    {"Strg", "Ctrl"},
    {"Leertaste", "Space"},
    {"Espace", "Space"},
    {"Eingabe", "Enter"},
    {"Entrée", "Enter"},
    {"Échap", "Esc"},
    {"Bild ab", "PgDown"},
    {"Bild auf", "PgUp"},
    {"Page suiv.", "PgDown"},
    {"Page préc.", "PgUp"},
    {"↑", "Up"},
    {"↓", "Down"},
    {"←", "Left"},
    {"→", "Right"},
};

// What the mouse does, in English, German and French.
const QList<QStringList> gestureWords{
    {"left click", "Linksklick", "clic gauche"},
    {"right click", "Rechtsklick", "clic droit"},
    {"left double-click", "linker Doppelklick", "double-clic gauche"},
    {"right double-click", "rechter Doppelklick", "double-clic droit"},
    {"left drag", "links ziehen", "glisser bouton gauche"},
    {"middle drag", "Mitte ziehen", "glisser bouton milieu"},
    {"right drag", "rechts ziehen", "glisser bouton droit"},
    {"wheel", "Mausrad", "molette"},
};

QString inToolkitWords(const QString &key)
{
    // "Ctrl++" ends in the key "+".
    QStringList parts = QString(key).replace(" + ", "+").replace("++", "+\t").split('+');
    for (QString &part : parts)
        part = keyWords.value(part, part).replace('\t', '+');
    return parts.join('+');
}

QString inEnglish(const QString &language, const QString &gesture)
{
    const qsizetype column = HelpPages::languages.indexOf(language);
    for (const QStringList &words : gestureWords)
        if (words.value(column) == gesture)
            return words.first();
    return {};
}

void takeMark(HelpPage &page, const QString &language, const QString &kind, const QString &text)
{
    if (kind == "label") {
        page.labels << text;
    } else if (kind == "key") {
        page.keys << inToolkitWords(text);
    } else if (kind == "mouse" && !inEnglish(language, text).isEmpty()) {
        page.gestures << inEnglish(language, text);
    } else {
        page.unknown << kind + ": " + text;
    }
}

int wordsIn(const QString &text)
{
    static const QRegularExpression word("\\w+", QRegularExpression::UseUnicodePropertiesOption);
    int count = 0;
    for (auto found = word.globalMatch(text); found.hasNext(); found.next())
        ++count;
    return count;
}

} // namespace

QString HelpPages::folder(const QString &language)
{
    return QString(TEVORA_HELP_SETS) + "/help-" + language;
}

HelpPage HelpPages::read(const QString &language, const QString &topic)
{
    HelpPage page;
    QFile file(folder(language) + "/" + topic + ".html");
    if (!file.open(QIODevice::ReadOnly)) {
        page.error = "no file";
        return page;
    }
    QXmlStreamReader xml(&file);
    QString mark, markedText;
    while (!xml.atEnd()) {
        xml.readNext();
        const QString name = xml.name().toString();
        if (xml.isStartElement()) {
            if (name == "html")
                page.language = xml.attributes().value("lang").toString();
            if (name == "img")
                page.pictures << xml.attributes().value("src").toString();
            if (name == "a")
                ++page.links;
            if (name == "b") {
                mark = xml.attributes().value("class").toString();
                markedText.clear();
            }
            if (!inlineElements.contains(name))
                page.structure << name;
        } else if (xml.isEndElement() && name == "b") {
            takeMark(page, language, mark, markedText.simplified());
        } else if (xml.isCharacters()) {
            markedText += xml.text();
            page.words += wordsIn(xml.text().toString());
        }
    }
    if (xml.hasError())
        page.error = QString("line %1: %2").arg(xml.lineNumber()).arg(xml.errorString());
    return page;
}

QMultiMap<QString, QString> HelpPages::translations(const QString &language)
{
    QMultiMap<QString, QString> found;
    QFile file(qEnvironmentVariable("TEVORA_SOURCE_DIR") + "/resources/translations/" + language + ".ts");
    if (!file.open(QIODevice::ReadOnly))
        return found;
    QXmlStreamReader xml(&file);
    QString source;
    const auto text = [&xml] {
        return xml.readElementText(QXmlStreamReader::IncludeChildElements).remove('&');
    };
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == QLatin1String("source"))
            source = text();
        else if (xml.isStartElement() && xml.name() == QLatin1String("translation"))
            found.insert(source, text());
    }
    return found;
}

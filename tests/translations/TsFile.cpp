#include "tests/translations/TsFile.h"

#include <QFile>
#include <QXmlStreamReader>

namespace {

// The reader stands on the start of <translation>.
void readTranslation(QXmlStreamReader &xml, TsMessage &message)
{
    message.state = xml.attributes().value("type").toString();
    if (!message.plural) {
        message.translations = QStringList(xml.readElementText());
        return;
    }
    while (xml.readNextStartElement())
        message.translations.append(xml.readElementText());
}

// The reader stands on the start of <message>.
TsMessage readMessage(QXmlStreamReader &xml, const QString &context)
{
    TsMessage message;
    message.context = context;
    message.plural = xml.attributes().value("numerus") == QLatin1String("yes");
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("source"))
            message.source = xml.readElementText();
        else if (xml.name() == QLatin1String("comment"))
            message.comment = xml.readElementText();
        else if (xml.name() == QLatin1String("translation"))
            readTranslation(xml, message);
        else
            xml.skipCurrentElement();
    }
    return message;
}

} // namespace

std::vector<TsMessage> readTsFile(const QString &path)
{
    std::vector<TsMessage> messages;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return messages;
    QXmlStreamReader xml(&file);
    QString context;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("name"))
            context = xml.readElementText();
        else if (xml.name() == QLatin1String("message"))
            messages.push_back(readMessage(xml, context));
    }
    return xml.hasError() ? std::vector<TsMessage>() : messages;
}

#include "batch/Log.h"

#include "platform/store/KeptFile.h"
#include "platform/system/DateText.h"
#include "platform/system/Guarded.h"

#include <QXmlStreamWriter>

namespace quillfern {

namespace {

/// File names may hold characters that no XML document may (XML 1.0, 2.2); they are written as the
/// replacement character, because the whole log would be unreadable otherwise.
QString xmlText(QString text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        const bool control = c < 0x20 && c != '\t' && c != '\n' && c != '\r';
        const bool pair = text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (pair)
            ++i;
        else if (control || text[i].isSurrogate() || c == 0xFFFE || c == 0xFFFF)
            text[i] = QChar::ReplacementCharacter;
    }
    return text;
}

} // namespace

QString statusWord(const FileOutcome& outcome)
{
    switch (outcome.status) {
    case FileStatus::Created:
    case FileStatus::CreatedNothing:
        return QStringLiteral("Completed");
    case FileStatus::NoPages:
        return QStringLiteral("No Pages");
    case FileStatus::Failed:
        return QStringLiteral("Failed");
    case FileStatus::Refused:
        return outcome.remark ? outcome.remark->logged : QString();
    case FileStatus::Skipped:
        return QStringLiteral("Skipped");
    case FileStatus::Cancelled:
        return {};
    }
    return {};
}

Log::Log(const Clock& clock, const Folders& folders)
    : startTime(clock.now()), endTime(startTime), folders_(folders)
{
}

QByteArray Log::document(const QLocale& locale) const
{
    const QString timePattern = QStringLiteral("MM/dd/yyyy hh:mm:ss a");
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.setAutoFormatting(true);
    const auto attribute = [&xml](const char* name, const QString& value) {
        xml.writeAttribute(QString::fromLatin1(name), xmlText(value));
    };
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("Log"));
    attribute("StartTime", dateText(startTime, timePattern, locale));
    attribute("EndTime", dateText(endTime, timePattern, locale));
    for (const LogFiles& output : files) {
        xml.writeStartElement(QStringLiteral("Files"));
        attribute("FileName", output.filename);
        attribute("TargetPath", output.targetPath);
        attribute("Status", statusWord(output.outcome));
        attribute("Pages", QString::number(output.pages));
        for (const LogFile& page : output.logFiles) {
            xml.writeEmptyElement(QStringLiteral("File"));
            attribute("SourceImageFile", page.sourceFile);
            attribute("SourcePageNo", QString::number(page.sourcePageNo));
            attribute("PageNo", QString::number(page.targetPageNo));
            attribute("Status", page.status);
        }
        xml.writeEndElement();
    }
    xml.writeEndElement();
    xml.writeEndDocument();
    return bytes;
}

bool Log::save(const QLocale& locale)
{
    return guarded("Error in (Log=>save) : %@", false, [&] {
        const QByteArray bytes = document(locale);
        const QString name = dateText(endTime, QStringLiteral("ddMMyyHHmmss")) + QStringLiteral(".log");
        logFilePath_ = folders_.getAppPath().child(QStringLiteral("Logs/") + name);
        try {
            logFilePath_ = store::writeKeepingEarlier(*logFilePath_, bytes);
            isWritten_ = true;
        } catch (const Failure&) {
            logLine(QStringLiteral("Could not write document out..."));
        }
        return true;
    });
}

} // namespace quillfern

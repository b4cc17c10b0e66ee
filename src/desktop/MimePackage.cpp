#include "desktop/MimePackage.h"

#include "support/SettingsFileType.h"

#include <QFile>
#include <QStandardPaths>
#include <QXmlStreamWriter>

namespace ztv {

namespace {

constexpr int applicationIdOffset = 68;
constexpr int magicPriority = 60; // above 50, that of SQLite databases in general

void WriteMatch(QXmlStreamWriter &xml, const QString &type, int offset, const QString &value) {
    xml.writeStartElement(QStringLiteral("match"));
    xml.writeAttribute(QStringLiteral("type"), type);
    xml.writeAttribute(QStringLiteral("offset"), QString::number(offset));
    xml.writeAttribute(QStringLiteral("value"), value);
}

void WriteMagic(QXmlStreamWriter &xml) {
    xml.writeStartElement(QStringLiteral("magic"));
    xml.writeAttribute(QStringLiteral("priority"), QString::number(magicPriority));
    WriteMatch(xml, QStringLiteral("string"), 0, QStringLiteral("SQLite format 3\\0"));
    // Nested in the other match: a file must have both.
    WriteMatch(xml, QStringLiteral("big32"), applicationIdOffset,
               QStringLiteral("0x%1").arg(SettingsFileType::ApplicationId, 8, 16, QLatin1Char('0')));
    xml.writeEndElement();
    xml.writeEndElement();
    xml.writeEndElement();
}

void WriteWithAttribute(QXmlStreamWriter &xml, const QString &element, const QString &attribute,
                        const QString &value) {
    xml.writeEmptyElement(element);
    xml.writeAttribute(attribute, value);
}

// A line is "weight:type:pattern", with flags after another colon.
bool Binds(const QByteArray &line, const QByteArray &pattern, const QByteArray &exceptedType) {
    const QList<QByteArray> fields = line.trimmed().split(':');
    return fields.size() >= 3 && !line.startsWith('#') && fields[2].toLower() == pattern &&
           fields[1] != exceptedType;
}

// Parses only the lines that contain the pattern, because this runs at the start of the program.
bool Binds(const QString &dataFolder, const QByteArray &pattern, const QByteArray &exceptedType) {
    QFile file(dataFolder + QStringLiteral("/mime/globs2"));
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QByteArray text = file.readAll();
    const QByteArray folded = text.toLower();
    for (qsizetype at = folded.indexOf(pattern); at >= 0; at = folded.indexOf(pattern, at + 1)) {
        const qsizetype start = text.lastIndexOf('\n', at) + 1;
        const qsizetype end = text.indexOf('\n', at);
        if (Binds(text.mid(start, end < 0 ? -1 : end - start), pattern, exceptedType)) {
            return true;
        }
    }
    return false;
}

} // namespace

QByteArray MimePackage::Text(const QString &extension, const QString &description) {
    QByteArray text;
    QXmlStreamWriter xml(&text);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("mime-info"));
    xml.writeDefaultNamespace(QStringLiteral("http://www.freedesktop.org/standards/shared-mime-info"));
    xml.writeStartElement(QStringLiteral("mime-type"));
    xml.writeAttribute(QStringLiteral("type"), SettingsFileType::MimeType());
    xml.writeTextElement(QStringLiteral("comment"), description);
    WriteWithAttribute(xml, QStringLiteral("sub-class-of"), QStringLiteral("type"),
                       QStringLiteral("application/vnd.sqlite3"));
    WriteMagic(xml);
    WriteWithAttribute(xml, QStringLiteral("glob"), QStringLiteral("pattern"), u'*' + extension);
    xml.writeEndDocument();
    return text;
}

bool MimePackage::IsBoundElsewhere(const QString &extension) {
    const QByteArray pattern = '*' + extension.toLower().toUtf8();
    const QString own = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    for (const QString &folder : QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation)) {
        const QByteArray excepted = folder == own ? SettingsFileType::MimeType().toLatin1() : QByteArray();
        if (Binds(folder, pattern, excepted)) {
            return true;
        }
    }
    return false;
}

} // namespace ztv

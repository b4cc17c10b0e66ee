#include "desktop/DesktopEntry.h"

namespace {

// An argument of a command line as the entry's reader takes it apart.
QString QuotedArgument(const QString &argument) {
    QString quoted;
    for (const QChar c : argument) {
        if (c == u'"' || c == u'`' || c == u'$' || c == u'\\') {
            quoted += u'\\';
        } else if (c == u'%') {
            quoted += u'%'; // or it would start a field code
        }
        quoted += c;
    }
    return u'"' + quoted + u'"';
}

// The value of a line, so that it stays on it.
QString EscapedValue(const QString &value) {
    QString escaped = value;
    escaped.replace(u'\\', QStringLiteral("\\\\"));
    escaped.replace(u'\n', QStringLiteral("\\n"));
    escaped.replace(u'\r', QStringLiteral("\\r"));
    escaped.replace(u'\t', QStringLiteral("\\t"));
    return escaped;
}

} // namespace

QByteArray DesktopEntry::Text(const Program &program) {
    const std::pair<const char *, QString> lines[] = {
        {"Type", QStringLiteral("Application")},
        {"Name", program.name},
        {"Comment", QStringLiteral("Set up and watch distance sensors")},
        {"Exec", Exec(program.application)},
        {"Icon", program.icon},
        {"Terminal", QStringLiteral("false")},
        {"Categories", QStringLiteral("Science;Engineering;")},
        {"MimeType", program.mimeType + u';'},
    };
    QByteArray text = "[Desktop Entry]\n";
    for (const auto &[key, value] : lines) {
        text += key + QByteArray(1, '=') + EscapedValue(value).toUtf8() + '\n';
    }
    return text;
}

QString DesktopEntry::Exec(const QString &application) {
    // Some desktops look whether the program is there before they make one percent sign of two.
    const QString starter = application.contains(u'%') ? QStringLiteral("env ") : QString();
    return starter + QuotedArgument(application) + QStringLiteral(" %f");
}

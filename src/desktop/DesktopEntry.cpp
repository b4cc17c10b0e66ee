#include "desktop/DesktopEntry.h"

namespace ztv {

namespace {

// Quotes an argument of a command line as readers of the entry parse it.
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

// Escapes a value, so that it stays on one line.
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
    // Some desktops check that the program exists before they replace two percent signs by one.
    const QString starter = application.contains(u'%') ? QStringLiteral("env ") : QString();
    return starter + QuotedArgument(application) + QStringLiteral(" %f");
}

} // namespace ztv

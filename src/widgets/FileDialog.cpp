#include "widgets/FileDialog.h"

#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>

namespace ztv {

namespace {

// Qt reads the patterns from the last parenthesis and doesn't show it, so the caption may show its own
// patterns.
QString FilterText(const FileFilter &filter) {
    return QStringLiteral("%1 (%2)").arg(filter.caption, filter.patterns.join(u' '));
}

QString WithoutQuotesAround(const QString &name) {
    const bool quoted = name.size() > 1 && name.startsWith(u'"') && name.endsWith(u'"');
    return quoted ? name.mid(1, name.size() - 2) : name;
}

// Replaces a leading "~" by the home folder, as usual on such systems.
QString WithHome(const QString &path) {
#ifdef Q_OS_UNIX
    if (path == u'~' || path.startsWith(QStringLiteral("~/"))) {
        return QDir::homePath() + path.mid(1);
    }
#endif
    return path;
}

} // namespace

FileDialog::FileDialog(const FileQuestion &question, AcceptMode mode, QWidget *parent)
    : QFileDialog(parent),
      question_(question) {
    setAcceptMode(mode);
    const QString usual = Saves() ? QFileDialog::tr("Save As") : QFileDialog::tr("Open");
    setWindowTitle(question.title.isEmpty() ? usual : question.title);
    setFileMode(Saves() ? AnyFile : ExistingFile);
    setOption(HideNameFilterDetails);
    QStringList filters;
    for (const FileFilter &filter : question.filters) {
        filters.append(FilterText(filter));
    }
    setNameFilters(filters);
    selectNameFilter(filters.value(static_cast<qsizetype>(question.preselectedFilter)));
    if (Saves()) { // an existing file is opened by its exact name
        setDefaultSuffix(question.defaultSuffix);
    }
}

std::optional<QString> FileDialog::Ask() {
    for (;;) {
        if (exec() != Accepted || selectedFiles().isEmpty()) {
            return std::nullopt;
        }
        if (!named_.isEmpty()) {
            return named_;
        }
        // The system's own dialog returns the name as it was typed.
        const QString chosen = selectedFiles().constFirst();
        const QString named = Saves() ? WithSuffix(chosen) : chosen;
        if (named == chosen || MayBeWritten(named)) {
            return named;
        }
    }
}

void FileDialog::accept() {
    named_.clear();
    auto *box = findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    if (box == nullptr || box->text().isEmpty()) {
        QFileDialog::accept();
        return;
    }
    const QString typed = box->text();
    const QFileInfo folder(directory(), WithHome(typed));
    if (folder.isDir()) { // Qt would look for it in the program's working folder
        setDirectory(folder.absoluteFilePath());
        box->clear();
        return;
    }
    QString name = WithHome(WithoutQuotesAround(typed));
    if (name.isEmpty()) {
        return;
    }
    name = Saves() ? WithSuffix(name) : name;
    if (!name.contains(u'"')) {
        if (name != typed) {
            box->setFocus(); // or Qt would use the row that is selected in the list
            box->setText(name);
        }
        QFileDialog::accept();
        return;
    }
    const QString path = directory().absoluteFilePath(name);
    if (Saves() ? MayBeWritten(path) : QFileInfo::exists(path)) {
        named_ = path;
        done(Accepted);
    }
}

QString FileDialog::RequiredSuffix() const {
    const QString selected =
        selectedNameFilter().trimmed(); // with the patterns, or without if they are hidden
    for (const FileFilter &filter : question_.filters) {
        if (selected == filter.caption || selected == FilterText(filter)) {
            return filter.requiredSuffix;
        }
    }
    return {};
}

QString FileDialog::WithSuffix(const QString &name) const {
    const QString required = RequiredSuffix();
    if (!required.isEmpty()) {
        return name.endsWith(u'.' + required, Qt::CaseInsensitive) ? name : name + u'.' + required;
    }
    const bool hasNone = !question_.defaultSuffix.isEmpty() && !QFileInfo(name).fileName().contains(u'.');
    return hasNone ? name + u'.' + question_.defaultSuffix : name;
}

bool FileDialog::MayBeWritten(const QString &path) {
    return !QFileInfo::exists(path) ||
           QMessageBox::warning(this, windowTitle(),
                                QFileDialog::tr("%1 already exists.\nDo you want to replace it?")
                                    .arg(QFileInfo(path).fileName()),
                                QMessageBox::Yes | QMessageBox::No, QMessageBox::No) == QMessageBox::Yes;
}

} // namespace ztv

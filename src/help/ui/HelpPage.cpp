#include "help/ui/HelpPage.h"

#include <QFile>
#include <QFileInfo>
#include <QTextCursor>
#include <algorithm>

namespace ztv {

HelpPage::HelpPage(const QString &folder, QWidget *parent) : QTextBrowser(parent), folder_(folder) {
    setOpenLinks(false); // HelpWindow follows them
    setUndoRedoEnabled(false);
    setTabChangesFocus(false); // Tab goes from link to link first
    connect(this, &QTextBrowser::sourceChanged, this, [this] { setExtraSelections({}); });
}

void HelpPage::Show(const QUrl &address) {
    QUrl page = QUrl::fromLocalFile(folder_ + u'/' + address.fileName());
    page.setFragment(address.fragment());
    setSource(page);
}

void HelpPage::Mark(const QStringList &words) {
    QList<ExtraSelection> marks;
    for (const QString &word : words) {
        for (QTextCursor found = document()->find(word); !found.isNull();
             found = document()->find(word, found)) {
            ExtraSelection mark;
            mark.cursor = found;
            mark.format.setBackground(palette().highlight());
            mark.format.setForeground(palette().highlightedText());
            marks.append(mark);
        }
    }
    setExtraSelections(marks);
    const auto first = std::min_element(marks.begin(), marks.end(), [](const auto &one, const auto &other) {
        return one.cursor.selectionStart() < other.cursor.selectionStart();
    });
    if (first != marks.end()) {
        QTextCursor place = first->cursor;
        place.clearSelection();
        setTextCursor(place);
        ensureCursorVisible();
    }
}

QVariant HelpPage::loadResource(int, const QUrl &name) {
    if (!name.host().isEmpty()) {
        return {}; // a share on another computer
    }
    const QString path = name.isRelative() ? folder_ + u'/' + name.path() : name.toLocalFile();
    const QString real = QFileInfo(path).canonicalFilePath();
    if (!real.startsWith(QFileInfo(folder_).canonicalFilePath() + u'/')) {
        return {};
    }
    QFile file(real);
    return file.open(QIODevice::ReadOnly) ? QVariant(file.readAll()) : QVariant();
}

} // namespace ztv

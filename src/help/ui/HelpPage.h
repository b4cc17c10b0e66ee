#pragma once

#include <QString>
#include <QStringList>
#include <QTextBrowser>

namespace ztv {

// Shows a page of the help. Loads the resources of a page only from the help's folder.
class HelpPage : public QTextBrowser {
    Q_OBJECT

public:
    explicit HelpPage(const QString &folder, QWidget *parent = nullptr);

    // Shows the page, scrolled to the anchor "#name" if the address has one.
    void Show(const QUrl &address);

    // Returns the page's file within the folder; empty before the first page.
    QString File() const { return source().fileName(); }

    // Marks all occurrences of these words in the page and scrolls to the first. The next page has no marks.
    void Mark(const QStringList &words);

    QVariant loadResource(int type, const QUrl &name) override;

private:
    QString folder_;
};

} // namespace ztv

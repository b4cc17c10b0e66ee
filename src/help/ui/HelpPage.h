#pragma once

#include <QString>
#include <QStringList>
#include <QTextBrowser>

// Shows a page of the help. Whatever a page names is read from the help's folder or not at all.
class HelpPage : public QTextBrowser {
    Q_OBJECT

public:
    explicit HelpPage(const QString &folder, QWidget *parent = nullptr);

    // Shows the page, from a place "#name" in it if the address has one.
    void Show(const QUrl &address);

    // The page's file within the folder; empty before the first.
    QString File() const { return source().fileName(); }

    // Marks these words wherever they stand in the page and shows the first. The next page has no marks.
    void Mark(const QStringList &words);

    QVariant loadResource(int type, const QUrl &name) override;

private:
    QString folder_;
};

#pragma once

#include <QAction>
#include <QMenu>
#include <QObject>
#include <QString>
#include <QWidget>

namespace ztv {

// Says why a control is disabled: a second line of its tool tip, and its accessible description. Both show
// only while it is disabled; its own tool tip stays as it is.
class WhyDisabled : public QObject {
    Q_OBJECT

public:
    // Sets the reason of a widget. A later call replaces it; an empty reason removes it.
    static void Explain(QWidget &control, const QString &reason);

    // Describes the control to assistive clients while it is enabled.
    static void Describe(QWidget &control, const QString &description);

    // Sets the reason of an entry of a menu.
    static void Explain(QMenu &menu, QAction &entry, const QString &reason);

    // Returns the tool tip that shows now.
    static QString TipOf(const QWidget &control);
    static QString TipOf(const QAction &entry);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit WhyDisabled(QObject *parent);
    static WhyDisabled &FilterOf(QWidget &control);

    QString givenDescription_;
};

} // namespace ztv

#include "widgets/WhyDisabled.h"

#include <QHelpEvent>
#include <QToolTip>

namespace ztv {

namespace {

constexpr const char *filterName = "WhyDisabled";
constexpr const char *reasonProperty = "WhyDisabled"; // of the control or entry

QString WithReason(const QString &tip, const QObject &owner, bool isEnabled) {
    const QString reason = owner.property(reasonProperty).toString();
    if (isEnabled || reason.isEmpty()) {
        return tip;
    }
    return tip.isEmpty() ? reason : tip + u'\n' + reason;
}

} // namespace

WhyDisabled::WhyDisabled(QObject *parent) : QObject(parent) {
    setObjectName(QString::fromLatin1(filterName));
}

WhyDisabled &WhyDisabled::FilterOf(QWidget &control) {
    auto *filter =
        control.findChild<WhyDisabled *>(QString::fromLatin1(filterName), Qt::FindDirectChildrenOnly);
    if (filter == nullptr) {
        filter = new WhyDisabled(&control);
        filter->givenDescription_ = control.accessibleDescription();
        control.installEventFilter(filter);
    }
    return *filter;
}

void WhyDisabled::Explain(QWidget &control, const QString &reason) {
    WhyDisabled &filter = FilterOf(control);
    control.setProperty(reasonProperty, reason);
    QEvent change(QEvent::EnabledChange);
    filter.eventFilter(&control, &change);
}

void WhyDisabled::Describe(QWidget &control, const QString &description) {
    WhyDisabled &filter = FilterOf(control);
    filter.givenDescription_ = description;
    QEvent change(QEvent::EnabledChange);
    filter.eventFilter(&control, &change);
}

void WhyDisabled::Explain(QMenu &menu, QAction &entry, const QString &reason) {
    FilterOf(menu);
    entry.setProperty(reasonProperty, reason);
}

QString WhyDisabled::TipOf(const QWidget &control) {
    return WithReason(control.toolTip(), control, control.isEnabled());
}

// The tool tip that QAction itself makes up repeats the caption, which the menu shows.
QString WhyDisabled::TipOf(const QAction &entry) {
    return WithReason({}, entry, entry.isEnabled());
}

bool WhyDisabled::eventFilter(QObject *watched, QEvent *event) {
    auto *control = qobject_cast<QWidget *>(watched);
    if (control == nullptr) {
        return QObject::eventFilter(watched, event);
    }
    if (event->type() == QEvent::EnabledChange && qobject_cast<QMenu *>(control) == nullptr) {
        const QString reason = control->property(reasonProperty).toString();
        const bool explains = !control->isEnabled() && !reason.isEmpty();
        control->setAccessibleDescription(explains ? reason : givenDescription_);
    }
    if (event->type() == QEvent::ToolTip) {
        const auto &help = static_cast<const QHelpEvent &>(*event);
        const auto *menu = qobject_cast<QMenu *>(control);
        const QAction *entry = menu == nullptr ? nullptr : menu->actionAt(help.pos());
        const bool explains = menu == nullptr ? !control->isEnabled() : entry != nullptr;
        const QString tip = entry != nullptr ? TipOf(*entry) : TipOf(*control);
        if (explains && !tip.isEmpty()) {
            QToolTip::showText(help.globalPos(), tip, control);
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace ztv

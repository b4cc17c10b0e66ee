#include "setup/ui/ChangesList.h"

#include "widgets/Controls.h"

#include <QHeaderView>
#include <QVBoxLayout>

namespace ztv {

ChangesList::ChangesList(QWidget *parent)
    : QWidget(parent),
      title_(Controls::Named(new QLabel(this), "LabelChanges")),
      list_(Controls::Named(new QTreeWidget(this), "ListChanges")) {
    title_->setWordWrap(true);
    list_->setHeaderLabels(
        {QStringLiteral("Parameter"), QStringLiteral("Now"), QStringLiteral("After Finish")});
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    list_->setAllColumnsShowFocus(true);
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->header()->setSectionsMovable(false);
    list_->header()->setStretchLastSection(false);
    list_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    list_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    list_->setAccessibleName(QStringLiteral("Values that Finish writes"));
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(title_);
    column->addWidget(list_, 1);
    Fill();
}

void ChangesList::Show(const std::vector<WizardSteps::Change> &changes, const QString &refusal) {
    if (changes != changes_ || refusal != refusal_) {
        changes_ = changes;
        refusal_ = refusal;
        Fill();
    }
}

void ChangesList::Fill() {
    title_->setText(!refusal_.isEmpty() ? QStringLiteral("These values can't be written: ") + refusal_
                    : changes_.empty()
                        ? QStringLiteral("Nothing changes: the sensor has these values already.")
                        : QStringLiteral("Finish writes, in this order:"));
    list_->clear();
    for (const WizardSteps::Change &change : changes_) {
        list_->addTopLevelItem(new QTreeWidgetItem({change.parameter, change.before, change.after}));
    }
    list_->setVisible(!changes_.empty());
}

} // namespace ztv

#pragma once

#include "setup/WizardSteps.h"

#include <QLabel>
#include <QTreeWidget>
#include <QWidget>
#include <vector>

namespace ztv {

// Lists what Finish will write, under a line that says so.
class ChangesList : public QWidget {
    Q_OBJECT

public:
    explicit ChangesList(QWidget *parent = nullptr);

    // `refusal`: why nothing can be written; empty if it can. Costs nothing if the same shows already.
    void Show(const std::vector<WizardSteps::Change> &changes, const QString &refusal = {});

    QTreeWidget &List() const { return *list_; }

private:
    void Fill();

    QLabel *title_;
    QTreeWidget *list_;
    std::vector<WizardSteps::Change> changes_;
    QString refusal_;
};

} // namespace ztv

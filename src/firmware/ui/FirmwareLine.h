#pragma once

#include "firmware/FirmwareFile.h"
#include "firmware/ui/NoticeLabel.h"

#include <QTimer>
#include <QWidget>

namespace ztv {

// Shows which file the next upgrade uses, or that there is none. Looks again while it is visible.
class FirmwareLine : public QWidget {
    Q_OBJECT

public:
    // `usual`: the path of the file that is used unless another is chosen.
    explicit FirmwareLine(const QString &usual, QWidget *parent = nullptr);

    QString Path() const { return file_.Path(); }
    bool FileIsGood() const { return file_.IsGood(); }

    void Choose(const QString &path);
    void ReturnToUsual() { Choose(usual_); }

    // Shows the file as it is now.
    void LookAgain();

Q_SIGNALS:
    void FileChanged();

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void Show();

    QString usual_;
    FirmwareFile file_;
    NoticeLabel *label_;
    QTimer timer_;
};

} // namespace ztv

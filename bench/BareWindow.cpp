// A program with an empty window, as the lower bound of what a start costs.

#include "bench/FirstPaint.h"

#include <QApplication>
#include <QWidget>

using namespace ztv;

int main(int argc, char *argv[]) {
    const QApplication application(argc, argv);
    const FirstPaint firstPaint([] { ReportStage("painted"); });
    QWidget window;
    window.resize(680, 596);
    window.show();
    return QApplication::exec();
}

#include "tabs/ui/LargeNumber.h"

#include "tests/helpers/Printers.h"
#include "tests/helpers/Wait.h"

#include <QPaintEvent>
#include <gtest/gtest.h>

namespace ztv {

namespace {

// Records the area that is painted.
class Painted : public QObject {
public:
    bool eventFilter(QObject *, QEvent *event) override {
        if (event->type() == QEvent::Paint) {
            area |= static_cast<QPaintEvent *>(event)->rect();
        }
        return false;
    }
    QRect area;
};

} // namespace

class LargeNumberTest : public testing::Test {
protected:
    LargeNumberTest() {
        number_.resize(800, 300);
        number_.show();
        Settle();
        number_.installEventFilter(&painted_);
    }

    QImage PictureOf(const QString &text) {
        LargeNumber fresh(QStringLiteral("420.00\""), nullptr);
        fresh.resize(number_.size());
        fresh.show();
        fresh.Show(text);
        return fresh.grab().toImage();
    }

    LargeNumber number_{QStringLiteral("420.00\""), nullptr};
    Painted painted_;
};

TEST_F(LargeNumberTest, LooksAsIfItHadAlwaysShownThatNumber) {
    for (const char *text :
         {"123.45\"", "123.46\"", "123.46\"", "133.46\"", "99.46\"", "0.00\"", "420.01\"", "120.01\""}) {
        const QString number = QString::fromLatin1(text);
        number_.Show(number);
        Settle();
        EXPECT_EQ(number_.text(), number);
        EXPECT_TRUE(number_.grab().toImage() == PictureOf(number)) << text;
    }
}

TEST_F(LargeNumberTest, PaintsOnlyTheCharactersThatChange) {
    number_.Show(QStringLiteral("123.45\""));
    Settle();
    painted_.area = {};
    number_.Show(QStringLiteral("123.45\""));
    Settle();
    EXPECT_TRUE(painted_.area.isEmpty());
    number_.Show(QStringLiteral("123.46\""));
    Settle();
    EXPECT_FALSE(painted_.area.isEmpty());
    EXPECT_LT(painted_.area.width(), number_.width() / 4);
    EXPECT_GT(painted_.area.left(), number_.width() / 2);
    number_.Show(QStringLiteral("99.46\"")); // moves each
    Settle();
    EXPECT_EQ(painted_.area, number_.rect());
}

} // namespace ztv

#include "tabs/ParameterListModel.h"

#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

#include <QAbstractItemModelTester>
#include <gtest/gtest.h>
#include <vector>

namespace ztv {

class ParameterListModelTest : public testing::Test {
protected:
    using View = ParameterListModel::View;

    ParameterListModelTest() {
        QObject::connect(&model_, &QAbstractItemModel::dataChanged, &model_,
                         [this](const QModelIndex &first, const QModelIndex &last) {
                             EXPECT_EQ(first, last);
                             EXPECT_EQ(first.column(), ParameterListModel::Value);
                             changed_.push_back(model_.TagOf(first.row()));
                         });
    }

    void Fill(View view = View::All) {
        model_.Fill(view);
        model_.Refresh();
        changed_.clear();
    }
    std::vector<int> Tags() const {
        std::vector<int> tags;
        for (int row = 0; row < model_.rowCount(); ++row) {
            tags.push_back(model_.TagOf(row));
        }
        return tags;
    }
    QString Text(int row, int column) const { return model_.index(row, column).data().toString(); }

    ClassZentrova zentrova_{ShippedPresetsFolder()};
    ParameterListModel model_{zentrova_};
    std::vector<int> changed_;
};

TEST_F(ParameterListModelTest, HasItsHeaders) {
    const char *headers[] = {"Tag", "Name", "Value", "Preset"};
    for (int column = 0; column < 4; ++column) {
        EXPECT_EQ(model_.headerData(column, Qt::Horizontal).toString(), QString::fromLatin1(headers[column]));
    }
    EXPECT_EQ(model_.columnCount(), 4);
    EXPECT_EQ(model_.rowCount(), 0);
}

TEST_F(ParameterListModelTest, HasARowForEachParameterButTheFirst) {
    Fill();
    ASSERT_EQ(model_.rowCount(), 95);
    for (int row = 0; row < 95; ++row) {
        const auto tag = static_cast<std::int16_t>(row + 1);
        EXPECT_EQ(model_.TagOf(row), tag);
        EXPECT_EQ(Text(row, 1), zentrova_.ParamName(tag));
        EXPECT_EQ(Text(row, 2), zentrova_.FormatRaw(zentrova_.ParamValue(tag), tag));
        EXPECT_EQ(Text(row, 3), zentrova_.FormatRaw(zentrova_.ParamPreset(tag), tag));
        EXPECT_EQ(model_.index(row, 1).data(ParameterListModel::ReadOnlyRole).toBool(),
                  zentrova_.ParamReadOnly(tag));
        EXPECT_EQ(model_.index(row, 0).data(ParameterListModel::KeyRole).toString(),
                  QStringLiteral("Key%1").arg(tag));
    }
    EXPECT_EQ(Text(0, 0), QStringLiteral("  1"));
    EXPECT_EQ(Text(8, 0), QStringLiteral("  9"));
    EXPECT_EQ(Text(9, 0), QStringLiteral(" 10"));
    EXPECT_EQ(Text(94, 0), QStringLiteral(" 95"));
    EXPECT_EQ(Text(27, 2), QStringLiteral("12.00\""));
}

TEST_F(ParameterListModelTest, FillsTheValuesByTheRefresh) {
    model_.Fill(View::All);
    EXPECT_EQ(Text(27, 2), QString());
    model_.Refresh();
    EXPECT_EQ(changed_.size(), 95U);
    EXPECT_EQ(Text(27, 2), QStringLiteral("12.00\""));
}

TEST_F(ParameterListModelTest, PadsToThreeCharacters) {
    const ChangedPresets presets(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 10) "
        "INSERT INTO Parameters (\"Min\", \"Max\", Preset, Value, ReadOnly, Signed, Name, Units, "
        "DecimalPlaces) "
        "SELECT 0, 1, 0, 0, 0, 0, 'More', 0, 0 FROM n; "
        "UPDATE Parameters SET Value = 106, \"Max\" = 106 WHERE rowid = 13");
    const ClassZentrova zentrova(presets.Folder());
    ParameterListModel model(zentrova);
    model.Fill(View::All);
    ASSERT_EQ(model.rowCount(), 105);
    model.SortBy(ParameterListModel::Tag);
    for (int row = 0; row < 105; ++row) {
        EXPECT_EQ(model.TagOf(row), row + 1);
    }
    EXPECT_EQ(model.index(98, 0).data().toString(), QStringLiteral(" 99"));
    EXPECT_EQ(model.index(99, 0).data().toString(), QStringLiteral("100"));
}

TEST_F(ParameterListModelTest, ShowsWhatTheUserHasChangedAsASnapshot) {
    Fill(View::Changed);
    EXPECT_EQ(model_.rowCount(), 0);
    model_.Refresh();

    zentrova_.ParamUpdate(28, 1300);
    zentrova_.ParamUpdate(32, 1300); // read-only
    zentrova_.ParamUpdate(39, 2);
    EXPECT_EQ(model_.rowCount(), 0);
    Fill(View::Changed);
    EXPECT_EQ(Tags(), (std::vector<int>{28, 39}));

    zentrova_.ParamUpdate(28, 1200);
    zentrova_.ParamUpdate(40, 1);
    model_.Refresh();
    EXPECT_EQ(Tags(), (std::vector<int>{28, 39}));
    EXPECT_EQ(Text(0, 2), QStringLiteral("12.00\""));
    Fill(View::Changed);
    EXPECT_EQ(Tags(), (std::vector<int>{39, 40}));
}

TEST_F(ParameterListModelTest, TellsOfChangedTextsOnly) {
    Fill();
    model_.Refresh();
    EXPECT_TRUE(changed_.empty());
    zentrova_.ParamUpdate(28, 1300);
    zentrova_.ParamUpdate(95, 7);
    model_.Refresh();
    EXPECT_EQ(changed_, (std::vector<int>{28, 95}));
    changed_.clear();
    // Another raw value with the same text.
    zentrova_.ParamUpdate(39, 2);
    model_.Refresh();
    zentrova_.ParamUpdate(39, 7);
    changed_.clear();
    model_.Refresh();
    EXPECT_TRUE(changed_.empty());
}

TEST_F(ParameterListModelTest, ShowsATextUntilTheNextRefresh) {
    Fill();
    model_.ShowValue(0, QStringLiteral("13.00\""));
    EXPECT_EQ(Text(0, 2), QStringLiteral("13.00\""));
    model_.ShowValue(0, QStringLiteral("13.00\""));
    EXPECT_EQ(changed_, std::vector<int>{1});
    model_.Refresh();
    EXPECT_EQ(Text(0, 2), QStringLiteral("0"));
}

TEST_F(ParameterListModelTest, SortsByTextsInTheDirectionThatIsKept) {
    Fill();
    const auto expectSorted = [&](int column, bool ascending) {
        for (int row = 1; row < model_.rowCount(); ++row) {
            const int difference = Text(row - 1, column).compare(Text(row, column), Qt::CaseInsensitive);
            EXPECT_TRUE(ascending ? difference <= 0 : difference >= 0) << row;
        }
    };
    model_.SortBy(ParameterListModel::Name);
    expectSorted(1, true);
    model_.SortBy(ParameterListModel::Name);
    expectSorted(1, false);
    model_.SortBy(ParameterListModel::Preset); // another column keeps the direction
    expectSorted(3, false);
    model_.SortBy(ParameterListModel::Tag);
    EXPECT_EQ(Tags().front(), 95);
    EXPECT_EQ(Tags().back(), 1);
    model_.SortBy(ParameterListModel::Tag);
    EXPECT_EQ(Tags().front(), 1);
    EXPECT_EQ(Tags().back(), 95);
    model_.SortBy(ParameterListModel::Value);
    expectSorted(2, true);
}

TEST_F(ParameterListModelTest, StaysSortedWhenItIsFilledAgainAndInPlaceWhenItIsRefreshed) {
    Fill();
    model_.SortBy(ParameterListModel::Value);
    model_.SortBy(ParameterListModel::Value);
    const std::vector<int> before = Tags();
    zentrova_.ParamUpdate(static_cast<std::int16_t>(before.back()), 1);
    model_.Refresh();
    EXPECT_EQ(Tags(), before);
    Fill();
    EXPECT_NE(Tags(), before);
    EXPECT_EQ(model_.rowCount(), 95);
    for (int row = 1; row < model_.rowCount(); ++row) {
        EXPECT_GE(Text(row - 1, 2).compare(Text(row, 2), Qt::CaseInsensitive), 0);
    }
}

TEST_F(ParameterListModelTest, TakesItsCellsAlongWhenItSorts) {
    Fill();
    const QPersistentModelIndex cell(model_.index(27, ParameterListModel::Value));
    model_.SortBy(ParameterListModel::Tag);
    model_.SortBy(ParameterListModel::Tag);
    EXPECT_EQ(cell.row(), 95 - 28);
    EXPECT_EQ(cell.data().toString(), QStringLiteral("12.00\""));
}

// The tester warns about each violation of the rules that views rely on.
TEST_F(ParameterListModelTest, KeepsToTheRulesForModels) {
    const QAbstractItemModelTester tester(&model_, QAbstractItemModelTester::FailureReportingMode::Warning);
    Fill();
    model_.SortBy(ParameterListModel::Name);
    zentrova_.ParamUpdate(28, 1300);
    model_.Refresh();
    Fill(View::Changed);
    EXPECT_EQ(model_.rowCount(), 1);
}

TEST_F(ParameterListModelTest, HasNothingBeyondItsRowsAndColumns) {
    Fill();
    EXPECT_FALSE(model_.index(95, 0).isValid());
    EXPECT_FALSE(model_.headerData(-1, Qt::Horizontal).isValid());
    EXPECT_FALSE(model_.headerData(4, Qt::Horizontal).isValid());
    EXPECT_FALSE(model_.headerData(0, Qt::Vertical).isValid());
}

} // namespace ztv

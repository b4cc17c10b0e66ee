#include "tabs/ParameterEditors.h"

#include "model/ParamDefines.h"
#include "support/Fault.h"
#include "tabs/ParameterListModel.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

#include <gtest/gtest.h>

namespace ztv {

using namespace ParameterEditors;

class ParameterEditorsTest : public testing::Test {
protected:
    ClassZentrova zentrova_{ShippedPresetsFolder()};
};

TEST_F(ParameterEditorsTest, GoByTheParametersUnit) {
    for (const auto &[tag, kind] : {std::pair{2, Kind::None},
                                    {32, Kind::None},
                                    {28, Kind::Text},
                                    {1, Kind::Text},
                                    {39, Kind::Choice},
                                    {66, Kind::Choice},
                                    {40, Kind::OutputDialog},
                                    {81, Kind::OutputDialog},
                                    {90, Kind::OutputDialog}}) {
        EXPECT_EQ(KindOf(zentrova_, static_cast<std::int16_t>(tag)), kind) << tag;
    }
}

TEST_F(ParameterEditorsTest, OpenByTheRowsPlace) {
    zentrova_.ParamUpdate(2, 1);
    zentrova_.ParamUpdate(39, 2);
    const Choice own = ChoiceOf(zentrova_, 39, 38);
    EXPECT_EQ(own.texts, (QStringList{"Manual", "Linear", "Hyperbolic"}));
    EXPECT_EQ(own.start, 2);
    EXPECT_TRUE(own.CanOpen());
    EXPECT_EQ(ChoiceOf(zentrova_, 39, 1).start, 1); // of parameter 2
    for (const int value : {3, -1}) {
        zentrova_.ParamUpdate(2, value);
        EXPECT_FALSE(ChoiceOf(zentrova_, 39, 1).CanOpen());
    }
}

TEST_F(ParameterEditorsTest, TellWhereTheyStartWithAnotherParametersValue) {
    zentrova_.ParamUpdate(2, 1);
    EXPECT_EQ(
        NoteOf(zentrova_, 39, 1),
        QStringLiteral("The list of this row starts with \"Linear\", by the value of parameter 2, Serial "
                       "Number, since this is row 2.\n"
                       "Choose a text before you leave it, or press Escape to keep the value."));
    EXPECT_EQ(NoteOf(zentrova_, 39, 38), QString());
    zentrova_.ParamUpdate(2, 3);
    EXPECT_EQ(NoteOf(zentrova_, 39, 1), WhyItCannotOpen(zentrova_, 39, 1));
    for (const int tag : {2, 28, 40, 81}) { // they have no list
        EXPECT_EQ(NoteOf(zentrova_, static_cast<std::int16_t>(tag), 0), QString());
    }
}

TEST_F(ParameterEditorsTest, TellWhyTheyCannotOpen) {
    EXPECT_EQ(
        WhyItCannotOpen(zentrova_, 39, 1),
        QStringLiteral("The list of Analog Output Mode can't be opened here. In row 2 it starts with the "
                       "value of parameter 2, Serial Number, and that is 10427, which isn't in the "
                       "list.\n\n"
                       "Choose \"All\" and click \"Tag\" until the numbers rise: then it starts with its "
                       "own value."));
    zentrova_.ParamUpdate(39, 7);
    EXPECT_EQ(WhyItCannotOpen(zentrova_, 39, 38),
              QStringLiteral("The list of Analog Output Mode can't be opened: the value 7 isn't in it.\n\n"
                             "Re-initialize the sensor, or open a settings file, to give it one that is."));
}

TEST_F(ParameterEditorsTest, RowsHaveTheirNoteAsToolTip) {
    ParameterListModel model(zentrova_);
    const auto toolTip = [&model](std::int16_t tag) {
        return model.index(*model.RowOf(tag), ParameterListModel::Name).data(Qt::ToolTipRole).toString();
    };
    model.Fill(ParameterListModel::View::All);
    for (int row = 0; row < model.rowCount(); ++row) {
        EXPECT_EQ(toolTip(model.TagOf(row)), QString()) << row;
    }
    model.SortBy(ParameterListModel::Name);
    EXPECT_EQ(toolTip(39), NoteOf(zentrova_, 39, *model.RowOf(39)));
    EXPECT_FALSE(toolTip(39).isEmpty());
    EXPECT_EQ(toolTip(28), QString());
    zentrova_.ParamUpdate(39, 2);
    model.Fill(ParameterListModel::View::Changed);
    EXPECT_EQ(toolTip(39), NoteOf(zentrova_, 39, 0));
    EXPECT_FALSE(toolTip(39).isEmpty());
}

} // namespace ztv

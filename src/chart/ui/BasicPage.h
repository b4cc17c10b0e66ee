#pragma once

#include "chart/BasicDrawing.h"
#include "chart/BasicGraph.h"
#include "chart/DrawingChanges.h"
#include "chart/RelayDrag.h"
#include "chart/ui/LargeReadings.h"
#include "chart/ui/RelayPointer.h"
#include "model/ClassZentrova.h"
#include "widgets/PageScale.h"
#include "widgets/TabPage.h"
#include "widgets/ValueEditor.h"

#include <QLabel>
#include <QLineEdit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace ztv {

// The Basic tab: the chart of the sensor's output with the values around it.
class BasicPage : public TabPage {
    Q_OBJECT

public:
    // The user types values into `text1`. REQUIRES: `text1` and the table outlive this.
    BasicPage(ClassZentrova &zentrova, ValueEditor &text1, QWidget *parent);

    void ShowState(ValueState state) override;
    void UpdateDisplay() override;
    void ShowFailedWrites() override;

    // Calls BasicGraph's function of the same name and shows the result.
    void ConfigureBasicTab();
    void PositionRelayMarkers();
    void UpdateGraph();

    // Returns a member of TextParam. Its property "Tag" is the parameter that it shows.
    QLineEdit &ValueBox(std::size_t index) const { return *textParams_.at(index); }

    // Returns the parameter that a member of TextParam shows.
    static std::int16_t ValueTag(std::size_t index);

Q_SIGNALS:
    void ValueBoxLeft(); // a member of TextParam has lost the focus

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void Fit() override;

private:
    void ChooseFonts();
    void SetFonts();
    LargeReadings Large() const { return {Scale(), size()}; }
    void SetLargeFonts();
    void PlaceDistance();
    void Rescale();
    QRect Place(const Drawing::Control &control) const;
    void BuildFrames();
    void BuildLabels();
    void BuildFields();
    void BuildMarkers();
    void Keep(Drawing::ControlId id, QWidget *widget);
    QWidget *WidgetOf(Drawing::ControlId id) const { return widgets_[static_cast<std::size_t>(id)]; }
    QWidget *ParentOf(Drawing::ControlId id);
    void Apply(Drawing::ControlId id);
    void BuildReadings();
    void BuildSigns();
    void ChooseReadingFonts();
    void AlignDiameter();
    void ShowSign(Drawing::ControlId id);
    void ColourTarget();
    void ColourReadings();
    void PlaceMode();
    void PlaceDragLabel();
    // Returns the largest left edge, in the chart's group, at which a widget of that width stays visible.
    int RightmostLeft(int ofWidth) const;
    void OpenEditor(QLineEdit &box, const QKeyEvent &key);
    void OpenThreshold(int marker, QChar first);
    QRect PlaceOfEditor(int marker) const;
    void KeepEditor();
    void ShowSigns();
    void ShowChanges();

    ClassZentrova &zentrova_;
    ValueEditor &text1_;
    BasicDrawing drawing_;
    BasicGraph graph_{zentrova_, drawing_};
    RelayDrag drag_{zentrova_, drawing_};
    DrawingChanges changes_{drawing_};
    PageScale fitted_;               // the scale of the present fonts and places
    QPoint corner_;                  // of the drawing, in the page
    std::vector<QWidget *> widgets_; // by ControlId
    QFont labelFont_;
    QFont boxFont_;
    QFont modeFont_;
    QFont echoFont_;
    QFont diameterFont_;
    QFont noEchoFont_;
    QLabel *labelMode_ = nullptr;
    QLabel *dragLabel_ = nullptr;
    std::vector<QLineEdit *> textParams_;
    std::unique_ptr<RelayPointer> pointer_;
};

} // namespace ztv

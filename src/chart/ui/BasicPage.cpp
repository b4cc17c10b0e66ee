#include "chart/ui/BasicPage.h"

#include "chart/BasicFields.h"
#include "chart/BasicLayout.h"
#include "chart/ui/DrawingPainter.h"
#include "chart/ui/DrawnFrame.h"
#include "chart/ui/RelayMarker.h"
#include "model/ParamDefines.h"
#include "model/ValueState.h"
#include "widgets/Colours.h"
#include "widgets/Controls.h"
#include "widgets/EntryFocus.h"
#include "widgets/FailedMark.h"
#include "widgets/TextBoxFunctions.h"
#include "widgets/WhyDisabled.h"

#include <QKeyEvent>
#include <algorithm>

namespace ztv {

using enum Drawing::ControlId;
using Drawing::ControlId;
using Drawing::Member;

namespace {

constexpr int boxPadding = 6; // pixels that a box loses to its frame and margins
constexpr int dragLabelPadding = 4;
constexpr int legendIndent = 4;

QRect ToPixels(const Drawing::Control &control) {
    return Controls::FromTwips(control.left, control.top, control.width, control.height);
}

int ToPixels(int twips) {
    return Controls::FromTwips(0, 0, twips, 0).width();
}

bool Wraps(const BasicFields::Field &field) {
    return field.label.height > BasicFields::LabelHeight;
}

QString TagToolTip(std::int16_t tag) {
    return QStringLiteral("Tag=%1").arg(tag);
}

// Returns true for the values that move with a cursor, over other elements.
bool IsReading(ControlId id) {
    return id == FrameActualDist || id == FrameOutputVoltage || id == FrameManOutput;
}

bool IsTextParam(ControlId id) {
    return id >= TextParam && id < LabelParam;
}

bool IsPicRelay(ControlId id) {
    return id >= PicRelay;
}

} // namespace

BasicPage::BasicPage(ClassZentrova &zentrova, ValueEditor &text1, QWidget *parent)
    : TabPage(1, parent),
      zentrova_(zentrova),
      text1_(text1) {
    widgets_.resize(drawing_.Controls().size());
    ChooseFonts();
    BuildFrames();
    BuildLabels();
    BuildFields();
    BuildMarkers();
    for (std::size_t id = 0; id < widgets_.size(); ++id) {
        Apply(static_cast<ControlId>(id));
    }
    // Moving values lie above their neighbours but below the chart, so that they end at the chart's border.
    for (const ControlId id :
         {FrameActualDist, FrameOutputVoltage, FrameManOutput, FrameGraph, LabelRelayDist}) {
        WidgetOf(id)->raise();
    }
}

QWidget *BasicPage::ParentOf(ControlId id) {
    const Drawing::Control &control = drawing_.At(id);
    return control.parent ? WidgetOf(*control.parent) : this;
}

void BasicPage::Keep(ControlId id, QWidget *widget) {
    widgets_[static_cast<std::size_t>(id)] = widget;
}

void BasicPage::BuildFrames() {
    for (const ControlId id : {FrameGraphGroup, FrameGraph, FrameOutputVoltage, FrameManOutput,
                               FrameActualDist, FrameRange, FrameTransducer, FrameZentrova, FrameTarget}) {
        auto *frame = new DrawnFrame(drawing_, id, !IsReading(id), ParentOf(id));
        Keep(id, Controls::Named(frame, Drawing::ToString(drawing_.At(id).name)));
    }
}

void BasicPage::BuildLabels() {
    for (const ControlId id : {LabelMode, Label2, Label3, LabelTarget, LabelRelayDist}) {
        const Drawing::Control &control = drawing_.At(id);
        auto *label =
            Controls::Named(new QLabel(control.caption, ParentOf(id)), Drawing::ToString(control.name));
        label->setFont(labelFont_);
        Keep(id, label);
    }
    labelMode_ = static_cast<QLabel *>(WidgetOf(LabelMode));
    labelMode_->setFont(modeFont_);
    labelMode_->setToolTip(TagToolTip(ParamDefines::AnalogOutputMode));

    for (const ControlId id : {Label2, Label3}) {
        auto *label = static_cast<QLabel *>(WidgetOf(id));
        label->setAutoFillBackground(true); // hides the end of its sample line
        label->setIndent(legendIndent);
    }
    auto *target = static_cast<QLabel *>(WidgetOf(LabelTarget));
    target->setAlignment(Qt::AlignCenter);
    ColourTarget();

    dragLabel_ = static_cast<QLabel *>(WidgetOf(LabelRelayDist));
    dragLabel_->setAlignment(Qt::AlignCenter);
    dragLabel_->setAutoFillBackground(true);
    dragLabel_->setBackgroundRole(QPalette::ToolTipBase);
    dragLabel_->setForegroundRole(QPalette::ToolTipText);
}

void BasicPage::BuildFields() {
    int index = 0;
    for (const BasicFields::Field &field : BasicFields::Table) {
        const QString caption = QString::fromLatin1(field.caption);
        const ControlId labelId = Member(LabelParam, index);
        auto *label =
            Controls::Named(new QLabel(caption, ParentOf(labelId)), Controls::Member("LabelParam", index));
        label->setWordWrap(Wraps(field));
        label->setAlignment(Wraps(field) ? Qt::AlignHCenter | Qt::AlignBottom : Qt::AlignCenter);
        label->setToolTip(TagToolTip(field.tag));
        label->setFont(labelFont_);
        label->setAutoFillBackground(true); // hides the end of its line
        Keep(labelId, label);

        const ControlId boxId = Member(TextParam, index);
        auto *box = Controls::Named(new QLineEdit(ParentOf(boxId)), Controls::Member("TextParam", index));
        box->setAlignment(Qt::AlignCenter);
        box->setTextMargins(-2, 0, -2, 0);
        box->setFont(boxFont_);
        box->setProperty("Tag", QString::number(field.tag));
        box->setAccessibleName(caption);
        box->setReadOnly(true); // it shows the sensor's value; the user types into an editor over it
        Colours::KeepLegibleWhileDisabled(*box, Colours::Legible::Reading);
        EntryFocus::SelectAllOnEntry(*box);
        box->installEventFilter(this);
        if (field.tag == ParamDefines::NearDistance) {
            WhyDisabled::Explain(
                *box, QStringLiteral("Computed from Far Distance and the diameters in hyperbolic mode."));
        }
        Keep(boxId, box);
        textParams_.push_back(box);
        ++index;
    }
}

void BasicPage::BuildMarkers() {
    std::vector<RelayMarker *> markers;
    for (int number = 0; number < static_cast<int>(BasicLayout::Relays.size()); ++number) {
        const ControlId id = Member(PicRelay, number);
        auto *marker = new RelayMarker(drawing_, drag_, number, ParentOf(id));
        marker->setAccessibleName(
            zentrova_.ParamName(BasicLayout::Relays[static_cast<std::size_t>(number)].threshold));
        marker->setFont(boxFont_); // the editor of its threshold uses this font
        connect(marker, &RelayMarker::Moved, this, &BasicPage::ShowChanges);
        connect(marker, &RelayMarker::EditWanted, this,
                [this, number](QChar first) { OpenThreshold(number, first); });
        Keep(id, marker);
        markers.push_back(marker);
    }
    pointer_ = std::make_unique<RelayPointer>(drawing_, drag_, std::move(markers));
    connect(pointer_.get(), &RelayPointer::Moved, this, &BasicPage::ShowChanges);
}

// Chooses one size for all labels and one for all boxes: the largest at which each text fits.
void BasicPage::ChooseFonts() {
    std::vector<Controls::Fit> labels;
    std::vector<Controls::Fit> boxes;
    for (const BasicFields::Field &field : BasicFields::Table) {
        const QString caption = QString::fromLatin1(field.caption);
        for (const QString &line : Wraps(field) ? caption.split(u' ') : QStringList{caption}) {
            labels.push_back({.text = line,
                              .width = ToPixels(field.label.width),
                              .height = ToPixels(BasicFields::LabelHeight)});
        }
        boxes.push_back({.text = zentrova_.FormatRaw(zentrova_.ParamMax(field.tag), field.tag),
                         .width = ToPixels(BasicFields::BoxWidth) - boxPadding});
    }
    labelFont_ = Controls::FittingFont(font(), labels);
    boxFont_ = Controls::FittingFont(font(), boxes);
    modeFont_ = Controls::FittingFont(font(), {{.text = {},
                                                .width = ToPixels(BasicFields::LabelMode.width),
                                                .height = ToPixels(BasicFields::LabelMode.height)}});
}

void BasicPage::Apply(ControlId id) {
    const Drawing::Control &control = drawing_.At(id);
    QWidget *widget = WidgetOf(id);
    if (id == LabelRelayDist) {
        PlaceDragLabel();
    } else if (IsPicRelay(id)) {
        widget->setGeometry(static_cast<RelayMarker *>(widget)->Place());
        widget->setToolTip(control.toolTip);
    } else {
        widget->setGeometry(ToPixels(control));
    }
    widget->setVisible(control.visible);
    if (id == LabelMode || id == FrameActualDist) {
        PlaceMode();
    }
    if (IsTextParam(id)) {
        widget->setEnabled(control.enabled);
    }
}

std::int16_t BasicPage::ValueTag(std::size_t index) {
    return BasicFields::Table.at(index).tag;
}

bool BasicPage::eventFilter(QObject *watched, QEvent *event) {
    auto *box = qobject_cast<QLineEdit *>(watched);
    if (box != nullptr && event->type() == QEvent::KeyPress) {
        OpenEditor(*box, static_cast<QKeyEvent &>(*event));
    } else if (box != nullptr && event->type() == QEvent::FocusOut) {
        Q_EMIT ValueBoxLeft();
    }
    return TabPage::eventFilter(watched, event);
}

// Opens the editor over the box; the box below keeps showing the sensor's value.
void BasicPage::OpenEditor(QLineEdit &box, const QKeyEvent &key) {
    text1_.MoveOver(box, box.property("Tag").toString(), box.text());
    if (const QChar digit = TextBoxFunctions::DigitOf(key); !digit.isNull()) {
        text1_.Open(digit);
    } else if (key.key() == Qt::Key_Left || key.key() == Qt::Key_Right) {
        text1_.Open({});
    }
}

// Opens the editor below the chart at the marker's line, where a drag shows its label.
void BasicPage::OpenThreshold(int marker, QChar first) {
    const std::int16_t threshold = BasicLayout::Relays[static_cast<std::size_t>(marker)].threshold;
    auto *strip = static_cast<RelayMarker *>(WidgetOf(Member(PicRelay, marker)));
    QWidget &group = *dragLabel_->parentWidget();
    const int line = strip->parentWidget()->mapTo(&group, QPoint(strip->LineColumn(), 0)).x();
    QRect place(0, ToPixels(drawing_.At(LabelRelayDist)).top(), ToPixels(BasicFields::BoxWidth),
                ToPixels(BasicFields::BoxHeight));
    place.moveLeft(std::clamp(line - place.width() / 2, 0, RightmostLeft(place.width())));
    place.moveTopLeft(strip->mapFrom(&group, place.topLeft()));
    text1_.MoveBeside(*strip, place, QString::number(threshold),
                      zentrova_.FormatRaw(zentrova_.ParamValue(threshold), threshold));
    text1_.Open(first);
}

// Moves the mode's text above the distance's caption while the two would overlap.
void BasicPage::PlaceMode() {
    const QWidget *distance = WidgetOf(FrameActualDist);
    const Drawing::Control &control = drawing_.At(LabelMode);
    QRect place = ToPixels(control);
    const int end = place.left() + labelMode_->sizeHint().width();
    if (distance->isVisibleTo(this) && distance->x() < end) {
        place.moveBottom(distance->y() - 1);
    }
    labelMode_->setGeometry(place);
}

void BasicPage::ColourTarget() {
    QWidget *target = WidgetOf(LabelTarget);
    QPalette colours;
    const Drawing::Colour fill = drawing_.ColourOf(BasicLayout::Target);
    colours.setColor(QPalette::WindowText, Colours::TextOn(DrawingPainter::FillOf(fill, palette())));
    target->setPalette(colours);
}

// Deliberate: greys the measured values alone. They stay where they are, and the settings stay as they were.
void BasicPage::ShowState(ValueState state) {
    drawing_.MeasuredIsLive(state == ValueState::Live);
    for (std::size_t index = 0; index < textParams_.size(); ++index) {
        if (BasicFields::Table[index].displayOnly) {
            Colours::KeepLegibleWhileDisabled(*textParams_[index], drawing_.MeasuredIsLive()
                                                                       ? Colours::Legible::Reading
                                                                       : Colours::Legible::Entry);
        }
    }
    ColourTarget();
    for (QWidget *widget : widgets_) {
        widget->update();
    }
    if (!drawing_.MeasuredIsLive()) {
        UpdateGraph(); // the pulse rests at once
    }
}

void BasicPage::changeEvent(QEvent *event) {
    TabPage::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && WidgetOf(LabelTarget) != nullptr) {
        ColourTarget();
    }
}

// Makes the label as large as its two lines of text need and keeps its laid-out middle.
void BasicPage::PlaceDragLabel() {
    const QRect laidOut = ToPixels(drawing_.At(LabelRelayDist));
    dragLabel_->setText(drawing_.At(LabelRelayDist).caption);
    const QSize size = dragLabel_->sizeHint() + QSize(2 * dragLabelPadding, 0);
    const int left = std::clamp(laidOut.center().x() - size.width() / 2, 0, RightmostLeft(size.width()));
    dragLabel_->setGeometry(QRect(QPoint(left, laidOut.top()), size));
}

int BasicPage::RightmostLeft(int ofWidth) const {
    return std::max(std::min(dragLabel_->parentWidget()->width(), width()) - ofWidth, 0);
}

void BasicPage::ShowChanges() {
    const DrawingChanges::Since since = changes_.Take();
    for (const DrawingChanges::Area &area : since.areas) {
        if (auto *frame = qobject_cast<DrawnFrame *>(WidgetOf(area.parent))) {
            frame->UpdateArea(area);
        }
    }
    for (const ControlId id : since.controls) {
        Apply(id);
    }
    if (!since.controls.empty()) {
        text1_.StayOver();
    }
}

void BasicPage::ConfigureBasicTab() {
    graph_.ConfigureBasicTab();
    ShowChanges();
}

void BasicPage::PositionRelayMarkers() {
    graph_.PositionRelayMarkers();
    ShowChanges();
}

void BasicPage::UpdateGraph() {
    graph_.UpdateGraph();
    ShowChanges();
}

void BasicPage::ShowFailedWrites() {
    for (std::size_t index = 0; index < textParams_.size(); ++index) {
        FailedMark::Show(*textParams_[index], zentrova_.ParamWriteFailed(BasicFields::Table[index].tag));
    }
    for (std::size_t number = 0; number < BasicLayout::Relays.size(); ++number) {
        FailedMark::Show(*WidgetOf(Member(PicRelay, static_cast<int>(number))),
                         zentrova_.ParamWriteFailed(BasicLayout::Relays[number].threshold));
    }
}

void BasicPage::UpdateDisplay() {
    ShowFailedWrites();
    for (std::size_t index = 0; index < textParams_.size(); ++index) {
        const std::int16_t tag = BasicFields::Table[index].tag;
        const QString text = zentrova_.FormatRaw(zentrova_.ParamValue(tag), tag);
        if (textParams_[index]->text() != text) { // setting it would clear the selection
            textParams_[index]->setText(text);
        }
    }
    const std::int16_t mode = ParamDefines::AnalogOutputMode;
    labelMode_->setText(QStringLiteral("Mode: ") + zentrova_.FormatRaw(zentrova_.ParamValue(mode), mode));
    PlaceMode();
    if (graph_.FollowTable()) {
        ShowChanges();
    }
}

} // namespace ztv

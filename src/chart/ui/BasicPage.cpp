#include "chart/ui/BasicPage.h"

#include "chart/BasicFields.h"
#include "chart/BasicLayout.h"
#include "chart/SensorSigns.h"
#include "chart/ThresholdMarks.h"
#include "chart/ui/DrawingPainter.h"
#include "chart/ui/DrawnFrame.h"
#include "chart/ui/DrawnSign.h"
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
#include <cmath>
#include <utility>

namespace ztv {

using enum Drawing::ControlId;
using Drawing::ControlId;
using Drawing::Member;

namespace {

constexpr int boxPadding = 6;       // pixels that a box loses to its frame and margins, at any factor
constexpr int dragLabelPadding = 4; // pixels at factor 1
constexpr int legendIndent = 4;
constexpr int noEchoSize = 2; // times the labels' size

static_assert(BasicLayout::VisibleRight == PageScale::LeastPage.width() * PageScale::TwipsPerPixel);

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

bool IsSign(ControlId id) {
    return id >= LampRelay && id < PicRelay;
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
    BuildFrames();
    BuildLabels();
    BuildFields();
    BuildSigns();
    BuildMarkers();
    Rescale();
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
        auto *frame = new DrawnFrame(drawing_, Scale(), id, !IsReading(id), ParentOf(id));
        Keep(id, Controls::Named(frame, Drawing::ToString(drawing_.At(id).name)));
    }
}

void BasicPage::BuildLabels() {
    for (const ControlId id : {LabelMode, Label2, Label3, LabelTarget, LabelRelayDist, LabelRelays, LabelEcho,
                               LabelNoEcho, LabelDiameter}) {
        const Drawing::Control &control = drawing_.At(id);
        auto *label =
            Controls::Named(new QLabel(control.caption, ParentOf(id)), Drawing::ToString(control.name));
        Keep(id, label);
    }
    labelMode_ = static_cast<QLabel *>(WidgetOf(LabelMode));
    labelMode_->setToolTip(TagToolTip(ParamDefines::AnalogOutputMode));

    for (const ControlId id : {Label2, Label3}) {
        auto *label = static_cast<QLabel *>(WidgetOf(id));
        label->setAutoFillBackground(true); // hides the end of its sample line
    }
    auto *target = static_cast<QLabel *>(WidgetOf(LabelTarget));
    target->setAlignment(Qt::AlignCenter);
    ColourTarget();

    dragLabel_ = static_cast<QLabel *>(WidgetOf(LabelRelayDist));
    dragLabel_->setAlignment(Qt::AlignCenter);
    dragLabel_->setAutoFillBackground(true);
    dragLabel_->setBackgroundRole(QPalette::ToolTipBase);
    dragLabel_->setForegroundRole(QPalette::ToolTipText);
    BuildReadings();
}

void BasicPage::BuildReadings() {
    static_cast<QLabel *>(WidgetOf(LabelRelays))->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto *echo = static_cast<QLabel *>(WidgetOf(LabelEcho));
    echo->setAlignment(Qt::AlignHCenter | Qt::AlignBottom);
    echo->setToolTip(TagToolTip(ParamDefines::EchoStrength));
    auto *noEcho = static_cast<QLabel *>(WidgetOf(LabelNoEcho));
    noEcho->setAlignment(Qt::AlignCenter);
    noEcho->setWordWrap(true);
    noEcho->setToolTip(TagToolTip(ParamDefines::EchoReceived));
    WidgetOf(LabelDiameter)->setToolTip(TagToolTip(ParamDefines::ActualDiameter));
    ColourReadings();
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
        label->setAutoFillBackground(true); // hides the end of its line
        Keep(labelId, label);

        const ControlId boxId = Member(TextParam, index);
        auto *box = Controls::Named(new QLineEdit(ParentOf(boxId)), Controls::Member("TextParam", index));
        box->setAlignment(Qt::AlignCenter);
        box->setTextMargins(-2, 0, -2, 0);
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

// Builds the marks before the markers, which lie over them and take the mouse.
void BasicPage::BuildSigns() {
    for (ControlId id = LampRelay; id < PicRelay; id = Member(id, 1)) {
        Keep(id, new DrawnSign(drawing_, id, ParentOf(id)));
    }
}

void BasicPage::BuildMarkers() {
    std::vector<RelayMarker *> markers;
    for (int number = 0; number < static_cast<int>(BasicLayout::Relays.size()); ++number) {
        const ControlId id = Member(PicRelay, number);
        auto *marker = new RelayMarker(drawing_, drag_, Scale(), number, ParentOf(id));
        marker->setAccessibleName(
            zentrova_.ParamName(BasicLayout::Relays[static_cast<std::size_t>(number)].threshold));
        connect(marker, &RelayMarker::Moved, this, &BasicPage::ShowSigns);
        connect(marker, &RelayMarker::EditWanted, this,
                [this, number](QChar first) { OpenThreshold(number, first); });
        Keep(id, marker);
        markers.push_back(marker);
    }
    pointer_ = std::make_unique<RelayPointer>(drawing_, drag_, Scale(), std::move(markers));
    connect(pointer_.get(), &RelayPointer::Moved, this, &BasicPage::ShowSigns);
}

// Chooses one size for all labels and one for all boxes: the largest at which each text fits.
void BasicPage::ChooseFonts() {
    std::vector<Controls::Fit> labels;
    std::vector<Controls::Fit> boxes;
    for (const BasicFields::Field &field : BasicFields::Table) {
        const QString caption = QString::fromLatin1(field.caption);
        for (const QString &line : Wraps(field) ? caption.split(u' ') : QStringList{caption}) {
            labels.push_back({.text = line,
                              .width = Scale().Rounded(field.label.width),
                              .height = Scale().Rounded(BasicFields::LabelHeight)});
        }
        boxes.push_back({.text = zentrova_.FormatRaw(zentrova_.ParamMax(field.tag), field.tag),
                         .width = Scale().Rounded(BasicFields::BoxWidth) - boxPadding});
    }
    const auto fitting = [&](const std::vector<Controls::Fit> &places) {
        return Controls::FittingFont(Scale().Font(font()), places, Scale().LeastLegible());
    };
    labelFont_ = fitting(labels);
    boxFont_ = fitting(boxes);
    modeFont_ = fitting({{.text = {},
                          .width = Scale().Rounded(BasicFields::LabelMode.width),
                          .height = Scale().Rounded(BasicFields::LabelMode.height)}});
    ChooseReadingFonts();
}

// The fonts of the readings are at most that of the labels. The warning's is larger, to be read from afar.
void BasicPage::ChooseReadingFonts() {
    const auto fitting = [this](const QFont &font, ControlId id, const QStringList &lines) {
        std::vector<Controls::Fit> places;
        const QSize place = Place(drawing_.At(id)).size();
        for (const QString &line : lines) {
            places.push_back({.text = line,
                              .width = place.width(),
                              .height = place.height() / static_cast<int>(lines.size())});
        }
        return Controls::FittingFont(font, places, Scale().LeastLegible());
    };
    const auto largest = [this](std::int16_t tag) { return zentrova_.ParamMax(tag); };
    echoFont_ = fitting(labelFont_, LabelEcho,
                        SensorSigns::EchoText(largest(ParamDefines::EchoStrength)).split(u'\n'));
    diameterFont_ = fitting(labelFont_, LabelDiameter,
                            {SensorSigns::DiameterText(zentrova_, largest(ParamDefines::ActualDiameter))});
    noEchoFont_ = labelFont_;
    noEchoFont_.setBold(true);
    noEchoFont_.setPixelSize(noEchoSize * QFontInfo(labelFont_).pixelSize());
    noEchoFont_ = fitting(noEchoFont_, LabelNoEcho, drawing_.At(LabelNoEcho).caption.split(u' '));
}

void BasicPage::SetFonts() {
    for (QWidget *widget : widgets_) {
        if (qobject_cast<QLineEdit *>(widget) != nullptr ||
            qobject_cast<RelayMarker *>(widget) != nullptr) { // the editor of a threshold uses its font
            widget->setFont(boxFont_);
        } else if (qobject_cast<QLabel *>(widget) != nullptr) {
            widget->setFont(widget == labelMode_ ? modeFont_ : labelFont_);
        }
    }
    WidgetOf(LabelEcho)->setFont(echoFont_);
    WidgetOf(LabelDiameter)->setFont(diameterFont_);
    WidgetOf(LabelNoEcho)->setFont(noEchoFont_);
    for (const ControlId id : {Label2, Label3}) {
        static_cast<QLabel *>(WidgetOf(id))->setIndent(Scale().Pixels(legendIndent));
    }
}

// Gives the boxes of the large readings the font that fits both.
void BasicPage::SetLargeFonts() {
    std::vector<Controls::Fit> texts;
    std::vector<QLineEdit *> boxes;
    for (std::size_t index = 0; index < textParams_.size(); ++index) {
        const std::int16_t tag = BasicFields::Table[index].tag;
        if (const auto fit =
                Large().FitOf(static_cast<int>(index), zentrova_.FormatRaw(zentrova_.ParamMax(tag), tag))) {
            texts.push_back(*fit);
            boxes.push_back(textParams_[index]);
        }
    }
    for (QLineEdit *box : boxes) {
        box->setFont(Large().FontFor(font(), texts));
    }
}

// Fits the drawing to the page: fonts and places, once for a size.
void BasicPage::Rescale() {
    ChooseFonts();
    SetFonts();
    SetLargeFonts();
    for (std::size_t id = 0; id < widgets_.size(); ++id) {
        Apply(static_cast<ControlId>(id));
    }
    KeepEditor();
}

void BasicPage::Fit() {
    const QPoint corner = Scale().Corner(size());
    if (Scale() == fitted_ && corner == corner_) {
        return;
    }
    fitted_ = Scale();
    corner_ = corner;
    Rescale();
}

// Returns the control's rectangle in its parent.
QRect BasicPage::Place(const Drawing::Control &control) const {
    const QRect place = Scale().FromTwips(control.left, control.top, control.width, control.height);
    return control.parent ? place : place.translated(corner_);
}

void BasicPage::Apply(ControlId id) {
    const Drawing::Control &control = drawing_.At(id);
    QWidget *widget = WidgetOf(id);
    if (id == LabelRelayDist) {
        PlaceDragLabel();
    } else if (IsPicRelay(id)) {
        widget->setGeometry(static_cast<RelayMarker *>(widget)->Place());
        widget->setToolTip(control.toolTip);
    } else if (id == FrameActualDist) {
        PlaceDistance();
    } else if (IsTextParam(id)) {
        widget->setGeometry(Large().PlaceOf(control.name.index).value_or(Place(control)));
    } else {
        widget->setGeometry(Place(control));
    }
    if (id == Label2 || id == Label3) { // covers its sample line's end, also a part of a pixel of it
        widget->resize(static_cast<int>(std::ceil(Scale().ToPixels(control.left + control.width))) -
                           widget->x(),
                       widget->height());
    }
    widget->setVisible(control.visible);
    if (id == LabelMode || id == FrameActualDist) {
        PlaceMode();
    }
    if (IsTextParam(id)) {
        widget->setEnabled(control.enabled);
    } else if (id == LabelEcho || id == LabelDiameter) {
        static_cast<QLabel *>(widget)->setText(control.caption);
        AlignDiameter();
    } else if (IsSign(id)) {
        ShowSign(id);
    }
}

// Keeps the diameter's text at the line of the distance, on whichever side of it the text is.
void BasicPage::AlignDiameter() {
    const bool left = drawing_.At(LabelDiameter).left < drawing_.At(FrameActualDist).left;
    static_cast<QLabel *>(WidgetOf(LabelDiameter))
        ->setAlignment((left ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
}

void BasicPage::ShowSign(ControlId id) {
    auto *sign = static_cast<DrawnSign *>(WidgetOf(id));
    sign->ShowTexts();
    sign->update();
    if (id >= MarkRelay) {
        const int number = static_cast<int>(id) - static_cast<int>(MarkRelay);
        QWidget *marker = WidgetOf(Member(PicRelay, number));
        marker->setAccessibleDescription(drawing_.At(id).toolTip);
        marker->update(); // has no number beside a mark
    }
}

// Keeps the frame of the distance, whose box is larger on a large page, clear of the legend. Its line stays
// at the distance.
void BasicPage::PlaceDistance() {
    auto *frame = static_cast<DrawnFrame *>(WidgetOf(FrameActualDist));
    const QRect laidOut = Place(drawing_.At(FrameActualDist));
    QRect place = laidOut;
    if (Large().AreShown()) {
        place.moveRight(std::min(place.right(), Large().RightmostEdge()));
    }
    frame->setGeometry(place);
    frame->Origin(laidOut.topLeft() - place.topLeft());
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
    text1_.MoveBeside(*WidgetOf(Member(PicRelay, marker)), PlaceOfEditor(marker), QString::number(threshold),
                      zentrova_.FormatRaw(zentrova_.ParamValue(threshold), threshold));
    text1_.Open(first);
}

// Returns the place of a threshold's editor, in the coordinates of its marker.
QRect BasicPage::PlaceOfEditor(int marker) const {
    const auto *strip = static_cast<RelayMarker *>(WidgetOf(Member(PicRelay, marker)));
    const QWidget &group = *dragLabel_->parentWidget();
    const int line = strip->parentWidget()->mapTo(&group, QPoint(strip->LineColumn(), 0)).x();
    QRect place(0, Place(drawing_.At(LabelRelayDist)).top(), Scale().Rounded(BasicFields::BoxWidth),
                Scale().Rounded(BasicFields::BoxHeight));
    place.moveLeft(std::clamp(line - place.width() / 2, 0, RightmostLeft(place.width())));
    place.moveTopLeft(strip->mapFrom(&group, place.topLeft()));
    return place;
}

// The value's editor stays over its box, or beside its marker, at another scale.
void BasicPage::KeepEditor() {
    text1_.StayOver();
    for (int marker = 0; marker < static_cast<int>(BasicLayout::Relays.size()); ++marker) {
        text1_.StayBeside(*WidgetOf(Member(PicRelay, marker)), PlaceOfEditor(marker));
    }
}

// Moves the mode's text above the distance's caption while the two would overlap.
void BasicPage::PlaceMode() {
    const QWidget *distance = WidgetOf(FrameActualDist);
    const Drawing::Control &control = drawing_.At(LabelMode);
    QRect place = Place(control);
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

// Gives the texts that show a measured value, or have a colour of their own, their present colours.
void BasicPage::ColourReadings() {
    for (const ControlId id : {LabelEcho, LabelNoEcho, LabelDiameter}) {
        QPalette colours;
        const Drawing::Colour colour = drawing_.ColourOf(drawing_.At(id));
        colours.setColor(QPalette::WindowText, DrawingPainter::ColourOf(colour, palette()));
        WidgetOf(id)->setPalette(colours);
    }
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
    ColourReadings();
    for (QWidget *widget : widgets_) {
        widget->update();
    }
    if (!drawing_.MeasuredIsLive()) {
        UpdateGraph(); // the pulse rests at once
    }
    ShowSigns();
}

void BasicPage::changeEvent(QEvent *event) {
    TabPage::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && WidgetOf(LabelTarget) != nullptr) {
        ColourTarget();
        ColourReadings();
    }
}

// Makes the label as large as its two lines of text need and keeps its laid-out middle.
void BasicPage::PlaceDragLabel() {
    const QRect laidOut = Place(drawing_.At(LabelRelayDist));
    dragLabel_->setText(drawing_.At(LabelRelayDist).caption);
    const QSize size = dragLabel_->sizeHint() + QSize(2 * Scale().Pixels(dragLabelPadding), 0);
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

// Shows what follows the table and the markers, but not each tick.
void BasicPage::ShowSigns() {
    SensorSigns::Follow(zentrova_, drawing_);
    ThresholdMarks::Follow(zentrova_, drawing_);
    drag_.Follow();
    ShowChanges();
}

void BasicPage::ConfigureBasicTab() {
    graph_.ConfigureBasicTab();
    ShowSigns();
}

void BasicPage::PositionRelayMarkers() {
    graph_.PositionRelayMarkers();
    ShowSigns();
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
    graph_.FollowTable();
    ShowSigns();
}

} // namespace ztv

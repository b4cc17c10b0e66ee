#include "tabs/ui/BasicPage.h"

#include "model/ParamDefines.h"
#include "tabs/BasicFields.h"
#include "ui/Controls.h"

namespace {

constexpr int boxPadding = 6; // pixels of a box that its frame and margins take

QRect ToPixels(const BasicFields::Rectangle &r) {
    return Controls::FromTwips(r.left, r.top, r.width, r.height);
}

QFrame *AddFrame(QWidget *parent, const char *name, const BasicFields::Rectangle &place) {
    auto *frame = Controls::Named(new QFrame(parent), name);
    frame->setFrameShape(QFrame::NoFrame);
    frame->setGeometry(ToPixels(place));
    return frame;
}

bool Wraps(const BasicFields::Field &field) {
    return field.label.height > BasicFields::LabelHeight;
}

QString TagToolTip(std::int16_t tag) {
    return QStringLiteral("Tag=%1").arg(tag);
}

} // namespace

BasicPage::BasicPage(const ClassZentrova &zentrova, QWidget *parent)
    : TabPage(1, parent),
      zentrova_(zentrova) {
    ChooseFonts();
    QFrame *group = AddFrame(this, "FrameGraphGroup", BasicFields::FrameGraphGroup);

    labelMode_ = Controls::Named(new QLabel(QStringLiteral("Mode:"), group), "LabelMode");
    labelMode_->setGeometry(ToPixels(BasicFields::LabelMode));
    labelMode_->setToolTip(TagToolTip(ParamDefines::AnalogOutputMode));

    QFrame *graph = AddFrame(group, "FrameGraph", BasicFields::FrameGraph);
    graph->setFrameShape(QFrame::StyledPanel);
    graph->setFrameShadow(QFrame::Sunken);

    QFrame *actualDist = AddFrame(group, "FrameActualDist", BasicFields::FrameActualDist);
    QFrame *outputVoltage = AddFrame(group, "FrameOutputVoltage", BasicFields::FrameOutputVoltage);
    QFrame *manOutput = AddFrame(group, "FrameManOutput", BasicFields::FrameManOutput);
    for (int index = 0; index < static_cast<int>(BasicFields::Table.size()); ++index) {
        switch (BasicFields::Table[static_cast<std::size_t>(index)].home) {
        case BasicFields::Home::Group:
            AddField(index, group);
            break;
        case BasicFields::Home::ActualDist:
            AddField(index, actualDist);
            break;
        case BasicFields::Home::OutputVoltage:
            AddField(index, outputVoltage);
            break;
        case BasicFields::Home::ManOutput:
            AddField(index, manOutput);
            break;
        }
    }
}

void BasicPage::AddField(int index, QWidget *home) {
    const BasicFields::Field &field = BasicFields::Table[static_cast<std::size_t>(index)];
    const QString caption = QString::fromLatin1(field.caption);

    auto *label = Controls::Named(new QLabel(caption, home), Controls::Member("LabelParam", index));
    label->setGeometry(ToPixels(field.label));
    label->setWordWrap(Wraps(field));
    label->setAlignment(Wraps(field) ? Qt::AlignHCenter | Qt::AlignBottom : Qt::AlignCenter);
    label->setToolTip(TagToolTip(field.tag));
    label->setFont(labelFont_);

    auto *box = Controls::Named(new QLineEdit(home), Controls::Member("TextParam", index));
    box->setGeometry(ToPixels({field.boxLeft, field.boxTop, BasicFields::BoxWidth, BasicFields::BoxHeight}));
    box->setAlignment(Qt::AlignCenter);
    box->setTextMargins(-2, 0, -2, 0);
    box->setFont(boxFont_);
    box->setProperty("Tag", QString::number(field.tag));
    box->setAccessibleName(caption);
    box->setReadOnly(true); // it shows the sensor's value; typing goes into an editor over it
    box->setEnabled(!field.displayOnly);
    if (field.displayOnly) {
        // What can't be edited is still there to be read.
        QPalette palette = box->palette();
        palette.setColor(QPalette::Disabled, QPalette::Text, palette.color(QPalette::Active, QPalette::Text));
        box->setPalette(palette);
    }
    textParams_.push_back(box);
}

// One size for all labels and one for all boxes, as large as the tightest of them takes.
void BasicPage::ChooseFonts() {
    std::vector<Controls::Fit> labels;
    std::vector<Controls::Fit> boxes;
    for (const BasicFields::Field &field : BasicFields::Table) {
        const QString caption = QString::fromLatin1(field.caption);
        for (const QString &line : Wraps(field) ? caption.split(u' ') : QStringList{caption}) {
            labels.push_back({.text = line, .width = ToPixels(field.label).width()});
        }
        boxes.push_back({.text = zentrova_.FormatRaw(zentrova_.ParamMax(field.tag), field.tag),
                         .width = ToPixels({0, 0, BasicFields::BoxWidth, 0}).width() - boxPadding});
    }
    labelFont_ = Controls::FittingFont(font(), labels);
    boxFont_ = Controls::FittingFont(font(), boxes);
}

void BasicPage::UpdateDisplay() {
    for (std::size_t index = 0; index < textParams_.size(); ++index) {
        const std::int16_t tag = BasicFields::Table[index].tag;
        textParams_[index]->setText(zentrova_.FormatRaw(zentrova_.ParamValue(tag), tag));
    }
    const std::int16_t mode = ParamDefines::AnalogOutputMode;
    labelMode_->setText(QStringLiteral("Mode: ") + zentrova_.FormatRaw(zentrova_.ParamValue(mode), mode));
}

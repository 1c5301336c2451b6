#include "output/scan/ScanSettings.h"

#include "session/AppContext.h"
#include "widgets/PictureButton.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>
#include <cmath>

namespace lumora {

namespace {

struct ColourRow {
    ScanColours colours;
    const char *name;
    const char *icon;
};
constexpr ColourRow colourRows[] = {
    {ScanColours::Colour, "cmdScanColour", "scan-colour"},
    {ScanColours::Grey, "cmdScanGrey", "scan-grey"},
    {ScanColours::BlackAndWhite, "cmdScanBlackWhite", "scan-black-white"},
};

/// What a scan is for. The scanner's nearest resolution is taken.
struct DetailRow {
    const char *text;
    double dotsPerInch;
};
constexpr DetailRow detailRows[] = {
    {"ScannerForScreen", 100}, {"ScannerForMail", 150}, {"ScannerForPrint", 300}, {"ScannerForLarge", 600}};
constexpr int usualDetail = 300;  // dots per inch
constexpr int previewDetail = 75; // dots per inch: quick, and more than the window has pixels for

/// Sizes of paper in millimetres, the largest first.
struct PaperRow {
    const char *text;
    double width, height;
};
constexpr PaperRow papers[] = {
    {"ScannerA4", 210, 297},      {"ScannerLetter", 215.9, 279.4}, {"ScannerA5", 148, 210},
    {"ScannerPhoto18", 130, 180}, {"ScannerPhoto15", 100, 150},
};
constexpr double tolerance = 2; // millimetres that a glass may be smaller than the paper it is made for

constexpr int sliderSteps = 20; // from one end of a range to the other

QString number(double value) {
    return QString::number(value, 'g', 10);
}

bool isFeederWord(const QString &source) {
    return source.contains("feeder", Qt::CaseInsensitive) || source.contains("adf", Qt::CaseInsensitive);
}

/// Shows a control and its caption, or neither.
void setShown(QWidget *control, bool shown) {
    control->setVisible(shown);
    for (QLabel *label : control->parentWidget()->findChildren<QLabel *>()) {
        if (label->buddy() == control) {
            label->setVisible(shown);
        }
    }
}

} // namespace

ScanSettings::ScanSettings(AppContext &ctx, QWidget *parent)
    : QWidget(parent), m_ctx(ctx), m_column(new QVBoxLayout(this)), m_colours(new QButtonGroup(this)) {
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->setSpacing(4);
    cboSource = addList("lblScanSource", "cboScanSource");
    addColours();
    cboDetail = addList("lblScanDetail", "cboScanDetail");
    cboPaper = addList("lblScanPaper", "cboScanPaper");
    sldBrightness = addSlider("lblScanBrightness", "sldScanBrightness");
    sldContrast = addSlider("lblScanContrast", "sldScanContrast");
    m_column->addStretch();
    connect(cboSource, &QComboBox::activated, this, &ScanSettings::decisionChanged);
    connect(m_colours, &QButtonGroup::idClicked, this, &ScanSettings::decisionChanged);
    connect(cboPaper, &QComboBox::activated, this, &ScanSettings::paperChosen);
}

QLabel *ScanSettings::addLabel(const char *name) {
    auto *label = new QLabel(this);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    m_column->addSpacing(6);
    m_column->addWidget(label);
    return label;
}

QComboBox *ScanSettings::addList(const char *caption, const char *name) {
    QLabel *label = addLabel(caption);
    auto *list = new QComboBox(this);
    list->setObjectName(name);
    list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    label->setBuddy(list);
    m_column->addWidget(list);
    return list;
}

QSlider *ScanSettings::addSlider(const char *caption, const char *name) {
    QLabel *label = addLabel(caption);
    auto *slider = new QSlider(Qt::Horizontal, this);
    slider->setObjectName(name);
    slider->setRange(0, sliderSteps);
    label->setBuddy(slider);
    m_column->addWidget(slider);
    return slider;
}

void ScanSettings::addColours() {
    QLabel *label = addLabel("lblScanColours");
    auto *row = new QWidget(this);
    row->setObjectName("boxScanColours");
    label->setBuddy(row);
    auto *buttons = new QHBoxLayout(row);
    buttons->setContentsMargins(0, 0, 0, 0);
    buttons->setSpacing(6);
    for (const ColourRow &each : colourRows) {
        auto *button = new PictureButton(each.icon, PictureButton::CaptionPlace::Below, row);
        button->setObjectName(each.name);
        button->setPictureSize(48);
        button->setCheckable(true);
        button->setLook(PictureButton::Look::Raised);
        button->setFixedSize(92, 100);
        m_colours->addButton(button, static_cast<int>(each.colours));
        buttons->addWidget(button);
    }
    buttons->addStretch();
    m_column->addWidget(row);
}

// --- From the scanner's options to the controls ---------------------------------------------------------------------

void ScanSettings::setOptions(const QList<ScanOption> &options) {
    m_options = options;
    fillSources();
    fillColours();
    fillDetails();
    fillPapers();
    fillSlider(sldBrightness, "brightness");
    fillSlider(sldContrast, "contrast");
    m_asked = true;
}

QString ScanSettings::sourceWords(const QString &source) const {
    if (source.contains("flatbed", Qt::CaseInsensitive)) {
        return m_ctx.texts.text("ScannerGlass");
    }
    const bool plain = source.compare("adf", Qt::CaseInsensitive) == 0 ||
                       source.compare("automatic document feeder", Qt::CaseInsensitive) == 0;
    return plain ? m_ctx.texts.text("ScannerFeeder") : source;
}

void ScanSettings::fillSources() {
    const ScanOption *source = find("source");
    setShown(cboSource, source != nullptr && source->choices.size() > 1);
    const QString chosen = m_asked             ? cboSource->currentData().toString()
                           : source != nullptr ? source->value
                                               : QString();
    cboSource->clear();
    if (source != nullptr) {
        for (const QString &choice : source->choices) {
            cboSource->addItem(sourceWords(choice), choice);
        }
        cboSource->setCurrentIndex(std::max(0, cboSource->findData(chosen)));
    }
}

void ScanSettings::fillColours() {
    const ScanOption *depth = find("depth");
    const bool oneBit = depth != nullptr && depth->choices.contains("1");
    int shown = 0;
    for (const ColourRow &row : colourRows) {
        const bool offered =
            !modeFor(m_options, row.colours).isEmpty() ||
            (row.colours == ScanColours::BlackAndWhite && oneBit && !modeFor(m_options, ScanColours::Grey).isEmpty());
        m_colours->button(static_cast<int>(row.colours))->setVisible(offered);
        shown += offered ? 1 : 0;
    }
    setShown(findChild<QWidget *>("boxScanColours"), shown > 1);
    const QAbstractButton *checked = m_colours->checkedButton();
    if (checked == nullptr || checked->isHidden()) {
        for (const ColourRow &row : colourRows) {
            QAbstractButton *button = m_colours->button(static_cast<int>(row.colours));
            if (!button->isHidden()) {
                button->setChecked(true);
                break;
            }
        }
    }
}

void ScanSettings::fillDetails() {
    const ScanOption *resolution = find("resolution") != nullptr ? find("resolution") : find("x-resolution");
    const double chosen = m_asked && cboDetail->currentIndex() >= 0 ? cboDetail->currentData().toDouble() : usualDetail;
    cboDetail->clear();
    if (resolution != nullptr && resolution->kind == ScanOption::Kind::Number) {
        for (const DetailRow &row : detailRows) {
            const double offered = resolution->nearest(row.dotsPerInch);
            if (cboDetail->findData(offered) < 0) {
                cboDetail->addItem(m_ctx.texts.text(row.text).arg(qRound(offered)), offered);
            }
        }
        int best = 0;
        for (int i = 1; i < cboDetail->count(); ++i) {
            const auto away = [&](int index) { return std::abs(cboDetail->itemData(index).toDouble() - chosen); };
            best = away(i) < away(best) ? i : best;
        }
        cboDetail->setCurrentIndex(best);
    }
    setShown(cboDetail, cboDetail->count() > 1);
}

void ScanSettings::fillPapers() {
    const QSizeF whole = glass();
    const QString chosen = cboPaper->currentText();
    cboPaper->clear();
    if (!whole.isEmpty()) {
        cboPaper->addItem(m_ctx.texts.text("ScannerWhole"), whole);
        for (const PaperRow &paper : papers) {
            const bool fits = find("br-x")->unit == ScanOption::Unit::Millimetre &&
                              paper.width <= whole.width() + tolerance && paper.height <= whole.height() + tolerance;
            if (fits) {
                cboPaper->addItem(m_ctx.texts.text(paper.text), QSizeF(paper.width, paper.height));
            }
        }
        cboPaper->addItem(m_ctx.texts.text("ScannerOwnFrame"), QSizeF());
        cboPaper->setCurrentIndex(std::max(0, cboPaper->findText(chosen)));
    }
    setShown(cboPaper, cboPaper->count() > 0);
}

void ScanSettings::fillSlider(QSlider *slider, const char *name) {
    const ScanOption *option = find(name);
    const bool usable = option != nullptr && option->hasRange && option->most > option->least;
    if (usable && (!m_asked || slider->isHidden())) {
        slider->setValue(qRound((option->number() - option->least) / (option->most - option->least) * sliderSteps));
    }
    setShown(slider, usable);
}

// --- From the controls to the scanner's options ---------------------------------------------------------------------

QSizeF ScanSettings::glass() const {
    const ScanOption *left = find("tl-x");
    const ScanOption *top = find("tl-y");
    const ScanOption *right = find("br-x");
    const ScanOption *bottom = find("br-y");
    for (const ScanOption *edge : {left, top, right, bottom}) {
        if (edge == nullptr || !edge->hasRange) {
            return {};
        }
    }
    const QSizeF size(right->most - left->least, bottom->most - top->least);
    return size.width() > 0 && size.height() > 0 ? size : QSizeF();
}

QRectF ScanSettings::paper() const {
    const QSizeF size = cboPaper->currentData().toSizeF();
    return size.isEmpty() ? QRectF() : QRectF(QPointF(), size);
}

void ScanSettings::chooseOwnFrame() {
    cboPaper->setCurrentIndex(cboPaper->count() - 1);
}

bool ScanSettings::isFeeder() const {
    return isFeederWord(cboSource->currentData().toString());
}

QList<ScanValue> ScanSettings::colourValues() const {
    QList<ScanValue> values;
    const auto colours = static_cast<ScanColours>(m_colours->checkedId());
    QString mode = modeFor(m_options, colours);
    const bool greyBits = mode.isEmpty() && colours == ScanColours::BlackAndWhite; // the depth makes it so
    if (greyBits) {
        mode = modeFor(m_options, ScanColours::Grey);
    }
    if (!mode.isEmpty()) {
        values.append({"mode", mode});
    }
    // Of more than 8 bits nothing would be left in the photo.
    const ScanOption *depth = find("depth");
    if (depth != nullptr && depth->kind == ScanOption::Kind::Number) {
        values.append({"depth", number(depth->nearest(greyBits ? 1 : 8))});
    }
    return values;
}

QList<ScanValue> ScanSettings::decidingValues() const {
    QList<ScanValue> values;
    if (cboSource->count() > 0) {
        values.append({"source", cboSource->currentData().toString()});
    }
    return values + colourValues();
}

QList<ScanValue> ScanSettings::areaValues(const QRectF &area) const {
    if (glass().isEmpty() || area.isEmpty()) {
        return {};
    }
    const double left = find("tl-x")->least;
    const double top = find("tl-y")->least;
    // The far corner first: the near one may not lie beyond it.
    return {{"br-x", number(left + area.right())},
            {"br-y", number(top + area.bottom())},
            {"tl-x", number(left + area.left())},
            {"tl-y", number(top + area.top())}};
}

QList<ScanValue> ScanSettings::values(const QRectF &area) const {
    QList<ScanValue> values = decidingValues();
    if (cboDetail->count() > 0) {
        values += resolutionValues(m_options, cboDetail->currentData().toDouble());
    }
    values += areaValues(area);
    for (const auto &[slider, name] : {std::pair(sldBrightness, "brightness"), std::pair(sldContrast, "contrast")}) {
        const ScanOption *option = find(name);
        if (option != nullptr && !slider->isHidden()) {
            const double share = double(slider->value()) / sliderSteps;
            values.append({name, number(option->least + share * (option->most - option->least))});
        }
    }
    return values;
}

QList<ScanValue> ScanSettings::previewValues() const {
    return values(QRectF(QPointF(), glass())) + resolutionValues(m_options, previewDetail) +
           QList<ScanValue>{{"preview", "1"}};
}

} // namespace lumora

#include "dialogs/frmSimpleSave.h"

#include "imaging/PictureFile.h"
#include "session/AppContext.h"
#include "session/FileTypeText.h"
#include "session/LoadSettings.h"
#include "view/PhotoTable.h"
#include "widgets/AnimatedButton.h"
#include "widgets/ElidedLabel.h"
#include "widgets/Theme.h"
#include "widgets/WindowTexts.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QLineEdit>
#include <QPainter>
#include <QSet>
#include <QValidator>
#include <cstring>

namespace lumora {

namespace {

struct TypeRow {
    const char *text;
    const char *extension;
    QColor colour;
};

constexpr TypeRow types[] = {
    {"FileTypeBMP", ".bmp", colours::usual.sky},   {"FileTypeJPEG", ".jpg", colours::usual.leaf},
    {"FileTypePNG", ".png", colours::usual.plum},  {"FileTypeGIF", ".gif", colours::usual.coral},
    {"FileTypeTIFF", ".tif", colours::usual.sun},  {"FileTypeTGA", ".tga", colours::usual.faintInk},
    {"FileTypePDF", ".pdf", colours::usual.coral},
};
constexpr int typeCount = std::size(types);
constexpr int jpeg = 1;
constexpr int png = 2;
constexpr int pdf = typeCount - 1;  // of a page that is printed into a file; no type of photos
constexpr QSize photoRoom(112, 84); // pixels
constexpr int longestName = 251;    // bytes: file systems take 255 with the extension

/// A sheet of paper with the extension on it in the type's colour.
QPixmap typeBadge(const TypeRow &type, int size, qreal devicePixelRatio) {
    QPixmap pixmap(QSize(size, size) * devicePixelRatio);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 64.0, size / 64.0);
    painter.setPen(QPen(colours::ink, 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::white);
    painter.drawPolygon(QPolygonF({{12, 4}, {40, 4}, {54, 18}, {54, 60}, {12, 60}}));
    painter.setBrush(type.colour);
    painter.drawRoundedRect(QRectF(4, 26, 56, 24), 6, 6);
    QFont font("Andika");
    font.setBold(true);
    font.setPixelSize(19);
    painter.setFont(font);
    painter.setPen(qGray(type.colour.rgb()) > 140 ? colours::ink : QColor(Qt::white));
    painter.drawText(QRectF(4, 25, 56, 24), Qt::AlignCenter, QString(type.extension).mid(1).toUpper());
    return pixmap;
}

/// Removes characters that are invalid in file names, as they are typed or pasted.
class NameValidator : public QValidator {
  public:
    using QValidator::QValidator;

    State validate(QString &input, int &position) const override {
        for (const QChar forbidden : {QChar('/'), QChar(QChar::Null)}) {
            position -= static_cast<int>(input.left(position).count(forbidden));
            input.remove(forbidden);
        }
        while (input.toUtf8().size() > longestName) {
            input.chop(input.back().isLowSurrogate() ? 2 : 1);
        }
        position = qMin(position, static_cast<int>(input.size()));
        return Acceptable;
    }
};

} // namespace

QString simpleSaveName(const QString &typed, int type) {
    const bool known = type >= 0 && type < typeCount;
    return known && !typed.isEmpty() ? typed + types[type].extension : QString();
}

QString freeSaveName(const QString &folder, const QString &base) {
    QSet<QString> taken;
    for (const QString &file : QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System, QDir::Unsorted)) {
        taken += QFileInfo(file).completeBaseName().toCaseFolded();
    }
    QString name = base;
    for (int number = 2; taken.contains(name.toCaseFolded()); ++number) {
        name = base + ' ' + QString::number(number);
    }
    return name;
}

frmSimpleSave::frmSimpleSave(AppContext &ctx, const QString &name, QWidget *owner, Saves what)
    : SimpleFileDialog(ctx, name, owner, "save"), lblFile(new QLabel(this)), lblFileType(new QLabel(this)),
      cboFilter(new QComboBox(this)), m_photo(new QLabel(this)), m_badge(new QLabel(this)),
      lblResult(new ElidedLabel(Qt::ElideMiddle, this)) {
    lblFile->setObjectName("lblFile");
    lblFile->setBuddy(txtFile);
    lblFileType->setObjectName("lblFileType");
    lblFileType->setBuddy(cboFilter);
    cboFilter->setObjectName("cboFilter");
    lblResult->setObjectName("lblResult");
    txtFile->setValidator(new NameValidator(txtFile));
    fillTypes(what);
    layOut();
    cmdAdvCMDLG->setVisible(what == Saves::Photo);
    showTexts(m_ctx.texts, *this);
    connect(txtFile, &QLineEdit::textChanged, this, &frmSimpleSave::showName);
    connect(cboFilter, &QComboBox::currentIndexChanged, this, &frmSimpleSave::showName);
    showName();
    txtFile->setFocus();
}

void frmSimpleSave::fillTypes(Saves what) {
    constexpr int badgeSize = 32;
    cboFilter->setIconSize({badgeSize, badgeSize});
    for (int i = 0; i < typeCount; ++i) {
        if ((i == pdf) == (what == Saves::PdfPage)) {
            cboFilter->addItem(typeBadge(types[i], badgeSize, devicePixelRatioF()),
                               fileTypeText(m_ctx.texts, types[i].text, {QString("*") + types[i].extension}), i);
        }
    }
    if (what == Saves::Photo) { // what was cut out stays cut out
        cboFilter->setCurrentIndex(m_ctx.photo.picCanvas().hasAlphaChannel() ? png : jpeg);
    }
}

int frmSimpleSave::type() const {
    return cboFilter->currentIndex() < 0 ? -1 : cboFilter->currentData().toInt();
}

void frmSimpleSave::layOut() {
    QFont large = txtFile->font();
    large.setPointSizeF(14);
    txtFile->setFont(large);
    cboFilter->setFont(large);
    lblResult->setFont(large);
    lblResult->setMinimumWidth(200);
    m_badge->setFixedSize(56, 56);
    auto *fields = new QGridLayout;
    fields->setHorizontalSpacing(16);
    fields->setVerticalSpacing(14);
    fields->addWidget(lblFile, 0, 0);
    fields->addWidget(txtFile, 0, 1);
    fields->addWidget(lblFileType, 1, 0);
    fields->addWidget(cboFilter, 1, 1);
    fields->setColumnStretch(1, 1);
    fields->setColumnMinimumWidth(1, 420);
    auto *result = new QHBoxLayout;
    result->setSpacing(10);
    m_photo->setObjectName("picPhoto");
    m_photo->setFixedHeight(photoRoom.height());
    result->addWidget(m_photo);
    result->addWidget(m_badge);
    result->addWidget(lblResult, 1);
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(12);
    buttons->addWidget(cmdAdvCMDLG, 0, Qt::AlignBottom);
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    body()->addLayout(fields);
    body()->addLayout(result);
    addFoot(buttons);
    setTabOrder(txtFile, cboFilter);
    setTabOrder(cboFilter, cmdAdvCMDLG);
    setTabOrder(cmdAdvCMDLG, cmdOK);
    setTabOrder(cmdOK, cmdCancel);
}

void frmSimpleSave::showName() {
    const QString name = simpleSaveName(fileName(), type());
    lblResult->setText(name);
    m_photo->setPixmap(smallPhoto(m_ctx.photo.pic2nd(), photoRoom, devicePixelRatioF(),
                                  keepsTransparency(name) ? Beneath::Checks : Beneath::White));
    m_badge->setPixmap(name.isEmpty() ? QPixmap() : typeBadge(types[type()], 56, devicePixelRatioF()));
}

QString frmSimpleSave::path() const {
    const QString name = simpleSaveName(fileName(), type());
    return name.isEmpty() ? QString() : pathOf(name);
}

bool frmSimpleSave::takeChoice() {
    if (path().isEmpty()) {
        return false;
    }
    if (!QDir().mkpath(folder())) {
        showError(folder() + "\n\n" + qt_error_string(QFileInfo::exists(folder()) ? ENOTDIR : EACCES));
        return false;
    }
    return true;
}

frmSimpleSave::Result frmSimpleSave::ask() {
    setFolder(photoFolder(m_ctx));
    txtFile->setText(freeSaveName(folder(), m_ctx.texts.text("MyPicture")));
    txtFile->selectAll();
    switch (run()) {
    case Ending::OK:
        return Result::Save;
    case Ending::More:
        return Result::More;
    case Ending::Cancelled:
        break;
    }
    return Result::Cancelled;
}

} // namespace lumora

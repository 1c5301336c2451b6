#include "dialogs/frmSimpleOpen.h"

#include "dialogs/PhotoList.h"
#include "imaging/PictureFile.h"
#include "session/AppContext.h"
#include "session/LoadSettings.h"
#include "session/MyPictures.h"
#include "widgets/Accessibility.h"
#include "widgets/AnimatedButton.h"
#include "widgets/WindowTexts.h"

#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QVBoxLayout>

namespace lumora {

namespace {

/// The sample groups: the subfolder of each in the folder of sample photos. Some names and captions differ.
struct GroupRow {
    const char *button;
    const char *icon;
    const char *folder;
};

constexpr GroupRow groups[] = {
    {"cmdGrp1", "group1", "animals"},
    {"cmdGrp2", "group2", "backgrounds for stories"},
    {"cmdGrp3", "group3", "geographical features"},
    {"cmdGrp4", "group4", "machines"},
    {"cmdGrp5", "group5", "old buildings"},
};

constexpr int lowScreen = 620; // pixels, below which the groups get smaller

const QStringList &photoPatterns() {
    static const QStringList patterns = [] {
        QStringList all;
        for (const QStringList &format : readableExtensions()) {
            for (const QString &extension : format) {
                all << "*." + extension;
            }
        }
        return all;
    }();
    return patterns;
}

} // namespace

frmSimpleOpen::frmSimpleOpen(AppContext &ctx, const QString &name, QWidget *owner)
    : SimpleFileDialog(ctx, name, owner, "open"), lblFiles(new QLabel(this)), lblSelectedFile(new QLabel(this)),
      File1(new PhotoList(this)),
      cmdMyPictures(new PictureButton("my-pictures", PictureButton::CaptionPlace::Beside, this)) {
    lblFiles->setObjectName("lblFiles");
    lblFiles->setBuddy(File1);
    lblSelectedFile->setObjectName("lblSelectedFile");
    lblSelectedFile->setBuddy(txtFile);
    File1->setObjectName("File1");
    layOut();
    showTexts(m_ctx.texts, *this);
    const auto takeName = [this] {
        if (const QString chosen = File1->chosenName(); !chosen.isEmpty()) {
            txtFile->setText(chosen);
        }
    };
    connect(txtFile, &QLineEdit::textChanged, this, [this](const QString &typed) {
        cmdOK->setInviting(!typed.isEmpty() && typed == File1->chosenName()); // the next thing to press
    });
    connect(File1, &QListWidget::itemSelectionChanged, this, takeName);
    connect(File1, &QListWidget::itemClicked, this, takeName);
    connect(File1, &QListWidget::itemActivated, this, &frmSimpleOpen::pressOK);
    connect(File1, &PhotoList::chosenUnreadable, txtFile, &QLineEdit::clear);
}

QBoxLayout *frmSimpleOpen::groupColumn() {
    auto *column = new QVBoxLayout;
    const bool isLow = screen()->availableSize().height() < lowScreen;
    const int pictureSize = isLow ? 36 : 48; // pixels
    column->setSpacing(isLow ? 6 : 8);
    cmdMyPictures->setObjectName("cmdMyPictures");
    cmdMyPictures->setLook(PictureButton::Look::Raised);
    cmdMyPictures->setPictureSize(pictureSize);
    cmdMyPictures->setCheckable(true);
    setAccessibleRole(*cmdMyPictures, QAccessible::RadioButton);
    connect(cmdMyPictures, &QAbstractButton::clicked, this, &frmSimpleOpen::showMyPictures);
    column->addWidget(cmdMyPictures);
    for (const GroupRow &group : groups) {
        auto *button = new PictureButton(group.icon, PictureButton::CaptionPlace::Beside, this);
        button->setObjectName(group.button);
        button->setLook(PictureButton::Look::Raised);
        button->setPictureSize(pictureSize);
        button->setCheckable(true);
        setAccessibleRole(*button, QAccessible::RadioButton);
        button->setProperty("folder", m_ctx.installation.samplesFolder() + '/' + group.folder);
        connect(button, &QAbstractButton::clicked, this,
                [this, button] { showGroup(button->property("folder").toString()); });
        column->addWidget(button);
        m_groups += button;
    }
    column->addStretch(1);
    return column;
}

void frmSimpleOpen::layOut() {
    auto *list = new QVBoxLayout;
    list->setSpacing(4);
    list->addWidget(lblFiles);
    list->addWidget(File1, 1);
    auto *upper = new QHBoxLayout;
    upper->setSpacing(16);
    upper->addLayout(groupColumn());
    upper->addLayout(list, 1);

    auto *name = new QVBoxLayout;
    name->setSpacing(4);
    name->addWidget(lblSelectedFile);
    name->addWidget(txtFile);
    auto *lower = new QHBoxLayout;
    lower->setSpacing(12);
    lower->addWidget(cmdAdvCMDLG, 0, Qt::AlignBottom);
    lower->addLayout(name, 1);
    lower->addWidget(cmdOK, 0, Qt::AlignBottom);
    lower->addWidget(cmdCancel, 0, Qt::AlignBottom);
    body()->addLayout(upper, 1);
    body()->addLayout(lower);
    setTabOrder(cmdMyPictures, m_groups.first());
    QWidget *before = m_groups.last();
    for (QWidget *next : std::initializer_list<QWidget *>{File1, cmdAdvCMDLG, txtFile, cmdOK, cmdCancel}) {
        setTabOrder(before, next);
        before = next;
    }
    File1->setFocus();
}

void frmSimpleOpen::LoadMySettings() {
    const QString start = photoFolder(m_ctx);
    setFolder(start);
    markGroup();
    File1->setAccessibleName(lblFiles->text()); // a list does not take that of its label
    File1->setEmptyHint(m_ctx.texts.text("NoPhotosHere"), isRightToLeft() ? "right" : "left");
    if (const QString problem = File1->showFolder(start, photoPatterns()); !problem.isEmpty()) {
        showError(problem);
    }
}

/// Who has no photo of their own yet sees pictures to choose from at once: those of the first group that has any.
void frmSimpleOpen::leadToSamples() {
    for (PictureButton *button : std::as_const(m_groups)) {
        const QString samples = button->property("folder").toString();
        if (File1->count() == 0 && !QDir(samples).entryList(photoPatterns(), QDir::Files).isEmpty()) {
            showGroup(samples);
        }
    }
}

void frmSimpleOpen::showGroup(const QString &folder) {
    File1->setEmptyHint(m_ctx.texts.text("NoPhotosHere"), isRightToLeft() ? "right" : "left");
    const QString problem = File1->showFolder(folder, photoPatterns());
    if (problem.isEmpty()) {
        m_showsMine = false;
        setFolder(folder);
        txtFile->clear();
    }
    markGroup();
    if (!problem.isEmpty()) {
        showError(problem);
        showError(m_ctx.texts.text("MsgReinstall"));
    }
}

/// The folder stays what it was: a typed name and "More..." are about it.
void frmSimpleOpen::showMyPictures() {
    m_showsMine = true;
    File1->setEmptyHint(m_ctx.texts.text("NoMyPictures"), "my-pictures");
    QList<ListedPhoto> photos;
    for (const MyPicture &picture : myPictures(m_ctx)) {
        photos +=
            {picture.path, picture.caption, picture.thrownAway ? m_ctx.texts.text("PictureThrownAway") : QString()};
    }
    File1->showPhotos(photos);
    setTitleEnd(cmdMyPictures->text());
    txtFile->clear();
    markGroup();
}

void frmSimpleOpen::markGroup() {
    cmdMyPictures->setChecked(m_showsMine);
    for (PictureButton *button : std::as_const(m_groups)) {
        button->setChecked(!m_showsMine && button->property("folder") == folder());
    }
}

bool frmSimpleOpen::takeChoice() {
    const bool isChosen = m_showsMine && fileName() == File1->chosenName();
    m_ctx.fields.txtSimplePath = isChosen ? File1->chosenPath() : pathOf(fileName());
    return true;
}

frmSimpleOpen::Result frmSimpleOpen::ask() {
    LoadMySettings();
    leadToSamples();
    switch (run()) {
    case Ending::OK:
        return Result::Open;
    case Ending::More:
        return Result::More;
    case Ending::Cancelled:
        break;
    }
    return Result::Cancelled;
}

} // namespace lumora

#include "dialogs/frmSimpleOpen.h"

#include "dialogs/PhotoList.h"
#include "imaging/PictureFile.h"
#include "session/AppContext.h"
#include "session/LoadSettings.h"
#include "widgets/AnimatedButton.h"
#include "widgets/WindowTexts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
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
      File1(new PhotoList(this)) {
    lblFiles->setObjectName("lblFiles");
    lblFiles->setBuddy(File1);
    lblSelectedFile->setObjectName("lblSelectedFile");
    lblSelectedFile->setBuddy(txtFile);
    File1->setObjectName("File1");
    File1->setEmptyHint(ctx.texts.text("NoPhotosHere"), layoutDirection() == Qt::RightToLeft ? "right" : "left");
    layOut();
    showTexts(m_ctx.texts, *this);
    const auto takeName = [this] {
        if (const QString chosen = File1->chosenName(); !chosen.isEmpty()) {
            txtFile->setText(chosen);
        }
    };
    connect(File1, &QListWidget::itemSelectionChanged, this, takeName);
    connect(File1, &QListWidget::itemClicked, this, takeName);
    connect(File1, &QListWidget::itemActivated, this, &frmSimpleOpen::pressOK);
    connect(File1, &PhotoList::chosenUnreadable, txtFile, &QLineEdit::clear);
}

QBoxLayout *frmSimpleOpen::groupColumn() {
    auto *column = new QVBoxLayout;
    column->setSpacing(8);
    for (const GroupRow &group : groups) {
        auto *button = new PictureButton(group.icon, PictureButton::CaptionPlace::Beside, this);
        button->setObjectName(group.button);
        button->setLook(PictureButton::Look::Raised);
        button->setPictureSize(48);
        button->setCheckable(true);
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
    if (const QString problem = File1->showFolder(start, photoPatterns()); !problem.isEmpty()) {
        showError(problem);
    }
}

void frmSimpleOpen::showGroup(const QString &folder) {
    const QString problem = File1->showFolder(folder, photoPatterns());
    if (problem.isEmpty()) {
        setFolder(folder);
        txtFile->clear();
    }
    markGroup();
    if (!problem.isEmpty()) {
        showError(problem);
        showError(m_ctx.texts.text("MsgReinstall"));
    }
}

void frmSimpleOpen::markGroup() {
    for (PictureButton *button : std::as_const(m_groups)) {
        button->setChecked(button->property("folder") == folder());
    }
}

bool frmSimpleOpen::takeChoice() {
    m_ctx.fields.txtSimplePath = pathOf(fileName());
    return true;
}

frmSimpleOpen::Result frmSimpleOpen::ask() {
    LoadMySettings();
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

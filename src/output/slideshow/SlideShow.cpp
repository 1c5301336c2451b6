#include "output/slideshow/SlideShow.h"

#include "base/NameOrder.h"
#include "output/slideshow/ScreenAwake.h"
#include "output/slideshow/SlidePicture.h"
#include "output/slideshow/frmSlideShow.h"
#include "session/AppContext.h"
#include "session/LoadSettings.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <algorithm>
#include <limits>
#include <utility>

namespace lumora {

namespace {

constexpr int documentsFolder = 5;

/// Judged by the last four characters of the name, so that .jpeg counts.
bool isForSlideshow(const QString &name) {
    static const QStringList endings = {".jpg", "jpeg", ".gif", ".bmp", ".png"};
    return endings.contains(name.right(4).toLower());
}

} // namespace

SlideShow::SlideShow(AppContext &ctx, QWidget *owner)
    : QObject(owner), m_ctx(ctx), m_owner(owner), tmrSlideShow(new QTimer(this)) {
    tmrSlideShow->setObjectName("tmrSlideShow");
    connect(tmrSlideShow, &QTimer::timeout, this, &SlideShow::tick);
    connect(&m_loader, &SlideLoader::found, this, [this](const Slide &slide) {
        m_next = slide;
        showNext();
    });
}

SlideShow::~SlideShow() = default;

int SlideShow::interval(int seconds) {
    constexpr int milliseconds = 1000;
    return std::clamp(seconds, 1, std::numeric_limits<int>::max() / milliseconds) * milliseconds;
}

// --- What is shown --------------------------------------------------------------------------------------------------

void SlideShow::SetupSlideShow() {
    QFileDialog dialog(m_owner, m_ctx.texts.text("DlgSSBrowse"));
    dialog.setObjectName("dlgSSBrowse");
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    for (const QString &folder : {m_lastPath, workingDirectory(m_ctx), GetSpecialFolderPath(documentsFolder)}) {
        if (!folder.isEmpty() && QFileInfo(folder).isDir()) {
            dialog.setDirectory(folder);
            break;
        }
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return;
    }
    txtSSPath = QDir::cleanPath(dialog.selectedFiles().constFirst());
    m_lastPath = txtSSPath;
    tmrSlideShow->start();
}

QString SlideShow::BrowseForFolder() {
    SetupSlideShow();
    return txtSSPath;
}

void SlideShow::listFiles(QStringList &list) {
    list.clear();
    const QString folder = BrowseForFolder();
    if (folder.isEmpty()) {
        return;
    }
    QStringList names;
    m_ctx.tasks.run([&] { // a folder may be large, or far away
        names = QDir(folder).entryList(QDir::Files, QDir::Unsorted);
        names.removeIf([](const QString &name) { return !isForSlideshow(name); });
        sortByName(names);
    });
    list = names;
}

// --- The show -------------------------------------------------------------------------------------------------------

void SlideShow::start() {
    m_current = -1;
    listFiles(listBoxName);
    if (txtSSPath.isEmpty()) {
        return;
    }
    m_window = new frmSlideShow(m_ctx.texts, m_owner);
    connect(m_window, &frmSlideShow::pauseWanted, this, &SlideShow::togglePause);
    connect(m_window, &frmSlideShow::roomChanged, this, &SlideShow::lookForNext);
    // Not before: decoding beside the cross-fade would make it jerk, and take memory while there are two pictures.
    connect(m_window->XShow1(), &SlidePicture::changed, this, &SlideShow::lookForNext);
    connect(m_window, &QDialog::finished, this, &SlideShow::end);
    m_awake = std::make_unique<ScreenAwake>(m_ctx.texts.text("ApplicationName"), m_ctx.texts.text("Slideshow"));
    m_window->showModal();
    m_isDue = false; // the timer may have ticked while a large folder was listed
    lookForNext();
    tmrSlideShow->start(0); // nobody waits for the first picture
}

void SlideShow::tick() {
    tmrSlideShow->setInterval(interval(m_ctx.fields.txtSSSFX));
    m_isDue = true;
    if (m_next && m_next->index < 0) {
        lookForNext(); // none could be shown; the folder may have come back
    }
    showNext();
}

/// Has the picture after the current one decoded for the window as it is now.
void SlideShow::lookForNext() {
    m_next.reset();
    if (m_window == nullptr || listBoxName.isEmpty()) {
        return;
    }
    const int first = m_current >= listBoxName.size() - 1 ? 0 : m_current + 1;
    m_loader.find(txtSSPath, listBoxName, first, m_window->XShow1()->room());
}

/// Shows the next picture once it is both due and decoded.
void SlideShow::showNext() {
    if (!m_isDue || !m_next || m_next->index < 0 || m_window == nullptr) {
        return;
    }
    m_isDue = false;
    const Slide slide = *std::exchange(m_next, std::nullopt);
    m_current = slide.index;
    SlidePicture *show = m_window->XShow1();
    show->setPicture(slide.picture);
    show->setAccessibleName(listBoxName.value(m_current));
    Q_EMIT shown();
}

void SlideShow::togglePause() {
    if (tmrSlideShow->isActive()) {
        tmrSlideShow->stop();
        m_isDue = false; // the picture on the screen stays
    } else {
        tmrSlideShow->start();
    }
    m_window->showPaused(!tmrSlideShow->isActive());
}

void SlideShow::end() {
    tmrSlideShow->stop();
    txtSSPath.clear();
    m_loader.drop();
    m_next.reset();
    m_isDue = false;
    m_awake.reset();
    m_window = nullptr;
}

} // namespace lumora

#include "LumoraProgram.h"

#include "LumoraOrder.h"
#include "app/PersonalLook.h"
#include "session/DoEvents.h"
#include "session/ForMe.h"
#include "view/PhotoView.h"
#include "widgets/StatusLine.h"
#include "window/frmMain.h"

#include <QApplication>
#include <algorithm>

namespace lumora::play {

namespace {

QString yesNo(bool value) {
    return value ? "1" : "0";
}

} // namespace

void LumoraProgram::setting(const QString &section, const QString &key, const QString &value, Whose whose) {
    AppContext &context = m_main.context();
    const Installation &where = context.installation;
    const bool isUsersOwn = section == rowOf(Setting::ForMeSeen).section;
    context.ini.WriteIniValue(whose == Whose::Sites ? where.siteFile
                              : isUsersOwn          ? where.usersFile()
                                                    : where.settingsFile(),
                              section, key, value);
    context.ini.lookAgain();
}

QString LumoraProgram::start(const QStringList &words) {
    Settings &settings = m_main.context().settings;
    if (!settings.isInFile<Setting::ForMeSeen>()) { // its page comes by itself only where a script asks for it
        settings.write<Setting::ForMeSeen, Writer::ForMe>(true);
    }
    if (readForMe(settings) != ForMe()) { // set by the script: the look was shown before
        showPersonalLook(*qApp, readForMe(settings));
    }
    const QString mode = words.value(0);
    const QString photo = words.value(1);
    const QString commandLine = mode == "simple" ? "/s" : mode.isEmpty() ? "" : photo.isEmpty() ? "/a" : photo;
    return m_main.Main(commandLine) ? QString() : QString("%1 opens no window").arg(commandLine);
}

bool LumoraProgram::takesInput() const {
    return !isInDoEvents();
}

QWidget *LumoraProgram::canvas() const {
    const frmMain *window = m_main.mainWindow();
    const auto *view = window == nullptr ? nullptr : window->findChild<PhotoView *>();
    return view == nullptr || picture().isNull() ? nullptr : view->viewport();
}

QPoint LumoraProgram::onCanvas(QPoint picturePixel) const {
    const auto *view = m_main.mainWindow()->findChild<PhotoView *>();
    return view->toView(QPointF(picturePixel) + QPointF(0.5, 0.5)).toPoint();
}

QImage LumoraProgram::picture() const {
    return m_main.context().photo.picCanvas();
}

QImage LumoraProgram::marked() const {
    const PhotoSelection &selection = m_main.context().photo.selection();
    if (selection.isEmpty()) {
        return {};
    }
    QImage mask(picture().size(), QImage::Format_Grayscale8);
    mask.fill(0);
    const Region &region = selection.region(mask.size());
    for (int y = 0; y < mask.height(); ++y) {
        for (const Region::Span &span : region.row(y)) {
            std::fill(mask.scanLine(y) + span.begin, mask.scanLine(y) + span.end, uchar{255});
        }
    }
    return mask;
}

bool LumoraProgram::isLeftAlone(const QWidget &widget, Walk walk) const {
    return walk == Walk::Photo ? leavesOrReplaces(widget) : leavesTheProgram(widget);
}

bool LumoraProgram::isMoving() const {
    const frmMain *window = m_main.mainWindow();
    return window != nullptr && isPanelSliding(*window);
}

bool LumoraProgram::isAtRest() const {
    const frmMain *window = m_main.mainWindow();
    return window != nullptr && hasArrowOnly(*window);
}

std::function<QString()> LumoraProgram::orderCheck(Walk walk) const {
    const frmMain *window = m_main.mainWindow();
    return window == nullptr ? [] { return QString("there is no main window"); }
                             : orderOf(*window, m_main.context(), walk);
}

Program::State LumoraProgram::state() const {
    const AppContext &context = m_main.context();
    const PhotoDocument &photo = context.photo;
    const ToolFlags &flags = context.flags;
    const frmMain *window = m_main.mainWindow();
    const auto *status = window == nullptr ? nullptr : window->findChild<StatusLine *>("SBar");
    return {
        {"PhotoLoaded", yesNo(photo.PhotoLoaded())},
        {"PhotoModified", yesNo(photo.PhotoModified())},
        {"SimpleModeOn", yesNo(flags.SimpleModeOn)},
        {"SelectionActive", yesNo(flags.SelectionActive())},
        {"SelectionKind", QString::number(static_cast<int>(flags.SelectionKind()))},
        {"size", QString("%1x%2").arg(photo.picCanvas().width()).arg(photo.picCanvas().height())},
        {"zoom", QString::number(photo.zoom())},
        {"magnify", yesNo(photo.magnify())},
        {"drawingMode", QString::number(static_cast<int>(photo.drawingMode()))},
        {"undo", QString::number(photo.history().undoSteps())},
        {"redo", QString::number(photo.history().redoSteps())},
        {"CurrentFileName", photo.CurrentFileName},
        {"status", status == nullptr ? QString() : status->text()},
    };
}

} // namespace lumora::play

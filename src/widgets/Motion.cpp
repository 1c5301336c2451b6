#include "widgets/Motion.h"

#include <QCoreApplication>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>

namespace lumora {

namespace {

bool filesAllowMotion() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    const QSettings kde(folder + "/kdeglobals", QSettings::IniFormat);
    if (kde.value("KDE/AnimationDurationFactor", 1.0).toDouble() <= 0.0) {
        return false;
    }
    for (const char *version : {"gtk-3.0", "gtk-4.0"}) {
        const QSettings gtk(folder + '/' + version + "/settings.ini", QSettings::IniFormat);
        const QString wanted = gtk.value("Settings/gtk-enable-animations", "1").toString().toLower();
        if (wanted == "0" || wanted == "false") {
            return false;
        }
    }
    return true;
}

bool isCalm = false;

bool isGnomeLike() {
    const QString desktop = qEnvironmentVariable("XDG_CURRENT_DESKTOP").toLower();
    return desktop.contains("gnome") || desktop.contains("unity") || desktop.contains("pantheon");
}

/// GNOME keeps this setting in its own database; its command line program reads it without delaying the start.
void askGnome(bool &wanted) {
    const QString program = QStandardPaths::findExecutable("gsettings");
    if (program.isEmpty() || !QCoreApplication::instance()) {
        return;
    }
    auto *process = new QProcess(QCoreApplication::instance());
    QObject::connect(process, &QProcess::finished, process, [process, &wanted] {
        wanted = wanted && process->readAllStandardOutput().trimmed() != "false";
        process->deleteLater();
    });
    process->start(program, {"get", "org.gnome.desktop.interface", "enable-animations"});
}

} // namespace

bool motionWanted() {
    static bool wanted = true;
    static const bool asked = [] {
        if (qEnvironmentVariableIsSet("LUMORA_MOTION")) {
            wanted = qEnvironmentVariable("LUMORA_MOTION") != "0";
            return true;
        }
        wanted = filesAllowMotion();
        if (isGnomeLike()) {
            askGnome(wanted);
        }
        return true;
    }();
    return asked && wanted && !isCalm;
}

void setCalm(bool calm) {
    isCalm = calm;
}

} // namespace lumora

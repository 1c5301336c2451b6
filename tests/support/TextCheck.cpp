#include "support/TextCheck.h"

#include "base/Texts.h"
#include "widgets/WindowTexts.h"

#include <QAbstractButton>
#include <QFile>
#include <QWidget>

namespace lumora::test {
namespace {

/// The property in which a row's text is seen.
QByteArray seenProperty(const TextRow &row) {
    const QByteArray property(row.property);
    if (property.startsWith("itemText:") || property == "append") {
        return "text";
    }
    return property.startsWith("item:") ? QByteArray("toolTip") : property;
}

/// What is wrong with a row in this window; empty when its text shows.
QString fault(const TextRow &row, QWidget &window) {
    QWidget *control = controlOfText(row, window);
    if (control == nullptr) {
        return QStringLiteral("no such control");
    }
    const QByteArray property = seenProperty(row);
    const QString shown = control->property(property).toString();
    QString expected = changedText(QString::fromUtf8(row.identifier));
    const QString plain = QString(expected).replace("&&", "&");
    const bool isButton = qobject_cast<QAbstractButton *>(control) != nullptr;
    if (!(isButton && property == "text") && property != "title") {
        expected = plain;
    }
    if (!shown.contains(expected)) {
        return QStringLiteral("shows \"%1\"").arg(shown);
    }
    if (isButton && control->accessibleName() != plain) {
        return QStringLiteral("is read aloud as \"%1\"").arg(control->accessibleName());
    }
    return {};
}

} // namespace

QString changedText(const QString &identifier) {
    return QStringLiteral("ß ") + identifier + QStringLiteral(" && ☺");
}

bool writeChangedLanguageFile(const QString &file) {
    QFile out(file);
    if (!out.open(QIODevice::WriteOnly)) {
        return false;
    }
    for (const TextRow &row : allTexts()) {
        const QString identifier = QString::fromUtf8(row.identifier);
        out.write(QStringLiteral("[%1]\nCaption=%2\n").arg(identifier, changedText(identifier)).toUtf8());
    }
    return out.flush();
}

QStringList textsNotShown(QWidget &window, const QStringList &notBuiltYet) {
    QStringList faults;
    for (const TextRow &row : allTexts()) {
        if (qstrcmp(row.control, "-") == 0 || !isTextOf(row, window.objectName())) {
            continue;
        }
        const QString name = QString::fromUtf8(row.control);
        if (notBuiltYet.contains(name)) {
            if (window.findChild<QWidget *>(name) != nullptr) {
                faults << name + ": is built, take it off the list";
            }
            continue;
        }
        if (const QString wrong = fault(row, window); !wrong.isEmpty()) {
            faults << QString::fromUtf8(row.identifier) + ": " + name + ' ' + QString::fromUtf8(row.property) + ' ' +
                          wrong;
        }
    }
    return faults;
}

} // namespace lumora::test

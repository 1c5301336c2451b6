#include "support/TextCheck.h"

#include "base/Texts.h"
#include "widgets/WindowTexts.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QRegularExpression>
#include <QWidget>

namespace lumora::test {
namespace {

const QChar changeMark(0x263A); // a smiling face, which is in every changed text

/// The property in which a row's text is seen.
QByteArray seenProperty(const TextRow &row) {
    const QByteArray property(row.property);
    if (property.startsWith("itemText:") || property == "append") {
        return "text";
    }
    return property.startsWith("item:") ? QByteArray("toolTip") : property;
}

/// The error of a row in this window; empty when its text is shown.
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

/// The visible and accessible texts of one control, each with its property.
QList<std::pair<QString, QString>> seenTexts(const QWidget &widget) {
    QList<std::pair<QString, QString>> texts;
    for (const char *property : {"text", "title", "toolTip", "statusTip", "whatsThis", "placeholderText",
                                 "accessibleName", "accessibleDescription"}) {
        const bool typed = qobject_cast<const QLineEdit *>(&widget) != nullptr && qstrcmp(property, "text") == 0;
        if (!typed) { // the user's own text
            texts.emplace_back(property, widget.property(property).toString());
        }
    }
    if (widget.isWindow()) {
        texts.emplace_back("windowTitle", widget.windowTitle());
    }
    if (const auto *box = qobject_cast<const QComboBox *>(&widget)) {
        for (int i = 0; i < box->count(); ++i) {
            texts.emplace_back("item", box->itemText(i));
        }
    }
    for (const QAction *action : widget.actions()) {
        texts.emplace_back("action", action->text());
    }
    return texts;
}

} // namespace

QStringList textsOfTheCode(const QWidget &window) {
    static const QRegularExpression letter("\\p{L}");
    QStringList faults;
    QList<const QWidget *> widgets = window.findChildren<const QWidget *>();
    widgets.prepend(&window);
    for (const QWidget *widget : std::as_const(widgets)) {
        for (const auto &[place, text] : seenTexts(*widget)) {
            if (text.contains(letter) && !text.contains(changeMark) && !text.startsWith('/') && !text.contains('@')) {
                faults << widget->objectName() + ' ' + place + ": " + text;
            }
        }
    }
    return faults;
}

QString changedText(const QString &identifier) {
    QString text = QStringLiteral("ß ") + identifier + QStringLiteral(" && ") + changeMark;
    for (const TextRow &row : allTexts()) {
        if (identifier == QLatin1StringView(row.identifier)) {
            for (int place = 1; QString::fromUtf8(row.defaultText).contains(QStringLiteral("%%1").arg(place));
                 ++place) {
                text += QStringLiteral(" %%1").arg(place);
            }
            break;
        }
    }
    return text;
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

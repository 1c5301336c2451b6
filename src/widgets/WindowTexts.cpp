#include "widgets/WindowTexts.h"

#include "base/Texts.h"

#include <QAbstractButton>
#include <QHash>
#include <QVariant>
#include <QWidget>

namespace lumora {
namespace {

/// The part of a row's property after "item:" or "itemText:"; empty for a control of its own.
QString itemKey(const TextRow &row) {
    const QString property = QString::fromUtf8(row.property);
    return property.startsWith("item") ? property.section(':', 1) : QString();
}

/// As it is read aloud: without the '&' that marks a button's letter key.
QString withoutMnemonic(QString text) {
    text.replace("&&", QChar(QChar::Null));
    text.remove('&');
    return text.replace(QChar(QChar::Null), "&");
}

/// Sets a text property; buttons turn "&&" into one ampersand themselves, everything else gets it done here.
void setTextProperty(QWidget &control, const char *property, const QString &text) {
    const bool shortcuts = qstrcmp(property, "title") == 0 ||
                           (qstrcmp(property, "text") == 0 && qobject_cast<QAbstractButton *>(&control) != nullptr);
    control.setProperty(property, shortcuts ? text : QString(text).replace("&&", "&"));
}

void show(QWidget &control, const TextRow &row, const QString &text) {
    const QByteArray property(row.property);
    if (property == "append") {
        setTextProperty(control, "text", control.property("text").toString() + "\n\n" + text);
        return;
    }
    const bool isItem = property.startsWith("item");
    if (!isItem) {
        setTextProperty(control, row.property, text);
    } else {
        setTextProperty(control, "toolTip", text);
        if (property.startsWith("itemText:")) {
            setTextProperty(control, "text", text);
        }
    }
    if (isItem || qobject_cast<QAbstractButton *>(&control) != nullptr) {
        control.setAccessibleName(withoutMnemonic(text));
    }
}

/// The name of the dynamic property that keeps which text is shown in a property.
QByteArray keeperOf(const char *property) {
    return QByteArray("identifierOf_") + property;
}

/// The control itself, or the item of it that the row names.
QWidget *partOfText(const TextRow &row, QWidget *control) {
    const QString key = itemKey(row);
    if (control == nullptr || key.isEmpty()) {
        return control;
    }
    for (QWidget *item : control->findChildren<QWidget *>()) {
        if (item->property("key").toString() == key) {
            return item;
        }
    }
    return nullptr;
}

/// The controls below a window by their names; of several the one that findChild returns. A window has hundreds of
/// texts: looking for each control by itself would take a thirtieth of the program's start.
void collectControls(const QObject &parent, QHash<QString, QWidget *> &controls) {
    for (QObject *child : parent.children()) {
        if (const QString name = child->objectName();
            child->isWidgetType() && !name.isEmpty() && !controls.contains(name)) {
            controls.insert(name, static_cast<QWidget *>(child));
        }
    }
    for (const QObject *child : parent.children()) {
        collectControls(*child, controls);
    }
}

constexpr const char *ownProperties[] = {"text", "toolTip", "placeholderText"};

} // namespace

void showText(const Texts &texts, QWidget &control, const char *identifier, const char *property) {
    control.setProperty(keeperOf(property).constData(), QByteArray(identifier));
    setTextProperty(control, property, texts.text(QString::fromUtf8(identifier)));
}

QWidget *controlOfText(const TextRow &row, QWidget &window) {
    const QString name = QString::fromUtf8(row.control);
    return partOfText(row, name.isEmpty() ? &window : window.findChild<QWidget *>(name));
}

void showTexts(const Texts &texts, QWidget &window) {
    QHash<QString, QWidget *> controls{{QString(), &window}};
    collectControls(window, controls);
    for (const TextRow &row : allTexts()) {
        if (qstrcmp(row.control, "-") == 0 || !isTextOf(row, window.objectName())) {
            continue;
        }
        if (QWidget *control = partOfText(row, controls.value(QString::fromUtf8(row.control)))) {
            show(*control, row, texts.text(QString::fromUtf8(row.identifier), QString::fromUtf8(row.defaultText)));
        }
    }
    for (QWidget *control : window.findChildren<QWidget *>()) {
        const QList<QByteArray> kept = control->dynamicPropertyNames();
        for (const char *property : ownProperties) {
            if (const QByteArray keeper = keeperOf(property); kept.contains(keeper)) {
                const QByteArray identifier = control->property(keeper.constData()).toByteArray();
                showText(texts, *control, identifier.constData(), property);
            }
        }
    }
}

} // namespace lumora

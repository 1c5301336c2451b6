#include "widgets/WindowTexts.h"

#include "base/Texts.h"

#include <QAbstractButton>
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

constexpr const char *ownProperties[] = {"text", "toolTip", "placeholderText"};

} // namespace

void showText(const Texts &texts, QWidget &control, const char *identifier, const char *property) {
    control.setProperty(keeperOf(property).constData(), QByteArray(identifier));
    setTextProperty(control, property, texts.text(QString::fromUtf8(identifier)));
}

QWidget *controlOfText(const TextRow &row, QWidget &window) {
    const QString name = QString::fromUtf8(row.control);
    auto *control = name.isEmpty() ? &window : window.findChild<QWidget *>(name);
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

void showTexts(const Texts &texts, QWidget &window) {
    for (const TextRow &row : allTexts()) {
        if (qstrcmp(row.control, "-") == 0 || !isTextOf(row, window.objectName())) {
            continue;
        }
        if (QWidget *control = controlOfText(row, window)) {
            show(*control, row, texts.text(QString::fromUtf8(row.identifier), QString::fromUtf8(row.defaultText)));
        }
    }
    for (QWidget *control : window.findChildren<QWidget *>()) {
        for (const char *property : ownProperties) {
            const QByteArray identifier = control->property(keeperOf(property).constData()).toByteArray();
            if (!identifier.isEmpty()) {
                showText(texts, *control, identifier.constData(), property);
            }
        }
    }
}

} // namespace lumora

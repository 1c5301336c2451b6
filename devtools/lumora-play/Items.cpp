#include "Items.h"

#include "Controls.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QDir>
#include <QMenu>
#include <QTabBar>
#include <QToolBar>

namespace lumora::play {

namespace {

bool isCalled(const QAction &action, const QString &key) {
    return action.property("key").toString() == key || action.data().toString() == key || action.objectName() == key ||
           withoutMnemonic(action.text()) == key;
}

FoundItem inMenu(QMenu &menu, const QString &key) {
    for (QAction *action : menu.actions()) {
        if (action->isVisible() && isCalled(*action, key)) {
            return {&menu, menu.actionGeometry(action), action->isEnabled()};
        }
    }
    return {};
}

/// `*` stands for anything.
bool isText(const QString &text, const QString &key) {
    return text == key || (key.contains('*') && QDir::match(key, text));
}

FoundItem inView(QAbstractItemView &view, const QString &key) {
    const QAbstractItemModel *model = view.model();
    for (int row = 0; model != nullptr && row < model->rowCount(view.rootIndex()); ++row) {
        const QModelIndex index = model->index(row, 0, view.rootIndex());
        if (isText(index.data().toString(), key) || index.data(Qt::UserRole).toString() == key) {
            view.scrollTo(index);
            return {view.viewport(), view.visualRect(index) & view.viewport()->rect(),
                    index.flags().testFlag(Qt::ItemIsEnabled)};
        }
    }
    return {};
}

FoundItem inTabs(QTabBar &tabs, const QString &key) {
    for (int index = 0; index < tabs.count(); ++index) {
        if (tabs.tabData(index).toString() == key || withoutMnemonic(tabs.tabText(index)) == key) {
            return {&tabs, tabs.tabRect(index), tabs.isTabEnabled(index)};
        }
    }
    return {};
}

FoundItem inBar(const QWidget &bar, const QString &key) {
    const auto parts = bar.findChildren<QWidget *>();
    for (QWidget *part : parts) {
        if (part->property("key").toString() == key) {
            return {part, {}, true};
        }
    }
    for (QWidget *part : parts) {
        const auto *button = qobject_cast<QAbstractButton *>(part);
        if (button != nullptr && withoutMnemonic(button->text()) == key) {
            return {part, {}, true};
        }
    }
    return {};
}

} // namespace

FoundItem findItem(QWidget &bar, const QString &key) {
    if (auto *menu = qobject_cast<QMenu *>(&bar)) {
        return inMenu(*menu, key);
    }
    if (auto *view = qobject_cast<QAbstractItemView *>(&bar)) {
        return inView(*view, key);
    }
    if (auto *tabs = qobject_cast<QTabBar *>(&bar)) {
        return inTabs(*tabs, key);
    }
    if (auto *toolBar = qobject_cast<QToolBar *>(&bar)) {
        for (QAction *action : toolBar->actions()) {
            if (isCalled(*action, key)) {
                return {toolBar->widgetForAction(action), {}, true};
            }
        }
    }
    return inBar(bar, key);
}

} // namespace lumora::play

// The items of a toolbar, list, menu or combo box.
#pragma once

#include <QRect>
#include <QString>

class QWidget;

namespace lumora::play {

/// A button of its own (area is null), or a part of a list or menu.
struct FoundItem {
    QWidget *widget = nullptr;
    QRect area; ///< in the widget's pixels
    bool enabled = true;
};

/// The item of `bar` whose dynamic property "key", whose data or whose text is `key`; no widget when there is none.
/// A list is scrolled so that its item is in view.
FoundItem findItem(QWidget &bar, const QString &key);

} // namespace lumora::play

// Takes the picture files that other programs drop on a window.
#pragma once

#include <QObject>

class QWidget;

namespace lumora {

class FileDrop : public QObject {
    Q_OBJECT

  public:
    /// Belongs to the window.
    explicit FileDrop(QWidget *window);

  Q_SIGNALS:
    /// The path of the first file. Not while a dialog is open. The other program waits until this returns.
    void dropped(const QString &path);

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};

} // namespace lumora

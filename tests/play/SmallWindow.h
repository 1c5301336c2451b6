// A small window with one of each control that the player supports, and a log of its events.
#pragma once

#include "Program.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QSlider>
#include <QSpinBox>

namespace lumora::play::test {

/// The photo: 40 x 30 pixels, each shown as 4 x 4; writes presses, moves and releases in picture pixels.
class Canvas : public QWidget {
  public:
    explicit Canvas(QStringList &diary, QWidget *parent);
    static constexpr int scale = 4;

  protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

  private:
    void write(const char *what, const QMouseEvent &event);
    QStringList &m_diary;
};

class SmallWindow : public QWidget {
  public:
    SmallWindow();
    QStringList diary;
    Canvas *canvas = nullptr;
    QImage marked;  ///< of the photo
    QString broken; ///< the log entry that is out of order
    int undoSteps = 3;

  private:
    QPushButton *button(const QString &name, const std::function<void()> &act);
    void addFields();
    void addCommands();
    void addHardToReach();
    void ask();
    void work();
};

class SmallProgram : public Program {
  public:
    SmallWindow window;

    void setting(const QString &section, const QString &key, const QString &value, Whose) override {
        window.setProperty(key.toLatin1(), section + ' ' + value);
    }
    QString start(const QStringList &words) override;
    bool takesInput() const override { return true; }
    QWidget *canvas() const override { return window.canvas; }
    QPoint onCanvas(QPoint pixel) const override { return pixel * Canvas::scale + QPoint(2, 2); }
    QImage picture() const override;
    QImage marked() const override;
    State state() const override;
    /// cmdOpen is the control that a walk at the photo must not use.
    bool isLeftAlone(const QWidget &widget, Walk walk) const override {
        return walk == Walk::Photo && widget.objectName() == "cmdOpen";
    }
    bool isMoving() const override { return false; }
    bool isAtRest() const override { return window.diary.last() == "escaped"; }
    std::function<QString()> orderCheck(Walk) const override;
};

} // namespace lumora::play::test

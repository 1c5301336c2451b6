#include "SmallWindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QFileDialog>
#include <QMenu>
#include <QMouseEvent>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>

namespace lumora::play::test {

namespace {

class HoverButton : public QPushButton {
  public:
    HoverButton(QStringList &diary, QWidget *parent) : QPushButton("hover", parent), m_diary(diary) {}

  protected:
    void enterEvent(QEnterEvent *event) override {
        m_diary << "entered";
        QPushButton::enterEvent(event);
    }

  private:
    QStringList &m_diary;
};

} // namespace

Canvas::Canvas(QStringList &diary, QWidget *parent) : QWidget(parent), m_diary(diary) {
    setObjectName("picCanvas");
    setFixedSize(40 * scale, 30 * scale);
    setMouseTracking(true);
}

void Canvas::write(const char *what, const QMouseEvent &event) {
    const QPoint point = event.position().toPoint();
    m_diary << QString("%1 %2,%3").arg(what).arg(point.x() / scale).arg(point.y() / scale);
}
void Canvas::mousePressEvent(QMouseEvent *event) {
    write("down", *event);
}
void Canvas::mouseMoveEvent(QMouseEvent *event) {
    write("over", *event);
}
void Canvas::mouseReleaseEvent(QMouseEvent *event) {
    write("up", *event);
}

SmallWindow::SmallWindow() {
    setObjectName("frmSmall");
    setWindowTitle("Small");
    new QVBoxLayout(this);
    addFields();
    addCommands();
    addHardToReach();
    canvas = new Canvas(diary, this);
    layout()->addWidget(canvas);
    auto *undo = new QShortcut(QKeySequence("Ctrl+Z"), this);
    connect(undo, &QShortcut::activated, this, [this] {
        diary << "undone";
        undoSteps = qMax(0, undoSteps - 1);
    });
    auto *escape = new QShortcut(QKeySequence("Esc"), this);
    connect(escape, &QShortcut::activated, this, [this] { diary << "escaped"; });
}

QPushButton *SmallWindow::button(const QString &name, const std::function<void()> &act) {
    auto *made = new QPushButton(name, this);
    made->setObjectName(name);
    layout()->addWidget(made);
    connect(made, &QPushButton::clicked, this, [this, name, act] {
        diary << name;
        act();
    });
    return made;
}

void SmallWindow::addFields() {
    const auto add = [this](QWidget *field, const QString &name) {
        field->setObjectName(name);
        layout()->addWidget(field);
    };
    add(new QLabel("a status   line", this), "SBar");
    add(new QLineEdit("old", this), "txtName");
    auto *slider = new QSlider(Qt::Horizontal, this);
    slider->setRange(-100, 100);
    add(slider, "sldValue");
    add(new QSpinBox(this), "spinValue");
    add(new QCheckBox("tick me", this), "chkShow");
    auto *combo = new QComboBox(this);
    combo->addItems({"BMP", "JPEG", "PNG"});
    add(combo, "cboFilter");
    auto *list = new QListWidget(this);
    for (int row = 0; row < 50; ++row) {
        list->addItem(QString("picture %1").arg(row));
    }
    list->setFixedHeight(60);
    add(list, "File1");
}

void SmallWindow::addCommands() {
    auto *bar = new QWidget(this);
    bar->setObjectName("Toolbar1");
    layout()->addWidget(bar);
    auto *row = new QHBoxLayout(bar);
    for (const char *key : {"keyUndo", "keyRedo"}) {
        auto *item = new QPushButton(bar);
        item->setProperty("key", key);
        item->setEnabled(qstrcmp(key, "keyUndo") == 0);
        row->addWidget(item);
        connect(item, &QPushButton::clicked, this, [this, key] { diary << key; });
    }
    button("cmdAsk", [this] { ask(); });
    button("cmdWork", [this] { work(); });
    button("cmdOpen", [this] { diary << QFileDialog::getOpenFileName(this, "Open"); });
    button("cmdMenu", [this] {
        QMenu menu(this);
        menu.addAction("&Half", this, [this] { diary << "half"; });
        menu.addAction("Full", this, [this] { diary << "full"; });
        menu.exec(mapToGlobal(QPoint(20, 20)));
    });
    button("cmdLater",
           [this] { QTimer::singleShot(300, this, [this] { findChild<QLabel *>("SBar")->setText("now"); }); });
    auto *hover = new HoverButton(diary, this);
    hover->setObjectName("cmdHover");
    layout()->addWidget(hover);
}

void SmallWindow::addHardToReach() {
    button("cmdOff", [] {})->setEnabled(false);
    button("cmdHidden", [] {})->hide();
    auto *area = new QScrollArea(this);
    area->setFixedHeight(40);
    auto *column = new QWidget;
    auto *low = new QPushButton("low", column);
    low->setObjectName("cmdLow");
    low->setGeometry(0, 500, 60, 30);
    auto *covered = new QPushButton("covered", column);
    covered->setObjectName("cmdCovered");
    auto *cover = new QWidget(column);
    cover->resize(covered->sizeHint());
    covered->resize(covered->sizeHint());
    column->setFixedSize(100, 600);
    connect(low, &QPushButton::clicked, this, [this] { diary << "cmdLow"; });
    area->setWidget(column);
    layout()->addWidget(area);
}

/// A modal window in a modal window.
void SmallWindow::ask() {
    for (const char *name : {"frmFirst", "frmSecond"}) {
        QDialog dialog(this);
        dialog.setObjectName(name);
        auto *yes = new QPushButton("&Yes", &dialog);
        yes->setObjectName("cmdYes");
        auto *rows = new QVBoxLayout(&dialog);
        rows->addWidget(yes);
        connect(yes, &QPushButton::clicked, &dialog, &QDialog::accept);
        diary << QString("%1 %2").arg(name).arg(dialog.exec());
    }
}

/// A long command that repaints and runs timers but accepts no input.
void SmallWindow::work() {
    const auto before = diary.size();
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < 250) {
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
    diary << (diary.size() == before ? "undisturbed" : "disturbed");
}

QString SmallProgram::start(const QStringList &words) {
    window.diary << "start " + words.join(' ');
    window.show();
    return words.value(1) == "nothing" ? "it opens no window" : QString();
}

QImage SmallProgram::picture() const {
    QImage picture(2, 1, QImage::Format_RGB32);
    picture.setPixel(0, 0, 0xff010203);
    picture.setPixel(1, 0, 0xff040506);
    return picture;
}

QImage SmallProgram::marked() const {
    return window.marked;
}

Program::State SmallProgram::state() const {
    return {{"started", window.diary.value(0)}, {"status", "a b"}, {"undo", QString::number(window.undoSteps)}};
}

std::function<QString()> SmallProgram::orderCheck(Walk) const {
    return [this] { return window.diary.contains(window.broken) ? QString("the order is gone") : QString(); };
}

} // namespace lumora::play::test

// A seeded random walk over all controls of a program, as a child of two would work it: clicks, drags, keys, whatever
// can be reached. After each action it looks whether the program is still in order. With a folder of files it goes
// everywhere, and gives the program these files as a desktop does.
#pragma once

#include "Program.h"

#include <QStringList>
#include <random>
#include <vector>

class QAbstractSlider;
class QFileDialog;

namespace lumora::play {

class Hand;

class Monkey {
  public:
    /// The same seed walks the same way through the same program. `count` actions; then Esc until nothing is open.
    /// With a folder: everywhere, its files are dropped, copied and chosen, and what is saved goes there.
    Monkey(Program &program, Hand &hand, unsigned seed, int count, const QString &folder = {});

    /// What is wrong after the last action, or what has still to come to its place, with the action's number and name;
    /// empty when all is well.
    QString problem() const;
    /// That reason as the report of the last action.
    QString report(const QString &reason) const;
    bool isDone() const;
    /// Plans the next action with the hand and says what it is: "12: click cmdTool8".
    QString act();

  private:
    int upTo(int count) { return static_cast<int>(m_dice() % static_cast<unsigned>(count)); }
    template <typename List> const auto &oneOf(const List &list) { return list[upTo(static_cast<int>(list.size()))]; }

    QString workPopup(QWidget &popup);
    QString workControl(QWidget &window);
    QString workPhoto(QWidget &window, QWidget &canvas);
    QString pressKey(QWidget &window);
    QString goElsewhere(QWidget &window);
    QString giveFile(QWidget &window);
    QString answer(QFileDialog &dialog);

    /// The controls of the window that can be reached, each group (a bar, a panel) for itself.
    std::vector<std::vector<QWidget *>> reachableControls(const QWidget &window) const;
    bool isLeftAlone(const QWidget *widget, Walk walk) const;
    QString work(QWidget &control, const std::vector<QWidget *> &others);
    QString slide(QAbstractSlider &slider);
    QString write(QWidget &field);
    QString press(QWidget &control, const std::vector<QWidget *> &others);
    QPoint anywhere(const QRect &area);
    QPoint onPhoto(const QWidget &canvas);

    Program &m_program;
    Hand &m_hand;
    std::mt19937 m_dice;
    int m_count;
    QString m_folder;
    QStringList m_files; ///< of the folder; empty for a walk at the photo
    Walk m_walk;
    int m_number = 0; ///< of the last action
    QString m_action;
    std::function<QString()> m_order;
};

} // namespace lumora::play

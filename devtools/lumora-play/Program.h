// What the player needs of the program that it plays. lumora-play gives it Lumora, the tests a small window.
#pragma once

#include <QImage>
#include <QPoint>
#include <QString>
#include <QStringList>
#include <functional>
#include <utility>
#include <vector>

class QWidget;

namespace lumora::play {

/// Where a random walk goes: to the photo and its tools, or to everything that does not leave the program.
enum class Walk { Photo, Everywhere };

class Program {
  public:
    Program() = default;
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;
    virtual ~Program() = default;

    enum class Whose { Users, Sites };
    /// Writes a value of the settings file, the user's or the administrator's for all, before the start.
    virtual void setting(const QString &section, const QString &key, const QString &value,
                         Whose whose = Whose::Users) = 0;
    /// Opens the first window as the words of the step say ("simple"; "advanced" and a photo; nothing). The problem
    /// when it opened none, else an empty text.
    virtual QString start(const QStringList &words) = 0;
    /// False while the program lets no input in although its event loop runs.
    virtual bool takesInput() const = 0;
    /// The widget that shows the photo; null when there is none.
    virtual QWidget *canvas() const = 0;
    /// Where a pixel of the photo (its centre) is in the canvas widget, in the widget's pixels.
    virtual QPoint onCanvas(QPoint picturePixel) const = 0;
    virtual QImage picture() const = 0;
    /// What is marked of the photo: a grey picture of its size, 255 where a pixel is marked; null when nothing is.
    virtual QImage marked() const = 0;

    using State = std::vector<std::pair<QString, QString>>;
    /// Flags, zoom, status line, selection: names and values, in the order in which "state" prints them.
    virtual State state() const = 0;
    /// Something slides to its place; what can be reached is known when it has come to a stop.
    virtual bool isMoving() const = 0;

    // For a random walk.
    /// Whether the walk has to leave this control (and all in it) alone.
    virtual bool isLeftAlone(const QWidget &widget, Walk walk) const = 0;
    /// Nothing is open, no tool is at work.
    virtual bool isAtRest() const = 0;
    /// A check that remembers how things are now and says later what is out of order; an empty text when nothing is.
    virtual std::function<QString()> orderCheck(Walk walk) const = 0;
};

} // namespace lumora::play

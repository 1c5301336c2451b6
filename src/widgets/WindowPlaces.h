// Windows of X whose place the toolkit has missed.
#pragma once

#include <QObject>
#include <set>

namespace lumora {

/// One for the application, see applyTheme. A window manager of X puts a new window into a frame, which is at 0, 0 for
/// a moment. If the toolkit asks just then where the window is, it believes 0, 0 from then on: the manager has moved
/// the window to where it was asked for, so it says nothing. Fingers, menus and lists would be elsewhere. So each
/// window is looked for once it is on the screen, and the toolkit is told what the manager should have said. Other
/// window systems do not let programs know places.
class WindowPlaces : public QObject {
    Q_OBJECT

  public:
    explicit WindowPlaces(QObject *parent);

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    std::set<const QObject *> m_coming; ///< shown, but not on the screen yet
};

} // namespace lumora

// Base class of the tools started by a button of the tool column, an item of its floating bar or the ideas window. The
// main window makes one tool for each row of its tool table and treats all of them alike.
#pragma once

#include <QObject>

class QWidget;

namespace lumora {

struct AppContext;
class CanvasMouse;
class FloatingToolbar;
class PhotoView;
class SelectionOutline;
class SlidingPanel;

class EditorTool : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

    /// Starts the tool; nothing happens without a photo. `key` is the item that was picked in its floating bar, empty
    /// for a tool without one. Returns true when it is now active: it is the current tool until close() or finished().
    /// Returns false when it has acted at once or could not start.
    virtual bool open(const QString &key) = 0;
    /// Ends it from any state, without finished(). A running drag and previews are discarded. Does nothing while it is
    /// not active.
    virtual void close() {}

    /// The panel that is open while it is active; null for a tool without a panel.
    virtual SlidingPanel *panel() const { return nullptr; }
    /// Whether it stays active when `next` starts, like a panel whose effect changes the selection being made.
    virtual bool staysFor(const EditorTool & /*next*/) const { return false; }
    /// Whether no other tool can be started in its current state.
    virtual bool excludesOthers() const { return false; }

    /// Makes the previews of its floating bar from the photo, all or only those that are updated whenever the bar
    /// opens.
    virtual void makeSmallPictures() {}
    virtual void barOpens() {}

  Q_SIGNALS:
    /// The user is done with it, or it has acted at once: the Arrow tool should become current.
    void finished();
    /// The result of excludesOthers() may have changed.
    void stateChanged();
    /// A message for the status line, and whether it reports success.
    void message(const QString &text, bool good);
    /// The status line's own text, until the photo changes.
    void statusText(const QString &text);
    /// To be shown in a message box before the signal returns.
    void noticeWanted(const QString &text);
    /// The tip that a selection has to be made first.
    void tipWanted();
    /// The whole photo should be in view.
    void fitWanted();
    /// Its button in the column should show this icon.
    void iconChanged(const QString &iconName);
    /// The previews that are made after every change should be made now, for all tools.
    void smallPicturesWanted();
};

/// The objects that a tool uses; all must outlive the tool.
struct ToolPlace {
    AppContext &ctx;
    PhotoView &view;
    CanvasMouse &mouse;
    SelectionOutline &outline;
    FloatingToolbar *bar; ///< of its button; null when it has none
    QWidget *window;      ///< becomes the parent of the tool, its panel and its tips
};

} // namespace lumora

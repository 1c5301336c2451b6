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

/// What a hint asks for on the photo.
enum class HintedAct { Click, Drag };

class EditorTool : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

    /// Starts the tool; nothing happens without a photo. `key` is the item that was picked in its floating bar, empty
    /// for a tool without one. Returns true when it is now active, until close() or finished(). Returns false when it
    /// has acted at once or could not start.
    virtual bool open(const QString &key) = 0;
    /// Ends it from any state, without finished(). A running drag and previews are discarded. Does nothing while it is
    /// not active.
    virtual void close() {}

    /// Whether the mouse on the photo is this tool's now: asked of CanvasMouse, never remembered.
    virtual bool hasMouse() const { return false; }
    /// The panel that is open while it is active; null for a tool without a panel.
    virtual SlidingPanel *panel() const { return nullptr; }
    /// Whether it stays active when `next` starts, like a panel whose effect changes the selection being made.
    virtual bool staysFor(const EditorTool & /*next*/) const { return false; }
    /// Whether it has the screen to itself in its current state: no other tool can be started.
    virtual bool excludesOthers() const { return false; }
    /// "Done" while it has: what is set up is applied, and it ends unless something is missing.
    virtual void accept() {}
    /// What is set up and would be lost becomes part of the photo: a command is about to use, save or replace that.
    virtual void settle() {}
    /// Whether Undo and Redo go through steps of its own now instead of the photo's; whether there is a step back or
    /// forward, and taking it.
    virtual bool hasOwnSteps() const { return false; }
    virtual bool canStep(bool /*back*/) const { return false; }
    virtual void step(bool /*back*/) {}

    /// The user has begun to use the window: previews of the photo are made from now on.
    virtual void makeReady() {}
    /// Makes the previews of its floating bar from the photo, all or only those that are updated whenever the bar
    /// opens.
    virtual void makeSmallPictures() {}
    virtual void barOpens() {}

  Q_SIGNALS:
    /// The user is done with it, or it has acted at once: the Arrow tool should become current.
    void finished();
    /// A message for the status line, and whether it reports success. It goes when the tool goes, unless that is no
    /// longer active. While the tool is active the mascot says it too.
    void message(const QString &text, bool good);
    /// What to do on the photo now, said by the mascot alone until the user has done it.
    void hint(const QString &text, HintedAct act);
    /// The status line's own text, until the photo changes.
    void statusText(const QString &text);
    /// To be shown in a message box before the signal returns.
    void noticeWanted(const QString &text);
    /// The tip that a selection has to be made first.
    void tipWanted();
    /// Of its own steps: what can be undone may have changed.
    void stepsChanged();
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

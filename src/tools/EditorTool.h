// What a button of the tool column, an item of its floating bar or the ideas window starts. The main window makes one
// tool for each row of its tool table and treats all of them alike.
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
    /// for a tool without one. True when it is at work from now on: it is the current tool until close() or
    /// finished(). False when it has acted at once or could not start.
    virtual bool open(const QString &key) = 0;
    /// Ends it from any state, without finished(). A drag that is under way and what was only shown are dropped.
    /// Nothing happens while it is not at work.
    virtual void close() {}

    /// What slides up while it is at work; null for a tool without a panel.
    virtual SlidingPanel *panel() const { return nullptr; }
    /// Whether it stays at work when `next` starts, as a panel whose effect changes what is being marked does.
    virtual bool staysFor(const EditorTool & /*next*/) const { return false; }
    /// Whether no other tool can be started while it is as it is now.
    virtual bool excludesOthers() const { return false; }

    /// Makes the small pictures of its floating bar from the photo, all or those that are to be fresh whenever the bar
    /// opens.
    virtual void makeSmallPictures() {}
    virtual void barOpens() {}

  Q_SIGNALS:
    /// The user is done with it, or it has done what it does at once: the Arrow tool is to be current.
    void finished();
    /// excludesOthers() may say something else now.
    void stateChanged();
    /// Something to say in the status line, and whether it is good news.
    void message(const QString &text, bool good);
    /// The status line's own text, until the photo changes.
    void statusText(const QString &text);
    /// To be answered in a message box before the signal returns.
    void noticeWanted(const QString &text);
    /// The tip that a selection has to be made first.
    void tipWanted();
    /// The whole photo is to be in view.
    void fitWanted();
    /// Its button in the column is to show this icon.
    void iconChanged(const QString &iconName);
    /// The small pictures that are made after every change are to be made now, those of all tools.
    void smallPicturesWanted();
};

/// What a tool is made with; all of it outlives the tool.
struct ToolPlace {
    AppContext &ctx;
    PhotoView &view;
    CanvasMouse &mouse;
    SelectionOutline &outline;
    FloatingToolbar *bar; ///< of its button; null where it has none
    QWidget *window;      ///< becomes the parent of the tool, its panel and its tips
};

} // namespace lumora

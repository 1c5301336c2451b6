// The tools behind the tool column and the floating bars: makes one for each row of the tool table, starts one and ends
// the one before, and shows in the column whose the mouse is. Independent of individual tools.
#pragma once

#include "tools/EditorTool.h"

#include <QList>
#include <QTimer>
#include <vector>

class QRect;

namespace lumora {

class AgainButton;
class Bubble;
class FloatingBarSet;
class HintBubble;
class PhotoBefore;
class PointedEffect;
class ToolColumn;
struct ToolRow;

class ToolSet : public QObject {
    Q_OBJECT

  public:
    /// Makes panels and tips as children of the window; the other widgets outlive it.
    ToolSet(AppContext &ctx, PhotoView &view, ToolColumn &column, FloatingBarSet &bars, QWidget *window);
    ~ToolSet() override;

    /// The user has begun to use the window: the previews of all tools are made from now on. May be called again.
    void makeReady();
    /// A button of the tool column was pressed, or a tool without one is requested by its name in the table.
    void press(const QString &control);
    /// An item of the floating bar of that button was picked.
    void pick(const QString &control, const QString &key);

    void HideFloatingToolbars();
    /// Closes an open slide-up panel and the tool that it belongs to.
    void HideBoxes();
    /// What the active tool has set up, and would lose, becomes part of the photo.
    void settle();
    /// The active tool where Undo and Redo go through its own steps; else null.
    EditorTool *toolWithSteps() const;
    /// Makes the Arrow tool current: ends the active tool and clears the selection.
    void ResetTools();
    /// Esc: closes what is open, one thing at a time.
    void escape();

    /// The part of the window for the photo, in the window's pixels: panels slide over its lower edge.
    void setArea(const QRect &area);
    /// The open panel, or null.
    SlidingPanel *openPanel() const;
    /// The button of the tool that is current, see ToolRow::control: the tool that has the mouse on the photo, without
    /// one the tool of the open panel, else the Arrow tool. The column shows it, or the tool whose bar is open.
    QString current() const;

  Q_SIGNALS:
    /// A tool is about to start: panels of others should be closed now, before its own opens.
    void toolWanted();
    /// A message for the status line, and whether it reports success.
    void message(const QString &text, bool good);
    /// That message was of a tool that is no longer active.
    void messageOver(const QString &text);
    /// The status line's text while a tool sets it.
    void statusText(const QString &text);
    /// To be shown in a message box before the signal returns.
    void noticeWanted(const QString &text);
    /// Everything that depends on the photo and the settings should be refreshed.
    void buttonsToRefresh();
    /// A panel has finished opening or was closed.
    void panelChanged();
    /// The whole photo should be in view.
    void fitWanted();
    /// The tool of that name in the table, started with that item of its floating bar, has changed the photo.
    void photoChangedBy(const QString &control, const QString &key);

  private:
    struct Entry {
        const ToolRow *row;
        EditorTool *tool; ///< null for the Arrow tool
    };

    void connectTool(const Entry &entry);
    void connectPanel(SlidingPanel &panel);
    void tabInto(SlidingPanel &panel);
    const Entry *entryOf(const QString &control) const;
    static bool isActive(const Entry &entry);
    const Entry &currentEntry() const;
    void say(const Entry &entry, const QString &text, bool good);
    void hint(const Entry &entry, const QString &text, HintedAct act);
    void toggleBar(const Entry &entry);
    void start(const Entry &entry, const QString &key);
    void endTools(const EditorTool *next);
    void showTip();
    void showCurrent();
    void showAlone(const ToolRow *row);
    const Entry &markingEntry() const;
    QString workerIcon() const;
    void offerAgain();
    void makeSmallPictures();
    void goBack();

    AppContext &m_ctx;
    PhotoView &m_view;
    ToolColumn &m_column;
    FloatingBarSet &m_bars;
    SelectionOutline *m_outline;
    CanvasMouse *m_mouse;
    PhotoBefore *m_before;
    PointedEffect *m_pointed;
    std::vector<Entry> m_entries; ///< in table order; does not change
    QList<SlidingPanel *> m_panels;
    bool m_isReady = false;
    int m_stepsBefore = -1;          ///< to undo, when the tool began that has the screen to itself; -1 without one
    const Entry *m_worker = nullptr; ///< the tool that was started last, but for the selection, which changes nothing
    QString m_workerKey;             ///< what it was started with
    const Entry *m_said = nullptr;   ///< the active tool whose message or hint was shown last
    QString m_saying;
    Bubble *picTip;
    HintBubble *m_hint;                    ///< a child of the view
    AgainButton *m_again;                  ///< a child of the view
    QTimer m_pictures;                     ///< one tool's previews per event loop iteration
    QList<EditorTool *> m_picturesWaiting; ///< in their order
};

} // namespace lumora

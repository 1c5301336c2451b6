// The tools behind the tool column and the floating bars: makes one for each row of the tool table, starts one and ends
// the one before, and keeps the column showing which is current. Knows no tool by name.
#pragma once

#include "tools/EditorTool.h"

#include <QList>
#include <QTimer>
#include <vector>

class QRect;

namespace lumora {

class Bubble;
class FloatingBarSet;
class ToolColumn;
struct ToolRow;

class ToolSet : public QObject {
    Q_OBJECT

  public:
    /// Makes panels and tips as children of the window; the other widgets outlive it.
    ToolSet(AppContext &ctx, PhotoView &view, ToolColumn &column, FloatingBarSet &bars, QWidget *window);
    ~ToolSet() override;

    /// A button of the tool column was pressed, or a tool without one is asked for by its name in the table.
    void press(const QString &control);
    /// An item of the floating bar of that button was picked.
    void pick(const QString &control, const QString &key);

    void HideFloatingToolbars();
    /// Closes an open slide-up panel and the tool that it belongs to.
    void HideBoxes();
    /// Makes the Arrow tool current: whatever tool is at work ends, and what is marked is marked no more.
    void ResetTools();
    /// Esc: closes what is open, one thing at a time.
    void escape();

    /// The part of the window that the photo has, in the window's pixels: panels slide over its lower edge.
    void setArea(const QRect &area);
    /// The panel that is up, or null.
    SlidingPanel *openPanel() const;
    /// The button of the tool that is current, see ToolRow::control.
    QString current() const;

  Q_SIGNALS:
    /// Something to say in the status line, and whether it is good news.
    void message(const QString &text, bool good);
    /// The status line's own text, where a tool words it.
    void statusText(const QString &text);
    /// To be answered in a message box before the signal returns.
    void noticeWanted(const QString &text);
    /// What depends on the photo and the settings is to be refreshed.
    void buttonsToRefresh();
    /// A panel stands at its place or has gone.
    void panelChanged();
    /// The whole photo is to be in view.
    void fitWanted();

  private:
    struct Entry {
        const ToolRow *row;
        EditorTool *tool; ///< null for the Arrow tool
    };

    void connectTool(const Entry &entry);
    void connectPanel(SlidingPanel &panel);
    const Entry *entryOf(const QString &control) const;
    void toggleBar(const Entry &entry);
    void start(const Entry &entry, const QString &key);
    void endTools(const EditorTool *next);
    void showTip();
    void showCurrent();
    void makeSmallPictures();

    AppContext &m_ctx;
    PhotoView &m_view;
    ToolColumn &m_column;
    FloatingBarSet &m_bars;
    SelectionOutline *m_outline;
    CanvasMouse *m_mouse;
    std::vector<Entry> m_entries; ///< as the table; does not change
    QList<SlidingPanel *> m_panels;
    const Entry *m_current; ///< the first, the Arrow tool, while no other is at work
    Bubble *picTip;
    QTimer m_pictures;                     ///< one tool's small pictures a turn of the event loop
    QList<EditorTool *> m_picturesWaiting; ///< in their turns
};

} // namespace lumora

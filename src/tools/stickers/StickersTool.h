// Words and stickers: bubbles, letterings and stickers on the photo, each placed by a click, then moved, sized and
// turned by its handles or by keys. They become part of the photo, one undo step, when the tool is done.
#pragma once

#include "tools/canvas/PanelTool.h"
#include "tools/stickers/DecorationList.h"
#include "tools/stickers/DecorationPictures.h"
#include "tools/stickers/ItemHandles.h"

#include <optional>

namespace lumora {

enum class Stopping;
class ItemBar;
class StickersPanel;
class WordsEditor;

class StickersTool : public PanelTool {
    Q_OBJECT

  public:
    StickersTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QWidget *window);

    bool open(const QString &key = {}) override;
    bool excludesOthers() const override { return isAtWork(); }
    bool staysFor(const EditorTool &next) const override { return &next == this; }
    /// Everything becomes part of the photo, and the tool ends. It stays when that is stopped or memory is refused.
    void accept() override;
    void settle() override;

    /// What has been placed can be undone step by step, also what was left behind by "Back", until the photo changes.
    bool hasOwnSteps() const override { return isAtWork(); }
    bool canStep(bool back) const override { return m_list.canStep(back); }
    void step(bool back) override;

    const std::vector<Decoration> &items() const { return m_list.items(); }
    /// The index of the chosen one; -1 without any.
    int selected() const { return m_selected; }

    void end() override;
    void press(const PointerEvent &at) override;
    void move(const PointerEvent &at) override;
    void release(const PointerEvent &at) override;
    /// Words can be typed again.
    bool isDragging() const override { return m_drag && !m_drag->placed; }
    void doubleClick(const PointerEvent &at) override;
    bool scrollsAtEdge() const override;
    /// Tab goes from one to the next, arrows move it (with Shift ten times as far), + and - size it, [ and ] turn it,
    /// Delete throws it away, Page Up brings it to the front, Enter types its words. Enter places what was picked. Esc
    /// gives up what was picked, then the choice, then the tool.
    bool wantsKey(const QKeyEvent &key) const override;
    void keyPress(const QKeyEvent &key) override;
    void paint(QPainter &painter) override;

  private:
    struct Drag {
        ItemHandle handle;
        Decoration before;
        QPointF pressed;     ///< picture pixels
        QPointF pressedView; ///< the view's pixels
        bool placed = false; ///< the press has placed it
        bool moved = false;  ///< it is more than a click
    };

    void makeControls();
    bool apply(Stopping stopping);
    void pick(const Decoration &prototype);
    void putDown();
    void place(QPointF where);
    void select(int index);
    void change(const Decoration &item);
    void changed();
    void refresh();
    void placeBar();
    void throwAway();
    void bringToFront();
    void typeWords();
    void finishWords();
    void endDrag(const PointerEvent &at);
    /// The chosen one as that key changes it; nothing for other keys.
    std::optional<Decoration> keyed(const QKeyEvent &key) const;
    int nextItem(const QKeyEvent &key) const;
    int itemAt(QPointF view);
    ItemHandles handles();
    QRectF partOfView();
    QSize photoSize() const;
    QTransform toView() const;
    void showCursor(QPointF view);

    AppContext &m_ctx;
    PhotoView &m_view;
    StickersPanel *m_panel;
    ItemBar *m_bar = nullptr; ///< null before the tool is first opened
    WordsEditor *m_editor = nullptr;
    DecorationList m_list;
    DecorationPictures m_pictures;
    int m_selected = -1;
    std::optional<Decoration> m_picked; ///< to be placed by the next click; its centre is under the pointer
    std::optional<Drag> m_drag;
    Decoration m_beforeTyping;
};

} // namespace lumora

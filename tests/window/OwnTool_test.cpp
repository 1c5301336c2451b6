// A tool made as docs/how-to.md says, with a row of its own in a table, used in a window: a dot at each click.
#include "session/AppContext.h"
#include "support/TestPictures.h"
#include "tools/canvas/CanvasMouse.h"
#include "tools/canvas/PanelTool.h"
#include "view/PhotoView.h"
#include "widgets/PictureButton.h"
#include "widgets/SlidingPanel.h"
#include "window/FloatingBarSet.h"
#include "window/ToolColumn.h"
#include "window/ToolSet.h"

namespace lumora {
namespace {

// 1. The tool.
class DotTool : public PanelTool {
  public:
    explicit DotTool(const ToolPlace &place)
        : PanelTool(place.mouse, new SlidingPanel("pnlDot", "cmdExitPnlDot", place.window), place.window),
          m_ctx(place.ctx) {}

    bool open(const QString &) override {
        begin();
        return true;
    }
    void clicked(QPoint pixel) override {
        QImage next = m_ctx.photo.picCanvas();
        next.setPixelColor(pixel, Qt::red);
        m_ctx.photo.changePhoto(next);
    }

  private:
    AppContext &m_ctx;
};

EditorTool *makeDot(const ToolPlace &place) {
    return new DotTool(place);
}

// 2. Its row, below those that there are.
std::vector<ToolRow> withDot() {
    std::vector<ToolRow> rows(toolTable().begin(), toolTable().end());
    rows.push_back({"cmdDot", "dice", hiddenInSimple, makeDot});
    return rows;
}

TEST(OwnTool, WorksWithARowAndNothingElse) {
    const std::vector<ToolRow> rows = withDot();
    const QTemporaryDir folder;
    AppContext ctx{Installation{folder.path()}};
    QWidget window;
    window.resize(900, 800);
    PhotoView view(ctx.photo, &window);
    view.setGeometry(220, 0, 680, 500);
    ToolColumn column(&window, rows);
    column.setGeometry(0, 0, 218, 800);
    FloatingBarSet bars(&window);
    ToolSet tools(ctx, view, column, bars, &window, rows);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const QImage photo = test::photoLike(300, 200);
    ctx.photo.openPicture({.picture = photo, .reason = {}}, PhotoDocument::OpenRoute::LoadPhoto);
    QCoreApplication::processEvents();

    PictureButton *button = column.button("cmdDot");
    ASSERT_TRUE(button != nullptr && button->isVisible());
    button->click();
    EXPECT_EQ(tools.current(), "cmdDot");
    EXPECT_TRUE(button->isChecked());
    ASSERT_NE(tools.openPanel(), nullptr);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.toView({120, 80}).toPoint());
    QImage wanted = photo;
    wanted.setPixelColor(120, 80, Qt::red);
    EXPECT_EQ(ctx.photo.picCanvas(), wanted);
    ctx.photo.PerformUndo();
    EXPECT_EQ(ctx.photo.picCanvas(), photo);

    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_EQ(tools.current(), "cmdTool1");
    EXPECT_EQ(tools.openPanel(), nullptr);
    button->click();
    column.button("cmdTool6")->click(); // another tool ends it
    EXPECT_EQ(tools.current(), "cmdTool6");
    EXPECT_EQ(tools.openPanel()->objectName(), "pnlRedEye");
}

} // namespace
} // namespace lumora

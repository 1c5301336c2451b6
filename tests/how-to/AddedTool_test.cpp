// The tool "Dot", added as docs/how-to.md says and worked in the main window like the others.
#include "support/ShellCheck.h"
#include "support/TestPictures.h"
#include "view/PhotoView.h"
#include "widgets/PictureButton.h"
#include "widgets/SlidingPanel.h"
#include "window/frmMain.h"

namespace lumora {
namespace {

class AddedTool : public test::Shell {
  protected:
    void SetUp() override {
        Shell::SetUp();
        const QString file = m_folder.filePath("photo.png");
        ASSERT_TRUE(writePicture(photo, file).ok());
        window.setStartupPhotoPath(file);
        window.resize(1024, 768);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        ASSERT_TRUE(QTest::qWaitFor([this] { return context.photo.PhotoLoaded() && window.view()->isVisible(); }));
    }
    PictureButton *button(const char *name) { return window.findChild<PictureButton *>(name); }
    bool isUp(const char *panel) { return window.findChild<SlidingPanel *>(panel)->isOpen(); }

    const QImage photo = test::photoLike(320, 200);
    frmMain window{context};
};

TEST_F(AddedTool, HasAButtonAndAPanelAndChangesThePhoto) {
    ASSERT_NE(button("cmdDot"), nullptr);
    EXPECT_EQ(button("cmdDot")->text(), "Dot");
    button("cmdDot")->click();
    EXPECT_TRUE(button("cmdDot")->isChecked());
    EXPECT_TRUE(isUp("pnlDot"));

    PhotoView &view = *window.view();
    const QPoint at = view.toView({120, 80}).toPoint();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, at);
    QImage wanted = photo;
    wanted.setPixelColor(view.pixelAt(at), Qt::red);
    EXPECT_EQ(context.photo.picCanvas(), wanted);
    EXPECT_EQ(context.photo.history().undoSteps(), 1);
    context.photo.PerformUndo();
    EXPECT_EQ(context.photo.picCanvas(), photo);
}

TEST_F(AddedTool, EndsLikeTheOthers) {
    const std::function<void()> ways[] = {
        [this] { QTest::keyClick(window.view(), Qt::Key_Escape); },
        [this] { button("cmdExitPnlDot")->click(); },
        [this] { button("cmdTool1")->click(); },
    };
    for (const auto &leave : ways) {
        button("cmdDot")->click();
        ASSERT_TRUE(isUp("pnlDot"));
        leave();
        EXPECT_FALSE(isUp("pnlDot"));
        EXPECT_TRUE(button("cmdTool1")->isChecked());
    }
    button("cmdDot")->click();
    button("cmdTool6")->click(); // another tool
    EXPECT_FALSE(isUp("pnlDot"));
    EXPECT_TRUE(isUp("pnlRedEye"));
}

} // namespace
} // namespace lumora

// The effect "Posterise", added as docs/how-to.md says and used in the main window like the others.
#include "document/PhotoDocument.h"
#include "imaging/EffectEngine.h"
#include "imaging/Scale.h"
#include "imaging/effects/Posterise.h"
#include "support/ShellCheck.h"
#include "support/TestPictures.h"
#include "view/PhotoView.h"
#include "widgets/FloatingToolbar.h"
#include "widgets/PictureButton.h"
#include "window/frmMain.h"

#include <QLabel>
#include <QSlider>
#include <QTest>

namespace lumora {
namespace {

class AddedEffect : public test::Shell {
  protected:
    void SetUp() override {
        Shell::SetUp();
        window.LoadLanguage();
        window.resize(1024, 768);
        window.show();
        context.photo.openPicture({.picture = photo, .reason = {}}, PhotoDocument::OpenRoute::LoadPhoto);
        window.fitPhoto();
    }
    template <typename Control> Control *control(const char *name) {
        auto *found = window.findChild<Control *>(name);
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    void pick(const char *bar, const char *key) {
        auto *item = control<FloatingToolbar>(bar)->item(key);
        ASSERT_NE(item, nullptr) << key;
        item->click();
    }
    void pickInBox() {
        context.fields.txtSFX = Switch::On;
        pick("FT4", "keySFX13");
        ASSERT_TRUE(QTest::qWaitFor([this] { return control<QWidget>("SFXBox13")->isVisible(); }));
    }
    /// Marks with the selection tool of that key by a drag over the view, and returns what it marks.
    Region mark(const char *key) {
        pick("FT1", key);
        PhotoView &view = *window.view();
        const QPoint from = view.toView({60, 40}).toPoint();
        const QPoint to = view.toView({200, 150}).toPoint();
        QTest::mousePress(view.viewport(), Qt::LeftButton, {}, from);
        QTest::mouseMove(view.viewport(), (from + to) / 2 + QPoint(0, 40));
        QTest::mouseMove(view.viewport(), to);
        QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, to);
        return context.photo.selection().region(photo.size());
    }
    /// The photo with that many levels, inside the region or everywhere.
    QImage posterised(int levels, const Region *region = nullptr) const {
        QImage result = photo.copy();
        const auto channel = [levels](int value) {
            return qRound(qRound(value * (levels - 1) / 255.0) * 255.0 / (levels - 1));
        };
        for (int i = 0; i < photo.width() * photo.height(); ++i) {
            const QPoint at(i % photo.width(), i / photo.width());
            if (region == nullptr || region->contains(at.x(), at.y())) {
                const QRgb pixel = photo.pixel(at);
                result.setPixel(at, qRgb(channel(qRed(pixel)), channel(qGreen(pixel)), channel(qBlue(pixel))));
            }
        }
        return result;
    }
    void expectPhoto(const QImage &expected) {
        EXPECT_EQ(test::firstDifference(context.photo.picCanvas(), expected), test::nowhere);
        EXPECT_EQ(context.photo.history().undoSteps(), 1);
        EXPECT_TRUE(context.photo.PerformUndo());
        EXPECT_EQ(test::firstDifference(context.photo.picCanvas(), photo), test::nowhere);
    }

    const QImage photo = test::photoLike(320, 200);
    frmMain window{context};
};

TEST_F(AddedEffect, HasAnItemWithItsNameAndAPreview) {
    const PictureButton *item = control<FloatingToolbar>("FT4")->item("keySFX13");
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->text(), "Posterise");
    QTest::keyClick(&window, Qt::Key_Shift); // previews are made once the window is used
    ASSERT_TRUE(QTest::qWaitFor([&] { return !item->picture().isNull(); }));
    EffectEngine engine;
    engine.setPicture(scaled(photo, 190, 118)); // what most previews are made from
    ASSERT_TRUE(engine.apply({applyPosterise, {3}}, false));
    const QImage preview = item->picture().toImage();
    const QImage expected = scaled(engine.picture(), preview.width(), preview.height());
    EXPECT_EQ(test::firstDifference(preview.convertToFormat(expected.format()), expected), test::nowhere);
}

TEST_F(AddedEffect, AClickChangesThePhotoOrWhatIsMarked) {
    context.fields.txtSFX = Switch::Off;
    pick("FT4", "keySFX13");
    expectPhoto(posterised(3));
    for (const char *tool : {"keySqr", "keyCircle", "keyLasso"}) {
        SCOPED_TRACE(tool);
        const Region region = mark(tool);
        ASSERT_FALSE(region.isEmpty());
        pick("FT4", "keySFX13");
        expectPhoto(posterised(3, &region));
    }
}

TEST_F(AddedEffect, ItsBoxHasTheSliderThatItsRowSays) {
    pickInBox();
    EXPECT_EQ(control<QLabel>("LN1")->text(), "Posterise");
    EXPECT_EQ(control<QLabel>("lblPosterise")->text(), "Levels");
    auto *slider = control<QSlider>("sldSFX13");
    EXPECT_EQ(slider->value(), 5);
    control<PictureButton>("cmdApplySFXNow")->click();
    expectPhoto(posterised(5));

    const QImage before = window.view()->viewport()->grab().toImage();
    slider->setValue(2);
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.view()->viewport()->grab().toImage() != before; })) << "live";
    EXPECT_EQ(test::firstDifference(context.photo.picCanvas(), photo), test::nowhere);
    const Region region = mark("keyCircle");
    control<PictureButton>("cmdApplySFXNow")->click();
    expectPhoto(posterised(2, &region));

    control<PictureButton>("cmdpnlSFXExit")->click();
    EXPECT_EQ(slider->value(), 5);
}

} // namespace
} // namespace lumora

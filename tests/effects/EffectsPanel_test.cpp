#include "effects/EffectsPanel.h"

#include "imaging/EffectEngine.h"
#include "imaging/effects/Mosaic.h"
#include "session/AppContext.h"
#include "support/TestPictures.h"
#include "view/PhotoView.h"
#include "widgets/PictureButton.h"

#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace lumora {
namespace {

class EffectsPanelTest : public testing::Test {
  protected:
    EffectsPanelTest() {
        window.resize(900, 600);
        view.setGeometry(0, 0, 900, 300); // the panel leaves it free
        window.show();
        ctx.photo.openPicture({.picture = photo, .reason = {}}, PhotoDocument::OpenRoute::LoadPhoto);
    }

    void openBox(int n) {
        ctx.fields.txtSFX = Switch::On;
        panel.pick(QStringLiteral("keySFX%1").arg(n));
        EXPECT_TRUE(QTest::qWaitFor([this] { return !panel.isSliding(); }));
    }
    template <typename Control> Control *control(const QString &name) {
        auto *found = panel.findChild<Control *>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return found;
    }
    void press(const char *name) { control<PictureButton>(name)->click(); }
    bool waitForLive() { return live.count() > 0 || live.wait(5000); }
    QImage seen() { return view.viewport()->grab().toImage(); }

    QTemporaryDir folder;
    AppContext ctx{Installation{folder.path()}};
    const QImage photo = test::photoLike(320, 200);
    QWidget window;
    PhotoView view{ctx.photo, &window};
    SpecialEffects effects{ctx};
    EffectsPanel panel{ctx, effects, view, &window};
    QSignalSpy live{&panel.livePreview(), &LivePreview::shown};
};

TEST_F(EffectsPanelTest, APickAppliesAtOnceOrOpensTheBoxAsTheSettingSays) {
    const struct {
        const char *setting;
        const char *key;
        bool changes, opens;
        int picked;
    } cases[] = {{"0", "keySFX4", true, false, 4},
                 {"1", "keySFX12", false, true, 12},
                 {"maybe", "keySFX7", false, false, 7},
                 {"0", "keySFX13", false, false, 7}};
    for (const auto &[setting, key, changes, opens, picked] : cases) {
        SCOPED_TRACE(setting + std::string(" ") + key);
        ctx.fields.txtSFX = settings::valueOf<Setting::AdvancedEffects>(setting);
        panel.pick(key);
        EXPECT_EQ(ctx.photo.picCanvas() != photo, changes);
        EXPECT_EQ(panel.isOpen(), opens);
        EXPECT_EQ(panel.SelectedSFX(), picked);
        if (changes) {
            ctx.photo.PerformUndo();
        }
        panel.slideOut();
    }
}

TEST_F(EffectsPanelTest, PickingAnotherEffectSwitchesBoxAndCaption) {
    const char *const captions[] = {"Solarise", "Colourise", "Sharpen",       "Mosaic",  "Oil Painting", "Blur",
                                    "Texture",  "Tile",      "Colour Emboss", "Tracing", "Prespective",  "Reflection"};
    for (int n = 1; n <= 12; ++n) {
        openBox(n);
        EXPECT_EQ(control<QLabel>("LN1")->text(), captions[n - 1]);
        for (int other = 1; other <= 12; ++other) {
            EXPECT_EQ(control<QWidget>(QStringLiteral("SFXBox%1").arg(other))->isVisible(), other == n);
        }
        EXPECT_EQ(panel.geometry().bottom(), window.rect().bottom());
    }
}

TEST_F(EffectsPanelTest, SlidersReachTheirValuesAndClosingRestoresThem) {
    openBox(1);
    const auto eachSlider = [](const auto &look) {
        for (const Effect &effect : lumora::effects(EffectGroup::Special)) {
            for (size_t i = 0; i < effect.sliders.size(); ++i) {
                SCOPED_TRACE(effect.sliders[i].name);
                look(effect, i, effect.sliders[i]);
            }
        }
    };
    eachSlider([this](const Effect &effect, size_t i, const EffectSlider &row) {
        auto *slider = control<QSlider>(row.name);
        EXPECT_EQ(slider->value(), effect.advanced.at(i));
        for (const int set : {row.most, row.least}) {
            slider->setValue(set);
            EXPECT_EQ(effects.advancedValues(effect.number).at(i), set);
        }
    });
    control<QSlider>("sldAngle")->setValue(45);
    press("optReflection3");
    press("cmdpnlSFXExit");
    for (const Effect &effect : lumora::effects(EffectGroup::Special)) {
        EXPECT_EQ(effects.advancedValues(effect.number), effect.advanced) << effect.name;
    }
    eachSlider([this](const Effect &effect, size_t i, const EffectSlider &row) {
        EXPECT_EQ(control<QSlider>(row.name)->value(), effect.advanced.at(i));
    });
    EXPECT_EQ(control<QLineEdit>("txtAngle")->text(), "-30");
    EXPECT_TRUE(control<PictureButton>("optReflection1")->isChecked());
}

TEST_F(EffectsPanelTest, ApplyTakesTheSlidersWhateverTheSettingSays) {
    openBox(4);
    ctx.fields.txtSFX = Switch::Off;
    control<QSlider>("sldSFX4_1")->setValue(31);
    control<QSlider>("sldSFX4_2")->setValue(7);
    QSignalSpy applied(&panel, &EffectsPanel::applied);
    press("cmdApplySFXNow");
    EXPECT_EQ(applied.count(), 1);
    EffectEngine engine;
    engine.setPicture(photo);
    ASSERT_TRUE(engine.apply({applyMosaic, {31, 7}}, false));
    EXPECT_EQ(test::firstDifference(ctx.photo.picCanvas(), engine.picture()), QPoint(-1, -1));
    EXPECT_TRUE(panel.isOpen());
}

TEST_F(EffectsPanelTest, ClosingLeavesNoSelectionBehind) {
    for (const int n : {5, 6, 8}) {
        openBox(n);
        PhotoSelection selection;
        selection.markRectangle({1, 1, 9, 9});
        ctx.photo.setSelection(selection);
        ctx.flags.startSelection(PhotoSelection::Shape::Rectangle);
        QTest::keyClick(&panel, Qt::Key_Escape);
        EXPECT_FALSE(panel.isVisible());
        EXPECT_FALSE(ctx.flags.SelectionActive());
        EXPECT_FALSE(ctx.photo.selection().isShown());
    }
}

TEST_F(EffectsPanelTest, TheAngleIsANumberASliderAndTwoStyles) {
    openBox(11);
    auto *text = control<QLineEdit>("txtAngle");
    const struct {
        const char *typed;
        int angle;
        const char *shown;
    } cases[] = {{"45", 45, "45"}, {"-7", -7, "-7"},  {"99", 60, "60"},  {"-61", -60, "-60"},
                 {"", -60, "-60"}, {"-", -60, "-60"}, {"4x5", 45, "45"}, {"0", 0, "0"}};
    for (const auto &[typed, angle, shown] : cases) {
        SCOPED_TRACE(typed);
        text->setFocus();
        text->selectAll();
        QTest::keyClick(text, Qt::Key_Delete);
        QTest::keyClicks(text, typed);
        QTest::keyClick(text, Qt::Key_Return);
        control<QSlider>("sldAngle")->setFocus();
        EXPECT_EQ(effects.advancedValues(11)[0], angle);
        EXPECT_EQ(control<QSlider>("sldAngle")->value(), angle);
        EXPECT_EQ(text->text(), shown);
        EXPECT_EQ(control<PictureButton>("optPerspective1")->isChecked(), angle < 0);
        EXPECT_EQ(control<PictureButton>("optPerspective2")->isChecked(), angle > 0);
    }
    press("optPerspective2");
    EXPECT_EQ(effects.advancedValues(11)[0], 30);
    control<QSlider>("sldAngle")->setValue(12);
    press("optPerspective1");
    EXPECT_EQ(text->text(), "-12");
    for (QWidget *swatch : control<QWidget>("CP1")->findChildren<QWidget *>()) {
        if (swatch->property("key") == "red") {
            static_cast<PictureButton *>(swatch)->click();
        }
    }
    EXPECT_EQ(effects.advancedValues(11), (EffectValues{-12, 226, 42, 42}));
}

/// The preview equals the result of Apply, and closing shows the unchanged photo.
TEST_F(EffectsPanelTest, EveryEffectShowsLiveAndTouchesNothing) {
    PhotoSelection lasso;
    lasso.markLasso({{20, 10}, {180, 40}, {60, 110}});
    const QImage before = seen();
    const qint64 key = ctx.photo.picCanvas().cacheKey();
    const auto select = [this](bool selected) {
        ctx.flags.startSelection(PhotoSelection::Shape::Lasso);
        if (!selected) {
            ctx.flags.endSelection();
        }
    };
    for (const bool selected : {false, true}) {
        for (int n = 1; n <= 12; ++n) {
            SCOPED_TRACE(testing::Message() << n << " selected " << selected);
            ctx.photo.setSelection(selected ? lasso : PhotoSelection());
            select(selected);
            live.clear();
            openBox(n);
            ASSERT_TRUE(waitForLive());
            const QImage shown = seen();
            EXPECT_NE(shown, before);
            EXPECT_EQ(ctx.photo.picCanvas().cacheKey(), key);
            EXPECT_FALSE(ctx.photo.PhotoModified());
            press("cmdpnlSFXExit");
            EXPECT_EQ(seen(), before);

            ctx.photo.setSelection(selected ? lasso : PhotoSelection());
            select(selected);
            effects.ApplyAdvancedSFX(n);
            EXPECT_EQ(test::firstDifference(seen(), shown), QPoint(-1, -1));
            ctx.photo.openPicture({.picture = photo, .reason = {}}, PhotoDocument::OpenRoute::LoadPhoto);
            ctx.photo.setPhotoModified(false);
            ASSERT_EQ(ctx.photo.picCanvas().cacheKey(), key);
        }
    }
}

TEST_F(EffectsPanelTest, TheLivePreviewFollowsSliderScrollingAndZoom) {
    openBox(4);
    ASSERT_TRUE(waitForLive());
    const std::pair<const char *, std::function<void()>> moves[] = {
        {"slider", [this] { control<QSlider>("sldSFX4_1")->setValue(60); }},
        {"zoom", [this] { ctx.photo.setZoom(400); }},
        {"scrolling", [this] { view.verticalScrollBar()->setValue(0); }},
        {"selection",
         [this] {
             PhotoSelection box;
             box.markRectangle({20, 20, 60, 60});
             ctx.flags.startSelection(PhotoSelection::Shape::Rectangle);
             ctx.photo.setSelection(box);
         }},
        {"reduced", [this] { ctx.photo.setZoom(25); }},
    };
    for (const auto &[name, move] : moves) {
        SCOPED_TRACE(name);
        live.clear();
        const QImage before = seen();
        move();
        EXPECT_TRUE(waitForLive());
        EXPECT_NE(seen(), before);
    }
    EXPECT_EQ(ctx.photo.picCanvas(), photo);
    ctx.photo.changePhoto(test::photoLike(50, 50));
    EXPECT_FALSE(panel.livePreview().isShown()) << "it was meant for another photo";
}

TEST_F(EffectsPanelTest, APictureThatComesAfterClosingIsNotShown) {
    const QImage before = seen();
    openBox(5);
    ASSERT_TRUE(waitForLive());
    auto *slider = control<QSlider>("sldSFX5");
    for (int radius = slider->maximum(); radius > 20 && !panel.livePreview().isBusy(); --radius) {
        live.clear();
        slider->setValue(radius);
        while (!panel.livePreview().isBusy() && live.count() == 0) {
            QCoreApplication::processEvents();
        }
    }
    ASSERT_TRUE(panel.livePreview().isBusy()) << "each was shown before this thread got back to look";
    live.clear();
    press("cmdpnlSFXExit");
    ASSERT_TRUE(QTest::qWaitFor([this] { return !panel.livePreview().isBusy(); }));
    EXPECT_EQ(live.count(), 0);
    EXPECT_EQ(test::firstDifference(seen(), before), QPoint(-1, -1));
}

TEST_F(EffectsPanelTest, OnlyTheNewestOfManyMovesIsComputed) {
    openBox(6);
    ASSERT_TRUE(waitForLive());
    live.clear();
    auto *slider = control<QSlider>("sldSFX6_1");
    for (int value = 1; value <= 50; ++value) {
        slider->setValue(value);
    }
    ASSERT_TRUE(waitForLive());
    QTest::qWait(5 * LivePreview::frame);
    EXPECT_LE(live.count(), 2);
    const QImage shown = seen();
    press("cmdApplySFXNow");
    EXPECT_EQ(test::firstDifference(seen(), shown), QPoint(-1, -1)) << "the last value";
}

} // namespace
} // namespace lumora

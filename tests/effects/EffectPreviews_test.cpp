#include "effects/EffectPreviews.h"

#include "effects/EffectTable.h"
#include "effects/SpecialEffects.h"
#include "session/AppContext.h"
#include "support/TestPictures.h"
#include "widgets/FloatingToolbar.h"

#include <QSet>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace lumora {
namespace {

class EffectPreviewsTest : public testing::Test {
  protected:
    EffectPreviewsTest() {
        for (const Effect &effect : effects(EffectGroup::Special)) {
            FT4.addItem(effect.key(), effect.icon);
        }
        for (const Effect &effect : effects(EffectGroup::Basic)) {
            FT3.addItem(effect.key(), effect.icon);
        }
        FT4.setPictureSize(96);
        FT3.setPictureSize(120);
        previews.begin();
    }

    void open(const QImage &photo) {
        ctx.photo.openPicture({.picture = photo, .reason = {}}, PhotoDocument::OpenRoute::LoadPhoto);
    }
    bool waitUntilDone() {
        return QTest::qWaitFor([this] { return previews.isDone(); });
    }
    QList<QImage> pictures() const {
        QList<QImage> found;
        for (const PictureButton *item : FT4.items() + FT3.items()) {
            found += item->picture().toImage();
        }
        return found;
    }

    QTemporaryDir folder;
    AppContext ctx{Installation{folder.path()}};
    QWidget window;
    FloatingToolbar FT3{"FT3", &window};
    FloatingToolbar FT4{"FT4", &window};
    EffectPreviews previews{ctx, &FT3, &FT4};
};

TEST_F(EffectPreviewsTest, EveryItemShowsItsEffectOnThePhoto) {
    open(test::photoLike(600, 400));
    ASSERT_TRUE(waitUntilDone());
    QSet<QByteArray> different;
    for (const QImage &picture : pictures()) {
        different += QByteArray(reinterpret_cast<const char *>(picture.constBits()), picture.sizeInBytes());
    }
    EXPECT_EQ(different.size(), 16);
    EXPECT_EQ(FT4.items()[0]->picture().size(), QSize(96, 64));
    EXPECT_EQ(FT3.items()[0]->picture().size(), QSize(120, 80));
    EXPECT_FALSE(ctx.photo.PhotoModified());
}

TEST_F(EffectPreviewsTest, EveryChangeOfThePhotoShowsInThem) {
    SpecialEffects effects(ctx);
    open(test::photoLike(300, 200));
    ASSERT_TRUE(waitUntilDone());
    const std::function<void()> changes[] = {
        [&] { effects.ApplyBasicSFX(8); }, // does not update the document's reduced copy
        [&] { ctx.photo.PerformUndo(); },
        [&] { open(test::photoLike(30, 20)); },
        [&] { open(test::photoLike(1, 900)); },
    };
    for (const auto &change : changes) {
        const QList<QImage> before = pictures();
        change();
        EXPECT_FALSE(previews.isDone());
        ASSERT_TRUE(waitUntilDone());
        EXPECT_NE(pictures(), before);
    }
}

TEST_F(EffectPreviewsTest, WithoutAPhotoThereIsNothingToMake) {
    previews.SetupFoto4FX();
    EXPECT_TRUE(previews.isDone());
    EXPECT_TRUE(FT4.items()[0]->picture().isNull());
}

} // namespace
} // namespace lumora

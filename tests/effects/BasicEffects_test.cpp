#include "effects/BasicEffects.h"

#include "effects/EffectTable.h"
#include "session/AppContext.h"
#include "support/TestPictures.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace lumora {
namespace {

class BasicEffectsTest : public testing::Test {
  protected:
    QTemporaryDir folder;
    AppContext ctx{Installation{folder.path()}};
    BasicEffects effects{ctx};
    const QImage photo = test::photoLike(64, 40);

    void open() { ctx.photo.openPicture({.picture = photo, .reason = {}}, PhotoDocument::OpenRoute::LoadPhoto); }
};

TEST_F(BasicEffectsTest, EachChangesTheWholePhotoAsOneUndoStep) {
    open();
    for (const Effect &effect : lumora::effects(EffectGroup::Basic)) {
        SCOPED_TRACE(effect.name);
        ctx.photo.setPhotoModified(false);
        EXPECT_EQ(effects.apply(effect.key()), EffectOutcome::Done);
        EXPECT_NE(ctx.photo.picCanvas(), photo);
        EXPECT_EQ(ctx.photo.picThumb(), ctx.photo.picCanvas());
        EXPECT_EQ(ctx.photo.pic2nd().width(), 480);
        EXPECT_TRUE(ctx.photo.PhotoModified());
        ctx.photo.PerformUndo();
        EXPECT_EQ(test::firstDifference(ctx.photo.picCanvas(), photo), QPoint(-1, -1));
    }
}

TEST_F(BasicEffectsTest, InvertTwiceIsThePhotoAgain) {
    open();
    effects.apply("keyInvert");
    effects.apply("keyInvert");
    EXPECT_EQ(test::firstDifference(ctx.photo.picCanvas(), photo), QPoint(-1, -1));
}

TEST_F(BasicEffectsTest, WithoutAPhotoOrAKnownKeyNothingHappens) {
    EXPECT_EQ(effects.apply("keyBW"), EffectOutcome::Nothing);
    EXPECT_FALSE(ctx.photo.PhotoModified());
    open();
    EXPECT_EQ(effects.apply("keyPurple"), EffectOutcome::Nothing);
    EXPECT_FALSE(ctx.photo.PhotoModified());
    EXPECT_EQ(ctx.photo.history().undoSteps(), 0);
}

} // namespace
} // namespace lumora

#include "effects/SpecialEffects.h"

#include "effects/BasicEffects.h"
#include "imaging/EffectEngine.h"
#include "imaging/Picture.h"
#include "imaging/effects/Tile.h"
#include "session/AppContext.h"
#include "support/TestPictures.h"
#include "support/TightMemory.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <climits>
#include <gtest/gtest.h>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define LUMORA_SANITIZED
#endif
#ifndef LUMORA_SANITIZED
#include <optional>
#include <unistd.h>
#endif

namespace lumora {
namespace {

/// Selects a part of a photo of 200 x 180 pixels like the selection tool of that kind.
PhotoSelection marked(int kind) {
    PhotoSelection selection;
    switch (kind) {
    case 1:
        selection.markRectangle({10, 8, 40, 30});
        break;
    case 2:
        selection.markEllipse({10, 8, 40, 30});
        break;
    default:
        selection.markLasso({{10, 8}, {60, 20}, {30, 25}, {50, 60}, {12, 50}});
    }
    return selection;
}

class SpecialEffectsTest : public testing::Test {
  protected:
    SpecialEffectsTest() { open(photo); }

    void open(const QImage &picture) {
        ctx.photo.openPicture({.picture = picture, .reason = {}}, PhotoDocument::OpenRoute::LoadPhoto);
    }
    void select(int kind, const PhotoSelection &selection) {
        ctx.flags.startSelection(static_cast<PhotoSelection::Shape>(kind));
        ctx.photo.setSelection(selection);
    }
    EffectOutcome run(int n, bool advanced) {
        return advanced ? effects.ApplyAdvancedSFX(n) : effects.ApplyBasicSFX(n);
    }
    void undoAndCompare() {
        ctx.photo.PerformUndo();
        EXPECT_EQ(test::firstDifference(ctx.photo.picCanvas(), photo), test::nowhere);
        EXPECT_EQ(ctx.photo.history().undoSteps(), 0) << "one step for one effect";
    }

    QTemporaryDir folder;
    AppContext ctx{Installation{folder.path()}};
    SpecialEffects effects{ctx};
    BasicEffects basic{ctx};
    SelectionFlow flow{ctx};
    const QImage photo = test::photoLike(200, 180);
};

/// Every change of the common flow that the program can make: what it runs and the engine's result for a whole photo.
struct Change {
    std::string name;
    std::function<EffectOutcome(SpecialEffects &, BasicEffects &, SelectionFlow &)> run;
    Operation onMarked;
    Operation throughLasso;
};

std::vector<Change> commonChanges() {
    std::vector<Change> changes;
    for (const Effect &effect : effects(EffectGroup::Special)) {
        for (const bool advanced : {false, true}) {
            const EffectValues values = advanced ? effect.advanced : effect.basic;
            if (!effect.wholePhoto) {
                changes.push_back(
                    {effect.name + std::string(advanced ? " advanced" : " basic"),
                     [n = effect.number, advanced](SpecialEffects &special, BasicEffects &, SelectionFlow &) {
                         return advanced ? special.ApplyAdvancedSFX(n) : special.ApplyBasicSFX(n);
                     },
                     operationOf(effect, advanced, values, 1), operationOf(effect, false, values, 1)});
            }
        }
    }
    for (const Effect &effect : effects(EffectGroup::Basic)) {
        const Operation operation = operationOf(effect, false, effect.basic, 1);
        changes.push_back(
            {effect.name,
             [key = effect.key()](SpecialEffects &, BasicEffects &four, SelectionFlow &) { return four.apply(key); },
             operation, operation});
    }
    for (const Effect &adjustment : effects(EffectGroup::Adjustment)) {
        const Operation onMarked = operationOf(adjustment, false, {-30}, 1);
        const Operation throughLasso = operationOf(adjustment, false, {50}, 1);
        changes.push_back(
            {adjustment.name,
             [=](SpecialEffects &, BasicEffects &, SelectionFlow &tool) { return tool.apply(onMarked, throughLasso); },
             onMarked, throughLasso});
    }
    return changes;
}

TEST_F(SpecialEffectsTest, WithoutASelectionTheWholePhotoChangesAsOneUndoStep) {
    for (const bool advanced : {false, true}) {
        for (int n = 1; n <= 12; ++n) {
            SCOPED_TRACE(testing::Message() << n << (advanced ? " advanced" : " basic"));
            ctx.photo.setPhotoModified(false);
            ASSERT_EQ(run(n, advanced), EffectOutcome::Done);
            EXPECT_NE(ctx.photo.picCanvas(), photo);
            EXPECT_EQ(ctx.photo.picThumb(), ctx.photo.picCanvas());
            EXPECT_TRUE(ctx.photo.PhotoModified());
            undoAndCompare();
        }
    }
}

TEST_F(SpecialEffectsTest, OnlyWhatIsMarkedChangesAndTheSelectionIsDropped) {
    for (const Change &change : commonChanges()) {
        for (int kind = 1; kind <= 3; ++kind) {
            SCOPED_TRACE(change.name + " in a selection of kind " + std::to_string(kind));
            EffectEngine engine;
            engine.setPicture(photo);
            ASSERT_TRUE(engine.apply(kind == 3 ? change.throughLasso : change.onMarked, false));
            QImage expected = photo.copy();
            const Region region = marked(kind).region(photo.size());
            for (int y = 0; y < photo.height(); ++y) {
                for (int x = 0; x < photo.width(); ++x) {
                    if (region.contains(x, y)) {
                        expected.setPixel(x, y, engine.picture().pixel(x, y));
                    }
                }
            }
            select(kind, marked(kind));
            EXPECT_EQ(change.run(effects, basic, flow), EffectOutcome::Done);
            EXPECT_EQ(test::firstDifference(ctx.photo.picCanvas(), expected), test::nowhere);
            EXPECT_FALSE(ctx.flags.SelectionActive());
            EXPECT_TRUE(ctx.photo.selection().isEmpty());
            EXPECT_FALSE(ctx.photo.selection().isShown());
            undoAndCompare();
        }
    }
}

TEST_F(SpecialEffectsTest, EffectsOfTheWholePhotoOnlyHideTheSelection) {
    const struct {
        int n;
        bool advanced;
        bool boxStays;
    } cases[] = {{8, false, true},  {8, true, false},   {11, false, false},
                 {11, true, false}, {12, false, false}, {12, true, false}};
    for (const auto &[n, advanced, boxStays] : cases) {
        SCOPED_TRACE(testing::Message() << n << (advanced ? " advanced" : " basic"));
        select(2, marked(2));
        const QImage before = ctx.photo.pic2nd();
        EXPECT_EQ(run(n, advanced), EffectOutcome::Done);
        const QRect beside(60, 0, 140, 180); // of the selection
        EXPECT_NE(ctx.photo.picCanvas().copy(beside), photo.copy(beside));
        EXPECT_TRUE(ctx.flags.SelectionActive());
        EXPECT_FALSE(ctx.photo.selection().isShown());
        EXPECT_EQ(!ctx.photo.selection().isEmpty(), boxStays);
        EXPECT_NE(ctx.photo.pic2nd(), before);
        undoAndCompare();
    }
}

TEST_F(SpecialEffectsTest, ASelectionWithoutPixelsOfThePhotoAsksForOne) {
    const auto of = [](auto mark) {
        PhotoSelection selection;
        mark(selection);
        return selection;
    };
    const std::pair<int, PhotoSelection> cases[] = {
        {1, {}},
        {2, {}},
        {3, {}},
        {1, of([](PhotoSelection &s) {
             s.markRectangle({200, 10, 20, 20});
         })},
        {1, of([](PhotoSelection &s) {
             s.markRectangle({-50, -50, 50, 50});
         })},
        {1, of([](PhotoSelection &s) {
             s.markRectangle({INT_MAX - 5, 10, 5, 20});
         })},
        {2, of([](PhotoSelection &s) {
             s.markEllipse({195, 175, 400, 400});
         })}, // only a corner of its box
        {3, of([](PhotoSelection &s) {
             s.markLasso({{200, 10}, {220, 10}, {210, 40}});
         })},
        {3, of([](PhotoSelection &s) {
             s.markLasso({{10, 10}, {40, 40}});
         })},
        {3, marked(1)}, // the tool was changed since
    };
    QSignalSpy tip(&effects.flow(), &SelectionFlow::tipWanted);
    const qint64 key = ctx.photo.picCanvas().cacheKey();
    for (const auto &[kind, selection] : cases) {
        for (const int n : {1, 6}) {
            SCOPED_TRACE(testing::Message() << kind << " " << selection.box().x() << " effect " << n);
            select(kind, selection);
            tip.clear();
            EXPECT_EQ(run(n, n == 6), EffectOutcome::NoRegion);
            EXPECT_EQ(tip.count(), 1);
            EXPECT_EQ(ctx.photo.picCanvas().cacheKey(), key);
            EXPECT_EQ(ctx.photo.selection().box(), selection.box());
        }
    }
    EXPECT_TRUE(ctx.flags.SelectionActive());
    EXPECT_FALSE(ctx.photo.PhotoModified());
    EXPECT_EQ(ctx.photo.history().undoSteps(), 0);
}

TEST_F(SpecialEffectsTest, WhatCannotRunChangesNothing) {
    const qint64 key = ctx.photo.picCanvas().cacheKey();
    for (const int n : {-1, 0, 13}) {
        EXPECT_EQ(run(n, false), EffectOutcome::Nothing) << n;
        EXPECT_EQ(run(n, true), EffectOutcome::Nothing) << n;
    }
    for (const int index : {0, 1}) { // no tiles across, none down
        select(1, marked(1));
        effects.restoreAdvancedValues();
        effects.setAdvancedValue(8, index, 0);
        EXPECT_EQ(run(8, true), EffectOutcome::Nothing);
        EXPECT_FALSE(ctx.photo.selection().isShown()) << "hidden before it ended";
    }
    EXPECT_EQ(ctx.photo.picCanvas().cacheKey(), key);
    EXPECT_FALSE(ctx.photo.PhotoModified());
    EXPECT_EQ(ctx.photo.history().undoSteps(), 0);

    AppContext empty{Installation{folder.path()}};
    SpecialEffects without(empty);
    for (int n = 1; n <= 12; ++n) {
        EXPECT_EQ(without.ApplyBasicSFX(n), EffectOutcome::Nothing) << "no photo";
        EXPECT_EQ(without.ApplyAdvancedSFX(n), EffectOutcome::Nothing) << "no photo";
    }
}

TEST_F(SpecialEffectsTest, AFailingEngineKeepsPhotoAndHistory) {
    const struct {
        Operation operation;
        EffectOutcome outcome; ///< without memory nothing at all changes
    } refusals[] = {
        {[](const QImage &, PixelRect) { return QImage(); }, EffectOutcome::Refused},
        {[](const QImage &, PixelRect) -> QImage { throw std::bad_alloc(); }, EffectOutcome::NoMemory},
    };
    const qint64 key = ctx.photo.picCanvas().cacheKey();
    for (const auto &[refusal, outcome] : refusals) {
        for (int kind = 0; kind <= 3; ++kind) {
            SCOPED_TRACE(kind);
            select(kind, marked(kind));
            if (kind == 0) {
                ctx.flags.endSelection();
            }
            ctx.photo.setPhotoModified(false);
            EXPECT_EQ(flow.apply(refusal), outcome);
            EXPECT_EQ(ctx.photo.picCanvas().cacheKey(), key);
            EXPECT_EQ(ctx.photo.history().undoSteps(), 0);
            EXPECT_EQ(ctx.photo.PhotoModified(), outcome == EffectOutcome::Refused);
            EXPECT_EQ(ctx.flags.SelectionActive(), outcome == EffectOutcome::NoMemory && kind > 0);
        }
    }
    EXPECT_EQ(run(1, false), EffectOutcome::Done) << "the next click works";
}

#ifndef LUMORA_SANITIZED
/// Runs in a separate process: 0 when effects without memory kept photo and history and worked again afterwards.
int effectsWithoutMemory() {
    QTemporaryDir folder;
    AppContext ctx{Installation{folder.path()}};
    SpecialEffects effects{ctx};
    ctx.photo.openPicture({.picture = test::photoLike(3000, 2000), .reason = {}}, PhotoDocument::OpenRoute::LoadPhoto);
    PhotoSelection lasso;
    lasso.markLasso({{100, 100}, {2900, 300}, {1500, 1900}});
    releaseKeptBuffers();
    std::optional<test::TightMemory> tight(4 << 20);
    const qint64 key = ctx.photo.picCanvas().cacheKey();
    bool asBefore = true;
    for (const bool active : {false, true}) {
        for (int n = 1; n <= 12; ++n) {
            ctx.photo.setSelection(lasso);
            ctx.flags.startSelection(PhotoSelection::Shape::Lasso);
            if (!active) {
                ctx.flags.endSelection();
            }
            asBefore = asBefore && effects.ApplyBasicSFX(n) == EffectOutcome::NoMemory && !ctx.photo.PhotoModified() &&
                       ctx.photo.picCanvas().cacheKey() == key && ctx.photo.history().undoSteps() == 0;
        }
    }
    tight.reset();
    ctx.flags.endSelection();
    return asBefore && effects.ApplyBasicSFX(1) == EffectOutcome::Done ? 0 : 1;
}

TEST(SpecialEffectsDeathTest, WithoutMemoryNothingIsLost) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(::_exit(effectsWithoutMemory()), testing::ExitedWithCode(0), "");
}
#endif

TEST_F(SpecialEffectsTest, TilesAreCountedNotMeasured) {
    const struct {
        bool advanced;
        int across, down; // of the settings box
        int columns, rows;
    } cases[] = {{false, 3, 3, 5, 5}, {true, 4, 2, 4, 2}, {true, 7, 11, 7, 11}, {true, 50, 50, 50, 50}};
    for (const auto &[advanced, across, down, columns, rows] : cases) {
        effects.setAdvancedValue(8, 0, across);
        effects.setAdvancedValue(8, 1, down);
        EffectEngine engine;
        engine.setPicture(photo);
        ASSERT_TRUE(engine.apply({applyTile, {columns, rows}}, false));
        EXPECT_EQ(run(8, advanced), EffectOutcome::Done);
        EXPECT_EQ(test::firstDifference(ctx.photo.picCanvas(), engine.picture()), test::nowhere) << across;
        ctx.photo.PerformUndo();
    }
}

/// A dark photo with holes at its edge and in the middle.
TEST_F(SpecialEffectsTest, PerspectiveDrawsNothingBesideHolesUnlessAColourWasChosen) {
    QImage holed(120, 90, QImage::Format_ARGB32);
    for (int y = 0; y < holed.height(); ++y) {
        for (int x = 0; x < holed.width(); ++x) {
            const bool hole = x > 100 || QRect(40, 30, 20, 20).contains(x, y);
            holed.setPixel(x, y, hole ? qRgba(255, 255, 255, 0) : qRgb(20 + x / 2, 60, 40 + y / 2));
        }
    }
    struct Case {
        const char *what;
        bool advanced;
        EffectValues values;
        QRgb beside;
    };
    for (const Case &one : {Case{"a click", false, {}, 0}, Case{"the panel", true, {-30, 255, 255, 255}, 0},
                            Case{"the panel, to the other side", true, {45, 255, 255, 255}, 0},
                            Case{"a colour", true, {-30, 90, 30, 0}, qRgb(90, 30, 0)}}) {
        SCOPED_TRACE(one.what);
        open(holed);
        for (std::size_t i = 0; i < one.values.size(); ++i) {
            effects.setAdvancedValue(11, int(i), one.values[i]);
        }
        EXPECT_EQ(run(11, one.advanced), EffectOutcome::Done);
        const QImage result = ctx.photo.picCanvas();
        EXPECT_EQ(result.pixel(0, 0), one.beside);
        int white = 0;
        for (int y = 0; y < result.height(); ++y) {
            for (int x = 0; x < result.width(); ++x) {
                white += qAlpha(result.pixel(x, y)) > 16 && qRed(result.pixel(x, y)) > 100 ? 1 : 0;
            }
        }
        EXPECT_EQ(white, 0) << "no strips of white round the holes";
    }
}

} // namespace
} // namespace lumora

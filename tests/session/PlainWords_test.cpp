// Why a photo could not be opened or saved, in words.
#include "session/PlainWords.h"

#include "session/AppContext.h"

#include <QSet>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace lumora;

TEST(PlainWords, EachReasonHasWordsOfItsOwn) {
    const QTemporaryDir folder;
    AppContext context{Installation{folder.path()}};
    QSet<QString> seen;
    for (int i = 1; i <= static_cast<int>(PictureError::Cancelled); ++i) {
        const QString words = plainWords(context.texts, static_cast<PictureError>(i));
        EXPECT_FALSE(words.isEmpty()) << i;
        EXPECT_FALSE(seen.contains(words)) << words.toStdString();
        seen += words;
    }
    const QString limit = plainWords(context.texts, {PictureError::SideTooLong, {}, 65500});
    EXPECT_TRUE(limit.contains("65") && limit.contains("500") && limit.contains("PNG")) << limit.toStdString();
    EXPECT_FALSE(limit.contains('%'));
}

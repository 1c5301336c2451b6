// Texts in capitals: the rules of each language, and what is no word.
#include "base/Capitals.h"

#include "base/IniFiles.h"
#include "base/Texts.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace lumora {
namespace {

TEST(Capitals, FollowTheRulesOfTheLanguage) {
    const struct {
        const char *language, *text, *capitals;
    } cases[] = {
        {"en", "Click, move, click", "CLICK, MOVE, CLICK"},
        {"de", "Größe der Straße", "GRÖẞE DER STRAẞE"},
        {"de-AT", "groß", "GROẞ"},
        {"tr", "Işık, dilim, ıslık", "IŞIK, DİLİM, ISLIK"},
        {"fr", "Où est l’élève ?", "OÙ EST L’ÉLÈVE ?"},
        {"es", "¿Qué ñandú?", "¿QUÉ ÑANDÚ?"},
        {"pl", "Źródło", "ŹRÓDŁO"},
        {"uk", "Їжак", "ЇЖАК"},
        {"nl", "ijs", "IJS"},
        {"ar", "PDF مساعدة abc", "PDF مساعدة abc"},
        {"ja", "しゃしん pixel", "しゃしん pixel"},
    };
    for (const auto &one : cases) {
        EXPECT_EQ(inCapitals(QString::fromUtf8(one.text), one.language), QString::fromUtf8(one.capitals)) << one.text;
    }
    EXPECT_TRUE(hasCapitals("tr"));
    EXPECT_FALSE(hasCapitals("ja"));
}

TEST(Capitals, LeaveAsItIsWhatIsNoWord) {
    const std::pair<const char *, const char *> cases[] = {
        {"Delete %1 pictures (%2)", "DELETE %1 PICTURES (%2)"},
        {"%n file(s), %L1 bytes", "%n FILE(S), %L1 BYTES"},
        {"100 % nice", "100 % NICE"},
        {"&Open && close", "&OPEN && CLOSE"},
        {"<b class=\"x\">bold</b>&nbsp;&amp;&#x2019; x", "<b class=\"x\">BOLD</b>&nbsp;&amp;&#x2019; X"},
        {"<p>see <code>[For me] Size</code></p>", "<p>SEE <code>[For me] Size</code></p>"},
        {"Try .jpg or .png.", "TRY .jpg OR .png."},
        {"in language-de.ini now", "IN language-de.ini NOW"},
        {"ask you@example.com at https://example.com/a", "ASK you@example.com AT https://example.com/a"},
        {"Looking... e.g. here", "LOOKING... E.G. HERE"},
    };
    for (const auto &[text, capitals] : cases) {
        EXPECT_EQ(inCapitals(QString::fromUtf8(text), "en"), QString::fromUtf8(capitals)) << text;
    }
}

TEST(Capitals, AllTextsButThoseThatAreNoWords) {
    QTemporaryDir folder;
    IniFiles files(std::chrono::milliseconds(0));
    bool wanted = false;
    const Texts texts(
        files, [&] { return QStringList(folder.filePath("language.ini")); }, [&] { return wanted; });
    EXPECT_EQ(texts.text("Tool3"), "Crop");
    wanted = true; // said by a file that has changed
    files.WriteIniValue(folder.filePath("language.ini"), "Tool4", "Caption", "Change the size");
    EXPECT_EQ(texts.text("Tool3"), "CROP");
    EXPECT_EQ(texts.text("Tool4"), "CHANGE THE SIZE");
    EXPECT_EQ(texts.text("Tool5", "Turn it"), "TURN IT");
    EXPECT_EQ(texts.text("CropSize").arg("a").arg("b"), "a X b PIXELS");
    EXPECT_EQ(texts.text("MyPicture"), "my picture");
    EXPECT_EQ(texts.text("Language"), "en");
    EXPECT_EQ(texts.shown("Cancel"), "CANCEL");
}

} // namespace
} // namespace lumora

// The projects that the ideas window shows: one row an idea. Its finished pictures are ":/ideas/ID-1.jpg" and on, made
// by content/ideas/make.sh.
#pragma once

#include <QString>
#include <array>
#include <span>

namespace lumora {

struct MainFields;
class ToolFlags;

/// How the finished pictures of a project are arranged on the paper.
enum class IdeaLayout {
    Single,  ///< one picture
    Pieces,  ///< one, cut along its tiles, five by five
    Seasons, ///< four, a little askew
    Page,    ///< six panels of a comic: a large one, two beside it, three below
    Rows,    ///< three long ones, one below the other
    Cards,   ///< pairs of cards, some face down
};

/// One thing to do. Every step names what is on the screen by the picture on its button.
struct IdeaStep {
    const char *icon = nullptr; ///< null: no step
    const char *text = nullptr; ///< identifier
    enum class For { Everybody, AdvancedMode, PopArtPanel } shownTo = For::Everybody;
    const char *item = nullptr; ///< the item of the tool's floating bar that is meant; null: any
};

inline constexpr std::size_t mostIdeaSteps = 6;

struct Idea {
    const char *id;
    const char *name;  ///< identifier of one short word
    const char *title; ///< identifier
    IdeaLayout layout;
    int pictures;
    std::array<IdeaStep, mostIdeaSteps> steps;
    const char *then;       ///< identifier: what to do with the saved picture
    bool canBeMade = false; ///< the window makes it itself with the photo on the table
};

std::span<const Idea> ideas();

/// The tool that a step names by its picture, as the table of tools has it ("cmdTool7"); empty where it names a
/// command.
QString toolOf(const IdeaStep &step);

/// Whether the step's tool has no button but the one beside the step; the tool is called as its picture.
bool opensTool(const IdeaStep &step);
/// The step of the idea that does; null where none does.
const IdeaStep *stepThatOpensTool(const Idea &idea);

/// The resource of the idea's picture, counted from 1.
QString ideaPicturePath(const Idea &idea, int number);

/// Whether the tools of the step are on the screen as the program runs now.
bool isShown(const IdeaStep &step, const ToolFlags &flags, const MainFields &fields);

} // namespace lumora

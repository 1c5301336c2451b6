#include "Gallery.h"

#include "scenes/Scenes.h"

#include <array>

namespace lumora::samples {

std::span<const Sample> gallery() {
    static constexpr std::array rows{
        Sample{"animals", "butterfly", butterfly},
        Sample{"animals", "cat", cat},
        Sample{"animals", "clownfish", reef},
        Sample{"animals", "dog", dog},
        Sample{"animals", "elephants", elephants},
        Sample{"animals", "hedgehog", hedgehog},
        Sample{"animals", "ladybird", ladybird},
        Sample{"animals", "owl", owl},
        Sample{"animals", "parrot", parrot},
        Sample{"animals", "penguins", penguins},
        Sample{"animals", "tree frog", treeFrog},
        Sample{"backgrounds for stories", "birthday cake", cake},
        Sample{"backgrounds for stories", "candy land", candyLand},
        Sample{"backgrounds for stories", "football field", sportsField},
        Sample{"backgrounds for stories", "mushroom house", mushroomHouse},
        Sample{"backgrounds for stories", "puppet", puppet},
        Sample{"backgrounds for stories", "rag doll", ragDoll},
        Sample{"backgrounds for stories", "snow family", snowFamily},
        Sample{"backgrounds for stories", "strange planet", strangePlanet},
        Sample{"backgrounds for stories", "theatre stage", theatreStage},
        Sample{"backgrounds for stories", "throne hall", throneHall},
        Sample{"backgrounds for stories", "treasure island", treasureIsland},
        Sample{"backgrounds for stories", "winter night", winterNight},
        Sample{"geographical features", "atoll", atoll},
        Sample{"geographical features", "canyon", canyon},
        Sample{"geographical features", "icebergs", icebergs},
        Sample{"geographical features", "mountain lake", mountainLake},
        Sample{"geographical features", "sand dunes", dunes},
        Sample{"geographical features", "sea arch", chalkCoast},
        Sample{"geographical features", "volcano", volcano},
        Sample{"geographical features", "waterfall", waterfall},
        Sample{"machines", "blue tractor", tractor},
        Sample{"machines", "clockwork", clockwork},
        Sample{"machines", "hot-air balloons", balloons},
        Sample{"machines", "red biplane", biplane},
        Sample{"machines", "robot", robot},
        Sample{"machines", "space rocket", rocket},
        Sample{"machines", "steam locomotive", locomotive},
        Sample{"machines", "yellow excavator", excavator},
        Sample{"old buildings", "castle", castle},
        Sample{"old buildings", "greek temple", temple},
        Sample{"old buildings", "lighthouse", lighthouse},
        Sample{"old buildings", "market square", marketSquare},
        Sample{"old buildings", "red pagoda", pagoda},
        Sample{"old buildings", "windmill", windmill},
    };
    return rows;
}

} // namespace lumora::samples

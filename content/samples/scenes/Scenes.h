// One function for each painted scene.
#pragma once

#include "Scene.h"

#include <memory>

namespace lumora::samples {

std::unique_ptr<Scene> atoll();
std::unique_ptr<Scene> balloons();
std::unique_ptr<Scene> biplane();
std::unique_ptr<Scene> butterfly();
std::unique_ptr<Scene> cake();
std::unique_ptr<Scene> candyLand();
std::unique_ptr<Scene> canyon();
std::unique_ptr<Scene> castle();
std::unique_ptr<Scene> cat();
std::unique_ptr<Scene> chalkCoast();
std::unique_ptr<Scene> clockwork();
std::unique_ptr<Scene> dog();
std::unique_ptr<Scene> dunes();
std::unique_ptr<Scene> elephants();
std::unique_ptr<Scene> excavator();
std::unique_ptr<Scene> hedgehog();
std::unique_ptr<Scene> icebergs();
std::unique_ptr<Scene> ladybird();
std::unique_ptr<Scene> lighthouse();
std::unique_ptr<Scene> locomotive();
std::unique_ptr<Scene> marketSquare();
std::unique_ptr<Scene> mountainLake();
std::unique_ptr<Scene> mushroomHouse();
std::unique_ptr<Scene> owl();
std::unique_ptr<Scene> pagoda();
std::unique_ptr<Scene> parrot();
std::unique_ptr<Scene> penguins();
std::unique_ptr<Scene> puppet();
std::unique_ptr<Scene> ragDoll();
std::unique_ptr<Scene> reef();
std::unique_ptr<Scene> robot();
std::unique_ptr<Scene> rocket();
std::unique_ptr<Scene> snowFamily();
std::unique_ptr<Scene> sportsField();
std::unique_ptr<Scene> strangePlanet();
std::unique_ptr<Scene> temple();
std::unique_ptr<Scene> theatreStage();
std::unique_ptr<Scene> throneHall();
std::unique_ptr<Scene> tractor();
std::unique_ptr<Scene> treasureIsland();
std::unique_ptr<Scene> treeFrog();
std::unique_ptr<Scene> volcano();
std::unique_ptr<Scene> waterfall();
std::unique_ptr<Scene> windmill();
std::unique_ptr<Scene> winterNight();

} // namespace lumora::samples

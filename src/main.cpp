// Hands the command line to basMain, nothing else.
#include "app/basMain.h"

int main(int argc, char **argv) {
    return lumora::runLumora(argc, argv);
}

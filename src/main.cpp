// Passes the command line to basMain.
#include "app/basMain.h"

int main(int argc, char **argv) {
    return lumora::runLumora(argc, argv);
}

// kdoint: the command interpreter, headless. See TKdoIntMain.h for the
// command line and what it does.
#include "KdoFrontEnd/TKdoIntMain.h"

int main(int argc, char** argv) {
  TKdoIntMain front(argc, argv);
  return front.run();
}

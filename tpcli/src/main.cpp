// tpcli: shows the traffic policies of a device state through the show library.
#include "tpcli/Application.h"

int main(int argc, char** argv) {
   return tpcli::run(argc, argv);
}

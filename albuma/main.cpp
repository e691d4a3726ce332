#include "NyAlbumaProgram.h"

int main(int argc, char **argv)
{
    return NyAlbumaProgram::run(argc, argv);
}

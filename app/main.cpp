#include "app/Program.h"

int main(int argc, char **argv)
{
    return velmor::runProgram(argc, argv);
}

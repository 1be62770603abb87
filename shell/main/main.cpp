#include "shell/Startup.h"

int main(int argc, char **argv)
{
    prepareApplication();
    return runApplication(argc, argv);
}

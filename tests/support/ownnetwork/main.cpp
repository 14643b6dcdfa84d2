#include "ownnetwork.h"

#include <cstdio>

#include <unistd.h>

// own-network PROGRAM [ARGUMENT ...]: runs the program in a network of its own where the system allows
// it, else where it is.
int main(int argc, char **argv)
{
    if (argc < 2) {
        std::fputs("usage: own-network PROGRAM [ARGUMENT ...]\n", stderr);
        return 2;
    }
    EnterOwnNetwork();
    execvp(argv[1], argv + 1);
    std::perror(argv[1]);
    return 127;
}

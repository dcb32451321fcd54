// SPDX-License-Identifier: MIT

#include "shell/CVX440_AccessApplication.h"

int main(int argc, char** argv)
{
    const CVX440_AccessApplication application(argc, argv);
    return 0;
}

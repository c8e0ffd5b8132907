// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/Application.h"

int main(int argc, char **argv)
{
    Application application(argc, argv);
    return application.run();
}

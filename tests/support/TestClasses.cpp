// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/TestClasses.h"

#include <iostream>
#include <map>
#include <string>

namespace {

/// Filled before main() begins, from other sources: made at the first use.
std::map<std::string, testclasses::Run> &classes()
{
    static std::map<std::string, testclasses::Run> all;
    return all;
}

int listClasses()
{
    std::cerr << "The first argument is one of:\n";
    for (const auto &[name, run] : classes())
        std::cerr << "  " << name << '\n';
    return 2;
}

} // namespace

testclasses::Registered::Registered(const char *name, Run run)
{
    classes().emplace(name, run);
}

int main(int argc, char **argv)
{
    const auto chosen = argc > 1 ? classes().find(argv[1]) : classes().end();
    if (chosen == classes().end())
        return listClasses();
    argv[1] = argv[0];
    return chosen->second(argc - 1, argv + 1);
}

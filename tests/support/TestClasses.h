// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QTest>

/// A program holds many test classes, since most of the time goes into linking programs and reading
/// headers. Its first argument names the class to run, the others are Qt Test's.
namespace testclasses {

/// Runs a class, as main() would. @p argv begins with the program.
using Run = int (*)(int argc, char **argv);

struct Registered
{
    Registered(const char *name, Run run);
};

template <typename Test> int run(int argc, char **argv)
{
    Test test;
    return QTest::qExec(&test, argc, argv);
}

template <typename Application, typename Test> int runInside(int argc, char **argv)
{
    const Application application(argc, argv);
    return run<Test>(argc, argv);
}

} // namespace testclasses

/// @p Runner is called for @p Test.
#define TEST_CLASS_RUN_BY(Test, Runner)                                                            \
    static const testclasses::Registered registered##Test{#Test, Runner}; // NOLINT(cert-err58-cpp)

/// A class that makes its own application object, or needs none.
#define TEST_CLASS(Test) TEST_CLASS_RUN_BY(Test, &testclasses::run<Test>)
/// A class that runs inside of a QCoreApplication, QApplication or the like.
#define TEST_CLASS_INSIDE(Application, Test)                                                       \
    TEST_CLASS_RUN_BY(Test, (&testclasses::runInside<Application, Test>))

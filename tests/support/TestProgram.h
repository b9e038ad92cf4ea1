#pragma once

#include <QTest>

// A room's test classes share one program, which links the rooms of Parklet once instead of once a class:
//
//     shelf_tests CLASS [ARGUMENT OF QTEST ...]
//
// A class joins it with one of the macros below at the end of its source.
namespace TestProgram {

using Main = int (*)(int argc, char **argv);

// Registers a test class before main() runs.
struct Registration {
    Registration(const char *testClass, Main main);
};

template<typename Test, typename Application>
int run(int argc, char **argv)
{
    Application application(argc, argv);
    application.setAttribute(Qt::AA_Use96Dpi, true);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

template<typename Test>
int runWithoutApplication(int argc, char **argv)
{
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace TestProgram

#define PARKLET_TEST(Class) PARKLET_TEST_RUN_BY(Class, (TestProgram::run<Class, QApplication>))
#define PARKLET_GUILESS_TEST(Class) PARKLET_TEST_RUN_BY(Class, (TestProgram::run<Class, QCoreApplication>))
#define PARKLET_APPLESS_TEST(Class) PARKLET_TEST_RUN_BY(Class, TestProgram::runWithoutApplication<Class>)
#define PARKLET_TEST_RUN_BY(Class, Main) static const TestProgram::Registration registration##Class(#Class, Main);

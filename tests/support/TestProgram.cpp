#include "tests/support/TestProgram.h"

#include "tests/support/BuiltHelpers.h"

#include <QByteArray>
#include <QMap>

#include <cstdio>

namespace {

QMap<QByteArray, TestProgram::Main> &testClasses()
{
    static QMap<QByteArray, TestProgram::Main> classes;
    return classes;
}

} // namespace

TestProgram::Registration::Registration(const char *testClass, Main main)
{
    testClasses().insert(testClass, main);
}

int main(int argc, char **argv)
{
    const auto main = argc > 1 ? testClasses().value(argv[1]) : nullptr;
    if (!main) {
        std::fprintf(stderr, "usage: %s CLASS [ARGUMENT OF QTEST ...], where CLASS is one of:\n", argv[0]);
        for (const QByteArray &testClass : testClasses().keys())
            std::fprintf(stderr, "    %s\n", testClass.constData());
        return 2;
    }
    useBuiltHelpers();
    argv[1] = argv[0];
    return main(argc - 1, argv + 1);
}

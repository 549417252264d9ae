#pragma once

#include <QCoreApplication>
#include <QTest>

#include <functional>
#include <initializer_list>
#include <memory>
#include <vector>

namespace quiv {

// Runs several test classes in one program; the number of failures, as a test program returns it.
inline int runTests(int argc, char** argv, std::initializer_list<QObject*> tests) {
    int failures = 0;
    for (QObject* test : tests)
        failures += QTest::qExec(test, argc, argv);
    return failures;
}

using TestFactory = std::function<std::unique_ptr<QObject>()>;

inline std::vector<TestFactory>& registeredTests() {
    static std::vector<TestFactory> factories;
    return factories;
}

// Enters a test class into the program that it is linked into; a file of such a class ends with
//   static const quiv::TestCase<PairingTest> registered;
template <typename Test> struct TestCase {
    TestCase() {
        registeredTests().emplace_back([] { return std::make_unique<Test>(); });
    }
};

// Runs every class entered. A class name as the first argument runs that one alone, with the
// arguments after it.
inline int runRegisteredTests(int argc, char** argv) {
    int failures = 0;
    int run = 0;
    for (const TestFactory& factory : registeredTests()) {
        const std::unique_ptr<QObject> test = factory();
        const bool isNamed = argc > 1 && qstrcmp(test->metaObject()->className(), argv[1]) == 0;
        if (!isNamed && argc > 1 && argv[1][0] != '-')
            continue;
        ++run;
        failures += isNamed ? runTests(argc - 1, argv + 1, {test.get()})
                            : runTests(argc, argv, {test.get()});
    }
    return run == 0 ? 1 : failures;
}

} // namespace quiv

#include "support/test_main.h"

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return quiv::runRegisteredTests(argc, argv);
}

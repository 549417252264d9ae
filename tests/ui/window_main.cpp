#include "support/test_main.h"

#include <QGuiApplication>

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    return quiv::runRegisteredTests(argc, argv);
}

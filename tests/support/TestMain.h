#pragma once
// Headless test start-up: a temporary HOME (so Documents and settings are
// the test's own), the offscreen platform, and isolated settings.
#include <QApplication>
#include <QtTest>

#include "app/ui/AccessibleControls.h"

namespace TestEnv {
// Call before QApplication exists. Returns the temporary HOME.
QString prepare();
QString home();
}

#define TAMBLO_TEST_MAIN(TestObject)                                   \
    int main(int argc, char **argv)                                    \
    {                                                                  \
        TestEnv::prepare();                                            \
        QApplication app(argc, argv);                                  \
        app.setAttribute(Qt::AA_Use96Dpi, true);                       \
        AccessibleControls::install();  /* as the application does */ \
        TestObject tc;                                                 \
        QTEST_SET_MAIN_SOURCE_PATH                                     \
        return QTest::qExec(&tc, argc, argv);                          \
    }

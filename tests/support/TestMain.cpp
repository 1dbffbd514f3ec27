#ifdef TABRIX_TEST_WIDGETS
#include <QApplication>
using TestApplication = QApplication; // widget tests need the full GUI application
#else
#include <QCoreApplication>
using TestApplication = QCoreApplication;
#endif
#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
#ifdef TABRIX_TEST_WIDGETS
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen"); // listing the tests at build time has no display either
#endif
    TestApplication app(argc, argv);
    return RUN_ALL_TESTS();
}

#ifdef TABRIX_TEST_WIDGETS
#include <QApplication>
using TestApplication = QApplication; // widget tests need the full widget application
#else
#include <QGuiApplication>
using TestApplication = QGuiApplication;
#endif
#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    // A GUI application (without a display) so that tests can draw fixtures with fonts: QPdfWriter, QPainter.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    TestApplication app(argc, argv);
    return RUN_ALL_TESTS();
}

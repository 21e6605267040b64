#include "screens/Graphics.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QStringList>

namespace {

QStringList warnings;

void keepWarning(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type != QtDebugMsg && type != QtInfoMsg)
        warnings.append(message);
}

// A binding that fails or a loop of bindings is told in a warning and nowhere else.
class WarningsFail : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override { warnings.clear(); }
    void OnTestEnd(const testing::TestInfo&) override {
        if (!warnings.isEmpty())
            ADD_FAILURE() << "Qt warned: " << warnings.join(QLatin1Char('\n')).toStdString();
    }
};

} // namespace

int main(int argc, char* argv[]) {
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    quorl::chooseRenderer();
    QGuiApplication application(argc, argv);
    qInstallMessageHandler(keepWarning);
    testing::UnitTest::GetInstance()->listeners().Append(new WarningsFail); // owned by the list
    return RUN_ALL_TESTS();
}

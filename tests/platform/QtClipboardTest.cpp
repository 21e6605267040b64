#include "platform/linux/QtClipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <gtest/gtest.h>

namespace quorl::test {

namespace {

std::string contents() {
    return QGuiApplication::clipboard()->text().toStdString();
}

TEST(QtClipboard, HoldsTheText) {
    QtClipboard().replace("Größe\n\U0001F469\u200D\U0001F680 ");

    EXPECT_EQ(contents(), "Größe\n\U0001F469\u200D\U0001F680 ");
}

TEST(QtClipboard, ATextTakesThePlaceOfWhatWasThere) {
    auto* other = new QMimeData;
    other->setText(QStringLiteral("old"));
    other->setHtml(QStringLiteral("<b>old</b>"));
    QGuiApplication::clipboard()->setMimeData(other); // which owns it

    QtClipboard().replace("new");

    EXPECT_EQ(contents(), "new");
    EXPECT_FALSE(QGuiApplication::clipboard()->mimeData()->hasHtml());
}

TEST(QtClipboard, AnEmptyTextIsAText) {
    QtClipboard().replace("old");

    QtClipboard().replace("");

    EXPECT_EQ(contents(), "");
}

} // namespace

} // namespace quorl::test

int main(int argc, char* argv[]) {
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}

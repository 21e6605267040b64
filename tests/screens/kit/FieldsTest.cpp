#include "screens/kit/KitHarness.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLocale>

#include <utility>
#include <vector>

namespace quorl::test {
namespace {

class KitFields : public KitTest {
protected:
    KitFields() { open("Fields"); }
    ~KitFields() override { QLocale::setDefault(before); }

    std::string textIn(const char* field) {
        click(find(field));
        return window.activeFocusItem()->property("text").toString().toStdString();
    }

    void replaceBy(const char* text) {
        press(Qt::Key_A, Qt::ControlModifier);
        press(Qt::Key_Delete);
        clearLog();
        type(text);
    }

private:
    QLocale before;
};

TEST_F(KitFields, TellWhatIsTypedLetterByLetter) {
    click(find("line"));
    EXPECT_EQ(keys(), "Name");
    press(Qt::Key_End);
    type("a!");

    EXPECT_EQ(log(), "line:Zuna line:Zuna! ");
}

TEST_F(KitFields, ExplainThemselvesUnderThePointerAndToAScreenReader) {
    click(find("line"));
    EXPECT_EQ(accessible(*window.activeFocusItem()).text(QAccessible::Description),
              QStringLiteral("What you call it"));
    QTest::mouseMove(&window, {1, 1});
    EXPECT_EQ(findShown("What you call it"), nullptr);

    QTest::mouseMove(&window, middle(find("line")));
    EXPECT_TRUE(waitFor([&] { return findShown("What you call it") != nullptr; }));
}

TEST_F(KitFields, TakeATextFromOutsideWithoutTellingItBack) {
    find("line").setProperty("text", QStringLiteral("Nuvel"));
    find("lines").setProperty("text", QStringLiteral("Two\nlines"));

    EXPECT_EQ(log(), "");
    EXPECT_EQ(textIn("line"), "Nuvel");
    EXPECT_EQ(textIn("lines"), "Two\nlines");
}

TEST_F(KitFields, OfSeveralLinesGrowAndAreLeftByTab) {
    QQuickItem& field = find("lines");
    const qreal height = field.height();
    click(field);
    EXPECT_EQ(keys(), "Notes");
    for (int line = 0; line < 4; ++line)
        press(Qt::Key_Return);
    EXPECT_GT(field.height(), height);

    press(Qt::Key_Tab);
    EXPECT_EQ(keys(), "Input $ / 1M tokens");
}

TEST_F(KitFields, OfNumbersTellNumbersOnlyAndForgetTheRest) {
    EXPECT_EQ(textIn("price"), "3.5");
    replaceBy("2.25x");
    EXPECT_EQ(log(), "price:2 price:2 price:2.2 price:2.25 ");

    click(find("line"));
    EXPECT_EQ(textIn("price"), "2.25");
}

TEST_F(KitFields, OfWholeNumbersTakeNoFraction) {
    EXPECT_EQ(textIn("tokens"), "1024");
    replaceBy("12.5");

    EXPECT_EQ(log(), "tokens:1 tokens:12 ");
}

TEST_F(KitFields, OfNumbersFollowTheUsersLocale) {
    QLocale::setDefault(QLocale(QLocale::German));
    find("price").setProperty("value", 1234.75);

    EXPECT_EQ(textIn("price"), "1234,75");
    replaceBy("1,5");
    EXPECT_EQ(find("price").property("value").toDouble(), 1.5);
}

TEST_F(KitFields, OfNumbersKeepWhatIsBeingTyped) {
    click(find("price"));
    replaceBy("1.50");

    EXPECT_EQ(window.activeFocusItem()->property("text").toString(), QStringLiteral("1.50"));
    EXPECT_EQ(find("price").property("value").toDouble(), 1.5);
}

TEST_F(KitFields, ForSecretsShowDotsAndAreNeitherCopiedNorUndone) {
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    QQuickItem& secret = find("secret");
    click(secret);
    type("sk-key");
    EXPECT_EQ(secret.property("displayText").toString(), QString(6, QChar(0x25CF)));
    EXPECT_TRUE(accessible(secret).state().passwordEdit);

    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_C, Qt::ControlModifier);
    press(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("before"));

    secret.setProperty("text", QString());
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(secret.property("text").toString(), QString());
}

TEST_F(KitFields, ForSearchingAreEmptiedByEscape) {
    EXPECT_EQ(nameOf(find("search")), "Search comparison history");
    click(find("search"));
    type("a");
    press(Qt::Key_Escape);

    EXPECT_EQ(log(), "search:a search: ");
    EXPECT_EQ(textIn("search"), "");
}

TEST_F(KitFields, APickerShowsItsPlaceholderAndThenWhatIsChosen) {
    EXPECT_NE(findShown("Choose a provider"), nullptr);
    tabTo("search");
    while (keys() != "Provider")
        press(Qt::Key_Tab);
    EXPECT_EQ(accessible(*window.activeFocusItem()).role(), QAccessible::ComboBox);

    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(log(), "picked:b ");
    EXPECT_EQ(findShown("Choose a provider"), nullptr);
    EXPECT_NE(findShown("Second"), nullptr);
    EXPECT_EQ(accessible(*window.activeFocusItem()).text(QAccessible::Description), QStringLiteral("Second"));
}

TEST_F(KitFields, APickerOpensOnWhatIsChosenAndChangesNothingByEscape) {
    find("picker").setProperty("currentValue", QStringLiteral("b"));
    click(find("picker"));
    EXPECT_EQ(keys(), "Second");
    press(Qt::Key_Escape);

    EXPECT_EQ(log(), "");
    EXPECT_EQ(keys(), "Provider");
}

TEST_F(KitFields, APickerIsChosenFromByAClick) {
    click(find("picker"));
    ASSERT_NE(findShown("Third"), nullptr);
    click(*findShown("Third"));

    EXPECT_EQ(log(), "picked:c ");
}

TEST_F(KitFields, SegmentsAreOneStopAndTheArrowsMoveInside) {
    while (keys() != "Choice")
        press(Qt::Key_Tab);
    EXPECT_EQ(accessible(*window.activeFocusItem()).role(), QAccessible::RadioButton);
    EXPECT_TRUE(accessible(*window.activeFocusItem()).state().checked);

    press(Qt::Key_Right);
    EXPECT_EQ(keys(), "Score");
    EXPECT_TRUE(accessible(*window.activeFocusItem()).state().checked);
    press(Qt::Key_Down);
    EXPECT_EQ(keys(), "Ask a yes or no question");
    press(Qt::Key_Right);
    EXPECT_EQ(keys(), "Choice");
    press(Qt::Key_Left);
    EXPECT_EQ(log(), "format:1 format:2 format:0 format:2 ");

    press(Qt::Key_Tab);
    EXPECT_EQ(keys(), "Enabled");
    press(Qt::Key_Backtab);
    EXPECT_EQ(keys(), "Ask a yes or no question");
}

TEST_F(KitFields, ASegmentIsChosenByAClick) {
    QQuickItem& segments = find("segments");
    EXPECT_EQ(segments.width(), 128);
    EXPECT_EQ(segments.height(), 32);
    clickAt(segments.mapToScene({64, 16}).toPoint());

    EXPECT_EQ(log(), "format:1 ");
}

TEST_F(KitFields, WordsStandAtTheMiddleOfTheirBoxAndOfTheirSwitch) {
    for (const auto& [name, start] : {std::pair("check", 28), std::pair("toggle", 48)}) {
        QQuickItem& control = find(name);
        control.setProperty("text", QStringLiteral("Held")); // of which no letter goes below the line
        settle();
        const QRect place = control.mapRectToScene(control.boundingRect()).toRect().adjusted(start, 0, 0, 0);
        const QImage words = window.grabWindow().copy(place);
        std::vector<int> inked;
        for (int y = 0; y < words.height(); ++y) {
            for (int x = 0; x < words.width(); ++x) {
                if (qGray(words.pixel(x, y)) < 140) {
                    inked.push_back(y);
                    break;
                }
            }
        }

        ASSERT_FALSE(inked.empty()) << name;
        EXPECT_NEAR((inked.front() + inked.back() + 1) / 2.0, place.height() / 2.0, 1) << name;
    }
}

TEST_F(KitFields, ASwitchIsTurnedByClickSpaceAndReturn) {
    QQuickItem& toggle = find("toggle");
    EXPECT_EQ(accessible(toggle).role(), QAccessible::CheckBox);
    click(toggle);
    press(Qt::Key_Space);
    press(Qt::Key_Return);

    EXPECT_EQ(log(), "toggle:true toggle:false toggle:true ");
    EXPECT_TRUE(accessible(toggle).state().checked);
}

TEST_F(KitFields, ASwitchThatIsOffSaysWhyAndStays) {
    QQuickItem& toggle = find("toggleOff");
    click(toggle);
    accessible(toggle).actionInterface()->doAction(QAccessibleActionInterface::toggleAction());

    EXPECT_FALSE(toggle.property("checked").toBool());
    EXPECT_EQ(accessible(toggle).text(QAccessible::Description), QStringLiteral("Add an API key."));
    EXPECT_NE(findShown("Add an API key."), nullptr);
}

TEST_F(KitFields, ACheckBoxIsTurnedByClickSpaceAndReturn) {
    QQuickItem& check = find("check");
    EXPECT_EQ(nameOf(check), "Include subcategories");
    click(check);
    press(Qt::Key_Space);
    press(Qt::Key_Return);
    click(find("checkOff"));

    EXPECT_EQ(log(), "check:false check:true check:false ");
    EXPECT_FALSE(accessible(check).state().checked);
}

TEST_F(KitFields, OfOneLineAreReadFromTheBeginningUnlessOneWritesInThem) {
    QQuickItem& field = find("plain");
    const auto beginning = [&] {
        QRectF caret;
        QMetaObject::invokeMethod(&field, "positionToRectangle", Q_RETURN_ARG(QRectF, caret), Q_ARG(int, 0));
        return caret.x();
    };
    const qreal atRest = beginning();
    field.setProperty("text", QStringLiteral("word ").repeated(100));
    settle();
    EXPECT_EQ(beginning(), atRest);

    click(field);
    press(Qt::Key_End);
    EXPECT_LT(beginning(), atRest);

    press(Qt::Key_Tab);
    EXPECT_EQ(beginning(), atRest);
    field.setWidth(field.width() / 2);
    settle();
    EXPECT_EQ(beginning(), atRest);
}

} // namespace
} // namespace quorl::test

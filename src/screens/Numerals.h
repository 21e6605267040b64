#pragma once

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

namespace quorl {

// How numbers are written and read in fields and columns. Thread: main. Failures: none.
class Numerals : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// As the user's locale writes it, with as many decimals as it takes and without group separators.
    Q_INVOKABLE [[nodiscard]] static QString text(double number);

    /// What the user's locale reads in the text; not a number when it reads none, or no whole one where that
    /// is asked.
    Q_INVOKABLE [[nodiscard]] static double number(const QString& text, bool isWhole);

    /// For drawing only: its digits as those of equal width, where the program's font has them.
    Q_INVOKABLE [[nodiscard]] static QString tabular(const QString& text);
};

} // namespace quorl

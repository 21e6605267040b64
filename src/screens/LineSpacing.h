#pragma once

#include <QFont>
#include <QObject>
#include <QPointer>
#include <QQuickTextDocument>
#include <qqmlregistration.h>

namespace quorl {

// Spreads the lines of a text editor to a height, which the editor itself has no property for. A line of a
// taller script grows beyond it. Thread: main.
class LineSpacing : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickTextDocument* document MEMBER document WRITE setDocument REQUIRED)
    Q_PROPERTY(QFont font MEMBER font WRITE setFont REQUIRED)
    Q_PROPERTY(int lineHeight MEMBER lineHeight WRITE setLineHeight REQUIRED) // pixels

public:
    using QObject::QObject;

    void setDocument(QQuickTextDocument* next);
    void setFont(const QFont& next);
    void setLineHeight(int next);

private:
    void apply();

    QPointer<QQuickTextDocument> document;
    QFont font;
    int lineHeight = 0;
    bool isApplying = false;
};

} // namespace quorl

#include "platform/linux/SaveDialog.h"

#include <QDir>
#include <QFileInfo>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QStandardPaths>
#include <QUrl>
#include <QVariant>

#include <utility>

namespace quorl {

namespace {

constexpr std::string_view folderKey = "export.folder";

// Qt has no public C++ interface to the dialog; QML's is the supported one.
constexpr auto source = R"(
import QtQuick
import QtQuick.Dialogs

FileDialog {
    objectName: "saveDialog"
    fileMode: FileDialog.SaveFile
    acceptLabel: "Save" // Qt Quick's own one says "Open"
    modality: Qt.WindowModal
}
)";

QString startFolder(const UserDefaults& defaults) {
    if (const auto last = defaults.string(folderKey)) {
        auto folder = QString::fromStdString(*last);
        if (QFileInfo(folder).isDir())
            return folder;
    }
    const auto documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

// Qt Quick's own dialog of Qt 6.4 gives a name that was typed as a bare path, which is no URL of a local
// file, and leaves the ending to us.
QString localPath(const QUrl& chosen, const QString& extension) {
    if (!chosen.scheme().isEmpty())
        return chosen.toLocalFile();
    const QString path = chosen.toString();
    return path.isEmpty() || !QFileInfo(path).suffix().isEmpty() ? path : path + u'.' + extension;
}

} // namespace

class SaveDialog::Loaded : public QObject {
    Q_OBJECT

public:
    Loaded(QQuickWindow& window, UserDefaults& stored) : defaults(stored) {
        QQmlEngine* engine = qmlEngine(&window);
        QQmlComponent component(engine);
        component.setData(source, QUrl());
        dialog.reset(component.create(QQmlEngine::contextForObject(&window)));
        if (!dialog) {
            qWarning("%s", qUtf8Printable(component.errorString()));
            return;
        }
        dialog->setParent(&window);
        dialog->setProperty("parentWindow", QVariant::fromValue<QWindow*>(&window));
        connect(dialog.get(), SIGNAL(accepted()), this, SLOT(accept()));
        connect(dialog.get(), SIGNAL(rejected()), this, SLOT(reject()));
    }

    [[nodiscard]] bool isUsable() const { return dialog && !answer; }

    void open(const std::string& name, const FileType& type, Chosen chosen) {
        answer = std::move(chosen);
        const auto extension = QString::fromStdString(type.extension);
        const auto folder = QUrl::fromLocalFile(startFolder(defaults));
        const auto file = QUrl::fromLocalFile(folder.toLocalFile() + u'/' + QString::fromStdString(name));
        dialog->setProperty(
            "nameFilters",
            QStringList{QStringLiteral("%1 (*.%2)").arg(QString::fromStdString(type.name), extension)});
        dialog->setProperty("defaultSuffix", extension);
        dialog->setProperty("currentFolder", folder);
        dialog->setProperty("selectedFile", file);
        QMetaObject::invokeMethod(dialog.get(), "open");
    }

private Q_SLOTS:
    void accept() {
        const auto path =
            localPath(dialog->property("selectedFile").toUrl(), dialog->property("defaultSuffix").toString());
        // A place that is no local file cannot be written to.
        if (path.isEmpty())
            return reject();
        defaults.setString(folderKey, QFileInfo(path).absolutePath().toStdString());
        finish(std::filesystem::path(path.toStdString()));
    }
    void reject() { finish(std::nullopt); }

private:
    // The answer may ask anew.
    void finish(const std::optional<std::filesystem::path>& target) {
        if (const Chosen chosen = std::exchange(answer, nullptr))
            chosen(target);
    }

    UserDefaults& defaults;
    std::unique_ptr<QObject> dialog;
    Chosen answer; // while the dialog is open
};

SaveDialog::SaveDialog(QQuickWindow& parent, UserDefaults& stored) : window(parent), defaults(stored) {}

SaveDialog::~SaveDialog() = default;

void SaveDialog::chooseTarget(const std::string& name, const FileType& type, Chosen chosen) {
    if (!loaded)
        loaded = std::make_unique<Loaded>(window, defaults);
    if (!loaded->isUsable())
        return chosen(std::nullopt);
    loaded->open(name, type, std::move(chosen));
}

} // namespace quorl

#include "SaveDialog.moc"

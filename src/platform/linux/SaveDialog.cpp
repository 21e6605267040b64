#include "platform/linux/SaveDialog.h"

#include <QDir>
#include <QFileInfo>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QStandardPaths>
#include <QUrl>
#include <QVariant>

#include <algorithm>
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

// A desktop's dialog asks by itself before a file is replaced, Qt Quick's own one of Qt 6.4 does not.
constexpr auto replaceSource = R"(
import QtQuick
import QtQuick.Dialogs

MessageDialog {
    objectName: "replaceDialog"
    modality: Qt.WindowModal
    buttons: MessageDialog.Yes | MessageDialog.No
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
    Loaded(QQuickWindow& parent, UserDefaults& stored) : window(parent), defaults(stored) {
        dialog = make(source);
        if (!dialog)
            return;
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
        target = path;
        if (isQtQuicksOwn() && QFileInfo::exists(path))
            askToReplace();
        else
            take();
    }
    void reject() { finish(std::nullopt); }
    void take() {
        defaults.setString(folderKey, QFileInfo(target).absolutePath().toStdString());
        finish(std::filesystem::path(target.toStdString()));
    }
    void chooseAnother() { QMetaObject::invokeMethod(dialog.get(), "open"); }

private:
    /// Null where it cannot be made.
    std::unique_ptr<QObject> make(const char* ofSource) {
        QQmlComponent component(qmlEngine(&window));
        component.setData(ofSource, QUrl());
        std::unique_ptr<QObject> made(component.create(QQmlEngine::contextForObject(&window)));
        if (!made) {
            qWarning("%s", qUtf8Printable(component.errorString()));
            return nullptr;
        }
        made->setParent(&window);
        made->setProperty("parentWindow", QVariant::fromValue<QWindow*>(&window));
        return made;
    }

    [[nodiscard]] bool isQtQuicksOwn() const {
        const auto children = window.findChildren<QObject*>();
        return std::ranges::any_of(
            children, [](const QObject* child) { return child->inherits("QQuickFileDialogImpl"); });
    }

    void askToReplace() {
        if (!replaceDialog) {
            replaceDialog = make(replaceSource);
            if (!replaceDialog)
                return reject();
            connect(replaceDialog.get(), SIGNAL(accepted()), this, SLOT(take()));
            connect(replaceDialog.get(), SIGNAL(rejected()), this, SLOT(chooseAnother()));
        }
        replaceDialog->setProperty("text", tr("Replace “%1”?").arg(QFileInfo(target).fileName()));
        replaceDialog->setProperty("informativeText",
                                   tr("A file of that name is there already. What it holds will be lost."));
        QMetaObject::invokeMethod(replaceDialog.get(), "open");
    }

    // The answer may ask anew.
    void finish(const std::optional<std::filesystem::path>& place) {
        if (const Chosen chosen = std::exchange(answer, nullptr))
            chosen(place);
    }

    QQuickWindow& window;
    UserDefaults& defaults;
    std::unique_ptr<QObject> dialog;
    std::unique_ptr<QObject> replaceDialog; // once a file was to be replaced
    QString target;
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

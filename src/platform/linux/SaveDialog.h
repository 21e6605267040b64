#pragma once

#include "platform/Platform.h"

#include <memory>

class QQuickWindow;

namespace quorl {

// The desktop's own save dialog where the session's platform theme has one (that of the desktop portal among
// them), else Qt Quick's. Nothing of it is loaded before it is first asked for. It opens in the folder in
// which the last file was saved, in the documents at first. While it is open, a second question is answered
// with nothing. Thread: main. Failures: a dialog that cannot be made says so on standard error and counts as
// cancelled.
class SaveDialog : public FileSaver {
public:
    /// What is passed is borrowed and must outlive the dialog; the window has been made by a QML engine.
    SaveDialog(QQuickWindow& window, UserDefaults& defaults);
    ~SaveDialog() override;

    void chooseTarget(const std::string& name, const FileType& type, Chosen chosen) override;

private:
    class Loaded;

    QQuickWindow& window;
    UserDefaults& defaults;
    std::unique_ptr<Loaded> loaded;
};

} // namespace quorl

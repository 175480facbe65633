#pragma once
// Presses "取消" on every progress window that shows while it lives, and makes the window show
// at once: a test's way of being the user who cancels a long run.
#include <QApplication>
#include <QProgressDialog>
#include <QTimer>

#include "framework/ProgressDialog.h"

namespace qx::test {

class CancelledProgress {
public:
    CancelledProgress() : previousDelay_(TProgressRun::ShowDelay()) {
        TProgressRun::SetShowDelay(0);
        QObject::connect(&presser_, &QTimer::timeout, [] {
            for (QWidget* w : QApplication::allWidgets())
                if (auto* window = qobject_cast<QProgressDialog*>(w); window && window->isVisible()) window->cancel();
        });
        presser_.start(0);
    }
    ~CancelledProgress() { TProgressRun::SetShowDelay(previousDelay_); }
    CancelledProgress(const CancelledProgress&) = delete;
    CancelledProgress& operator=(const CancelledProgress&) = delete;

private:
    int previousDelay_;
    QTimer presser_;
};

}  // namespace qx::test

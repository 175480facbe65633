#include "framework/ProgressDialog.h"

#include <QCoreApplication>
#include <QProgressDialog>

#include "db/Interrupt.h"
#include "db/Database.h"
#include "framework/U_function.h"

namespace {
int gShowDelay = 1000;
}

void TProgressRun::SetShowDelay(int milliseconds) { gShowDelay = milliseconds; }
int TProgressRun::ShowDelay() { return gShowDelay; }

TProgressRun::TProgressRun(QWidget* parent, const QString& text) : parent_(parent), text_(text) {
    clock_.start();
    previous_ = qx::db::setInterruptCheck([this] { return poll(); });
}

TProgressRun::~TProgressRun() {
    qx::db::setInterruptCheck(previous_);
    if (dialog_) dialog_->deleteLater();
}

bool TProgressRun::poll() {
    if (cancelled_) return true;
    if (!dialog_ && clock_.elapsed() >= gShowDelay) {
        dialog_ = new QProgressDialog(text_, QObject::tr("取消"), 0, 0, parent_);
        dialog_->setObjectName("ProgressDialog");
        dialog_->setWindowModality(Qt::WindowModal);
        dialog_->setMinimumDuration(0);
        dialog_->setAutoClose(false);
        dialog_->setAutoReset(false);
        dialog_->show();
    }
    if (dialog_) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        if (dialog_->wasCanceled()) cancelled_ = true;
    }
    return cancelled_;
}

bool TProgressRun::Step(long long done, long long total) {
    poll();
    if (dialog_ && total > 0) {
        dialog_->setMaximum(1000);
        dialog_->setValue(static_cast<int>(done * 1000 / total));
    }
    return !cancelled_;
}

void TProgressRun::Run(QWidget* parent, const QString& text, const std::function<void()>& body) {
    TProgressRun progress(parent, text);
    try {
        body();
    } catch (const std::exception&) {
        if (progress.Cancelled()) Abort();  // cancelled by the user: nothing to report
        throw;
    }
}

#pragma once
// Progress for long runs: while a TProgressRun lives, a statement that takes longer than the
// show delay (1 s) brings up a modal progress window with a cancel button; the screen keeps
// repainting, and cancel stops the running statement (it fails with "interrupted", its batch
// rolled back). Reports wrap their data-open in it:
//   TProgressRun progress(this, "正在汇总…");
//   GetData();                      // throws EAbort after a cancel: the report keeps its rows
// Steps of work done in the screen itself call Step(done, total), which returns false once
// the user has cancelled.
#include <QElapsedTimer>
#include <QPointer>
#include <QProgressDialog>
#include <QString>
#include <functional>

#include "framework/Export.h"


class QWidget;

class QX_FRAMEWORK_EXPORT TProgressRun {
public:
    TProgressRun(QWidget* parent, const QString& text);
    ~TProgressRun();
    TProgressRun(const TProgressRun&) = delete;
    TProgressRun& operator=(const TProgressRun&) = delete;

    // Reports work done (total 0: unknown); false once cancelled.
    bool Step(long long done = 0, long long total = 0);
    bool Cancelled() const { return cancelled_; }
    // The window, once shown (nullptr before the show delay has passed).
    QProgressDialog* Dialog() const { return dialog_; }

    // Runs `body` under progress; a cancel turns the interruption into EAbort (silent).
    static void Run(QWidget* parent, const QString& text, const std::function<void()>& body);

    // How long a run goes before the window shows (tests set 0).
    static void SetShowDelay(int milliseconds);
    static int ShowDelay();

private:
    bool poll();

    QWidget* parent_;
    QString text_;
    QElapsedTimer clock_;
    QPointer<QProgressDialog> dialog_;
    bool cancelled_ = false;
    std::function<bool()> previous_;
};

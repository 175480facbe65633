#include "host/MainWindow.h"

#include <QAction>
#include <QApplication>
#include <QChildEvent>
#include <QCloseEvent>
#include <QDialog>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "framework/Frm_Base.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"
#include "host/Menu.h"
#include "host/Session.h"

namespace qx::host {

MainWindow::MainWindow(QXProc2Function entry, QString databaseName, QWidget* parent)
    : QMainWindow(parent), entry_(entry), databaseName_(std::move(databaseName)) {
    setObjectName("MainForm");
    tabs_ = new QTabWidget(this);
    tabs_->setObjectName("ScreenTabs");
    tabs_->setTabsClosable(true);
    tabs_->setDocumentMode(true);
    connect(tabs_, &QTabWidget::tabCloseRequested, this, &MainWindow::closeTab);
    setCentralWidget(tabs_);
    buildHomePage();
    buildMenu();

    userLabel_ = new QLabel(this);
    warehouseLabel_ = new QLabel(this);
    databaseLabel_ = new QLabel(this);
    userLabel_->setObjectName("StatusUser");
    warehouseLabel_->setObjectName("StatusWarehouse");
    databaseLabel_->setObjectName("StatusDatabase");
    statusBar()->addWidget(userLabel_);
    statusBar()->addWidget(warehouseLabel_);
    statusBar()->addPermanentWidget(databaseLabel_);
    refreshSession();
    resize(1200, 760);
    // Non-modal screens hand themselves to the presenter when their InitForm shows them.
    qx::ui::setScreenPresenter([this](TFrm_Base* screen) { embedScreen(screen); });
    acceptingScreens_ = true;
}

MainWindow::~MainWindow() {
    qx::ui::setScreenPresenter(nullptr);
}

void MainWindow::buildHomePage() {
    auto* home = new QWidget;
    home->setObjectName("HomePage");
    auto* layout = new QVBoxLayout(home);
    homeText_ = new QLabel(home);
    homeText_->setObjectName("HomeText");
    homeText_->setAlignment(Qt::AlignCenter);
    layout->addWidget(homeText_);
    tabs_->addTab(home, "首页");
    tabs_->tabBar()->setTabButton(0, QTabBar::RightSide, nullptr);  // home stays
}

void MainWindow::buildMenu() {
    for (const MenuGroup& group : moduleMenu()) {
        QMenu* menu = menuBar()->addMenu(QString::fromUtf8(group.title));
        menu->setObjectName(group.objectName);
        for (const MenuEntry& entry : group.entries) {
            QAction* action = menu->addAction(QString::fromUtf8(entry.caption));
            action->setObjectName(QString("func%1").arg(entry.code));
            action->setData(entry.code);
            const int code = entry.code;
            connect(action, &QAction::triggered, this, [this, code] { openFunction(code); });
        }
    }
    QMenu* window = menuBar()->addMenu("窗口(&W)");
    window->setObjectName("menuWindow");
    QAction* closeCurrent = window->addAction("关闭当前窗口", QKeySequence("Ctrl+W"));
    closeCurrent->setObjectName("actCloseTab");
    connect(closeCurrent, &QAction::triggered, this, [this] { closeTab(tabs_->currentIndex()); });
    QAction* quit = window->addAction("退出", QKeySequence("Ctrl+Q"));
    quit->setObjectName("actQuit");
    connect(quit, &QAction::triggered, this, &QWidget::close);
}

QAction* MainWindow::actionFor(int code) const {
    return findChild<QAction*>(QString("func%1").arg(code));
}

void MainWindow::refreshSession() {
    setWindowTitle(G_CoName.isEmpty() ? QString("QX_CK 库存管理")
                                      : QString("QX_CK 库存管理 - %1").arg(G_CoName));
    homeText_->setText(QString("<h2>QX_CK 库存管理</h2><p>%1</p><p>请从菜单选择功能。</p>")
                           .arg(G_CoName.toHtmlEscaped()));
    updateStatus();
}

void MainWindow::updateStatus() {
    userLabel_->setText(QString("用户: %1 %2").arg(G_UserId, G_UserName));
    warehouseLabel_->setText(QString("仓库: %1 %2").arg(G_ckid, G_CkName));
    databaseLabel_->setText(QString("数据库: %1").arg(databaseName_));
}

void MainWindow::openFunction(int code) {
    const Trecord rec = recordFor(code, databaseName_);
    G_record = rec;
    // The module reports its own messages; what escapes a screen is reported here.
    qx::guard([&] { entry_(rec, this); });
    takeInShownScreens();
}

void MainWindow::takeInShownScreens() {
    const auto candidates = watched_;
    for (QObject* object : candidates) {
        auto* widget = qobject_cast<QWidget*>(object);
        if (!widget || widget->parent() != this) continue;
        if (!widget->isHidden() && isScreenCandidate(widget)) embedScreen(widget);
    }
}

QList<QWidget*> MainWindow::screens() const {
    QList<QWidget*> result;
    for (int i = 0; i < tabs_->count(); ++i)
        if (tabs_->widget(i)->objectName() != "HomePage") result << tabs_->widget(i);
    return result;
}

bool MainWindow::isScreenCandidate(QWidget* widget) {
    if (qobject_cast<QDialog*>(widget)) return false;  // dialogs run on their own
    const Qt::WindowType type = widget->windowType();
    return type == Qt::Widget || type == Qt::Window;
}

void MainWindow::embedScreen(QWidget* screen) {
    if (!screen || tabs_->indexOf(screen) >= 0) return;
    unwatch(screen);
    screen->removeEventFilter(this);
    const int index = tabs_->addTab(screen, screen->windowTitle());
    screen->show();
    tabs_->setCurrentIndex(index);
    screen->installEventFilter(this);  // follows its title from now on
}

bool MainWindow::isWatched(QObject* object) const {
    return std::any_of(watched_.begin(), watched_.end(),
                       [object](const QPointer<QObject>& w) { return w == object; });
}

void MainWindow::unwatch(QObject* object) {
    watched_.removeIf([object](const QPointer<QObject>& w) { return w.isNull() || w == object; });
}

void MainWindow::childEvent(QChildEvent* event) {
    QMainWindow::childEvent(event);
    if (!acceptingScreens_ || event->type() != QEvent::ChildAdded) return;
    // The child is still being constructed: decide when it shows itself.
    if (event->child()->isWidgetType()) {
        QObject* child = event->child();
        watched_.removeAll(nullptr);  // children gone meanwhile
        watched_.append(child);
        child->installEventFilter(this);
    }
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    auto* widget = qobject_cast<QWidget*>(watched);
    if (widget && isWatched(watched)) {
        if (event->type() == QEvent::Show || event->type() == QEvent::ShowToParent) {
            if (isScreenCandidate(widget) && widget->parent() == this) {
                // Embedding re-parents the widget; do it once the show has been handled.
                QMetaObject::invokeMethod(
                    this,
                    [this, w = QPointer<QWidget>(widget)] {
                        if (w && !w->isHidden() && w->parent() == this) embedScreen(w);
                    },
                    Qt::QueuedConnection);
            } else {
                unwatch(watched);
                watched->removeEventFilter(this);
            }
        }
    } else if (widget && event->type() == QEvent::WindowTitleChange) {
        const int index = tabs_->indexOf(widget);
        if (index >= 0) tabs_->setTabText(index, widget->windowTitle());
    }
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    for (QWidget* screen : screens()) {
        const QPointer<QWidget> alive(screen);
        if (!screen->close()) {
            event->ignore();
            tabs_->setCurrentWidget(screen);
            return;
        }
        if (alive && tabs_->indexOf(screen) >= 0) {
            tabs_->removeTab(tabs_->indexOf(screen));
            screen->deleteLater();
        }
    }
    QMainWindow::closeEvent(event);
}

void MainWindow::closeTab(int index) {
    QWidget* screen = tabs_->widget(index);
    if (!screen || screen->objectName() == "HomePage") return;
    // The screen's own close handling decides (it may offer to save, or refuse); a screen that
    // agreed to close and is still there is freed here.
    if (screen->close()) {
        const QPointer<QWidget> guardPtr(screen);
        if (guardPtr && tabs_->indexOf(screen) >= 0) {
            tabs_->removeTab(tabs_->indexOf(screen));
            screen->deleteLater();
        }
    }
}

}  // namespace qx::host

#pragma once
// The host's main window: the module's menu, its screens as tabs, a status bar with user,
// warehouse and database. It is the main form QXProc2 receives: every screen it creates is
// owned by this window and, once it shows itself, is taken in as a tab.
#include <QMainWindow>
#include <QPointer>

#include "host/ModuleLoader.h"

class QTabWidget;
class QLabel;
class QAction;

namespace qx::host {

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    MainWindow(QXProc2Function entry, QString databaseName, QWidget* parent = nullptr);
    ~MainWindow() override;

    // Calls the module for one menu function. Errors of the screen are reported to the user.
    void openFunction(int code);
    // The menu action of a code ("func201"), or nullptr.
    QAction* actionFor(int code) const;
    QTabWidget* tabs() const { return tabs_; }
    // The screens shown as tabs, in tab order (the home page excluded).
    QList<QWidget*> screens() const;

    // Takes a screen in as a tab (also called by screens that want a tab explicitly).
    Q_INVOKABLE void embedScreen(QWidget* screen);

    // Refreshes title, home page and status bar from the login globals (after a sign-in).
    void refreshSession();

protected:
    void childEvent(QChildEvent* event) override;
    // Closes every screen first; a screen that refuses (unsaved input) keeps the window open.
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildMenu();
    void buildHomePage();
    void updateStatus();
    void closeTab(int index);
    // Screens that showed themselves during a call become tabs at once.
    void takeInShownScreens();
    static bool isScreenCandidate(QWidget* widget);

    QXProc2Function entry_;
    QString databaseName_;
    QTabWidget* tabs_ = nullptr;
    QLabel* userLabel_ = nullptr;
    QLabel* warehouseLabel_ = nullptr;
    QLabel* databaseLabel_ = nullptr;
    QLabel* homeText_ = nullptr;
    bool acceptingScreens_ = false;  // false while the window builds its own widgets
    // Children that may still show themselves as screens (guarded: they may go at any time).
    QList<QPointer<QObject>> watched_;
    bool isWatched(QObject* object) const;
    void unwatch(QObject* object);
};

}  // namespace qx::host

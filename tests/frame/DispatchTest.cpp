// The module entry: which codes open what, the warehouse preconditions, the three opening
// patterns and the life of the record copy. Screens not yet part of the module are stood in
// for by test factories, so the dispatcher is exercised as the host will use it.
#include <gtest/gtest.h>

#include <algorithm>

#include <QDialog>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "frame/Dispatch.h"
#include "frame/DispatchTesting.h"
#include "frame/Qxfunc2.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"

namespace {

using qx::frame::ScreenHandle;
namespace testing_ = qx::frame::testing;

// Every call the dispatcher makes on a stand-in screen, in order.
struct CallLog {
    std::vector<std::string> calls;
    std::vector<QString> userParams;
    int tag = -1;
};

// A stand-in screen: a plain widget (or a dialog for the modal pattern) that records calls.
class RecordingHandle final : public ScreenHandle {
public:
    RecordingHandle(QWidget* owner, std::shared_ptr<CallLog> log, bool dialog)
        : log_(std::move(log)) {
        widget_ = dialog ? new QDialog(owner) : new QWidget(owner);
        widget_->setObjectName("standIn");
    }
    void setTag(int code) override {
        log_->calls.push_back("Tag");
        log_->tag = code;
    }
    void setUserParam(const Trecord& r) override {
        log_->calls.push_back("SetUserParam");
        log_->userParams = {r.UserId, r.UserName, r.CkId, r.CkName, r.CoName, r.DbName};
    }
    void initForm(const Trecord&) override { log_->calls.push_back("InitForm"); }
    void initDialog(const Trecord&) override { log_->calls.push_back("InitDialog"); }
    void showModal() override {
        log_->calls.push_back("ShowModal");
        auto* dialog = qobject_cast<QDialog*>(widget_.data());
        ASSERT_NE(dialog, nullptr);
        // Close the dialog from the event loop, as a user would.
        QTimer::singleShot(50, dialog, [this, dialog] {
            log_->calls.push_back("closed by user");
            dialog->reject();
        });
        dialog->exec();
        log_->calls.push_back("ShowModal returned");
    }
    void release() override {
        log_->calls.push_back("Release");
        widget_->deleteLater();
    }

private:
    std::shared_ptr<CallLog> log_;
    QPointer<QWidget> widget_;
};

class DispatchTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetGlobals();
        mainForm = std::make_unique<QWidget>();
        sink = std::make_unique<qx::ui::ScopedScriptedSink>();
    }
    void TearDown() override {
        testing_::clearFactories();
        ResetGlobals();
    }

    // Lets `code` open a recording stand-in; returns the log it writes.
    std::shared_ptr<CallLog> standIn(int code, bool dialog = false) {
        auto log = std::make_shared<CallLog>();
        testing_::setFactory(code, [log, dialog](QWidget* owner) {
            return std::make_unique<RecordingHandle>(owner, log, dialog);
        });
        return log;
    }

    static Trecord record(int code) {
        Trecord rec;
        rec.UserId = QString::number(1);  // built at run time, so the text is counted
        rec.UserName = "系统管理员";
        rec.CkId = "01";
        rec.CkName = "总仓";
        rec.CoName = "演示服装店";
        rec.DbName = "shop.db";
        rec.FuncCode = code;
        return rec;
    }

    int screensOpen() const { return mainForm->findChildren<QWidget*>("standIn").size(); }

    std::unique_ptr<QWidget> mainForm;
    std::unique_ptr<qx::ui::ScopedScriptedSink> sink;
};

using Calls = std::vector<std::string>;

TEST(FunctionTable, EveryCodeHasExactlyOneRowAndTheBuiltScreensTheirFactory) {
    std::vector<int> codes;
    int built = 0;
    for (const auto& row : qx::frame::functionTable()) {
        codes.push_back(row.code);
        built += row.factory ? 1 : 0;
    }
    std::vector<int> sorted = codes;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(std::adjacent_find(sorted.begin(), sorted.end()), sorted.end()) << "a code stands twice";
    for (int code : {201, 202, 211, 212, 215, 217, 218, 219, 235, 241, 242, 297, 299, 704, 901, 932})
        EXPECT_TRUE(qx::frame::findFunction(code) && qx::frame::findFunction(code)->factory) << code;
    EXPECT_GE(built, 16);
}

TEST_F(DispatchTest, CodesOutsideTheTableOpenNothingAndSayNothing) {
    for (int code : {0, 216, 205, 220, 234, 298, 300, 999, -1}) {
        QXProc2(record(code), mainForm.get());
        EXPECT_EQ(mainForm->findChildren<QWidget*>().size(), 0) << code;
    }
    EXPECT_TRUE((*sink)->messages.empty());
    EXPECT_EQ(qx::frame::findFunction(216), nullptr);
    EXPECT_EQ(qx::frame::findFunction(0), nullptr);
    EXPECT_THROW(testing_::setFactory(216, nullptr), std::invalid_argument);
}

TEST_F(DispatchTest, TransferWithOnlyOneWarehouseShowsTheMessageAndOpensNothing) {
    for (int code : {217, 219}) {
        auto log = standIn(code);
        G_CKCOUNT_C = 1;
        QXProc2(record(code), mainForm.get());
        EXPECT_TRUE(log->calls.empty()) << code;
        EXPECT_EQ(screensOpen(), 0);
        ASSERT_EQ((*sink)->messages.size(), 1u);
        EXPECT_EQ((*sink)->messages[0].text,
                  "系统检测到您只登记一个仓库,调拔功能必须存在多个仓库方可使用!");
        EXPECT_EQ((*sink)->messages[0].dispKind, 5);
        (*sink)->clear();
    }
}

TEST_F(DispatchTest, TransferWithSeveralWarehousesOpensItsList) {
    for (int code : {217, 219}) {
        auto log = standIn(code);
        G_CKCOUNT_C = 0;
        G_CKCOUNT_R = 1;  // read rights do not matter for transfers
        QXProc2(record(code), mainForm.get());
        EXPECT_EQ(log->calls, (Calls{"Tag", "InitForm"})) << code;
        EXPECT_EQ(log->tag, code);
    }
    EXPECT_EQ(screensOpen(), 2);
    EXPECT_TRUE((*sink)->messages.empty());
}

TEST_F(DispatchTest, DistributionNeedsSeveralWarehousesAndReadRightsOnTwo) {
    const QString message = "仓库分布功能必须要有读取两个仓库以上的权限才能执行!";
    auto log = standIn(256);
    struct Flags {
        quint8 c, r;
    };
    for (Flags f : {Flags{1, 0}, Flags{0, 1}, Flags{1, 1}}) {
        G_CKCOUNT_C = f.c;
        G_CKCOUNT_R = f.r;
        QXProc2(record(256), mainForm.get());
        ASSERT_EQ((*sink)->messages.size(), 1u);
        EXPECT_EQ((*sink)->messages[0].text, message);
        EXPECT_EQ((*sink)->messages[0].dispKind, 5);
        (*sink)->clear();
    }
    EXPECT_TRUE(log->calls.empty());

    G_CKCOUNT_C = G_CKCOUNT_R = 0;
    QXProc2(record(256), mainForm.get());
    EXPECT_EQ(log->calls, (Calls{"Tag", "InitForm"}));
    EXPECT_TRUE((*sink)->messages.empty());
}

TEST_F(DispatchTest, OtherCodesCheckNothingBeforeOpening) {
    G_CKCOUNT_C = G_CKCOUNT_R = G_CKCOUNT_W = 1;
    for (int code : {201, 218, 255, 241}) {
        auto log = standIn(code);
        QXProc2(record(code), mainForm.get());
        EXPECT_EQ(log->calls, (Calls{"Tag", "InitForm"})) << code;
    }
    EXPECT_TRUE((*sink)->messages.empty());
}

TEST_F(DispatchTest, EmbeddedScreenIsOwnedByTheMainFormAndReturnsAtOnce) {
    auto log = standIn(201);
    QXProc2(record(201), mainForm.get());
    EXPECT_EQ(log->calls, (Calls{"Tag", "InitForm"}));
    EXPECT_EQ(log->tag, 201);
    const auto screens = mainForm->findChildren<QWidget*>("standIn");
    ASSERT_EQ(screens.size(), 1);
    EXPECT_EQ(screens[0]->parentWidget(), mainForm.get());
}

TEST_F(DispatchTest, TwoOpensOfOneCodeGiveTwoScreens) {
    auto log = standIn(201);
    QXProc2(record(201), mainForm.get());
    QXProc2(record(201), mainForm.get());
    EXPECT_EQ(screensOpen(), 2);
    EXPECT_EQ(log->calls, (Calls{"Tag", "InitForm", "Tag", "InitForm"}));
}

TEST_F(DispatchTest, ModalDialogReturnsOnlyAfterItIsClosedAndIsReleased) {
    for (int code : {242, 901, 932}) {
        auto log = standIn(code, /*dialog=*/true);
        QXProc2(record(code), mainForm.get());
        // By the time QXProc2 is back, the user has closed the dialog and it was released.
        EXPECT_EQ(log->calls, (Calls{"SetUserParam", "InitDialog", "ShowModal", "closed by user",
                                     "ShowModal returned", "Release"}))
            << code;
        EXPECT_EQ(log->tag, -1) << "no Tag for a modal dialog";
        EXPECT_EQ(log->userParams,
                  (std::vector<QString>{"1", "系统管理员", "01", "总仓", "演示服装店", "shop.db"}));
    }
}

TEST_F(DispatchTest, PromotionListGetsTagThenUserParamsThenInitForm) {
    auto log = standIn(704);
    QXProc2(record(704), mainForm.get());
    EXPECT_EQ(log->calls, (Calls{"Tag", "SetUserParam", "InitForm"}));
    EXPECT_EQ(log->tag, 704);
    EXPECT_EQ(log->userParams.size(), 6u);
    EXPECT_EQ(screensOpen(), 1);
}

// A screen that fails while it initialises.
class FailingHandle final : public ScreenHandle {
public:
    FailingHandle(QWidget* owner, const QString* original, bool* sharedDuringCall)
        : original_(original), sharedDuringCall_(sharedDuringCall) {
        auto* w = new QWidget(owner);
        w->setObjectName("standIn");
    }
    void setTag(int) override {}
    void setUserParam(const Trecord&) override {}
    void initForm(const Trecord&) override {
        // The dispatcher's copy shares the caller's text while the screen works.
        *sharedDuringCall_ = !original_->isDetached();
        throw std::runtime_error("screen failed");
    }
    void initDialog(const Trecord&) override {}
    void showModal() override {}
    void release() override {}

private:
    const QString* original_;
    bool* sharedDuringCall_;
};

TEST_F(DispatchTest, ExceptionPropagatesAfterTheRecordCopyIsReleased) {
    Trecord rec = record(201);
    ASSERT_TRUE(rec.UserId.isDetached());
    bool shared = false;
    testing_::setFactory(201, [&](QWidget* owner) {
        return std::make_unique<FailingHandle>(owner, &rec.UserId, &shared);
    });
    EXPECT_THROW(QXProc2(rec, mainForm.get()), std::runtime_error);
    EXPECT_TRUE(shared) << "the dispatcher holds its own counted copy during the call";
    EXPECT_TRUE(rec.UserId.isDetached()) << "the copy was released on the way out";
    // The screen already created stays with its owner; the dispatcher frees nothing.
    EXPECT_EQ(screensOpen(), 1);
}

TEST_F(DispatchTest, RecordCopyIsReleasedOnNormalReturn) {
    Trecord rec = record(201);
    standIn(201);
    QXProc2(rec, mainForm.get());
    EXPECT_TRUE(rec.UserId.isDetached());
}

TEST_F(DispatchTest, CodeWhoseScreenIsNotPartOfTheModuleOpensNothing) {
    for (const auto& row : qx::frame::functionTable()) {
        if (row.factory) continue;
        G_CKCOUNT_C = G_CKCOUNT_R = 0;
        QXProc2(record(row.code), mainForm.get());
    }
    EXPECT_TRUE((*sink)->messages.empty());
}

// A framework-like screen class driven through its unit's screen variable.
class TQXTESTDLG : public QDialog {
public:
    explicit TQXTESTDLG(QWidget* owner) : QDialog(owner) { setObjectName("QXTESTDLG"); }
    int Tag = 0;
    QStringList params;
    QStringList steps;
    void SetUserParam(AnsiString a, AnsiString b, AnsiString c, AnsiString d, AnsiString e,
                      AnsiString f) {
        params = {a, b, c, d, e, f};
        steps << "SetUserParam";
    }
    virtual void InitForm(const Trecord&) { steps << "TQXTESTDLG::InitForm"; }
    int ShowModal() {
        steps << "ShowModal";
        QTimer::singleShot(20, this, [this] { reject(); });
        return exec();
    }
    void Release() {
        steps << "Release";
        deleteLater();
    }
};
TQXTESTDLG* QXTESTDLG = nullptr;

class TQXTESTLIST : public QWidget {
public:
    explicit TQXTESTLIST(QWidget* owner) : QWidget(owner) { setObjectName("QXTESTLIST"); }
    int Tag = 0;
    QStringList steps;
    void SetUserParam(AnsiString, AnsiString, AnsiString, AnsiString, AnsiString, AnsiString) {
        steps << "SetUserParam";
    }
    virtual void InitForm(const Trecord&) { steps << "InitForm"; }
    int ShowModal() { return 0; }
    void Release() {}
};
TQXTESTLIST* QXTESTLIST = nullptr;

TEST_F(DispatchTest, FormHandleStoresEachNewScreenInItsVariable) {
    testing_::setFactory(201, &qx::frame::screen<TQXTESTLIST, &QXTESTLIST>);
    QXProc2(record(201), mainForm.get());
    TQXTESTLIST* first = QXTESTLIST;
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->Tag, 201);
    EXPECT_EQ(first->steps, (QStringList{"InitForm"}));
    EXPECT_EQ(first->parent(), mainForm.get());

    QXProc2(record(201), mainForm.get());
    EXPECT_NE(QXTESTLIST, first) << "the variable refers to the newer instance";
    EXPECT_EQ(mainForm->findChildren<TQXTESTLIST*>().size(), 2);
}

TEST_F(DispatchTest, FormHandleModalDialogCallsTheClassOwnInitForm) {
    testing_::setFactory(901, [](QWidget* owner) -> std::unique_ptr<ScreenHandle> {
        return qx::frame::screen<TQXTESTDLG, &QXTESTDLG>(owner);
    });
    QXProc2(record(901), mainForm.get());
    ASSERT_NE(QXTESTDLG, nullptr);
    EXPECT_EQ(QXTESTDLG->steps,
              (QStringList{"SetUserParam", "TQXTESTDLG::InitForm", "ShowModal", "Release"}));
    EXPECT_EQ(QXTESTDLG->Tag, 0);
    EXPECT_EQ(QXTESTDLG->params,
              (QStringList{"1", "系统管理员", "01", "总仓", "演示服装店", "shop.db"}));
}

}  // namespace

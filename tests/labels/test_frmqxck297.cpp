// Supervision codes driven through their real controls: the filter by part of a code, the
// dispatch memo applied line by line exactly as typed with one confirmation per line, and
// deletion by code.
#include <QCoreApplication>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QPushButton>

#include "framework/DBGridEh.h"
#include "framework/Screenshot.h"
#include "labels/Frmqxck297.h"
#include "labels/Frmqxck297_1.h"
#include "labels/Frmqxck297f.h"
#include "tests/labels/LabelsFixture.h"

namespace qx::test {
namespace {

class Qxck297Test : public LabelsTest {
protected:
    // The list opened on code 297 with `code` typed into its filter.
    TQXCK297* openCodes(const QString& code = {}) {
        onFilter(code);
        auto* screen = new TQXCK297(nullptr);
        screen->Tag = 297;
        screen->InitForm(record(297));
        return screen;
    }
    void onFilter(const QString& code, int key = 0) {
        steps.push_back([code, key](TFrm_Base* d) {
            auto* filter = dynamic_cast<TQXCK297F*>(d);
            EXPECT_NE(filter, nullptr);
            if (!filter) return int(mrCancel);
            filter->Edit1->setText(code);
            if (key) {
                QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
                QCoreApplication::sendEvent(filter, &press);
            } else {
                filter->btn_ok->click();
            }
            return filter->ModalResult();
        });
    }
    void onDispatch(const QString& warehouse, const QString& memo) {
        steps.push_back([warehouse, memo](TFrm_Base* d) {
            auto* dispatch = dynamic_cast<TQXCK297_1*>(d);
            EXPECT_NE(dispatch, nullptr);
            if (!dispatch) return int(mrCancel);
            EXPECT_EQ(dispatch->Label1->text(), "请在下面编辑框录入发入仓库的监管码:");
            EXPECT_EQ(dispatch->Panel_Condition->CaptionOf(dispatch->CK_ID)->text(), "发入仓库");
            EXPECT_EQ(dispatch->CK_ID->maxLength(), 4);
            dispatch->CK_ID->setText(warehouse);
            dispatch->Memo1->setPlainText(memo);
            qx::saveScreenshot(dispatch, "supervision_code_dispatch");
            dispatch->btn_ok->click();
            return dispatch->ModalResult();
        });
    }
    static QStringList codes(TQXCK297* screen) {
        QStringList out;
        for (int row = 0; row < screen->AdoQry_Main->RecordCount(); ++row)
            out << screen->AdoQry_Main->CellValue(row, screen->AdoQry_Main->FieldIndex("JGM")).toString();
        out.sort();
        return out;
    }
    static QString update(const QString& warehouse, const QString& code) {
        return golden("qxck297.sql", "dispatch", {{"warehouse", warehouse}, {"code", code}});
    }
};

TEST_F(Qxck297Test, ABlankFilterListsEveryCodeWithItsColumns) {
    auto* screen = openCodes("   ");
    EXPECT_EQ(screen->Caption(), "监管码");
    EXPECT_EQ(codes(screen), (QStringList{"JGA100", "JGB200", "JGB201", "XA1Y"}));
    EXPECT_EQ(statements(Call::Kind::OpenSql), std::vector<QString>{golden("qxck297.sql", "list")});
    EXPECT_EQ(screen->Lab_Condition->text(), "");
    EXPECT_EQ(screen->DBGridEh->VisibleTitles(),
              (QStringList{"款号", "监管码", "生成日期", "存储位置", "发出日期", "会员号", "购买会员", "销售日期"}));
    ASSERT_TRUE(screen->AdoQry_Main->Locate("JGM", "JGA100"));
    const QStringList row = screen->DBGridEh->DisplayedRows().at(screen->AdoQry_Main->CurrentRow());
    EXPECT_EQ(row, (QStringList{"K0", "JGA100", "2026-01-02", "总仓", "2026-01-05", "V01", "李会员", "2026-02-01"}));
    EXPECT_FALSE(qx::saveScreenshot(screen, "supervision_codes").isEmpty());
    screen->close();
}

TEST_F(Qxck297Test, FilterA1ListsEveryCodeContainingA1Anywhere) {
    auto* screen = openCodes("A1");
    EXPECT_EQ(codes(screen), (QStringList{"JGA100", "XA1Y"}));
    EXPECT_EQ(statements(Call::Kind::OpenSql), std::vector<QString>{golden("qxck297.sql", "list a1")});
    EXPECT_EQ(screen->Lab_Condition->text(), "监管码    包含   A1");
    screen->close();
}

TEST_F(Qxck297Test, TheFilterTextIsUsedAsTypedAndAQuoteCannotEndIt) {
    auto* screen = openCodes(" B2");
    EXPECT_TRUE(codes(screen).isEmpty());  // " B2" with its blank matches nothing
    EXPECT_EQ(screen->Lab_Condition->text(), "监管码    包含    B2");
    onFilter("x' OR '1'='1");
    screen->Act_Filter->trigger();
    EXPECT_TRUE(codes(screen).isEmpty());
    EXPECT_TRUE(sent(golden("qxck297.sql", "list quote")));
    EXPECT_TRUE(sink->errors().isEmpty());
    screen->close();
}

TEST_F(Qxck297Test, TheCodeEditTakesTwentyCharacters) {
    auto* screen = openCodes();
    EXPECT_EQ(screen->Filter->Edit1->maxLength(), 20);
    onFilter(QString(10000, 'J'));
    screen->Act_Filter->trigger();
    EXPECT_EQ(screen->Filter->Edit1->text(), QString(20, 'J'));
    EXPECT_TRUE(codes(screen).isEmpty());
    EXPECT_EQ(statements(Call::Kind::OpenSql).back(),
              golden("qxck297.sql", "list") + " WHERE (d1805.jgm like '%" + QString(20, 'J') + "%')");
    screen->close();
}

class FilterKeyTest : public Qxck297Test, public ::testing::WithParamInterface<int> {};

TEST_P(FilterKeyTest, ActsAsOk) {
    auto* screen = new TQXCK297(nullptr);
    onFilter("B20", GetParam());
    screen->InitForm(record(297));
    EXPECT_EQ(codes(screen), (QStringList{"JGB200", "JGB201"}));
    screen->close();
}

INSTANTIATE_TEST_SUITE_P(Keys, FilterKeyTest, ::testing::Values(int(Qt::Key_F2), int(Qt::Key_F3), int(Qt::Key_F4)),
                         [](const auto& info) {
                             return std::string(info.param == Qt::Key_F2 ? "F2" : info.param == Qt::Key_F3 ? "F3" : "F4");
                         });

TEST_F(Qxck297Test, EveryMemoLineIsSentAsTypedWithOneConfirmationEach) {
    auto* screen = openCodes();
    onDispatch("02", "JGB200\n JGB201\nXA1Y\n");
    screen->Act_Add->trigger();
    const auto batches = execs();
    ASSERT_EQ(batches.size(), 3u);
    EXPECT_EQ(batches[0].sql, update("02", "JGB200"));
    EXPECT_EQ(batches[1].sql, update("02", " JGB201"));  // not trimmed: matches nothing
    EXPECT_EQ(batches[2].sql, update("02", "XA1Y"));
    for (const auto& b : batches) {
        EXPECT_EQ(b.funcNo, "297");
        EXPECT_EQ(b.mode, "02");
    }
    EXPECT_EQ(sink->texts(), (QStringList{"操作成功执行!", "操作成功执行!", "操作成功执行!"}));
    EXPECT_EQ(scalar("SELECT CK_ID FROM d1805 WHERE JGM='JGB200'"), "02");
    EXPECT_EQ(scalar("SELECT CK_ID FROM d1805 WHERE JGM='JGB201'"), "");
    EXPECT_EQ(scalar("SELECT CK_ID FROM d1805 WHERE JGM='XA1Y'"), "02");
    EXPECT_FALSE(scalar("SELECT DATE2 FROM d1805 WHERE JGM='XA1Y'").isEmpty());
    // The list shows the dispatch.
    ASSERT_TRUE(screen->AdoQry_Main->Locate("JGM", "XA1Y"));
    EXPECT_EQ(screen->AdoQry_Main->FieldByName("CK_NAME")->AsString(), "东门店");
    screen->close();
}

TEST_F(Qxck297Test, AnEmptyLineUpdatesNothingAndStillConfirms) {
    auto* screen = openCodes();
    onDispatch("02", "JGB200\n\nJGB201");
    screen->Act_Add->trigger();
    const auto batches = execs();
    ASSERT_EQ(batches.size(), 3u);
    EXPECT_EQ(batches[1].sql, update("02", ""));
    EXPECT_EQ(sink->texts().size(), 3);
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM d1805 WHERE CK_ID='02'"), "2");
    screen->close();
}

TEST_F(Qxck297Test, AnEmptyMemoRunsNothingAndAnEmptyWarehouseIsWrittenEmpty) {
    auto* screen = openCodes();
    onDispatch("02", "");
    screen->Act_Add->trigger();
    EXPECT_TRUE(execs().empty());
    EXPECT_TRUE(sink->texts().isEmpty());
    onDispatch("", "JGA100");
    screen->Act_Add->trigger();
    ASSERT_EQ(execs().size(), 1u);
    EXPECT_EQ(execs()[0].sql, update("", "JGA100"));
    EXPECT_EQ(scalar("SELECT CK_ID FROM d1805 WHERE JGM='JGA100'"), "");
    screen->close();
}

TEST_F(Qxck297Test, ThirtyCodesShowThirtyConfirmations) {
    for (int i = 0; i < 30; ++i) exec(QString("INSERT INTO d1805 (JGM, K_ID) VALUES ('T%1', 'K0')").arg(i, 3, 10, QChar('0')));
    auto* screen = openCodes();
    QStringList memo;
    for (int i = 0; i < 30; ++i) memo << QString("T%1").arg(i, 3, 10, QChar('0'));
    onDispatch("01", memo.join("\r\n"));
    screen->Act_Add->trigger();
    EXPECT_EQ(execs().size(), 30u);
    EXPECT_EQ(sink->texts(), QStringList(30, "操作成功执行!"));
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM d1805 WHERE CK_ID='01' AND JGM LIKE 'T%'"), "30");
    screen->close();
}

TEST_F(Qxck297Test, QuotesAndVeryLongLinesStayInsideTheirCode) {
    exec("INSERT INTO d1805 (JGM, K_ID) VALUES ('O''NEIL-1', 'K0')");
    auto* screen = openCodes();
    const QString longLine(10000, 'Z');
    onDispatch("0'2", "O'NEIL-1\nx'; DELETE FROM d1805; --\n" + longLine);
    screen->Act_Add->trigger();
    const auto batches = execs();
    ASSERT_EQ(batches.size(), 3u);
    EXPECT_EQ(batches[0].sql, "update d1805 set date2=getdate(),ck_id='0''2' where jgm='O''NEIL-1'");
    EXPECT_EQ(batches[2].sql, "update d1805 set date2=getdate(),ck_id='0''2' where jgm='" + longLine + "'");
    EXPECT_EQ(sink->texts(), QStringList(3, "操作成功执行!"));
    EXPECT_EQ(scalar("SELECT CK_ID FROM d1805 WHERE JGM='O''NEIL-1'"), "0'2");
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM d1805"), "5");
    screen->close();
}

TEST_F(Qxck297Test, ACodeIsDeletedByItsKeyAfterTheQuestion) {
    auto* screen = openCodes();
    ASSERT_TRUE(screen->AdoQry_Main->Locate("JGM", "JGB201"));
    sink->queueAnswer(false);
    screen->Act_Delete->trigger();
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM d1805"), "4");
    sink->queueAnswer(true);
    screen->Act_Delete->trigger();
    ASSERT_EQ(execs().size(), 1u);
    EXPECT_EQ(execs()[0].sql, golden("qxck297.sql", "delete"));
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM d1805"), "3");
    EXPECT_EQ(codes(screen), (QStringList{"JGA100", "JGB200", "XA1Y"}));
    screen->close();
}

TEST_F(Qxck297Test, MemoLinesAreTheLinesAMemoHolds) {
    EXPECT_EQ(TQXCK297_1::MemoLines(""), QStringList{});
    EXPECT_EQ(TQXCK297_1::MemoLines("a"), QStringList{"a"});
    EXPECT_EQ(TQXCK297_1::MemoLines("a\n"), QStringList{"a"});
    EXPECT_EQ(TQXCK297_1::MemoLines("a\r\n\r\nb"), (QStringList{"a", "", "b"}));
    EXPECT_EQ(TQXCK297_1::MemoLines("\n"), QStringList{""});
}

}  // namespace
}  // namespace qx::test
